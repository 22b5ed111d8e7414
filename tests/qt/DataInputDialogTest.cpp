// Point editing through the real buttons, keys and the real "Data Input" dialog.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

#include "support/ScriptedDialogs.h"
#include "ui/qt/MainWindow.h"

using plotmeter::Button;
using plotmeter::qt::MainWindow;
using plotmeter::qt::PlotView;
using plotmeter::testing::ScriptedDialogs;

namespace {

// A 100 m square: 1 hectare.
constexpr const char* kSquare =
    "44,#0092,1,0,0,58\nH,M,Square\n1,X,,,0,0\n2,X,,,100,0\n3,X,,,100,100\n4,X,,,0,100\n";

}  // namespace

class DataInputDialogTest : public QObject {
  Q_OBJECT

 private:
  template <typename T = QWidget>
  static T* Find(QWidget* window, const QString& name) {
    T* widget = window->findChild<T*>(name);
    if (!widget) qFatal("no control %s", qPrintable(name));
    return widget;
  }
  template <typename T = QWidget>
  T* Find(const QString& name) {
    return Find<T>(window_.get(), name);
  }
  QString Text(const char* label) { return Find<QLabel>(label)->text(); }
  void Click(const QString& button) {
    QTest::mouseClick(Find<QPushButton>(button), Qt::LeftButton);
  }

  // A left click on point `index` of the drawing.
  void SelectPoint(int index) {
    auto* view = Find<PlotView>("DisplaySh");
    const plotmeter::ScreenPoint& at = window_->logic().scene().screen[index];
    QTest::mouseClick(view, Qt::LeftButton, {}, view->transform().ToDevice(at.x, at.y).toPoint());
    QCOMPARE(Text("EditSubLbl"), QString("Point %1 selected").arg(index + 1));
  }

  // Runs `steps` on the dialog once it is open (it is modal: the click that opens it
  // returns when it has closed). A dialog the steps leave open is cancelled, so that a
  // failed step cannot hang the test.
  void OnDialog(std::function<void(QDialog*)> steps) {
    dialogSeen_ = false;
    QTimer::singleShot(0, this, [this, steps] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog) return;
      dialogSeen_ = true;
      steps(dialog);
      if (dialog->isVisible()) dialog->reject();
    });
  }

  // Types `text` over what a field of the dialog holds, key by key.
  static void Type(QDialog* dialog, const QString& field, const QString& text) {
    auto* edit = Find<QLineEdit>(dialog, field);
    edit->selectAll();
    QTest::keyClicks(edit, text);
  }

  static void ClickIn(QDialog* dialog, const QString& button) {
    QTest::mouseClick(Find<QAbstractButton>(dialog, button), Qt::LeftButton);
  }

  QString Write(const QString& name, const char* text) {
    QFile file(folder_.filePath(name));
    file.open(QIODevice::WriteOnly);
    file.write(text);
    return file.fileName();
  }
  void ChooseFile(const QString& path) {
    dialogs_.files.push_back({.cancelled = false, .path = path.toStdString()});
  }

  QTemporaryDir folder_;
  ScriptedDialogs dialogs_;
  std::unique_ptr<MainWindow> window_;
  bool dialogSeen_ = false;

 private slots:
  void init() {
    dialogs_ = ScriptedDialogs{};
    window_ = std::make_unique<MainWindow>(&dialogs_);
    window_->resize(900, 640);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }

  void modifyChangesThePointAndUndoTakesItBack() {
    window_->openFile(Write("square.csv", kSquare));
    SelectPoint(2);
    OnDialog([](QDialog* dialog) {
      QCOMPARE(dialog->windowTitle(), QString("Data Input"));
      QVERIFY(dialog->isModal());
      QCOMPARE(Find<QLabel>(dialog, "PointValHdrLbl")->text(), QString("Modify Point:"));
      QCOMPARE(Find<QLabel>(dialog, "PointValLbl")->text(), QString("3"));
      QVERIFY(!Find<QLabel>(dialog, "AddNoteLbl")->isVisible());
      QCOMPARE(Find<QLabel>(dialog, "DataTxtLbl_0")->text(), QString("X co-ordinate"));
      QCOMPARE(Find<QLineEdit>(dialog, "DataTxt_0")->text(), QString("100"));
      Type(dialog, "DataTxt_0", "200");
      ClickIn(dialog, "ExitBtn_0");
      QVERIFY(!dialog->isVisible());
    });
    Click("EditPtBtn_0");
    QVERIFY(dialogSeen_);
    QCOMPARE(Text("AreaValLbl"), QString("1.5"));
    QCOMPARE(Text("EditSubLbl"), QString("Click on a Point"));
    QVERIFY(!Find<QPushButton>("EditPtBtn_0")->isEnabled());
    QVERIFY(Find<QPushButton>("EditPtBtn_3")->isEnabled());

    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
    QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(Text("AreaValLbl"), QString("1.0"));
    QVERIFY(!Find<QPushButton>("EditPtBtn_3")->isEnabled());
    QVERIFY(dialogs_.boxes.empty());
  }

  void addInsertsAfterTheSelectedPoint() {
    window_->openFile(Write("square.csv", kSquare));
    SelectPoint(0);
    OnDialog([](QDialog* dialog) {
      QCOMPARE(Find<QLabel>(dialog, "PointValHdrLbl")->text(), QString("Insert Point:"));
      QCOMPARE(Find<QLabel>(dialog, "PointValLbl")->text(), QString("2"));
      QCOMPARE(Find<QLabel>(dialog, "AddNoteLbl")->text(),
               QString("inserted AFTER the selected point"));
      QVERIFY(Find<QLabel>(dialog, "AddNoteLbl")->isVisible());
      // A bearing of 135 degrees, 70.71 m: the point (50, -50) below the first side.
      auto* types = Find<QComboBox>(dialog, "PtTypCmb");
      types->setFocus();
      QTest::keyClick(types, Qt::Key_Down);
      QCOMPARE(Find<QLabel>(dialog, "DataTxtLbl_0")->text(), QString("Bearing (magnetic)"));
      QVERIFY(Find<QLabel>(dialog, "AngleNoteLbl")->text().contains("'min' & 'sec'"));
      Type(dialog, "DataTxt_0", "135");
      Type(dialog, "DataTxt_1", "70.7107");
      ClickIn(dialog, "ExitBtn_0");
    });
    Click("EditPtBtn_1");
    QVERIFY(dialogSeen_);
    QCOMPARE(window_->logic().survey().PointCount(), 5);
    QCOMPARE(Text("AreaValLbl"), QString("1.25"));
    QVERIFY(dialogs_.boxes.empty());
  }

  void escapeAndTheTitleBarCancel() {
    window_->openFile(Write("square.csv", kSquare));
    for (bool escape : {true, false}) {
      SelectPoint(1);
      OnDialog([escape](QDialog* dialog) {
        Type(dialog, "DataTxt_1", "55");
        if (escape) {
          QTest::keyClick(dialog, Qt::Key_Escape);
        } else {
          dialog->close();
        }
        QVERIFY(!dialog->isVisible());
      });
      Click("EditPtBtn_0");
      QVERIFY(dialogSeen_);
      QCOMPARE(window_->logic().survey().Points[1].InYL, std::string("0"));
      QCOMPARE(Text("AreaValLbl"), QString("1.0"));
      QVERIFY(!window_->logic().edit().Unsaved());
    }
  }

  void deleteKeyThenTheExitGuardAsks() {
    window_->openFile(Write("square.csv", kSquare));
    SelectPoint(3);
    QTest::keyClick(window_.get(), Qt::Key_Delete);
    QCOMPARE(window_->logic().survey().PointCount(), 3);
    QCOMPARE(Text("AreaValLbl"), QString("0.5"));
    QVERIFY(!Find<QPushButton>("EditPtBtn_2")->isEnabled());

    QTest::keyClick(window_.get(), Qt::Key_Q, Qt::ControlModifier);  // answered Cancel
    QCOMPARE(dialogs_.boxes.size(), size_t{1});
    QCOMPARE(dialogs_.last().text, std::string("Unsaved data exists, exit anyway ?"));
    QVERIFY(window_->isVisible());

    Click("EditPtBtn_3");
    QCOMPARE(Text("AreaValLbl"), QString("1.0"));
    QTest::keyClick(window_.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(dialogs_.boxes.size(), size_t{1});
    QVERIFY(!window_->isVisible());
  }

  void newSurveyIsEnteredSavedAndLoadedAgain() {
    OnDialog([](QDialog* dialog) {
      QCOMPARE(Find<QLabel>(dialog, "PointValHdrLbl")->text(), QString("New at Point:"));
      auto* units = Find<QComboBox>(dialog, "UOMCmb");
      units->setFocus();
      QTest::keyClick(units, Qt::Key_Down);
      QCOMPARE(units->currentText(), QString("Meters"));
      Type(dialog, "FileTagTxt", "Front field");
      Type(dialog, "DSTagTxt", "Corner pegs");
      const char* corners[][2] = {{"0", "0"}, {"40", "0"}, {"40", "30"}, {"0", "30"}};
      for (int i = 0; i < 4; ++i) {
        if (i > 0) ClickIn(dialog, "NxtPrevBtn_0");
        QCOMPARE(Find<QLabel>(dialog, "PointValLbl")->text(), QString::number(i + 1));
        Type(dialog, "DataTxt_0", corners[i][0]);
        Type(dialog, "DataTxt_1", corners[i][1]);
      }
      ClickIn(dialog, "ExitBtn_0");
    });
    Click("DataBtn_3");
    QVERIFY(dialogSeen_);
    QVERIFY(dialogs_.boxes.empty());
    QCOMPARE(Text("AreaValLbl"), QString("0.12"));
    QCOMPARE(Text("TagFileLbl"), QString("Front field"));
    QVERIFY(!Find<QPushButton>("DataBtn_1")->isEnabled());  // no file yet: "Save As"

    const QString saved = folder_.filePath("front.csv");
    ChooseFile(saved);
    Click("DataBtn_2");
    QCOMPARE(Text("DatSrcLbl"), QString("front.csv"));
    QVERIFY(!window_->logic().edit().Unsaved());

    ChooseFile(saved);
    Click("DataBtn_0");
    QCOMPARE(Text("AreaValLbl"), QString("0.12"));
    QCOMPARE(Text("TagFileLbl"), QString("Front field"));
    QCOMPARE(window_->logic().survey().Datasets.at(0).DatasetTag, std::string("Corner pegs"));
    QVERIFY(dialogs_.boxes.empty());
  }
};

QTEST_MAIN(DataInputDialogTest)
#include "DataInputDialogTest.moc"
