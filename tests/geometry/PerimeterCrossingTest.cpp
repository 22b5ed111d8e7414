#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>
#include <set>
#include <vector>

#include "geometry/PerimeterCrossing.h"
#include "support/PlotSurveys.h"

namespace plotmeter {
namespace {

using testing::ErrorMarked;
using testing::kSquare;
using testing::PerimeterSurvey;
using testing::XY;

// The square divided from point 1 (10, 0) to point 3 (0, 10) by `division`, which
// starts from a dummy at point 1.
Survey Divided(std::vector<XY> division) {
  division.insert(division.begin(), XY{10, 0});
  return testing::DividedSurvey(kSquare, 1, 3, division);
}

// The code and the points marked; marks left from an earlier run go, the other marks stay.
void ExpectCrossing(const char* name, Survey survey, int code, const std::vector<int>& marked) {
  for (Point& point : survey.Points) point.PtMarks |= kMarkErrorLine | kMarkCompass;
  EXPECT_EQ(CheckPerimeterCrossing(survey), code) << name;
  EXPECT_EQ(ErrorMarked(survey), marked) << name;
  for (const Point& point : survey.Points) EXPECT_TRUE(point.PtMarks & kMarkCompass) << name;
}

TEST(PerimeterCrossingTest, GivesTheCodeAndMarksTheLines) {
  // The last entered line (into the last point) crosses the first line.
  ExpectCrossing("bowTie", PerimeterSurvey({{0, 0}, {10, 10}, {10, 0}, {0, 10}}), kCrossingAtStart,
                 {1, 3});
  // The vertical line into point 2 and the horizontal line into point 4 cross at (10, 4).
  ExpectCrossing("middle", PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {14, 4}, {6, 4}, {0, 10}}),
                 kCrossingElsewhere, {2, 4});
  Survey survey;
  testing::AddDataset(survey, kTypeN, {{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  ExpectCrossing("notAPerimeter", survey, kCrossingNone, {});
  ExpectCrossing("divisionInside", Divided({{6, 4}, {4, 6}}), kCrossingNone, {});
  // The division's last point overshoots the join point (0, 10) and leaves the plot:
  // the main closing line (owned by the start point) and the division's last line.
  ExpectCrossing("divisionOvershoot", Divided({{6, 4}, {-1, 10.5f}}), kCrossingAtJoin, {0, 6});
  // (12, 5) -> (5, 5) crosses the perimeter line x = 10.
  ExpectCrossing("divisionEarlierLine", Divided({{12, 5}, {5, 5}, {4, 6}}), kCrossingElsewhere,
                 {2, 6});
  ExpectCrossing("divisionItself", Divided({{8, 6}, {8, 2}, {5, 4}, {9, 4}, {4, 6}}),
                 kCrossingElsewhere, {5, 6, 8, 9});
  // No sub-division dataset: the division is the straight line between the joins,
  // (10, 0) to (0, 10), which passes over the notch at (5, 3).
  survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {5, 3}, {0, 10}});
  testing::MarkJoins(survey, 1, 4);
  ExpectCrossing("straight", survey, kCrossingElsewhere, {3, 4});
  // The bow-tie with an intermediate point on its first line: the lines are still
  // those between the shape points, and the mark goes to the shape point.
  survey = PerimeterSurvey({{0, 0}, {5, 5}, {10, 10}, {10, 0}, {0, 10}});
  survey.Points[1].PtFlags |= kPtIntermediate;
  ExpectCrossing("midPoint", survey, kCrossingAtStart, {2, 4});
}

void ExpectCrosses(const char* name, const std::vector<XY>& points, bool crosses) {
  Survey survey = PerimeterSurvey(points);
  EXPECT_EQ(CheckPerimeterCrossing(survey) != 0, crosses) << name;
  EXPECT_EQ(ErrorMarked(survey).empty(), !crosses) << name;
}

// The rules for lines on one straight line, parallel lines and the end tolerance, which
// the oracle below leaves out.
TEST(PerimeterCrossingTest, DecidesCrossingAtTheEdgesOfTheRule) {
  ExpectCrosses("twoPoints", {{0, 0}, {10, 0}}, false);
  // Two lines on one straight line that only share an end point do not cross; lines on
  // one straight line but apart do not either.
  ExpectCrosses("collinearNeighbours", {{0, 0}, {5, 0}, {10, 0}, {10, 10}, {0, 10}}, false);
  ExpectCrosses("collinearApart",
                {{0, 0}, {10, 0}, {10, 10}, {7, 10}, {7, 2}, {3, 2}, {3, 10}, {0, 10}}, false);
  ExpectCrosses("verticalCollinearApart",
                {{0, 0}, {10, 0}, {10, 3}, {4, 3}, {4, 7}, {10, 7}, {10, 10}, {0, 10}}, false);
  // A perimeter that doubles back along itself overlaps its own line.
  ExpectCrosses("verticalSpike", {{0, 0}, {10, 0}, {10, 10}, {10, 5}}, true);
  ExpectCrosses("horizontalSpike", {{0, 0}, {10, 0}, {4, 0}, {0, 10}}, true);
  // A sharp spike whose lines part at a small angle does not cross itself.
  ExpectCrosses("sharpSpike", {{0, 0}, {10, 0}, {10, 5}, {60, 5.2f}, {10, 5.1f}, {0, 10}}, false);
  // A steep line whose X extent is below twice the end tolerance still crosses.
  ExpectCrosses("steepLine", {{0, 0}, {10, 0}, {10, 10}, {5.00005f, 10}, {5, -5}, {0, -5}}, true);
  // A point 0.00005 short of another line is inside the end tolerance; 0.001 past it is
  // a crossing.
  ExpectCrosses("withinEndTolerance", {{0, 0}, {10, 0}, {10, 10}, {5, 10}, {5, 0.00005f}}, false);
  ExpectCrosses("pastEndTolerance", {{0, 0}, {10, 0}, {10, 10}, {5, 10}, {5, -0.001f}}, true);
  // Parallel lines of equal slope and different intercepts never meet.
  ExpectCrosses("parallelogram", {{0, 0}, {10, 5}, {10, 8}, {0, 3}}, false);
}

// An independent oracle: proper segment intersection by orientation predicates in
// double precision, on random polygons. Polygons with any pair of lines near parallel,
// or meeting near an end of either line, are left out: the end tolerance and the
// single-precision slopes decide those, and the rule for them is tested above.
double Cross2(double ax, double ay, double bx, double by) { return ax * by - ay * bx; }

std::optional<std::set<int>> BruteForce(const std::vector<XY>& p) {
  const int n = static_cast<int>(p.size());
  const double margin = 1e-3;
  std::set<int> marked;
  for (int i = 0; i < n; ++i) {
    for (int j = i + 1; j < n; ++j) {
      // Line k runs from point k - 1 (the last point for k = 0) into point k.
      const XY& a0 = p[(i + n - 1) % n];
      const XY& a1 = p[i];
      const XY& b0 = p[(j + n - 1) % n];
      const XY& b1 = p[j];
      double dax = a1.x - a0.x, day = a1.y - a0.y, dbx = b1.x - b0.x, dby = b1.y - b0.y;
      double la = std::hypot(dax, day), lb = std::hypot(dbx, dby);
      if (la < 1 || lb < 1) return std::nullopt;
      double denom = Cross2(dax, day, dbx, dby);
      if (std::fabs(denom) < 1e-3 * la * lb) return std::nullopt;
      bool adjacent = (j == i + 1) || (i == 0 && j == n - 1);
      if (adjacent) continue;
      double ex = b0.x - a0.x, ey = b0.y - a0.y;
      double t = Cross2(ex, ey, dbx, dby) / denom;
      double u = Cross2(ex, ey, dax, day) / denom;
      for (double s : {t, u}) {
        if (std::fabs(s) < margin || std::fabs(s - 1) < margin) return std::nullopt;
      }
      if (t > 0 && t < 1 && u > 0 && u < 1) {
        marked.insert(i);
        marked.insert(j);
      }
    }
  }
  return marked;
}

TEST(PerimeterCrossingTest, AgreesWithBruteForceOnRandomPolygons) {
  std::mt19937 random(20240611);
  std::uniform_real_distribution<float> coordinate(-100, 100);
  std::uniform_int_distribution<int> size(3, 11);
  int crossing = 0, simple = 0;
  for (int trial = 0; trial < 4000; ++trial) {
    std::vector<XY> points(size(random));
    for (XY& point : points) point = {coordinate(random), coordinate(random)};
    std::optional<std::set<int>> expected = BruteForce(points);
    if (!expected) continue;
    Survey survey = PerimeterSurvey(points);
    int code = CheckPerimeterCrossing(survey);
    std::vector<int> marked = ErrorMarked(survey);
    ASSERT_EQ(code != 0, !expected->empty()) << "trial " << trial;
    ASSERT_EQ(std::set<int>(marked.begin(), marked.end()), *expected) << "trial " << trial;
    ++(expected->empty() ? simple : crossing);
  }
  EXPECT_GT(crossing, 500);
  EXPECT_GT(simple, 500);
}

}  // namespace
}  // namespace plotmeter
