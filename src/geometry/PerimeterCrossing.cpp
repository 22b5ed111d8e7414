#include "geometry/PerimeterCrossing.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "geometry/PartOutlines.h"

namespace plotmeter {

namespace {

// A line as the crossing test takes it: its slope and intercept in single precision.
// A vertical line (equal X at both ends) has slope 0 and keeps its X as the intercept.
struct LineForm {
  float x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  bool vertical = false;
  float slope = 0;
  float intercept = 0;
};

LineForm FormOf(const Point& from, const Point& to) {
  LineForm line{from.X, from.Y, to.X, to.Y, from.X == to.X, 0, from.X};
  if (!line.vertical) {
    line.slope = (to.Y - from.Y) / (to.X - from.X);
    line.intercept = from.Y - line.slope * from.X;
  }
  return line;
}

// Positions along a line are measured on the axis it runs along most, so that a steep
// line's short X extent cannot swallow a real crossing inside the end tolerance.
bool RunsAlongX(const LineForm& line) {
  return std::fabs(static_cast<double>(line.x2) - line.x1) >=
         std::fabs(static_cast<double>(line.y2) - line.y1);
}

struct Interval {
  double low = 0, high = 0;
};

Interval Extent(const LineForm& line, bool alongX) {
  double a = alongX ? line.x1 : line.y1;
  double b = alongX ? line.x2 : line.y2;
  return {std::min(a, b), std::max(a, b)};
}

bool StrictlyInside(const LineForm& line, double x, double y) {
  bool alongX = RunsAlongX(line);
  Interval extent = Extent(line, alongX);
  double at = alongX ? x : y;
  return at > extent.low + kCrossingEndTolerance && at < extent.high - kCrossingEndTolerance;
}

// Two lines on one straight line cross when they overlap by more than the end
// tolerance: a perimeter that doubles back along itself encloses nothing there. Lines
// that only share an end point do not cross.
bool Overlap(const LineForm& a, const LineForm& b) {
  bool alongX = RunsAlongX(a);
  Interval ea = Extent(a, alongX);
  Interval eb = Extent(b, alongX);
  return std::min(ea.high, eb.high) - std::max(ea.low, eb.low) > kCrossingEndTolerance;
}

bool MeetInside(const LineForm& a, const LineForm& b, double x, double y) {
  return StrictlyInside(a, x, y) && StrictlyInside(b, x, y);
}

bool SharesAnEnd(const LineForm& a, const LineForm& b) {
  auto same = [](float x1, float y1, float x2, float y2) { return x1 == x2 && y1 == y2; };
  return same(a.x1, a.y1, b.x1, b.y1) || same(a.x1, a.y1, b.x2, b.y2) ||
         same(a.x2, a.y2, b.x1, b.y1) || same(a.x2, a.y2, b.x2, b.y2);
}

bool OnOneStraightLine(const LineForm& a, const LineForm& b) {
  if (a.vertical || b.vertical) return a.vertical && b.vertical && a.intercept == b.intercept;
  return a.slope == b.slope && a.intercept == b.intercept;
}

bool Cross(const LineForm& a, const LineForm& b) {
  // Neighbours meet at their shared end, which the end tolerance leaves out; computing
  // that meeting point from rounded slopes of a sharp spike could land it just inside,
  // so neighbours are only tested for overlap along one straight line.
  if (SharesAnEnd(a, b)) return OnOneStraightLine(a, b) && Overlap(a, b);
  if (a.vertical && b.vertical) return a.intercept == b.intercept && Overlap(a, b);
  if (a.vertical || b.vertical) {
    const LineForm& upright = a.vertical ? a : b;
    const LineForm& other = a.vertical ? b : a;
    double x = upright.intercept;
    return MeetInside(a, b, x, static_cast<double>(other.slope) * x + other.intercept);
  }
  // Equal slopes with different intercepts are parallel and never meet.
  if (a.slope == b.slope) return a.intercept == b.intercept && Overlap(a, b);
  double x =
      (static_cast<double>(b.intercept) - a.intercept) / (static_cast<double>(a.slope) - b.slope);
  // The flatter line gives the meeting point's Y with the smaller error.
  const LineForm& flatter = std::fabs(a.slope) <= std::fabs(b.slope) ? a : b;
  return MeetInside(a, b, x, static_cast<double>(flatter.slope) * x + flatter.intercept);
}

struct TestedLine {
  LineForm form;
  int owner = -1;  // the point whose error-line mark stands for the line
  bool ofDivision = false;
  bool degenerate = false;  // no length: it cannot cross anything
};

void AddLine(const Survey& survey, int from, int to, int owner, bool ofDivision,
             std::vector<TestedLine>& lines) {
  const Point& a = survey.Points[from];
  const Point& b = survey.Points[to];
  bool degenerate = a.X == b.X && a.Y == b.Y;
  lines.push_back({FormOf(a, b), owner, ofDivision, degenerate});
}

// The main perimeter's lines: line i - 1 runs into shape point i, the closing line from
// the last shape point back to the start point comes last.
void AddPerimeterLines(const Survey& survey, const std::vector<int>& shape,
                       std::vector<TestedLine>& lines) {
  for (std::size_t i = 1; i < shape.size(); ++i) {
    AddLine(survey, shape[i - 1], shape[i], shape[i], false, lines);
  }
  AddLine(survey, shape.back(), shape.front(), shape.front(), false, lines);
}

// The division's lines, from its start join point to its end join point. Returns the
// index of the last entered line (the one into its last own point), when it has one.
std::optional<std::size_t> AddDivisionLines(const Survey& survey, const DivisionPath& path,
                                            std::vector<TestedLine>& lines) {
  std::vector<int> along{path.startJoin};
  for (int v : path.vertices) {
    if (!(survey.Points[v].PtFlags & kPtIntermediate)) along.push_back(v);
  }
  std::optional<std::size_t> lastEntered;
  for (std::size_t i = 1; i < along.size(); ++i) {
    lastEntered = lines.size();
    AddLine(survey, along[i - 1], along[i], along[i], true, lines);
  }
  AddLine(survey, along.back(), path.endJoin, path.closingOwner, true, lines);
  return lastEntered;
}

void ClearErrorMarks(Survey& survey) {
  for (Point& point : survey.Points) point.PtMarks &= static_cast<std::uint8_t>(~kMarkErrorLine);
}

}  // namespace

int CheckPerimeterCrossing(Survey& survey) {
  ClearErrorMarks(survey);
  int mainDataset = FindMainPerimeter(survey);
  if (mainDataset < 0) return kCrossingNone;
  std::vector<int> shape = ShapePoints(survey, mainDataset);
  if (shape.size() < 3) return kCrossingNone;

  std::vector<TestedLine> lines;
  AddPerimeterLines(survey, shape, lines);
  const std::size_t firstLine = 0;
  const std::size_t lastLine = shape.size() - 2;  // into the last shape point
  std::optional<std::size_t> divisionLast;
  if (std::optional<DivisionPath> path = FindDivisionPath(survey)) {
    divisionLast = AddDivisionLines(survey, *path, lines);
  }

  bool crossed = false;
  bool allInvolveLast = true, lastCrossesFirst = false;
  bool allDivisionLastOnPerimeter = divisionLast.has_value();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].degenerate) continue;
    for (std::size_t j = i + 1; j < lines.size(); ++j) {
      if (lines[j].degenerate || !Cross(lines[i].form, lines[j].form)) continue;
      crossed = true;
      survey.Points[lines[i].owner].PtMarks |= kMarkErrorLine;
      survey.Points[lines[j].owner].PtMarks |= kMarkErrorLine;
      allInvolveLast = allInvolveLast && (i == lastLine || j == lastLine);
      lastCrossesFirst = lastCrossesFirst || (i == firstLine && j == lastLine);
      bool divisionLastOnPerimeter = j == divisionLast && !lines[i].ofDivision;
      allDivisionLastOnPerimeter = allDivisionLastOnPerimeter && divisionLastOnPerimeter;
    }
  }
  if (!crossed) return kCrossingNone;
  if (allInvolveLast && lastCrossesFirst) return kCrossingAtStart;
  if (allDivisionLastOnPerimeter) return kCrossingAtJoin;
  return kCrossingElsewhere;
}

}  // namespace plotmeter
