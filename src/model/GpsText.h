// Reading the entered GPS longitude and latitude fields.
//
// Three forms are read: the hemisphere letter first ("S33.5", "E151 12.5", "W 20.5"),
// the angle followed by the letter ("33.5 S", "33° 30.0' S", "33°30'15.5\"S", as
// `FormatGpsAngle` writes them), and a signed number (negative is South or West). The
// letter is N or S for a latitude, E or W for a longitude, in either case. The angle is
// read by the rules of `ParseAngleText` (`DegreeChar`, codes 248 and 176, the words,
// `SubValueSeparator`), and blanks also divide degrees, minutes and seconds. Nothing is
// folded into [0, 360) and no value mark is set.
//
// A last letter straight after a digit is the hemisphere ("33.5S") unless the angle uses
// word markers, where it is the seconds word ("12d15m36s"); put a blank before the
// letter, or the letter first, to give such an angle a hemisphere.
//
// LEGAL latitudes (the entries on each line are equal):
//   S33.5, s 33.5, 33.5 S, 33.5S, -33.5, S33 30, 33 30 S, 33° 30.0' S, 33°30.0'S
//   33° 30' 15.5" S, 33°30'15.5"S, 33d30m15.5s S
//   33° S is -33; N12.25, 12.25 n, 12.25, +12.25, 12d15m, " N 12 15 " are 12.25
//   12d15m36s is 12.26; 90 S is -90; N90; 0 and S0 are 0
// ILLEGAL latitudes (nullopt):
//   empty text, S, S33.5S, N33.5S (two letters), S-33.5, -33.5 S (letter and sign),
//   E33.5, 33.5 W (longitude letters), 90.0001, S91, 33 60 S, 33° 30' 60" S (60 or more),
//   33 S 30, abc, 33.5x, nan, 1e400, SS33
// LEGAL longitudes:
//   E151.2, 151.2 E, 151.2E, E151 12, e 151 12, 151° 12.0' E, 151° 12' E are 151.2
//   W 20.5, 20° 30' W are 339.5; 170 W, -170 are 190; W180, 180 E, -180 are 180
//   W0, 0.0 E are 0; 1.5e2 is 150
// ILLEGAL longitudes:
//   empty text, W, E151.2W, W-20, N151, 151 S, 190 (beyond 180 either way), 180.5 W, -181,
//   151 75 E, 151° 60' E, 151 12 30 45 E, inf, E1 2 3 4
#pragma once

#include <optional>
#include <string_view>

#include "model/Survey.h"

namespace plotmeter {

// Signed decimal degrees in [-90, 90], south negative; nullopt for text that is not a
// latitude.
std::optional<double> ParseGpsLatitude(const Survey& survey, std::string_view text);
// Decimal degrees east in [0, 360) (170 W is 190); nullopt for text that is not a
// longitude.
std::optional<double> ParseGpsLongitude(const Survey& survey, std::string_view text);

}  // namespace plotmeter
