#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <vector>

#include "geometry/PerimeterCrossing.h"
#include "support/PlotSurveys.h"

namespace plotmeter {
namespace {

using testing::AddDataset;
using testing::ErrorMarked;
using testing::kSquare;
using testing::MarkJoins;
using testing::PerimeterSurvey;
using testing::XY;

// A perimeter, perhaps divided: joins at two of its points and a sub-division whose
// first point is a dummy at the first join.
struct CrossingCase {
  const char* name;
  int code;
  std::vector<int> marked;
  std::vector<XY> points;
  std::vector<int> joins = {};
  std::vector<XY> division = {};
  int intermediate = -1;
  std::uint8_t type = kTypeM;
};

class CrossingTest : public ::testing::TestWithParam<CrossingCase> {};

TEST_P(CrossingTest, GivesTheCodeAndMarksTheLines) {
  const CrossingCase& c = GetParam();
  Survey survey;
  AddDataset(survey, c.type, c.points);
  if (!c.joins.empty()) MarkJoins(survey, c.joins[0], c.joins[1]);
  if (!c.division.empty()) {
    survey.Points[AddDataset(survey, kTypeS, c.division)].PtMarks |= kMarkDummy;
  }
  if (c.intermediate >= 0) survey.Points[c.intermediate].PtFlags |= kPtIntermediate;
  // Marks left from an earlier run go; the other marks stay.
  for (Point& point : survey.Points) point.PtMarks |= kMarkErrorLine | kMarkCompass;
  EXPECT_EQ(CheckPerimeterCrossing(survey), c.code);
  EXPECT_EQ(ErrorMarked(survey), c.marked);
  for (const Point& point : survey.Points) EXPECT_TRUE(point.PtMarks & kMarkCompass);
}

// The square divided from point 1 (10, 0) to point 3 (0, 10) by `division`.
CrossingCase Divided(const char* name, int code, std::vector<int> marked,
                     std::vector<XY> division) {
  division.insert(division.begin(), XY{10, 0});
  return {name, code, std::move(marked), kSquare, {1, 3}, std::move(division)};
}

constexpr int kNone = kCrossingNone, kElsewhere = kCrossingElsewhere, kAtStart = kCrossingAtStart,
              kAtJoin = kCrossingAtJoin;

INSTANTIATE_TEST_SUITE_P(
    PerimeterCrossingTest, CrossingTest,
    ::testing::Values(
        CrossingCase{"square", kNone, {}, kSquare},
        // The last entered line (into the last point) crosses the first line: the
        // traverse's last point overshoots the start point.
        CrossingCase{"overshoot", kAtStart, {1, 4}, {{0, 0}, {10, 0}, {10, 10}, {2, 10}, {1, -1}}},
        CrossingCase{"bowTie", kAtStart, {1, 3}, {{0, 0}, {10, 10}, {10, 0}, {0, 10}}},
        // The vertical line into point 2 and the horizontal line into point 4 cross at (10, 4).
        CrossingCase{
            "middle", kElsewhere, {2, 4}, {{0, 0}, {10, 0}, {10, 10}, {14, 4}, {6, 4}, {0, 10}}},
        // The closing line from (20, 2) back to (0, 0) crosses the line into point 2 at (10, 1).
        CrossingCase{
            "closingLine", kElsewhere, {0, 2}, {{0, 0}, {10, 0}, {10, 10}, {20, 10}, {20, 2}}},
        CrossingCase{.name = "notAPerimeter",
                     .code = kNone,
                     .points = {{0, 0}, {10, 10}, {10, 0}, {0, 10}},
                     .type = kTypeN},
        Divided("divisionInside", kNone, {}, {{6, 4}, {4, 6}}),
        // The division's last point overshoots the join point (0, 10) and leaves the plot:
        // the main closing line (owned by the start point) and the division's last line.
        Divided("divisionOvershoot", kAtJoin, {0, 6}, {{6, 4}, {-1, 10.5f}}),
        // (12, 5) -> (5, 5) crosses the perimeter line x = 10.
        Divided("divisionEarlierLine", kElsewhere, {2, 6}, {{12, 5}, {5, 5}, {4, 6}}),
        Divided("divisionItself", kElsewhere, {5, 6, 8, 9},
                {{8, 6}, {8, 2}, {5, 4}, {9, 4}, {4, 6}}),
        // No sub-division dataset: the division is the straight line between the joins,
        // (10, 0) to (0, 10), which passes over the notch at (5, 3).
        CrossingCase{
            "straight", kElsewhere, {3, 4}, {{0, 0}, {10, 0}, {10, 10}, {5, 3}, {0, 10}}, {1, 4}},
        // The bow-tie with an intermediate point on its first line: the lines are still
        // those between the shape points, and the mark goes to the shape point.
        CrossingCase{
            "midPoint", kAtStart, {2, 4}, {{0, 0}, {5, 5}, {10, 10}, {10, 0}, {0, 10}}, {}, {}, 1}),
    [](const auto& info) { return info.param.name; });

struct LineCase {
  const char* name;
  std::vector<XY> points;
  bool crosses;
};

class LineRuleTest : public ::testing::TestWithParam<LineCase> {};

TEST_P(LineRuleTest, DecidesCrossing) {
  Survey survey = PerimeterSurvey(GetParam().points);
  EXPECT_EQ(CheckPerimeterCrossing(survey) != 0, GetParam().crosses);
  EXPECT_EQ(ErrorMarked(survey).empty(), !GetParam().crosses);
}

INSTANTIATE_TEST_SUITE_P(
    PerimeterCrossingTest, LineRuleTest,
    ::testing::Values(
        // Too few points for a perimeter that could cross.
        LineCase{"none", {}, false}, LineCase{"one", {{3, 4}}, false},
        LineCase{"two", {{0, 0}, {10, 0}}, false},
        LineCase{"triangle", {{0, 0}, {10, 0}, {0, 10}}, false},
        // Two lines on one straight line that only share an end point do not cross.
        LineCase{"collinearNeighbours", {{0, 0}, {5, 0}, {10, 0}, {10, 10}, {0, 10}}, false},
        // On one straight line but apart: no crossing.
        LineCase{"collinearApart",
                 {{0, 0}, {10, 0}, {10, 10}, {7, 10}, {7, 2}, {3, 2}, {3, 10}, {0, 10}},
                 false},
        LineCase{"verticalCollinearApart",
                 {{0, 0}, {10, 0}, {10, 3}, {4, 3}, {4, 7}, {10, 7}, {10, 10}, {0, 10}},
                 false},
        // A perimeter that doubles back along itself overlaps its own line.
        LineCase{"verticalSpike", {{0, 0}, {10, 0}, {10, 10}, {10, 5}}, true},
        LineCase{"horizontalSpike", {{0, 0}, {10, 0}, {4, 0}, {0, 10}}, true},
        LineCase{"flatTriangle", {{0, 0}, {10, 0}, {20, 0}}, true},
        // A sharp spike whose lines part at a small angle does not cross itself.
        LineCase{"sharpSpike", {{0, 0}, {10, 0}, {10, 5}, {60, 5.2f}, {10, 5.1f}, {0, 10}}, false},
        // A steep line whose X extent is below twice the end tolerance still crosses.
        LineCase{"steepLine", {{0, 0}, {10, 0}, {10, 10}, {5.00005f, 10}, {5, -5}, {0, -5}}, true},
        // A point 0.00005 short of another line: inside the end tolerance, no crossing.
        LineCase{"withinEndTolerance", {{0, 0}, {10, 0}, {10, 10}, {5, 10}, {5, 0.00005f}}, false},
        // A point 0.001 past another line: a crossing.
        LineCase{"pastEndTolerance", {{0, 0}, {10, 0}, {10, 10}, {5, 10}, {5, -0.001f}}, true},
        // Parallel lines of equal slope and different intercepts never meet.
        LineCase{"parallelogram", {{0, 0}, {10, 5}, {10, 8}, {0, 3}}, false}),
    [](const auto& info) { return info.param.name; });

TEST(PerimeterCrossingTest, NonFiniteCoordinatesAreSafe) {
  for (float bad : {std::nanf(""), INFINITY, -INFINITY, 3e38f}) {
    Survey survey = PerimeterSurvey({{0, 0}, {bad, 0}, {10, bad}, {-bad, 10}});
    int code = CheckPerimeterCrossing(survey);
    EXPECT_TRUE(code == kCrossingNone || code == kCrossingElsewhere || code == kCrossingAtStart ||
                code == kCrossingAtJoin);
  }
}

// An independent oracle: proper segment intersection by orientation predicates in
// double precision, on random polygons. Polygons with any pair of lines near parallel,
// or meeting near an end of either line, are left out: the end tolerance and the
// single-precision slopes decide those, and the rule for them is tested above.
struct Oracle {
  bool usable = true;
  std::set<int> marked;
};

double Cross2(double ax, double ay, double bx, double by) { return ax * by - ay * bx; }

Oracle BruteForce(const std::vector<XY>& p) {
  const int n = static_cast<int>(p.size());
  const double margin = 1e-3;
  Oracle oracle;
  for (int i = 0; i < n; ++i) {
    for (int j = i + 1; j < n; ++j) {
      // Line k runs from point k - 1 (the last point for k = 0) into point k.
      const XY& a0 = p[(i + n - 1) % n];
      const XY& a1 = p[i];
      const XY& b0 = p[(j + n - 1) % n];
      const XY& b1 = p[j];
      double dax = a1.x - a0.x, day = a1.y - a0.y, dbx = b1.x - b0.x, dby = b1.y - b0.y;
      double la = std::hypot(dax, day), lb = std::hypot(dbx, dby);
      if (la < 1 || lb < 1) return {false, {}};
      double denom = Cross2(dax, day, dbx, dby);
      if (std::fabs(denom) < 1e-3 * la * lb) return {false, {}};
      bool adjacent = (j == i + 1) || (i == 0 && j == n - 1);
      if (adjacent) continue;
      double ex = b0.x - a0.x, ey = b0.y - a0.y;
      double t = Cross2(ex, ey, dbx, dby) / denom;
      double u = Cross2(ex, ey, dax, day) / denom;
      for (double s : {t, u}) {
        if (std::fabs(s) < margin || std::fabs(s - 1) < margin) return {false, {}};
      }
      if (t > 0 && t < 1 && u > 0 && u < 1) {
        oracle.marked.insert(i);
        oracle.marked.insert(j);
      }
    }
  }
  return oracle;
}

TEST(PerimeterCrossingTest, AgreesWithBruteForceOnRandomPolygons) {
  std::mt19937 random(20240611);
  std::uniform_real_distribution<float> coordinate(-100, 100);
  std::uniform_int_distribution<int> size(3, 11);
  int crossing = 0, simple = 0;
  for (int trial = 0; trial < 4000; ++trial) {
    std::vector<XY> points(size(random));
    for (XY& point : points) point = {coordinate(random), coordinate(random)};
    Oracle oracle = BruteForce(points);
    if (!oracle.usable) continue;
    Survey survey = PerimeterSurvey(points);
    int code = CheckPerimeterCrossing(survey);
    std::vector<int> marked = ErrorMarked(survey);
    ASSERT_EQ(code != 0, !oracle.marked.empty()) << "trial " << trial;
    ASSERT_EQ(std::set<int>(marked.begin(), marked.end()), oracle.marked) << "trial " << trial;
    ++(oracle.marked.empty() ? simple : crossing);
  }
  EXPECT_GT(crossing, 500);
  EXPECT_GT(simple, 500);
}

}  // namespace
}  // namespace plotmeter
