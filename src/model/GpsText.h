// Reading the entered GPS longitude and latitude fields.
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
