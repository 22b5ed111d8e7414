// The desktop program: the main window, opened on a data file when one is named.
#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include "ui/qt/MainWindow.h"
#include "ui/qt/PlotView.h"
#include "ui/qt/TestIds.h"

namespace {

// With PLOTMETER_QUIT_AFTER_PAINT=1 the program ends once the drawing has first been
// painted: how start-up to first paint is measured.
class QuitAfterPaint : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) QTimer::singleShot(0, qApp, &QApplication::quit);
    return QObject::eventFilter(watched, event);
  }
};

}  // namespace

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName("plotmeter");
  QApplication::setApplicationVersion(PLOTMETER_VERSION);
  plotmeter::qt::InstallTestIdsWhenAsked();
  plotmeter::qt::InstallPlotAccessibility();

  QCommandLineParser parser;
  parser.setApplicationDescription("Works out the area of a plot of land and draws it.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("FILE", "A survey data file to open, as if chosen with Load.");
  parser.process(app);

  plotmeter::qt::MainWindow window;
  if (qEnvironmentVariable("PLOTMETER_QUIT_AFTER_PAINT") == "1") {
    window.findChild<QWidget*>("DisplaySh")->installEventFilter(new QuitAfterPaint(&window));
  }
  window.show();
  if (!parser.positionalArguments().isEmpty())
    window.openFile(parser.positionalArguments().first());
  return QApplication::exec();
}
