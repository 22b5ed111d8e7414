#include "datafile/DataFileReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <string_view>
#include <system_error>

#include "datafile/DataFileSyntax.h"
#include "datafile/FileText.h"
#include "datafile/InputText.h"
#include "datafile/PointTableChecks.h"
#include "model/TypeLetters.h"

namespace plotmeter {

namespace {

constexpr char kFieldSeparatorAtStart = ',';
constexpr char kSubValueSeparatorAtStart = '\\';  // code 92, as the main window sets it
constexpr int kMaxJoinPoints = 2;

// Fault 1 for an input that could not be read, with the system's reason (and the path,
// when there is one) as its detail.
ReadResult CannotRead(const std::string& path, int error) {
  std::string detail = path;
  if (!detail.empty()) detail += ": ";
  detail += std::generic_category().message(error);
  return ReadResult{.fault = kReadCannotOpen, .point = -1, .detail = std::move(detail)};
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

// "L" implies GPS values, so "A" beside it says nothing more; the writer leaves it out.
void SetPointType(const TypeField& type, Point& point) {
  if (const TypeLetter* letter = FindTypeLetter(type.type)) {
    point.PtFlags = letter->flags;
    point.PtMarks = letter->marks;
  }
  const std::uint8_t named = type.Has(kPtLink) ? type.flagBits & ~kPtAltGps : type.flagBits;
  for (const FlagLetter& flag : kFlagLetters) {
    if (named & flag.bit) point.PtFlags |= flag.bit | flag.implies;
  }
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
  // the doubled memory of a growing table. Pages never written cost nothing. Every line
  // ends in LF or CR (CR LF counts twice, which only reserves more).
  void ReservePoints() {
    const auto breaks = static_cast<std::size_t>(
        std::count_if(text_.begin(), text_.end(), [](char c) { return c == '\n' || c == '\r'; }));
    survey_.Points.reserve(std::min<std::size_t>(breaks + 1, kMaxReadPoints + 1));
  }

  int ReadTopAndHeader() {
    std::string_view header;
    std::vector<std::string_view> top;
    if (int fault = lines_.ToHeader(header, &top); fault != 0) return fault;
    const char separator = HeaderSeparator(header);
    if (separator == '\0') return kReadBadHeader;
    FileHeader fields;
    if (int fault = ReadHeaderFields(header, separator, fields); fault != 0) return fault;
    survey_.FieldSeparator = separator;
    survey_.UnitOfMeasure = fields.unit;
    if (fields.options & 1) survey_.FileFlags |= kFileOption;
    survey_.MagneticDeclination = fields.declination;
    if (fields.declination != 0) survey_.FileFlags |= kFileMagnetic;
    survey_.SubValueSeparator = fields.subValueSeparator;
    survey_.FileTag = std::string(fields.tag);
    KeepUserComments(top);
    return 0;
  }

  void KeepUserComments(const std::vector<std::string_view>& top) {
    for (std::string_view line : top) {
      // Trailing separators are a spreadsheet's padding, not the user's words.
      if (!IsGeneratedTopLine(line, survey_.FieldSeparator)) {
        survey_.UserComments.emplace_back(TextAfterFields(line, survey_.FieldSeparator, 0));
      }
    }
  }

  // Comments between the header and the first dataset header; nothing else may stand there.
  int ReadToFirstDataset() {
    std::string_view line;
    if (int fault = lines_.ToFirstDataset(survey_.FieldSeparator, line); fault != 0) return fault;
    return StartDataset(line);
  }

  int ReadDatasets() {
    std::string_view line;
    const char separator = survey_.FieldSeparator;
    while (lines_.NextContentLine(separator, line)) {
      int fault = IsDatasetHeader(line, separator) ? StartDataset(line) : ReadDataLine(line);
      if (fault != 0) return fault;
    }
    return CurrentDatasetIsEmpty() ? kReadBadDatasets : 0;
  }

  bool CurrentDatasetIsEmpty() const {
    return !survey_.Datasets.empty() &&
           survey_.Datasets.back().DatasetStart == survey_.PointCount();
  }

  int StartDataset(std::string_view line) {
    point_ = -1;
    if (CurrentDatasetIsEmpty()) return kReadBadDatasets;
    const DatasetHeader header = ReadDatasetHeader(line, survey_.FieldSeparator);
    if (header.type == 0) return kReadBadDatasetType;
    if ((header.type & kDatasetMain) && survey_.FindDataset(kDatasetMain) >= 0)
      return kReadSecondMain;
    if ((header.type & kDatasetSubDivision) && survey_.FindDataset(kDatasetSubDivision) >= 0) {
      return kReadSecondSubDivision;
    }
    survey_.Datasets.push_back(Dataset{.DatasetType = header.type,
                                       .DatasetStart = survey_.PointCount(),
                                       .DatasetTag = std::string(header.tag)});
    return 0;
  }

  int ReadDataLine(std::string_view line) {
    point_ = survey_.PointCount();
    if (point_ >= kMaxReadPoints) return kReadBadData;
    std::array<std::string_view, 8> fields;
    SplitFields(line, survey_.FieldSeparator, fields);

    Point point;
    std::optional<int> number = ParseWholeNumber(TrimBlanks(fields[0]));
    if (!number || *number < 1) return kReadBadData;
    point.PtNumber = *number;
    if (!ReadPointReference(fields[2], point.PtRef)) return kReadBadData;
    if (!ReadPointReference(fields[3], point.PtTarget)) return kReadBadData;

    TypeField type = ReadTypeField(fields[1]);
    if (int fault = CheckTypeField(type, point); fault != 0) return fault;
    SetPointType(type, point);
    point.InXA = TrimBlanks(fields[4]);
    point.InYL = TrimBlanks(fields[5]);
    point.InGPSLong = TrimBlanks(fields[6]);
    point.InGPSLat = TrimBlanks(fields[7]);

    if (type.Has(kPtJoin) && ++survey_.JoinPointCount > kMaxJoinPoints) return kReadJoinCount;
    if (type.Has(kPtLink) && ++linkCount_ > 1) return kReadSecondLink;
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

    if (type.typeLetters != 1) return kReadTypeLetters;
    if (type.type == 'D' && !dummyStart) return kReadTypeLetters;
    if (type.unknownLetter) return kReadBadFlag;
    if (type.Has(kPtReference) && !type.IsBearing()) return kReadBadFlag;
    if (type.type == 'R' && (type.Has(kPtAltGps) || type.Has(kPtIntermediate) || type.Has(kPtLink)))
      return kReadBadFlag;
    if (type.type == 'D' && type.AnyFlag()) return kReadFlaggedDummy;
    if (type.Has(kPtIntermediate) && type.Has(kPtLink)) return kReadIntermediateLink;
    if (type.Has(kPtIntermediate) && kind == kDatasetPoints) return kReadIntermediateOffLine;
    if (type.Has(kPtIntermediate) && first) return kReadFirstPointUnplaced;
    if (type.Has(kPtIntermediate) && type.IsBearing() && point.PtRef == 0)
      return kReadIntermediateWithoutReference;
    if (point.PtRef == point.PtNumber) return kReadBadReference;
    if ((type.type == 'R' || type.Has(kPtReference)) && point.PtRef == 0) return kReadBadReference;
    if (point.PtTarget == point.PtNumber) return kReadBadTarget;
    if (point.PtRef != 0) return CheckReferencePlace(type, kind, first);
    return 0;
  }

  static int CheckReferencePlace(const TypeField& type, std::uint8_t kind, bool first) {
    bool sharedStart = type.type == 'R' && first;
    switch (kind) {
      case kDatasetLine:
        return type.type == 'R' && !first ? kReadLateSharedReference : 0;
      case kDatasetPoints:
        return type.IsBearing() ? 0 : kReadStandAloneReference;
      case kDatasetSubDivision:
        if (type.type == 'R') return sharedStart ? 0 : kReadLateSharedReference;
        return type.Has(kPtIntermediate) && type.IsBearing() ? 0 : kReadSharedReference;
      default:  // main
        return type.Has(kPtIntermediate) && type.IsBearing() ? 0 : kReadSharedReference;
    }
  }

  Survey& survey_;
  std::string_view text_;
  DataFileLines lines_;
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

ReadResult ReadDataText(Survey& survey, std::string_view text) {
  ResetLoadedFile(survey);
  try {
    return DataFileParser(survey, text).Parse();
  } catch (const std::bad_alloc&) {
    ResetLoadedFile(survey);
    return CannotRead(survey.CurrentFileName, ENOMEM);
  }
}

ReadResult ReadDataFile(Survey& survey, std::istream& in) {
  std::string text;
  if (int error = ReadAllInput(in, text, kMaxReadBytes); error != 0) {
    ResetLoadedFile(survey);
    return CannotRead(survey.CurrentFileName, error);
  }
  ConvertEditorUtf8(text);
  return ReadDataText(survey, text);
}

ReadResult ReadDataFileText(const std::string& path, std::string& text) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const int error = fd < 0 ? errno : ReadAllInput(fd, text, kMaxReadBytes);
  if (fd >= 0) ::close(fd);
  if (error != 0) {
    text = std::string();
    return CannotRead(path, error);
  }
  ConvertEditorUtf8(text);
  return {};
}

ReadResult ReadDataFile(Survey& survey, const std::string& path) {
  survey.CurrentFileName = path;
  std::string text;
  if (ReadResult read = ReadDataFileText(path, text); read.fault != 0) {
    ResetLoadedFile(survey);
    return read;
  }
  return ReadDataText(survey, text);
}

std::string ReadFaultMessage(int code, int reference) {
  switch (code) {
    case kReadCannotOpen:
      return "Cannot open file - check is not being used by another program.";
    case kReadNotThisProgram:
      return "File selected is not for this program.";
    case kReadBadHeader:
      return "File selected has Invalid Header.";
    case kReadBadData:
      return "File selected has Invalid Data.";
    case kReadNoMain:
      return "File must have a 'Main' Dataset.";
    case kReadSecondMain:
      return "File has two 'Main' Datasets present, only one allowed";
    case kReadSecondSubDivision:
      return "File has two 'Sub-division' Datasets present, only one allowed.";
    case kReadBadDatasets:
      return "File has invalid Datasets.";
    case kReadSecondLink:
      return "File has multiple nominated GPS links, only one allowed.";
    case kReadJoinCount:
      return "File may only have 0 or 2 sub-division join points specified.";
    case kReadSubDivisionWithoutJoins:
      return "Sub-division dataset specified without sub-division join points.";
    case kReadNotProcessed:
      return "Data could not be processed, check and";
    case kReadBadReference:
      return "Invalid Line Point Reference specified.";
    case kReadMissingReference:
      return "Non-existent Point Reference [" + std::to_string(reference) + "].";
    case kReadIntermediateOffLine:
      return "Interim Point specified for non-line data, please change";
    case kReadDuplicateNumber:
      return "Duplicate Point Reference specified.";
    case kReadIntermediateLink:
      return "A GPS Link Point may not be an Intermediate Point.";
    case kReadSharedReference:
      return "References to Shared Points applies only to Lines, Points and bearings to "
             "Intermediates.";
    case kReadStandAloneReference:
      return "Stand Alone Point reference only applies if a Bearing value used, delete "
             "reference.";
    case kReadCircularReference:
      return "Cannot resolve data sequence for point reference, check for circular "
             "references.";
    case kReadLateSharedReference:
      return "Reference to a Shared Point only valid for first point of a Line dataset.";
    case kReadIntermediatePastEnd:
      return "Interim Point cannot be past the line's last point.";
    case kReadFirstPointUnplaced:
      return "First point of data set that requires X/Y co-ordinates.";
    case kReadLinkGpsOnly:
      return "GPS link point must have both non-GPS and GPS data.";
    case kReadGpsOnlyBeforeLink:
      return "'GPS Only' data precedes first available link point, cannot process.";
    case kReadIntermediateWithoutReference:
      return "Interim Point specified with bearing must have a reference to a point.";
    case kReadBadFlag:
      return "Invalid Flag item in data.";
    case kReadBadTarget:
      return "Invalid Point Target reference specified.";
    case kReadFlaggedDummy:
      return "Invalid Point flagged as Inactive.";
    case kReadNoDatasets:
      return "No 'data-sets' found in data.";
    case kReadTypeLetters:
      return "Data line with unknown type code.";
    case kReadBadDatasetType:
      return "File header with unknown type code.";
    case kReadBadUnit:
      return "File header with invalid Unit of Measure.";
    case kReadBadSubValueSeparator:
      return "File header with invalid Sub-value separator.";
    case kReadGpsWithoutUnit:
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
