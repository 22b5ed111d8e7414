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
using testing::MarkJoins;
using testing::PerimeterSurvey;
using testing::XY;

const std::vector<XY> kSquare = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

TEST(PerimeterCrossingTest, SquareHasNoCrossingAndNoMarks) {
  Survey survey = PerimeterSurvey(kSquare);
  survey.Points[2].PtMarks = kMarkErrorLine | kMarkCompass;  // left from an earlier run
  EXPECT_EQ(CheckPerimeterCrossing(survey), kCrossingNone);
  EXPECT_TRUE(ErrorMarked(survey).empty());
  EXPECT_EQ(survey.Points[2].PtMarks, kMarkCompass);
}

// The last entered line (into the last point) crosses the first line: the traverse's
// last point overshoots the start point.
TEST(PerimeterCrossingTest, LastPointOvershootingTheStartCrossesTheFirstLine) {
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {2, 10}, {1, -1}});
  int code = CheckPerimeterCrossing(survey);
  EXPECT_EQ(code & kCrossingKindMask, 2);
  EXPECT_EQ(ErrorMarked(survey), (std::vector<int>{1, 4}));
}

TEST(PerimeterCrossingTest, FourPointBowTieIsTheLastLineOnTheFirst) {
  Survey survey = PerimeterSurvey({{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  EXPECT_EQ(CheckPerimeterCrossing(survey) & kCrossingKindMask, 2);
  EXPECT_EQ(ErrorMarked(survey), (std::vector<int>{1, 3}));
}

TEST(PerimeterCrossingTest, CrossingOfMiddleLinesIsElsewhere) {
  // The vertical line into point 2 and the horizontal line into point 4 cross at (10, 4).
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {14, 4}, {6, 4}, {0, 10}});
  int code = CheckPerimeterCrossing(survey);
  EXPECT_NE(code, 0);
  EXPECT_NE(code & kCrossingKindMask, 2);
  EXPECT_NE(code & kCrossingKindMask, 6);
  EXPECT_EQ(ErrorMarked(survey), (std::vector<int>{2, 4}));
}

TEST(PerimeterCrossingTest, ClosingLineCrossingMarksTheStartPoint) {
  // The closing line from (20, 2) back to (0, 0) crosses the line into point 2 at (10, 1).
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {20, 10}, {20, 2}});
  EXPECT_EQ(CheckPerimeterCrossing(survey), kCrossingElsewhere);
  EXPECT_EQ(ErrorMarked(survey), (std::vector<int>{0, 2}));
}

struct SmallCase {
  const char* name;
  std::vector<XY> points;
};

class TooFewPointsTest : public ::testing::TestWithParam<SmallCase> {};

TEST_P(TooFewPointsTest, IsNotACrossing) {
  Survey survey = PerimeterSurvey(GetParam().points);
  EXPECT_EQ(CheckPerimeterCrossing(survey), kCrossingNone);
  EXPECT_TRUE(ErrorMarked(survey).empty());
}

INSTANTIATE_TEST_SUITE_P(PerimeterCrossingTest, TooFewPointsTest,
                         ::testing::Values(SmallCase{"none", {}}, SmallCase{"one", {{3, 4}}},
                                           SmallCase{"two", {{0, 0}, {10, 0}}},
                                           SmallCase{"triangle", {{0, 0}, {10, 0}, {0, 10}}}),
                         [](const auto& info) { return info.param.name; });

TEST(PerimeterCrossingTest, MainDatasetThatIsNotAPerimeterIsNotTested) {
  Survey survey;
  AddDataset(survey, kTypeN, {{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  survey.Points[1].PtMarks = kMarkErrorLine;
  EXPECT_EQ(CheckPerimeterCrossing(survey), kCrossingNone);
  EXPECT_TRUE(ErrorMarked(survey).empty());
}

struct LineCase {
  const char* name;
  std::vector<XY> points;
  bool crosses;
};

class LineRuleTest : public ::testing::TestWithParam<LineCase> {};

TEST_P(LineRuleTest, DecidesCrossing) {
  Survey survey = PerimeterSurvey(GetParam().points);
  EXPECT_EQ(CheckPerimeterCrossing(survey) != 0, GetParam().crosses);
}

INSTANTIATE_TEST_SUITE_P(
    PerimeterCrossingTest, LineRuleTest,
    ::testing::Values(
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

// A square main perimeter divided from point 1 (10, 0) to point 3 (0, 10); the
// sub-division starts with a dummy at the first join point.
Survey DividedSquare(const std::vector<XY>& divisionPoints) {
  Survey survey = PerimeterSurvey(kSquare);
  MarkJoins(survey, 1, 3);
  std::vector<XY> sub{{10, 0}};
  sub.insert(sub.end(), divisionPoints.begin(), divisionPoints.end());
  int start = AddDataset(survey, kTypeS, sub);
  survey.Points[start].PtMarks |= kMarkDummy;
  return survey;
}

TEST(PerimeterCrossingTest, DivisionInsideThePlotDoesNotCross) {
  Survey survey = DividedSquare({{6, 4}, {4, 6}});
  EXPECT_EQ(CheckPerimeterCrossing(survey), kCrossingNone);
}

// The division's last point overshoots the join point (0, 10) and leaves the plot.
TEST(PerimeterCrossingTest, DivisionLastLineCrossingThePerimeterIsAtTheJoin) {
  Survey survey = DividedSquare({{6, 4}, {-1, 10.5f}});
  EXPECT_EQ(CheckPerimeterCrossing(survey) & kCrossingKindMask, 6);
  // The main closing line (owned by the start point) and the division's last line.
  EXPECT_EQ(ErrorMarked(survey), (std::vector<int>{0, 6}));
}

TEST(PerimeterCrossingTest, DivisionCrossingByAnEarlierLineIsElsewhere) {
  // (12, 5) -> (5, 5) crosses the perimeter line x = 10.
  Survey survey = DividedSquare({{12, 5}, {5, 5}, {4, 6}});
  int code = CheckPerimeterCrossing(survey);
  EXPECT_NE(code, 0);
  EXPECT_NE(code & kCrossingKindMask, 6);
  EXPECT_EQ(ErrorMarked(survey), (std::vector<int>{2, 6}));
}

TEST(PerimeterCrossingTest, DivisionCrossingItselfIsElsewhere) {
  Survey survey = DividedSquare({{8, 6}, {8, 2}, {5, 4}, {9, 4}, {4, 6}});
  int code = CheckPerimeterCrossing(survey);
  EXPECT_NE(code, 0);
  EXPECT_NE(code & kCrossingKindMask, 6);
}

TEST(PerimeterCrossingTest, StraightDivisionAcrossANotchCrosses) {
  // No sub-division dataset: the division is the straight line between the joins,
  // (10, 0) to (0, 10), which passes over the notch at (5, 3).
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {5, 3}, {0, 10}});
  MarkJoins(survey, 1, 4);
  EXPECT_EQ(CheckPerimeterCrossing(survey), kCrossingElsewhere);
  EXPECT_EQ(ErrorMarked(survey), (std::vector<int>{3, 4}));
}

TEST(PerimeterCrossingTest, IntermediatePointsDoNotSplitTheLines) {
  // The bow-tie again, with an intermediate point on its first line: the lines are
  // still those between the shape points, and the mark goes to the shape point.
  Survey survey = PerimeterSurvey({{0, 0}, {5, 5}, {10, 10}, {10, 0}, {0, 10}});
  survey.Points[1].PtFlags |= kPtIntermediate;
  EXPECT_EQ(CheckPerimeterCrossing(survey) & kCrossingKindMask, 2);
  EXPECT_EQ(ErrorMarked(survey), (std::vector<int>{2, 4}));
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
