// Test texts are written in UTF-8 ("27°42'"), the program's texts are Latin-1 bytes (the
// degree sign is code 176, "ø" code 248). Latin1 turns the one into the other.
#pragma once

#include <string>
#include <string_view>

namespace plotmeter::testing {

inline std::string Latin1(std::string_view utf8) {
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    auto c = static_cast<unsigned char>(utf8[i]);
    if ((c == 0xC2 || c == 0xC3) && i + 1 < utf8.size()) {
      bytes +=
          static_cast<char>(((c & 0x03) << 6) | (static_cast<unsigned char>(utf8[++i]) & 0x3F));
    } else {
      bytes += utf8[i];
    }
  }
  return bytes;
}

}  // namespace plotmeter::testing
