// Reading bearings and lengths from the text a user types or a data file holds.
#pragma once

#include <string_view>

#include "model/Survey.h"

namespace plotmeter {

// The angle in decimal degrees, in [0, 360). Degrees, minutes and seconds may be
// marked by symbols (`DegreeChar`, codes 248 and 176; apostrophe; double quote), by
// words ("degrees"/"deg"/"d", "minutes"/"min"/"m", "seconds"/"sec"/"s") or by
// `SubValueSeparator`. When `pointIndex` names a compass point ("C") and
// `MagneticDeclination` is not zero, the declination is subtracted.
// Sets `kValueOver60` in `survey.ValueMarks` for minutes or seconds of 60 or more (the
// value is still used) and `kValueNotNumber` for text that is not a number (result 0).
double ParseAngleText(Survey& survey, std::string_view text, int pointIndex = -1);

// The length in the survey's main unit. For Feet, Miles and Chains a sub-unit value may
// follow `SubValueSeparator` (for Feet also the apostrophe and double quote).
// Sets `kValueNotNumber` for text that is not a number (result 0).
float ParseLengthText(Survey& survey, std::string_view text);

}  // namespace plotmeter
