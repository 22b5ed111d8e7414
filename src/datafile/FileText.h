// Text helpers shared by the data file reader and writer: lines, fields, blanks and
// numbers of a separator-divided file held as single-byte (Latin-1) text.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace plotmeter {

// Blanks and tabs at either end are not part of a field.
std::string_view TrimBlanks(std::string_view text);
std::string_view TrimTrailingBlanks(std::string_view text);

// A file saved as UTF-8 by a text editor reads as the same file in single-byte form:
// a leading byte-order mark is dropped, and when the whole text is valid UTF-8 whose
// every code point fits in one byte (and at least one needed two), each two-byte
// sequence becomes its one byte. Any other text is left as it is.
void ConvertEditorUtf8(std::string& text);

// Walks the lines of a text; a line ends at LF, CR LF or a lone CR, and the line break is
// not part of the line. Every line ending costs the same: the whole text is walked once.
class LineCursor {
 public:
  explicit LineCursor(std::string_view text) : text_(text) {}
  bool Next(std::string_view& line);
  bool AtEnd() const { return position_ >= text_.size(); }

 private:
  // The first `c` at or after `from`, or the end of the text.
  std::size_t Find(char c, std::size_t from, std::size_t end) const;

  std::string_view text_;
  std::size_t position_ = 0;
  // The next LF at or after `position_` (the end of the text for none), once searched: a
  // text of lone CRs would otherwise be searched to its end for every line.
  std::size_t nextLf_ = std::string_view::npos;
};

// Splits `line` at `separator` into the first N fields, untrimmed; fields beyond the
// line's own are empty. Returns how many fields the line holds (at most N).
template <std::size_t N>
std::size_t SplitFields(std::string_view line, char separator,
                        std::array<std::string_view, N>& fields) {
  fields.fill({});
  std::size_t count = 0;
  std::size_t start = 0;
  while (count < N) {
    std::size_t end = line.find(separator, start);
    if (end == std::string_view::npos) {
      fields[count++] = line.substr(start);
      break;
    }
    fields[count++] = line.substr(start, end - start);
    start = end + 1;
  }
  return count;
}

// The text after the `count`-th separator, without the blanks and separators that end
// it (a spreadsheet pads its rows with empty fields); empty when the line has fewer.
// Free text such as a tag is read this way, so that it may hold the separator itself.
std::string_view TextAfterFields(std::string_view line, char separator, std::size_t count);

// True when the line holds nothing but blanks and separators.
bool IsEmptyRow(std::string_view line, char separator);

// A comment after the file header: a line whose text begins with "/", or, as the default
// layout writes them, a line whose first field is empty and whose second begins with "/".
bool IsCommentLine(std::string_view line, char separator);

// A whole number written in decimal digits with an optional sign; nullopt for any other
// text and for numbers outside the range of int.
std::optional<int> ParseWholeNumber(std::string_view text);

// A finite decimal number ("12", "-3.25", "+.5", "1e-3"); nullopt for any other text.
std::optional<float> ParseDecimal(std::string_view text);

// The shortest decimal text that reads back as the same float ("0" for zero).
std::string DecimalText(float value);

}  // namespace plotmeter
