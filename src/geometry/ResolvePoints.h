// Point resolution: every point of the survey gets its plane position, the bearing and
// length of the line that ends at it, and its GPS values, whatever way it was entered.
// docs/geometry.md describes the placement of intermediate points, the GPS tie and the
// repeat passes.
#pragma once

#include <cstdint>
#include <string>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"
#include "model/UserDialogs.h"

namespace plotmeter {

inline constexpr char kResolveFailedTitle[] = "Failed Area Calculation";
inline constexpr char kInvalidDataTitle[] = "Invalid Data encounted in processing";
inline constexpr char kInterimEntryTitle[] = "Invalid Interim Point Entry";

// Resolves every point, dataset by dataset, in point order. `passMode` is `kFirstPass`
// (0), `kRepeatPass` (1) or `kDependentPass` (128); only a first pass starts repeat
// passes, at most three, for values that waited on a later point or on the GPS link
// point. Sets `PassComplete` after a pass whose mode has bit 1 clear, the repeat-pass
// bits, `ErrorState` 0x40 when intermediate points were resequenced, `GpsArea` in
// GPS-only processing, the closing line of each main and sub-division dataset, and
// resets the selection. On a fault: beeps, shows one critical box ("Failed Area
// Calculation", or the error-exit text under "Invalid Data encounted in processing"),
// masks `ErrorState` with `kErrorExitMask` and returns false. Positions already worked
// out are kept; the caller decides what becomes of the data.
bool ResolvePoints(Survey& survey, ProcessingState& state, std::uint8_t passMode,
                   UserDialogs& dialogs);

// Checks the point at `pointIndex` (an index in `Points`) as the entry dialog hands it
// over, against the positions the other points hold from the last processing: an
// intermediate point must fall on its line between its neighbours, a GPS point needs a
// link point, and no point may stand on the point after it or on an earlier point of
// its dataset. On a fault: beeps, shows the "Invalid Interim Point Entry" box and returns
// false. Changes no point. An index outside `Points` is refused without a box.
bool CheckEnteredPoint(Survey& survey, ProcessingState& state, int pointIndex,
                       UserDialogs& dialogs);

// The error-exit text for `errorState` (before the point line is added).
std::string InvalidDataText(std::uint8_t errorState, int unitOfMeasure);

}  // namespace plotmeter
