// The point entry dialog's checks of typed values and its hint and list texts, apart
// from the dialog so that each can be read (and tested) on its own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Survey.h"
#include "model/UserDialogs.h"

namespace plotmeter {

// Status bits of a typed value.
inline constexpr std::uint8_t kEntryInvalid = 0x02;    // not a value of its kind
inline constexpr std::uint8_t kEntryOver60 = 0x04;     // minutes or seconds of 60 or more
inline constexpr std::uint8_t kEntrySeparator = 0x10;  // holds a separator it may not
inline constexpr std::uint8_t kEntryErrorBits = 0x07;

inline constexpr char kInvalidEntryTitle[] = "Invalid Data Entry";

enum class EntryKind { Length, Bearing, GpsLongitude, GpsLatitude };

// The status of `text` typed as a value of `kind`; 0 when it is good or blank. Lengths and
// co-ordinates are read in the survey's unit, where a sub-unit value must stay below one
// main unit (12 inches, 1760 yards, 100 links); a GPS value is read behind its hemisphere
// letter `hemisphere` and must lie within 90 (latitude) or 180 (longitude) degrees. Text
// that is not a value gets `kEntrySeparator` when it holds `SubValueSeparator`, else
// `kEntryInvalid`. The survey's value marks are left as they were.
std::uint8_t CheckEntryText(Survey& survey, EntryKind kind, std::string_view text,
                            char hemisphere = 'N');

// The "Invalid Data Entry" box for a status, or nothing for a good one.
std::optional<MessageBox> EntryFaultBox(std::uint8_t status, int unitOfMeasure);

// The items of `UOMCmb`: the unit names, those with a sub-unit followed by "[", the
// separator and the sub-unit ("Feet[\Inches]").
std::vector<std::string> UnitListItems(char subValueSeparator);

// The length hint for units with a sub-unit ("" for the others) and the angle hint; the
// separator is written as its character code.
std::string LengthHint(int unitOfMeasure, char subValueSeparator);
std::string AngleHint(char subValueSeparator);

}  // namespace plotmeter
