#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "geometry/Area.h"
#include "support/PlotSurveys.h"

namespace plotmeter {
namespace {

using testing::PerimeterSurvey;
using testing::XY;

ProcessingState AreaOf(const Survey& survey, int areaUnit) {
  ProcessingState state;
  ComputeArea(survey, state, areaUnit);
  return state;
}

TEST(AreaTest, UnitSquareEitherWayInMeters) {
  for (bool reversed : {false, true}) {
    std::vector<XY> square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    if (reversed) std::reverse(square.begin(), square.end());
    Survey survey = PerimeterSurvey(square, kUnitMeters);
    ProcessingState state = AreaOf(survey, kAreaSqMeters);
    EXPECT_DOUBLE_EQ(state.SegmentAreas[0], 1);
    EXPECT_TRUE(state.ProcessState & kAreaComputed);
    EXPECT_DOUBLE_EQ(AreaOf(survey, kAreaHectares).SegmentAreas[0], 0.0001);
  }
}

TEST(AreaTest, SingleAreaFillsAllThreeSegments) {
  Survey survey = PerimeterSurvey({{0, 0}, {4, 0}, {0, 3}});
  ProcessingState state = AreaOf(survey, kAreaSqMeters);
  for (double area : state.SegmentAreas) EXPECT_DOUBLE_EQ(area, 6);
  EXPECT_FALSE(state.AreaState & kSegmentsSwapped);
}

TEST(AreaTest, TwoPointsOrFewerHaveNoArea) {
  EXPECT_EQ(AreaOf(PerimeterSurvey({{0, 0}, {5, 5}}), 0).SegmentAreas[0], 0);
  EXPECT_EQ(AreaOf(PerimeterSurvey({{5, 5}}), 0).SegmentAreas[0], 0);
  EXPECT_EQ(AreaOf(PerimeterSurvey({}), 0).SegmentAreas[0], 0);
}

TEST(AreaTest, UnspecifiedUnitIsNeverConverted) {
  Survey survey = PerimeterSurvey({{0, 0}, {3, 0}, {3, 7}, {0, 7}}, kUnitNotSpecified);
  for (int unit = 0; unit < kAreaUnitCount; ++unit) {
    EXPECT_DOUBLE_EQ(AreaOf(survey, unit).SegmentAreas[0], 21) << AreaUnitName(unit);
  }
}

// The conversion table against the physical ratios worked out from the unit lengths:
// every cell is the physical ratio except the deliberate odd ones, which stand off from
// it by exactly 100, 10 or a tenth.
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
  for (int unit = kUnitMeters; unit < kUnitCount; ++unit) {
    for (int areaUnit = 0; areaUnit < kAreaUnitCount; ++areaUnit) {
      double physical = metres[unit] * metres[unit] / squareMetres[areaUnit];
      double ratio = 1;
      for (const Odd& cell : odd) {
        if (cell.unit == unit && cell.areaUnit == areaUnit) ratio = cell.ratio;
      }
      double converted = ConvertArea(1, unit, areaUnit);
      EXPECT_NEAR(converted / physical, ratio, ratio * 1e-9)
          << UnitName(unit) << " to " << AreaUnitName(areaUnit);
    }
  }
}

TEST(AreaTest, PartsOfADividedPlotAndTheirExchange) {
  const struct {
    const char* name;
    std::vector<XY> points;
    int subStart;  // where a sub-division dataset starts; 0 for none
    std::array<std::vector<int>, 2> outlines;
    std::array<double, 3> areas;
    bool swapped;
  } rows[] = {
      // The 10 x 10 square with a point on its bottom line, divided to the top corner.
      {"divided",
       {{0, 0}, {4, 0}, {10, 0}, {10, 10}, {0, 10}},
       0,
       {{{3, 4, 0, 1}, {1, 2, 3}}},
       {100, 70, 30},
       false},
      // A first part larger than the whole is the enlarged plot of an extension.
      {"extended",
       {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {20, 0}, {20, 10}},
       4,
       {{{0, 4, 5, 3}, {2, 1, 4, 5}}},
       {200, 100, 100},
       true},
      {"partEqualToTheWhole",
       {{0, 0}, {10, 0}, {10, 10}, {0, 10}},
       0,
       {{{0, 1, 2, 3}, {0, 1, 2}}},
       {100, 100, 50},
       false},
  };
  for (const auto& row : rows) {
    Survey survey = PerimeterSurvey(row.points);
    if (row.subStart)
      survey.Datasets.push_back({.DatasetType = kTypeS, .DatasetStart = row.subStart});
    ProcessingState state;
    state.AreaState = kAreaSegmentCount;
    state.PartOutlines = row.outlines;
    ComputeArea(survey, state, kAreaSqMeters);
    for (int i = 0; i < 3; ++i) EXPECT_DOUBLE_EQ(state.SegmentAreas[i], row.areas[i]) << row.name;
    EXPECT_EQ(static_cast<bool>(state.AreaState & kSegmentsSwapped), row.swapped) << row.name;
  }
}

TEST(AreaTest, ConvertsThePartsToo) {
  Survey survey = PerimeterSurvey({{0, 0}, {4, 0}, {10, 0}, {10, 10}, {0, 10}}, kUnitFeet);
  ProcessingState state;
  state.AreaState = kAreaSegmentCount | kSegmentsSwapped;  // left from an earlier run
  state.PartOutlines = {{{3, 4, 0, 1}, {1, 2, 3}}};
  ComputeArea(survey, state, kAreaSquares);
  EXPECT_DOUBLE_EQ(state.SegmentAreas[0], 1);
  EXPECT_DOUBLE_EQ(state.SegmentAreas[1], 0.7);
  EXPECT_DOUBLE_EQ(state.SegmentAreas[2], 0.3);
  EXPECT_FALSE(state.AreaState & kSegmentsSwapped);
}

TEST(AreaTest, OutlineSkipsIndexesOutsideThePoints) {
  Survey survey = PerimeterSurvey({{0, 0}, {2, 0}, {2, 2}});
  std::vector<int> outline = {0, 1, 99, 2, -4};
  EXPECT_DOUBLE_EQ(OutlineArea(survey, outline), 2);
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
    Survey survey = PerimeterSurvey(points);
    double fan = AreaOf(survey, kAreaSqMeters).SegmentAreas[0];
    ASSERT_NEAR(fan, shoelace, 1e-9 * std::max(shoelace, 1.0) + 1e-6) << "trial " << trial;
  }
}

}  // namespace
}  // namespace plotmeter
