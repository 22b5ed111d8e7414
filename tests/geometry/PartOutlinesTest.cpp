#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "geometry/Area.h"
#include "geometry/PartOutlines.h"
#include "support/PlotSurveys.h"

namespace plotmeter {
namespace {

using testing::AddDataset;
using testing::DividedSurvey;
using testing::kSquare;
using testing::MarkJoins;
using testing::PerimeterSurvey;
using testing::XY;

using Outline = std::vector<int>;

// Points 0 to 3: the square (0, 0), (10, 0), (10, 10), (0, 10).
Survey Square() { return PerimeterSurvey(kSquare); }

ProcessingState OutlinesOf(const Survey& survey) {
  ProcessingState state;
  state.AreaState = kSegmentsSwapped;  // left from an earlier run
  BuildPartOutlines(survey, state);
  return state;
}

TEST(PartOutlinesTest, DivisionFromADummyAtTheFirstJoin) {
  Survey survey = DividedSurvey(kSquare, 1, 3, {{10, 0}, {6, 6}});
  ProcessingState state = OutlinesOf(survey);
  EXPECT_EQ(state.AreaState, kAreaSegmentCount);
  EXPECT_EQ(state.PartOutlines[0], (Outline{3, 0, 1, 5}));  // holds the start point
  EXPECT_EQ(state.PartOutlines[1], (Outline{1, 2, 3, 5}));
}

TEST(PartOutlinesTest, DivisionEnteredFromTheLaterJoinRunsBackwards) {
  Survey survey = DividedSurvey(kSquare, 1, 3, {{0, 10}, {4, 7}, {7, 4}});
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  ASSERT_TRUE(path);
  EXPECT_EQ(path->startJoin, 3);
  EXPECT_EQ(path->endJoin, 1);
  EXPECT_EQ(path->vertices, (Outline{5, 6}));
  EXPECT_EQ(path->closingOwner, 4);
  ProcessingState state = OutlinesOf(survey);
  EXPECT_EQ(state.PartOutlines[0], (Outline{3, 0, 1, 6, 5}));
  EXPECT_EQ(state.PartOutlines[1], (Outline{1, 2, 3, 5, 6}));
}

TEST(PartOutlinesTest, ReferenceStartStandsForItsJoin) {
  Survey survey = Square();
  MarkJoins(survey, 1, 3);
  int sub = AddDataset(survey, kTypeS, {{10, 0}, {5, 5}});
  survey.Points[sub].PtFlags = kPtReference;
  survey.Points[sub].PtRef = 2;
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  ASSERT_TRUE(path);
  EXPECT_EQ(path->vertices, (Outline{5}));
}

TEST(PartOutlinesTest, PlainStartPointAwayFromTheJoinIsAVertex) {
  Survey survey = Square();
  MarkJoins(survey, 1, 3);
  AddDataset(survey, kTypeS, {{8, 3}, {3, 8}});
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  ASSERT_TRUE(path);
  EXPECT_EQ(path->startJoin, 1);  // nearer to (8, 3)
  EXPECT_EQ(path->vertices, (Outline{4, 5}));
}

// A last point on the end join is the join itself: no vertex and no closing length.
TEST(PartOutlinesTest, ClosingLengthRunsFromTheLastPointToTheEndJoin) {
  Survey survey = DividedSurvey(kSquare, 1, 3, {{10, 0}, {6, 4}, {3, 6}});
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  ASSERT_TRUE(path);
  EXPECT_FLOAT_EQ(DivisionClosingLength(survey, *path), 5);  // (3, 6) to (0, 10)
  survey.Points[6].X = 0;
  survey.Points[6].Y = 10;
  path = FindDivisionPath(survey);
  EXPECT_EQ(path->vertices, (Outline{5}));
  EXPECT_FLOAT_EQ(DivisionClosingLength(survey, *path), 0);
}

TEST(PartOutlinesTest, TwoJoinsWithoutSubDivisionMakeAStraightDivision) {
  Survey survey = Square();
  MarkJoins(survey, 0, 2);
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  ASSERT_TRUE(path);
  EXPECT_EQ(path->subDataset, -1);
  EXPECT_EQ(path->closingOwner, 2);
  EXPECT_FLOAT_EQ(DivisionClosingLength(survey, *path), std::sqrt(200.0f));
  ProcessingState state = OutlinesOf(survey);
  EXPECT_EQ(state.PartOutlines[0], (Outline{2, 3, 0}));
  EXPECT_EQ(state.PartOutlines[1], (Outline{0, 1, 2}));
}

TEST(PartOutlinesTest, DivisionPartsAddUpToTheWhole) {
  Survey survey = DividedSurvey({{0, 0}, {30, 0}, {30, 20}, {15, 25}, {0, 20}}, 1, 3,
                                {{30, 0}, {20, 8}, {18, 16}});
  ProcessingState state = OutlinesOf(survey);
  ComputeArea(survey, state, kAreaSqMeters);
  EXPECT_FALSE(state.AreaState & kSegmentsSwapped);
  EXPECT_NEAR(state.SegmentAreas[1] + state.SegmentAreas[2], state.SegmentAreas[0], 1e-9);
  EXPECT_GT(state.SegmentAreas[2], 0);
}

// An extension: the triangle (10, 0), (15, 5), (10, 10) outside the square's right side.
TEST(PartOutlinesTest, ExtensionOutsideThePlot) {
  Survey survey = DividedSurvey(kSquare, 1, 2, {{10, 0}, {15, 5}});
  ProcessingState state = OutlinesOf(survey);
  EXPECT_EQ(state.PartOutlines[0], (Outline{2, 3, 0, 1, 5}));  // the enlarged plot
  EXPECT_EQ(state.PartOutlines[1], (Outline{1, 2, 5}));        // the extension
  ComputeArea(survey, state, kAreaSqMeters);
  EXPECT_TRUE(state.AreaState & kSegmentsSwapped);
  EXPECT_DOUBLE_EQ(state.SegmentAreas[0], 125);
  EXPECT_DOUBLE_EQ(state.SegmentAreas[1], 100);
  EXPECT_DOUBLE_EQ(state.SegmentAreas[2], 25);
}

TEST(PartOutlinesTest, ExtensionAcrossTheStartPoint) {
  // Joins at the start point and the last point: the extension lies beyond the
  // closing line, on the left of the square.
  Survey survey = DividedSurvey(kSquare, 0, 3, {{0, 0}, {-4, 5}});
  ProcessingState state = OutlinesOf(survey);
  EXPECT_EQ(state.PartOutlines[0], (Outline{0, 1, 2, 3, 5}));
  EXPECT_EQ(state.PartOutlines[1], (Outline{3, 0, 5}));
  ComputeArea(survey, state, kAreaSqMeters);
  EXPECT_DOUBLE_EQ(state.SegmentAreas[0], 120);
  EXPECT_DOUBLE_EQ(state.SegmentAreas[2], 20);
}

struct NoDivisionCase {
  const char* name;
  int joins;
  std::uint8_t mainType;
};

class NoDivisionTest : public ::testing::TestWithParam<NoDivisionCase> {};

TEST_P(NoDivisionTest, LeavesNoOutlines) {
  Survey survey;
  AddDataset(survey, GetParam().mainType, {{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  for (int i = 0; i < GetParam().joins; ++i) survey.Points[i].PtFlags |= kPtJoin;
  AddDataset(survey, kTypeS, {{10, 0}, {5, 5}});
  ProcessingState state;
  state.AreaState = kAreaSegmentCount | kSegmentsSwapped;
  state.PartOutlines = {{{1, 2}, {3}}};
  BuildPartOutlines(survey, state);
  EXPECT_EQ(state.AreaState, 0);
  EXPECT_TRUE(state.PartOutlines[0].empty());
  EXPECT_TRUE(state.PartOutlines[1].empty());
}

INSTANTIATE_TEST_SUITE_P(PartOutlinesTest, NoDivisionTest,
                         ::testing::Values(NoDivisionCase{"noJoin", 0, kTypeM},
                                           NoDivisionCase{"oneJoin", 1, kTypeM},
                                           NoDivisionCase{"threeJoins", 3, kTypeM},
                                           NoDivisionCase{"notPerimeter", 2, kTypeN}),
                         [](const auto& info) { return info.param.name; });

TEST(PartOutlinesTest, DatasetStartOutsideThePointsIsEmpty) {
  Survey survey = Square();
  survey.Datasets.push_back(Dataset{.DatasetType = kTypeL, .DatasetStart = 40});
  EXPECT_EQ(DatasetPoints(survey, 1).begin, DatasetPoints(survey, 1).end);
  EXPECT_EQ(DatasetPoints(survey, 0).end, 4);
  EXPECT_EQ(DatasetPoints(survey, 5).end, 0);
}

TEST(PartOutlinesTest, ShapePointsLeaveOutIntermediates) {
  Survey survey = PerimeterSurvey({{0, 0}, {5, 0}, {10, 0}, {10, 10}});
  survey.Points[1].PtFlags |= kPtIntermediate;
  EXPECT_EQ(ShapePoints(survey, 0), (Outline{0, 2, 3}));
}

}  // namespace
}  // namespace plotmeter
