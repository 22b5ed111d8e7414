// The main window through its real widgets: each control reaches the window logic and the
// logic's state reaches each label. What the logic decides is checked by its own tests.
#include <utility>

#include "qt/WindowDriver.h"

class MainWindowTest : public QObject, plotmeter::testing::WindowDriver {
  Q_OBJECT

 private slots:
  void init() { ShowWindow(); }

  void opensWithNoSurvey() {
    QCOMPARE(window_->windowTitle(), "Plotmeter DEVELOPMENT VERSION");
    ExpectShown(
        {"DataBtn_0=Load", "DataBtn_1=Save (off)", "DataBtn_2=Save As", "DataBtn_3=Create New",
         "EditPtBtn_0=Modify (off)", "EditPtBtn_1=Add (off)", "EditPtBtn_2=Delete (off)",
         "EditPtBtn_3=UnDo (off)", "OptnsCkB_0=Show Sub-division [x]", "OptnsCkB_1=Show Lines [x]",
         "OptnsCkB_2=Show Points [x]", "OptnsCkB_3=Show Alternate GPS [x]", "LegendBtn=Legend",
         "ListBtn=List", "PrintBtn=Print... (off)", "ExportBtn=Export... (off)", "ExitBtn=Exit",
         "DatSrcLbl=< No File >", "MagDecHdrLbl=Magnetic Declination: (off)"});
  }

  // Load reaches every label; a unit chosen and an option box clicked show at once.
  void loadReachesTheLabels() {
    dialogs_.files.push_back({.cancelled = false, .path = kFarm.toStdString()});
    Click("DataBtn_0");
    QVERIFY(Text("ScaleLbl").startsWith("Window Width / Height = "));
    QVERIFY(Find("AreaSgmtCmb")->isVisible());
    QVERIFY(Find("LotLbl_0")->isVisible());
    // The farm has no lines.
    ExpectShown({"AreaHdrLbl=Area", "AreaValLbl=13.94", "DatSrcLbl=farm.csv",
                 "TagFileLbl=Willow Creek farm", "DataBtn_1=Save",
                 "OptnsCkB_1=Show Lines [x] (off)", "PrintBtn=Print..."});

    QTest::keyClick(Find("AreaUnitCmb"), Qt::Key_Down);  // Hectares -> Acres
    QCOMPARE(Text("AreaValLbl"), "34.45");
    Click("OptnsCkB_0");  // sub-division off
    QVERIFY(!Find("AreaSgmtCmb")->isVisible());
  }

  // Tab walks the controls in reading order, down the right-hand column group by group,
  // to the drawing. On it the arrow keys walk the points and the menu key shows the tag.
  // At any size the drawing stays square and a click selects the point under it, a right
  // click shows the tag, and a press on the sub-division label reaches the drawing beneath.
  void keysAndClicks() {
    window_->openFile(kFarm);
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

    auto* view = Find<plotmeter::qt::PlotView>("DisplaySh");
    auto* tag = Find("TagDSLbl");
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Right);
    QTest::keyClick(view, Qt::Key_Right);
    QCOMPARE(Text("EditSubLbl"), "Point 2 selected");
    QTest::keyClick(view, Qt::Key_Up);
    QCOMPARE(Text("EditSubLbl"), "Point 1 selected");
    QTest::keyClick(view, Qt::Key_Menu);
    QVERIFY(tag->isVisible());
    QCOMPARE(Text("TagDSLbl"), "Home paddocks");

    window_->openFile(kFarm);  // drawn again: no tag
    const std::pair<QSize, int> sizes[] = {{{700, 900}, 2}, {{1400, 600}, 1}};
    for (const auto& [size, point] : sizes) {
      window_->resize(size);
      QApplication::processEvents();
      QCOMPARE(view->transform().Area().width(), view->transform().Area().height());
      ClickPoint(point, Qt::LeftButton, {2, 1});
      QCOMPARE(Text("EditSubLbl"), QString("Point %1 selected").arg(point + 1));
    }
    QVERIFY(!tag->isVisible());
    ClickPoint(0, Qt::RightButton);
    QVERIFY(tag->isVisible());
    QCOMPARE(Text("EditSubLbl"), "Click on a Point");
    QTest::mouseClick(view, Qt::LeftButton, {}, Find("LotLbl_0")->geometry().center());
    QVERIFY(Text("EditSubLbl").endsWith(" selected"));
  }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
