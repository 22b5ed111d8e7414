#include "geometry/PartOutlines.h"

#include <algorithm>
#include <cmath>

#include "geometry/Area.h"

namespace plotmeter {

namespace {

// An extension adds twice its own area to the sum of the two outlines; a division adds
// nothing but rounding. The margin is far above double rounding and far below any
// extension a survey could hold.
constexpr double kDivisionSumTolerance = 1e-9;

bool SamePosition(const Point& a, const Point& b) { return a.X == b.X && a.Y == b.Y; }

double SquaredDistance(const Point& a, const Point& b) {
  double dx = static_cast<double>(a.X) - b.X;
  double dy = static_cast<double>(a.Y) - b.Y;
  return dx * dx + dy * dy;
}

// A dummy ("D") or reference ("R") start of a sub-division stands for its join point.
bool StandsForJoin(const Point& point, const Point& join) {
  bool dummy = (point.PtMarks & kMarkDummy) != 0;
  bool referenceOnly = (point.PtFlags & kPtInputMask) == kPtReference;
  return dummy || referenceOnly || SamePosition(point, join);
}

std::vector<int> JoinPoints(const Survey& survey, int d) {
  std::vector<int> joins;
  PointRange range = DatasetPoints(survey, d);
  for (int i = range.begin; i < range.end; ++i) {
    if (survey.Points[i].PtFlags & kPtJoin) joins.push_back(i);
  }
  return joins;
}

// The main perimeter's points from `from` round to `to`, both included, passing its
// last point and its start point when `from` comes after `to`.
std::vector<int> PerimeterArc(const Survey& survey, int d, int from, int to) {
  PointRange range = DatasetPoints(survey, d);
  std::vector<int> arc;
  for (int i = from;; i = (i + 1 < range.end) ? i + 1 : range.begin) {
    arc.push_back(i);
    if (i == to) break;
  }
  return arc;
}

std::vector<int> Joined(std::vector<int> arc, const std::vector<int>& path) {
  arc.insert(arc.end(), path.begin(), path.end());
  return arc;
}

bool IsExtension(const Survey& survey, int mainDataset, const std::vector<int>& first,
                 const std::vector<int>& second) {
  PointRange range = DatasetPoints(survey, mainDataset);
  std::vector<int> whole;
  for (int i = range.begin; i < range.end; ++i) whole.push_back(i);
  double wholeArea = OutlineArea(survey, whole);
  double partSum = OutlineArea(survey, first) + OutlineArea(survey, second);
  return partSum > wholeArea * (1 + kDivisionSumTolerance);
}

}  // namespace

PointRange DatasetPoints(const Survey& survey, int d) {
  if (d < 0 || d >= survey.DatasetCount()) return {};
  int count = survey.PointCount();
  int begin = survey.Datasets[d].DatasetStart;
  if (begin < 0 || begin >= count) return {};
  int end = std::clamp(survey.DatasetEnd(d), begin, count);
  return {begin, end};
}

int FindMainPerimeter(const Survey& survey) {
  int d = survey.FindDataset(kDatasetMain);
  if (d < 0 || !(survey.Datasets[d].DatasetType & kDatasetPerimeter)) return -1;
  return d;
}

std::vector<int> ShapePoints(const Survey& survey, int d) {
  std::vector<int> shape;
  PointRange range = DatasetPoints(survey, d);
  for (int i = range.begin; i < range.end; ++i) {
    if (i == range.begin || !(survey.Points[i].PtFlags & kPtIntermediate)) shape.push_back(i);
  }
  return shape;
}

std::optional<DivisionPath> FindDivisionPath(const Survey& survey) {
  int mainDataset = FindMainPerimeter(survey);
  if (mainDataset < 0) return std::nullopt;
  std::vector<int> joins = JoinPoints(survey, mainDataset);
  if (joins.size() != 2) return std::nullopt;

  DivisionPath path;
  path.mainDataset = mainDataset;
  path.subDataset = survey.FindDataset(kDatasetSubDivision);
  path.startJoin = joins[0];
  path.endJoin = joins[1];
  auto [begin, end] = DatasetPoints(survey, path.subDataset);
  if (begin >= end) {
    path.closingOwner = path.endJoin;
    return path;
  }

  // The path leaves from the join point nearest the sub-division's start point; the
  // earlier join point wins a tie.
  const Point& start = survey.Points[begin];
  if (SquaredDistance(start, survey.Points[joins[1]]) <
      SquaredDistance(start, survey.Points[joins[0]])) {
    std::swap(path.startJoin, path.endJoin);
  }
  path.closingOwner = begin;
  int first = StandsForJoin(start, survey.Points[path.startJoin]) ? begin + 1 : begin;
  for (int i = first; i < end; ++i) path.vertices.push_back(i);
  const Point& endJoin = survey.Points[path.endJoin];
  while (!path.vertices.empty() && SamePosition(survey.Points[path.vertices.back()], endJoin)) {
    path.vertices.pop_back();
  }
  return path;
}

float DivisionClosingLength(const Survey& survey, const DivisionPath& path) {
  int last = path.startJoin;
  auto [begin, end] = DatasetPoints(survey, path.subDataset);
  if (end > begin) last = end - 1;
  return static_cast<float>(
      std::sqrt(SquaredDistance(survey.Points[last], survey.Points[path.endJoin])));
}

void BuildPartOutlines(const Survey& survey, ProcessingState& state) {
  state.PartOutlines[0].clear();
  state.PartOutlines[1].clear();
  state.AreaState &= static_cast<std::uint8_t>(~(kAreaSegmentCount | kSegmentsSwapped));
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  if (!path) return;

  // Figure: joins a < b in the perimeter's order, the division runs between them.
  //
  //      start -> ... -> a ---- arc a..b ----> b -> ... -> last
  //                     \                    /
  //                      +--- division ---+
  //
  // The outline "between" runs the arc a..b and comes back along the division; the
  // outline "through the start" runs from b past the last and start points to a and
  // goes forward along the division.
  int a = std::min(path->startJoin, path->endJoin);
  int b = std::max(path->startJoin, path->endJoin);
  std::vector<int> forward = path->vertices;  // from a towards b
  if (path->startJoin != a) std::reverse(forward.begin(), forward.end());
  std::vector<int> backward(forward.rbegin(), forward.rend());

  std::vector<int> between = Joined(PerimeterArc(survey, path->mainDataset, a, b), backward);
  std::vector<int> throughStart = Joined(PerimeterArc(survey, path->mainDataset, b, a), forward);

  if (IsExtension(survey, path->mainDataset, between, throughStart)) {
    bool betweenIsExtension = OutlineArea(survey, between) < OutlineArea(survey, throughStart);
    state.PartOutlines[0] = betweenIsExtension ? throughStart : between;
    state.PartOutlines[1] = betweenIsExtension ? between : throughStart;
  } else {
    state.PartOutlines[0] = std::move(throughStart);
    state.PartOutlines[1] = std::move(between);
  }
  state.AreaState |= kAreaSegmentCount;
}

}  // namespace plotmeter
