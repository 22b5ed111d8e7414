// Standard output and standard error speak UTF-8, while the program's own text is
// single-byte (Latin-1): the conversion happens here, on the way out only.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace plotmeter {

// Each byte of 128 or more becomes its two-byte UTF-8 form; "27\xB0" gives "27°".
std::string Utf8FromLatin1(std::string_view text);

// Writes `text` converted, then a line break.
void WriteLine(std::ostream& out, std::string_view text);

}  // namespace plotmeter
