#include <gtest/gtest.h>

#include <cmath>
#include <vector>

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

// The division path of `survey` (which has a sub-division dataset unless `straight`) and
// the part outlines it makes; the exchange flag of an earlier run is cleared.
void ExpectDivision(const char* name, const Survey& survey, int startJoin, int endJoin,
                    const Outline& vertices, int closingOwner, float closingLength,
                    const Outline& part1, const Outline& part2, bool straight = false) {
  SCOPED_TRACE(name);
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  ASSERT_TRUE(path);
  EXPECT_EQ(path->subDataset, straight ? -1 : 1);
  EXPECT_EQ(path->startJoin, startJoin);
  EXPECT_EQ(path->endJoin, endJoin);
  EXPECT_EQ(path->vertices, vertices);
  EXPECT_EQ(path->closingOwner, closingOwner);
  EXPECT_FLOAT_EQ(DivisionClosingLength(survey, *path), closingLength);
  ProcessingState state;
  state.AreaState = kSegmentsSwapped;
  BuildPartOutlines(survey, state);
  EXPECT_EQ(state.AreaState, kAreaSegmentCount);
  EXPECT_EQ(state.PartOutlines[0], part1);
  EXPECT_EQ(state.PartOutlines[1], part2);
}

// The square's points are 0 (0, 0), 1 (10, 0), 2 (10, 10) and 3 (0, 10); a sub-division's
// points follow from 4. Part 1 of a division inside the plot holds the start point.
TEST(PartOutlinesTest, DivisionPathsAndTheirParts) {
  ExpectDivision("dummyStart", DividedSurvey(kSquare, 1, 3, {{10, 0}, {6, 4}, {3, 6}}), 1, 3,
                 {5, 6}, 4, 5, {3, 0, 1, 5, 6}, {1, 2, 3, 6, 5});
  // A last point on the end join is the join itself: no vertex and no closing length.
  ExpectDivision("lastOnTheEndJoin", DividedSurvey(kSquare, 1, 3, {{10, 0}, {6, 4}, {0, 10}}), 1, 3,
                 {5}, 4, 0, {3, 0, 1, 5}, {1, 2, 3, 5});
  ExpectDivision("fromTheLaterJoin", DividedSurvey(kSquare, 1, 3, {{0, 10}, {4, 7}, {7, 4}}), 3, 1,
                 {5, 6}, 4, 5, {3, 0, 1, 6, 5}, {1, 2, 3, 5, 6});

  Survey survey = PerimeterSurvey(kSquare);
  MarkJoins(survey, 1, 3);
  AddDataset(survey, kTypeS, {{8, 3}, {3, 8}});
  // A plain start point away from the joins is a vertex, from the join nearer to it.
  ExpectDivision("plainStart", survey, 1, 3, {4, 5}, 4, std::sqrt(13.0f), {3, 0, 1, 4, 5},
                 {1, 2, 3, 5, 4});
  // A start point given by reference alone stands for the join.
  survey.Points[4].PtFlags = kPtReference;
  ExpectDivision("referenceStart", survey, 1, 3, {5}, 4, std::sqrt(13.0f), {3, 0, 1, 5},
                 {1, 2, 3, 5});

  survey = PerimeterSurvey(kSquare);
  MarkJoins(survey, 0, 2);
  ExpectDivision("straight", survey, 0, 2, {}, 2, std::sqrt(200.0f), {2, 3, 0}, {0, 1, 2}, true);

  // Extensions outside the plot: part 1 is the enlarged plot, part 2 the extension.
  ExpectDivision("extension", DividedSurvey(kSquare, 1, 2, {{10, 0}, {15, 5}}), 1, 2, {5}, 4,
                 std::sqrt(50.0f), {2, 3, 0, 1, 5}, {1, 2, 5});
  ExpectDivision("extensionAcrossTheStart", DividedSurvey(kSquare, 0, 3, {{0, 0}, {-4, 5}}), 0, 3,
                 {5}, 4, std::sqrt(41.0f), {0, 1, 2, 3, 5}, {3, 0, 5});
}

TEST(PartOutlinesTest, NoDivisionLeavesNoOutlines) {
  const struct {
    int joins;
    std::uint8_t mainType;
  } rows[] = {{0, kTypeM}, {1, kTypeM}, {3, kTypeM}, {2, kTypeN}};
  for (const auto& row : rows) {
    Survey survey;
    AddDataset(survey, row.mainType, kSquare);
    for (int i = 0; i < row.joins; ++i) survey.Points[i].PtFlags |= kPtJoin;
    AddDataset(survey, kTypeS, {{10, 0}, {5, 5}});
    ProcessingState state;
    state.AreaState = kAreaSegmentCount | kSegmentsSwapped;
    state.PartOutlines = {{{1, 2}, {3}}};
    BuildPartOutlines(survey, state);
    EXPECT_EQ(state.AreaState, 0) << row.joins << " joins";
    EXPECT_TRUE(state.PartOutlines[0].empty() && state.PartOutlines[1].empty()) << row.joins;
  }
}

TEST(PartOutlinesTest, DatasetRangesStayInsideThePointsAndShapesLeaveOutIntermediates) {
  Survey survey = PerimeterSurvey({{0, 0}, {5, 0}, {10, 0}, {10, 10}});
  survey.Points[1].PtFlags |= kPtIntermediate;
  EXPECT_EQ(ShapePoints(survey, 0), (Outline{0, 2, 3}));
  survey.Datasets.push_back(Dataset{.DatasetType = kTypeL, .DatasetStart = 40});
  EXPECT_EQ(DatasetPoints(survey, 1).begin, DatasetPoints(survey, 1).end);
  EXPECT_EQ(DatasetPoints(survey, 0).end, 4);
  EXPECT_EQ(DatasetPoints(survey, 5).end, 0);
}

}  // namespace
}  // namespace plotmeter
