// The "Data Listing" window and the two legends, opened from the main window: real clicks
// on real boxes and buttons, lines and texts read from the widgets.
#include <QClipboard>
#include <QListWidget>
#include <QScrollBar>

#include "qt/WindowDriver.h"
#include "ui/qt/DataListWindow.h"
#include "ui/qt/LegendWindows.h"

using plotmeter::qt::DataListWindow;

class DataListWindowTest : public QObject, plotmeter::testing::WindowDriver {
  Q_OBJECT

  DataListWindow* OpenList() {
    Click("ListBtn");
    return Find<DataListWindow>("DataList");
  }
  static QString Line(QWidget* list, int line) {
    return Find<QListWidget>(list, "DataLst")->item(line)->text();
  }
  // A label reads as its text: a name of its own would hide it from a screen reader.
  static void ExpectNoAccessibleNameOnLabels(QWidget* window) {
    for (QLabel* label : window->findChildren<QLabel*>()) {
      QVERIFY2(label->accessibleName().isEmpty(), qPrintable(label->objectName()));
    }
  }

 private slots:
  void init() {
    ShowWindow();
    window_->openFile(kFarm);
  }

  // The listing opens with the input from the file, and Edit and Copy read it.
  void listOpensWithTheInputFromTheFile() {
    DataListWindow* list = OpenList();
    QCOMPARE(list->windowTitle(), "Data Listing");
    QVERIFY(list->isVisible() && list->isModal());
    ExpectShown(list,
                {"ShowCkB_0=Input Data [x]", "ShowCkB_1=X/Y Co-ords", "ShowCkB_2=Bearing/Length",
                 "ShowCkB_3=GPS Co-ords", "ShowCkB_4=Alternate GPS Co-ords", "ProcdCkB=Processed",
                 "IncludeCkB_0=Main Perimeter [x]", "IncludeCkB_1=Sub-division [x]",
                 "IncludeCkB_2=Intermediate Points [x]", "IncludeCkB_3=Other Lines [x]",
                 "IncludeCkB_4=Stand Alone Points [x]", "FileTagLbl=Willow Creek farm"});
    // The listing's texts are single-byte: the degree mark is byte 176.
    QCOMPARE(Line(list, 3), QString::fromLatin1("  3 B           |     14\xB0"
                                                "30'      268.4"));
    ExpectNoAccessibleNameOnLabels(list);

    // Edit with no line chosen shows nothing; a double click on a line, then Edit, show its
    // input. Copy copies the listing (under its heading) as it is shown.
    Click(Find(list, "EditBtn"));
    auto* lines = Find<QListWidget>(list, "DataLst");
    const QPoint line = lines->visualItemRect(lines->item(3)).center();
    QTest::mouseClick(lines->viewport(), Qt::LeftButton, {}, line);
    QTest::mouseDClick(lines->viewport(), Qt::LeftButton, {}, line);
    Click(Find(list, "EditBtn"));
    QCOMPARE(dialogs_.boxes.size(), 2u);
    for (const auto& box : dialogs_.boxes) QVERIFY(box.text.starts_with("Point 3\n"));
    Click(Find(list, "CopyBtn"));
    QCOMPARE(QGuiApplication::clipboard()->text().split('\n').at(4), Line(list, 3));
    QVERIFY(QFontInfo(lines->font()).fixedPitch());
  }

  // Each kind of box rebuilds the lines at once; scrolled sideways, the heading moves with
  // them. Closed, the listing is gone; opened again, it starts afresh.
  void boxesRebuildTheLinesUntilTheListingCloses() {
    DataListWindow* list = OpenList();
    Click(Find(list, "ProcdCkB"));
    Click(Find(list, "ShowCkB_2"));
    QCOMPARE(Text(list, "LstHdrLbl"),
             "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)   | Bearing    Length   ");
    Click(Find(list, "IncludeCkB_0"));
    QCOMPARE(Line(list, 0), "[S] Dataset as Sub-division (or Extension) for 'House paddock'");

    for (const char* box : {"ShowCkB_1", "ShowCkB_3", "ShowCkB_4"}) Click(Find(list, box));
    auto* heading = Find<QLabel>(list, "LstHdrLbl");
    QScrollBar* sideways = Find<QListWidget>(list, "DataLst")->horizontalScrollBar();
    QTRY_VERIFY(sideways->maximum() > 100);
    const int before = heading->x();
    sideways->setValue(100);
    QCOMPARE(heading->x(), before - 100);

    Click(Find(list, "CloseBtn"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!window_->findChild<DataListWindow*>());
    QVERIFY(!Find<QAbstractButton>(OpenList(), "ProcdCkB")->isChecked());
  }

  // The legends' texts are the core's (Legends.h); here they reach the labels and close.
  void legendsShowTheirTextsAndClose() {
    Click("LegendBtn");
    auto* area = Find<plotmeter::qt::AreaLegendWindow>("Legend");
    QCOMPARE(area->windowTitle(), "Area Display Legend");
    QCOMPARE(Text(area, "LegendLbl_0"), "Main and Sub-division Perimeter Lines");
    ExpectNoAccessibleNameOnLabels(area);
    QCOMPARE(Find(area, "LegendSh_6")->accessibleName(),
             "Symbol: Point for Editing (mouse Left click on a point)");
    Click(Find(area, "CloseBtn"));
    QVERIFY(!area->isVisible());

    DataListWindow* list = OpenList();
    Click(Find(list, "LegendBtn"));
    auto* codes = Find<plotmeter::qt::ListLegendWindow>(list, "ListLegend");
    QCOMPARE(codes->windowTitle(), "List Legend");
    QCOMPARE(Text(codes, "CodeLbl_0"), "X_: X/Y Co-ordinates");
  }
};

QTEST_MAIN(DataListWindowTest)
#include "DataListWindowTest.moc"
