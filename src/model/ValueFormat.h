// Turning computed values back into text. Outside a write (`WriterOptions` bit 1 clear)
// every value is a plain decimal number; during a write bearings and GPS angles take
// degree/minute/second forms and lengths in Feet, Miles or Chains take sub-units.
#pragma once

#include <cstdint>
#include <string>

#include "model/Survey.h"

namespace plotmeter {

// Style bit 1 of `FormatBearing`: join the parts with no text instead of a blank.
inline constexpr std::uint8_t kBearingJoinTight = 1;
// Style bits of `FormatGpsAngle`.
inline constexpr std::uint8_t kGpsLatitude = 1;
inline constexpr std::uint8_t kGpsJoinTight = 128;

// The few settings of a survey that its values are written with.
struct ValueSettings {
  std::uint8_t writerOptions = kWriterOptionsDefault;
  int unit = kUnitNotSpecified;
  char degreeMark = kDegreeSign;
  char subValueSeparator = '\\';
};
ValueSettings ValueSettingsOf(const Survey& survey);

// `bearing` (degrees) is brought into [0, 360) in place first.
std::string FormatBearing(const ValueSettings& values, std::uint8_t style, float& bearing);
// A latitude (style bit 1) or longitude (east, [0, 360)) with its hemisphere letter.
std::string FormatGpsAngle(const ValueSettings& values, std::uint8_t style, double value);
// A length or co-ordinate in the survey's unit.
std::string FormatLength(const ValueSettings& values, float value);

}  // namespace plotmeter
