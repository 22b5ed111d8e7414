#include "cli/TextOutput.h"

#include <unistd.h>

#include <cerrno>

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

std::string ShowControls(std::string_view text) {
  constexpr unsigned char kDelete = 0x7F;
  constexpr unsigned char kHighControls = 0x80;
  constexpr unsigned char kHighControlsEnd = 0xA0;
  std::string shown;
  shown.reserve(text.size());
  for (char c : text) {
    auto byte = static_cast<unsigned char>(c);
    const bool high = byte >= kHighControls && byte < kHighControlsEnd;
    if (high) {
      shown += "M-";
      byte = static_cast<unsigned char>(byte - kHighControls);
    }
    if ((byte < 0x20 && (high || byte != '\t')) || byte == kDelete) {
      shown += '^';
      shown += static_cast<char>(byte ^ 0x40);
    } else {
      shown += static_cast<char>(byte);
    }
  }
  return shown;
}

void WriteLine(std::ostream& out, std::string_view text) { out << Utf8FromLatin1(text) << '\n'; }

OutputFile::int_type OutputFile::overflow(int_type c) {
  if (!Drain()) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) {
    *pptr() = traits_type::to_char_type(c);
    pbump(1);
  }
  return traits_type::not_eof(c);
}

bool OutputFile::Drain() {
  if (error_ != 0) return false;
  const char* data = pbase();
  auto size = static_cast<std::size_t>(pptr() - pbase());
  while (size > 0) {
    const ssize_t written = ::write(fd_, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      error_ = written < 0 ? errno : EIO;
      return false;
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  Empty();
  return true;
}

}  // namespace plotmeter
