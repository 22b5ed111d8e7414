#include "datafile/DataFileSyntax.h"

#include <array>
#include <optional>

#include "datafile/ReadFaults.h"
#include "model/Survey.h"
#include "model/TypeLetters.h"

namespace plotmeter {

namespace {

constexpr std::string_view kProgramIdentifier = "#0092";
// The separator code has at most this many digits ("255").
constexpr std::size_t kMaxCodeDigits = 4;

}  // namespace

char HeaderSeparator(std::string_view header) {
  std::size_t digits = 0;
  while (digits < header.size() && digits < kMaxCodeDigits && header[digits] >= '0' &&
         header[digits] <= '9') {
    ++digits;
  }
  const std::optional<int> code = ParseWholeNumber(header.substr(0, digits));
  if (!code || *code < 1 || *code > 255) return '\0';
  const char separator = static_cast<char>(*code);
  const std::size_t at = header.find(separator);
  if (at == std::string_view::npos ||
      TrimBlanks(header.substr(0, at)) != header.substr(0, digits)) {
    return '\0';
  }
  return separator;
}

int ReadHeaderFields(std::string_view header, char separator, FileHeader& result) {
  std::array<std::string_view, 6> fields;
  SplitFields(header, separator, fields);
  for (auto& field : fields) field = TrimBlanks(field);
  if (fields[1] != kProgramIdentifier) return kReadNotThisProgram;
  if (fields[2].empty()) return kReadBadHeader;
  const std::optional<int> unit = ParseWholeNumber(fields[2]);
  if (!unit) return kReadBadHeader;
  if (*unit < 0 || *unit >= kUnitCount) return kReadBadUnit;

  const std::optional<int> options = fields[3].empty() ? 0 : ParseWholeNumber(fields[3]);
  if (!options) return kReadBadHeader;

  const std::optional<float> declination = fields[4].empty() ? 0.0f : ParseDecimal(fields[4]);
  if (!declination || *declination < -360 || *declination > 360) return kReadBadHeader;

  const std::optional<int> subValue = ParseWholeNumber(fields[5]);
  if (!subValue || *subValue < 0 || *subValue > 255) return kReadBadSubValueSeparator;

  result = FileHeader{.separator = separator,
                      .unit = *unit,
                      .options = *options,
                      .declination = *declination,
                      .subValueSeparator = static_cast<char>(*subValue),
                      .tag = TextAfterFields(header, separator, 6)};
  return 0;
}

bool IsDatasetHeader(std::string_view line, char separator) {
  std::array<std::string_view, 1> first;
  SplitFields(line, separator, first);
  const std::string_view marker = TrimBlanks(first[0]);
  return marker == "H" || marker == "h";
}

DatasetHeader ReadDatasetHeader(std::string_view line, char separator) {
  std::array<std::string_view, 2> fields;
  SplitFields(line, separator, fields);
  DatasetHeader header;
  header.code = TrimBlanks(fields[1]);
  header.type = header.code.size() == 1 ? DatasetTypeFromLetter(header.code[0]) : 0;
  header.tag = TextAfterFields(line, separator, 2);
  return header;
}

TypeField ReadTypeField(std::string_view field) {
  TypeField result;
  for (char c : field) {
    if (const TypeLetter* type = FindTypeLetter(c)) {
      ++result.typeLetters;
      result.type = type->letter;
    } else if (const FlagLetter* flag = FindFlagLetter(c)) {
      result.flagBits |= flag->bit;
      result.flagMarks |= flag->mark;
    } else if (c != ' ' && c != '\t') {
      result.unknownLetter = true;
    }
  }
  return result;
}

int DataFileLines::ToHeader(std::string_view& header, std::vector<std::string_view>* top) {
  std::string_view line;
  while (lines_.Next(line)) {
    const std::string_view text = TrimBlanks(line);
    if (text.empty()) return kReadCannotOpen;
    if (!text.starts_with("//")) {
      header = text;
      return 0;
    }
    if (top) top->push_back(line);
  }
  return kReadCannotOpen;
}

int DataFileLines::ToFirstDataset(char separator, std::string_view& datasetHeader) {
  std::string_view line;
  while (lines_.Next(line)) {
    if (TrimBlanks(line).empty()) return kReadBadDatasets;
    if (IsCommentLine(line, separator)) continue;
    if (!IsDatasetHeader(line, separator)) return kReadBadDatasets;
    datasetHeader = line;
    return 0;
  }
  return kReadBadDatasets;
}

bool DataFileLines::NextContentLine(char separator, std::string_view& line) {
  while (lines_.Next(line)) {
    if (!IsEmptyRow(line, separator) && !IsCommentLine(line, separator)) return true;
  }
  return false;
}

}  // namespace plotmeter
