// Reading bearings and lengths from the text a user types or a data file holds.
#pragma once

#include <optional>
#include <string_view>

#include "model/Survey.h"

namespace plotmeter {

// The angle in decimal degrees, in [0, 360). Degrees, minutes and seconds may be
// marked by symbols (`DegreeChar`, codes 248 and 176; apostrophe; double quote), by
// words ("degrees"/"deg"/"d", "minutes"/"min"/"m", "seconds"/"sec"/"s", in any case) or
// by `SubValueSeparator`. When `pointIndex` names a compass point ("C") and
// `MagneticDeclination` is not zero, the declination is subtracted.
// Sets `kValueOver60` in `survey.ValueMarks` for minutes or seconds of 60 or more (the
// value is still used) and `kValueNotNumber` for text that is not a number (result 0).
// The marks are only ever added: callers clear them before they parse.
//
// How the text is read:
// - The degrees marker is the first of `DegreeChar`, code 248, code 176 found anywhere,
//   else the first of the words "degrees", "deg", "d". Minutes and seconds markers are
//   looked for after it. Without a degrees marker, the first `SubValueSeparator` ends the
//   degrees and the second the minutes; a blank separator counts a run of blanks as one.
// - The part after the last marker, when unmarked, is the next one: minutes after the
//   degrees marker, seconds after the minutes marker. Text after a seconds marker is
//   not allowed. An empty minutes or seconds part is 0; an empty degrees part is not.
// - Each part must be a whole decimal number (exponent allowed); only the degrees may
//   carry a sign, and it applies to the whole angle (-27°30' is -27.5, so 332.5).
// - The angle is brought into [0, 360) by the remainder of a division by 360, which is
//   what repeated subtraction gives and stays quick for any value.
//
// LEGAL (the entries on each line are equal):
//   27.7138888, 27d42m50s, 27 degrees 42 minutes 50 seconds, 27°42'50", 27°42'50,
//     27 DEG 42 MIN 50 SEC, 27ø42'50" (code 248), 27:42:50 (`SubValueSeparator` ':')
//   27.7, 27 42 (`SubValueSeparator` blank), 27  42, 27°42', 27°42, 27d42m, 27d 42
//   27°0'50", 27d50s, 27°'50"
//   11.25, 10d75m (sets `kValueOver60`), 10°74'60" (sets `kValueOver60`)
//   330, -30, 690; -27°30' is 332.5; 10: and 10:: (`SubValueSeparator` ':') are 10
//   5, 725, 1e300 (the remainder of 1e300 by 360)
// ILLEGAL (`kValueNotNumber`, result 0):
//   empty text, abc, 27x, 27°42'50"x, °30', d30, 27°-30', 27°+30', 27d42m50s10,
//   27:42:50:10, 27 42 (`SubValueSeparator` not blank), 30', 42", inf, nan, 1e, .,
//   1e400, 0x1A, 27°42'50"15'
double ParseAngleText(Survey& survey, std::string_view text, int pointIndex = -1);

// The length in the survey's main unit. For Feet, Miles and Chains a sub-unit value may
// follow `SubValueSeparator` (for Feet also the apostrophe and double quote).
// Sets `kValueNotNumber` for text that is not a number (result 0).
//
// - The sign of the main value applies to the sub-unit value too, so that what
//   `FormatLength` writes for a negative co-ordinate reads back: -5\3 feet is -5.25.
// - A sub-unit value of a whole unit or more (12 inches or more) is accepted and
//   simply added; the entry dialog is where typed values are checked for it.
// - An empty sub-unit value is 0; an empty main value is not a number.
// - A length beyond the range of a float is not a number.
//
// LEGAL for Feet with `SubValueSeparator` '\' (the entries on each line are equal):
//   5.5, 5\6, 5'6", 5'6, 5' 6", 5 \ 6, 5\6"
//   5, 5\, 5', 5\0
//   6.5, 5\18 (12 inches or more)
//   -5.25, -5\3, -0.25, -0\3
//   (Meters) 12.5, +12.5, 1.25e1
// ILLEGAL (`kValueNotNumber`, result 0):
//   empty text, abc, 5x, \6, '6", 6" (inches alone), 5\-6, 5\6\7, 5'6'', 1e39, inf, nan,
//   (Meters) 5\6, 5'6"
float ParseLengthText(Survey& survey, std::string_view text);

// The number in `text` with surrounding blanks removed: an optional sign, digits with
// at most one decimal point, and an optional exponent. Nothing else is allowed: no
// trailing characters, no "inf" or "nan", no value beyond the range of a double.
std::optional<double> ReadNumber(std::string_view text);

// An angle read from text by the rules of `ParseAngleText`, without the survey: no
// declination, no normalising, no marks. `degrees` is signed.
struct AngleReading {
  double degrees = 0;
  bool notNumber = false;
  bool over60 = false;
};
// `blanksSeparate` lets blanks or tabs divide degrees, minutes and seconds when the
// text holds neither a degrees marker nor `subValueSeparator`.
AngleReading ReadAngle(std::string_view text, char degreeChar, char subValueSeparator,
                       bool blanksSeparate = false);

}  // namespace plotmeter
