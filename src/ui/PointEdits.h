// Point edits on the survey: the one-level undo snapshot, deleting a point and putting a
// new point in place. `Points` holds every point of every dataset in order; a dataset's
// points run from its `DatasetStart` to the next dataset's start, so every edit that adds
// or removes a record moves the starts of the datasets after it.
#pragma once

#include <string>
#include <vector>

#include "model/Survey.h"

namespace plotmeter {

// One whole copy of the points and the dataset arrays, with the file-level settings the
// point entry dialog changes (unit, declination, file tag, file flags), so that UnDo
// takes back a dialog's settings with its points. One level only: a new snapshot
// overwrites the old one.
struct UndoSnapshot {
  bool Held = false;
  std::vector<Point> Points;
  std::vector<Dataset> Datasets;
  int UnitOfMeasure = kUnitNotSpecified;
  float MagneticDeclination = 0;
  std::string FileTag;
  std::uint8_t FileFlags = 0;
};

void TakeUndoSnapshot(const Survey& survey, UndoSnapshot& snapshot);
// Copies the snapshot back over the survey; false (and nothing changed) when none is held.
bool RestoreUndoSnapshot(Survey& survey, const UndoSnapshot& snapshot);
// A load or "Create New" ends the life of the snapshot.
void ClearUndoSnapshot(UndoSnapshot& snapshot);

// The dataset (0-based) whose points include `pointIndex`, or -1.
int DatasetOfPoint(const Survey& survey, int pointIndex);
int DatasetPointCount(const Survey& survey, int dataset);

// Deletes the point at `pointIndex`: later points move down one place and the datasets
// after it start one place earlier. Refused (false, nothing changed) for a dataset's start
// point, a dataset of fewer than two points, or an index outside `Points`. An
// intermediate point given by a length along its line (`PtFlags` & 0x0B == 0x0A) first
// adds its length to that of the following point of its dataset, when that point has a
// length of its own, so that the following point keeps its place on the line. Points
// that referred to the deleted point are left as they are; processing reports them.
bool DeletePoint(Survey& survey, int pointIndex);

// Takes the record at `pointIndex` out, whatever it is: later points move down one place
// and the datasets after it start one place earlier.
void RemovePoint(Survey& survey, int pointIndex);

// Puts `point` into dataset `dataset` at place `position` (0 for its start): the points
// from there on move up one place and the datasets after it start one place later.
// Returns the point's index in `Points`.
int InsertPoint(Survey& survey, int dataset, int position, Point point);

// A point number used by no point of the survey (one above the highest).
int UnusedPointNumber(const Survey& survey);

// `JoinPointCount` taken afresh from the points' join flags.
void RecountJoinPoints(Survey& survey);

}  // namespace plotmeter
