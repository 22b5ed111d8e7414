// The point resolver's intermediate points: how each kind is put on its line, which points a
// bearing is measured from, and the resequencing of a run that stands out of order.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "geometry/PointResolver.h"

namespace plotmeter::resolution {

namespace {

constexpr std::string_view kNameCoordinate = "co-ordinate";
constexpr std::string_view kNameX = "X co-ordinate";
constexpr std::string_view kNameY = "Y co-ordinate";
constexpr std::string_view kNameGps = "GPS";
constexpr std::string_view kNameLongitude = "GPS Longitude";
constexpr std::string_view kNameLatitude = "GPS Latitude";
constexpr std::string_view kNameBearingFromPoint = "as bearing from existing point";
constexpr std::string_view kNameLength = "Bearing Length";

double Cross(double ax, double ay, double bx, double by) { return ax * by - ay * bx; }

// Where `q` falls along the line from `start` to `target`: 0 at the start, 1 at the
// target (the foot of the perpendicular from `q`).
double LineParameter(PlanePoint start, PlanePoint target, PlanePoint q) {
  double dx = static_cast<double>(target.x) - start.x;
  double dy = static_cast<double>(target.y) - start.y;
  double qx = static_cast<double>(q.x) - start.x;
  double qy = static_cast<double>(q.y) - start.y;
  return (qx * dx + qy * dy) / (dx * dx + dy * dy);
}

PlanePoint PointOnLine(PlanePoint start, PlanePoint target, double t) {
  return {NarrowToFloat(start.x + t * (static_cast<double>(target.x) - start.x)),
          NarrowToFloat(start.y + t * (static_cast<double>(target.y) - start.y))};
}

bool StrictlyInside(double t) { return t > 0 && t < 1; }

// The point `length` from `from` in the direction of the line from `start` to `target`;
// each step rounded to single precision before it is added, as for a bearing.
PlanePoint StepTowards(PlanePoint from, PlanePoint start, PlanePoint target, float length) {
  double dx = static_cast<double>(target.x) - start.x;
  double dy = static_cast<double>(target.y) - start.y;
  double scale = length / std::hypot(dx, dy);
  return {NarrowToFloat(static_cast<double>(from.x) + NarrowToFloat(dx * scale)),
          NarrowToFloat(static_cast<double>(from.y) + NarrowToFloat(dy * scale))};
}

}  // namespace

PlacementChoice Resolver::PlacementOf(int i) const {
  const Point& p = At(i);
  if (gpsOnly_ && CarriesGps(i)) return {Placement::kGps, kNameGps};
  if (p.PtFlags & kPtXY) return {Placement::kCoordinate, kNameCoordinate};
  if (p.PtFlags & kPtBearing) {
    if (!IsBlank(p.InYL)) return {Placement::kLength, kNameLength};
    if (!IsBlank(p.InXA)) return {Placement::kBearingFromPoint, kNameBearingFromPoint};
    return {Placement::kNone, kNameLength};
  }
  if (p.PtFlags & kPtGps) return {Placement::kGps, kNameGps};
  return {Placement::kNone, kNameCoordinate};
}

// A point a bearing can be measured from when it is the previous one: a shape point, or
// an intermediate point given by a length along its line. Intermediate points placed by
// co-ordinate, GPS or a bearing from another point are marks on the line, not stations.
bool Resolver::IsTraversePoint(int i) const {
  return !IsIntermediate(i) || PlacementOf(i).placement == Placement::kLength;
}

int Resolver::LineStartBefore(const DatasetRange& range, int i) const {
  for (int k = i - 1; k >= range.begin; --k) {
    if (!IsIntermediate(k)) return k;
  }
  return -1;
}

int Resolver::ShapePointAfter(const DatasetRange& range, int i) const {
  for (int k = i + 1; k < range.end; ++k) {
    if (!IsIntermediate(k)) return k;
  }
  return -1;
}

// True when `target`, the shape point that ends the run, is a bearing point measured
// from the run itself: its bearing is then the direction of the line.
bool Resolver::MeasuredAlongRun(const DatasetRange& range, int target, int runEnd) const {
  if (target != runEnd || target >= range.end) return false;
  const Point& p = At(target);
  return (p.PtFlags & (kPtXY | kPtBearing | kPtReference)) == kPtBearing &&
         !(range.type & kDatasetPoints) && !(gpsOnly_ && CarriesGps(target));
}

// Puts intermediate point `k` on the line from `lineStart` towards its target: the
// point's own `PtTarget`, or else the shape point `runEnd` that follows its run.
Fault Resolver::LocateIntermediate(const DatasetRange& range, int k, int lineStart, int runEnd,
                                   Located& out) {
  out = Located{};
  PlacementChoice choice = PlacementOf(k);
  int target = runEnd < range.end ? runEnd : -1;
  if (At(k).PtTarget != 0) {
    target = Lookup(At(k).PtTarget);
    if (target < 0 || target == k) return FaultAt(FaultKind::kBadReference, k);
  }
  if (lineStart < 0 || target < 0) return InterimFault(k, kInterimNoInput, choice.valueName);
  if (choice.placement == Placement::kLength) {
    return PlaceByLength(range, k, lineStart, target, runEnd, out);
  }
  // The values are read first, so that a bad text is reported whether or not the line is
  // known yet.
  out.wait = PositionWait(lineStart) | PositionWait(target);
  LineValues values;
  Fault fault = ReadLineValues(k, choice, values, out.wait);
  if (fault || out.wait) return fault;
  fault = PlaceOnLine(k, values, Position(lineStart), Position(target), out);
  if (fault) return fault;
  if (!IsFinite(out.pos)) return FaultAt(FaultKind::kInvalidData, k);
  return {};
}

// The values of a placement by a co-ordinate, a GPS position or a bearing from an
// existing point. `wait` gains the wait on the GPS tie or on the bearing's reference.
Fault Resolver::ReadLineValues(int k, PlacementChoice choice, LineValues& values,
                               std::uint8_t& wait) {
  const Point& p = At(k);
  values.name = choice.valueName;
  switch (choice.placement) {
    case Placement::kCoordinate:
      if (!ReadOptionalLength(p.InXA, values.x) || !ReadOptionalLength(p.InYL, values.y)) {
        return FaultAt(FaultKind::kInvalidData, k);
      }
      return {};
    case Placement::kGps: {
      std::optional<double> longitude;
      std::optional<double> latitude;
      if (!ReadOptionalGps(p.InGPSLong, false, longitude) ||
          !ReadOptionalGps(p.InGPSLat, true, latitude)) {
        return FaultAt(FaultKind::kInvalidData, k);
      }
      if (!longitude && !latitude) return InterimFault(k, kInterimNoInput, values.name);
      wait |= TieWait();
      if (wait) return {};
      GpsTie tie = Tie();
      GpsPosition gps{longitude.value_or(tie.gps.longitude), latitude.value_or(tie.gps.latitude)};
      std::uint8_t errors = 0;
      PlanePoint q = PlaneFromGps(survey_.UnitOfMeasure, tie, gps, errors);
      state_.ErrorState |= errors;
      if (errors) return FaultAt(FaultKind::kInvalidData, k);
      if (longitude) values.x = q.x;
      if (latitude) values.y = q.y;
      if (!latitude) values.name = kNameLongitude;
      if (!longitude) values.name = kNameLatitude;
      return {};
    }
    case Placement::kBearingFromPoint:
      if (!ReadAngle(p.InXA, k, values.bearing)) return FaultAt(FaultKind::kInvalidData, k);
      values.reference = Lookup(p.PtRef);
      if (values.reference < 0 || values.reference == k) {
        return FaultAt(FaultKind::kBadReference, k);
      }
      wait |= PositionWait(values.reference);
      return {};
    case Placement::kLength:
    case Placement::kNone:
      break;
  }
  return InterimFault(k, kInterimNoInput, values.name);
}

// Puts point `k` on the line from `start` to `target` by the values read for it.
Fault Resolver::PlaceOnLine(int k, LineValues values, PlanePoint start, PlanePoint target,
                            Located& out) {
  if (SamePosition(start, target)) return InterimFault(k, kInterimNoInput, values.name);
  if (values.reference >= 0) return PlaceByBearing(k, values, start, target, out);
  const std::optional<float> x = values.x;
  const std::optional<float> y = values.y;
  double t = 0;
  if (x && y) {
    t = LineParameter(start, target, {*x, *y});
  } else if (x) {
    if (values.name == kNameCoordinate) values.name = kNameX;
    if (start.x == target.x) return InterimFault(k, kInterimNoInput, values.name);
    t = (static_cast<double>(*x) - start.x) / (static_cast<double>(target.x) - start.x);
  } else if (y) {
    if (values.name == kNameCoordinate) values.name = kNameY;
    if (start.y == target.y) return InterimFault(k, kInterimNoInput, values.name);
    t = (static_cast<double>(*y) - start.y) / (static_cast<double>(target.y) - start.y);
  } else {
    return InterimFault(k, kInterimNoInput, values.name);
  }
  if (!StrictlyInside(t)) return InterimFault(k, kInterimOutOfRange, values.name);
  out.pos = PointOnLine(start, target, t);
  if (x && !y) out.pos.x = *x;  // the one given value stands as entered
  if (y && !x) out.pos.y = *y;
  return {};
}

// Where the line from the reference point in the given bearing meets the line ahead of it.
Fault Resolver::PlaceByBearing(int k, const LineValues& values, PlanePoint start, PlanePoint target,
                               Located& out) {
  PlanePoint from = Position(values.reference);
  PlanePoint ahead = PointAtBearing({}, values.bearing, 1.0f);
  double dx = static_cast<double>(target.x) - start.x;
  double dy = static_cast<double>(target.y) - start.y;
  double sx = static_cast<double>(start.x) - from.x;
  double sy = static_cast<double>(start.y) - from.y;
  double denominator = Cross(ahead.x, ahead.y, dx, dy);
  if (denominator == 0) return InterimFault(k, kInterimNoInput, values.name);
  double along = Cross(sx, sy, dx, dy) / denominator;
  double t = Cross(sx, sy, ahead.x, ahead.y) / denominator;
  if (!(along > 0) || !StrictlyInside(t)) {
    return InterimFault(k, kInterimOutOfRange, values.name);
  }
  out.pos = PointOnLine(start, target, t);
  return {};
}

// Placement by a length along the line from the previous point. The line runs in the
// bearing of the shape point that ends the run when that point is measured from the run;
// otherwise towards the target's position, and the length must then stop short of it.
Fault Resolver::PlaceByLength(const DatasetRange& range, int k, int lineStart, int target,
                              int runEnd, Located& out) {
  float length = 0;
  if (!ReadLength(At(k).InYL, length)) return FaultAt(FaultKind::kInvalidData, k);
  bool alongRun = MeasuredAlongRun(range, target, runEnd);
  double bearing = 0;
  if (alongRun && !ReadAngle(At(target).InXA, target, bearing)) {
    return FaultAt(FaultKind::kInvalidData, target);
  }
  int previous = k - 1;
  out.wait = PositionWait(previous);
  bool needsTarget = !alongRun || checkingEntry_;
  if (needsTarget) out.wait |= PositionWait(lineStart) | PositionWait(target);
  if (out.wait) return {};
  if (!(length > 0)) return InterimFault(k, kInterimOutOfRange, kNameLength);
  if (needsTarget) {
    if (SamePosition(Position(lineStart), Position(target))) {
      return InterimFault(k, kInterimNoInput, kNameLength);
    }
    BearingLength remaining = LineBearingLength(Position(previous), Position(target));
    if (!alongRun) bearing = LineBearingLength(Position(lineStart), Position(target)).bearing;
    if (!(length < std::fabs(remaining.length))) {
      return InterimFault(k, kInterimTooLong, kNameLength);
    }
  }
  // Along a line between two known points the step follows the line itself rather than
  // its bearing, so that a line along an axis keeps its points exactly on it.
  out.pos = alongRun
                ? PointAtBearing(Position(previous), bearing, length)
                : StepTowards(Position(previous), Position(lineStart), Position(target), length);
  out.ownBearing = true;
  out.line = {NarrowToFloat(bearing), length};
  if (!IsFinite(out.pos)) return FaultAt(FaultKind::kInvalidData, k);
  return {};
}

// A run of intermediate points together with the shape point that ends it. That point is
// placed first unless it is measured from the run itself, so that the run finds its
// target within the same pass; its checks and derived values wait for the run.
Fault Resolver::ResolveRun(const DatasetRange& range, int first, int runEnd) {
  bool hasEnd = runEnd < range.end;
  bool endFirst = hasEnd && !HangsOnRun(range, first, runEnd);
  if (endFirst) {
    Located located;
    if (Fault fault = LocateShapePoint(range, runEnd, located)) return fault;
    Store(runEnd, located);
  }
  int lineStart = first > range.begin ? first - 1 : -1;
  for (int k = first; k < runEnd; ++k) {
    Located located;
    if (Fault fault = LocateIntermediate(range, k, lineStart, runEnd, located)) return fault;
    Store(k, located);
  }
  if (lineStart >= 0) {
    if (Fault fault = ResequenceRun(range, first, runEnd)) return fault;
  }
  for (int k = first; k < runEnd; ++k) {
    if (Fault fault = CheckNotIdenticalToPreceding(range, k)) return fault;
    if (Fault fault = DeriveValues(range, k)) return fault;
  }
  if (!hasEnd) return {};
  if (endFirst) {
    if (Fault fault = CheckNotIdenticalToPreceding(range, runEnd)) return fault;
    return DeriveValues(range, runEnd);
  }
  return ResolveShapePoint(range, runEnd);
}

// True when the shape point `end` that follows the run [first, end) takes its position
// from a point of the run: a bearing measured from a length point of the run, or a
// reference to one of its points.
bool Resolver::HangsOnRun(const DatasetRange& range, int first, int end) const {
  const Point& p = At(end);
  bool byGps = (gpsOnly_ && CarriesGps(end)) || (p.PtFlags & kPtInputMask) == kPtGps;
  if (byGps || (p.PtFlags & kPtXY)) return false;
  int from = (p.PtFlags & kPtBearing) ? BearingOrigin(range, end) : Lookup(p.PtRef);
  return from >= first && from < end;
}

// Puts the intermediate points of one run in their order along the line when they stand
// out of it. Only points placed on the line independently of each other can move: a run
// that holds a point given by a length from the one before it is refused instead.
Fault Resolver::ResequenceRun(const DatasetRange& range, int first, int runEnd) {
  int lineStart = first - 1;
  int count = runEnd - first;
  int target = -1;
  for (int k = first; k < runEnd; ++k) {
    if (positionWait_[k]) return {};
    int own = At(k).PtTarget != 0 ? Lookup(At(k).PtTarget) : (runEnd < range.end ? runEnd : -1);
    if (k == first) target = own;
    if (own != target || target < 0) return {};
  }
  if (positionWait_[lineStart] || positionWait_[target]) return {};
  PlanePoint start = Position(lineStart);
  PlanePoint end = Position(target);
  if (SamePosition(start, end)) return {};
  std::vector<double> along(count);
  for (int n = 0; n < count; ++n) along[n] = LineParameter(start, end, Position(first + n));
  int outOfOrder = -1;
  for (int n = 1; n < count && outOfOrder < 0; ++n) {
    if (along[n] < along[n - 1]) outOfOrder = first + n;
  }
  if (outOfOrder < 0) return {};
  for (int k = first; k < runEnd; ++k) {
    if (PlacementOf(k).placement == Placement::kLength) {
      return InterimFault(outOfOrder, kInterimOutOfRange, kNameLength);
    }
  }
  std::vector<int> order(count);
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&along](int a, int b) { return along[a] < along[b]; });
  std::vector<Point> points(count);
  std::vector<std::uint8_t> valueWaits(count);
  for (int n = 0; n < count; ++n) {
    points[n] = std::move(survey_.Points[first + order[n]]);
    valueWaits[n] = valueWait_[first + order[n]];
    if (order[n] != n) points[n].PtMarks |= kMarkShared;
  }
  for (int n = 0; n < count; ++n) {
    survey_.Points[first + n] = std::move(points[n]);
    valueWait_[first + n] = valueWaits[n];
    auto entry = indexOfNumber_.find(At(first + n).PtNumber);
    if (entry != indexOfNumber_.end() && entry->second >= 0) entry->second = first + n;
  }
  state_.ErrorState = kErrorResequenced;
  return {};
}

}  // namespace plotmeter::resolution
