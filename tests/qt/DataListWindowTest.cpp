// The "Data Listing" window and the two legends, driven through the main window as a user
// does: real clicks on real boxes and buttons, lines and texts read from the widgets.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest>

#include "support/ScriptedDialogs.h"
#include "ui/qt/DataListWindow.h"
#include "ui/qt/LegendWindows.h"
#include "ui/qt/MainWindow.h"

using plotmeter::qt::AreaLegendWindow;
using plotmeter::qt::DataListWindow;
using plotmeter::qt::ListLegendWindow;
using plotmeter::qt::MainWindow;

namespace {

template <typename Widget>
Widget* Find(QWidget* window, const char* name) {
  auto* widget = window->findChild<Widget*>(name);
  if (!widget) qFatal("no widget %s", name);
  return widget;
}

void Click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

// The listing's texts are single-byte: the degree mark is byte 176.
QString L1(const char* text) { return QString::fromLatin1(text); }

QStringList Lines(QListWidget* list) {
  QStringList lines;
  for (int i = 0; i < list->count(); ++i) lines << list->item(i)->text();
  return lines;
}

// The texts of the labels named `name`_0, `name`_1, ... in index order.
QStringList Texts(QWidget* window, const char* name) {
  QStringList texts;
  for (int i = 0;; ++i) {
    auto* label = window->findChild<QLabel*>(QString("%1_%2").arg(name).arg(i));
    if (!label) return texts;
    texts << label->text();
  }
}

void ExpectNoAccessibleNameOnLabels(QWidget* window) {
  for (QLabel* label : window->findChildren<QLabel*>()) {
    QVERIFY2(label->accessibleName().isEmpty(), qPrintable(label->objectName()));
  }
}

}  // namespace

class DataListWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void init() {
    window_ = new MainWindow(&dialogs_);
    window_->show();
    window_->openFile(PLOTMETER_EXAMPLES_DIR "/farm.csv");
    QVERIFY(window_->logic().survey().PointCount() > 0);
  }

  void cleanup() {
    delete window_;
    dialogs_ = {};
  }

  void listOpensWithInputDataFromTheFile() {
    DataListWindow* list = openList();
    QCOMPARE(list->windowTitle(), "Data Listing");
    QVERIFY(list->isModal());
    const QStringList shown = {"Input Data", "X/Y Co-ords", "Bearing/Length", "GPS Co-ords",
                               "Alternate GPS Co-ords"};
    for (int i = 0; i < shown.size(); ++i) {
      auto* box = Find<QCheckBox>(list, qPrintable(QString("ShowCkB_%1").arg(i)));
      QCOMPARE(box->text(), shown[i]);
      QCOMPARE(box->isChecked(), i == 0);
    }
    const QStringList included = {"Main Perimeter", "Sub-division", "Intermediate Points",
                                  "Other Lines", "Stand Alone Points"};
    for (int i = 0; i < included.size(); ++i) {
      auto* box = Find<QCheckBox>(list, qPrintable(QString("IncludeCkB_%1").arg(i)));
      QCOMPARE(box->text(), included[i]);
      QVERIFY(box->isChecked());
    }
    QCOMPARE(Find<QCheckBox>(list, "ProcdCkB")->text(), "Processed");
    QVERIFY(!Find<QCheckBox>(list, "ProcdCkB")->isChecked());
    QCOMPARE(Find<QLabel>(list, "UnitLbl")->text(), "Meters");
    QCOMPARE(Find<QLabel>(list, "FileTagLbl")->text(), "Willow Creek farm");
    QCOMPARE(Find<QLabel>(list, "LstHdrLbl")->text(), "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)  ");
    const QStringList lines = Lines(Find<QListWidget>(list, "DataLst"));
    QCOMPARE(lines.first(), "[M] Dataset as Main (Perimeter) for 'Home paddocks'");
    QCOMPARE(lines[3], L1("  3 B           |     14\xB0"
                          "30'      268.4"));
    QVERIFY(QFontInfo(Find<QListWidget>(list, "DataLst")->font()).fixedPitch());
    ExpectNoAccessibleNameOnLabels(list);
  }

  void boxesRebuildTheLinesAtOnce() {
    DataListWindow* list = openList();
    auto* lines = Find<QListWidget>(list, "DataLst");
    auto* heading = Find<QLabel>(list, "LstHdrLbl");
    Click(Find<QCheckBox>(list, "ProcdCkB"));
    Click(Find<QCheckBox>(list, "ShowCkB_2"));
    QCOMPARE(heading->text(), "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)   | Bearing    Length   ");
    QCOMPARE(Lines(lines)[7], " -Closing Line Bearing:                 |  192.56027 258.24115");
    Click(Find<QCheckBox>(list, "IncludeCkB_0"));
    QCOMPARE(Lines(lines).first(),
             "[S] Dataset as Sub-division (or Extension) for 'House paddock'");
    Click(Find<QCheckBox>(list, "ProcdCkB"));
    QCOMPARE(heading->text(), "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)  ");
  }

  // Scrolled sideways, the heading moves with the lines.
  void headingScrollsWithTheLines() {
    DataListWindow* list = openList();
    for (const char* box : {"ProcdCkB", "ShowCkB_1", "ShowCkB_2", "ShowCkB_3", "ShowCkB_4"}) {
      Click(Find<QCheckBox>(list, box));
    }
    auto* heading = Find<QLabel>(list, "LstHdrLbl");
    QScrollBar* sideways = Find<QListWidget>(list, "DataLst")->horizontalScrollBar();
    QTRY_VERIFY(sideways->maximum() > 100);
    const int before = heading->x();
    sideways->setValue(100);
    QCOMPARE(heading->x(), before - 100);
  }

  void editShowsTheWholeInputOfTheSelectedLine() {
    DataListWindow* list = openList();
    auto* lines = Find<QListWidget>(list, "DataLst");
    Click(Find<QPushButton>(list, "EditBtn"));
    QVERIFY(dialogs_.boxes.empty());  // no line selected
    const QRect line = lines->visualItemRect(lines->item(3));
    QTest::mouseClick(lines->viewport(), Qt::LeftButton, {}, line.center());
    Click(Find<QPushButton>(list, "EditBtn"));
    QCOMPARE(dialogs_.boxes.size(), 1u);
    QCOMPARE(dialogs_.last().text,
             "Point 3\nI/P-X(B): 14\xB0"
             "30'\nI/P-Y(L): 268.4");
    const QPoint next = lines->visualItemRect(lines->item(4)).center();
    QTest::mouseClick(lines->viewport(), Qt::LeftButton, {}, next);
    QTest::mouseDClick(lines->viewport(), Qt::LeftButton, {}, next);
    QCOMPARE(dialogs_.boxes.size(), 2u);
    QCOMPARE(dialogs_.last().text,
             "Point 4\nI/P-X(B): 301\xB0"
             "15'\nI/P-Y(L): 190");
  }

  void copyPutsTheListingOnTheClipboard() {
    DataListWindow* list = openList();
    Click(Find<QPushButton>(list, "CopyBtn"));
    const QStringList copied = QGuiApplication::clipboard()->text().split('\n');
    QCOMPARE(copied[0], "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)");
    QCOMPARE(copied[1], Lines(Find<QListWidget>(list, "DataLst")).first());
  }

  // The legends' texts are the core's (Legends.h); here they reach the labels and close.
  void legendsShowTheirTextsAndClose() {
    Click(Find<QPushButton>(window_, "LegendBtn"));
    auto* area = Find<AreaLegendWindow>(window_, "Legend");
    QCOMPARE(area->windowTitle(), "Area Display Legend");
    QCOMPARE(Texts(area, "LegendLbl").first(), "Main and Sub-division Perimeter Lines");
    ExpectNoAccessibleNameOnLabels(area);
    QCOMPARE(Find<QWidget>(area, "LegendSh_6")->accessibleName(),
             "Symbol: Point for Editing (mouse Left click on a point)");
    Click(Find<QPushButton>(area, "CloseBtn"));
    QVERIFY(!area->isVisible());

    DataListWindow* list = openList();
    Click(Find<QPushButton>(list, "LegendBtn"));
    auto* codes = Find<ListLegendWindow>(list, "ListLegend");
    QCOMPARE(codes->windowTitle(), "List Legend");
    QCOMPARE(Texts(codes, "CodeLbl").first(), "X_: X/Y Co-ordinates");
    ExpectNoAccessibleNameOnLabels(codes);
    Click(Find<QPushButton>(codes, "CloseBtn"));
    QVERIFY(!codes->isVisible());
  }

  void closeEndsTheListing() {
    DataListWindow* list = openList();
    Click(Find<QPushButton>(list, "CloseBtn"));
    QVERIFY(!list->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!window_->findChild<DataListWindow*>());
    // Opened again, it starts afresh.
    list = openList();
    QVERIFY(!Find<QCheckBox>(list, "ProcdCkB")->isChecked());
  }

 private:
  DataListWindow* openList() {
    Click(Find<QPushButton>(window_, "ListBtn"));
    auto* list = window_->findChild<DataListWindow*>("DataList");
    if (!list || !list->isVisible()) qFatal("the listing did not open");
    return list;
  }

  plotmeter::testing::ScriptedDialogs dialogs_;
  MainWindow* window_ = nullptr;
};

QTEST_MAIN(DataListWindowTest)
#include "DataListWindowTest.moc"
