#include <gtest/gtest.h>

#include <string>

#include "geometry/ProcessingState.h"
#include "geometry/ResolvePoints.h"
#include "support/EnteredSurvey.h"
#include "support/ScriptedDialogs.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ScriptedDialogs;

const std::string kChange = "Please change or delete one of these points to enable processing.";

// A point typed anew as the data line `line` ("2,BF,1,,0,10"): its input changes, its
// position stays that of the last processing until the next one. Inserted before point
// `index` when `insert`, else in its place. Empty `fault`: the entry is accepted.
struct EntryRow {
  const char* name;
  int index;
  bool insert;
  const char* line;
  std::string fault;
};

void PrintTo(const EntryRow& row, std::ostream* out) { *out << row.name; }

class CheckEnteredPointTest : public ::testing::TestWithParam<EntryRow> {
 protected:
  void Check(const char* resolved) {
    survey = Entered(resolved);
    ASSERT_TRUE(ResolvePoints(survey, state, kFirstPass, dialogs));
    const EntryRow& row = GetParam();
    Point typed = Entered(row.line).Points[0];
    if (row.insert) {
      survey.Points.insert(survey.Points.begin() + row.index, typed);
    } else {
      Point& point = survey.Points[row.index];
      point.PtFlags = typed.PtFlags;
      point.PtRef = typed.PtRef;
      point.InXA = typed.InXA;
      point.InYL = typed.InYL;
      point.InGPSLong = typed.InGPSLong;
      point.InGPSLat = typed.InGPSLat;
    }
    const Point before = survey.Points[row.index];
    state.ErrorState = 0x08;
    const bool accepted = CheckEnteredPoint(survey, state, row.index, dialogs);
    // Nothing is stored: the point keeps the position of the last processing.
    EXPECT_EQ(survey.Points[row.index].X, before.X);
    EXPECT_EQ(survey.Points[row.index].Y, before.Y);
    EXPECT_EQ(state.ErrorState, 0x08);
    EXPECT_EQ(survey.ValueMarks, 0);
    if (row.fault.empty()) {
      EXPECT_TRUE(accepted);
      EXPECT_TRUE(dialogs.boxes.empty());
      return;
    }
    EXPECT_FALSE(accepted);
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_EQ(dialogs.last().title, "Invalid Interim Point Entry");
    EXPECT_EQ(dialogs.last().text,
              "Please correct entry for Point " + std::to_string(row.index + 1) + "\n" + row.fault);
    EXPECT_EQ(dialogs.last().icon, Icon::Critical);
    EXPECT_EQ(dialogs.last().buttons, Buttons::Ok);
    EXPECT_EQ(dialogs.beeps, 1);
  }

  Survey survey;
  ProcessingState state;
  ScriptedDialogs dialogs;
};

class SquareEntryTest : public CheckEnteredPointTest {};

// The square (0,0) (10,0) (10,10) (0,10); intermediate points go on the line from
// (10,0) to (10,10).
TEST_P(SquareEntryTest, NamesThePointAndTheFault) {
  Check("H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\n4,X,,,0,10");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, SquareEntryTest, ::testing::Values(
    EntryRow{"OffTheOthers", 1, false, "2,X,,,12,1", ""},
    EntryRow{"OnTheFollowingPoint", 1, false, "2,X,,,10,10",
             "Point is identical to the following point\n" + kChange},
    EntryRow{"OnAnEarlierPoint", 2, false, "3,X,,,0,0",
             "Point is identical to an earlier point\n" + kChange},
    EntryRow{"BearingOnTheFollowingPoint", 2, false, "3,BF,1,,0,10",
             "Point is identical to the following point\n" + kChange},
    EntryRow{"BearingOnAnEarlierPoint", 3, false, "4,BF,2,,0,10",
             "Point is identical to an earlier point\n" + kChange},
    EntryRow{"GpsWithoutALink", 1, false, "2,XA,,,12,1,151,-33",
             "Attempting to generate GPS values without a GPS linked point."},
    EntryRow{"YBetween", 2, true, "9,XI,,,,4", ""},
    EntryRow{"YBeyond", 2, true, "9,XI,,,,12",
             "Intermediate Y co-ordinate value must be between the values for the previous and "
             "next points."},
    EntryRow{"XAlongAnUprightLine", 2, true, "9,XI,,,10,",
             "Intermediate X co-ordinate without valid input found."},
    EntryRow{"BothBehindTheStart", 2, true, "9,XI,,,9,-3",
             "Intermediate co-ordinate value must be between the values for the previous and "
             "next points."},
    EntryRow{"NoCoordinates", 2, true, "9,XI,,,,",
             "Intermediate co-ordinate without valid input found."},
    EntryRow{"UnreadableCoordinate", 2, true, "9,XI,,,ten,",
             "Intermediate co-ordinate without valid input found."},
    EntryRow{"DoubledSeparator", 2, true, "9,XI,,,1\\\\2,",
             "Intermediate co-ordinate without valid input found."},
    EntryRow{"BearingBetween", 2, true, "9,BI,1,,60,", ""},
    EntryRow{"BearingAway", 2, true, "9,BI,1,,270,",
             "Intermediate as bearing from existing point value must be between the values for "
             "the previous and next points."},
    EntryRow{"BearingWithoutReference", 2, true, "9,BI,,,90,",
             "Intermediate as bearing from existing point without valid input found."},
    EntryRow{"LengthShort", 2, true, "9,BI,,,,6", ""},
    EntryRow{"LengthTooLong", 2, true, "9,BI,,,,10",
             "Intermediate point's length must be less than that originally set to the next "
             "point."},
    EntryRow{"LengthZero", 2, true, "9,BI,,,,0",
             "Intermediate Bearing Length value must be between the values for the previous and "
             "next points."},
    EntryRow{"NoBearingNoLength", 2, true, "9,BI,,,,",
             "Intermediate Bearing Length without valid input found."}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

class GpsEntryTest : public CheckEnteredPointTest {};

// The start point is the link point, at 151° E 33° S; the line runs due north.
TEST_P(GpsEntryTest, NamesThePointAndTheFault) {
  Check("H,M\n1,XL,,,0,0,151,-33\n2,X,,,0,5000\n3,X,,,-100,5000");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, GpsEntryTest, ::testing::Values(
    EntryRow{"Between", 1, true, "9,GI,,,,,151,-32.99", ""},
    EntryRow{"BeyondTheTarget", 1, true, "9,GI,,,,,151,-32.9",
             "Intermediate GPS value must be between the values for the previous and next "
             "points."},
    EntryRow{"LatitudeAloneBehindTheStart", 1, true, "9,GI,,,,,,-33.01",
             "Intermediate GPS Latitude value must be between the values for the previous and "
             "next points."},
    EntryRow{"LongitudeAloneOnAnUprightLine", 1, true, "9,GI,,,,,151.001,",
             "Intermediate GPS Longitude without valid input found."}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

TEST(CheckEnteredPointIndexTest, OutsideThePointsIsRefusedQuietly) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10");
  ProcessingState state;
  ScriptedDialogs dialogs;
  EXPECT_FALSE(CheckEnteredPoint(survey, state, -1, dialogs));
  EXPECT_FALSE(CheckEnteredPoint(survey, state, 3, dialogs));
  EXPECT_TRUE(dialogs.boxes.empty());
}

}  // namespace
}  // namespace plotmeter
