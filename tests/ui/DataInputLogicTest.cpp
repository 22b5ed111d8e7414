#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "geometry/ResolvePoints.h"
#include "support/EnteredSurvey.h"
#include "support/ScriptedDialogs.h"
#include "ui/DataInputLogic.h"
#include "ui/EditButtons.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ScriptedDialogs;

constexpr const char* kSquare = "H,M\n1,X,,,0,0\n2,X,,,40,0\n3,X,,,40,30\n4,X,,,0,30";

class DataInputTest : public ::testing::Test {
 protected:
  // Opens the dialog in `mode` on point `selected` of the survey.
  void Open(std::uint8_t mode, int selected) {
    state.SelectedPoint = selected;
    edit.Dialog = mode;
    dialog.Open();
  }
  const ControlState& C(const std::string& name) { return dialog.Control(name); }
  // The one box shown, with its beep when it is a fault.
  void ExpectBox(const std::string& title, const std::string& text, Icon icon) {
    ASSERT_EQ(dialogs.boxes.size(), 1u) << text;
    EXPECT_EQ(dialogs.last().title, title);
    EXPECT_EQ(dialogs.last().text, text);
    EXPECT_EQ(dialogs.last().icon, icon);
  }

  Survey survey = Entered(kSquare);
  ProcessingState state;
  EditState edit{.File = kFileCurrent};
  UndoSnapshot snapshot;
  ScriptedDialogs dialogs;
  DataInputLogic dialog{survey, state, edit, snapshot, dialogs};
};

struct TypeRow {
  int item;
  bool intermediate;
  const char* first;
  const char* second;
  bool firstEnabled;
  bool secondEnabled;
};

class InputTypeTest : public DataInputTest, public ::testing::WithParamInterface<TypeRow> {};

// The bearing labels follow bit 0x02 of the type, crossed over the list's own names.
TEST_P(InputTypeTest, LabelsAndEnablesTheFields) {
  const TypeRow& row = GetParam();
  Open(kModifyMode, 2);
  dialog.ChoosePtTypCmb(row.item);
  dialog.TickPtQualifCkB(kQualifierIntermediate, row.intermediate);
  EXPECT_EQ(dialog.CurrentInputType(), 1 << row.item);
  EXPECT_EQ(C("PtTypCmb").index, row.item);
  EXPECT_EQ(C("DataTxtLbl_0").text, row.first);
  EXPECT_EQ(C("DataTxtLbl_1").text, row.second);
  EXPECT_EQ(C("DataTxt_0").enabled, row.firstEnabled);
  EXPECT_EQ(C("DataTxt_1").enabled, row.secondEnabled);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, InputTypeTest,
    ::testing::Values(
        TypeRow{0, false, "X co-ordinate", "Y co-ordinate", true, true},
        TypeRow{1, false, "Bearing (magnetic)", "Length", true, true},
        TypeRow{2, false, "Bearing (true)", "Length", true, true},
        TypeRow{3, false, "Not applicable", "Not applicable", false, false},
        TypeRow{4, false, "Not applicable", "Not applicable", false, false},
        // The length of an intermediate point given by a bearing follows from its line.
        TypeRow{1, true, "Bearing (magnetic)", "Length", true, false}));

TEST_F(DataInputTest, HintsWriteTheSeparatorAsItsCode) {
  survey.UnitOfMeasure = kUnitFeet;
  survey.SubValueSeparator = ':';
  Open(kModifyMode, 1);
  dialog.ChoosePtTypCmb(kTypeBearingTrue);
  EXPECT_EQ(C("LenNoteLbl").text,
            "May also use '58' separator to input inches, for example '5586' for '5 foot 6 "
            "inches'.");
  EXPECT_EQ(C("AngleNoteLbl").text,
            "May also use '58' separator to input 'min' && 'sec' values, for example '2758425850' "
            "for '27 degrees 42 minutes 50 seconds'.");
  EXPECT_EQ(C("UOMCmb").items[kUnitFeet], "Feet[:Inches]");
}

TEST_F(DataInputTest, StartPointHintWithoutUnit) {
  survey.UnitOfMeasure = kUnitNotSpecified;
  Open(kModifyMode, 0);
  EXPECT_EQ(C("LenNoteLbl").text, "Only Co-ordinates valid for Start Point.");
  EXPECT_FALSE(C("AngleNoteLbl").visible);
}

struct TypedRow {
  const char* name;
  int unit;
  int item;   // input type
  int field;  // 0, 1 `DataTxt`; 2, 3 `GPSTxt`
  const char* text;
  const char* message;  // "" when the value is stored
  Icon icon;
  const char* stored;
};

void PrintTo(const TypedRow& row, std::ostream* out) { *out << row.name; }

class TypedValueTest : public DataInputTest, public ::testing::WithParamInterface<TypedRow> {};

TEST_P(TypedValueTest, IsCheckedAsTyped) {
  const TypedRow& row = GetParam();
  survey.UnitOfMeasure = row.unit;
  survey.SubValueSeparator = ':';
  Open(kModifyMode, 1);
  dialog.ChoosePtTypCmb(row.item);
  const Point before = survey.Points[1];
  if (row.field < 2) {
    dialog.TypeDataTxt(row.field, row.text);
  } else {
    dialog.TypeGPSTxt(row.field - 2, row.text);
  }
  const Point& point = survey.Points[1];
  const std::string stored[] = {point.InXA, point.InYL, point.InGPSLong, point.InGPSLat};
  const std::string old[] = {before.InXA, before.InYL, before.InGPSLong, before.InGPSLat};
  if (*row.message == '\0') {
    EXPECT_TRUE(dialogs.boxes.empty());
    EXPECT_EQ(stored[row.field], row.stored);
    return;
  }
  ExpectBox("Invalid Data Entry", row.message, row.icon);
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_EQ(stored[row.field], old[row.field]);
  // The field keeps the text, and leaving the point reports it again.
  EXPECT_EQ(C(row.field < 2 ? "DataTxt_" + std::to_string(row.field)
                            : "GPSTxt_" + std::to_string(row.field - 2))
                .text,
            row.text);
  dialog.ClickApply();
  EXPECT_EQ(dialogs.boxes.size(), 2u);
  EXPECT_TRUE(dialog.IsOpen());
}

constexpr const char* kOver60 = "Please correct - Minutes and Seconds values must be less than 60";
constexpr const char* kUnspecified =
    "Please correct - Units separator found, invalid with 'Unspecified' Unit of Measure";
constexpr const char* kSeparator =
    "Please correct - Deg/Min/Sec, feet/inch, etc. separator must match character set for file";
constexpr const char* kCheck = "Please check entries for errors and correct";

INSTANTIATE_TEST_SUITE_P(
    Rows, TypedValueTest,
    ::testing::Values(
        TypedRow{"minutes of 75", kUnitMeters, 1, 0, "27:75", kOver60, Icon::Exclamation},
        TypedRow{"separator without a unit", kUnitNotSpecified, 0, 1, "5:6", kUnspecified,
                 Icon::Exclamation},
        TypedRow{"separator out of place", kUnitFeet, 0, 1, "5:6:7", kSeparator, Icon::Exclamation},
        TypedRow{"not a number", kUnitMeters, 0, 0, "4o", kCheck, Icon::Critical},
        TypedRow{"twelve inches", kUnitFeet, 0, 1, "5:12", kCheck, Icon::Critical},
        TypedRow{"latitude beyond 90", kUnitMeters, 0, 3, "95", kCheck, Icon::Critical},
        TypedRow{"feet and inches", kUnitFeet, 0, 1, " 5:6 ", "", Icon::None, "5:6"},
        TypedRow{"bearing in minutes", kUnitMeters, 1, 0, "27:42:50", "", Icon::None, "27:42:50"},
        TypedRow{"latitude behind its letter", kUnitMeters, 0, 3, "33.5", "", Icon::None,
                 "N33.5"}));

TEST_F(DataInputTest, GpsValueIsLoadedAndStoredWithItsHemisphere) {
  survey.Points[1].InGPSLong = "151.2 W";
  Open(kModifyMode, 1);
  EXPECT_EQ(C("GPSCmb_0").index, 1);
  EXPECT_EQ(C("GPSTxt_0").text, "151.2");
  dialog.ChooseGPSCmb(0, 0);
  EXPECT_EQ(survey.Points[1].InGPSLong, "E151.2");
}

struct UnitRow {
  const char* name;
  bool gpsPoint;
  int chosen;
  Button answer;
  int unitAfter;
  const char* message;
  Icon icon;
};

void PrintTo(const UnitRow& row, std::ostream* out) { *out << row.name; }

class UnitChoiceTest : public DataInputTest, public ::testing::WithParamInterface<UnitRow> {};

TEST_P(UnitChoiceTest, AsksOrRefusesAndShowsTheUnitInForce) {
  const UnitRow& row = GetParam();
  if (row.gpsPoint) survey.Points[3].PtFlags |= kPtGps | kPtAltGps;
  Open(kModifyMode, 1);
  dialogs.answers.push_back(row.answer);
  dialog.ChooseUOMCmb(row.chosen);
  ExpectBox("Unit of Measure", row.message, row.icon);
  EXPECT_EQ(survey.UnitOfMeasure, row.unitAfter);
  EXPECT_EQ(C("UOMCmb").index, row.unitAfter);
}

constexpr const char* kNotConverted =
    "Changing the Unit of Measure does not convert the associated numerical values.\n\n"
    "Proceed Anyway ?";

INSTANTIATE_TEST_SUITE_P(
    Rows, UnitChoiceTest,
    ::testing::Values(UnitRow{"not specified with GPS points", true, kUnitNotSpecified, Button::Yes,
                              kUnitMeters,
                              "Cannot select 'Not specified' points dependent on GPS values",
                              Icon::Critical},
                      UnitRow{"answered No", false, kUnitFeet, Button::No, kUnitMeters,
                              kNotConverted, Icon::Question},
                      UnitRow{"answered Yes", false, kUnitFeet, Button::Yes, kUnitFeet,
                              kNotConverted, Icon::Question}));

TEST_F(DataInputTest, NextIsDisabledAtThe210thPoint) {
  survey = Entered("H,M");
  for (int i = 0; i < kPointLimit; ++i) {
    survey.Points.push_back(Point{.PtFlags = kPtXY, .PtNumber = i + 1, .InXA = "1", .InYL = "1"});
  }
  Open(kModifyMode, kPointLimit - 2);
  EXPECT_TRUE(C("NxtPrevBtn_0").enabled);
  dialog.ClickNext();
  EXPECT_EQ(dialog.CurrentPointIndex(), kPointLimit - 1);
  EXPECT_EQ(dialog.SelectionText(), "Point 210 selected");
  EXPECT_FALSE(C("NxtPrevBtn_0").enabled);
  EXPECT_TRUE(C("NxtPrevBtn_1").enabled);
}

struct LeaveRow {
  const char* name;
  const char* typed;  // into the X field of a point inserted after point 2
  Button answer;
  const char* title;
  const char* message;
  Icon icon;
  bool stays;
};

void PrintTo(const LeaveRow& row, std::ostream* out) { *out << row.name; }

class NextTest : public DataInputTest, public ::testing::WithParamInterface<LeaveRow> {};

TEST_P(NextTest, AnUnfinishedPointIsHeldOrGivenUp) {
  const LeaveRow& row = GetParam();
  Open(kInsertMode, 1);
  EXPECT_EQ(C("PointValHdrLbl").text, "Insert Point:");
  EXPECT_TRUE(C("AddNoteLbl").visible);
  dialog.TypeDataTxt(0, row.typed);
  dialogs.answers.push_back(row.answer);
  dialog.ClickNext();
  ExpectBox(row.title, row.message, row.icon);
  EXPECT_EQ(survey.PointCount(), row.stays ? 5 : 4);
  EXPECT_EQ(dialog.CurrentPointIndex(), 2);
  EXPECT_EQ(C("PointValHdrLbl").text, row.stays ? "Insert Point:" : "Modify Point:");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, NextTest,
    ::testing::Values(LeaveRow{"one value", "7", Button::Yes, "Invalid Data",
                               "Both entry fields must contain values", Icon::Exclamation, true},
                      LeaveRow{"nothing, kept", "", Button::No, "Point Add / Edit",
                               "Incomplete data, terminate this entry ?", Icon::Question, true},
                      LeaveRow{"nothing, given up", "", Button::Yes, "Point Add / Edit",
                               "Incomplete data, terminate this entry ?", Icon::Question, false}));

TEST_F(DataInputTest, ApplyWithoutAnUnfinishedPointOnlyWhenEnoughRemain) {
  survey = Entered("H,M\n1,X,,,0,0\n2,X,,,40,0");
  Open(kInsertMode, 1);
  dialog.ClickApply();
  ExpectBox("Point Add / Edit", "Please correct for incomplete data, 'Apply' not allowed.",
            Icon::Question);
  EXPECT_TRUE(dialog.IsOpen());

  dialogs.boxes.clear();
  dialog.ChooseTypOpt(1);  // a main dataset that is not a perimeter needs two points
  EXPECT_EQ(survey.Datasets[0].DatasetType, kTypeN);
  dialogs.answers.push_back(Button::Yes);
  dialog.ClickApply();
  ExpectBox("Point Add / Edit", "Incomplete data, Apply without this entry ?", Icon::Question);
  EXPECT_EQ(dialog.Outcome(), DialogOutcome::Applied);
  EXPECT_EQ(survey.PointCount(), 2);
  EXPECT_TRUE(edit.Changes & kDatasetSettingsChanged);
}

TEST_F(DataInputTest, ApplyReportsThePointCheck) {
  ASSERT_TRUE(ResolvePoints(survey, state, kFirstPass, dialogs));
  Open(kModifyMode, 2);
  dialog.TypeDataTxt(0, "40");
  dialog.TypeDataTxt(1, "0");
  dialog.ClickApply();
  ExpectBox("Invalid Interim Point Entry",
            "Please correct entry for Point 3\nPoint is identical to an earlier point\n"
            "Please change or delete one of these points to enable processing.",
            Icon::Critical);
  EXPECT_TRUE(dialog.IsOpen());
}

TEST_F(DataInputTest, ApplyRefusesDataThatWouldNotLoadAgain) {
  Open(kModifyMode, 2);
  dialog.TickPtQualifCkB(kQualifierJoin, true);
  dialog.ClickApply();
  ExpectBox("Point Add / Edit",
            "File may only have 0 or 2 sub-division join points specified.\n"
            "Please correct for a valid file",
            Icon::Critical);
  EXPECT_TRUE(dialog.IsOpen());
}

// A tag is kept as the data file gives it back: one line, no blanks around it, no
// separator at its end.
TEST_F(DataInputTest, TagsAreKeptAsTheFileReadsThem) {
  Open(kModifyMode, 1);
  dialog.TypeDSTagTxt(" North, fence,, ");
  dialog.TypeFileTagTxt("Lot 7\r\nsouth ");
  EXPECT_EQ(survey.Datasets[0].DatasetTag, "North, fence");
  EXPECT_EQ(survey.FileTag, "Lot 7south");
  EXPECT_EQ(C("DSTagTxt").text, " North, fence,, ");  // the field keeps what was typed
}

}  // namespace
}  // namespace plotmeter
