// The point resolver, the working part of point resolution behind the two entries of
// ResolvePoints.h (the whole-survey passes of `ResolvePoints` and the one-point check of
// `CheckEnteredPoint`); docs/geometry.md gives the rules. PointResolver.cpp holds the
// passes, shape points and derived values; PointResolverIntermediates.cpp the placing and
// resequencing of intermediate points.
//
// A pass walks the datasets in order and each dataset's points in order. A point whose
// position needs a point not worked out yet in this pass (an intermediate point's target,
// a reference to a later point, the link point of the GPS tie) takes that point's value
// from the pass before when it was final there; otherwise it waits, and the reason is
// kept so that the driver knows which repeat pass to run.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "geometry/GpsLink.h"
#include "geometry/PlaneGeometry.h"
#include "geometry/ProcessingState.h"
#include "model/Survey.h"

namespace plotmeter::resolution {

// Why a value is not final yet: bits of a wait byte, 0 when final.
inline constexpr std::uint8_t kWaitGps = 1;     // on the GPS tie, its link point not final
inline constexpr std::uint8_t kWaitLater = 2;   // on a point later in the pass
inline constexpr std::uint8_t kNotReached = 4;  // not worked out in any pass yet

enum class FaultKind {
  kNone,
  kBadReference,
  kNoGpsLink,
  kNoGpsReference,
  kIdenticalPoints,
  kBadInterim,
  kUnsettled,    // values still waiting after the last repeat pass
  kInvalidData,  // the error exit: `ErrorState` tells which text
};

// The entry check's fault codes.
inline constexpr int kInterimNoInput = 1;
inline constexpr int kInterimOutOfRange = 2;
inline constexpr int kInterimTooLong = 3;
inline constexpr int kGpsWithoutLink = 4;
inline constexpr int kIdenticalToEarlier = 5;
inline constexpr int kIdenticalToFollowing = 6;

struct Fault {
  FaultKind kind = FaultKind::kNone;
  int point = -1;  // index in `Points` of the point in hand, -1 for none
  // For an intermediate point: the entry check's code and the name of the value.
  int code = 0;
  std::string_view valueName;

  explicit operator bool() const { return kind != FaultKind::kNone; }
};

// The points of one dataset, [begin, end), and its type byte.
struct DatasetRange {
  int begin = 0;
  int end = 0;
  std::uint8_t type = 0;
};

// How an intermediate point is put on its line.
enum class Placement { kCoordinate, kGps, kBearingFromPoint, kLength, kNone };

struct PlacementChoice {
  Placement placement = Placement::kNone;
  std::string_view valueName;
};

// What an intermediate point's input gives for its place on the line: a co-ordinate or
// two (GPS values turned into the plane), or a bearing from a reference point.
struct LineValues {
  std::optional<float> x;
  std::optional<float> y;
  double bearing = 0;
  int reference = -1;  // the bearing's reference point, -1 when not placed by a bearing
  std::string_view name;
};

// Small helpers shared by the two sources of the resolver.
inline bool IsBlank(const std::string& text) {
  for (char c : text) {
    if (c != ' ' && c != '\t') return false;
  }
  return true;
}

inline bool SamePosition(PlanePoint a, PlanePoint b) { return a.x == b.x && a.y == b.y; }

inline Fault FaultAt(FaultKind kind, int point) { return Fault{.kind = kind, .point = point}; }

inline Fault InterimFault(int point, int code, std::string_view valueName) {
  return Fault{
      .kind = FaultKind::kBadInterim, .point = point, .code = code, .valueName = valueName};
}

class Resolver {
 public:
  Resolver(Survey& survey, ProcessingState& state);

  // Before the first pass: no point worked out, the marks and error bits of the last
  // resolution cleared.
  void StartFirstPass();
  // Before a repeat pass started on its own, or the entry check: the values in `Points`
  // stand as final.
  void TakeValuesAsFinal();

  // One pass over the whole survey; stores what is final and sets the repeat-pass bits.
  Fault RunPass(std::uint8_t passMode);
  bool AnyPending() const;

  // The entry check of one point, against the values that `Points` holds; `code` of the
  // fault is one of the entry check's codes. Stores nothing.
  Fault CheckPoint(int index);

 private:
  struct Located {
    PlanePoint pos;
    std::uint8_t wait = 0;
    bool ownBearing = false;  // the bearing and length come with the point's input
    BearingLength line;
  };

  const Point& At(int i) const { return survey_.Points[i]; }
  PlanePoint Position(int i) const { return {At(i).X, At(i).Y}; }
  bool IsIntermediate(int i) const { return (At(i).PtFlags & kPtIntermediate) != 0; }
  bool CarriesGps(int i) const;
  PlacementChoice PlacementOf(int i) const;
  bool IsTraversePoint(int i) const;

  Fault CheckDatasets() const;
  DatasetRange RangeOf(int d) const;
  int DatasetHolding(int index) const;
  void BuildNumberIndex();
  int Lookup(int number) const;
  Fault SetUpGps();

  std::uint8_t PositionWait(int i) const;
  std::uint8_t TieWait() const;
  PlanePoint TiePlane() const;
  GpsTie Tie() const { return {tieGps_, TiePlane()}; }

  bool ReadLength(const std::string& text, float& value);
  bool ReadAngle(const std::string& text, int pointIndex, double& value);
  bool ReadGpsPosition(int i, GpsPosition& position);
  bool ReadOptionalLength(const std::string& text, std::optional<float>& value);
  bool ReadOptionalGps(const std::string& text, bool latitude, std::optional<double>& value);
  bool MarksAllowValue(const std::string& text);

  int BearingOrigin(const DatasetRange& range, int i) const;
  int LineStartBefore(const DatasetRange& range, int i) const;
  int ShapePointAfter(const DatasetRange& range, int i) const;
  bool HangsOnRun(const DatasetRange& range, int first, int end) const;
  bool MeasuredAlongRun(const DatasetRange& range, int target, int runEnd) const;

  Fault LocateShapePoint(const DatasetRange& range, int i, Located& out);
  Fault LocateIntermediate(const DatasetRange& range, int k, int lineStart, int runEnd,
                           Located& out);
  Fault ReadLineValues(int k, PlacementChoice choice, LineValues& values, std::uint8_t& wait);
  Fault PlaceOnLine(int k, LineValues values, PlanePoint start, PlanePoint target, Located& out);
  Fault PlaceByBearing(int k, const LineValues& values, PlanePoint start, PlanePoint target,
                       Located& out);
  Fault PlaceByLength(const DatasetRange& range, int k, int lineStart, int target, int runEnd,
                      Located& out);

  Fault ResolveShapePoint(const DatasetRange& range, int i);
  Fault ResolveRun(const DatasetRange& range, int first, int runEnd);
  Fault Store(int i, const Located& located);
  Fault CheckNotIdenticalToPreceding(const DatasetRange& range, int i);
  Fault DeriveValues(const DatasetRange& range, int i);
  Fault DeriveGpsValues(int i, std::uint8_t& wait);
  Fault ResequenceRun(const DatasetRange& range, int first, int runEnd);
  void SetClosingLines();
  void SetRepassBits();

  Fault EntryFault(int index, const Fault& fault) const;

  Survey& survey_;
  ProcessingState& state_;
  std::vector<std::uint8_t> positionWait_;
  std::vector<std::uint8_t> valueWait_;
  std::unordered_map<int, int> indexOfNumber_;
  bool checkingEntry_ = false;

  bool gpsInUse_ = false;
  bool gpsOnly_ = false;
  int tiePoint_ = -1;
  bool tieReady_ = false;
  GpsPosition tieGps_;
};

}  // namespace plotmeter::resolution
