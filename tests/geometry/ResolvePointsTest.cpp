#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "geometry/GpsLink.h"
#include "geometry/Resolution.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ScriptedDialogs;

using ResolvePointsTest = testing::Resolution;

// Bearings are clockwise from north; a point given by co-ordinates gets the bearing and
// length of the line from the point before, and may stand on an earlier point that is
// not the one before.
TEST_F(ResolvePointsTest, TraverseAndCoordinatesGiveEachOthersValues) {
  Survey survey =
      Entered("H,M\n1,X,,,100,200\n2,B,,,90,40\n3,B,,,0,30\n4,B,,,270,40\n5,B,,,180,10");
  EXPECT_EQ(Resolved(survey),
            "100,200 0/0; 140,200 90/40; 140,230 0/30; 100,230 270/40; 100,220 180/10");
  EXPECT_EQ(survey.Datasets[0].ClosingBearing, 180);
  EXPECT_NEAR(survey.Datasets[0].ClosingLen, 20, 1e-4);
  EXPECT_EQ(Resolved("H,N\n1,X,,,5,2\n2,X,,,-7.5,2\n3,X,,,-4.5,-2\n4,X,,,5,2"),
            "5,2 0/0; -7.5,2 270/12.5; -4.5,-2 143.1301/5; 5,2 67.1663/10.3078");
  // A compass bearing has the declination taken off.
  survey = Entered("H,N\n1,X,,,0,0\n2,C,,,92,10");
  survey.MagneticDeclination = 2;
  EXPECT_EQ(Resolved(survey), "0,0 0/0; 10,0 90/10");
}

// A bearing from point 2, a stand-alone bearing from point 2, a line sharing point 2.
TEST_F(ResolvePointsTest, ReferencesMeasureFromTheirPoints) {
  EXPECT_EQ(Resolved("H,M\n1,X,,,0,0\n2,X,,,50,0\n3,X,,,50,50\n4,BF,2,,270,20\n"
                     "H,P\n5,X,,,5,5\n6,B,2,,0,15\nH,L\n7,R,2\n8,B,,,90,25"),
            "0,0 0/0; 50,0 90/50; 50,50 0/50; 30,0 270/20; 5,5 0/0; 50,15 0/15; 50,0 0/0; "
            "75,0 90/25");
}

TEST_F(ResolvePointsTest, ReferenceToALaterDatasetIsResolvedByARepeatPass) {
  EXPECT_EQ(Resolved("H,L\n1,R,5\n2,B,,,0,10\nH,M\n3,X,,,0,0\n4,X,,,20,0\n5,X,,,20,20"),
            "20,20 0/0; 20,30 0/10; 0,0 0/0; 20,0 90/20; 20,20 0/20");
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

// The point found identical loses its length; its input stays.
TEST_F(ResolvePointsTest, FailureKeepsTheInput) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,0\n4,X,,,0,9");
  survey.Points[2].Len = 4;
  EXPECT_FALSE(Resolve(survey));
  EXPECT_EQ(survey.Points[2].Len, 0);
  EXPECT_EQ(survey.Points[2].InXA, "10");
}

// Closing lines run back to the start point of a main perimeter or a sub-division, or
// on to the join point a division ends at; other datasets, and tiny ones, have none.
TEST_F(ResolvePointsTest, ClosingLines) {
  Survey survey = Entered(
      "H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\nH,S\n4,X,,,0,0\n5,X,,,-5,0\n"
      "H,L\n6,X,,,0,0\n7,X,,,3,0");
  survey.Datasets[2].ClosingLen = 7;
  Resolved(survey);
  EXPECT_NEAR(survey.Datasets[0].ClosingBearing, 225, 1e-4);
  EXPECT_NEAR(survey.Datasets[0].ClosingLen, std::hypot(10, 10), 1e-4);
  EXPECT_EQ(survey.Datasets[1].ClosingBearing, 90);
  EXPECT_EQ(survey.Datasets[1].ClosingLen, 5);
  EXPECT_EQ(survey.Datasets[2].ClosingLen, 0);

  survey = Entered(
      "H,M\n1,X,,,0,0\n2,XJ,,,10,0\n3,X,,,10,10\n4,XJ,,,0,10\n"
      "H,S\n5,D,,,10,0\n6,X,,,6,4\n7,X,,,-1,10.5");
  Resolved(survey);
  EXPECT_NEAR(survey.Datasets[1].ClosingLen, std::hypot(1, 0.5), 1e-5);
  EXPECT_NEAR(survey.Datasets[1].ClosingBearing, 90 + std::atan(0.5) * 180 / M_PI, 1e-4);
  EXPECT_EQ(survey.Datasets[0].ClosingBearing, 180);
  EXPECT_EQ(survey.Datasets[0].ClosingLen, 10);

  Survey empty;
  EXPECT_EQ(Resolved(empty), "");
  survey = Entered("H,M\n1,X,,,4,4\nH,S\nH,L\n2,X,,,1,1");
  survey.Datasets[0].ClosingLen = 9;
  EXPECT_EQ(Resolved(survey), "4,4 0/0; 1,1 0/0");
  EXPECT_EQ(survey.Datasets[0].ClosingLen, 0);
  EXPECT_EQ(survey.Datasets[1].ClosingLen, 0);
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

// ---- GPS values, through the link point ----

constexpr double kMinute = 1.0 / 60;
// One minute of longitude at 33° south, in metres, worked out by hand: 1852 × cos 33°.
constexpr double kMinuteEastAt33 = 1553.2;

std::string Degrees(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.9f", value);
  return text;
}

// A link point at (100, 200) standing at 151° E 33° S, then `lines`.
Survey Linked(const std::string& lines) { return Entered("H,M\n1,XL,,,100,200,151,-33\n" + lines); }

// A GPS point before the link point waits for a repeat pass, then stands at its offset
// from the link point; its GPS values are those entered.
TEST_F(ResolvePointsTest, GpsPointStandsAtItsOffsetFromTheLinkPoint) {
  Survey survey = Entered("H,M\n1,G,,,,," + Degrees(151 + kMinute) +
                          ",-33\n2,B,,,180,50\n3,XL,,,100,200,151,-33");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[0].X, 100 + kMinuteEastAt33, 0.05);
  EXPECT_NEAR(survey.Points[0].Y, 200, 1e-3);
  EXPECT_NEAR(survey.Points[0].GPSLong, 151 + kMinute, 1e-9);
  EXPECT_DOUBLE_EQ(survey.Points[0].GPSLat, -33);
  EXPECT_FALSE(survey.Points[0].HasAlternate);
  EXPECT_NEAR(survey.Points[1].Y, 150, 1e-3);
  EXPECT_EQ(state.GpsState & kGpsRepassNeeded, 0);
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  EXPECT_FALSE(state.GpsArea);
}

TEST_F(ResolvePointsTest, PlanePointsGetGpsValuesThatOffsetBackToThem) {
  Survey survey = Linked("2,X,,,600,-700\n3,B,,,45,300");
  ASSERT_TRUE(Resolve(survey));
  GpsTie tie{{151, -33}, {100, 200}};
  for (const Point& p : survey.Points) {
    std::uint8_t errors = 0;
    PlanePoint back = PlaneFromGps(kUnitMeters, tie, {p.GPSLong, p.GPSLat}, errors);
    EXPECT_NEAR(back.x, p.X, 1e-3);
    EXPECT_NEAR(back.y, p.Y, 1e-3);
    EXPECT_FALSE(p.HasAlternate);
  }
  // 900 m south of the link is 900 / 1852 minutes of latitude.
  EXPECT_NEAR(survey.Points[1].GPSLat, -33 - 900.0 / 1852 * kMinute, 1e-9);
  // The link point has no alternate of its own.
  const Point& link = survey.Points[0];
  EXPECT_EQ(link.AltGPSDelta, 0);
  EXPECT_DOUBLE_EQ(link.GPSLong, 151);
  EXPECT_DOUBLE_EQ(link.GPSLat, -33);
  EXPECT_DOUBLE_EQ(link.AltGPSLong, 151);
}

TEST_F(ResolvePointsTest, PointGivenBothWaysGetsItsAlternatePositionAndDelta) {
  Survey survey = Linked("2,XA,,,100,1200,151," + Degrees(-33 + kMinute) + "\n3,X,,,0,0");
  ASSERT_TRUE(Resolve(survey));
  const Point& p = survey.Points[1];
  EXPECT_EQ(p.X, 100);
  EXPECT_EQ(p.Y, 1200);
  EXPECT_TRUE(p.HasAlternate);
  EXPECT_NEAR(p.AltX, 100, 1e-3);
  EXPECT_NEAR(p.AltY, 200 + 1852, 1e-2);
  EXPECT_NEAR(p.AltGPSDelta, 852, 1e-2);
  EXPECT_NEAR(p.GPSLat, -33 + kMinute, 1e-9);
  // The alternative GPS values are those of the plane position.
  EXPECT_NEAR(p.AltGPSLat, -33 + 1000.0 / 1852 * kMinute, 1e-9);
  EXPECT_NEAR(p.AltGPSLong, 151, 1e-9);
}

TEST_F(ResolvePointsTest, AllGpsSurveyStandsOnItsFirstPointAtTheOriginIgnoringALink) {
  for (const char* link : {"", "L"}) {
    Survey survey = Entered("H,M\n1,G,,,,,151,-33\n2,G" + std::string(link) + ",,,,,151," +
                            Degrees(-33 - kMinute) + "\n3,G,,,,," + Degrees(151 + kMinute) + "," +
                            Degrees(-33 - kMinute));
    ASSERT_TRUE(Resolve(survey)) << link;
    EXPECT_TRUE(state.GpsArea);
    EXPECT_EQ(survey.Points[0].X, 0);
    EXPECT_EQ(survey.Points[0].Y, 0);
    EXPECT_NEAR(survey.Points[1].Y, -1852, 1e-2);
    EXPECT_NEAR(survey.Points[1].Bearing, 180, 1e-4);
    EXPECT_NEAR(survey.Points[2].X, 1852 * std::cos((33 + kMinute / 2) * M_PI / 180), 0.05);
  }
}

TEST_F(ResolvePointsTest, GpsOnlyBasisPlacesEveryGpsPointByItsGpsValues) {
  Survey survey = Entered("H,M\n1,G,,,,,151,-33\n2,XL,,,500,500,151," + Degrees(-33 + kMinute) +
                          "\n3,B,,,90,100");
  survey.FileFlags |= kFileGpsOnly;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_TRUE(state.GpsArea);
  EXPECT_NEAR(survey.Points[1].X, 0, 1e-3);
  EXPECT_NEAR(survey.Points[1].Y, 1852, 1e-2);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
  EXPECT_NEAR(survey.Points[2].X, 100, 1e-3);
}

TEST_F(ResolvePointsTest, SurveyWithoutGpsClearsOldGpsValues) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,1,0");
  survey.Points[1].GPSLong = 5;
  survey.Points[1].HasAlternate = true;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[1].GPSLong, 0);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
}

// ---- Faults ----

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

class ResolveFaultTest : public testing::ResolveFixture,
                         public ::testing::WithParamInterface<FaultRow> {};

TEST_P(ResolveFaultTest, ShowsOneCriticalBox) {
  Survey survey = GetParam().survey;
  state.ErrorState = 0x08;
  state.ProcessState = kPassComplete;
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().title, GetParam().title);
  EXPECT_EQ(dialogs.last().text, GetParam().text);
  EXPECT_EQ(dialogs.last().icon, Icon::Critical);
  EXPECT_EQ(dialogs.last().buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_EQ(state.ErrorState & ~kErrorExitMask, 0);
  EXPECT_EQ(state.ErrorState & 0x08, 0x08);
  EXPECT_EQ(state.ProcessState & kPassComplete, 0);
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
    FaultRow{"LinkHangingOnAGpsPoint",
             Entered("H,M\n1,X,,,0,0\n2,G,,,,,151,-33\n3,BL,,,90,10,151.1,-33"),
             kFailed, kRepeatFailed},
    FaultRow{"MinutesOf60", Entered("H,N\n1,X,,,0,0\n2,X,,,1,3\n12,B,,,10\\60,4"), kInvalid,
             "Minutes or Seconds values found >= 60\nat point 12"},
    FaultRow{"NotANumber", Entered("H,N\n1,X,,,0,0\n2,X,,,abc,3"), kInvalid,
             kInvalidData + std::string("2")},
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

}  // namespace
}  // namespace plotmeter
