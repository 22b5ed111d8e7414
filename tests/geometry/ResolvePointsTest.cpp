// Point resolution: surveys typed as data lines, resolved on a first pass, and their
// points and closing lines written out one by one.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <tuple>

#include "geometry/GpsLink.h"
#include "support/EnteredSurvey.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ScriptedDialogs;

// Rounded to 4 decimals, without a minus sign on 0.
std::string Rounded(double value) {
  std::ostringstream text;
  text.precision(12);
  text << std::round(value * 1e4) / 1e4 + 0.0;
  return text.str();
}

// "0,0 0/0; 10,0 90/10": each point's position, bearing and length.
std::string PointsText(const Survey& survey) {
  std::string text;
  for (const Point& p : survey.Points) {
    if (!text.empty()) text += "; ";
    text += Rounded(p.X) + "," + Rounded(p.Y) + " " + Rounded(p.Bearing) + "/" + Rounded(p.Len);
  }
  return text;
}

// "225/14.1421; 0/0": each dataset's closing line, bearing and length.
std::string ClosingText(const Survey& survey) {
  std::string text;
  for (const Dataset& set : survey.Datasets) {
    if (!text.empty()) text += "; ";
    text += Rounded(set.ClosingBearing) + "/" + Rounded(set.ClosingLen);
  }
  return text;
}

class ResolvePointsTest : public testing::ResolveFixture {
 protected:
  // The points of `survey` once resolved, which it must be without a box.
  std::string Resolved(Survey& survey) {
    EXPECT_TRUE(Resolve(survey));
    EXPECT_TRUE(dialogs.boxes.empty());
    return PointsText(survey);
  }
  std::string Resolved(const std::string& lines) {
    Survey survey = Entered(lines);
    return Resolved(survey);
  }
};

// A reference to a later dataset, an intermediate point's target further on, or a GPS
// point before the link point waits for a repeat pass; the first pass then completes with
// no repeat pass left pending. Where the points land is the goldens' (reference-to-a-
// later-dataset, intermediate-target) and GpsPointStandsAtItsOffsetFromTheLinkPoint's.
TEST_F(ResolvePointsTest, RepeatPassesLeaveNoPassPending) {
  for (const char* lines : {"H,L\n1,R,5\n2,B,,,0,10\nH,M\n3,X,,,0,0\n4,X,,,20,0\n5,X,,,20,20",
                            "H,M\n1,X,,,0,0\n2,XI,,4,,5\n3,X,,,10,0\n4,X,,,10,10",
                            "H,M\n1,G,,,,,151.1,-33\n2,XL,,,100,200,151,-33"}) {
    SCOPED_TRACE(lines);
    Resolved(lines);
    EXPECT_EQ(state.ProcessState & (kPassComplete | kTargetRepassNeeded), kPassComplete);
    EXPECT_EQ(state.GpsState & kGpsRepassNeeded, 0);
    EXPECT_EQ(state.ErrorState, 0);
  }
}

TEST_F(ResolvePointsTest, OnlyAFirstOrDependentPassCompletesAndClearsTheSelection) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,1,0\n3,X,,,1,1");
  ASSERT_TRUE(ResolvePoints(survey, state, kRepeatPass, dialogs));
  EXPECT_EQ(state.ProcessState & kPassComplete, 0);
  ASSERT_TRUE(ResolvePoints(survey, state, kDependentPass, dialogs));
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  state = {.SelectedPoint = 2, .SelectedDataset = 1};
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(std::tuple(state.ProcessState & kPassComplete, state.SelectedPoint,
                       state.SelectedDataset, state.GpsArea),
            std::tuple(kPassComplete, -1, 0, false));
}

// The point found identical loses its length; its input stays.
TEST_F(ResolvePointsTest, FailureKeepsTheInput) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,0\n4,X,,,0,9");
  survey.Points[2].Len = 4;
  EXPECT_FALSE(Resolve(survey));
  EXPECT_EQ(survey.Points[2].Len, 0);
  EXPECT_EQ(survey.Points[2].InXA, "10");
}

// Closing lines run back to the start point of a main perimeter or a sub-division, or on
// to the join point a division ends at (the golden closing-line-to-the-end-join); other
// datasets, and tiny ones, have none.
TEST_F(ResolvePointsTest, ClosingLines) {
  Survey survey = Entered(
      "H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\nH,S\n4,X,,,0,0\n5,X,,,-5,0\n"
      "H,L\n6,X,,,0,0\n7,X,,,3,0");
  survey.Datasets[2].ClosingLen = 7;
  Resolved(survey);
  EXPECT_EQ(ClosingText(survey), "225/14.1421; 90/5; 0/0");
  Survey empty;
  EXPECT_EQ(Resolved(empty), "");
  survey = Entered("H,M\n1,X,,,4,4\nH,S\nH,L\n2,X,,,1,1");
  survey.Datasets[0].ClosingLen = 9;
  EXPECT_EQ(Resolved(survey), "4,4 0/0; 1,1 0/0");
  EXPECT_EQ(ClosingText(survey), "0/0; 0/0; 0/0");
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

// ---- Intermediate points, on their lines ----

// Lengths run along the line from the point before (a survey the reader refuses, a
// bearing intermediate without a reference). Intermediates by co-ordinates, target and
// bearing are the goldens' (intermediate-*).
TEST_F(ResolvePointsTest, IntermediateByLength) {
  EXPECT_EQ(Resolved("H,N\n1,X,,,0,0\n2,BI,,,,3\n3,BI,,,,4\n4,X,,,0,-10"),
            "0,0 0/0; 0,-3 180/3; 0,-7 180/4; 0,-10 180/3");
}

// A point given by a length is a station the next bearing starts from; one given by a
// co-ordinate is a mark on the line and is not (the golden bearing-after-a-coordinate-point).
TEST_F(ResolvePointsTest, NextBearingIsMeasuredFromALengthPointButNotACoordinatePoint) {
  EXPECT_EQ(Resolved("H,N\n1,X,,,0,0\n2,BI,,,,4\n3,B,,,90,6"), "0,0 0/0; 4,0 90/4; 10,0 90/6");
  // A bearing measured from the run gives the line its direction: dropping the length
  // point and lengthening the next keeps the next point's place.
  Survey with = Entered("H,N\n1,X,,,2,1\n2,BI,,,,4.5\n3,B,,,30,6.25");
  Survey without = Entered("H,N\n1,X,,,2,1\n2,B,,,30,10.75");
  Resolved(with);
  Resolved(without);
  EXPECT_NEAR(with.Points[2].X, without.Points[1].X, 1e-4);
  EXPECT_NEAR(with.Points[2].Y, without.Points[1].Y, 1e-4);
}

// Out-of-order intermediates are resequenced, marked and noted (the golden
// intermediates-out-of-order); resolved again, they stand in order: no note, no marks.
TEST_F(ResolvePointsTest, ResequencedIntermediatesLoseTheNoteAndMarksWhenResolvedAgain) {
  Survey survey =
      Entered("H,M\n1,X,,,0,0\n2,XI,,,3,\n3,XI,,,7,\n4,XI,,,5,\n5,X,,,10,0\n6,X,,,10,10");
  ASSERT_TRUE(Resolve(survey));
  ASSERT_EQ(state.ErrorState, kErrorResequenced);
  ASSERT_NE(survey.Points[2].PtMarks & kMarkShared, 0);
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(state.ErrorState, 0);
  EXPECT_EQ(survey.Points[2].PtMarks & kMarkShared, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

// ---- GPS values, through the link point ----
// An all-GPS survey, with or without a link, GPS intermediates, plane points given GPS
// values and a point given both ways its alternates, and a survey resolved on a 'GPS
// Only' basis are the goldens' (all-gps*, gps-intermediate*, point-given-both-ways,
// gps-only-basis).

constexpr double kMinute = 1.0 / 60;
// One minute of longitude at 33° south, in metres, worked out by hand: 1852 × cos 33°.
constexpr double kMinuteEastAt33 = 1553.2;

// A GPS point before the link point (which a file may not hold) stands at its offset
// from the link point once that is placed; its GPS values are those entered.
TEST_F(ResolvePointsTest, GpsPointStandsAtItsOffsetFromTheLinkPoint) {
  Survey survey = Entered("H,M\n1,G,,,,,151.016666667,-33\n2,B,,,180,50\n3,XL,,,100,200,151,-33");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[0].X, 100 + kMinuteEastAt33, 0.05);
  EXPECT_NEAR(survey.Points[0].Y, 200, 1e-3);
  EXPECT_NEAR(survey.Points[0].GPSLong, 151 + kMinute, 1e-9);
  EXPECT_DOUBLE_EQ(survey.Points[0].GPSLat, -33);
  EXPECT_FALSE(survey.Points[0].HasAlternate);
  EXPECT_NEAR(survey.Points[1].Y, 150, 1e-3);
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

constexpr char kFailed[] = "Failed Area Calculation";
constexpr char kInvalid[] = "Invalid Data encounted in processing";
constexpr char kBadReference[] = "Bad Point reference";
constexpr char kRepeatFailed[] =
    "Bad reiterative calculations (for GPS / Inermediate Pt Target data)";
constexpr char kBadInterim[] = "Bad Interim Point data";
constexpr char kInvalidData[] = "Invalid Data found, please check data\nat point ";

// Each fault shows one critical box, beeps, masks the error state (0x08 stays) and
// leaves the pass incomplete. These surveys are ones the reader refuses; the faults a
// loaded file can reach are the goldens in tests/golden/resolution, each its box whole.
// (A point referring to itself is refused both by the reader and at entry.)
TEST(ResolvePointsFaultTest, ShowsOneCriticalBox) {
  const struct {
    const char* name;
    Survey survey;
    const char* title;
    std::string text;
  } rows[] = {
      // clang-format off
    {"ReferenceMissing", Entered("H,N\n1,X,,,0,0\n2,R,9"), kFailed, kBadReference},
    {"FromMissing", Entered("H,N\n1,X,,,0,0\n2,BF,40,,0,1"), kFailed, kBadReference},
    {"TargetMissing", Entered("H,N\n1,X,,,0,0\n2,XI,,77,5,0\n3,X,,,10,0"), kFailed,
             kBadReference},
    {"DuplicateNumber", Entered("H,M\n1,X,,,0,0\n3,X,,,10,0\n3,X,,,10,10\nH,L\n4,R,3"),
             kFailed, kBadReference},
    {"CircularReferences", Entered("H,N\n1,X,,,0,0\nH,L\n2,R,3\n3,R,2"), kFailed,
             kRepeatFailed},
    {"LinkHangingOnAGpsPoint",
             Entered("H,M\n1,X,,,0,0\n2,G,,,,,151,-33\n3,BL,,,90,10,151.1,-33"),
             kFailed, kRepeatFailed},
    {"PointWithoutInput", Entered("H,N\n1,X,,,0,0\n2,"), kInvalid,
             kInvalidData + std::string("2")},
    {"DatasetsOutOfOrder", DatasetsOutOfOrder(), kInvalid,
             kInvalidData + std::string("1")},
    {"PointsWithoutDataset", Entered("1,X,,,0,0"), kInvalid,
             kInvalidData + std::string("1")},
    {"GpsWithoutAUnit", Entered("H,M\n1,G,,,,,151,-33\n2,G,,,,,151.1,-33",
                                        kUnitNotSpecified),
             kInvalid, kInvalidData + std::string("1")},
    {"MixedDataWithoutALink", Entered("H,M\n1,X,,,0,0\n2,G,,,,,151,-33"), kFailed,
             "Attempting to generate GPS values without a GPS linked point.\n"
             "Ensure one point is flagged as the designated link point."},
    {"GpsOnlyWithoutGpsInput", GpsOnly(Entered("H,M\n1,X,,,0,0\n2,X,,,1,0")), kFailed,
             "Attempting to generate GPS values without a GPS reference point.\n"
             "Ensure at least input data for one point also includes GPS values."},
    {"FirstPointIntermediate", Entered("H,N\n1,XI,,,3,\n2,X,,,9,9"), kFailed,
             kBadInterim},
    {"LastPointWithoutTarget", Entered("H,N\n1,X,,,0,0\n2,XI,,,3,\nH,L\n3,X,,,9,9"),
             kFailed, kBadInterim},
    {"RunWithALengthPointOutOfOrder",
             Entered("H,N\n1,X,,,0,0\n2,XI,,,6,\n3,XI,,,2,\n4,BI,,,,1\n5,X,,,10,0"),
             kFailed, kBadInterim},
    {"NegativeLength", Entered("H,M\n1,X,,,0,-4\n2,X,,,0,0\n3,BI,,,,-1\n4,X,,,10,0\n5,X,,,10,10"),
             kFailed, kBadInterim},
    {"NoInputAtAll", Entered("H,M\n1,X,,,0,-4\n2,X,,,0,0\n3,I\n4,X,,,10,0\n5,X,,,10,10"),
             kFailed, kBadInterim},
      // clang-format on
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Survey survey = row.survey;
    ProcessingState state{.ProcessState = kPassComplete, .ErrorState = 0x08};
    ScriptedDialogs dialogs;
    EXPECT_FALSE(ResolvePoints(survey, state, kFirstPass, dialogs));
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    const MessageBox& box = dialogs.last();
    EXPECT_EQ(std::tuple(box.title, box.text, box.icon, box.buttons, dialogs.beeps),
              std::tuple(row.title, row.text, Icon::Critical, Buttons::Ok, 1));
    // Only the bits the exit mask keeps stay: 0x08 is one of them.
    EXPECT_EQ(state.ErrorState & (~kErrorExitMask | 0x08), 0x08);
    EXPECT_EQ(state.ProcessState & kPassComplete, 0);
  }
}

}  // namespace
}  // namespace plotmeter
