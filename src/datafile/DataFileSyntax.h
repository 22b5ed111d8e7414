// The parts of a data file as the reader reads them: the "//" lines at the top, the file
// header, the comments before the first dataset, dataset header lines and the type field
// of a data line. The reader fills the survey from them with its fault codes; the listing
// from the file lists the same reading with reasons of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "datafile/FileText.h"

namespace plotmeter {

// The settings of the header line, as views into it.
struct FileHeader {
  char separator = ',';
  int unit = 0;
  int options = 0;
  float declination = 0;
  char subValueSeparator = '\\';
  std::string_view tag;
};

// The separator that the header's leading digits name (a code of 1 to 255 standing alone
// before the separator's first occurrence); '\0' when they name none. `header` is trimmed.
char HeaderSeparator(std::string_view header);

// Reads the fields of the trimmed header line, divided by `separator`. Returns 0 or the
// reader's fault: 2 the second field is not "#0092"; 3 the unit, file options or
// declination is not readable (or the declination is outside -360 to 360); 42 a unit code
// outside 0 to 5; 43 a sub-value separator code empty or outside 0 to 255.
int ReadHeaderFields(std::string_view header, char separator, FileHeader& fields);

// A line whose first field is "H" or "h".
bool IsDatasetHeader(std::string_view line, char separator);

// A dataset header line: its trimmed type code, the type bits it names (0 for none) and its
// tag.
struct DatasetHeader {
  std::string_view code;
  std::uint8_t type = 0;
  std::string_view tag;
};
DatasetHeader ReadDatasetHeader(std::string_view line, char separator);

// The type field of a data line: its type letters (X, B, C, G, R, D) and flag letters, in
// either case. Blanks and tabs are passed over.
struct TypeField {
  int typeLetters = 0;
  char type = '\0';  // the last type letter, in capitals
  bool unknownLetter = false;
  std::uint8_t flagBits = 0;   // the point bits its flag letters name
  std::uint8_t flagMarks = 0;  // "s": a shared (resequenced intermediate) point

  bool Has(std::uint8_t bit) const { return (flagBits & bit) != 0; }
  bool AnyFlag() const { return flagBits != 0; }
  bool IsBearing() const { return type == 'B' || type == 'C'; }
};
TypeField ReadTypeField(std::string_view field);

// Walks the lines of a data file part by part.
class DataFileLines {
 public:
  explicit DataFileLines(std::string_view text) : lines_(text) {}

  // Passes the "//" lines at the top (kept in `top` when given) to the header line, which
  // it trims. Fault 1 when there is none: the text ends, or a blank line comes first.
  int ToHeader(std::string_view& header, std::vector<std::string_view>* top = nullptr);
  // Passes the comment lines after the header to the first dataset header line. Fault 8
  // when the text ends, or a blank line or any other line comes first.
  int ToFirstDataset(char separator, std::string_view& datasetHeader);
  // The next line that holds more than blanks and separators and is not a comment; false
  // at the end of the text.
  bool NextContentLine(char separator, std::string_view& line);

 private:
  LineCursor lines_;
};

}  // namespace plotmeter
