// The main window through its real widgets: what the window logic's tests cannot see.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "support/ScriptedDialogs.h"
#include "ui/qt/MainWindow.h"

using plotmeter::Button;
using plotmeter::qt::MainWindow;
using plotmeter::qt::PlotView;
using plotmeter::testing::ScriptedDialogs;

namespace {

const QString kFarm = PLOTMETER_EXAMPLES_DIR "/farm.csv";

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT

 private:
  template <typename T = QWidget>
  T* Find(const char* name) {
    T* widget = window_->findChild<T*>(name);
    if (!widget) qFatal("no control %s", name);
    return widget;
  }
  QString Text(const char* label) { return Find<QLabel>(label)->text(); }

  // Where point `index` is drawn, in the drawing widget's own co-ordinates.
  QPoint PointOnScreen(int index) {
    auto* view = Find<PlotView>("DisplaySh");
    const plotmeter::ScreenPoint& at = window_->logic().scene().screen[index];
    return view->transform().ToDevice(at.x, at.y).toPoint();
  }

  ScriptedDialogs dialogs_;
  std::unique_ptr<MainWindow> window_;

 private slots:
  void init() {
    dialogs_ = ScriptedDialogs{};
    window_ = std::make_unique<MainWindow>(&dialogs_);
    window_->resize(900, 640);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }

  void opensWithTheDefaults() {
    QCOMPARE(window_->windowTitle(), QString("Plotmeter DEVELOPMENT VERSION"));
    const char* captions[][2] = {
        {"DataBtn_0", "Load"},       {"DataBtn_1", "Save"},     {"DataBtn_2", "Save As"},
        {"DataBtn_3", "Create New"}, {"ExitBtn", "Exit"},       {"EditPtBtn_0", "Modify"},
        {"EditPtBtn_1", "Add"},      {"EditPtBtn_2", "Delete"}, {"EditPtBtn_3", "UnDo"},
        {"ListBtn", "List"},         {"LegendBtn", "Legend"}};
    for (const auto& [name, caption] : captions) QCOMPARE(Find<QPushButton>(name)->text(), caption);
    for (int i = 0; i < 4; ++i) {
      auto* box = Find<QCheckBox>(qPrintable(QString("OptnsCkB_%1").arg(i)));
      QVERIFY(box->isChecked());
      QVERIFY(!Find<QPushButton>(qPrintable(QString("EditPtBtn_%1").arg(i)))->isEnabled());
    }
    QCOMPARE(Find<QComboBox>("AreaUnitCmb")->currentText(), QString("Hectares"));
    QCOMPARE(Find<QComboBox>("AreaUnitCmb")->count(), 8);
    QCOMPARE(Text("DatSrcLbl"), QString("< No File >"));
    QCOMPARE(Text("EditSubLbl"), QString("Click on a Point"));
    QVERIFY(!Find<QLabel>("MagDecHdrLbl")->isEnabled());
  }

  void loadReachesEveryLabel() {
    dialogs_.files.push_back({.cancelled = false, .path = kFarm.toStdString()});
    QTest::mouseClick(Find<QPushButton>("DataBtn_0"), Qt::LeftButton);
    QCOMPARE(dialogs_.fileRequests.at(0).title, std::string("Select File to Load"));
    QCOMPARE(Text("AreaHdrLbl"), QString("Area"));
    QCOMPARE(Text("AreaValLbl"), QString("13.94"));
    QCOMPARE(Text("DatSrcLbl"), QString("farm.csv"));
    QCOMPARE(Text("TagFileLbl"), QString("Willow Creek farm"));
    QVERIFY(Text("ScaleLbl").startsWith("Window Width / Height = "));
    QVERIFY(Find<QComboBox>("AreaSgmtCmb")->isVisible());
    QCOMPARE(Find<QComboBox>("AreaSgmtCmb")->currentText(), QString("Whole Plot"));
    QVERIFY(!Find<QCheckBox>("OptnsCkB_1")->isEnabled());  // the farm has no lines
    QVERIFY(Find<QCheckBox>("OptnsCkB_1")->isChecked());
    QVERIFY(Find<QLabel>("LotLbl_0")->isVisible());
    QVERIFY(Find<QPushButton>("DataBtn_1")->isEnabled());
  }

  void unitAndOptionChangesShowAtOnce() {
    window_->openFile(kFarm);
    auto* units = Find<QComboBox>("AreaUnitCmb");
    units->setFocus();
    QTest::keyClick(units, Qt::Key_Down);  // Hectares -> Acres
    QCOMPARE(units->currentText(), QString("Acres"));
    QCOMPARE(Text("AreaValLbl"), QString("34.45"));

    QTest::mouseClick(Find<QCheckBox>("OptnsCkB_0"), Qt::LeftButton);  // sub-division off
    QVERIFY(!Find<QCheckBox>("OptnsCkB_0")->isChecked());
    QVERIFY(!Find<QComboBox>("AreaSgmtCmb")->isVisible());
    QVERIFY(!Find<QLabel>("LotLbl_0")->isVisible());
    QVERIFY(dialogs_.boxes.empty());
  }

  void clicksOnTheDrawingSelectAndShowTags() {
    window_->openFile(kFarm);
    auto* view = Find<PlotView>("DisplaySh");
    QTest::mouseClick(view, Qt::LeftButton, {}, PointOnScreen(2) + QPoint(2, 1));
    QCOMPARE(Text("EditSubLbl"), QString("Point 3 selected"));
    QVERIFY(Find<QPushButton>("EditPtBtn_0")->isEnabled());

    QTest::mouseClick(view, Qt::RightButton, {}, PointOnScreen(0));
    auto* tag = Find<QLabel>("TagDSLbl");
    QVERIFY(tag->isVisible());
    QCOMPARE(tag->text(), QString("Home paddocks"));
    QCOMPARE(Text("EditSubLbl"), QString("Click on a Point"));

    // A press on the sub-division label lands on the drawing beneath it.
    auto* lot = Find<QLabel>("LotLbl_0");
    QTest::mouseClick(view, Qt::LeftButton, {}, lot->geometry().center());
    QVERIFY(Text("EditSubLbl").endsWith(" selected"));
  }

  void windowKeepsTheDrawingSquareAtAnySize() {
    window_->openFile(kFarm);
    for (QSize size : {QSize(700, 900), QSize(1400, 600)}) {
      window_->resize(size);
      QApplication::processEvents();
      QTest::mouseClick(Find<PlotView>("DisplaySh"), Qt::LeftButton, {}, PointOnScreen(1));
      QCOMPARE(Text("EditSubLbl"), QString("Point 2 selected"));
      QRectF area = Find<PlotView>("DisplaySh")->transform().Area();
      QCOMPARE(area.width(), area.height());
    }
  }

  // Tab walks the controls in reading order: down the right-hand column, group by group.
  void tabReachesTheControlsInReadingOrder() {
    window_->openFile(kFarm);
    QApplication::setActiveWindow(window_.get());
    Find("DataBtn_0")->setFocus();
    QStringList order;
    for (int i = 0; i < 24 && !order.contains(QApplication::focusWidget()->objectName()); ++i) {
      order << QApplication::focusWidget()->objectName();
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(order,
             QStringList({"DataBtn_0", "DataBtn_1", "DataBtn_2", "DataBtn_3", "AreaUnitCmb",
                          "AreaSgmtCmb", "OptnsCkB_0", "OptnsCkB_2", "OptnsCkB_3", "LegendBtn",
                          "ListBtn", "PrintBtn", "ExportBtn", "ExitBtn", "DisplaySh"}));
  }

  // On the drawing the arrow keys select points and the menu key shows their tag.
  void keysSelectPointsOnTheDrawing() {
    window_->openFile(kFarm);
    auto* view = Find<PlotView>("DisplaySh");
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Right);
    QTest::keyClick(view, Qt::Key_Right);
    QCOMPARE(Text("EditSubLbl"), QString("Point 2 selected"));
    QVERIFY(Find<QPushButton>("EditPtBtn_0")->isEnabled());
    QTest::keyClick(view, Qt::Key_Up);
    QCOMPARE(Text("EditSubLbl"), QString("Point 1 selected"));
    QTest::keyClick(view, Qt::Key_Menu);
    QCOMPARE(Text("TagDSLbl"), QString("Home paddocks"));
    QVERIFY(Find<QLabel>("TagDSLbl")->isVisible());
  }

  void exitAsksNothingWhenNothingIsUnsaved() {
    window_->openFile(kFarm);
    QTest::keyClick(window_.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(!window_->isVisible());
    QVERIFY(dialogs_.boxes.empty());
  }

  void badFileNamedOnTheCommandLineIsReported() {
    QTemporaryDir folder;
    window_->openFile(folder.filePath("missing/farm.csv"));
    QCOMPARE(dialogs_.boxes.size(), size_t{1});
    QCOMPARE(dialogs_.last().title, std::string("Data Function"));
    QCOMPARE(Text("DatSrcLbl"), QString("< No File >"));
  }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
