#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "geometry/ProcessingState.h"
#include "geometry/ResolvePoints.h"
#include "support/EnteredSurvey.h"
#include "support/ScriptedDialogs.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ScriptedDialogs;

// The square (0,0) (10,0) (10,10) (0,10); intermediate points go on the line from
// (10,0) to (10,10).
constexpr char kSquare[] = "H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\n4,X,,,0,10";
// The start point is the link point, at 151° E 33° S; the line runs due north.
constexpr char kNorth[] = "H,M\n1,XL,,,0,0,151,-33\n2,X,,,0,5000\n3,X,,,-100,5000";

const std::string kChange = "\nPlease change or delete one of these points to enable processing.";
const std::string kBetween = " value must be between the values for the previous and next points.";
const std::string kNoInput = " without valid input found.";

// A point typed anew as the data line `line` ("2,BF,1,,0,10") in the resolved survey
// `resolved`: inserted before point `index` when `insert`, else in its place; its
// position stays that of the last processing until the next one. Empty `fault`: the
// entry is accepted.
TEST(CheckEnteredPointTest, NamesThePointAndTheFault) {
  const struct {
    const char* resolved;
    int index;
    bool insert;
    const char* line;
    std::string fault;
  } rows[] = {
      {kSquare, 1, false, "2,X,,,12,1", ""},
      {kSquare, 1, false, "2,X,,,10,10", "Point is identical to the following point" + kChange},
      {kSquare, 2, false, "3,X,,,0,0", "Point is identical to an earlier point" + kChange},
      {kSquare, 3, false, "4,BF,2,,0,10", "Point is identical to an earlier point" + kChange},
      {kSquare, 1, false, "2,XA,,,12,1,151,-33",
       "Attempting to generate GPS values without a GPS linked point."},
      {kSquare, 2, true, "9,XI,,,,4", ""},
      {kSquare, 2, true, "9,XI,,,,12", "Intermediate Y co-ordinate" + kBetween},
      {kSquare, 2, true, "9,XI,,,10,", "Intermediate X co-ordinate" + kNoInput},
      {kSquare, 2, true, "9,XI,,,9,-3", "Intermediate co-ordinate" + kBetween},
      {kSquare, 2, true, "9,XI,,,,", "Intermediate co-ordinate" + kNoInput},
      {kSquare, 2, true, "9,XI,,,ten,", "Intermediate co-ordinate" + kNoInput},
      {kSquare, 2, true, "9,BI,1,,270,", "Intermediate as bearing from existing point" + kBetween},
      {kSquare, 2, true, "9,BI,,,90,", "Intermediate as bearing from existing point" + kNoInput},
      {kSquare, 2, true, "9,BI,,,,10",
       "Intermediate point's length must be less than that originally set to the next point."},
      {kSquare, 2, true, "9,BI,,,,0", "Intermediate Bearing Length" + kBetween},
      {kSquare, 2, true, "9,BI,,,,", "Intermediate Bearing Length" + kNoInput},
      {kNorth, 1, true, "9,GI,,,,,151,-32.9", "Intermediate GPS" + kBetween},
      {kNorth, 1, true, "9,GI,,,,,,-33.01", "Intermediate GPS Latitude" + kBetween},
      {kNorth, 1, true, "9,GI,,,,,151.001,", "Intermediate GPS Longitude" + kNoInput},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.line);
    Survey survey = Entered(row.resolved);
    ProcessingState state;
    ScriptedDialogs dialogs;
    ASSERT_TRUE(ResolvePoints(survey, state, kFirstPass, dialogs));
    Point typed = Entered(row.line).Points[0];
    if (row.insert) {
      survey.Points.insert(survey.Points.begin() + row.index, typed);
    } else {
      typed.X = survey.Points[row.index].X;
      typed.Y = survey.Points[row.index].Y;
      survey.Points[row.index] = typed;
    }
    const Point before = survey.Points[row.index];
    state.ErrorState = 0x08;
    EXPECT_EQ(CheckEnteredPoint(survey, state, row.index, dialogs), row.fault.empty());
    // Nothing is stored.
    const Point& after = survey.Points[row.index];
    EXPECT_EQ(std::tuple(after.X, after.Y, state.ErrorState, survey.ValueMarks),
              std::tuple(before.X, before.Y, 0x08, 0));
    if (row.fault.empty()) {
      EXPECT_TRUE(dialogs.boxes.empty());
      continue;
    }
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    const MessageBox& box = dialogs.last();
    EXPECT_EQ(std::tuple(box.title, box.text, box.icon, box.buttons, dialogs.beeps),
              std::tuple("Invalid Interim Point Entry",
                         "Please correct entry for Point " + std::to_string(row.index + 1) + "\n" +
                             row.fault,
                         Icon::Critical, Buttons::Ok, 1));
  }
}

TEST(CheckEnteredPointTest, IndexOutsideThePointsIsRefusedQuietly) {
  Survey survey = Entered(kSquare);
  ProcessingState state;
  ScriptedDialogs dialogs;
  for (int index : {-1, 4}) EXPECT_FALSE(CheckEnteredPoint(survey, state, index, dialogs));
  EXPECT_TRUE(dialogs.boxes.empty());
}

}  // namespace
}  // namespace plotmeter
