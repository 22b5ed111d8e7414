#include "ui/DataListing.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "datafile/DataFileReader.h"
#include "datafile/FileText.h"
#include "model/NumberFormat.h"
#include "model/ValueFormat.h"

namespace plotmeter {

namespace {

// ---------------------------------------------------------------------------------------
// Columns and their layout

enum Column {
  kColInX,
  kColInY,
  kColInLong,
  kColInLat,
  kColX,
  kColY,
  kColBearing,
  kColBearingMag,
  kColLength,
  kColGpsLong,
  kColGpsLat,
  kColAltLong,
  kColAltLat,
  kColDelta,
  kColumnCount
};

struct ColumnFormat {
  std::string_view heading;
  int width;  // characters of the value, without the separating blank before it
};

constexpr std::array<ColumnFormat, kColumnCount> kColumns = {{{"I/P-X(B)", 10},
                                                              {"I/P-Y(L)", 10},
                                                              {"I/P-Long", 15},
                                                              {"I/P-Lat", 15},
                                                              {"X", 9},
                                                              {"Y", 9},
                                                              {"Bearing", 10},
                                                              {"Bearg Mag", 10},
                                                              {"Length", 9},
                                                              {"GPS-Long", 15},
                                                              {"GPS-Lat", 15},
                                                              {"Alt-Long", 15},
                                                              {"Alt-Lat", 15},
                                                              {"Delta", 9}}};

// Number, type, reference and target: "@@@", the type field of five, "@@@", " @@@".
constexpr std::string_view kPointHeading = "Pt# Typ Ref Tgt";
constexpr std::size_t kTypeFieldWidth = 5;
// Every column group opens with this mark, aligned in the heading and in the lines.
constexpr std::string_view kGroupMark = " |";

constexpr std::string_view kClosingLineWithInput = " -Closing Line Bearing:";
constexpr std::string_view kClosingLineAlone = " -Closing Line:";

struct Group {
  std::uint8_t bit;
  std::vector<Column> columns;
};

struct Layout {
  std::vector<Group> groups;
  // Where the Bearing/Length group stands, or would stand were it shown: the closing
  // line row puts its bearing and length there.
  std::size_t bearingGroupStart = 0;
  bool magnetic = false;
};

std::size_t GroupWidth(const Group& group) {
  std::size_t width = kGroupMark.size();
  for (Column column : group.columns) width += 1 + kColumns[column].width;
  return width;
}

std::vector<Column> BearingColumns(bool magnetic) {
  if (magnetic) return {kColBearing, kColBearingMag, kColLength};
  return {kColBearing, kColLength};
}

// The input columns alone for a listing from the file; every chosen group otherwise.
Layout MakeLayout(std::uint8_t show, bool processed, bool gpsInput, bool magnetic) {
  Layout layout;
  layout.magnetic = magnetic;
  if (!processed) show &= kShowInput;
  if (show & kShowInput) {
    Group input{kShowInput, {kColInX, kColInY}};
    if (gpsInput) input.columns.insert(input.columns.end(), {kColInLong, kColInLat});
    layout.groups.push_back(std::move(input));
  }
  if (show & kShowXY) layout.groups.push_back({kShowXY, {kColX, kColY}});
  layout.bearingGroupStart = kPointHeading.size();
  for (const Group& group : layout.groups) layout.bearingGroupStart += GroupWidth(group);
  if (show & kShowBearing) layout.groups.push_back({kShowBearing, BearingColumns(magnetic)});
  if (show & kShowGps) layout.groups.push_back({kShowGps, {kColGpsLong, kColGpsLat}});
  if (show & kShowAltGps) {
    layout.groups.push_back({kShowAltGps, {kColAltLong, kColAltLat, kColDelta}});
  }
  return layout;
}

// A heading text left-aligned in a cell of its column's width plus one, the separating
// blank counted as part of the text.
std::string HeadingLine(const Layout& layout) {
  std::string line(kPointHeading);
  for (const Group& group : layout.groups) {
    line += kGroupMark;
    for (Column column : group.columns) {
      const ColumnFormat& format = kColumns[column];
      line += ' ';
      line += format.heading;
      line.append(format.width - format.heading.size(), ' ');
    }
  }
  return line;
}

// One separating blank and the value right-aligned in the width. A typed value that is
// longer than its column is cut one short and marked "+"; a computed value is shown whole.
void AppendCell(std::string& line, std::string_view value, int width, bool typed) {
  const std::size_t cell = static_cast<std::size_t>(width);
  line += ' ';
  if (value.size() > cell && typed) {
    line += value.substr(0, cell - 1);
    line += '+';
    return;
  }
  if (value.size() < cell) line.append(cell - value.size(), ' ');
  line += value;
}

bool IsTypedColumn(Column column) { return column <= kColInLat; }

// ---------------------------------------------------------------------------------------
// Point lines

struct PointRow {
  std::string number, type, ref, target;
  std::array<std::string, kColumnCount> values;  // only the shown columns are filled
  // X or bearing, Y or length, GPS longitude and latitude, as typed: for the "Edit" view.
  std::array<std::string_view, 4> input;
};

std::string PointLine(const PointRow& row, const Layout& layout) {
  std::string line = FormatText(row.number, "@@@");
  std::string type = " " + row.type;
  // A long run of flags still leaves a blank before the reference.
  if (type.size() < kTypeFieldWidth) {
    type.resize(kTypeFieldWidth, ' ');
  } else {
    type += ' ';
  }
  line += type;
  line += row.ref.empty() ? std::string("   ") : FormatText(row.ref, "@@@");
  line += row.target.empty() ? std::string("    ") : " " + FormatText(row.target, "@@@");
  for (const Group& group : layout.groups) {
    line += kGroupMark;
    for (Column column : group.columns) {
      AppendCell(line, row.values[column], kColumns[column].width, IsTypedColumn(column));
    }
  }
  return line;
}

void FillInputValues(PointRow& row) {
  for (int column = kColInX; column <= kColInLat; ++column) {
    row.values[column] = row.input[column - kColInX];
  }
}

// ---------------------------------------------------------------------------------------
// Dataset heading lines

bool IsIncluded(const std::array<bool, kIncludeCount>& include, char code) {
  switch (code) {
    case 'M':
    case 'N':
      return include[kIncludeMain];
    case 'S':
      return include[kIncludeSubDivision];
    case 'L':
      return include[kIncludeLines];
    case 'P':
      return include[kIncludePoints];
    default:
      return true;  // a dataset of no known kind is always shown, with its error line
  }
}

std::string DatasetHeadingLine(char code, int pointCount, std::string_view tag) {
  std::string line;
  switch (code) {
    case 'M':
      line = "[M] Dataset as Main (Perimeter)";
      break;
    case 'N':
      line = "[N] Dataset as Main (Non-perimeter)";
      break;
    case 'S':
      line = "[S] Dataset as Sub-division (or Extension)";
      break;
    case 'L':
      line = "[L] Dataset as Line";
      break;
    case 'P':
      line = pointCount == 1 ? "[P] Dataset as Single Point" : "[P] Dataset as Points Collection";
      break;
    default:
      line = "ERROR Invalid Dataset code";
      break;
  }
  if (!tag.empty()) {
    line += " for '";
    line += tag;
    line += "'";
  }
  return line;
}

// ---------------------------------------------------------------------------------------
// The processed survey in memory

// The letter that stands for the way the point was given, by the writer's rules.
char PointTypeLetter(const Point& point) {
  const std::uint8_t input = point.PtFlags & kPtInputMask;
  if (point.PtMarks & kMarkDummy) return 'D';
  if (input == kPtReference) return 'R';
  if ((input & (kPtXY | kPtBearing | kPtGps)) == kPtGps) return 'G';
  if (input & kPtXY) return 'X';
  return (point.PtMarks & kMarkCompass) ? 'C' : 'B';
}

std::string PointTypeText(const Point& point) {
  std::string text(1, PointTypeLetter(point));
  const std::uint8_t flags = point.PtFlags;
  if ((flags & kPtAltGps) && !(flags & kPtLink)) text += 'A';
  if (flags & kPtIntermediate) {
    text += 'I';
    if (point.PtMarks & kMarkShared) text += 's';
  }
  if (flags & kPtJoin) text += 'J';
  if (flags & kPtLink) text += 'L';
  if ((flags & kPtBearing) && (flags & kPtReference)) text += 'F';
  return text;
}

std::string NumberOrNone(int number) { return number > 0 ? std::to_string(number) : ""; }

bool HasGpsInput(const Survey& survey) {
  return std::any_of(survey.Points.begin(), survey.Points.end(),
                     [](const Point& point) { return (point.PtFlags & kPtGps) != 0; });
}

// Formatting as on screen: plain decimal numbers, whatever a write left behind.
Survey ScreenFormatting(const Survey& survey) {
  Survey settings;
  settings.FieldSeparator = survey.FieldSeparator;
  settings.SubValueSeparator = survey.SubValueSeparator;
  settings.UnitOfMeasure = survey.UnitOfMeasure;
  settings.MagneticDeclination = survey.MagneticDeclination;
  settings.DegreeChar = survey.DegreeChar;
  settings.WriterOptions = survey.WriterOptions & ~kWriteInProgress;
  return settings;
}

class ProcessedRows {
 public:
  ProcessedRows(const Survey& survey, const Layout& layout)
      : format_(ScreenFormatting(survey)), gpsComputed_(HasGpsInput(survey)) {
    for (const Group& group : layout.groups) {
      for (Column column : group.columns) shown_[column] = true;
    }
  }

  PointRow Row(const Point& point) const {
    PointRow row;
    row.number = std::to_string(point.PtNumber);
    row.type = PointTypeText(point);
    row.ref = NumberOrNone(point.PtRef);
    row.target = NumberOrNone(point.PtTarget);
    row.input = {point.InXA, point.InYL, point.InGPSLong, point.InGPSLat};
    FillInputValues(row);
    if (shown_[kColX]) row.values[kColX] = FormatLength(format_, point.X);
    if (shown_[kColY]) row.values[kColY] = FormatLength(format_, point.Y);
    if (shown_[kColBearing]) row.values[kColBearing] = Bearing(point.Bearing);
    if (shown_[kColBearingMag]) row.values[kColBearingMag] = MagneticBearing(point.Bearing);
    if (shown_[kColLength]) row.values[kColLength] = FormatLength(format_, point.Len);
    // Without any GPS input no GPS value was worked out: the columns stay blank.
    if (gpsComputed_ && shown_[kColGpsLong]) {
      row.values[kColGpsLong] = FormatGpsAngle(format_, 0, point.GPSLong);
      row.values[kColGpsLat] = FormatGpsAngle(format_, kGpsLatitude, point.GPSLat);
    }
    if (point.HasAlternate && shown_[kColAltLong]) {
      row.values[kColAltLong] = FormatGpsAngle(format_, 0, point.AltGPSLong);
      row.values[kColAltLat] = FormatGpsAngle(format_, kGpsLatitude, point.AltGPSLat);
      row.values[kColDelta] = FormatNumber(point.AltGPSDelta, "#0.0####");
    }
    return row;
  }

  std::string Bearing(float bearing) const { return FormatBearing(format_, 0, bearing); }
  std::string MagneticBearing(float bearing) const {
    float magnetic = bearing + format_.MagneticDeclination;
    return FormatBearing(format_, 0, magnetic);
  }
  std::string Length(float length) const { return FormatLength(format_, length); }

 private:
  Survey format_;
  bool gpsComputed_;
  std::array<bool, kColumnCount> shown_{};
};

bool HasClosingLine(std::uint8_t type) {
  return (type & kDatasetMain) ? (type & kDatasetPerimeter) != 0
                               : (type & kDatasetSubDivision) != 0;
}

// The closing line's bearing and length under the Bearing and Length columns, with the
// magnetic bearing under "Bearg Mag" when that column is there.
std::string ClosingLineRow(const Dataset& dataset, const Layout& layout, std::uint8_t show,
                           const ProcessedRows& rows) {
  std::string line(show & (kShowInput | kShowXY) ? kClosingLineWithInput : kClosingLineAlone);
  if (line.size() < layout.bearingGroupStart) line.resize(layout.bearingGroupStart, ' ');
  line += kGroupMark;
  AppendCell(line, rows.Bearing(dataset.ClosingBearing), kColumns[kColBearing].width, false);
  if (layout.magnetic && (show & kShowBearing)) {
    AppendCell(line, rows.MagneticBearing(dataset.ClosingBearing), kColumns[kColBearingMag].width,
               false);
  }
  AppendCell(line, rows.Length(dataset.ClosingLen), kColumns[kColLength].width, false);
  return line;
}

// ---------------------------------------------------------------------------------------
// The data file, read again with the listing's own checks

constexpr std::string_view kBadHeader = "File selected has Invalid Header.";
constexpr std::string_view kBadHeaderData = "Invalid Header line data.";
constexpr std::string_view kBadDatasets = "File has invalid Datasets.";
constexpr std::string_view kMultipleMain = "Has multiple 'Main' Datasets";
constexpr std::string_view kMultipleSub = "Has multiple 'Sub-division' Datasets";
constexpr std::string_view kInvalidDatasetCode = " is an Invalid Dataset code";
constexpr std::string_view kEmptyDataset = "Dataset is without points specified.";
constexpr std::string_view kNoTypeEntry = "Data line (non-'H') without type code entry.";
constexpr std::string_view kMultipleTypes = "Multiple type codes present.";
constexpr std::string_view kUnknownType = "Data line with unknown type code.";
constexpr std::string_view kMultipleDummies = "Multiple Sub-div dummy lines present.";
constexpr std::string_view kNoType = "No type code present.";

constexpr std::string_view kTypeLetters = "CBXDGR";

bool IsWholeNumberIn(std::string_view text, int low, int high) {
  const std::optional<int> value = ParseWholeNumber(text);
  return value && *value >= low && *value <= high;
}

bool IsDecimalOrEmpty(std::string_view text) { return text.empty() || ParseDecimal(text); }

// The separator that the header's leading digits name, standing alone before its first
// occurrence; '\0' when they name none.
char HeaderSeparator(std::string_view header) {
  std::size_t digits = 0;
  while (digits < header.size() && digits < 4 && header[digits] >= '0' && header[digits] <= '9') {
    ++digits;
  }
  if (!IsWholeNumberIn(header.substr(0, digits), 1, 255)) return '\0';
  const char separator = static_cast<char>(*ParseWholeNumber(header.substr(0, digits)));
  const std::size_t at = header.find(separator);
  if (at == std::string_view::npos ||
      TrimBlanks(header.substr(0, at)) != header.substr(0, digits)) {
    return '\0';
  }
  return separator;
}

bool HeaderFieldsValid(std::string_view header, char separator) {
  std::array<std::string_view, 6> fields;
  if (SplitFields(header, separator, fields) < fields.size()) return false;
  for (auto& field : fields) field = TrimBlanks(field);
  return fields[1] == "#0092" && IsWholeNumberIn(fields[2], 0, kUnitCount - 1) &&
         (fields[3].empty() || ParseWholeNumber(fields[3])) && IsDecimalOrEmpty(fields[4]) &&
         IsWholeNumberIn(fields[5], 0, 255);
}

bool IsDatasetHeader(std::string_view line, char separator) {
  std::array<std::string_view, 1> first;
  SplitFields(line, separator, first);
  const std::string_view marker = TrimBlanks(first[0]);
  return marker == "H" || marker == "h";
}

// The whole file, as the reader takes it: a file saved as UTF-8 by an editor reads as its
// single-byte form. Nothing for a file that cannot be read or is beyond the reader's size.
std::optional<std::string> ReadWholeFile(const std::string& path) {
  std::error_code error;
  if (path.empty() || std::filesystem::is_directory(path, error)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string text;
  std::array<char, 1 << 16> buffer;
  while (in) {
    in.read(buffer.data(), buffer.size());
    text.append(buffer.data(), static_cast<std::size_t>(in.gcount()));
    if (text.size() > kMaxReadBytes) return std::nullopt;
  }
  if (in.bad()) return std::nullopt;
  ConvertEditorUtf8(text);
  return text;
}

// What the reader hands on of each dataset and data line, as views into the file text.
class ListingSink {
 public:
  virtual ~ListingSink() = default;
  virtual void Dataset(char code, std::string_view tag) = 0;
  virtual void Point(PointRow& row, bool intermediate) = 0;
};

// Reads the data file again, line by line, with the listing's own checks; the first
// fault ends the reading with its reason. The lines that pass are handed to the sink.
class ListingFileReader {
 public:
  ListingFileReader(std::string_view text, ListingSink& sink) : lines_(text), sink_(sink) {}

  // The reason the file is bad; empty when it reads well.
  std::string Read() {
    std::string fault = ReadAll();
    if (fault.empty()) fault = EndDataset();
    return fault;
  }

  // The file holds GPS input: the listing shows its GPS input columns.
  bool GpsInput() const { return gpsInput_; }

 private:
  std::string ReadAll() {
    bool more = lines_.Next(line_);
    while (more && TrimBlanks(line_).starts_with("//")) more = lines_.Next(line_);
    if (!more || TrimBlanks(line_).empty()) return std::string(kBadHeader);
    const std::string_view header = TrimBlanks(line_);
    separator_ = HeaderSeparator(header);
    if (separator_ == '\0') return std::string(kBadHeader);
    if (!HeaderFieldsValid(header, separator_)) return std::string(kBadHeaderData);
    for (;;) {
      if (!lines_.Next(line_) || TrimBlanks(line_).empty()) return std::string(kBadDatasets);
      if (!IsCommentLine(line_, separator_)) break;
    }
    if (!IsDatasetHeader(line_, separator_)) return std::string(kBadDatasets);
    do {
      std::string fault = ReadLine();
      if (!fault.empty()) return fault;
    } while (lines_.Next(line_));
    return {};
  }

  std::string ReadLine() {
    if (IsEmptyRow(line_, separator_) || IsCommentLine(line_, separator_)) return {};
    if (IsDatasetHeader(line_, separator_)) return StartDataset();
    return std::string(ReadPoint());
  }

  std::string EndDataset() const {
    return datasetCode_ != '\0' && datasetPoints_ == 0 ? std::string(kEmptyDataset) : "";
  }

  std::string StartDataset() {
    if (std::string fault = EndDataset(); !fault.empty()) return fault;
    std::array<std::string_view, 2> fields;
    SplitFields(line_, separator_, fields);
    const std::string_view code = TrimBlanks(fields[1]);
    const char letter = code.size() == 1 ? DatasetLetter(DatasetTypeFromLetter(code[0])) : '\0';
    // Built by appending: g++ 12 wrongly warns (-Wrestrict) on text put before a temporary.
    if (letter == '\0') {
      return std::string("'").append(code).append("'").append(kInvalidDatasetCode);
    }
    if (letter == 'M' || letter == 'N') {
      if (mainSeen_) return std::string(kMultipleMain);
      mainSeen_ = true;
    }
    if (letter == 'S') {
      if (subSeen_) return std::string(kMultipleSub);
      subSeen_ = true;
    }
    datasetCode_ = letter;
    datasetPoints_ = 0;
    sink_.Dataset(letter, TextAfterFields(line_, separator_, 2));
    return {};
  }

  std::string_view ReadPoint() {
    std::array<std::string_view, 8> fields;
    SplitFields(line_, separator_, fields);
    for (auto& field : fields) field = TrimBlanks(field);
    PointRow row;
    bool intermediate = false;
    const std::string_view fault = ReadType(fields[1], row.type, intermediate);
    if (!fault.empty()) return fault;
    row.number = fields[0];
    row.ref = NoneWhenZero(fields[2]);
    row.target = NoneWhenZero(fields[3]);
    row.input = {fields[4], fields[5], fields[6], fields[7]};
    FillInputValues(row);
    ++datasetPoints_;
    sink_.Point(row, intermediate);
    return {};
  }

  static std::string NoneWhenZero(std::string_view text) {
    return text == "0" ? std::string() : std::string(text);
  }

  // The type letter and the flags, in the listing's order; a reason when the field holds
  // no type, several types or a letter that is neither.
  std::string_view ReadType(std::string_view field, std::string& type, bool& intermediate) {
    if (field.empty()) return kNoTypeEntry;
    char letter = '\0';
    bool severalTypes = false;
    bool shared = false;
    std::uint8_t flags = 0;
    for (char c : field) {
      const char upper = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
      if (kTypeLetters.find(upper) != std::string_view::npos) {
        severalTypes = severalTypes || letter != '\0';
        letter = upper;
      } else if (upper == 'S') {
        shared = true;
      } else if (upper == 'A') {
        flags |= kPtAltGps;
      } else if (upper == 'I') {
        flags |= kPtIntermediate;
      } else if (upper == 'J') {
        flags |= kPtJoin;
      } else if (upper == 'L') {
        flags |= kPtLink;
      } else if (upper == 'F') {
        flags |= kPtReference;
      } else if (c != ' ' && c != '\t') {
        return kUnknownType;
      }
    }
    if (severalTypes) return kMultipleTypes;
    if (letter == '\0') return kNoType;
    if (letter == 'D') {
      if (datasetCode_ != 'S') return kUnknownType;
      if (dummySeen_) return kMultipleDummies;
      dummySeen_ = true;
    }
    if (letter == 'G' || (flags & (kPtAltGps | kPtLink))) gpsInput_ = true;
    intermediate = (flags & kPtIntermediate) != 0;
    type.assign(1, letter);
    if (flags & kPtAltGps) type += 'A';
    if (intermediate) type += shared ? "Is" : "I";
    if (flags & kPtJoin) type += 'J';
    if (flags & kPtLink) type += 'L';
    if (flags & kPtReference) type += 'F';
    return {};
  }

  LineCursor lines_;
  ListingSink& sink_;
  std::string_view line_;
  char separator_ = ',';
  bool mainSeen_ = false;
  bool subSeen_ = false;
  bool dummySeen_ = false;
  bool gpsInput_ = false;
  char datasetCode_ = '\0';
  int datasetPoints_ = 0;
};

// The first reading: how many points each dataset holds, for its heading line.
class PointCounter : public ListingSink {
 public:
  void Dataset(char, std::string_view) override { counts.push_back(0); }
  void Point(PointRow&, bool) override { ++counts.back(); }

  std::vector<int> counts;
};

}  // namespace

// ---------------------------------------------------------------------------------------

void DataListLogic::Refresh(const Survey& survey) {
  std::string unit(UnitName(survey.UnitOfMeasure));
  if (!SubUnitName(survey.UnitOfMeasure).empty()) {
    unit += survey.SubValueSeparator;
    unit += SubUnitName(survey.UnitOfMeasure);
  }
  settings_ = {{{"Unit of Measure:", unit},
                {"File Tag:", survey.FileTag},
                {"Mag Decl'n:", FormatNumber(survey.MagneticDeclination, "#0.###")}}};
  lines_.clear();
  lineInput_.clear();
  inputs_.clear();
  inputText_.clear();
  if (ProcdCkB) {
    ListProcessed(survey);
  } else {
    ListFile(survey.CurrentFileName);
  }
}

void DataListLogic::AddLine(std::string line) {
  lines_.push_back(std::move(line));
  lineInput_.push_back(-1);
}

void DataListLogic::AddPointLine(std::string line, const std::array<std::string_view, 4>& input) {
  lines_.push_back(std::move(line));
  lineInput_.push_back(static_cast<int>(inputs_.size()));
  std::array<TextSpan, 4>& spans = inputs_.emplace_back();
  for (std::size_t i = 0; i < input.size(); ++i) {
    spans[i] = {inputText_.size(), input[i].size()};
    inputText_ += input[i];
  }
}

void DataListLogic::ListProcessed(const Survey& survey) {
  const Layout layout =
      MakeLayout(ShowColumns, true, HasGpsInput(survey), survey.MagneticDeclination != 0);
  heading_ = HeadingLine(layout);
  const ProcessedRows rows(survey, layout);
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    const Dataset& dataset = survey.Datasets[d];
    const char code = DatasetLetter(dataset.DatasetType);
    if (!IsIncluded(IncludeCkB, code)) continue;
    const int start = std::clamp(dataset.DatasetStart, 0, survey.PointCount());
    const int end = std::clamp(survey.DatasetEnd(d), start, survey.PointCount());
    AddLine(DatasetHeadingLine(code, end - start, dataset.DatasetTag));
    for (int p = start; p < end; ++p) {
      const Point& point = survey.Points[p];
      if ((point.PtFlags & kPtIntermediate) && !IncludeCkB[kIncludeIntermediate]) continue;
      const PointRow row = rows.Row(point);
      AddPointLine(PointLine(row, layout), row.input);
    }
    if (HasClosingLine(dataset.DatasetType)) {
      AddLine(ClosingLineRow(dataset, layout, ShowColumns, rows));
    }
  }
}

// The second reading of a good file: its lines as the listing shows them.
class DataListLogic::FileLines : public ListingSink {
 public:
  FileLines(DataListLogic& list, const Layout& layout, std::vector<int> counts)
      : list_(list), layout_(layout), counts_(std::move(counts)) {}

  void Dataset(char code, std::string_view tag) override {
    included_ = IsIncluded(list_.IncludeCkB, code);
    const int count = counts_[dataset_++];
    if (included_) list_.AddLine(DatasetHeadingLine(code, count, tag));
  }

  void Point(PointRow& row, bool intermediate) override {
    if (!included_ || (intermediate && !list_.IncludeCkB[kIncludeIntermediate])) return;
    list_.AddPointLine(PointLine(row, layout_), row.input);
  }

 private:
  DataListLogic& list_;
  const Layout& layout_;
  std::vector<int> counts_;
  std::size_t dataset_ = 0;
  bool included_ = false;
};

void DataListLogic::ListFile(const std::string& path) {
  const std::optional<std::string> text = ReadWholeFile(path);
  PointCounter counter;
  ListingFileReader check(text ? std::string_view(*text) : std::string_view(), counter);
  const std::string fault = text ? check.Read() : std::string(kBadHeader);
  const Layout layout = MakeLayout(ShowColumns, false, check.GpsInput(), false);
  heading_ = HeadingLine(layout);
  if (!fault.empty()) {
    AddLine(kAbortedBadFile);
    AddLine(fault);
    return;
  }
  FileLines lines(*this, layout, std::move(counter.counts));
  ListingFileReader(*text, lines).Read();
}

std::optional<std::string> DataListLogic::EditText(int index) const {
  if (index < 0 || index >= static_cast<int>(lineInput_.size()) || lineInput_[index] < 0) {
    return std::nullopt;
  }
  const std::array<TextSpan, 4>& spans = inputs_[lineInput_[index]];
  auto value = [&](int i) { return inputText_.substr(spans[i].offset, spans[i].size); };
  std::string edit = "I/P-X(B): " + value(0) + "\nI/P-Y(L): " + value(1);
  if (spans[2].size > 0 || spans[3].size > 0) {
    edit += "\nI/P-Long: " + value(2) + "\nI/P-Lat: " + value(3);
  }
  return edit;
}

}  // namespace plotmeter
