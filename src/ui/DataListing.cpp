#include "ui/DataListing.h"

#include <algorithm>
#include <array>
#include <new>
#include <string_view>
#include <utility>

#include "datafile/DataFileReader.h"
#include "datafile/DataFileSyntax.h"
#include "datafile/FileText.h"
#include "model/NumberFormat.h"
#include "model/TypeLetters.h"
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
  line += ' ';
  line += row.target.empty() ? std::string("   ") : FormatText(row.target, "@@@");
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
  const std::string_view words = DatasetKindWords(code, pointCount);
  // Built by appending: g++ 12 -O3 wrongly warns (-Wrestrict) on text put before a temporary.
  std::string line = "ERROR Invalid Dataset code";
  if (!words.empty())
    line = std::string(1, '[').append(1, code).append("] Dataset as ").append(words);
  if (!tag.empty()) {
    line += " for '";
    line += tag;
    line += "'";
  }
  return line;
}

// ---------------------------------------------------------------------------------------
// The processed survey in memory

std::string NumberOrNone(int number) { return number > 0 ? std::to_string(number) : ""; }

bool HasGpsInput(const Survey& survey) {
  return std::any_of(survey.Points.begin(), survey.Points.end(),
                     [](const Point& point) { return (point.PtFlags & kPtGps) != 0; });
}

// Formatting as on screen: plain decimal numbers, whatever a write left behind.
ValueSettings ScreenFormatting(const Survey& survey) {
  ValueSettings values = ValueSettingsOf(survey);
  values.writerOptions &= static_cast<std::uint8_t>(~kWriteInProgress);
  return values;
}

class ProcessedRows {
 public:
  ProcessedRows(const Survey& survey, const Layout& layout)
      : format_(ScreenFormatting(survey)),
        declination_(survey.MagneticDeclination),
        gpsComputed_(HasGpsInput(survey)) {
    for (const Group& group : layout.groups) {
      for (Column column : group.columns) shown_[column] = true;
    }
  }

  PointRow Row(const Point& point) const {
    PointRow row;
    row.number = std::to_string(point.PtNumber);
    row.type = PointTypeField(point);
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
    float magnetic = bearing + declination_;
    return FormatBearing(format_, 0, magnetic);
  }
  std::string Length(float length) const { return FormatLength(format_, length); }

 private:
  ValueSettings format_;
  float declination_;
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
// The data file as the reader reads it, with the listing's own checks and reasons

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

// The type letter and the flags as the line gives them.
std::string TypeText(const TypeField& type) {
  return type.type + FlagLettersOf(type.flagBits, type.flagMarks);
}

// What the reading hands on of each dataset and data line, as views into the file text.
class FileSink {
 public:
  virtual ~FileSink() = default;
  virtual void Dataset(char code, std::string_view tag) = 0;
  virtual void Point(PointRow& row, bool intermediate) = 0;
};

// Reads the data file's text by the reader's own reading of its parts; the first fault
// ends the reading with the listing's reason for it. The lines that pass go to the sink.
class ListingFileReader {
 public:
  ListingFileReader(std::string_view text, FileSink& sink) : lines_(text), sink_(sink) {}

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
    std::string_view header;
    if (lines_.ToHeader(header) != 0) return std::string(kBadHeader);
    separator_ = HeaderSeparator(header);
    if (separator_ == '\0') return std::string(kBadHeader);
    FileHeader fields;
    if (ReadHeaderFields(header, separator_, fields) != 0) return std::string(kBadHeaderData);
    std::string_view line;
    if (lines_.ToFirstDataset(separator_, line) != 0) return std::string(kBadDatasets);
    do {
      std::string fault =
          IsDatasetHeader(line, separator_) ? StartDataset(line) : std::string(ReadPoint(line));
      if (!fault.empty()) return fault;
    } while (lines_.NextContentLine(separator_, line));
    return {};
  }

  std::string EndDataset() const {
    return datasetCode_ != '\0' && datasetPoints_ == 0 ? std::string(kEmptyDataset) : "";
  }

  std::string StartDataset(std::string_view line) {
    if (std::string fault = EndDataset(); !fault.empty()) return fault;
    const DatasetHeader header = ReadDatasetHeader(line, separator_);
    const char letter = DatasetLetter(header.type);
    if (letter == '\0') {
      std::string fault = "'";
      fault += header.code;
      fault += "'";
      fault += kInvalidDatasetCode;
      return fault;
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
    sink_.Dataset(letter, header.tag);
    return {};
  }

  std::string_view ReadPoint(std::string_view line) {
    std::array<std::string_view, 8> fields;
    SplitFields(line, separator_, fields);
    for (auto& field : fields) field = TrimBlanks(field);
    if (fields[1].empty()) return kNoTypeEntry;
    const TypeField type = ReadTypeField(fields[1]);
    if (const std::string_view fault = CheckType(type); !fault.empty()) return fault;
    if (type.type == 'G' || type.Has(kPtAltGps) || type.Has(kPtLink)) gpsInput_ = true;
    PointRow row;
    row.type = TypeText(type);
    row.number = fields[0];
    row.ref = NoneWhenZero(fields[2]);
    row.target = NoneWhenZero(fields[3]);
    row.input = {fields[4], fields[5], fields[6], fields[7]};
    FillInputValues(row);
    ++datasetPoints_;
    sink_.Point(row, type.Has(kPtIntermediate));
    return {};
  }

  // A reason when the field holds a letter that is neither type nor flag, several types
  // or none, or a dummy start ("D") out of place.
  std::string_view CheckType(const TypeField& type) {
    if (type.unknownLetter) return kUnknownType;
    if (type.typeLetters > 1) return kMultipleTypes;
    if (type.typeLetters == 0) return kNoType;
    if (type.type == 'D') {
      if (datasetCode_ != 'S') return kUnknownType;
      if (dummySeen_) return kMultipleDummies;
      dummySeen_ = true;
    }
    return {};
  }

  static std::string NoneWhenZero(std::string_view text) {
    return text == "0" ? std::string() : std::string(text);
  }

  DataFileLines lines_;
  FileSink& sink_;
  char separator_ = ',';
  bool mainSeen_ = false;
  bool subSeen_ = false;
  bool dummySeen_ = false;
  bool gpsInput_ = false;
  char datasetCode_ = '\0';
  int datasetPoints_ = 0;
};

// The first reading: how many points each dataset holds, for its heading line.
class PointCounter : public FileSink {
 public:
  void Dataset(char, std::string_view) override { counts.push_back(0); }
  void Point(PointRow&, bool) override { ++counts.back(); }

  std::vector<int> counts;
};

}  // namespace

// ---------------------------------------------------------------------------------------

// Where the listing's lines go as they are made.
class DataListLogic::Lines {
 public:
  virtual ~Lines() = default;
  // The settings labels and the heading are set; no line has come yet.
  virtual void Begin() {}
  virtual void Add(std::string line) = 0;
  // A point line and its typed input: X or bearing, Y or length, GPS longitude, latitude.
  virtual void AddPoint(std::string line, const std::array<std::string_view, 4>& input) = 0;
};

// Kept in `DataLst`, with the input that "Edit" shows.
class DataListLogic::KeptLines : public Lines {
 public:
  explicit KeptLines(DataListLogic& list) : list_(list) {}

  void Add(std::string line) override {
    list_.lines_.push_back(std::move(line));
    list_.lineInput_.push_back(-1);
  }

  void AddPoint(std::string line, const std::array<std::string_view, 4>& input) override {
    list_.lines_.push_back(std::move(line));
    list_.lineInput_.push_back(static_cast<int>(list_.inputs_.size()));
    std::array<TextSpan, 4>& spans = list_.inputs_.emplace_back();
    for (std::size_t i = 0; i < input.size(); ++i) {
      spans[i] = {list_.inputText_.size(), input[i].size()};
      list_.inputText_ += input[i];
    }
  }

 private:
  DataListLogic& list_;
};

// Handed on one by one and not kept.
class DataListLogic::HandedLines : public Lines {
 public:
  HandedLines(const DataListLogic& list, ListingOutput& output) : list_(list), output_(output) {}

  void Begin() override { output_.Begin(list_); }
  void Add(std::string line) override { output_.Line(line); }
  void AddPoint(std::string line, const std::array<std::string_view, 4>&) override {
    output_.Line(line);
  }

 private:
  const DataListLogic& list_;
  ListingOutput& output_;
};

void DataListLogic::Refresh(const Survey& survey) {
  try {
    Start(survey);
    KeptLines kept(*this);
    if (ProcdCkB) {
      ListProcessed(survey, kept);
      return;
    }
    std::string text;
    const bool read = ReadDataFileText(survey.CurrentFileName, text).fault == 0;
    const std::string_view view(text);
    ListFile(read ? &view : nullptr, kept);
  } catch (const std::bad_alloc&) {
    // A listing too long for the memory left is given up, its memory freed, and shown as
    // the listing of a file that cannot be read.
    Start(survey);
    KeptLines kept(*this);
    ListFile(nullptr, kept);
  }
}

void DataListLogic::Write(const Survey& survey, std::string_view fileText, ListingOutput& output) {
  Start(survey);
  HandedLines handed(*this, output);
  if (ProcdCkB) {
    ListProcessed(survey, handed);
  } else {
    ListFile(&fileText, handed);
  }
}

void DataListLogic::Start(const Survey& survey) {
  std::string unit(UnitName(survey.UnitOfMeasure));
  if (!SubUnitName(survey.UnitOfMeasure).empty()) {
    unit += survey.SubValueSeparator;
    unit += SubUnitName(survey.UnitOfMeasure);
  }
  settings_ = {{{"Unit of Measure:", unit},
                {"File Tag:", survey.FileTag},
                {"Mag Decl'n:", FormatNumber(survey.MagneticDeclination, "#0.###")}}};
  // Assigned afresh, so that the lines of a long listing give their memory back.
  lines_ = {};
  lineInput_ = {};
  inputs_ = {};
  inputText_ = {};
}

void DataListLogic::ListProcessed(const Survey& survey, Lines& lines) {
  const Layout layout =
      MakeLayout(ShowColumns, true, HasGpsInput(survey), survey.MagneticDeclination != 0);
  heading_ = HeadingLine(layout);
  lines.Begin();
  const ProcessedRows rows(survey, layout);
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    const Dataset& dataset = survey.Datasets[d];
    const char code = DatasetLetter(dataset.DatasetType);
    if (!IsIncluded(IncludeCkB, code)) continue;
    const int start = std::clamp(dataset.DatasetStart, 0, survey.PointCount());
    const int end = std::clamp(survey.DatasetEnd(d), start, survey.PointCount());
    lines.Add(DatasetHeadingLine(code, end - start, dataset.DatasetTag));
    for (int p = start; p < end; ++p) {
      const Point& point = survey.Points[p];
      if ((point.PtFlags & kPtIntermediate) && !IncludeCkB[kIncludeIntermediate]) continue;
      const PointRow row = rows.Row(point);
      lines.AddPoint(PointLine(row, layout), row.input);
    }
    if (HasClosingLine(dataset.DatasetType)) {
      lines.Add(ClosingLineRow(dataset, layout, ShowColumns, rows));
    }
  }
}

// The second reading of a good file: its lines as the listing shows them.
class DataListLogic::FileLines : public FileSink {
 public:
  FileLines(const DataListLogic& list, const Layout& layout, std::vector<int> counts, Lines& lines)
      : list_(list), layout_(layout), counts_(std::move(counts)), lines_(lines) {}

  void Dataset(char code, std::string_view tag) override {
    included_ = IsIncluded(list_.IncludeCkB, code);
    const int count = counts_[dataset_++];
    if (included_) lines_.Add(DatasetHeadingLine(code, count, tag));
  }

  void Point(PointRow& row, bool intermediate) override {
    if (!included_ || (intermediate && !list_.IncludeCkB[kIncludeIntermediate])) return;
    lines_.AddPoint(PointLine(row, layout_), row.input);
  }

 private:
  const DataListLogic& list_;
  const Layout& layout_;
  std::vector<int> counts_;
  Lines& lines_;
  std::size_t dataset_ = 0;
  bool included_ = false;
};

void DataListLogic::ListFile(const std::string_view* text, Lines& lines) {
  PointCounter counter;
  ListingFileReader check(text ? *text : std::string_view(), counter);
  const std::string fault = text ? check.Read() : std::string(kBadHeader);
  const Layout layout = MakeLayout(ShowColumns, false, check.GpsInput(), false);
  heading_ = HeadingLine(layout);
  lines.Begin();
  if (!fault.empty()) {
    lines.Add(kAbortedBadFile);
    lines.Add(fault);
    return;
  }
  FileLines fileLines(*this, layout, std::move(counter.counts), lines);
  ListingFileReader(*text, fileLines).Read();
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
