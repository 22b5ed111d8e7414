// Digit-placeholder number formats: "0" a digit always shown, "#" a digit shown only
// when significant, "," thousands grouping, "." the decimal point; "@@@" right-aligns
// text in three characters.
#pragma once

#include <string>
#include <string_view>

namespace plotmeter {

// Rounds half away from zero on the decimal value, to the last placeholder.
std::string FormatNumber(double value, std::string_view pattern);
// A float is formatted from its shortest decimal form, so 0.1f gives "0.1".
std::string FormatNumber(float value, std::string_view pattern);
std::string FormatNumber(int value, std::string_view pattern);

// Right-aligns `text` in as many characters as `pattern` holds "@"s.
std::string FormatText(std::string_view text, std::string_view pattern);

}  // namespace plotmeter
