#include "datafile/DataFileWriter.h"

#include <array>
#include <cerrno>
#include <new>
#include <sstream>
#include <string_view>
#include <system_error>

#include "datafile/FileText.h"
#include "datafile/SafeFile.h"
#include "model/TypeLetters.h"
#include "model/ValueFormat.h"

namespace plotmeter {

namespace {

constexpr int kMinimumPoints = 3;
constexpr std::string_view kUnitLine = "// Unit of Measure is ";
// Empty fields between "/Closing Line" and its bearing, so that the values stand under
// the "Bearing" and "Len" headings in a spreadsheet.
constexpr int kClosingLineGap = 10;
constexpr std::array<std::string_view, 8> kEnteredHeadings = {
    "/Pt#", "/Typ", "PtRef#", "PtTgt#", "InXA", "InYL", "InGPSLong", "InGPSLat"};

bool IsLineBreak(char c) { return c == '\n' || c == '\r'; }

bool HasGps(const Point& point) { return (point.PtFlags & kPtGps) != 0; }
bool IsGpsOnly(const Point& point) {
  return (point.PtFlags & (kPtXY | kPtBearing | kPtReference)) == 0;
}

// Free text (tags, comments) keeps its words on one line.
std::string OneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (IsLineBreak(c)) c = ' ';
  }
  return line;
}

std::string CodeText(char c) { return std::to_string(static_cast<unsigned char>(c)); }

class WriteInProgress {
 public:
  explicit WriteInProgress(Survey& survey) : survey_(survey) {
    survey_.WriterOptions |= kWriteInProgress;
  }
  ~WriteInProgress() { survey_.WriterOptions &= static_cast<std::uint8_t>(~kWriteInProgress); }
  WriteInProgress(const WriteInProgress&) = delete;
  WriteInProgress& operator=(const WriteInProgress&) = delete;

 private:
  Survey& survey_;
};

bool DatasetsCoverPoints(const Survey& survey) {
  if (survey.Datasets.empty() || survey.Datasets[0].DatasetStart != 0) return false;
  int previous = 0;
  for (const Dataset& dataset : survey.Datasets) {
    if (DatasetLetter(dataset.DatasetType) == '\0') return false;
    if (dataset.DatasetStart < previous || dataset.DatasetStart > survey.PointCount()) {
      return false;
    }
    previous = dataset.DatasetStart;
  }
  return true;
}

bool GpsWithoutLink(const Survey& survey) {
  bool anyGpsOnly = false, anyPlane = false;
  for (const Point& point : survey.Points) {
    if (point.PtFlags & kPtLink) return false;
    if (HasGps(point) && IsGpsOnly(point)) anyGpsOnly = true;
    if (!IsGpsOnly(point)) anyPlane = true;
  }
  return anyGpsOnly && anyPlane && !(survey.FileFlags & kFileGpsOnly);
}

bool WritesSubUnits(const Survey& survey) {
  return SubUnitsPerUnit(survey.UnitOfMeasure) > 0 && !(survey.WriterOptions & kWritePlainLengths);
}

// Every field the reader reads back must hold neither the separator nor a line break.
bool FieldFits(const Survey& survey, std::string_view field) {
  for (char c : field) {
    if (c == survey.FieldSeparator || IsLineBreak(c)) return false;
  }
  return true;
}

bool EnteredValuesFit(const Survey& survey) {
  for (const Point& point : survey.Points) {
    for (const std::string* value : {&point.InXA, &point.InYL, &point.InGPSLong, &point.InGPSLat}) {
      if (!FieldFits(survey, *value)) return false;
    }
  }
  return true;
}

bool SettingsFit(const Survey& survey) {
  if (survey.FieldSeparator == '\0' || IsLineBreak(survey.DegreeChar)) return false;
  if (WritesSubUnits(survey) && IsLineBreak(survey.SubValueSeparator)) return false;
  // The characters of the header's own fields and of numbers, the dataset marker and the
  // letters of type fields.
  return FieldFits(survey, "#0123456789HXBCGRDAIJLFs") &&
         FieldFits(survey, DecimalText(survey.MagneticDeclination));
}

int CheckWritable(const Survey& survey) {
  if (survey.PointCount() < kMinimumPoints) return kWriteTooFewPoints;
  if (GpsWithoutLink(survey)) return kWriteGpsWithoutLink;
  bool readable = survey.UnitOfMeasure >= 0 && survey.UnitOfMeasure < kUnitCount &&
                  DatasetsCoverPoints(survey) && SettingsFit(survey) && EnteredValuesFit(survey);
  return readable ? 0 : kWriteUnreadable;
}

class DataFileComposer {
 public:
  DataFileComposer(const Survey& survey, std::ostream& out)
      : survey_(survey), out_(out), separator_(survey.FieldSeparator) {
    for (const Point& point : survey.Points) surveyHasGps_ = surveyHasGps_ || HasGps(point);
    bool blankSeparator = separator_ == ' ';
    bearingStyle_ = blankSeparator ? kBearingJoinTight : 0;
    longitudeStyle_ = blankSeparator ? kGpsJoinTight : 0;
    latitudeStyle_ = longitudeStyle_ | kGpsLatitude;
  }

  void Write() {
    WriteTopBlock();
    WriteHeader();
    if (!NoHeadings()) WriteColumnHeadings();
    for (int d = 0; d < survey_.DatasetCount(); ++d) {
      if (survey_.Datasets[d].DatasetStart < survey_.DatasetEnd(d)) WriteDataset(d);
    }
    WriteLine(LeadingField() + "/End data");
  }

 private:
  ValueSettings Values() const { return ValueSettingsOf(survey_); }
  bool PlainLayout() const { return survey_.WriterOptions & kWritePlainLayout; }
  bool NoHeadings() const { return survey_.WriterOptions & kWriteNoHeadings; }
  bool Magnetic() const { return survey_.MagneticDeclination != 0; }
  std::string LeadingField() const { return PlainLayout() ? "" : std::string(1, separator_); }

  void WriteLine(std::string_view line) { out_ << line << '\n'; }

  void WriteTopBlock() {
    std::string unitLine(kUnitLine);
    unitLine += UnitName(survey_.UnitOfMeasure);
    if (WritesSubUnits(survey_)) {
      unitLine += survey_.SubValueSeparator;
      unitLine += SubUnitName(survey_.UnitOfMeasure);
    }
    WriteLine(unitLine);
    for (const std::string& comment : survey_.UserComments) {
      std::string line = OneLine(comment);
      WriteLine(line.starts_with("//") ? line : "// " + line);
    }
    WriteLine("//" + LeadingField());
  }

  void WriteHeader() {
    int options = (survey_.FileFlags & kFileOption ? 1 : 0) + (PlainLayout() ? 2 : 0);
    std::string line = CodeText(separator_);
    for (const std::string& field :
         {std::string("#0092"), std::to_string(survey_.UnitOfMeasure), std::to_string(options),
          DecimalText(survey_.MagneticDeclination), CodeText(survey_.SubValueSeparator)}) {
      line += separator_;
      line += field;
    }
    if (!survey_.FileTag.empty()) {
      line += separator_;
      line += OneLine(survey_.FileTag);
    }
    WriteLine(line);
  }

  void WriteColumnHeadings() {
    WriteLine(LeadingField() + "/ Column Headings (for data lines):");
    std::string line;
    for (std::string_view heading : kEnteredHeadings) AddField(line, heading);
    AddField(line, "X");
    AddField(line, "Y");
    AddField(line, "Bearing");
    if (Magnetic()) AddField(line, "Mag Brg");
    for (std::string_view heading :
         {"Len", "GPSLong", "GPSLat", "AltGPSLong", "AltGPSLat", "AltGPSDelta"}) {
      AddField(line, heading);
    }
    WriteLine(line);
  }

  void AddField(std::string& line, std::string_view field) const {
    if (!line.empty()) line += separator_;
    line += field;
  }

  void WriteDataset(int d) {
    const Dataset& dataset = survey_.Datasets[d];
    int begin = dataset.DatasetStart;
    int end = survey_.DatasetEnd(d);
    WriteLine("/ " + DatasetKindName(dataset, end - begin) + " Dataset Header");
    std::string header = "H";
    header += separator_;
    header += DatasetLetter(dataset.DatasetType);
    if (!dataset.DatasetTag.empty()) {
      header += separator_;
      header += OneLine(dataset.DatasetTag);
    }
    WriteLine(header);
    bool subDivision = dataset.DatasetType & kDatasetSubDivision;
    for (int i = begin; i < end; ++i) WriteDataLine(survey_.Points[i], subDivision);
    if (!NoHeadings() && (dataset.DatasetType & (kDatasetMain | kDatasetSubDivision))) {
      WriteClosingLine(dataset);
    }
  }

  static std::string DatasetKindName(const Dataset& dataset, int points) {
    std::uint8_t type = dataset.DatasetType;
    if (type & kDatasetMain) return "Main";
    if ((type & kDatasetSubDivision) && (type & kDatasetGenerated)) {
      return "Internally generated Sub-division";
    }
    return std::string(DatasetKindWords(DatasetLetter(type), points));
  }

  static std::string PointNumberText(int number) {
    return number != 0 ? std::to_string(number) : "";
  }

  std::string BearingText(float bearing) const {
    return FormatBearing(Values(), bearingStyle_, bearing);
  }

  void WriteDataLine(const Point& point, bool inSubDivision) {
    std::string line = std::to_string(point.PtNumber);
    for (const std::string& field :
         {PointTypeField(point, inSubDivision), PointNumberText(point.PtRef),
          PointNumberText(point.PtTarget), point.InXA, point.InYL, point.InGPSLong, point.InGPSLat,
          FormatLength(Values(), point.X), FormatLength(Values(), point.Y),
          BearingText(point.Bearing)}) {
      line += separator_;
      line += field;
    }
    if (Magnetic()) AddField(line, BearingText(point.Bearing + survey_.MagneticDeclination));
    AddField(line, FormatLength(Values(), point.Len));
    AddField(line, surveyHasGps_ ? FormatGpsAngle(Values(), longitudeStyle_, point.GPSLong) : "");
    AddField(line, surveyHasGps_ ? FormatGpsAngle(Values(), latitudeStyle_, point.GPSLat) : "");
    bool alternate = point.HasAlternate;
    AddField(line, alternate ? FormatGpsAngle(Values(), longitudeStyle_, point.AltGPSLong) : "");
    AddField(line, alternate ? FormatGpsAngle(Values(), latitudeStyle_, point.AltGPSLat) : "");
    line += separator_;
    if (alternate) line += FormatLength(Values(), static_cast<float>(point.AltGPSDelta));
    WriteLine(line);
  }

  void WriteClosingLine(const Dataset& dataset) {
    std::string line = "/Closing Line";
    line.append(kClosingLineGap, separator_);
    line += BearingText(dataset.ClosingBearing);
    if (Magnetic())
      AddField(line, BearingText(dataset.ClosingBearing + survey_.MagneticDeclination));
    AddField(line, FormatLength(Values(), dataset.ClosingLen));
    WriteLine(line);
  }

  const Survey& survey_;
  std::ostream& out_;
  char separator_;
  bool surveyHasGps_ = false;
  std::uint8_t bearingStyle_ = 0;
  std::uint8_t longitudeStyle_ = 0;
  std::uint8_t latitudeStyle_ = kGpsLatitude;
};

}  // namespace

int WriteSurvey(Survey& survey, std::ostream& out) {
  WriteInProgress writing(survey);
  if (int fault = CheckWritable(survey); fault != 0) return fault;
  DataFileComposer(survey, out).Write();
  out.flush();
  return out ? 0 : kWriteCannotOpen;
}

bool WriteDataFile(Survey& survey, const std::string& path, UserDialogs& dialogs) {
  int fault = 0;
  std::string reason;
  try {
    std::ostringstream text;
    fault = WriteSurvey(survey, text);
    if (fault == 0) {
      SaveResult saved = ReplaceFileSafely(path, text.view());
      if (!saved.saved) {
        fault = kWriteCannotOpen;
        reason = std::move(saved.reason);
      }
    }
  } catch (const std::bad_alloc&) {
    fault = kWriteCannotOpen;
    reason = std::generic_category().message(ENOMEM);
  }
  if (fault == 0) return true;
  Alert(dialogs, MessageBox{.title = "Write File Abort",
                            .text = WriteFaultMessage(fault),
                            .icon = Icon::Critical,
                            .buttons = Buttons::Ok,
                            .defaultButton = Button::Ok,
                            .detail = reason.empty() ? reason : path + ": " + reason});
  return false;
}

std::string WriteFaultMessage(int fault) {
  switch (fault) {
    case kWriteCannotOpen:
      return "Cannot open file - check is not being used by another program.";
    case kWriteGpsWithoutLink:
      return "GPS values present without a GPS linked point.";
    default:
      return "Unidentified processing error";
  }
}

}  // namespace plotmeter
