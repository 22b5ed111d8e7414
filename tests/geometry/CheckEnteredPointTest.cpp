#include <gtest/gtest.h>

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

class CheckEnteredPointTest : public ::testing::Test {
 protected:
  // The square (0,0) (10,0) (10,10) (0,10), resolved as the last processing left it.
  void SetUp() override {
    survey = EnteredSurvey()
                 .Dataset(kTypeM)
                 .Xy("0", "0")
                 .Xy("10", "0")
                 .Xy("10", "10")
                 .Xy("0", "10")
                 .Build();
    ASSERT_TRUE(ResolvePoints(survey, state, kFirstPass, dialogs));
  }

  // Types point `index` anew: its input changes, its position stays that of the last
  // processing until the next one.
  void Enter(int index, const Point& typed) {
    Point& point = survey.Points[index];
    point.PtFlags = typed.PtFlags;
    point.PtRef = typed.PtRef;
    point.InXA = typed.InXA;
    point.InYL = typed.InYL;
    point.InGPSLong = typed.InGPSLong;
    point.InGPSLat = typed.InGPSLat;
  }
  // Inserts a point typed as `point` before `index`.
  void Insert(int index, Point point) {
    point.PtNumber = 50 + index;
    survey.Points.insert(survey.Points.begin() + index, point);
  }

  bool Check(int index) { return CheckEnteredPoint(survey, state, index, dialogs); }

  void ExpectFault(int index, const std::string& fault) {
    EXPECT_FALSE(Check(index));
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_EQ(dialogs.last().title, "Invalid Interim Point Entry");
    EXPECT_EQ(dialogs.last().text,
              "Please correct entry for Point " + std::to_string(index + 1) + "\n" + fault);
    EXPECT_EQ(dialogs.last().icon, Icon::Critical);
    EXPECT_EQ(dialogs.last().buttons, Buttons::Ok);
    EXPECT_EQ(dialogs.beeps, 1);
  }

  static Point Typed(std::uint8_t flags, std::string xa, std::string yl) {
    Point point;
    point.PtFlags = flags;
    point.InXA = std::move(xa);
    point.InYL = std::move(yl);
    return point;
  }

  Survey survey;
  ProcessingState state;
  ScriptedDialogs dialogs;
};

TEST_F(CheckEnteredPointTest, AcceptsAPointOffTheOthers) {
  Enter(1, Typed(kPtXY, "12", "1"));
  EXPECT_TRUE(Check(1));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(dialogs.beeps, 0);
  // Nothing is stored: the point keeps the position of the last processing.
  EXPECT_EQ(survey.Points[1].X, 10);
  EXPECT_EQ(survey.Points[1].Y, 0);
}

TEST_F(CheckEnteredPointTest, PointOnTheFollowingPoint) {
  Enter(1, Typed(kPtXY, "10", "10"));
  ExpectFault(1, "Point is identical to the following point\n" + kChange);
}

TEST_F(CheckEnteredPointTest, PointOnAnEarlierPoint) {
  Enter(2, Typed(kPtXY, "0", "0"));
  ExpectFault(2, "Point is identical to an earlier point\n" + kChange);
}

TEST_F(CheckEnteredPointTest, BearingPointLandingOnTheFollowingPoint) {
  Point point = Typed(kPtBearing | kPtReference, "0", "10");
  point.PtRef = 1;
  Enter(2, point);
  ExpectFault(2, "Point is identical to the following point\n" + kChange);
}

TEST_F(CheckEnteredPointTest, BearingPointLandingOnAnEarlierPoint) {
  Point point = Typed(kPtBearing | kPtReference, "0", "10");
  point.PtRef = 2;
  Enter(3, point);
  ExpectFault(3, "Point is identical to an earlier point\n" + kChange);
}

TEST_F(CheckEnteredPointTest, GpsPointWithoutALinkPoint) {
  Point point = Typed(kPtXY | kPtGps, "12", "1");
  point.InGPSLong = "151";
  point.InGPSLat = "-33";
  Enter(1, point);
  ExpectFault(1, "Attempting to generate GPS values without a GPS linked point.");
}

struct InterimCase {
  const char* name;
  std::uint8_t flags;
  const char* xa;
  const char* yl;
  int ref;
  std::string fault;
};

class InterimEntryTest : public CheckEnteredPointTest,
                         public ::testing::WithParamInterface<InterimCase> {};

// An intermediate point inserted on the line from (10,0) to (10,10).
TEST_P(InterimEntryTest, NamesTheValueAndTheFault) {
  const InterimCase& c = GetParam();
  Point point = Typed(c.flags | kPtIntermediate, c.xa, c.yl);
  point.PtRef = c.ref;
  Insert(2, point);
  if (c.fault.empty()) {
    EXPECT_TRUE(Check(2));
    EXPECT_TRUE(dialogs.boxes.empty());
  } else {
    ExpectFault(2, c.fault);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, InterimEntryTest,
    ::testing::Values(
        InterimCase{"YBetween", kPtXY, "", "4", 0, ""},
        InterimCase{"YBeyond", kPtXY, "", "12", 0,
                    "Intermediate Y co-ordinate value must be between the values for the "
                    "previous and next points."},
        InterimCase{"XAlongAnUprightLine", kPtXY, "10", "", 0,
                    "Intermediate X co-ordinate without valid input found."},
        InterimCase{"BothBehindTheStart", kPtXY, "9", "-3", 0,
                    "Intermediate co-ordinate value must be between the values for the previous "
                    "and next points."},
        InterimCase{"NoCoordinates", kPtXY, "", "", 0,
                    "Intermediate co-ordinate without valid input found."},
        InterimCase{"UnreadableCoordinate", kPtXY, "ten", "", 0,
                    "Intermediate co-ordinate without valid input found."},
        InterimCase{"BearingBetween", kPtBearing, "60", "", 1, ""},
        InterimCase{"BearingAway", kPtBearing, "270", "", 1,
                    "Intermediate as bearing from existing point value must be between the "
                    "values for the previous and next points."},
        InterimCase{"BearingWithoutReference", kPtBearing, "90", "", 0,
                    "Intermediate as bearing from existing point without valid input found."},
        InterimCase{"LengthShort", kPtBearing, "", "6", 0, ""},
        InterimCase{"LengthTooLong", kPtBearing, "", "10", 0,
                    "Intermediate point's length must be less than that originally set to the "
                    "next point."},
        InterimCase{"LengthZero", kPtBearing, "", "0", 0,
                    "Intermediate Bearing Length value must be between the values for the "
                    "previous and next points."},
        InterimCase{"NoBearingNoLength", kPtBearing, "", "", 0,
                    "Intermediate Bearing Length without valid input found."}),
    [](const auto& info) { return std::string(info.param.name); });

class GpsInterimEntryTest : public CheckEnteredPointTest {
 protected:
  // The start point is the link point, at 151° E 33° S; the line runs due north.
  void SetUp() override {
    survey = EnteredSurvey()
                 .Dataset(kTypeM)
                 .Xy("0", "0")
                 .WithGps("151", "-33")
                 .Link()
                 .Xy("0", "5000")
                 .Xy("-100", "5000")
                 .Build();
    ASSERT_TRUE(ResolvePoints(survey, state, kFirstPass, dialogs));
  }

  void InsertGps(std::string longitude, std::string latitude) {
    Point point = Typed(kPtGps | kPtIntermediate, "", "");
    point.InGPSLong = std::move(longitude);
    point.InGPSLat = std::move(latitude);
    Insert(1, point);
  }
};

TEST_F(GpsInterimEntryTest, PositionBetweenIsAccepted) {
  InsertGps("151", "-32.99");
  EXPECT_TRUE(Check(1));
}

TEST_F(GpsInterimEntryTest, PositionBeyondTheTarget) {
  InsertGps("151", "-32.9");
  ExpectFault(1,
              "Intermediate GPS value must be between the values for the previous and next "
              "points.");
}

TEST_F(GpsInterimEntryTest, LatitudeAloneBehindTheStart) {
  InsertGps("", "-33.01");
  ExpectFault(1,
              "Intermediate GPS Latitude value must be between the values for the previous and "
              "next points.");
}

TEST_F(GpsInterimEntryTest, LongitudeAloneOnAnUprightLine) {
  InsertGps("151.001", "");
  ExpectFault(1, "Intermediate GPS Longitude without valid input found.");
}

TEST_F(CheckEnteredPointTest, IndexOutsideThePointsIsRefusedQuietly) {
  EXPECT_FALSE(Check(-1));
  EXPECT_FALSE(Check(4));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(CheckEnteredPointTest, LeavesTheErrorStateAndValueMarksAsTheyWere) {
  state.ErrorState = 0x08;
  survey.ValueMarks = 0;
  Point point = Typed(kPtXY | kPtIntermediate, "1\\\\2", "");
  Insert(2, point);
  EXPECT_FALSE(Check(2));
  EXPECT_EQ(state.ErrorState, 0x08);
  EXPECT_EQ(survey.ValueMarks, 0);
}

}  // namespace
}  // namespace plotmeter
