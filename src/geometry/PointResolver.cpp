#include "geometry/PointResolver.h"

#include <algorithm>
#include <cmath>

#include "geometry/PartOutlines.h"
#include "model/GpsText.h"
#include "model/ValueText.h"

namespace plotmeter::resolution {

namespace {

constexpr std::uint8_t kWaitReasons = kWaitGps | kWaitLater;
constexpr std::uint8_t kErrorsOfResolution =
    kErrorInvalidData | kErrorOver60 | kErrorUnitsSeparator | kErrorResequenced;

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
      i = runEnd < range.end ? runEnd + 1 : runEnd;
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
