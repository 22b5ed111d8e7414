// The test that refuses a perimeter whose lines cross.
#pragma once

#include "model/Survey.h"

namespace plotmeter {

// Result codes of `CheckPerimeterCrossing`. Callers read them through `code & 6`.
inline constexpr int kCrossingNone = 0;
inline constexpr int kCrossingElsewhere = 1;
// The last entered line of the main perimeter crosses its first line: its last point
// overshoots the start point.
inline constexpr int kCrossingAtStart = 2;
// The last entered line of the sub-division crosses the main perimeter: its last point
// overshoots the join point.
inline constexpr int kCrossingAtJoin = 6;
inline constexpr int kCrossingKindMask = 6;

// Tolerance at the ends of a line, in the survey's unit: a meeting point this close to
// an end does not count, so that neighbouring lines sharing an end point never cross.
inline constexpr float kCrossingEndTolerance = 0.0001f;

// Tests every line of the closed main perimeter (closing line included) against every
// other, and, for a divided plot, every line of the division against the perimeter and
// against each other. Clears `kMarkErrorLine` on every point, then sets it on the point
// that ends each crossing line (the start point for a closing line). Returns
// `kCrossingAtStart` or `kCrossingAtJoin` when every crossing found involves that last
// line, `kCrossingElsewhere` for any other crossing, `kCrossingNone` when none cross or
// the main dataset is not a perimeter of three or more points.
//
// Quadratic in the number of lines: run it only on a survey within the point limit.
int CheckPerimeterCrossing(Survey& survey);

}  // namespace plotmeter
