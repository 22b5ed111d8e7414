#include "datafile/FileText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <system_error>

namespace plotmeter {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

constexpr std::string_view kUtf8ByteOrderMark = "\xEF\xBB\xBF";

bool IsContinuationByte(unsigned char c) { return (c & 0xC0) == 0x80; }
// Lead bytes C2 and C3 carry the code points 128 to 255, the only ones a single byte holds.
bool IsSingleByteLead(unsigned char c) { return c == 0xC2 || c == 0xC3; }

// True when every byte above 127 belongs to a two-byte sequence for a code point below 256;
// counts those sequences.
bool HoldsOnlySingleByteUtf8(std::string_view text, std::size_t& sequences) {
  sequences = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto c = static_cast<unsigned char>(text[i]);
    if (c < 0x80) continue;
    if (!IsSingleByteLead(c) || i + 1 >= text.size() ||
        !IsContinuationByte(static_cast<unsigned char>(text[i + 1]))) {
      return false;
    }
    ++sequences;
    ++i;
  }
  return true;
}

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
  std::size_t begin = 0;
  while (begin < text.size() && IsBlank(text[begin])) ++begin;
  return TrimTrailingBlanks(text.substr(begin));
}

std::string_view TrimTrailingBlanks(std::string_view text) {
  std::size_t end = text.size();
  while (end > 0 && IsBlank(text[end - 1])) --end;
  return text.substr(0, end);
}

void ConvertEditorUtf8(std::string& text) {
  if (text.starts_with(kUtf8ByteOrderMark)) text.erase(0, kUtf8ByteOrderMark.size());
  std::size_t sequences = 0;
  if (!HoldsOnlySingleByteUtf8(text, sequences) || sequences == 0) return;
  std::size_t out = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto c = static_cast<unsigned char>(text[i]);
    if (c < 0x80) {
      text[out++] = text[i];
    } else {
      auto low = static_cast<unsigned char>(text[++i]) & 0x3F;
      text[out++] = static_cast<char>(((c & 0x03) << 6) | low);
    }
  }
  text.resize(out);
}

std::size_t LineCursor::Find(char c, std::size_t from, std::size_t end) const {
  const void* found = std::memchr(text_.data() + from, c, end - from);
  return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text_.data()) : end;
}

bool LineCursor::Next(std::string_view& line) {
  if (AtEnd()) return false;
  if (nextLf_ == std::string_view::npos || nextLf_ < position_) {
    nextLf_ = Find('\n', position_, text_.size());
  }
  // A CR ends the line too: just before the LF it is half of CR LF, elsewhere a line break
  // alone.
  const std::size_t cr = Find('\r', position_, nextLf_);
  const std::size_t end = std::min(cr, nextLf_);
  line = text_.substr(position_, end - position_);
  position_ = (cr + 1 == nextLf_) ? nextLf_ + 1 : end + 1;
  return true;
}

std::string_view TextAfterFields(std::string_view line, char separator, std::size_t count) {
  std::size_t start = 0;
  for (std::size_t i = 0; i < count; ++i) {
    std::size_t at = line.find(separator, start);
    if (at == std::string_view::npos) return {};
    start = at + 1;
  }
  std::string_view rest = line.substr(start);
  std::size_t end = rest.size();
  while (end > 0 && (IsBlank(rest[end - 1]) || rest[end - 1] == separator)) --end;
  return TrimBlanks(rest.substr(0, end));
}

bool IsEmptyRow(std::string_view line, char separator) {
  for (char c : line) {
    if (!IsBlank(c) && c != separator) return false;
  }
  return true;
}

bool IsCommentLine(std::string_view line, char separator) {
  std::string_view text = TrimBlanks(line);
  if (text.starts_with('/')) return true;
  std::array<std::string_view, 2> fields;
  if (SplitFields(line, separator, fields) < 2) return false;
  return TrimBlanks(fields[0]).empty() && TrimBlanks(fields[1]).starts_with('/');
}

std::optional<int> ParseWholeNumber(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  if (text.empty()) return std::nullopt;
  int value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<float> ParseDecimal(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  if (text.empty()) return std::nullopt;
  float value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::string DecimalText(float value) {
  if (value == 0) return "0";  // also for -0
  char buffer[32];
  auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
  if (error != std::errc()) return "0";
  return std::string(buffer, end);
}

}  // namespace plotmeter
