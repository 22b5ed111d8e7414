// Point editing through the real buttons, keys and the real "Data Input" dialog.
#include <QLineEdit>

#include "qt/WindowDriver.h"

class DataInputDialogTest : public QObject, plotmeter::testing::WindowDriver {
  Q_OBJECT

  // Types `text` over what a field of the dialog holds, key by key.
  static void Type(QDialog* dialog, const QString& field, const QString& text) {
    auto* edit = Find<QLineEdit>(dialog, field);
    edit->selectAll();
    QTest::keyClicks(edit, text);
  }

 private slots:
  void init() {
    ShowWindow();
    OpenRectangle("1", "100", "100");  // a 100 m square: 1 hectare
  }

  // Escape and the title bar's close cancel what was typed; Modify applies it, and Ctrl+Z
  // takes it back; Delete from the keyboard, then the exit guard and UnDo.
  void modifyAndDeleteAreCancelledOrUndone() {
    for (bool escape : {true, false}) {
      ClickPoint(1);
      InDialog("EditPtBtn_0", [escape](QDialog* dialog) {
        Type(dialog, "DataTxt_1", "55");
        escape ? QTest::keyClick(dialog, Qt::Key_Escape) : void(dialog->close());
        QVERIFY(!dialog->isVisible());
      });
      QVERIFY(!window_->logic().edit().Unsaved());
    }
    ClickPoint(2);
    InDialog("EditPtBtn_0", [](QDialog* dialog) {
      QCOMPARE(dialog->windowTitle(), "Data Input");
      QCOMPARE(Find<QLineEdit>(dialog, "DataTxt_0")->text(), "100");
      Type(dialog, "DataTxt_0", "200");
      Click(Find(dialog, "ExitBtn_0"));
      QVERIFY(!dialog->isVisible());
    });
    QCOMPARE(Text("AreaValLbl"), "1.5");
    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
    QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(Text("AreaValLbl"), "1.0");

    ClickPoint(3);
    QTest::keyClick(window_.get(), Qt::Key_Delete);
    QCOMPARE(Text("AreaValLbl"), "0.5");
    QTest::keyClick(window_.get(), Qt::Key_Q, Qt::ControlModifier);  // answered Cancel
    QCOMPARE(dialogs_.boxes.size(), 1u);
    QCOMPARE(dialogs_.last().text, "Unsaved data exists, exit anyway ?");
    QVERIFY(window_->isVisible());
    Click("EditPtBtn_3");  // nothing left unsaved: no question
    QTest::keyClick(window_.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(dialogs_.boxes.size(), 1u);
    QVERIFY(!window_->isVisible());
  }

  void addInsertsAfterTheSelectedPoint() {
    ClickPoint(0);
    InDialog("EditPtBtn_1", [](QDialog* dialog) {
      QVERIFY(Find(dialog, "AddNoteLbl")->isVisible());
      QCOMPARE(Text(dialog, "AddNoteLbl"), "inserted AFTER the selected point");
      // A bearing of 135 degrees, 70.71 m: the point (50, -50) below the first side.
      QTest::keyClick(Find(dialog, "PtTypCmb"), Qt::Key_Down);
      QCOMPARE(Text(dialog, "DataTxtLbl_0"), "Bearing (magnetic)");
      // A hint's doubled ampersand shows single.
      QVERIFY(Text(dialog, "AngleNoteLbl").contains("'min' & 'sec'"));
      Type(dialog, "DataTxt_0", "135");
      Type(dialog, "DataTxt_1", "70.7107");
      Click(Find(dialog, "ExitBtn_0"));
    });
    QCOMPARE(Text("AreaValLbl"), "1.25");
  }

  void newSurveyIsEnteredAndSaved() {
    InDialog("DataBtn_3", [](QDialog* dialog) {
      QTest::keyClick(Find(dialog, "UOMCmb"), Qt::Key_Down);
      Type(dialog, "FileTagTxt", "Front field");
      Type(dialog, "DSTagTxt", "Corner pegs");
      const char* corners[][2] = {{"0", "0"}, {"40", "0"}, {"40", "30"}, {"0", "30"}};
      for (int i = 0; i < 4; ++i) {
        if (i > 0) Click(Find(dialog, "NxtPrevBtn_0"));
        Type(dialog, "DataTxt_0", corners[i][0]);
        Type(dialog, "DataTxt_1", corners[i][1]);
      }
      Click(Find(dialog, "ExitBtn_0"));
    });
    // In hectares (the survey is in metres); no file yet, so "Save As".
    ExpectShown({"AreaValLbl=0.12", "TagFileLbl=Front field", "DataBtn_1=Save (off)"});
    QCOMPARE(window_->logic().survey().Datasets.at(0).DatasetTag, "Corner pegs");
    dialogs_.files.push_back({.cancelled = false, .path = folder_.filePath("x.csv").toStdString()});
    Click("DataBtn_2");
    QCOMPARE(Text("DatSrcLbl"), "x.csv");
  }
};

QTEST_MAIN(DataInputDialogTest)
#include "DataInputDialogTest.moc"
