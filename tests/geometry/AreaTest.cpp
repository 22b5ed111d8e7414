// The area of the plot and of the parts of a divided plot, and the part outlines.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <tuple>
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

// The area of an undivided plot in square metres: all three segments hold it.
double AreaOf(const std::vector<XY>& points) {
  ProcessingState state;
  ComputeArea(PerimeterSurvey(points), state, kAreaSqMeters);
  EXPECT_TRUE(state.ProcessState & kAreaComputed);
  EXPECT_EQ(state.SegmentAreas[1], state.SegmentAreas[0]);
  EXPECT_EQ(state.SegmentAreas[2], state.SegmentAreas[0]);
  return state.SegmentAreas[0];
}

TEST(AreaTest, TwoPointsOrFewerHaveNoAreaAndIndexesOutsideThePointsAreSkipped) {
  EXPECT_EQ(AreaOf({{0, 0}, {5, 5}}), 0);
  EXPECT_EQ(AreaOf({}), 0);
  std::vector<int> outline = {0, 1, 99, 2, -4};
  EXPECT_DOUBLE_EQ(OutlineArea(PerimeterSurvey({{0, 0}, {2, 0}, {2, 2}}), outline), 2);
}

// The conversion table against the physical ratios worked out from the unit lengths:
// every cell is the physical ratio except the deliberate odd ones, which stand off from
// it by exactly 100, 10 or a tenth. An unspecified unit is never converted.
TEST(AreaTest, ConversionTableMatchesPhysicalRatiosAndTheOddCells) {
  const double metres[] = {0, 1, 1000, 0.3048, 1609.344, 20.1168};
  const double squareMetres[] = {
      1, 1e4, 4046.8564224, 0.09290304, 1e6, 2589988.110336, 9.290304, 404.68564224};
  struct Odd {
    int unit, areaUnit;
    double ratio;
  };
  const Odd odd[] = {{kUnitKilometers, kAreaAcres, 100}, {kUnitKilometers, kAreaSqChains, 100},
                     {kUnitFeet, kAreaSqMiles, 0.1},     {kUnitMiles, kAreaSqMeters, 0.1},
                     {kUnitMiles, kAreaHectares, 0.1},   {kUnitMiles, kAreaSqFeet, 10},
                     {kUnitMiles, kAreaSquares, 10},     {kUnitChains, kAreaSqMeters, 10},
                     {kUnitChains, kAreaSqFeet, 10},     {kUnitChains, kAreaSquares, 10}};
  for (int areaUnit = 0; areaUnit < kAreaUnitCount; ++areaUnit) {
    EXPECT_EQ(ConvertArea(21, kUnitNotSpecified, areaUnit), 21);
    for (int unit = kUnitMeters; unit < kUnitCount; ++unit) {
      double physical = metres[unit] * metres[unit] / squareMetres[areaUnit];
      double ratio = 1;
      for (const Odd& cell : odd) {
        if (cell.unit == unit && cell.areaUnit == areaUnit) ratio = cell.ratio;
      }
      EXPECT_NEAR(ConvertArea(1, unit, areaUnit) / physical, ratio, ratio * 1e-9)
          << UnitName(unit) << " to " << AreaUnitName(areaUnit);
    }
  }
}

// A first part larger than the whole is the enlarged plot of an extension, and the parts
// are exchanged (the golden area-json-extension). A part as large as the whole is not;
// the exchange flag of an earlier run is cleared first. In square feet, shown in squares
// of 100 square feet.
TEST(AreaTest, APartAsLargeAsTheWholeIsNoExtension) {
  ProcessingState state;
  state.AreaState = kAreaSegmentCount | kSegmentsSwapped;
  state.PartOutlines = {{{0, 1, 2, 3}, {0, 1, 2}}};
  ComputeArea(PerimeterSurvey(kSquare, kUnitFeet), state, kAreaSquares);
  EXPECT_EQ(state.SegmentAreas, (std::array<double, 3>{1, 1, 0.5}));
  EXPECT_EQ(state.AreaState & kSegmentsSwapped, 0);
}

// An independent oracle: the shoelace formula over random star-shaped (so simple)
// polygons, in either direction, away from the origin.
TEST(AreaTest, FanEqualsShoelaceOnRandomSimplePolygons) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> unit(0, 1);
  for (int trial = 0; trial < 500; ++trial) {
    int n = 3 + static_cast<int>(unit(random) * 60);
    double cx = (unit(random) - 0.5) * 2e4, cy = (unit(random) - 0.5) * 2e4;
    std::vector<double> angles(n);
    for (double& angle : angles) angle = unit(random) * 2 * std::numbers::pi;
    std::sort(angles.begin(), angles.end());
    if (unit(random) < 0.5) std::reverse(angles.begin(), angles.end());
    std::vector<XY> points;
    for (double angle : angles) {
      double radius = 1 + unit(random) * 500;
      points.push_back({static_cast<float>(cx + radius * std::cos(angle)),
                        static_cast<float>(cy + radius * std::sin(angle))});
    }
    long double twice = 0;
    for (int i = 0; i < n; ++i) {
      const XY& a = points[i];
      const XY& b = points[(i + 1) % n];
      twice += static_cast<long double>(a.x) * b.y - static_cast<long double>(b.x) * a.y;
    }
    double shoelace = static_cast<double>(std::fabs(twice) / 2);
    ASSERT_NEAR(AreaOf(points), shoelace, 1e-9 * std::max(shoelace, 1.0) + 1e-6) << trial;
  }
}

// ---- The division of a plot and its part outlines ----

using Outline = std::vector<int>;
using Outlines = std::array<Outline, 2>;

// The division path of `survey` (which has a sub-division dataset unless `straight`) and
// the part outlines it makes; the exchange flag of an earlier run is cleared.
void ExpectDivision(const char* name, const Survey& survey, int startJoin, int endJoin,
                    const Outline& vertices, int closingOwner, float closingLength,
                    const Outline& part1, const Outline& part2, bool straight = false) {
  SCOPED_TRACE(name);
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  ASSERT_TRUE(path);
  EXPECT_EQ(std::tuple(path->subDataset, path->startJoin, path->endJoin, path->vertices,
                       path->closingOwner),
            std::tuple(straight ? -1 : 1, startJoin, endJoin, vertices, closingOwner));
  EXPECT_FLOAT_EQ(DivisionClosingLength(survey, *path), closingLength);
  ProcessingState state;
  state.AreaState = kSegmentsSwapped;
  BuildPartOutlines(survey, state);
  EXPECT_EQ(state.AreaState, kAreaSegmentCount);
  EXPECT_EQ(state.PartOutlines, (std::array{part1, part2}));
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
    EXPECT_EQ(std::tuple(state.AreaState, state.PartOutlines), std::tuple(0, Outlines{}))
        << row.joins << " joins";
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
