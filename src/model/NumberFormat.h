// Digit-placeholder number formats: "0" a digit always shown, "#" a digit shown only
// when significant, "," thousands grouping, "." the decimal point; "@@@" right-aligns
// text in three characters.
//
// The integer part is always shown in full: "#"s before the point add nothing, the "0"s
// there give the least number of integer digits. After the point the "0"s give the least
// and all placeholders the most decimals; trailing zeros beyond the least are dropped,
// and so is the point when no decimal is left ("#0.###" of 2 is "2"). A value that rounds
// to zero has no sign ("-0" never appears). Infinities and NaN give "Infinity",
// "-Infinity" and "NaN".
#pragma once

#include <string>
#include <string_view>

namespace plotmeter {

// Rounds half away from zero on the decimal value, to the last placeholder. The decimal
// value is the shortest text that reads back as the same double, so 2.675 with "#0.0#"
// gives "2.68" although the double lies just below 2.675.
std::string FormatNumber(double value, std::string_view pattern);
// A float is formatted from its shortest decimal form, so 0.1f gives "0.1".
std::string FormatNumber(float value, std::string_view pattern);
std::string FormatNumber(int value, std::string_view pattern);

// Right-aligns `text` in as many characters as `pattern` holds "@"s; longer text is
// kept whole.
std::string FormatText(std::string_view text, std::string_view pattern);

}  // namespace plotmeter
