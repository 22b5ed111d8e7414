// The main window's actions on a survey at the point limit, each measured with the
// repaint that shows it: load and redraw, a click on the drawing, a unit change and an
// option change. Runs on Qt's offscreen platform unless another is asked for.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QTemporaryDir>
#include <QTest>
#include <fstream>

#include "BenchSurveys.h"
#include "model/UserDialogs.h"
#include "ui/qt/MainWindow.h"

namespace plotmeter {
namespace {

class SilentDialogs : public UserDialogs {
 public:
  Button Show(const MessageBox& box) override { return box.defaultButton; }
  void Beep() override {}
  FileChoice SelectFile(const FileDialogRequest&) override { return {}; }
};

// Counts the drawing's paint events, so that a run shows it measured painting at all.
class PaintCounter : public QObject {
 public:
  int paints = 0;
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }
};

struct Window {
  SilentDialogs dialogs;
  qt::MainWindow main{&dialogs};
  QTemporaryDir folder;
  QString file = folder.filePath("limit.csv");

  Window() {
    std::ofstream(file.toStdString()) << SurveyFile(kPointLimit);
    main.resize(1000, 720);
    main.show();
    if (!QTest::qWaitForWindowExposed(&main)) qFatal("the window was never shown");
    main.openFile(file);
    main.findChild<QWidget*>("DisplaySh")->installEventFilter(&counter);
    main.repaint();
  }
  PaintCounter counter;
  template <typename T>
  T* Find(const char* name) {
    return main.findChild<T*>(name);
  }
};

Window& TheWindow() {
  static Window window;
  return window;
}

void BM_LoadAndRedraw(benchmark::State& state) {
  Window& window = TheWindow();
  int before = window.counter.paints;
  for (auto _ : state) {
    window.main.openFile(window.file);
    window.main.repaint();
  }
  state.counters["paints"] = window.counter.paints - before;
}
BENCHMARK(BM_LoadAndRedraw)->Unit(benchmark::kMillisecond);

void BM_ClickOnTheDrawing(benchmark::State& state) {
  Window& window = TheWindow();
  QWidget* drawing = window.Find<QWidget>("DisplaySh");
  int step = 0;
  for (auto _ : state) {
    QPoint at(40 + (step * 37) % (drawing->width() - 80),
              40 + (step * 53) % (drawing->height() - 80));
    QTest::mouseClick(drawing, (++step % 2) ? Qt::LeftButton : Qt::RightButton, {}, at);
    window.main.repaint();
  }
}
BENCHMARK(BM_ClickOnTheDrawing)->Unit(benchmark::kMillisecond);

void BM_AreaUnitChange(benchmark::State& state) {
  Window& window = TheWindow();
  auto* units = window.Find<QComboBox>("AreaUnitCmb");
  int unit = 0;
  for (auto _ : state) {
    unit = (unit + 1) % units->count();
    emit units->activated(unit);
    window.main.repaint();
  }
}
BENCHMARK(BM_AreaUnitChange)->Unit(benchmark::kMillisecond);

void BM_OptionChange(benchmark::State& state) {
  Window& window = TheWindow();
  auto* option = window.Find<QCheckBox>("OptnsCkB_0");
  for (auto _ : state) {
    QTest::mouseClick(option, Qt::LeftButton);
    window.main.repaint();
  }
}
BENCHMARK(BM_OptionChange)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace plotmeter

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
