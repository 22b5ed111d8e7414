#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/EnteredSurvey.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ScriptedDialogs;

using ResolvePointsTest = testing::ResolveFixture;

TEST_F(ResolvePointsTest, TenAlongTheBearingFromTheOrigin) {
  const struct {
    const char* bearing;
    float x, y;
  } rows[] = {{"0", 0, 10}, {"90", 10, 0}, {"180", 0, -10}, {"270", -10, 0}};
  for (const auto& row : rows) {
    Survey survey = Entered(std::string("H,N\n1,X,,,0,0\n2,B,,,") + row.bearing + ",10");
    ASSERT_TRUE(Resolve(survey));
    const Point& p = survey.Points[1];
    EXPECT_NEAR(p.X, row.x, 1e-5) << row.bearing;
    EXPECT_NEAR(p.Y, row.y, 1e-5) << row.bearing;
    EXPECT_EQ(p.Bearing, std::stof(row.bearing));
    EXPECT_EQ(p.Len, 10);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ResolvePointsTest, CoordinatePointsGetBearingAndLengthFromThePreviousPoint) {
  Survey west = Entered("H,N\n1,X,,,5,2\n2,X,,,-7.5,2");
  ASSERT_TRUE(Resolve(west));
  EXPECT_EQ(west.Points[1].Bearing, 270);
  EXPECT_EQ(west.Points[1].Len, 12.5f);
  EXPECT_EQ(west.Points[0].Bearing, 0);
  EXPECT_EQ(west.Points[0].Len, 0);

  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,3,-4");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[1].Bearing, 180 - std::atan(3.0 / 4.0) * 180 / M_PI, 1e-4);
  EXPECT_NEAR(survey.Points[1].Len, 5, 1e-5);
}

TEST_F(ResolvePointsTest, CompassBearingsTakeTheDeclinationOff) {
  Survey survey = Entered("H,N\n1,X,,,0,0\n2,C,,,92,10");
  survey.MagneticDeclination = 2;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[1].Bearing, 90, 1e-5);
  EXPECT_NEAR(survey.Points[1].X, 10, 1e-5);
}

TEST_F(ResolvePointsTest, TraverseFollowsEachPreviousPointAndCloses) {
  Survey survey = Entered("H,M\n1,X,,,100,200\n2,B,,,90,40\n3,B,,,0,30\n4,B,,,270,40");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[3].X, 100, 1e-4);
  EXPECT_NEAR(survey.Points[3].Y, 230, 1e-4);
  EXPECT_EQ(survey.Datasets[0].ClosingBearing, 180);
  EXPECT_NEAR(survey.Datasets[0].ClosingLen, 30, 1e-4);
}

TEST_F(ResolvePointsTest, PointBackOnAnEarlierNonAdjacentPointIsAllowed) {
  Survey survey = Entered("H,N\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,0,0");
  EXPECT_TRUE(Resolve(survey));
}

TEST_F(ResolvePointsTest, ReferencesMeasureFromTheirPoints) {
  // A bearing from point 2, a stand-alone bearing from point 2, a line sharing point 2.
  Survey survey = Entered(
      "H,M\n1,X,,,0,0\n2,X,,,50,0\n3,X,,,50,50\n4,BF,2,,270,20\n"
      "H,P\n5,X,,,5,5\n6,B,2,,0,15\nH,L\n7,R,2\n8,B,,,90,25");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[3].X, 30, 1e-4);
  EXPECT_NEAR(survey.Points[3].Y, 0, 1e-4);
  EXPECT_EQ(survey.Points[3].Bearing, 270);
  EXPECT_EQ(survey.Points[3].Len, 20);
  EXPECT_NEAR(survey.Points[5].X, 50, 1e-4);
  EXPECT_NEAR(survey.Points[5].Y, 15, 1e-4);
  EXPECT_EQ(survey.Points[6].X, 50);
  EXPECT_EQ(survey.Points[6].Y, 0);
  EXPECT_NEAR(survey.Points[7].X, 75, 1e-4);
}

TEST_F(ResolvePointsTest, ReferenceToALaterDatasetIsResolvedByARepeatPass) {
  Survey survey = Entered("H,L\n1,R,5\n2,B,,,0,10\nH,M\n3,X,,,0,0\n4,X,,,20,0\n5,X,,,20,20");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[0].X, 20);
  EXPECT_NEAR(survey.Points[1].Y, 30, 1e-4);
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  EXPECT_EQ(state.ProcessState & kTargetRepassNeeded, 0);
  EXPECT_EQ(state.GpsState & kGpsRepassNeeded, 0);
}

TEST_F(ResolvePointsTest, OnlyAFirstOrDependentPassCompletesAndClearsTheSelection) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,1,0\n3,X,,,1,1");
  ASSERT_TRUE(ResolvePoints(survey, state, kRepeatPass, dialogs));
  EXPECT_EQ(state.ProcessState & kPassComplete, 0);
  ASSERT_TRUE(ResolvePoints(survey, state, kDependentPass, dialogs));
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  state = {};
  state.SelectedPoint = 2;
  state.SelectedDataset = 1;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  EXPECT_EQ(state.SelectedPoint, -1);
  EXPECT_EQ(state.SelectedDataset, 0);
  EXPECT_FALSE(state.GpsArea);
}

TEST_F(ResolvePointsTest, FailureKeepsTheInputAndMasksTheErrorState) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,0\n4,X,,,0,9");
  survey.Points[2].Len = 4;
  state.ErrorState = kErrorInvalidData | 0x08;
  EXPECT_FALSE(Resolve(survey));
  EXPECT_EQ(survey.Points[2].Len, 0);
  EXPECT_EQ(survey.Points[2].InXA, "10");
  EXPECT_EQ(state.ErrorState, 0x08);
  EXPECT_EQ(state.ProcessState & kPassComplete, 0);
}

Survey GpsOnly(Survey survey) {
  survey.FileFlags |= kFileGpsOnly;
  return survey;
}

Survey DatasetsOutOfOrder() {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,1,0\n3,X,,,1,1");
  survey.Datasets.push_back(Dataset{.DatasetType = kTypeL, .DatasetStart = 1});
  survey.Datasets.push_back(Dataset{.DatasetType = kTypeP, .DatasetStart = 0});
  return survey;
}

// An intermediate point on the line from (0, 0) to (10, 0), after (0, -4).
Survey Interim(const std::string& line) {
  return Entered("H,M\n1,X,,,0,-4\n2,X,,,0,0\n" + line + "\n4,X,,,10,0\n5,X,,,10,10");
}

constexpr char kFailed[] = "Failed Area Calculation";
constexpr char kInvalid[] = "Invalid Data encounted in processing";
const std::string kChange = "\n\nPlease change or delete one of these points to enable processing.";
constexpr char kBadReference[] = "Bad Point reference";
constexpr char kRepeatFailed[] =
    "Bad reiterative calculations (for GPS / Inermediate Pt Target data)";
constexpr char kBadInterim[] = "Bad Interim Point data";
constexpr char kInvalidData[] = "Invalid Data found, please check data\nat point ";

struct FaultRow {
  const char* name;
  Survey survey;
  const char* title;
  std::string text;
};

void PrintTo(const FaultRow& row, std::ostream* out) { *out << row.name; }

class ResolveFaultTest : public ResolvePointsTest,
                         public ::testing::WithParamInterface<FaultRow> {};

TEST_P(ResolveFaultTest, ShowsOneCriticalBox) {
  Survey survey = GetParam().survey;
  state.ErrorState = 0x08;
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().title, GetParam().title);
  EXPECT_EQ(dialogs.last().text, GetParam().text);
  EXPECT_EQ(dialogs.last().icon, Icon::Critical);
  EXPECT_EQ(dialogs.last().buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_EQ(state.ErrorState & ~kErrorExitMask, 0);
  EXPECT_EQ(state.ErrorState & 0x08, 0x08);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, ResolveFaultTest, ::testing::Values(
    FaultRow{"IdenticalPoints", Entered("H,M\n1,X,,,0,0\n2,X,,,10,0\n17,X,,,10,0\n4,X,,,0,9"),
             kFailed, "Point number 17 is identical to the preceding point" + kChange},
    FaultRow{"IntermediateOnItsPreviousPoint",
             Entered("H,N\n1,X,,,0,0\n2,XI,,,4,\n3,XI,,,4,\n4,X,,,10,0"),
             kFailed, "Point number 3 is identical to the preceding point" + kChange},
    FaultRow{"ReferenceMissing", Entered("H,N\n1,X,,,0,0\n2,R,9"), kFailed, kBadReference},
    FaultRow{"ReferenceSelf", Entered("H,N\n1,X,,,0,0\n2,R,2"), kFailed, kBadReference},
    FaultRow{"FromMissing", Entered("H,N\n1,X,,,0,0\n2,BF,40,,0,1"), kFailed, kBadReference},
    FaultRow{"FromSelf", Entered("H,N\n1,X,,,0,0\n2,BF,2,,0,1"), kFailed, kBadReference},
    FaultRow{"BearingFirst", Entered("H,N\n1,B,,,0,1\n2,X,,,0,0"), kFailed, kBadReference},
    FaultRow{"TargetMissing", Entered("H,N\n1,X,,,0,0\n2,XI,,77,5,0\n3,X,,,10,0"), kFailed,
             kBadReference},
    FaultRow{"DuplicateNumber", Entered("H,M\n1,X,,,0,0\n3,X,,,10,0\n3,X,,,10,10\nH,L\n4,R,3"),
             kFailed, kBadReference},
    FaultRow{"CircularReferences", Entered("H,N\n1,X,,,0,0\nH,L\n2,R,3\n3,R,2"), kFailed,
             kRepeatFailed},
    // The line's start waits on the main dataset; its second point then lands on it.
    FaultRow{"FaultInARepeatPass",
             Entered("H,L\n1,R,4\n2,X,,,20,0\nH,M\n3,X,,,0,0\n4,X,,,20,0\n5,X,,,20,20"),
             kFailed, kRepeatFailed},
    FaultRow{"FaultOnceALaterTargetIsKnown",
             Entered("H,N\n1,X,,,0,0\n2,XI,,5,12,\n3,X,,,0,9\n4,X,,,-3,9\n5,X,,,10,0"),
             kFailed, kRepeatFailed},
    FaultRow{"LinkHangingOnAGpsPoint",
             Entered("H,M\n1,X,,,0,0\n2,G,,,,,151,-33\n3,BL,,,90,10,151.1,-33"),
             kFailed, kRepeatFailed},
    FaultRow{"MinutesOf60", Entered("H,N\n1,X,,,0,0\n2,X,,,1,3\n12,B,,,10\\60,4"), kInvalid,
             "Minutes or Seconds values found >= 60\nat point 12"},
    FaultRow{"NotANumber", Entered("H,N\n1,X,,,0,0\n2,X,,,abc,3"), kInvalid,
             kInvalidData + std::string("2")},
    FaultRow{"BearingNotANumber", Entered("H,N\n1,X,,,0,0\n2,X,,,1,3\n12,B,,,north,4"),
             kInvalid, kInvalidData + std::string("12")},
    FaultRow{"SeparatorWithoutUnit", Entered("H,N\n1,X,,,0,0\n2,X,,,5\\6,3", kUnitNotSpecified),
             kInvalid,
             "Units separator found, invalid with 'Unspecified' Unit of Measure\nat point 2"},
    FaultRow{"SeparatorInMeters", Entered("H,N\n1,X,,,0,0\n2,X,,,5\\6,3"), kInvalid,
             "Invalid units separator found, deg/min/sec, feet/inches, etc.\nat point 2"},
    FaultRow{"OverflowingPosition", Entered("H,N\n1,X,,,3e38,0\n2,B,,,90,3e38"), kInvalid,
             "Invalid Data encounted in processing\nat point 2"},
    FaultRow{"PointWithoutInput", Entered("H,N\n1,X,,,0,0\n2,"), kInvalid,
             kInvalidData + std::string("2")},
    FaultRow{"DatasetsOutOfOrder", DatasetsOutOfOrder(), kInvalid,
             kInvalidData + std::string("1")},
    FaultRow{"PointsWithoutDataset", Entered("1,X,,,0,0"), kInvalid,
             kInvalidData + std::string("1")},
    FaultRow{"GpsWithoutAUnit", Entered("H,M\n1,G,,,,,151,-33\n2,G,,,,,151.1,-33",
                                        kUnitNotSpecified),
             kInvalid, kInvalidData + std::string("1")},
    FaultRow{"UnreadableGps", Entered("H,M\n1,XL,,,100,200,151,-33\n2,G,,,,,151,south"),
             kInvalid, kInvalidData + std::string("2")},
    FaultRow{"MixedDataWithoutALink", Entered("H,M\n1,X,,,0,0\n2,G,,,,,151,-33"), kFailed,
             "Attempting to generate GPS values without a GPS linked point.\n"
             "Ensure one point is flagged as the designated link point."},
    FaultRow{"GpsOnlyWithoutGpsInput", GpsOnly(Entered("H,M\n1,X,,,0,0\n2,X,,,1,0")), kFailed,
             "Attempting to generate GPS values without a GPS reference point.\n"
             "Ensure at least input data for one point also includes GPS values."},
    // Intermediate points that cannot be placed on their line; each placement's own
    // faults are CheckEnteredPointTest's, which names them.
    FaultRow{"FirstPointIntermediate", Entered("H,N\n1,XI,,,3,\n2,X,,,9,9"), kFailed,
             kBadInterim},
    FaultRow{"LastPointWithoutTarget", Entered("H,N\n1,X,,,0,0\n2,XI,,,3,\nH,L\n3,X,,,9,9"),
             kFailed, kBadInterim},
    FaultRow{"RunWithALengthPointOutOfOrder",
             Entered("H,N\n1,X,,,0,0\n2,XI,,,6,\n3,XI,,,2,\n4,BI,,,,1\n5,X,,,10,0"),
             kFailed, kBadInterim},
    FaultRow{"BeforeAnEarlierTarget",
             Entered("H,N\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,0,5\n4,XI,,2,12,\n5,X,,,0,9"),
             kFailed, kBadInterim},
    FaultRow{"XOnTheStart", Interim("3,XI,,,0,"), kFailed, kBadInterim},
    FaultRow{"NegativeLength", Interim("3,BI,,,,-1"), kFailed, kBadInterim},
    FaultRow{"BearingParallelToTheLine", Interim("3,BI,1,,90,"), kFailed, kBadInterim},
    FaultRow{"NoInputAtAll", Interim("3,I"), kFailed, kBadInterim}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

TEST_F(ResolvePointsTest, EmptySurveyAndTinyDatasetsResolve) {
  Survey empty;
  EXPECT_TRUE(Resolve(empty));
  Survey survey = Entered("H,M\n1,X,,,4,4\nH,S\nH,L\n2,X,,,1,1");
  survey.Datasets[0].ClosingLen = 9;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[1].X, 1);
  EXPECT_EQ(survey.Datasets[0].ClosingLen, 0);
  EXPECT_EQ(survey.Datasets[1].ClosingLen, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ResolvePointsTest, ClosingLinesOnlyForMainAndSubDivision) {
  Survey survey = Entered(
      "H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\nH,S\n4,X,,,0,0\n5,X,,,-5,0\n"
      "H,L\n6,X,,,0,0\n7,X,,,3,0");
  survey.Datasets[2].ClosingLen = 7;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Datasets[0].ClosingBearing, 225, 1e-4);
  EXPECT_NEAR(survey.Datasets[0].ClosingLen, std::hypot(10, 10), 1e-4);
  EXPECT_EQ(survey.Datasets[1].ClosingBearing, 90);
  EXPECT_EQ(survey.Datasets[1].ClosingLen, 5);
  EXPECT_EQ(survey.Datasets[2].ClosingLen, 0);
}

TEST_F(ResolvePointsTest, DivisionClosesOnTheJoinPointItEndsAt) {
  Survey survey = Entered(
      "H,M\n1,X,,,0,0\n2,XJ,,,10,0\n3,X,,,10,10\n4,XJ,,,0,10\n"
      "H,S\n5,D,,,10,0\n6,X,,,6,4\n7,X,,,-1,10.5");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Datasets[1].ClosingLen, std::hypot(1, 0.5), 1e-5);
  EXPECT_NEAR(survey.Datasets[1].ClosingBearing, 90 + std::atan(0.5) * 180 / M_PI, 1e-4);
  EXPECT_EQ(survey.Datasets[0].ClosingBearing, 180);
  EXPECT_EQ(survey.Datasets[0].ClosingLen, 10);
}

TEST_F(ResolvePointsTest, LongTraverseResolves) {
  const int count = 100000;
  std::string lines = "H,N\n1,X,,,0,0\n";
  for (int n = 2; n <= count; ++n)
    lines += std::to_string(n) + (n % 2 ? ",B,,,0,1\n" : ",B,,,90,1\n");
  Survey survey = Entered(lines);
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points.back().X, count / 2, 1e-1);
  EXPECT_NEAR(survey.Points.back().Y, count / 2 - 1, 1e-1);
}

}  // namespace
}  // namespace plotmeter
