// The line that divides a plot (or extends it) and the two part outlines it makes.
//
// A division runs from one join point ("J") of the main perimeter through the
// sub-division's own points to the other join point; the last line to that join point
// is made automatically, like the closing line of the main perimeter. With two join
// points and no sub-division dataset the division is the straight line between them.
#pragma once

#include <optional>
#include <vector>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"

namespace plotmeter {

// The indexes in `Points` of dataset `d`'s points, [begin, end), kept inside `Points`
// (empty for a dataset whose start lies outside it), so that no walk can overrun.
struct PointRange {
  int begin = 0;
  int end = 0;
};
PointRange DatasetPoints(const Survey& survey, int d);

// Index in `Datasets` of the main dataset when it is a closed perimeter, else -1.
int FindMainPerimeter(const Survey& survey);

// The indexes in `Points` of the shape-defining points of dataset `d`, in order: its
// first point and every later point that is not intermediate. Intermediate points lie
// on the lines between these and play no part in drawing or testing the lines.
std::vector<int> ShapePoints(const Survey& survey, int d);

struct DivisionPath {
  int mainDataset = -1;
  int subDataset = -1;  // -1: no sub-division dataset, a straight line between the joins
  int startJoin = -1;   // index in `Points` of the join point the path leaves from
  int endJoin = -1;     // and of the join point its automatic last line goes to
  // The sub-division's own points along the path, in order, intermediate ones included;
  // a dummy or reference start point and a last point lying on `endJoin` are left out,
  // as they stand for the join points themselves.
  std::vector<int> vertices;
  // The point whose error-line mark stands for the automatic last line: the
  // sub-division's start point, or `endJoin` when there is no sub-division dataset.
  int closingOwner = -1;
};

// The division of the main perimeter, when it is a closed perimeter with exactly two
// join points among its points; nullopt otherwise.
std::optional<DivisionPath> FindDivisionPath(const Survey& survey);

// The length of the division's automatic last line: from the sub-division's last point
// (the start join point when it has none of its own) to the end join point.
float DivisionClosingLength(const Survey& survey, const DivisionPath& path);

// Fills `state.PartOutlines` with the two part outlines of a divided plot and sets
// `kAreaSegmentCount`; clears both (and `kSegmentsSwapped`) when the plot is not divided.
// For a division inside the plot, part 1 is the part holding the main start point; for
// an extension outside it, part 1 is the whole enlarged plot and part 2 the extension.
void BuildPartOutlines(const Survey& survey, ProcessingState& state);

}  // namespace plotmeter
