#include "datafile/PointTableChecks.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace plotmeter {

namespace {

constexpr int kNone = -1;

bool IsIntermediate(const Point& point) { return (point.PtFlags & kPtIntermediate) != 0; }
bool IsBearing(const Point& point) { return (point.PtFlags & kPtBearing) != 0; }
bool IsReferenceOnly(const Point& point) { return (point.PtFlags & kPtInputMask) == kPtReference; }

// Point numbers in order, for finding a point by its number in log time.
class NumberIndex {
 public:
  explicit NumberIndex(const Survey& survey) {
    entries_.reserve(survey.Points.size());
    for (int i = 0; i < survey.PointCount(); ++i) {
      entries_.emplace_back(survey.Points[i].PtNumber, i);
    }
    std::sort(entries_.begin(), entries_.end());
  }

  // The position of the second use of a number used twice, the earliest such in the
  // file; kNone when every number is used once.
  int FirstRepeatedUse() const {
    int first = std::numeric_limits<int>::max();
    for (std::size_t k = 1; k < entries_.size(); ++k) {
      if (entries_[k].first == entries_[k - 1].first) first = std::min(first, entries_[k].second);
    }
    return first == std::numeric_limits<int>::max() ? kNone : first;
  }

  // Only meaningful once numbers are known to be unique.
  int Find(int number) const {
    auto at = std::lower_bound(entries_.begin(), entries_.end(), std::make_pair(number, 0));
    return at != entries_.end() && at->first == number ? at->second : kNone;
  }

 private:
  std::vector<std::pair<int, int>> entries_;
};

// Per point, the dataset it belongs to and its neighbouring shape points (points that
// are not intermediate, and the first point of each dataset): the ends of the line an
// intermediate point lies on, and the origin a bearing is measured from.
struct PointPlaces {
  std::vector<int> dataset, previousShape, nextShape;

  explicit PointPlaces(const Survey& survey)
      : dataset(survey.Points.size(), kNone),
        previousShape(survey.Points.size(), kNone),
        nextShape(survey.Points.size(), kNone) {
    for (int d = 0; d < survey.DatasetCount(); ++d) {
      int begin = survey.Datasets[d].DatasetStart;
      int end = survey.DatasetEnd(d);
      int lastShape = kNone;
      for (int i = begin; i < end; ++i) {
        dataset[i] = d;
        previousShape[i] = lastShape;
        if (i == begin || !IsIntermediate(survey.Points[i])) lastShape = i;
      }
      int following = kNone;
      for (int i = end - 1; i >= begin; --i) {
        nextShape[i] = following;
        if (i == begin || !IsIntermediate(survey.Points[i])) following = i;
      }
    }
  }
};

using Dependencies = std::array<int, 3>;

// The points that must be resolved before point `i`: its reference when it is a shared
// point or its bearing is measured from it, and for the rest the shape points of its line.
Dependencies PointDependencies(const Survey& survey, const NumberIndex& numbers,
                               const PointPlaces& places, int i) {
  const Point& point = survey.Points[i];
  Dependencies needs{kNone, kNone, kNone};
  bool measuredFromReference = point.PtRef != 0 && (IsReferenceOnly(point) || IsBearing(point));
  if (measuredFromReference) needs[0] = numbers.Find(point.PtRef);
  if (IsIntermediate(point)) {
    needs[1] = places.previousShape[i];
    needs[2] = point.PtTarget != 0 ? numbers.Find(point.PtTarget) : places.nextShape[i];
  } else if (IsBearing(point) && !measuredFromReference) {
    needs[1] = places.previousShape[i];
  }
  return needs;
}

// Depth-first walk without recursion, so that a long chain cannot exhaust the stack.
// Returns the earliest point of the first circle found, or kNone.
int FindCircularReference(const std::vector<Dependencies>& needs) {
  enum : std::uint8_t { kUnvisited, kOnPath, kDone };
  std::vector<std::uint8_t> state(needs.size(), kUnvisited);
  std::vector<std::pair<int, int>> path;  // point, next dependency to follow
  for (int start = 0; start < static_cast<int>(needs.size()); ++start) {
    if (state[start] != kUnvisited) continue;
    path.emplace_back(start, 0);
    state[start] = kOnPath;
    while (!path.empty()) {
      auto& [point, next] = path.back();
      if (next == static_cast<int>(Dependencies().size())) {
        state[point] = kDone;
        path.pop_back();
        continue;
      }
      int needed = needs[point][next++];
      if (needed == kNone || state[needed] == kDone) continue;
      if (state[needed] == kUnvisited) {
        state[needed] = kOnPath;
        path.emplace_back(needed, 0);
        continue;
      }
      // The circle runs from `needed` along the path back to it.
      int earliest = needed;
      for (auto it = path.rbegin(); it != path.rend() && it->first != needed; ++it) {
        earliest = std::min(earliest, it->first);
      }
      return earliest;
    }
  }
  return kNone;
}

ReadResult CheckReferencesExist(const Survey& survey, const NumberIndex& numbers,
                                const PointPlaces& places) {
  for (int i = 0; i < survey.PointCount(); ++i) {
    const Point& point = survey.Points[i];
    int reference = point.PtRef != 0 ? numbers.Find(point.PtRef) : kNone;
    if (point.PtRef != 0 && reference == kNone) return {kReadMissingReference, i, point.PtRef};
    if (point.PtTarget != 0 && numbers.Find(point.PtTarget) == kNone) return {kReadBadTarget, i};
    // A shared point stands for a point of another dataset.
    if (IsReferenceOnly(point) && reference != kNone &&
        places.dataset[reference] == places.dataset[i]) {
      return {kReadBadReference, i};
    }
  }
  return {};
}

// A line (or a main dataset that is not a perimeter) has no closing line: an intermediate
// point after its last shape point has nothing to lie before.
ReadResult CheckLineEnds(const Survey& survey) {
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    std::uint8_t type = survey.Datasets[d].DatasetType;
    bool openLine = (type & kDatasetLine) || ((type & kDatasetMain) && !(type & kDatasetPerimeter));
    if (!openLine) continue;
    int begin = survey.Datasets[d].DatasetStart;
    int end = survey.DatasetEnd(d);
    int lastShape = end - 1;
    while (lastShape > begin && IsIntermediate(survey.Points[lastShape])) --lastShape;
    if (lastShape + 1 < end) return {kReadIntermediatePastEnd, lastShape + 1};
  }
  return {};
}

}  // namespace

ReadResult CheckPointTable(const Survey& survey) {
  NumberIndex numbers(survey);
  if (int repeated = numbers.FirstRepeatedUse(); repeated != kNone)
    return {kReadDuplicateNumber, repeated};

  PointPlaces places(survey);
  if (ReadResult result = CheckReferencesExist(survey, numbers, places); result.fault != 0) {
    return result;
  }
  if (ReadResult result = CheckLineEnds(survey); result.fault != 0) return result;

  std::vector<Dependencies> needs(survey.Points.size());
  for (int i = 0; i < survey.PointCount(); ++i) {
    needs[i] = PointDependencies(survey, numbers, places, i);
  }
  if (int circular = FindCircularReference(needs); circular != kNone)
    return {kReadCircularReference, circular};
  return {};
}

}  // namespace plotmeter
