#include "geometry/PointResolution.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "geometry/PartOutlines.h"
#include "model/GpsText.h"
#include "model/ValueText.h"

namespace plotmeter::resolution {

namespace {

constexpr std::uint8_t kWaitReasons = kWaitGps | kWaitLater;
constexpr std::uint8_t kErrorsOfResolution =
    kErrorInvalidData | kErrorOver60 | kErrorUnitsSeparator | kErrorResequenced;

constexpr std::string_view kNameCoordinate = "co-ordinate";
constexpr std::string_view kNameX = "X co-ordinate";
constexpr std::string_view kNameY = "Y co-ordinate";
constexpr std::string_view kNameGps = "GPS";
constexpr std::string_view kNameLongitude = "GPS Longitude";
constexpr std::string_view kNameLatitude = "GPS Latitude";
constexpr std::string_view kNameBearingFromPoint = "as bearing from existing point";
constexpr std::string_view kNameLength = "Bearing Length";

bool IsBlank(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\t'; });
}

bool SamePosition(PlanePoint a, PlanePoint b) { return a.x == b.x && a.y == b.y; }

Fault FaultAt(FaultKind kind, int point) { return Fault{.kind = kind, .point = point}; }

Fault InterimFault(int point, int code, std::string_view valueName) {
  return Fault{
      .kind = FaultKind::kBadInterim, .point = point, .code = code, .valueName = valueName};
}

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

Resolver::Resolver(Survey& survey, ProcessingState& state) : survey_(survey), state_(state) {}

void Resolver::StartFirstPass() {
  positionWait_.assign(survey_.Points.size(), kNotReached);
  valueWait_.assign(survey_.Points.size(), kNotReached);
  for (Point& point : survey_.Points) {
    if (point.PtFlags & kPtIntermediate) point.PtMarks &= ~kMarkShared;
  }
  state_.ErrorState &= ~kErrorsOfResolution;
  state_.ProcessState &= ~kPassComplete;
}

void Resolver::TakeValuesAsFinal() {
  positionWait_.assign(survey_.Points.size(), 0);
  valueWait_.assign(survey_.Points.size(), 0);
}

bool Resolver::AnyPending() const {
  auto waiting = [](std::uint8_t wait) { return wait != 0; };
  return std::any_of(positionWait_.begin(), positionWait_.end(), waiting) ||
         std::any_of(valueWait_.begin(), valueWait_.end(), waiting);
}

// ---- What a point holds ----

bool Resolver::CarriesGps(int i) const {
  const Point& p = At(i);
  return (p.PtFlags & kPtGps) && !IsBlank(p.InGPSLong) && !IsBlank(p.InGPSLat);
}

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

// ---- Datasets and point numbers ----

Fault Resolver::CheckDatasets() const {
  int count = survey_.PointCount();
  int expected = 0;
  for (int d = 0; d < survey_.DatasetCount(); ++d) {
    int start = survey_.Datasets[d].DatasetStart;
    bool inOrder = d == 0 ? start == 0 : start >= expected && start <= count;
    if (!inOrder) {
      state_.ErrorState |= kErrorInvalidData;
      return FaultAt(FaultKind::kInvalidData, count > 0 ? std::clamp(start, 0, count - 1) : -1);
    }
    expected = start;
  }
  if (survey_.DatasetCount() == 0 && count > 0) {
    state_.ErrorState |= kErrorInvalidData;
    return FaultAt(FaultKind::kInvalidData, 0);
  }
  return {};
}

DatasetRange Resolver::RangeOf(int d) const {
  return {survey_.Datasets[d].DatasetStart, survey_.DatasetEnd(d), survey_.Datasets[d].DatasetType};
}

int Resolver::DatasetHolding(int index) const {
  const std::vector<Dataset>& sets = survey_.Datasets;
  auto after = std::upper_bound(sets.begin(), sets.end(), index,
                                [](int i, const Dataset& set) { return i < set.DatasetStart; });
  return static_cast<int>(after - sets.begin()) - 1;
}

void Resolver::BuildNumberIndex() {
  indexOfNumber_.clear();
  indexOfNumber_.reserve(survey_.Points.size());
  for (int i = 0; i < survey_.PointCount(); ++i) {
    auto [entry, inserted] = indexOfNumber_.try_emplace(At(i).PtNumber, i);
    if (!inserted) entry->second = -1;  // a number given twice names no one point
  }
}

int Resolver::Lookup(int number) const {
  if (number == 0) return -1;
  auto entry = indexOfNumber_.find(number);
  return entry == indexOfNumber_.end() ? -1 : entry->second;
}

// ---- The GPS tie ----

Fault Resolver::SetUpGps() {
  bool anyGpsFlag = (survey_.FileFlags & kFileGpsOnly) != 0;
  bool anyCarrier = false;
  bool anyPlaneInput = false;
  for (int i = 0; i < survey_.PointCount(); ++i) {
    anyGpsFlag = anyGpsFlag || (At(i).PtFlags & kPtGps);
    anyCarrier = anyCarrier || CarriesGps(i);
    anyPlaneInput = anyPlaneInput || (At(i).PtFlags & (kPtXY | kPtBearing));
  }
  gpsOnly_ = anyCarrier && ((survey_.FileFlags & kFileGpsOnly) || !anyPlaneInput);
  gpsInUse_ = anyCarrier;
  tiePoint_ = -1;
  tieReady_ = false;
  if (anyGpsFlag && !anyCarrier) return FaultAt(FaultKind::kNoGpsReference, -1);
  if (!gpsInUse_) return {};
  for (int i = 0; i < survey_.PointCount() && tiePoint_ < 0; ++i) {
    bool stands = gpsOnly_ ? CarriesGps(i)
                           : (At(i).PtFlags & kPtLink) &&
                                 (At(i).PtFlags & (kPtXY | kPtBearing | kPtReference));
    if (stands) tiePoint_ = i;
  }
  if (tiePoint_ < 0) return FaultAt(FaultKind::kNoGpsLink, -1);
  if (!ReadGpsPosition(tiePoint_, tieGps_)) return FaultAt(FaultKind::kInvalidData, tiePoint_);
  tieReady_ = true;
  return {};
}

// The wait of anything that needs the position of point `i`: nothing when it is final;
// a point not reached yet in any pass is one later in this pass.
std::uint8_t Resolver::PositionWait(int i) const {
  std::uint8_t wait = positionWait_[i];
  if (wait == 0) return 0;
  return (wait & kWaitReasons) | ((wait & kNotReached) ? kWaitLater : 0);
}

std::uint8_t Resolver::TieWait() const {
  if (!tieReady_) return kWaitGps;
  if (gpsOnly_) return 0;
  std::uint8_t wait = positionWait_[tiePoint_];
  return wait == 0 ? 0 : kWaitGps | (wait & kWaitReasons);
}

// In GPS-only processing the first GPS point stands at the plane's origin.
PlanePoint Resolver::TiePlane() const { return gpsOnly_ ? PlanePoint{} : Position(tiePoint_); }

// ---- Reading entered values ----

// Maps the value marks of the last parse onto the error bits; false when the value
// cannot be used.
bool Resolver::MarksAllowValue(const std::string& text) {
  std::uint8_t marks = survey_.ValueMarks;
  if (marks & kValueOver60) state_.ErrorState |= kErrorOver60;
  if (marks & kValueNotNumber) {
    bool separator = text.find(survey_.SubValueSeparator) != std::string::npos;
    state_.ErrorState |= separator ? kErrorUnitsSeparator : kErrorInvalidData;
  }
  return (marks & (kValueOver60 | kValueNotNumber)) == 0;
}

bool Resolver::ReadLength(const std::string& text, float& value) {
  survey_.ValueMarks = 0;
  value = ParseLengthText(survey_, text);
  if (!MarksAllowValue(text)) return false;
  if (std::isfinite(value)) return true;
  state_.ErrorState |= kErrorInvalidData;
  return false;
}

bool Resolver::ReadAngle(const std::string& text, int pointIndex, double& value) {
  survey_.ValueMarks = 0;
  value = ParseAngleText(survey_, text, pointIndex);
  if (!MarksAllowValue(text)) return false;
  if (std::isfinite(value)) return true;
  state_.ErrorState |= kErrorInvalidData;
  return false;
}

bool Resolver::ReadOptionalLength(const std::string& text, std::optional<float>& value) {
  value.reset();
  if (IsBlank(text)) return true;
  float read = 0;
  if (!ReadLength(text, read)) return false;
  value = read;
  return true;
}

bool Resolver::ReadOptionalGps(const std::string& text, bool latitude,
                               std::optional<double>& value) {
  value.reset();
  if (IsBlank(text)) return true;
  value = latitude ? ParseGpsLatitude(survey_, text) : ParseGpsLongitude(survey_, text);
  if (value) return true;
  state_.ErrorState |= kErrorInvalidData;
  return false;
}

bool Resolver::ReadGpsPosition(int i, GpsPosition& position) {
  std::optional<double> longitude = ParseGpsLongitude(survey_, At(i).InGPSLong);
  std::optional<double> latitude = ParseGpsLatitude(survey_, At(i).InGPSLat);
  if (!longitude || !latitude) {
    state_.ErrorState |= kErrorInvalidData;
    return false;
  }
  position = {*longitude, *latitude};
  return true;
}

// ---- Where a point is measured from ----

// The origin of a bearing and length: the referenced point for an "F" point and for a
// stand-alone point with a reference, else the previous station of the dataset.
int Resolver::BearingOrigin(const DatasetRange& range, int i) const {
  const Point& p = At(i);
  bool fromReference =
      (p.PtFlags & kPtReference) || ((range.type & kDatasetPoints) && p.PtRef != 0);
  if (fromReference) {
    int reference = Lookup(p.PtRef);
    return reference == i ? -1 : reference;
  }
  for (int k = i - 1; k >= range.begin; --k) {
    if (IsTraversePoint(k)) return k;
  }
  return -1;
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

// ---- Locating one point ----

Fault Resolver::LocateShapePoint(const DatasetRange& range, int i, Located& out) {
  const Point& p = At(i);
  out = Located{};
  bool byGps = (gpsOnly_ && CarriesGps(i)) || (p.PtFlags & kPtInputMask) == kPtGps;
  if (byGps) {
    GpsPosition gps;
    if (!ReadGpsPosition(i, gps)) return FaultAt(FaultKind::kInvalidData, i);
    out.wait = TieWait();
    if (out.wait) return {};
    std::uint8_t errors = 0;
    out.pos = PlaneFromGps(survey_.UnitOfMeasure, Tie(), gps, errors);
    state_.ErrorState |= errors;
    if (errors) return FaultAt(FaultKind::kInvalidData, i);
  } else if (p.PtFlags & kPtXY) {
    if (!ReadLength(p.InXA, out.pos.x) || !ReadLength(p.InYL, out.pos.y)) {
      return FaultAt(FaultKind::kInvalidData, i);
    }
  } else if (p.PtFlags & kPtBearing) {
    double bearing = 0;
    float length = 0;
    if (!ReadAngle(p.InXA, i, bearing) || !ReadLength(p.InYL, length)) {
      return FaultAt(FaultKind::kInvalidData, i);
    }
    int origin = BearingOrigin(range, i);
    if (origin < 0) return FaultAt(FaultKind::kBadReference, i);
    out.wait = PositionWait(origin);
    if (out.wait) return {};
    out.pos = PointAtBearing(Position(origin), bearing, length);
    out.ownBearing = true;
    out.line = {NarrowToFloat(bearing), length};
  } else if (p.PtFlags & kPtReference) {
    int reference = Lookup(p.PtRef);
    if (reference < 0 || reference == i) return FaultAt(FaultKind::kBadReference, i);
    out.wait = PositionWait(reference);
    if (out.wait) return {};
    out.pos = Position(reference);
  } else {
    state_.ErrorState |= kErrorInvalidData;
    return FaultAt(FaultKind::kInvalidData, i);
  }
  if (!IsFinite(out.pos)) return FaultAt(FaultKind::kInvalidData, i);
  return {};
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
  out.wait = PositionWait(lineStart) | PositionWait(target);
  Fault fault = PlaceOnLine(k, choice, Position(lineStart), Position(target), out);
  if (fault || out.wait) return fault;
  if (!IsFinite(out.pos)) return FaultAt(FaultKind::kInvalidData, k);
  return {};
}

// Placement by a co-ordinate, a GPS position or a bearing from an existing point. The
// values are read first, so that a bad text is reported whether or not the line is
// known yet; `out.wait` already holds the wait on the line's two ends.
Fault Resolver::PlaceOnLine(int k, PlacementChoice choice, PlanePoint start, PlanePoint target,
                            Located& out) {
  const Point& p = At(k);
  std::optional<float> x;
  std::optional<float> y;
  std::string_view name = choice.valueName;
  double bearing = 0;
  int reference = -1;
  switch (choice.placement) {
    case Placement::kCoordinate:
      if (!ReadOptionalLength(p.InXA, x) || !ReadOptionalLength(p.InYL, y)) {
        return FaultAt(FaultKind::kInvalidData, k);
      }
      break;
    case Placement::kGps: {
      std::optional<double> longitude;
      std::optional<double> latitude;
      if (!ReadOptionalGps(p.InGPSLong, false, longitude) ||
          !ReadOptionalGps(p.InGPSLat, true, latitude)) {
        return FaultAt(FaultKind::kInvalidData, k);
      }
      if (!longitude && !latitude) return InterimFault(k, kInterimNoInput, name);
      out.wait |= TieWait();
      if (out.wait) return {};
      GpsTie tie = Tie();
      GpsPosition gps{longitude.value_or(tie.gps.longitude), latitude.value_or(tie.gps.latitude)};
      std::uint8_t errors = 0;
      PlanePoint q = PlaneFromGps(survey_.UnitOfMeasure, tie, gps, errors);
      state_.ErrorState |= errors;
      if (errors) return FaultAt(FaultKind::kInvalidData, k);
      if (longitude) x = q.x;
      if (latitude) y = q.y;
      if (!latitude) name = kNameLongitude;
      if (!longitude) name = kNameLatitude;
      break;
    }
    case Placement::kBearingFromPoint:
      if (!ReadAngle(p.InXA, k, bearing)) return FaultAt(FaultKind::kInvalidData, k);
      reference = Lookup(p.PtRef);
      if (reference < 0 || reference == k) return FaultAt(FaultKind::kBadReference, k);
      out.wait |= PositionWait(reference);
      break;
    case Placement::kLength:
    case Placement::kNone:
      return InterimFault(k, kInterimNoInput, name);
  }
  if (out.wait) return {};
  if (SamePosition(start, target)) return InterimFault(k, kInterimNoInput, name);

  double t = 0;
  if (choice.placement == Placement::kBearingFromPoint) {
    PlanePoint from = Position(reference);
    PlanePoint ahead = PointAtBearing({}, bearing, 1.0f);
    double dx = static_cast<double>(target.x) - start.x;
    double dy = static_cast<double>(target.y) - start.y;
    double sx = static_cast<double>(start.x) - from.x;
    double sy = static_cast<double>(start.y) - from.y;
    double denominator = Cross(ahead.x, ahead.y, dx, dy);
    if (denominator == 0) return InterimFault(k, kInterimNoInput, name);
    double along = Cross(sx, sy, dx, dy) / denominator;
    t = Cross(sx, sy, ahead.x, ahead.y) / denominator;
    if (!(along > 0) || !StrictlyInside(t)) return InterimFault(k, kInterimOutOfRange, name);
    out.pos = PointOnLine(start, target, t);
    return {};
  }
  if (x && y) {
    t = LineParameter(start, target, {*x, *y});
  } else if (x) {
    if (name == kNameCoordinate) name = kNameX;
    if (start.x == target.x) return InterimFault(k, kInterimNoInput, name);
    t = (static_cast<double>(*x) - start.x) / (static_cast<double>(target.x) - start.x);
  } else if (y) {
    if (name == kNameCoordinate) name = kNameY;
    if (start.y == target.y) return InterimFault(k, kInterimNoInput, name);
    t = (static_cast<double>(*y) - start.y) / (static_cast<double>(target.y) - start.y);
  } else {
    return InterimFault(k, kInterimNoInput, name);
  }
  if (!StrictlyInside(t)) return InterimFault(k, kInterimOutOfRange, name);
  out.pos = PointOnLine(start, target, t);
  if (x && !y) out.pos.x = *x;  // the one given value stands as entered
  if (y && !x) out.pos.y = *y;
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

// ---- One pass ----

Fault Resolver::RunPass(std::uint8_t passMode) {
  checkingEntry_ = false;
  state_.GpsState &= ~kGpsRepassNeeded;
  state_.ProcessState &= ~kTargetRepassNeeded;
  positionWait_.resize(survey_.Points.size(), kNotReached);
  valueWait_.resize(survey_.Points.size(), kNotReached);
  if (Fault fault = CheckDatasets()) return fault;
  BuildNumberIndex();
  if (Fault fault = SetUpGps()) return fault;
  state_.GpsArea = gpsOnly_;
  for (int d = 0; d < survey_.DatasetCount(); ++d) {
    DatasetRange range = RangeOf(d);
    for (int i = range.begin; i < range.end;) {
      if (!IsIntermediate(i)) {
        if (Fault fault = ResolveShapePoint(range, i)) return fault;
        ++i;
        continue;
      }
      int runEnd = i;
      while (runEnd < range.end && IsIntermediate(runEnd)) ++runEnd;
      if (Fault fault = ResolveRun(range, i, runEnd)) return fault;
      i = runEnd;
    }
  }
  SetClosingLines();
  SetRepassBits();
  if (!(passMode & kRepeatPass)) state_.ProcessState |= kPassComplete;
  return {};
}

Fault Resolver::Store(int i, const Located& located) {
  positionWait_[i] = located.wait;
  if (located.wait) return {};
  Point& p = survey_.Points[i];
  p.X = located.pos.x;
  p.Y = located.pos.y;
  if (located.ownBearing) {
    p.Bearing = located.line.bearing;
    p.Len = located.line.length;
  }
  return {};
}

Fault Resolver::ResolveShapePoint(const DatasetRange& range, int i) {
  Located located;
  if (Fault fault = LocateShapePoint(range, i, located)) return fault;
  Store(i, located);
  if (Fault fault = CheckNotIdenticalToPreceding(range, i)) return fault;
  return DeriveValues(range, i);
}

Fault Resolver::ResolveRun(const DatasetRange& range, int first, int runEnd) {
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
  return {};
}

Fault Resolver::CheckNotIdenticalToPreceding(const DatasetRange& range, int i) {
  if (i <= range.begin || positionWait_[i] || positionWait_[i - 1]) return {};
  if (!SamePosition(Position(i), Position(i - 1))) return {};
  survey_.Points[i].Len = 0;
  return FaultAt(FaultKind::kIdenticalPoints, i);
}

// The bearing and length of the line that ends at the point, where its input did not
// give them, and its GPS values.
Fault Resolver::DeriveValues(const DatasetRange& range, int i) {
  Point& p = survey_.Points[i];
  bool ownBearing = IsIntermediate(i) ? PlacementOf(i).placement == Placement::kLength
                                      : (p.PtFlags & (kPtXY | kPtBearing)) == kPtBearing &&
                                            !(gpsOnly_ && CarriesGps(i));
  std::uint8_t wait = positionWait_[i];
  if (!ownBearing && i == range.begin) {
    p.Bearing = 0;
    p.Len = 0;
  } else if (!ownBearing) {
    wait |= positionWait_[i - 1];
    if (!wait) {
      BearingLength line = LineBearingLength(Position(i - 1), Position(i));
      p.Bearing = line.bearing;
      p.Len = line.length;
    }
  }
  Fault fault = DeriveGpsValues(i, wait);
  valueWait_[i] = wait;
  return fault;
}

// GPS values as entered where the point carries them, generated through the tie where it
// does not; a point given both in the plane and by GPS also gets the position its GPS
// values give (its alternate) and the distance between the two.
Fault Resolver::DeriveGpsValues(int i, std::uint8_t& wait) {
  Point& p = survey_.Points[i];
  p.HasAlternate = false;
  p.AltX = p.AltY = 0;
  p.AltGPSLong = p.AltGPSLat = p.AltGPSDelta = 0;
  if (!gpsInUse_) {
    p.GPSLong = p.GPSLat = 0;
    return {};
  }
  int unit = survey_.UnitOfMeasure;
  if (UnitLengthMetres(unit) == 0) {
    state_.ErrorState |= kErrorInvalidData;
    return FaultAt(FaultKind::kInvalidData, i);
  }
  GpsPosition entered;
  bool carries = CarriesGps(i);
  if (carries && !ReadGpsPosition(i, entered)) return FaultAt(FaultKind::kInvalidData, i);
  bool givenBothWays = carries && !IsIntermediate(i) && !gpsOnly_ &&
                       (p.PtFlags & (kPtXY | kPtBearing | kPtReference));
  GpsPosition generated;
  if (!carries || givenBothWays) {
    std::uint8_t needs = positionWait_[i] | TieWait();
    wait |= needs;
    if (needs) return {};
    std::optional<GpsPosition> fromPlane = GpsFromPlane(unit, Tie(), Position(i));
    if (!fromPlane) return FaultAt(FaultKind::kInvalidData, i);
    generated = *fromPlane;
  }
  GpsPosition own = carries ? entered : generated;
  p.GPSLong = own.longitude;
  p.GPSLat = own.latitude;
  if (!givenBothWays) return {};
  if (i == tiePoint_) {
    p.AltX = p.X;
    p.AltY = p.Y;
    p.AltGPSLong = p.GPSLong;
    p.AltGPSLat = p.GPSLat;
    return {};
  }
  std::uint8_t errors = 0;
  PlanePoint alternate = PlaneFromGps(unit, Tie(), entered, errors);
  if (!IsFinite(alternate)) return FaultAt(FaultKind::kInvalidData, i);
  p.AltX = alternate.x;
  p.AltY = alternate.y;
  p.AltGPSLong = generated.longitude;
  p.AltGPSLat = generated.latitude;
  p.AltGPSDelta = std::hypot(static_cast<double>(p.X) - p.AltX, static_cast<double>(p.Y) - p.AltY);
  p.HasAlternate = true;
  return {};
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

// The line from a dataset's last point back to its start point; for the sub-division of
// a divided plot, the automatic last line on to the join point the division ends at.
// Worked out once every position is final.
void Resolver::SetClosingLines() {
  bool anyPending = std::any_of(positionWait_.begin(), positionWait_.end(),
                                [](std::uint8_t wait) { return wait != 0; });
  if (anyPending) return;
  std::optional<DivisionPath> division = FindDivisionPath(survey_);
  for (int d = 0; d < survey_.DatasetCount(); ++d) {
    Dataset& set = survey_.Datasets[d];
    DatasetRange range = RangeOf(d);
    int last = range.end - 1;
    int to = range.begin;
    if (division && division->subDataset == d) to = division->endJoin;
    bool closed = (set.DatasetType & (kDatasetMain | kDatasetSubDivision)) && last >= 0 &&
                  last >= range.begin && last != to;
    BearingLength line;
    if (closed) line = LineBearingLength(Position(last), Position(to));
    set.ClosingBearing = line.bearing;
    set.ClosingLen = line.length;
  }
}

void Resolver::SetRepassBits() {
  std::uint8_t waits = 0;
  for (std::uint8_t wait : positionWait_) waits |= wait;
  for (std::uint8_t wait : valueWait_) waits |= wait;
  if (waits & kWaitGps) state_.GpsState |= kGpsRepassNeeded;
  if (waits & (kWaitLater | kNotReached)) state_.ProcessState |= kTargetRepassNeeded;
}

// ---- The entry check ----

Fault Resolver::CheckPoint(int index) {
  checkingEntry_ = true;
  TakeValuesAsFinal();
  if (CheckDatasets()) return {};
  BuildNumberIndex();
  Fault gpsFault = SetUpGps();
  bool carriesGps = (At(index).PtFlags & kPtGps) != 0;
  if (gpsFault.kind == FaultKind::kNoGpsLink && carriesGps) {
    return Fault{.kind = FaultKind::kNoGpsLink, .point = index, .code = kGpsWithoutLink};
  }
  int d = DatasetHolding(index);
  if (d < 0) return {};
  DatasetRange range = RangeOf(d);
  Located located;
  Fault fault;
  if (IsIntermediate(index)) {
    int target = ShapePointAfter(range, index);
    fault = LocateIntermediate(range, index, LineStartBefore(range, index),
                               target < 0 ? range.end : target, located);
    if (fault) return EntryFault(index, fault);
    if (located.wait) return {};
  } else {
    bool needsTie = (gpsOnly_ && CarriesGps(index)) || (At(index).PtFlags & kPtInputMask) == kPtGps;
    if (needsTie && (gpsFault || tiePoint_ < 0)) return {};
    if (LocateShapePoint(range, index, located) || located.wait) return {};
  }
  PlanePoint here = located.pos;
  if (index + 1 < range.end && SamePosition(here, Position(index + 1))) {
    return Fault{
        .kind = FaultKind::kIdenticalPoints, .point = index, .code = kIdenticalToFollowing};
  }
  for (int k = range.begin; k < index; ++k) {
    if (SamePosition(here, Position(k))) {
      return Fault{
          .kind = FaultKind::kIdenticalPoints, .point = index, .code = kIdenticalToEarlier};
    }
  }
  return {};
}

// Every way an intermediate point can fail becomes one of the entry check's codes, named
// by the value that was being placed.
Fault Resolver::EntryFault(int index, const Fault& fault) const {
  if (fault.kind == FaultKind::kBadInterim) return fault;
  return InterimFault(index, kInterimNoInput, PlacementOf(index).valueName);
}

}  // namespace plotmeter::resolution
