// Intermediate points placed on their lines; the ones that cannot be placed are rows of
// the fault table in ResolvePointsTest.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/EnteredSurvey.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ScriptedDialogs;

using IntermediatePointsTest = testing::ResolveFixture;

TEST_F(IntermediatePointsTest, CoordinatesAreBroughtOntoTheLine) {
  // The line from (0, 0) to (10, 10): X alone, Y alone, or both pulled onto the line.
  const struct {
    const char* typed;
    float x, y;
  } rows[] = {{"4,", 4, 4}, {",2.5", 2.5f, 2.5f}, {"2,6", 4, 4}};
  for (const auto& row : rows) {
    Survey survey =
        Entered(std::string("H,M\n1,X,,,0,0\n2,XI,,,") + row.typed + "\n3,X,,,10,10\n4,X,,,10,0");
    ASSERT_TRUE(Resolve(survey)) << row.typed;
    ExpectAt(survey, 1, row.x, row.y);
    EXPECT_NEAR(survey.Points[1].Bearing, 45, 1e-4);
    EXPECT_NEAR(survey.Points[1].Len, std::hypot(row.x, row.y), 1e-4);
    EXPECT_NEAR(survey.Points[2].Len, std::hypot(10 - row.x, 10 - row.y), 1e-4);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(IntermediatePointsTest, TargetNamedFurtherOnIsSettledByARepeatPass) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,XI,,4,,5\n3,X,,,10,0\n4,X,,,10,10");
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 5, 5);
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  EXPECT_EQ(state.ProcessState & kTargetRepassNeeded, 0);
  EXPECT_EQ(state.ErrorState, 0);
}

TEST_F(IntermediatePointsTest, BearingFromAnExistingPointMeetsTheLine) {
  Survey survey = Entered("H,M\n1,X,,,0,-3\n2,X,,,0,0\n3,BI,1,,45,\n4,X,,,10,0");
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 2, 3, 0);
  EXPECT_EQ(survey.Points[2].Bearing, 90);
  EXPECT_NEAR(survey.Points[2].Len, 3, 1e-4);
}

TEST_F(IntermediatePointsTest, LengthRunsAlongTheLineFromThePreviousPoint) {
  Survey survey = Entered("H,N\n1,X,,,0,0\n2,BI,,,,3\n3,BI,,,,4\n4,X,,,0,-10");
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 0, -3);
  ExpectAt(survey, 2, 0, -7);
  EXPECT_EQ(survey.Points[2].Bearing, 180);
  EXPECT_EQ(survey.Points[2].Len, 4);
  EXPECT_NEAR(survey.Points[3].Len, 3, 1e-4);
}

TEST_F(IntermediatePointsTest, NextBearingIsMeasuredFromALengthPointButNotACoordinatePoint) {
  Survey length = Entered("H,N\n1,X,,,0,0\n2,BI,,,,4\n3,B,,,90,6");
  ASSERT_TRUE(Resolve(length));
  ExpectAt(length, 1, 4, 0);
  ExpectAt(length, 2, 10, 0);
  EXPECT_EQ(length.Points[1].Bearing, 90);

  Survey coordinate = Entered("H,N\n1,X,,,0,0\n2,XI,,,3,\n3,B,,,90,10");
  ASSERT_TRUE(Resolve(coordinate));
  ExpectAt(coordinate, 1, 3, 0);
  ExpectAt(coordinate, 2, 10, 0);
}

TEST_F(IntermediatePointsTest, DroppingALengthIntermediateAndLengtheningTheNextKeepsItsPlace) {
  Survey with = Entered("H,N\n1,X,,,2,1\n2,BI,,,,4.5\n3,B,,,30,6.25");
  ASSERT_TRUE(Resolve(with));
  Survey without = Entered("H,N\n1,X,,,2,1\n2,B,,,30,10.75");
  ASSERT_TRUE(Resolve(without));
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
  survey = Entered(
      "H,M\n1,XL,,,0,0,151,-33\n2,GI,,,,,,-32.9833333333\n3,X,,,5000,5000\n"
      "4,X,,,5000,0");
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
  ExpectAt(survey, 2, 5, 0);
  ExpectAt(survey, 3, 7, 0);
  EXPECT_EQ(survey.Points[1].PtMarks & kMarkShared, 0);
  EXPECT_NE(survey.Points[2].PtMarks & kMarkShared, 0);
  EXPECT_NE(survey.Points[3].PtMarks & kMarkShared, 0);
  EXPECT_EQ(state.ErrorState, kErrorResequenced);
  EXPECT_NEAR(survey.Points[3].Len, 2, 1e-4);  // from its new previous point
  // The line still starts at point number 3, wherever its record went.
  ExpectAt(survey, 6, 7, 0);

  // Resolved again, the points stand in order: no note, no marks.
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(state.ErrorState, 0);
  EXPECT_EQ(survey.Points[2].PtMarks & kMarkShared, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

}  // namespace
}  // namespace plotmeter
