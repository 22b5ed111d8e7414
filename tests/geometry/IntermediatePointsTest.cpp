#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "geometry/ProcessingState.h"
#include "geometry/ResolvePoints.h"
#include "geometry/ResolveSurveyBuilder.h"
#include "support/ScriptedDialogs.h"

namespace plotmeter {
namespace {

using testing::EnteredSurvey;
using testing::ScriptedDialogs;

class IntermediatePointsTest : public ::testing::Test {
 protected:
  bool Resolve(Survey& survey) { return ResolvePoints(survey, state, kFirstPass, dialogs); }

  void ExpectAt(const Survey& survey, int i, float x, float y) {
    EXPECT_NEAR(survey.Points[i].X, x, 1e-4) << "point " << i;
    EXPECT_NEAR(survey.Points[i].Y, y, 1e-4) << "point " << i;
  }

  std::vector<int> Numbers(const Survey& survey) {
    std::vector<int> numbers;
    for (const Point& p : survey.Points) numbers.push_back(p.PtNumber);
    return numbers;
  }

  ProcessingState state;
  ScriptedDialogs dialogs;
};

// A line from (0, 0) to (10, 10) with one intermediate point between.
Survey OnDiagonal(std::string x, std::string y) {
  return EnteredSurvey()
      .Dataset(kTypeM)
      .Xy("0", "0")
      .Xy(x, y)
      .Intermediate()
      .Xy("10", "10")
      .Xy("10", "0")
      .Build();
}

TEST_F(IntermediatePointsTest, XAloneFindsThePointOfTheLineWithThatX) {
  Survey survey = OnDiagonal("4", "");
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 4, 4);
  EXPECT_NEAR(survey.Points[1].Bearing, 45, 1e-4);
  EXPECT_NEAR(survey.Points[1].Len, std::hypot(4, 4), 1e-4);
  EXPECT_NEAR(survey.Points[2].Len, std::hypot(6, 6), 1e-4);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(IntermediatePointsTest, YAloneFindsThePointOfTheLineWithThatY) {
  Survey survey = OnDiagonal("", "2.5");
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 2.5f, 2.5f);
}

TEST_F(IntermediatePointsTest, BothCoordinatesAreBroughtOntoTheLine) {
  Survey survey = OnDiagonal("2", "6");
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 4, 4);
}

TEST_F(IntermediatePointsTest, TargetNamedFurtherOnIsSettledByARepeatPass) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("", "5")
                      .Intermediate()
                      .Target(4)
                      .Xy("10", "0")
                      .Xy("10", "10")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 5, 5);
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
  EXPECT_EQ(state.ProcessState & kTargetRepassNeeded, 0);
  EXPECT_EQ(state.ErrorState, 0);
}

TEST_F(IntermediatePointsTest, BearingFromAnExistingPointMeetsTheLine) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "-3")
                      .Xy("0", "0")
                      .Bearing("45", "")
                      .Intermediate()
                      .Ref(1)
                      .Xy("10", "0")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 2, 3, 0);
  EXPECT_EQ(survey.Points[2].Bearing, 90);
  EXPECT_NEAR(survey.Points[2].Len, 3, 1e-4);
}

TEST_F(IntermediatePointsTest, LengthRunsAlongTheLineFromThePreviousPoint) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Bearing("", "3")
                      .Intermediate()
                      .Bearing("", "4")
                      .Intermediate()
                      .Xy("0", "-10")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 0, -3);
  ExpectAt(survey, 2, 0, -7);
  EXPECT_EQ(survey.Points[2].Bearing, 180);
  EXPECT_EQ(survey.Points[2].Len, 4);
  EXPECT_NEAR(survey.Points[3].Len, 3, 1e-4);
}

TEST_F(IntermediatePointsTest, NextBearingPointIsMeasuredFromAnIntermediateGivenByLength) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Bearing("", "4")
                      .Intermediate()
                      .Bearing("90", "6")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 4, 0);
  ExpectAt(survey, 2, 10, 0);
  EXPECT_EQ(survey.Points[1].Bearing, 90);
}

TEST_F(IntermediatePointsTest, DroppingALengthIntermediateAndLengtheningTheNextKeepsItsPlace) {
  Survey with = EnteredSurvey()
                    .Dataset(kTypeN)
                    .Xy("2", "1")
                    .Bearing("", "4.5")
                    .Intermediate()
                    .Bearing("30", "6.25")
                    .Build();
  ASSERT_TRUE(Resolve(with));
  Survey without = EnteredSurvey().Dataset(kTypeN).Xy("2", "1").Bearing("30", "10.75").Build();
  ASSERT_TRUE(Resolve(without));
  EXPECT_NEAR(with.Points[2].X, without.Points[1].X, 1e-4);
  EXPECT_NEAR(with.Points[2].Y, without.Points[1].Y, 1e-4);
}

TEST_F(IntermediatePointsTest, PointsGivenByCoordinateAreSkippedByTheNextBearing) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Xy("3", "")
                      .Intermediate()
                      .Bearing("90", "10")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 3, 0);
  ExpectAt(survey, 2, 10, 0);
}

TEST_F(IntermediatePointsTest, GpsIntermediateIsPlacedThroughTheLink) {
  // One minute of latitude north of the link is 1852 m along a line due north.
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .WithGps("151", "-33")
                      .Link()
                      .Gps("151.001", "-32.9833333333")
                      .Intermediate()
                      .Xy("0", "5000")
                      .Xy("-100", "5000")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  ExpectAt(survey, 1, 0, survey.Points[1].Y);
  EXPECT_NEAR(survey.Points[1].Y, 1852, 1e-2);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
}

TEST_F(IntermediatePointsTest, OneGpsValueAloneFindsItsPlaceOnTheLine) {
  EnteredSurvey entered;
  entered.Dataset(kTypeM).Xy("0", "0").WithGps("151", "-33").Link();
  entered.Gps("", "-32.9833333333").Intermediate();
  entered.Xy("5000", "5000").Xy("5000", "0");
  Survey survey = entered.Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[1].Y, 1852, 1e-2);
  EXPECT_NEAR(survey.Points[1].X, 1852, 1e-2);
}

TEST_F(IntermediatePointsTest, OutOfOrderPointsAreResequencedAndMarked) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Xy("3", "")
                      .Intermediate()
                      .Xy("7", "")
                      .Intermediate()
                      .Xy("5", "")
                      .Intermediate()
                      .Xy("10", "0")
                      .Xy("10", "10")
                      .Dataset(kTypeL)
                      .Reference(3)
                      .Bearing("0", "1")
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(Numbers(survey), (std::vector<int>{1, 2, 4, 3, 5, 6, 7, 8}));
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

TEST_F(IntermediatePointsTest, RunWithALengthPointCannotBeResequenced) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Xy("6", "")
                      .Intermediate()
                      .Xy("2", "")
                      .Intermediate()
                      .Bearing("", "1")
                      .Intermediate()
                      .Xy("10", "0")
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().text, "Bad Interim Point data");
}

TEST_F(IntermediatePointsTest, IntermediateOnItsPreviousPointIsIdentical) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Xy("4", "")
                      .Intermediate()
                      .Xy("4", "")
                      .Intermediate()
                      .Xy("10", "0")
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().title, kResolveFailedTitle);
  EXPECT_EQ(dialogs.last().text,
            "Point number 3 is identical to the preceding point\n\nPlease change or delete one "
            "of these points to enable processing.");
}

TEST_F(IntermediatePointsTest, FaultFoundOnceALaterTargetIsKnownComesFromARepeatPass) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Xy("12", "")
                      .Intermediate()
                      .Target(5)
                      .Xy("0", "9")
                      .Xy("-3", "9")
                      .Xy("10", "0")
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().text,
            "Bad reiterative calculations (for GPS / Inermediate Pt Target data)");
}

TEST_F(IntermediatePointsTest, IntermediateBeforeAnEarlierTargetFailsInTheFirstPass) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Xy("10", "0")
                      .Xy("0", "5")
                      .Xy("12", "")
                      .Intermediate()
                      .Target(2)
                      .Xy("0", "9")
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().text, "Bad Interim Point data");
  EXPECT_EQ(dialogs.last().title, kResolveFailedTitle);
}

struct BadInterimCase {
  const char* name;
  Survey survey;
};

class BadInterimTest : public IntermediatePointsTest,
                       public ::testing::WithParamInterface<BadInterimCase> {};

TEST_P(BadInterimTest, CannotBePlaced) {
  Survey survey = GetParam().survey;
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().title, kResolveFailedTitle);
  EXPECT_EQ(dialogs.last().icon, Icon::Critical);
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_EQ(dialogs.last().text, "Bad Interim Point data");
}

// Intermediates placed on a line whose start or end is missing fail in the first pass.
TEST_F(IntermediatePointsTest, FirstPointOfADatasetCannotBeIntermediate) {
  Survey survey = EnteredSurvey().Dataset(kTypeN).Xy("3", "").Intermediate().Xy("9", "9").Build();
  EXPECT_FALSE(Resolve(survey));
  EXPECT_EQ(dialogs.last().text, "Bad Interim Point data");
}

TEST_F(IntermediatePointsTest, LastPointOfADatasetNeedsATarget) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeN)
                      .Xy("0", "0")
                      .Xy("3", "")
                      .Intermediate()
                      .Dataset(kTypeL)
                      .Xy("9", "9")
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  EXPECT_EQ(dialogs.last().text, "Bad Interim Point data");
}

Survey Between(EnteredSurvey entered) {
  entered.Xy("10", "0").Xy("10", "10");
  return entered.Build();
}

EnteredSurvey StartAtOrigin() {
  EnteredSurvey entered;
  entered.Dataset(kTypeM).Xy("0", "-4").Xy("0", "0");
  return entered;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BadInterimTest,
    ::testing::Values(
        BadInterimCase{"XBeyondTheTarget", Between(StartAtOrigin().Xy("12", "").Intermediate())},
        BadInterimCase{"XBeforeTheStart", Between(StartAtOrigin().Xy("-1", "").Intermediate())},
        BadInterimCase{"XOnTheStart", Between(StartAtOrigin().Xy("0", "").Intermediate())},
        BadInterimCase{"YAlongAFlatLine", Between(StartAtOrigin().Xy("", "0").Intermediate())},
        BadInterimCase{"NoCoordinate", Between(StartAtOrigin().Xy("", "").Intermediate())},
        BadInterimCase{"LengthPastTheTarget",
                       Between(StartAtOrigin().Bearing("", "10").Intermediate())},
        BadInterimCase{"NegativeLength", Between(StartAtOrigin().Bearing("", "-1").Intermediate())},
        BadInterimCase{"BearingAndLengthBlank",
                       Between(StartAtOrigin().Bearing("", "").Intermediate())},
        BadInterimCase{"BearingMissesTheLine",
                       Between(StartAtOrigin().Bearing("180", "").Intermediate().Ref(1))},
        BadInterimCase{"BearingParallelToTheLine",
                       Between(StartAtOrigin().Bearing("90", "").Intermediate().Ref(1))},
        BadInterimCase{"NoInputAtAll", Between(StartAtOrigin().Flags(kPtIntermediate))}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace plotmeter
