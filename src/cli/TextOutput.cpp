#include "cli/TextOutput.h"

namespace plotmeter {

std::string Utf8FromLatin1(std::string_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  for (char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

void WriteLine(std::ostream& out, std::string_view text) { out << Utf8FromLatin1(text) << '\n'; }

}  // namespace plotmeter
