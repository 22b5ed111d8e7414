// The area of the main perimeter and of the parts of a divided plot, in the area unit
// chosen in the main window.
#pragma once

#include <span>
#include <string_view>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"

namespace plotmeter {

// Area units, in the order of the main window's list.
inline constexpr int kAreaSqMeters = 0;
inline constexpr int kAreaHectares = 1;
inline constexpr int kAreaAcres = 2;
inline constexpr int kAreaSqFeet = 3;
inline constexpr int kAreaSqKilometers = 4;
inline constexpr int kAreaSqMiles = 5;
inline constexpr int kAreaSquares = 6;
inline constexpr int kAreaSqChains = 7;
inline constexpr int kAreaUnitCount = 8;

// "Sq. Meters", "Hectares", ... "Sq. Chains"; "" outside 0 to 7.
std::string_view AreaUnitName(int index);

// The area enclosed by the points `outline` (indexes in `Points`, in order), in square
// data units: a fan of triangles from the first point, summed in double precision from
// the single-precision co-ordinates, taken positive. Indexes outside `Points` are
// skipped.
double OutlineArea(const Survey& survey, std::span<const int> outline);

// `area` in square data units of `unitOfMeasure`, converted into `areaUnit` by the
// program's conversion table. An unspecified unit, or an unknown one, is never converted.
double ConvertArea(double area, int unitOfMeasure, int areaUnit);

// Sets `state.SegmentAreas` (whole plot, first part, second part, all three equal when
// `kAreaSegmentCount` is clear), `kSegmentsSwapped` and `kAreaComputed`. The parts come
// from `state.PartOutlines`; when the first part is larger than the whole (an
// extension), the two entries are exchanged.
void ComputeArea(const Survey& survey, ProcessingState& state, int areaUnit);

}  // namespace plotmeter
