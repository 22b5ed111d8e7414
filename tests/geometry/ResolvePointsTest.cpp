#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "geometry/ProcessingState.h"
#include "geometry/ResolvePoints.h"
#include "geometry/ResolveSurveyBuilder.h"
#include "support/ScriptedDialogs.h"

namespace plotmeter {
namespace {

using testing::EnteredSurvey;
using testing::ScriptedDialogs;

const std::string kChange = "Please change or delete one of these points to enable processing.";
const std::string kRepeatFailed =
    "Bad reiterative calculations (for GPS / Inermediate Pt Target data)";

class ResolvePointsTest : public ::testing::Test {
 protected:
  bool Resolve(Survey& survey) { return ResolvePoints(survey, state, kFirstPass, dialogs); }

  void ExpectOneCriticalBox(const std::string& title, const std::string& text) {
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_EQ(dialogs.last().title, title);
    EXPECT_EQ(dialogs.last().text, text);
    EXPECT_EQ(dialogs.last().icon, Icon::Critical);
    EXPECT_EQ(dialogs.last().buttons, Buttons::Ok);
    EXPECT_EQ(dialogs.last().defaultButton, Button::Ok);
    EXPECT_EQ(dialogs.beeps, 1);
  }

  ProcessingState state;
  ScriptedDialogs dialogs;
};

struct AxisBearing {
  const char* bearing;
  float x;
  float y;
};

class BearingFromOriginTest : public ResolvePointsTest,
                              public ::testing::WithParamInterface<AxisBearing> {};

TEST_P(BearingFromOriginTest, TenAlongTheBearingFromTheOrigin) {
  Survey survey =
      EnteredSurvey().Dataset(kTypeN).Xy("0", "0").Bearing(GetParam().bearing, "10").Build();
  ASSERT_TRUE(Resolve(survey));
  const Point& p = survey.Points[1];
  EXPECT_NEAR(p.X, GetParam().x, 1e-5);
  EXPECT_NEAR(p.Y, GetParam().y, 1e-5);
  EXPECT_EQ(p.Bearing, std::stof(GetParam().bearing));
  EXPECT_EQ(p.Len, 10);
  EXPECT_TRUE(dialogs.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(Axes, BearingFromOriginTest,
                         ::testing::Values(AxisBearing{"0", 0, 10}, AxisBearing{"90", 10, 0},
                                           AxisBearing{"180", 0, -10}, AxisBearing{"270", -10, 0}));

TEST_F(ResolvePointsTest, PointDueWestHasBearing270AndThePositiveXDifference) {
  Survey survey = EnteredSurvey().Dataset(kTypeN).Xy("5", "2").Xy("-7.5", "2").Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[1].Bearing, 270);
  EXPECT_EQ(survey.Points[1].Len, 12.5f);
  EXPECT_EQ(survey.Points[0].Bearing, 0);
  EXPECT_EQ(survey.Points[0].Len, 0);
}

TEST_F(ResolvePointsTest, CoordinatePointsGetBearingAndLengthFromThePreviousPoint) {
  Survey survey = EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Xy("3", "-4").Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[1].Bearing, 180 - std::atan(3.0 / 4.0) * 180 / M_PI, 1e-4);
  EXPECT_NEAR(survey.Points[1].Len, 5, 1e-5);
}

TEST_F(ResolvePointsTest, CompassBearingsTakeTheDeclinationOff) {
  EnteredSurvey entered;
  entered.Dataset(kTypeN).Xy("0", "0").Compass("92", "10");
  entered.survey().MagneticDeclination = 2;
  Survey survey = entered.Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[1].Bearing, 90, 1e-5);
  EXPECT_NEAR(survey.Points[1].X, 10, 1e-5);
}

TEST_F(ResolvePointsTest, TraverseFollowsEachPreviousPoint) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("100", "200")
                      .Bearing("90", "40")
                      .Bearing("0", "30")
                      .Bearing("270", "40")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[3].X, 100, 1e-4);
  EXPECT_NEAR(survey.Points[3].Y, 230, 1e-4);
  // The closing line runs from the last point back to the start.
  EXPECT_EQ(survey.Datasets[0].ClosingBearing, 180);
  EXPECT_NEAR(survey.Datasets[0].ClosingLen, 30, 1e-4);
}

TEST_F(ResolvePointsTest, IdenticalConsecutivePointsStopWithTheirMessage) {
  Survey survey =
      EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Xy("10", "0").Xy("10", "0").Xy("0", "9").Build();
  survey.Points[2].PtNumber = 17;
  survey.Points[2].Len = 4;
  state.ErrorState = kErrorInvalidData | 0x08;
  EXPECT_FALSE(Resolve(survey));
  ExpectOneCriticalBox(kResolveFailedTitle,
                       "Point number 17 is identical to the preceding point\n\n" + kChange);
  EXPECT_EQ(survey.Points[2].Len, 0);
  EXPECT_EQ(survey.Points[2].InXA, "10");
  EXPECT_EQ(state.ErrorState & ~kErrorExitMask, 0);
  EXPECT_EQ(state.ProcessState & kPassComplete, 0);
}

TEST_F(ResolvePointsTest, PointBackOnAnEarlierNonAdjacentPointIsAllowed) {
  Survey survey = EnteredSurvey().Dataset(kTypeN).Xy("0", "0").Xy("10", "0").Xy("0", "0").Build();
  EXPECT_TRUE(Resolve(survey));
}

TEST_F(ResolvePointsTest, FromFlagMeasuresFromTheReferencedPoint) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("50", "0")
                      .Xy("50", "50")
                      .Bearing("270", "20")
                      .From(2)
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[3].X, 30, 1e-4);
  EXPECT_NEAR(survey.Points[3].Y, 0, 1e-4);
  EXPECT_EQ(survey.Points[3].Bearing, 270);
  EXPECT_EQ(survey.Points[3].Len, 20);
}

TEST_F(ResolvePointsTest, StandAlonePointWithAReferenceIsMeasuredFromIt) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("40", "0")
                      .Xy("40", "40")
                      .Dataset(kTypeP)
                      .Xy("5", "5")
                      .Bearing("0", "15")
                      .Ref(2)
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[4].X, 40, 1e-4);
  EXPECT_NEAR(survey.Points[4].Y, 15, 1e-4);
}

TEST_F(ResolvePointsTest, ReferencePointSharesAPointOfAnotherDataset) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("40", "0")
                      .Xy("40", "40")
                      .Dataset(kTypeL)
                      .Reference(2)
                      .Bearing("90", "25")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[3].X, 40);
  EXPECT_EQ(survey.Points[3].Y, 0);
  EXPECT_NEAR(survey.Points[4].X, 65, 1e-4);
}

TEST_F(ResolvePointsTest, ReferenceToALaterDatasetIsResolvedByARepeatPass) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeL)
                      .Reference(5)
                      .Bearing("0", "10")
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("20", "0")
                      .Xy("20", "20")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[0].X, 20);
  EXPECT_NEAR(survey.Points[1].Y, 30, 1e-4);
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  EXPECT_EQ(state.ProcessState & kTargetRepassNeeded, 0);
  EXPECT_EQ(state.GpsState & kGpsRepassNeeded, 0);
}

TEST_F(ResolvePointsTest, SuccessMarksThePassCompleteAndClearsTheSelection) {
  Survey survey = EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Xy("1", "0").Xy("1", "1").Build();
  state.SelectedPoint = 2;
  state.SelectedDataset = 1;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  EXPECT_EQ(state.SelectedPoint, -1);
  EXPECT_EQ(state.SelectedDataset, 0);
  EXPECT_FALSE(state.GpsArea);
}

TEST_F(ResolvePointsTest, RepeatPassOnItsOwnLeavesPassCompleteAlone) {
  Survey survey = EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Xy("1", "0").Xy("1", "1").Build();
  ASSERT_TRUE(ResolvePoints(survey, state, kRepeatPass, dialogs));
  EXPECT_EQ(state.ProcessState & kPassComplete, 0);
  ASSERT_TRUE(ResolvePoints(survey, state, kDependentPass, dialogs));
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
}

struct BadReferenceCase {
  const char* name;
  Survey survey;
};

class BadReferenceTest : public ResolvePointsTest,
                         public ::testing::WithParamInterface<BadReferenceCase> {};

TEST_P(BadReferenceTest, FailsWithBadPointReference) {
  Survey survey = GetParam().survey;
  EXPECT_FALSE(Resolve(survey));
  ExpectOneCriticalBox(kResolveFailedTitle, "Bad Point reference");
}

Survey WithDuplicateNumbers() {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("10", "0")
                      .Xy("10", "10")
                      .Dataset(kTypeL)
                      .Reference(3)
                      .Build();
  survey.Points[1].PtNumber = 3;
  return survey;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BadReferenceTest,
    ::testing::Values(
        BadReferenceCase{"MissingNumber",
                         EnteredSurvey().Dataset(kTypeN).Xy("0", "0").Reference(9).Build()},
        BadReferenceCase{"NoReference",
                         EnteredSurvey().Dataset(kTypeN).Xy("0", "0").Reference(0).Build()},
        BadReferenceCase{"Self", EnteredSurvey().Dataset(kTypeN).Xy("0", "0").Reference(2).Build()},
        BadReferenceCase{
            "FromMissing",
            EnteredSurvey().Dataset(kTypeN).Xy("0", "0").Bearing("0", "1").From(40).Build()},
        BadReferenceCase{
            "FromSelf",
            EnteredSurvey().Dataset(kTypeN).Xy("0", "0").Bearing("0", "1").From(2).Build()},
        BadReferenceCase{"BearingFirstInDataset",
                         EnteredSurvey().Dataset(kTypeN).Bearing("0", "1").Xy("0", "0").Build()},
        BadReferenceCase{"TargetMissing", EnteredSurvey()
                                              .Dataset(kTypeN)
                                              .Xy("0", "0")
                                              .Xy("5", "0")
                                              .Intermediate()
                                              .Target(77)
                                              .Xy("10", "0")
                                              .Build()},
        BadReferenceCase{"DuplicateNumber", WithDuplicateNumbers()}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(ResolvePointsTest, CircularReferencesFailAfterTheRepeatPasses) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Dataset(kTypeL)
                      .Reference(3)
                      .Reference(2)
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  ExpectOneCriticalBox(kResolveFailedTitle, kRepeatFailed);
  EXPECT_NE(state.ProcessState & kTargetRepassNeeded, 0);
}

TEST_F(ResolvePointsTest, FaultFoundInARepeatPassShowsTheReiterativeText) {
  // The line's start waits on the main dataset; its second point then lands on it.
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeL)
                      .Reference(4)
                      .Xy("20", "0")
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("20", "0")
                      .Xy("20", "20")
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  ExpectOneCriticalBox(kResolveFailedTitle, kRepeatFailed);
}

struct ErrorExitCase {
  const char* name;
  int unit;
  const char* x;
  const char* bearing;
  std::string text;
};

class ErrorExitTest : public ResolvePointsTest,
                      public ::testing::WithParamInterface<ErrorExitCase> {};

TEST_P(ErrorExitTest, NamesTheFaultAndThePoint) {
  const ErrorExitCase& c = GetParam();
  Survey survey = EnteredSurvey(c.unit)
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Xy(c.x, "3")
                      .Bearing(c.bearing, "4")
                      .Number(12)
                      .Build();
  state.ErrorState = 0x08;
  EXPECT_FALSE(Resolve(survey));
  int point = std::string(c.x) == "1" ? 12 : 2;
  ExpectOneCriticalBox(kInvalidDataTitle, c.text + "\nat point " + std::to_string(point));
  EXPECT_EQ(state.ErrorState, 0x08);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ErrorExitTest,
    ::testing::Values(
        ErrorExitCase{"MinutesOf60", kUnitMeters, "1", "10\\60",
                      "Minutes or Seconds values found >= 60"},
        ErrorExitCase{"SecondsOf60", kUnitMeters, "1", "10\\5\\60",
                      "Minutes or Seconds values found >= 60"},
        ErrorExitCase{"NotANumber", kUnitMeters, "abc", "0",
                      "Invalid Data found, please check data"},
        ErrorExitCase{"Empty", kUnitMeters, "", "0", "Invalid Data found, please check data"},
        ErrorExitCase{"SeparatorWithoutUnit", kUnitNotSpecified, "5\\6", "0",
                      "Units separator found, invalid with 'Unspecified' Unit of Measure"},
        ErrorExitCase{"SeparatorInMeters", kUnitMeters, "5\\6", "0",
                      "Invalid units separator found, deg/min/sec, feet/inches, etc."},
        ErrorExitCase{"NotANumberBearing", kUnitMeters, "1", "north",
                      "Invalid Data found, please check data"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(ResolvePointsTest, OverflowingPositionIsInvalidDataInProcessing) {
  Survey survey = EnteredSurvey().Dataset(kTypeN).Xy("3e38", "0").Bearing("90", "3e38").Build();
  EXPECT_FALSE(Resolve(survey));
  ExpectOneCriticalBox(kInvalidDataTitle, "Invalid Data encounted in processing\nat point 2");
}

TEST_F(ResolvePointsTest, PointWithoutAnyInputIsInvalidData) {
  Survey survey = EnteredSurvey().Dataset(kTypeN).Xy("0", "0").Flags(0).Build();
  EXPECT_FALSE(Resolve(survey));
  ExpectOneCriticalBox(kInvalidDataTitle, "Invalid Data found, please check data\nat point 2");
}

TEST_F(ResolvePointsTest, EmptySurveyAndTinyDatasetsResolve) {
  Survey empty;
  EXPECT_TRUE(Resolve(empty));
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("4", "4")
                      .Dataset(kTypeS)
                      .Dataset(kTypeL)
                      .Xy("1", "1")
                      .Build();
  survey.Datasets[0].ClosingLen = 9;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[1].X, 1);
  EXPECT_EQ(survey.Datasets[0].ClosingLen, 0);
  EXPECT_EQ(survey.Datasets[1].ClosingLen, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ResolvePointsTest, DatasetsOutOfOrderAreInvalidData) {
  Survey survey = EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Xy("1", "0").Xy("1", "1").Build();
  survey.Datasets.push_back(Dataset{.DatasetType = kTypeL, .DatasetStart = 1});
  survey.Datasets.push_back(Dataset{.DatasetType = kTypeP, .DatasetStart = 0});
  EXPECT_FALSE(Resolve(survey));
  ExpectOneCriticalBox(kInvalidDataTitle, "Invalid Data found, please check data\nat point 1");
}

TEST_F(ResolvePointsTest, PointsWithoutAnyDatasetAreInvalidData) {
  Survey survey = EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Build();
  survey.Datasets.clear();
  EXPECT_FALSE(Resolve(survey));
  EXPECT_EQ(dialogs.last().title, kInvalidDataTitle);
}

TEST_F(ResolvePointsTest, ClosingLinesOnlyForMainAndSubDivision) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("10", "0")
                      .Xy("10", "10")
                      .Dataset(kTypeS)
                      .Xy("0", "0")
                      .Xy("-5", "0")
                      .Dataset(kTypeL)
                      .Xy("0", "0")
                      .Xy("3", "0")
                      .Build();
  survey.Datasets[2].ClosingLen = 7;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Datasets[0].ClosingBearing, 225, 1e-4);
  EXPECT_NEAR(survey.Datasets[0].ClosingLen, std::hypot(10, 10), 1e-4);
  EXPECT_EQ(survey.Datasets[1].ClosingBearing, 90);
  EXPECT_EQ(survey.Datasets[1].ClosingLen, 5);
  EXPECT_EQ(survey.Datasets[2].ClosingLen, 0);
}

TEST_F(ResolvePointsTest, DivisionClosesOnTheJoinPointItEndsAt) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("10", "0")
                      .Join()
                      .Xy("10", "10")
                      .Xy("0", "10")
                      .Join()
                      .Dataset(kTypeS)
                      .Xy("10", "0")
                      .Dummy()
                      .Xy("6", "4")
                      .Xy("-1", "10.5")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Datasets[1].ClosingLen, std::hypot(1, 0.5), 1e-5);
  EXPECT_NEAR(survey.Datasets[1].ClosingBearing, 90 + std::atan(0.5) * 180 / M_PI, 1e-4);
  EXPECT_EQ(survey.Datasets[0].ClosingBearing, 180);
  EXPECT_EQ(survey.Datasets[0].ClosingLen, 10);
}

TEST_F(ResolvePointsTest, LongTraverseResolves) {
  EnteredSurvey entered;
  entered.Dataset(kTypeN).Xy("0", "0");
  const int count = 100000;
  for (int n = 1; n < count; ++n) entered.Bearing(n % 2 ? "90" : "0", "1");
  Survey survey = entered.Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points.back().X, count / 2, 1e-1);
  EXPECT_NEAR(survey.Points.back().Y, count / 2 - 1, 1e-1);
}

}  // namespace
}  // namespace plotmeter
