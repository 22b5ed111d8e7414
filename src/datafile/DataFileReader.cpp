#include "datafile/DataFileReader.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "datafile/FileText.h"
#include "datafile/PointTableChecks.h"

namespace plotmeter {

namespace {

constexpr std::string_view kProgramIdentifier = "#0092";
constexpr char kFieldSeparatorAtStart = ',';
constexpr char kSubValueSeparatorAtStart = '\\';  // code 92, as the main window sets it
constexpr int kMaxJoinPoints = 2;

// The size of a seekable input, so that its text is allocated once; 0 when unknown.
std::size_t InputSize(std::istream& in) {
  const auto start = in.tellg();
  if (start < 0 || !in.seekg(0, std::ios::end)) return 0;
  const auto end = in.tellg();
  in.seekg(start);
  return end > start ? static_cast<std::size_t>(end - start) : 0;
}

// Reads the whole input, or fails when it cannot be read or is larger than the limit.
bool ReadAll(std::istream& in, std::string& text) {
  if (!in) return false;
  text.clear();
  const std::size_t size = InputSize(in);
  if (size > kMaxReadBytes) return false;
  text.reserve(size);
  std::array<char, 1 << 16> buffer;
  while (in) {
    in.read(buffer.data(), buffer.size());
    text.append(buffer.data(), static_cast<std::size_t>(in.gcount()));
    if (text.size() > kMaxReadBytes) return false;
  }
  return !in.bad();
}

bool IsDatasetHeader(std::string_view line, char separator) {
  std::array<std::string_view, 1> first;
  SplitFields(line, separator, first);
  std::string_view marker = TrimBlanks(first[0]);
  return marker == "H" || marker == "h";
}

// The writer's own lines at the top: "//" with nothing but separators (the default
// layout's "//" + separator, the plain layout's "//"), and the unit line.
bool IsGeneratedTopLine(std::string_view line, char separator) {
  std::string_view text = TrimBlanks(line);
  if (text.starts_with("// Unit of Measure is")) return true;
  return text.starts_with("//") && IsEmptyRow(text.substr(2), separator);
}

// "PtRef#" and "PtTgt#": empty or 0 for none, else a point number.
bool ReadPointReference(std::string_view field, int& number) {
  field = TrimBlanks(field);
  if (field.empty()) {
    number = 0;
    return true;
  }
  std::optional<int> value = ParseWholeNumber(field);
  if (!value || *value < 0) return false;
  number = *value;
  return true;
}

// The type field of a data line: its one type letter and its flag letters.
struct TypeField {
  int typeLetters = 0;
  char type = '\0';
  bool unknownLetter = false;
  bool flagA = false, flagI = false, flagJ = false, flagL = false, flagF = false;

  bool AnyFlag() const { return flagA || flagI || flagJ || flagL || flagF; }
  bool IsBearing() const { return type == 'B' || type == 'C'; }
};

// Read in capitals, so the writer's "s" (shared) reads as "S" and is passed over.
TypeField ReadTypeField(std::string_view field) {
  TypeField result;
  for (char c : field) {
    switch (c) {
      case 'x':
      case 'X':
      case 'b':
      case 'B':
      case 'c':
      case 'C':
      case 'g':
      case 'G':
      case 'r':
      case 'R':
      case 'd':
      case 'D':
        ++result.typeLetters;
        result.type = static_cast<char>(c & ~0x20);
        break;
      case 'a':
      case 'A':
        result.flagA = true;
        break;
      case 'i':
      case 'I':
        result.flagI = true;
        break;
      case 'j':
      case 'J':
        result.flagJ = true;
        break;
      case 'l':
      case 'L':
        result.flagL = true;
        break;
      case 'f':
      case 'F':
        result.flagF = true;
        break;
      case 's':
      case 'S':
      case ' ':
      case '\t':
        break;
      default:
        result.unknownLetter = true;
    }
  }
  return result;
}

void SetPointType(const TypeField& type, Point& point) {
  switch (type.type) {
    case 'X':
      point.PtFlags = kPtXY;
      break;
    case 'D':
      point.PtFlags = kPtXY;
      point.PtMarks = kMarkDummy;
      break;
    case 'B':
      point.PtFlags = kPtBearing;
      break;
    case 'C':
      point.PtFlags = kPtBearing;
      point.PtMarks = kMarkCompass;
      break;
    case 'G':
      point.PtFlags = kPtGps;
      break;
    case 'R':
      point.PtFlags = kPtReference;
      break;
  }
  // "L" implies GPS values, so "A" beside it says nothing more; the writer leaves it out.
  if (type.flagA && !type.flagL) point.PtFlags |= kPtGps | kPtAltGps;
  if (type.flagI) point.PtFlags |= kPtIntermediate;
  if (type.flagJ) point.PtFlags |= kPtJoin;
  if (type.flagL) point.PtFlags |= kPtLink | kPtGps;
  if (type.flagF) point.PtFlags |= kPtReference;
}

class DataFileParser {
 public:
  DataFileParser(Survey& survey, std::string_view text)
      : survey_(survey), text_(text), lines_(text) {}

  ReadResult Parse() {
    ReservePoints();
    int fault = ReadTopAndHeader();
    if (fault == 0) fault = ReadToFirstDataset();
    if (fault == 0) fault = ReadDatasets();
    if (fault != 0) return {fault, point_};
    return CheckPointTable(survey_);
  }

 private:
  // At most one point a line: reserving them at once spares a large file the copies and
  // the doubled memory of a growing table. Pages never written cost nothing.
  void ReservePoints() {
    const auto lines = static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '\n'));
    survey_.Points.reserve(std::min<std::size_t>(lines + 1, kMaxReadPoints + 1));
  }

  int ReadTopAndHeader() {
    std::string_view line;
    std::vector<std::string_view> top;
    while (lines_.Next(line)) {
      if (TrimBlanks(line).empty()) return 1;
      if (!TrimBlanks(line).starts_with("//")) {
        int fault = ReadHeader(line);
        if (fault == 0) KeepUserComments(top);
        return fault;
      }
      top.push_back(line);
    }
    return 1;
  }

  void KeepUserComments(const std::vector<std::string_view>& top) {
    for (std::string_view line : top) {
      // Trailing separators are a spreadsheet's padding, not the user's words.
      if (!IsGeneratedTopLine(line, survey_.FieldSeparator)) {
        survey_.UserComments.emplace_back(TextAfterFields(line, survey_.FieldSeparator, 0));
      }
    }
  }

  int ReadHeader(std::string_view line) {
    std::string_view text = TrimBlanks(line);
    std::size_t digits = 0;
    while (digits < text.size() && digits < 4 && text[digits] >= '0' && text[digits] <= '9') {
      ++digits;
    }
    std::optional<int> code = ParseWholeNumber(text.substr(0, digits));
    if (!code || *code < 1 || *code > 255) return 3;
    char separator = static_cast<char>(*code);
    std::size_t at = text.find(separator);
    if (at == std::string_view::npos || TrimBlanks(text.substr(0, at)) != text.substr(0, digits)) {
      return 3;
    }
    survey_.FieldSeparator = separator;

    std::array<std::string_view, 6> fields;
    SplitFields(text, separator, fields);
    for (auto& field : fields) field = TrimBlanks(field);
    if (fields[1] != kProgramIdentifier) return 2;
    if (fields[2].empty()) return 3;
    std::optional<int> unit = ParseWholeNumber(fields[2]);
    if (!unit) return 3;
    if (*unit < 0 || *unit >= kUnitCount) return 42;
    survey_.UnitOfMeasure = *unit;

    std::optional<int> options = fields[3].empty() ? 0 : ParseWholeNumber(fields[3]);
    if (!options) return 3;
    if (*options & 1) survey_.FileFlags |= kFileOption;

    std::optional<float> declination = fields[4].empty() ? 0.0f : ParseDecimal(fields[4]);
    if (!declination || *declination < -360 || *declination > 360) return 3;
    survey_.MagneticDeclination = *declination;
    if (*declination != 0) survey_.FileFlags |= kFileMagnetic;

    std::optional<int> subValue = ParseWholeNumber(fields[5]);
    if (!subValue || *subValue < 0 || *subValue > 255) return 43;
    survey_.SubValueSeparator = static_cast<char>(*subValue);

    survey_.FileTag = std::string(TextAfterFields(text, separator, 6));
    return 0;
  }

  // Comments between the header and the first dataset header; nothing else may stand there.
  int ReadToFirstDataset() {
    std::string_view line;
    while (lines_.Next(line)) {
      if (TrimBlanks(line).empty()) return 8;
      if (IsCommentLine(line, survey_.FieldSeparator)) continue;
      if (!IsDatasetHeader(line, survey_.FieldSeparator)) return 8;
      return ReadDatasetHeader(line);
    }
    return 8;
  }

  int ReadDatasets() {
    std::string_view line;
    char separator = survey_.FieldSeparator;
    while (lines_.Next(line)) {
      if (IsEmptyRow(line, separator) || IsCommentLine(line, separator)) continue;
      int fault = IsDatasetHeader(line, separator) ? ReadDatasetHeader(line) : ReadDataLine(line);
      if (fault != 0) return fault;
    }
    return CurrentDatasetIsEmpty() ? 8 : 0;
  }

  bool CurrentDatasetIsEmpty() const {
    return !survey_.Datasets.empty() &&
           survey_.Datasets.back().DatasetStart == survey_.PointCount();
  }

  int ReadDatasetHeader(std::string_view line) {
    point_ = -1;
    if (CurrentDatasetIsEmpty()) return 8;
    char separator = survey_.FieldSeparator;
    std::array<std::string_view, 2> fields;
    SplitFields(line, separator, fields);
    std::string_view code = TrimBlanks(fields[1]);
    std::uint8_t type = code.size() == 1 ? DatasetTypeFromLetter(code[0]) : 0;
    if (type == 0) return 41;
    if ((type & kDatasetMain) && survey_.FindDataset(kDatasetMain) >= 0) return 6;
    if ((type & kDatasetSubDivision) && survey_.FindDataset(kDatasetSubDivision) >= 0) return 7;
    survey_.Datasets.push_back(
        Dataset{.DatasetType = type,
                .DatasetStart = survey_.PointCount(),
                .DatasetTag = std::string(TextAfterFields(line, separator, 2))});
    return 0;
  }

  int ReadDataLine(std::string_view line) {
    point_ = survey_.PointCount();
    if (point_ >= kMaxReadPoints) return 4;
    std::array<std::string_view, 8> fields;
    SplitFields(line, survey_.FieldSeparator, fields);

    Point point;
    std::optional<int> number = ParseWholeNumber(TrimBlanks(fields[0]));
    if (!number || *number < 1) return 4;
    point.PtNumber = *number;
    if (!ReadPointReference(fields[2], point.PtRef)) return 4;
    if (!ReadPointReference(fields[3], point.PtTarget)) return 4;

    TypeField type = ReadTypeField(fields[1]);
    if (int fault = CheckTypeField(type, point); fault != 0) return fault;
    SetPointType(type, point);
    point.InXA = TrimBlanks(fields[4]);
    point.InYL = TrimBlanks(fields[5]);
    point.InGPSLong = TrimBlanks(fields[6]);
    point.InGPSLat = TrimBlanks(fields[7]);

    if (type.flagJ && ++survey_.JoinPointCount > kMaxJoinPoints) return 10;
    if (type.flagL && ++linkCount_ > 1) return 9;
    if (type.type == 'D') survey_.Datasets.back().DatasetType |= kDatasetHasDummy;
    survey_.Points.push_back(std::move(point));
    return 0;
  }

  // The checks of one data line that its own fields and its place in the file decide.
  int CheckTypeField(const TypeField& type, const Point& point) const {
    const Dataset& dataset = survey_.Datasets.back();
    std::uint8_t kind = dataset.DatasetType & kDatasetKindMask;
    bool first = dataset.DatasetStart == point_;
    bool dummyStart = kind == kDatasetSubDivision && first;

    if (type.typeLetters != 1) return 32;
    if (type.type == 'D' && !dummyStart) return 32;
    if (type.unknownLetter) return 27;
    if (type.flagF && !type.IsBearing()) return 27;
    if (type.type == 'R' && (type.flagA || type.flagI || type.flagL)) return 27;
    if (type.type == 'D' && type.AnyFlag()) return 29;
    if (type.flagI && type.flagL) return 17;
    if (type.flagI && kind == kDatasetPoints) return 15;
    if (type.flagI && first) return 23;
    if (type.flagI && type.IsBearing() && point.PtRef == 0) return 26;
    if (point.PtRef == point.PtNumber) return 13;
    if ((type.type == 'R' || type.flagF) && point.PtRef == 0) return 13;
    if (point.PtTarget == point.PtNumber) return 28;
    if (point.PtRef != 0) return CheckReferencePlace(type, kind, first);
    return 0;
  }

  static int CheckReferencePlace(const TypeField& type, std::uint8_t kind, bool first) {
    bool sharedStart = type.type == 'R' && first;
    switch (kind) {
      case kDatasetLine:
        return type.type == 'R' && !first ? 21 : 0;
      case kDatasetPoints:
        return type.IsBearing() ? 0 : 19;
      case kDatasetSubDivision:
        if (type.type == 'R') return sharedStart ? 0 : 21;
        return type.flagI && type.IsBearing() ? 0 : 18;
      default:  // main
        return type.flagI && type.IsBearing() ? 0 : 18;
    }
  }

  Survey& survey_;
  std::string_view text_;
  LineCursor lines_;
  int point_ = -1;
  int linkCount_ = 0;
};

}  // namespace

void ResetLoadedFile(Survey& survey) {
  ClearSurvey(survey);
  survey.FieldSeparator = kFieldSeparatorAtStart;
  survey.SubValueSeparator = kSubValueSeparatorAtStart;
  survey.MagneticDeclination = 0;
  survey.FileTag.clear();
  survey.UserComments.clear();
}

ReadResult ReadDataFile(Survey& survey, std::istream& in) {
  ResetLoadedFile(survey);
  std::string text;
  if (!ReadAll(in, text)) return {1, -1};
  ConvertEditorUtf8(text);
  return DataFileParser(survey, text).Parse();
}

ReadResult ReadDataFile(Survey& survey, const std::string& path) {
  survey.CurrentFileName = path;
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    ResetLoadedFile(survey);
    return {1, -1};
  }
  std::ifstream in(path, std::ios::binary);
  return ReadDataFile(survey, in);
}

std::string ReadFaultMessage(int code, int reference) {
  switch (code) {
    case 1:
      return "Cannot open file - check is not being used by another program.";
    case 2:
      return "File selected is not for this program.";
    case 3:
      return "File selected has Invalid Header.";
    case 4:
      return "File selected has Invalid Data.";
    case 5:
      return "File must have a 'Main' Dataset.";
    case 6:
      return "File has two 'Main' Datasets present, only one allowed";
    case 7:
      return "File has two 'Sub-division' Datasets present, only one allowed.";
    case 8:
      return "File has invalid Datasets.";
    case 9:
      return "File has multiple nominated GPS links, only one allowed.";
    case 10:
      return "File may only have 0 or 2 sub-division join points specified.";
    case 11:
      return "Sub-division dataset specified without sub-division join points.";
    case 12:
      return "Data could not be processed, check and";
    case 13:
      return "Invalid Line Point Reference specified.";
    case 14:
      return "Non-existent Point Reference [" + std::to_string(reference) + "].";
    case 15:
      return "Interim Point specified for non-line data, please change";
    case 16:
      return "Duplicate Point Reference specified.";
    case 17:
      return "A GPS Link Point may not be an Intermediate Point.";
    case 18:
      return "References to Shared Points applies only to Lines, Points and bearings to "
             "Intermediates.";
    case 19:
      return "Stand Alone Point reference only applies if a Bearing value used, delete "
             "reference.";
    case 20:
      return "Cannot resolve data sequence for point reference, check for circular "
             "references.";
    case 21:
      return "Reference to a Shared Point only valid for first point of a Line dataset.";
    case 22:
      return "Interim Point cannot be past the line's last point.";
    case 23:
      return "First point of data set that requires X/Y co-ordinates.";
    case 24:
      return "GPS link point must have both non-GPS and GPS data.";
    case 25:
      return "'GPS Only' data precedes first available link point, cannot process.";
    case 26:
      return "Interim Point specified with bearing must have a reference to a point.";
    case 27:
      return "Invalid Flag item in data.";
    case 28:
      return "Invalid Point Target reference specified.";
    case 29:
      return "Invalid Point flagged as Inactive.";
    case 30:
      return "No 'data-sets' found in data.";
    case 32:
      return "Data line with unknown type code.";
    case 41:
      return "File header with unknown type code.";
    case 42:
      return "File header with invalid Unit of Measure.";
    case 43:
      return "File header with invalid Sub-value separator.";
    case 44:
      return "File has GPS data without a Unit of Measure specified.";
    default:
      return "Unidentified data parsing error.";
  }
}

std::string ReadFaultText(const ReadResult& read) {
  std::string text = ReadFaultMessage(read.fault, read.reference);
  if (read.point >= 0) text += " [Point " + std::to_string(read.point + 1) + "]";
  return text;
}

}  // namespace plotmeter
