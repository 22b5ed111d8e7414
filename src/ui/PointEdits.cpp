#include "ui/PointEdits.h"

#include <algorithm>

#include "model/ValueFormat.h"
#include "model/ValueText.h"

namespace plotmeter {

namespace {

constexpr std::uint8_t kLengthIntermediateMask = kPtXY | kPtBearing | kPtIntermediate;
constexpr std::uint8_t kLengthIntermediate = kPtBearing | kPtIntermediate;

bool IsBlank(const std::string& text) { return text.find_first_not_of(" \t") == std::string::npos; }

// The length of a bearing-and-length point, or nothing when it has none to read.
bool ReadLength(Survey& survey, const Point& point, float& length) {
  if ((point.PtFlags & (kPtBearing | kPtXY)) != kPtBearing || IsBlank(point.InYL)) return false;
  survey.ValueMarks = 0;
  length = ParseLengthText(survey, point.InYL);
  return (survey.ValueMarks & kValueNotNumber) == 0;
}

// The following point is measured from the deleted one: it takes over its length.
void CarryLengthForward(Survey& survey, int pointIndex) {
  std::uint8_t marks = survey.ValueMarks;
  float own = 0;
  float next = 0;
  Point& following = survey.Points[pointIndex + 1];
  if (ReadLength(survey, survey.Points[pointIndex], own) && ReadLength(survey, following, next)) {
    following.InYL = FormatLength(ValueSettingsOf(survey), own + next);
  }
  survey.ValueMarks = marks;
}

}  // namespace

void TakeUndoSnapshot(const Survey& survey, UndoSnapshot& snapshot) {
  snapshot.Held = true;
  snapshot.Points = survey.Points;
  snapshot.Datasets = survey.Datasets;
  snapshot.UnitOfMeasure = survey.UnitOfMeasure;
  snapshot.MagneticDeclination = survey.MagneticDeclination;
  snapshot.FileTag = survey.FileTag;
  snapshot.FileFlags = survey.FileFlags;
}

bool RestoreUndoSnapshot(Survey& survey, const UndoSnapshot& snapshot) {
  if (!snapshot.Held) return false;
  survey.Points = snapshot.Points;
  survey.Datasets = snapshot.Datasets;
  survey.UnitOfMeasure = snapshot.UnitOfMeasure;
  survey.MagneticDeclination = snapshot.MagneticDeclination;
  survey.FileTag = snapshot.FileTag;
  survey.FileFlags = snapshot.FileFlags;
  RecountJoinPoints(survey);
  return true;
}

void ClearUndoSnapshot(UndoSnapshot& snapshot) { snapshot = UndoSnapshot{}; }

int DatasetOfPoint(const Survey& survey, int pointIndex) {
  if (pointIndex < 0 || pointIndex >= survey.PointCount()) return -1;
  for (int d = survey.DatasetCount() - 1; d >= 0; --d) {
    if (survey.Datasets[d].DatasetStart <= pointIndex) return d;
  }
  return -1;
}

int DatasetPointCount(const Survey& survey, int dataset) {
  if (dataset < 0 || dataset >= survey.DatasetCount()) return 0;
  return survey.DatasetEnd(dataset) - survey.Datasets[dataset].DatasetStart;
}

bool DeletePoint(Survey& survey, int pointIndex) {
  int d = DatasetOfPoint(survey, pointIndex);
  if (d < 0 || DatasetPointCount(survey, d) < 2) return false;
  if (pointIndex <= survey.Datasets[d].DatasetStart) return false;
  const Point& point = survey.Points[pointIndex];
  if ((point.PtFlags & kLengthIntermediateMask) == kLengthIntermediate &&
      pointIndex + 1 < survey.DatasetEnd(d)) {
    CarryLengthForward(survey, pointIndex);
  }
  RemovePoint(survey, pointIndex);
  return true;
}

void RemovePoint(Survey& survey, int pointIndex) {
  int d = DatasetOfPoint(survey, pointIndex);
  if (d < 0) return;
  survey.Points.erase(survey.Points.begin() + pointIndex);
  for (int later = d + 1; later < survey.DatasetCount(); ++later) {
    --survey.Datasets[later].DatasetStart;
  }
  RecountJoinPoints(survey);
}

int InsertPoint(Survey& survey, int dataset, int position, Point point) {
  int index = survey.Datasets[dataset].DatasetStart + position;
  survey.Points.insert(survey.Points.begin() + index, std::move(point));
  for (int later = dataset + 1; later < survey.DatasetCount(); ++later) {
    ++survey.Datasets[later].DatasetStart;
  }
  RecountJoinPoints(survey);
  return index;
}

int UnusedPointNumber(const Survey& survey) {
  int highest = 0;
  for (const Point& point : survey.Points) highest = std::max(highest, point.PtNumber);
  return highest + 1;
}

void RecountJoinPoints(Survey& survey) {
  survey.JoinPointCount = static_cast<int>(
      std::count_if(survey.Points.begin(), survey.Points.end(),
                    [](const Point& point) { return (point.PtFlags & kPtJoin) != 0; }));
}

}  // namespace plotmeter
