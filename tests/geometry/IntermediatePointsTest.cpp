// Intermediate points placed on their lines; the ones that cannot be placed are rows of
// the fault table in ResolvePointsTest and of the entry check's table.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "geometry/Resolution.h"

namespace plotmeter {
namespace {

using testing::Entered;

using IntermediatePointsTest = testing::Resolution;

TEST_F(IntermediatePointsTest, CoordinatesAreBroughtOntoTheLine) {
  // The line from (0, 0) to (10, 10): X alone, Y alone, or both pulled onto the line.
  auto typed = [&](const char* values) {
    return "H,M\n1,X,,,0,0\n2,XI,,," + std::string(values) + "\n3,X,,,10,10";
  };
  EXPECT_EQ(Resolved(typed("4,")), "0,0 0/0; 4,4 45/5.6569; 10,10 45/8.4853");
  EXPECT_EQ(Resolved(typed(",2.5")), "0,0 0/0; 2.5,2.5 45/3.5355; 10,10 45/10.6066");
  EXPECT_EQ(Resolved(typed("2,6")), "0,0 0/0; 4,4 45/5.6569; 10,10 45/8.4853");
}

// A target named further on waits for a repeat pass; a bearing from an existing point
// meets the line; a length runs along the line from the point before.
TEST_F(IntermediatePointsTest, TargetBearingAndLengthPlacements) {
  EXPECT_EQ(Resolved("H,M\n1,X,,,0,0\n2,XI,,4,,5\n3,X,,,10,0\n4,X,,,10,10"),
            "0,0 0/0; 5,5 45/7.0711; 10,0 135/7.0711; 10,10 0/10");
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  EXPECT_EQ(state.ProcessState & kTargetRepassNeeded, 0);
  EXPECT_EQ(state.ErrorState, 0);
  EXPECT_EQ(Resolved("H,M\n1,X,,,0,-3\n2,X,,,0,0\n3,BI,1,,45,\n4,X,,,10,0"),
            "0,-3 0/0; 0,0 0/3; 3,0 90/3; 10,0 90/7");
  EXPECT_EQ(Resolved("H,N\n1,X,,,0,0\n2,BI,,,,3\n3,BI,,,,4\n4,X,,,0,-10"),
            "0,0 0/0; 0,-3 180/3; 0,-7 180/4; 0,-10 180/3");
}

// A point given by a length is a station the next bearing starts from; one given by a
// co-ordinate is a mark on the line and is not.
TEST_F(IntermediatePointsTest, NextBearingIsMeasuredFromALengthPointButNotACoordinatePoint) {
  EXPECT_EQ(Resolved("H,N\n1,X,,,0,0\n2,BI,,,,4\n3,B,,,90,6"), "0,0 0/0; 4,0 90/4; 10,0 90/6");
  EXPECT_EQ(Resolved("H,N\n1,X,,,0,0\n2,XI,,,3,\n3,B,,,90,10"), "0,0 0/0; 3,0 90/3; 10,0 90/10");
  // A bearing measured from the run gives the line its direction: dropping the length
  // point and lengthening the next keeps the next point's place.
  Survey with = Entered("H,N\n1,X,,,2,1\n2,BI,,,,4.5\n3,B,,,30,6.25");
  Survey without = Entered("H,N\n1,X,,,2,1\n2,B,,,30,10.75");
  Resolved(with);
  Resolved(without);
  EXPECT_NEAR(with.Points[2].X, without.Points[1].X, 1e-4);
  EXPECT_NEAR(with.Points[2].Y, without.Points[1].Y, 1e-4);
}

TEST_F(IntermediatePointsTest, GpsIntermediateIsPlacedThroughTheLink) {
  // One minute of latitude north of the link is 1852 m along a line due north.
  Survey survey = Entered(
      "H,M\n1,XL,,,0,0,151,-33\n2,GI,,,,,151.001,-32.9833333333\n3,X,,,0,5000\n"
      "4,X,,,-100,5000");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[1].X, 0, 1e-4);
  EXPECT_NEAR(survey.Points[1].Y, 1852, 1e-2);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
  // One GPS value alone finds its place on a diagonal line.
  survey =
      Entered("H,M\n1,XL,,,0,0,151,-33\n2,GI,,,,,,-32.9833333333\n3,X,,,5000,5000\n4,X,,,5000,0");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[1].Y, 1852, 1e-2);
  EXPECT_NEAR(survey.Points[1].X, 1852, 1e-2);
}

TEST_F(IntermediatePointsTest, OutOfOrderPointsAreResequencedAndMarked) {
  Survey survey = Entered(
      "H,M\n1,X,,,0,0\n2,XI,,,3,\n3,XI,,,7,\n4,XI,,,5,\n5,X,,,10,0\n6,X,,,10,10\n"
      "H,L\n7,R,3\n8,B,,,0,1");
  ASSERT_TRUE(Resolve(survey));
  std::vector<int> numbers;
  for (const Point& p : survey.Points) numbers.push_back(p.PtNumber);
  EXPECT_EQ(numbers, (std::vector<int>{1, 2, 4, 3, 5, 6, 7, 8}));
  // Each point has its length from its new previous point; the line still starts at
  // point number 3, wherever its record went.
  EXPECT_EQ(testing::PointsText(survey),
            "0,0 0/0; 3,0 90/3; 5,0 90/2; 7,0 90/2; 10,0 90/3; 10,10 0/10; 7,0 0/0; 7,1 0/1");
  EXPECT_EQ(survey.Points[1].PtMarks & kMarkShared, 0);
  EXPECT_NE(survey.Points[2].PtMarks & kMarkShared, 0);
  EXPECT_NE(survey.Points[3].PtMarks & kMarkShared, 0);
  EXPECT_EQ(state.ErrorState, kErrorResequenced);
  // Resolved again, the points stand in order: no note, no marks.
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(state.ErrorState, 0);
  EXPECT_EQ(survey.Points[2].PtMarks & kMarkShared, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

}  // namespace
}  // namespace plotmeter
