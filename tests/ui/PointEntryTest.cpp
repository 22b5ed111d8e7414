#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "geometry/ResolvePoints.h"
#include "support/EnteredSurvey.h"
#include "support/ScriptedDialogs.h"
#include "ui/DataInputLogic.h"
#include "ui/EditButtons.h"
#include "ui/PointEdits.h"

namespace plotmeter {
namespace {

using testing::Entered;

// The point entry dialog over a 40 by 30 rectangle, with the boxes it shows.
struct DialogRun {
  // Opens the dialog in `mode` on point `selected` of the survey.
  DataInputLogic& Open(std::uint8_t mode, int selected) {
    state.SelectedPoint = selected;
    edit.Dialog = mode;
    dialog.Open();
    return dialog;
  }
  const ControlState& C(const std::string& name) const { return dialog.Control(name); }
  // A value field's label, and whether it takes input.
  std::string Field(int i) const {
    const std::string n = std::to_string(i);
    return C("DataTxtLbl_" + n).text + (C("DataTxt_" + n).enabled ? " on" : " off");
  }
  // The one box shown.
  void ExpectBox(const std::string& title, const std::string& text, Icon icon) const {
    ASSERT_EQ(dialogs.boxes.size(), 1u) << text;
    EXPECT_EQ(dialogs.last().title, title);
    EXPECT_EQ(dialogs.last().text, text);
    EXPECT_EQ(dialogs.last().icon, icon);
  }

  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,40,0\n3,X,,,40,30\n4,X,,,0,30");
  ProcessingState state;
  EditState edit{.File = kFileCurrent};
  UndoSnapshot snapshot;
  testing::ScriptedDialogs dialogs;
  DataInputLogic dialog{survey, state, edit, snapshot, dialogs};
};

// The bearing labels follow bit 0x02 of the type, crossed over the list's own names.
TEST(DataInputTest, InputTypeLabelsAndEnablesTheFields) {
  const struct {
    int item;
    bool intermediate;
    const char *first, *second;
  } rows[] = {
      {2, false, "Bearing (true) on", "Length on"},
      {3, false, "Not applicable off", "Not applicable off"},
      // The length of an intermediate point given by a bearing follows from its line.
      {1, true, "Bearing (magnetic) on", "Length off"},
  };
  for (const auto& row : rows) {
    DialogRun run;
    run.Open(kModifyMode, 2).ChoosePtTypCmb(row.item);
    run.dialog.TickPtQualifCkB(kQualifierIntermediate, row.intermediate);
    EXPECT_EQ(run.Field(0) + " / " + run.Field(1), std::string(row.first) + " / " + row.second);
  }
}

TEST(DataInputTest, HintsWriteTheSeparatorAsItsCode) {
  DialogRun run;
  run.survey.UnitOfMeasure = kUnitFeet;
  run.survey.SubValueSeparator = ':';
  run.Open(kModifyMode, 1).ChoosePtTypCmb(kTypeBearingTrue);
  EXPECT_EQ(run.C("LenNoteLbl").text,
            "May also use '58' separator to input inches, for example '5586' for '5 foot 6 "
            "inches'.");
  EXPECT_EQ(run.C("AngleNoteLbl").text,
            "May also use '58' separator to input 'min' && 'sec' values, for example '2758425850' "
            "for '27 degrees 42 minutes 50 seconds'.");
  EXPECT_EQ(run.C("UOMCmb").items[kUnitFeet], "Feet[:Inches]");

  DialogRun start;  // the start point, without a unit
  start.survey.UnitOfMeasure = kUnitNotSpecified;
  start.Open(kModifyMode, 0);
  EXPECT_EQ(start.C("LenNoteLbl").text, "Only Co-ordinates valid for Start Point.");
  EXPECT_FALSE(start.C("AngleNoteLbl").visible);
}

constexpr const char* kCheck = "Please check entries for errors and correct";

// A value that is refused is kept in its field, and leaving the point reports it again.
TEST(DataInputTest, TypedValuesAreCheckedAsTyped) {
  const struct {
    int unit;
    int item;   // input type
    int field;  // 0, 1 `DataTxt`; 2, 3 `GPSTxt`
    const char* text;
    const char* message;  // the value stored when no box is shown
    bool shown;
  } rows[] = {
      {kUnitMeters, 1, 0, "27:75",
       "Please correct - Minutes and Seconds values must be less than 60", true},
      {kUnitNotSpecified, 0, 1, "5:6",
       "Please correct - Units separator found, invalid with 'Unspecified' Unit of Measure", true},
      {kUnitFeet, 0, 1, "5:6:7",
       "Please correct - Deg/Min/Sec, feet/inch, etc. separator must match character set for "
       "file",
       true},
      {kUnitMeters, 0, 0, "4o", kCheck, true},
      {kUnitFeet, 0, 1, "5:12", kCheck, true},  // twelve inches
      {kUnitFeet, 0, 1, " 5:6 ", "5:6", false},
      {kUnitMeters, 0, 3, "33.5", "N33.5", false},
  };
  const char* fields[] = {"DataTxt_0", "DataTxt_1", "GPSTxt_0", "GPSTxt_1"};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    DialogRun run;
    run.survey.UnitOfMeasure = row.unit;
    run.survey.SubValueSeparator = ':';
    run.Open(kModifyMode, 1).ChoosePtTypCmb(row.item);
    const Point before = run.survey.Points[1];
    if (row.field < 2) run.dialog.TypeDataTxt(row.field, row.text);
    if (row.field >= 2) run.dialog.TypeGPSTxt(row.field - 2, row.text);
    auto value = [&](const Point& p) {
      return std::vector{p.InXA, p.InYL, p.InGPSLong, p.InGPSLat}[row.field];
    };
    if (!row.shown) {
      EXPECT_TRUE(run.dialogs.boxes.empty());
      EXPECT_EQ(value(run.survey.Points[1]), row.message);
      continue;
    }
    run.ExpectBox("Invalid Data Entry", row.message,
                  row.message == kCheck ? Icon::Critical : Icon::Exclamation);
    EXPECT_EQ(run.dialogs.beeps, 1);
    EXPECT_EQ(value(run.survey.Points[1]), value(before));
    EXPECT_EQ(run.C(fields[row.field]).text, row.text);
    run.dialog.ClickApply();
    EXPECT_EQ(run.dialogs.boxes.size(), 2u);
    EXPECT_TRUE(run.dialog.IsOpen());
  }
}

TEST(DataInputTest, GpsValueIsLoadedAndStoredWithItsHemisphere) {
  DialogRun run;
  run.survey.Points[1].InGPSLong = "151.2 W";
  run.Open(kModifyMode, 1);
  EXPECT_EQ(run.C("GPSCmb_0").index, 1);
  EXPECT_EQ(run.C("GPSTxt_0").text, "151.2");
  run.dialog.ChooseGPSCmb(0, 0);
  EXPECT_EQ(run.survey.Points[1].InGPSLong, "E151.2");
}

TEST(DataInputTest, AUnitChoiceIsAskedOrRefusedAndTheUnitInForceShown) {
  const char* notConverted =
      "Changing the Unit of Measure does not convert the associated numerical values.\n\n"
      "Proceed Anyway ?";
  const struct {
    bool gpsPoint;
    int chosen;
    Button answer;
    int unitAfter;
    const char* message;
    Icon icon;
  } rows[] = {
      {true, kUnitNotSpecified, Button::Yes, kUnitMeters,
       "Cannot select 'Not specified' points dependent on GPS values", Icon::Critical},
      {false, kUnitFeet, Button::No, kUnitMeters, notConverted, Icon::Question},
      {false, kUnitFeet, Button::Yes, kUnitFeet, notConverted, Icon::Question},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.unitAfter);
    DialogRun run;
    if (row.gpsPoint) run.survey.Points[3].PtFlags |= kPtGps | kPtAltGps;
    run.dialogs.answers.push_back(row.answer);
    run.Open(kModifyMode, 1).ChooseUOMCmb(row.chosen);
    run.ExpectBox("Unit of Measure", row.message, row.icon);
    EXPECT_EQ(run.survey.UnitOfMeasure, row.unitAfter);
    EXPECT_EQ(run.C("UOMCmb").index, row.unitAfter);
  }
}

TEST(DataInputTest, NextIsDisabledAtThe210thPoint) {
  DialogRun run;
  run.survey = Entered("H,M");
  for (int i = 0; i < kPointLimit; ++i) {
    run.survey.Points.push_back(
        Point{.PtFlags = kPtXY, .PtNumber = i + 1, .InXA = "1", .InYL = "1"});
  }
  run.Open(kModifyMode, kPointLimit - 2).ClickNext();
  EXPECT_EQ(run.dialog.SelectionText(), "Point 210 selected");
  EXPECT_FALSE(run.C("NxtPrevBtn_0").enabled);
  EXPECT_TRUE(run.C("NxtPrevBtn_1").enabled);
}

TEST(DataInputTest, NextHoldsOrGivesUpAnUnfinishedPoint) {
  const struct {
    const char* typed;  // into the X field of a point inserted after point 2
    Button answer;
    const char* title;
    const char* message;
    Icon icon;
    bool stays;
  } rows[] = {
      {"7", Button::Yes, "Invalid Data", "Both entry fields must contain values", Icon::Exclamation,
       true},
      {"", Button::No, "Point Add / Edit", "Incomplete data, terminate this entry ?",
       Icon::Question, true},
      {"", Button::Yes, "Point Add / Edit", "Incomplete data, terminate this entry ?",
       Icon::Question, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.message);
    DialogRun run;
    run.Open(kInsertMode, 1).TypeDataTxt(0, row.typed);
    run.dialogs.answers.push_back(row.answer);
    run.dialog.ClickNext();
    run.ExpectBox(row.title, row.message, row.icon);
    EXPECT_EQ(run.survey.PointCount(), row.stays ? 5 : 4);
    EXPECT_EQ(run.dialog.CurrentPointIndex(), 2);
    EXPECT_EQ(run.C("PointValHdrLbl").text, row.stays ? "Insert Point:" : "Modify Point:");
  }
}

TEST(DataInputTest, ApplyWithoutAnUnfinishedPointOnlyWhenEnoughRemain) {
  DialogRun run;
  run.survey = Entered("H,M\n1,X,,,0,0\n2,X,,,40,0");
  run.Open(kInsertMode, 1).ClickApply();
  run.ExpectBox("Point Add / Edit", "Please correct for incomplete data, 'Apply' not allowed.",
                Icon::Question);
  EXPECT_TRUE(run.dialog.IsOpen());

  run.dialogs.boxes.clear();
  run.dialog.ChooseTypOpt(1);  // a main dataset that is not a perimeter needs two points
  EXPECT_EQ(run.survey.Datasets[0].DatasetType, kTypeN);
  run.dialogs.answers.push_back(Button::Yes);
  run.dialog.ClickApply();
  run.ExpectBox("Point Add / Edit", "Incomplete data, Apply without this entry ?", Icon::Question);
  EXPECT_EQ(run.dialog.Outcome(), DialogOutcome::Applied);
  EXPECT_EQ(run.survey.PointCount(), 2);
  EXPECT_TRUE(run.edit.Changes & kDatasetSettingsChanged);
}

// Apply checks the point against positions worked out afresh, then that the data would
// load again; the dialog stays open on either fault.
TEST(DataInputTest, ApplyReportsThePointCheckAndDataThatWouldNotLoadAgain) {
  DialogRun run;
  ASSERT_TRUE(ResolvePoints(run.survey, run.state, kFirstPass, run.dialogs));
  run.Open(kModifyMode, 2).TypeDataTxt(0, "40");
  run.dialog.TypeDataTxt(1, "0");
  run.dialog.ClickApply();
  EXPECT_EQ(run.dialogs.last().title, "Invalid Interim Point Entry");  // CheckEnteredPointTest's
  EXPECT_TRUE(run.dialog.IsOpen());

  DialogRun join;
  join.Open(kModifyMode, 2).TickPtQualifCkB(kQualifierJoin, true);
  join.dialog.ClickApply();
  EXPECT_EQ(join.dialogs.last().title, "Point Add / Edit");  // its text: the reader's
  EXPECT_TRUE(join.dialog.IsOpen());
}

// A tag is kept as the data file gives it back: one line, no blanks around it, no
// separator at its end.
TEST(DataInputTest, TagsAreKeptAsTheFileReadsThem) {
  DialogRun run;
  run.Open(kModifyMode, 1).TypeDSTagTxt(" North, fence,, ");
  run.dialog.TypeFileTagTxt("Lot 7\r\nsouth ");
  EXPECT_EQ(run.survey.Datasets[0].DatasetTag, "North, fence");
  EXPECT_EQ(run.survey.FileTag, "Lot 7south");
  EXPECT_EQ(run.C("DSTagTxt").text, " North, fence,, ");  // the field keeps what was typed
}

// ---------------------------------------------------------------------------------------
// Deleting points, and the edit buttons around the dialog

// Point 3 is an intermediate point given by a length along the line to point 4, which is
// measured from it; point 7 is an intermediate point given by co-ordinates.
constexpr const char* kLoaded =
    "H,M\n1,X,,,0,0\n2,X,,,40,0\n3,BI,2,,,10\n4,B,,,0,20\n5,X,,,0,30\n"
    "H,L\n6,X,,,5,5\n7,XI,,,6,5\n8,B,,,90,4\n"
    "H,P\n9,X,,,1,1";

// The entered part of every point, in order, with the dataset starts.
std::string Entries(const Survey& survey) {
  std::string text;
  for (const Dataset& dataset : survey.Datasets) text += "@" + std::to_string(dataset.DatasetStart);
  for (const Point& point : survey.Points) {
    text += " " + std::to_string(point.PtNumber) + ":" + point.InXA + "," + point.InYL;
  }
  return text;
}

TEST(PointEditsTest, DeleteRemovesThePointOrRefusesSilently) {
  const struct {
    const char* name;
    int index;
    bool deleted;
    const char* followingLength;  // of the point that takes the deleted one's place
  } rows[] = {
      {"start point", 5, false, ""},
      {"only point of its dataset", 8, false, ""},
      {"intermediate by length lengthens the next", 2, true, "30.0"},
      {"intermediate by co-ordinates", 6, true, "4"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Survey before = Entered(kLoaded);
    Survey survey = before;
    ASSERT_EQ(DeletePoint(survey, row.index), row.deleted);
    if (!row.deleted) {
      EXPECT_EQ(Entries(survey), Entries(before));
      continue;
    }
    ASSERT_EQ(survey.PointCount(), before.PointCount() - 1);
    for (int later = DatasetOfPoint(before, row.index) + 1; later < survey.DatasetCount();
         ++later) {
      EXPECT_EQ(survey.Datasets[later].DatasetStart, before.Datasets[later].DatasetStart - 1);
    }
    EXPECT_EQ(survey.Points[row.index].PtNumber, before.Points[row.index + 1].PtNumber);
    EXPECT_EQ(survey.Points[row.index].InYL, row.followingLength);
  }
}

// The edit buttons over the data, the dialog run as a user would: each edit types a new X
// into point 2 and applies or cancels; processing runs are counted.
struct EditSession : EditWindow, DialogRun {
  EditSession() { survey = Entered(kLoaded); }

  void ShowPointDialog() override {
    DataInputLogic shown(survey, state, edit, snapshot, dialogs);
    shown.Open();
    shown.TypeDataTxt(0, std::to_string(++typed));
    shown.ClickExitBtn(cancel ? 1 : 0);
    EXPECT_FALSE(shown.IsOpen());
  }
  void RunProcessing() override { ++processingRuns; }

  // Each letter one action on point 2: D delete, M modify and apply, C modify and cancel,
  // U UnDo; S deletes the start point (refused). The point is selected first, as a click
  // on it does.
  void Run(std::string_view actions) {
    if (history.empty()) history.push_back(Entries(survey));
    for (char action : actions) {
      if (action != 'U') {
        state.SelectedPoint = action == 'S' ? 0 : 1;
        state.SelectedDataset = 1;
        buttons.EditPtBtn = {true, true, true, buttons.EditPtBtn[kUndoButton]};
      }
      cancel = action == 'C';
      OnEditPointButton(context, action == 'D' || action == 'S' ? kDeleteButton
                                 : action == 'U'                ? kUndoButton
                                                                : kModifyButton);
      history.push_back(Entries(survey));
    }
  }

  EditButtonsEnabled buttons{.SaveBtn = true};
  PointEditContext context{survey, state, edit, snapshot, buttons, *this};
  std::vector<std::string> history;
  int typed = 100;
  bool cancel = false;
  int processingRuns = 0;
};

TEST(EditButtonsTest, SequencesLeaveTheirDataMarksAndSnapshot) {
  const struct {
    const char* actions;
    bool unsaved;       // the exit guard asks
    int sameAsAfter;    // the data is as it was after this many actions
    int snapshotAfter;  // the snapshot holds the data as after this many actions
  } rows[] = {
      {"DDU", true, 1, 1},
      {"MMUU", true, 1, 1},  // UnDo takes back only the last edit, then is disabled
      // Cancelled: the snapshot is taken all the same.
      {"DC", true, 1, 1},
      // UnDo after a refused deletion once cleared the marks of data still changed.
      {"MSU", true, 1, 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.actions);
    EditSession session;
    session.Run(row.actions);
    EXPECT_EQ(session.edit.Unsaved(), row.unsaved);
    EXPECT_EQ(session.history.back(), session.history[row.sameAsAfter]);
    Survey snapshotData;
    RestoreUndoSnapshot(snapshotData, session.snapshot);
    EXPECT_EQ(Entries(snapshotData), session.history[row.snapshotAfter]);
    EXPECT_FALSE(session.buttons.EditPtBtn[kModifyButton] ||
                 session.buttons.EditPtBtn[kDeleteButton]);
    if (std::string_view(row.actions).ends_with('U')) {
      EXPECT_FALSE(session.buttons.EditPtBtn[kUndoButton]);
    }
    EXPECT_EQ(session.state.SelectedPoint, -1);
    EXPECT_TRUE(session.dialogs.boxes.empty());
  }
}

TEST(EditButtonsTest, DeleteEndsWithTheSaveRule) {
  const struct {
    std::uint8_t changes, file;
    int deleted;
    bool saveEnabled;
  } rows[] = {
      {0, kFileCurrent, 1, true},   // deleted
      {0, 0, 1, false},             // no file current
      {0, kFileCurrent, 0, false},  // refused, nothing changed
      // A refused deletion after a change keeps the change across UnDo.
      {kDataChanged, kFileCurrent, 0, true},
  };
  for (const auto& row : rows) {
    EditSession session;
    session.edit = {.Changes = row.changes, .File = row.file};
    session.state.SelectedPoint = row.deleted;
    session.buttons.EditPtBtn[kDeleteButton] = true;
    OnEditPointButton(session.context, kDeleteButton);
    EXPECT_EQ(session.buttons.SaveBtn, row.saveEnabled) << row.deleted << row.file;
    EXPECT_TRUE(session.buttons.EditPtBtn[kUndoButton]);
  }
}

}  // namespace
}  // namespace plotmeter
