#include "ui/DataInputLogic.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <sstream>

#include "datafile/DataFileReader.h"
#include "datafile/DataFileWriter.h"
#include "datafile/FileText.h"
#include "datafile/LoadCheck.h"
#include "geometry/ResolvePoints.h"
#include "model/GpsText.h"
#include "model/NumberFormat.h"
#include "model/ValueText.h"
#include "ui/EntryChecks.h"

namespace plotmeter {

namespace {

constexpr std::uint8_t kModeMarks = kModifyMode | kInsertMode | kNewDataMode;
constexpr float kMaxDeclination = 360;

const std::array<const char*, 5> kInputTypes = {"Co-ordinates", "Bearing (True)",
                                                "Bearing (Magnetic)", "Reference to Point",
                                                "None (GPS only)"};
const std::array<const char*, 3> kQualifiers = {"As Intermediate", "Sub-division Join", "GPS Link"};
const std::array<const char*, 5> kDatasetKinds = {"Main (Perimeter)", "Main (non-Perimeter)",
                                                  "Sub-division", "Stand-alone Line",
                                                  "Stand-alone Point(s)"};
const std::array<std::uint8_t, 5> kDatasetKindTypes = {kTypeM, kTypeN, kTypeS, kTypeL, kTypeP};
// Hemisphere lists: the stored letter is the item's first character.
const std::array<std::vector<std::string>, 2> kHemispheres = {
    std::vector<std::string>{"East", "West"}, std::vector<std::string>{"North", "South"}};

std::string Name(std::string_view name, int index) {
  return std::string(name) + "_" + std::to_string(index);
}

std::string Trimmed(std::string_view text) {
  std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return "";
  std::size_t last = text.find_last_not_of(" \t");
  return std::string(text.substr(first, last - first + 1));
}

bool IsBlank(const std::string& text) { return Trimmed(text).empty(); }

// A tag is the end of a line of the data file: line breaks typed or pasted into it are
// dropped, and it is kept as the file gives it back, without blanks around it or
// separators at its end.
std::string TagAsFiled(std::string_view text, char separator) {
  std::string line;
  for (char c : text) {
    if (c != '\r' && c != '\n') line += c;
  }
  return std::string(TextAfterFields(line, separator, 0));
}

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

int TypeIndexOf(const Point& point) {
  std::uint8_t input = point.PtFlags & kPtInputMask;
  if ((input & ~kPtIntermediate) == kPtReference) return kTypeReference;
  if (input & kPtXY) return kTypeCoordinates;
  if (input & kPtBearing) {
    return point.PtMarks & kMarkCompass ? kTypeBearingMagnetic : kTypeBearingTrue;
  }
  if (input & kPtGps) return kTypeGpsOnly;
  return kTypeCoordinates;
}

bool IsBearingType(int type) { return type == kTypeBearingTrue || type == kTypeBearingMagnetic; }

// Whether the point may name a linked point ("PtRef#"): a reference, or a bearing taken
// from another point on a line, among stand-alone points or for an intermediate point. A
// main or sub-division shape point is measured from the point before it.
bool LinkAllowed(const Point& point, int type, std::uint8_t datasetType) {
  if (type == kTypeReference) return true;
  if (!IsBearingType(type)) return false;
  return (point.PtFlags & kPtIntermediate) || (datasetType & (kDatasetLine | kDatasetPoints));
}

std::optional<double> ReadGps(const Survey& survey, std::string_view text, bool latitude) {
  return latitude ? ParseGpsLatitude(survey, text) : ParseGpsLongitude(survey, text);
}

// A stored GPS value split into its hemisphere (list item) and the rest. The letter
// normally comes first; a letter behind the angle or a sign (files made elsewhere) is
// taken as well when the value reads the same with the letter in front.
std::pair<int, std::string> SplitGps(const Survey& survey, const std::string& stored,
                                     bool latitude) {
  std::string text = Trimmed(stored);
  if (text.empty()) return {0, ""};
  const std::vector<std::string>& items = kHemispheres[latitude ? 1 : 0];
  for (int item = 0; item < 2; ++item) {
    if (Upper(text.front()) == items[item][0]) return {item, Trimmed(text.substr(1))};
  }
  std::optional<double> value = ReadGps(survey, text, latitude);
  std::optional<std::pair<int, std::string>> split;
  for (int item = 0; item < 2 && !split; ++item) {
    if (Upper(text.back()) == items[item][0]) {
      split = std::pair{item, Trimmed(text.substr(0, text.size() - 1))};
    }
  }
  if (!split && text.front() == '-') split = std::pair{1, Trimmed(text.substr(1))};
  if (split && value &&
      ReadGps(survey, items[split->first][0] + split->second, latitude) == value) {
    return *split;
  }
  return {0, text};
}

bool SameEntry(const Point& a, const Point& b) {
  return a.PtFlags == b.PtFlags && a.PtMarks == b.PtMarks && a.PtRef == b.PtRef &&
         a.PtTarget == b.PtTarget && a.InXA == b.InXA && a.InYL == b.InYL &&
         a.InGPSLong == b.InGPSLong && a.InGPSLat == b.InGPSLat;
}

// The positions of the last processing may be missing (points entered since) or stale;
// the entry check compares against positions worked out now, when the data resolves.
void RefreshPositions(Survey& survey, const ProcessingState& state) {
  Survey resolved = survey;
  ProcessingState scratch = state;
  UnseenDialogs quiet;
  if (!ResolvePoints(resolved, scratch, kFirstPass, quiet)) return;
  for (int i = 0; i < survey.PointCount(); ++i) {
    survey.Points[i].X = resolved.Points[i].X;
    survey.Points[i].Y = resolved.Points[i].Y;
  }
}

// The fault that loading the survey's file would report, when it would report one: the
// data file's rules (the one main dataset, two join points, where a reference may stand)
// reach further than processing. A survey that cannot be written at all is left to
// "Save", which says why.
std::optional<std::string> FaultOnLoading(Survey& survey) {
  std::stringstream file;
  if (WriteSurvey(survey, file) != 0) return std::nullopt;
  Survey loaded;
  ReadResult read = ReadDataFile(loaded, file);
  UnseenDialogs quiet;
  if (CheckLoadedData(loaded, read, quiet)) return std::nullopt;
  return quiet.lastText;
}

MessageBox Question(std::string text) {
  return MessageBox{.title = kPointEditTitle,
                    .text = std::move(text),
                    .icon = Icon::Question,
                    .buttons = Buttons::YesNo,
                    .defaultButton = Button::No};
}

}  // namespace

DataInputLogic::DataInputLogic(Survey& survey, ProcessingState& state, EditState& edit,
                               UndoSnapshot& snapshot, UserDialogs& dialogs)
    : survey_(survey), state_(state), edit_(edit), snapshot_(snapshot), dialogs_(dialogs) {
  auto add = [this](const std::string& name, ControlKind kind, std::string text = "") {
    controls_[name] = ControlState{.kind = kind, .text = std::move(text)};
  };
  for (const char* label :
       {"PointValHdrLbl", "PointValLbl", "TgtPtLbl", "LenNoteLbl", "AngleNoteLbl"}) {
    add(label, ControlKind::Label);
  }
  add("AddNoteLbl", ControlKind::Label, "inserted AFTER the selected point");
  add("PtTypCmb", ControlKind::List);
  Ctl("PtTypCmb").items.assign(kInputTypes.begin(), kInputTypes.end());
  add("GPSTxtHdrLbl", ControlKind::Label, "GPS");
  for (int i = 0; i < 2; ++i) {
    add(Name("DataTxt", i), ControlKind::Text);
    add(Name("DataTxtLbl", i), ControlKind::Label);
    add(Name("GPSTxt", i), ControlKind::Text);
    add(Name("GPSCmb", i), ControlKind::List);
    Ctl("GPSCmb", i).items = kHemispheres[i];
    add(Name("GPSTxtLbl", i), ControlKind::Label, i == 0 ? "Long" : "Lat");
    add(Name("NxtPrevBtn", i), ControlKind::Button, i == 0 ? "Next" : "Previous");
    add(Name("DSNxtPrevBtn", i), ControlKind::Button, i == 0 ? "Next" : "Previous");
    add(Name("ExitBtn", i), ControlKind::Button, i == 0 ? "Apply" : "Cancel");
  }
  for (int i = 0; i < 3; ++i) add(Name("PtQualifCkB", i), ControlKind::Check, kQualifiers[i]);
  add("TypFme", ControlKind::Frame, "Dataset As");
  for (int i = 0; i < 5; ++i) add(Name("TypOpt", i), ControlKind::Option, kDatasetKinds[i]);
  for (const char* text : {"DSTagTxt", "FileTagTxt", "MagDecTxt"}) add(text, ControlKind::Text);
  add("UOMCmb", ControlKind::List);
}

const ControlState& DataInputLogic::Control(std::string_view objectName) const {
  static const ControlState kNone{.enabled = false, .visible = false};
  auto found = controls_.find(objectName);
  return found == controls_.end() ? kNone : found->second;
}

ControlState& DataInputLogic::Ctl(std::string_view name) { return controls_.find(name)->second; }

ControlState& DataInputLogic::Ctl(std::string_view name, int index) {
  return Ctl(Name(name, index));
}

bool DataInputLogic::Acting(std::string_view name) const {
  return !filling_ && IsOpen() && current_ >= 0 && Control(name).enabled;
}

int DataInputLogic::CurrentPoint() const {
  return current_ < 0 ? -1 : current_ - survey_.Datasets[dataset_].DatasetStart;
}

std::uint8_t DataInputLogic::CurrentInputType() const {
  return current_ < 0 ? 0 : static_cast<std::uint8_t>(1u << TypeIndexOf(Current()));
}

// ---------------------------------------------------------------------------------------
// Opening, and the point in the fields.

void DataInputLogic::Open() {
  std::uint8_t dialog = edit_.Dialog;
  mode_ = (dialog & kModifyMode)   ? kModifyMode
          : (dialog & kInsertMode) ? kInsertMode
                                   : kNewDataMode;
  if (mode_ != kNewDataMode) TakeUndoSnapshot(survey_, snapshot_);
  TakeUndoSnapshot(survey_, opening_);
  changesAtOpen_ = edit_.Changes;
  outcome_ = DialogOutcome::Open;
  refused_ = {};
  if (survey_.Datasets.empty()) {
    survey_.Datasets.push_back(
        Dataset{.DatasetType = kTypeM, .DatasetStart = survey_.PointCount()});
  }
  int selected = state_.SelectedPoint;
  bool hasSelection = selected >= 0 && selected < survey_.PointCount();
  int d = hasSelection ? DatasetOfPoint(survey_, selected) : survey_.DatasetCount() - 1;
  int count = DatasetPointCount(survey_, d);
  if (mode_ == kModifyMode && hasSelection) {
    LoadPoint(selected);
  } else if (mode_ == kInsertMode && hasSelection && HasRoomForPoint()) {
    BeginNewPoint(d, selected - survey_.Datasets[d].DatasetStart + 1);
  } else if (HasRoomForPoint() || count == 0) {
    BeginNewPoint(d, count);
  } else {
    LoadPoint(survey_.DatasetEnd(d) - 1);
  }
}

bool DataInputLogic::HasRoomForPoint() const { return survey_.PointCount() < kPointLimit; }

void DataInputLogic::LoadPoint(int index) {
  current_ = index;
  dataset_ = DatasetOfPoint(survey_, index);
  original_ = Current();
  newEntry_ = false;
  edit_.Dialog &= static_cast<std::uint8_t>(~kEntryMarks);
  FillPointFields();
}

void DataInputLogic::BeginNewPoint(int dataset, int position) {
  Point point;
  point.PtNumber = UnusedPointNumber(survey_);
  point.PtFlags = kPtXY;
  if (position > 0) {
    // A traverse is usually entered in one way: the new point takes the input type of
    // the point before it.
    const Point& before = survey_.Points[survey_.Datasets[dataset].DatasetStart + position - 1];
    int type = TypeIndexOf(before);
    if (type != kTypeReference) {
      point.PtFlags = before.PtFlags & (kPtXY | kPtBearing);
      if (type == kTypeGpsOnly) point.PtFlags = kPtGps;
      point.PtMarks = before.PtMarks & kMarkCompass;
    }
  }
  current_ = InsertPoint(survey_, dataset, position, point);
  dataset_ = dataset;
  original_ = Current();
  newEntry_ = true;
  edit_.Dialog = static_cast<std::uint8_t>((edit_.Dialog & ~kEntryMarks) | kEntryStarted);
  FillPointFields();
}

void DataInputLogic::BeginNewDataset() {
  std::uint8_t type = survey_.FindDataset(kDatasetMain) < 0 ? kTypeM : kTypeL;
  survey_.Datasets.push_back(Dataset{.DatasetType = type, .DatasetStart = survey_.PointCount()});
  BeginNewPoint(survey_.DatasetCount() - 1, 0);
}

// The new point goes, and a dataset left empty goes with it unless it is the only one (a
// data file holds no empty dataset).
void DataInputLogic::DropNewPoint() {
  RemovePoint(survey_, current_);
  if (DatasetPointCount(survey_, dataset_) == 0 && survey_.DatasetCount() > 1) {
    survey_.Datasets.erase(survey_.Datasets.begin() + dataset_);
    dataset_ = std::max(dataset_ - 1, 0);
  }
  current_ = -1;
  newEntry_ = false;
  edit_.Dialog &= static_cast<std::uint8_t>(~kEntryMarks);
}

// The point at `position` of dataset `dataset`, or the nearest there is.
void DataInputLogic::LoadNearest(int dataset, int position) {
  dataset = std::min(dataset, survey_.DatasetCount() - 1);
  int count = DatasetPointCount(survey_, dataset);
  if (count == 0) {
    BeginNewPoint(dataset, 0);
  } else {
    LoadPoint(survey_.Datasets[dataset].DatasetStart + std::clamp(position, 0, count - 1));
  }
}

void DataInputLogic::FillPointFields() {
  filling_ = true;
  const Point& point = Current();
  refused_ = {};
  Ctl("DataTxt", 0).text = point.InXA;
  Ctl("DataTxt", 1).text = point.InYL;
  FillGps(0);
  FillGps(1);
  Ctl("DSTagTxt").text = survey_.Datasets[dataset_].DatasetTag;
  Ctl("FileTagTxt").text = survey_.FileTag;
  Ctl("MagDecTxt").text = FormatNumber(survey_.MagneticDeclination, "#0.######");
  filling_ = false;
  RefreshPointFields();
}

void DataInputLogic::FillGps(int index) {
  const Point& point = Current();
  auto [item, text] = SplitGps(survey_, index == 0 ? point.InGPSLong : point.InGPSLat, index == 1);
  Ctl("GPSCmb", index).index = item;
  Ctl("GPSTxt", index).text = text;
}

void DataInputLogic::ShowMovedTo() {
  selectionText_ = "Point " + std::to_string(current_ + 1) + " selected";
  if (onSelectionText) onSelectionText(selectionText_);
}

// ---------------------------------------------------------------------------------------
// Typed values and choices.

// The status of what a field holds, read as the current input type reads it.
std::uint8_t DataInputLogic::CheckField(int field) {
  if (field < 2) {
    const std::string& text = Ctl("DataTxt", field).text;
    bool bearing = field == 0 && IsBearingType(TypeIndexOf(Current()));
    return CheckEntryText(survey_, bearing ? EntryKind::Bearing : EntryKind::Length, text);
  }
  int index = field - 2;
  const ControlState& list = Ctl("GPSCmb", index);
  return CheckEntryText(survey_, index == 0 ? EntryKind::GpsLongitude : EntryKind::GpsLatitude,
                        Ctl("GPSTxt", index).text, list.items[list.index][0]);
}

// Beeps and shows the entry fault of `status`; false when there is none.
bool DataInputLogic::Refuse(std::uint8_t status) {
  std::optional<MessageBox> box = EntryFaultBox(status, survey_.UnitOfMeasure);
  if (!box) return false;
  Alert(dialogs_, *box);
  return true;
}

void DataInputLogic::TypeDataTxt(int index, std::string_view text) {
  if (index < 0 || index > 1 || !Acting(Name("DataTxt", index))) return;
  Ctl("DataTxt", index).text = std::string(text);
  refused_[index] = Refuse(CheckField(index));
  if (refused_[index]) return;
  std::string value = Trimmed(text);
  (index == 0 ? Current().InXA : Current().InYL) = value;
  if (value.empty()) return;
  MarkValueChanged();
  RefreshPointFields();
}

void DataInputLogic::TypeGPSTxt(int index, std::string_view text) {
  if (index < 0 || index > 1 || !Acting(Name("GPSTxt", index))) return;
  Ctl("GPSTxt", index).text = std::string(text);
  StoreGps(index);
}

void DataInputLogic::ChooseGPSCmb(int index, int item) {
  if (index < 0 || index > 1 || item < 0 || item > 1 || !Acting(Name("GPSCmb", index))) return;
  if (Ctl("GPSCmb", index).index == item) return;
  Ctl("GPSCmb", index).index = item;
  StoreGps(index);
}

// The GPS value is kept behind its hemisphere letter ("S33.5").
void DataInputLogic::StoreGps(int index) {
  refused_[2 + index] = Refuse(CheckField(2 + index));
  if (refused_[2 + index]) return;
  const ControlState& list = Ctl("GPSCmb", index);
  std::string value = Trimmed(Ctl("GPSTxt", index).text);
  if (!value.empty()) value = list.items[list.index][0] + value;
  (index == 0 ? Current().InGPSLong : Current().InGPSLat) = value;
  RebuildFlags(TypeIndexOf(Current()));
  if (value.empty()) return;
  MarkValueChanged();
  RefreshPointFields();
}

void DataInputLogic::ChoosePtTypCmb(int item) {
  if (item < 0 || item >= static_cast<int>(kInputTypes.size()) || !Acting("PtTypCmb")) return;
  if (item == TypeIndexOf(Current())) return;
  RebuildFlags(item);
  ClearDisabledLength();
  MarkValueChanged();
  RecheckFieldsQuietly();
  RefreshPointFields();
}

void DataInputLogic::TickPtQualifCkB(int index, bool ticked) {
  if (index < 0 || index > 2 || !Acting(Name("PtQualifCkB", index))) return;
  constexpr std::array<std::uint8_t, 3> kBits = {kPtIntermediate, kPtJoin, kPtLink};
  Point& point = Current();
  if (((point.PtFlags & kBits[index]) != 0) == ticked) return;
  if (ticked) {
    point.PtFlags |= kBits[index];
  } else {
    point.PtFlags &= static_cast<std::uint8_t>(~kBits[index]);
  }
  RebuildFlags(TypeIndexOf(point));
  ClearDisabledLength();
  RecountJoinPoints(survey_);
  MarkValueChanged();
  RefreshPointFields();
}

void DataInputLogic::LinkToPoint(int pointNumber) {
  if (!Acting("TgtPtLbl")) return;
  bool known = false;
  for (const Point& point : survey_.Points) known = known || point.PtNumber == pointNumber;
  if (pointNumber < 0 || pointNumber == Current().PtNumber || (pointNumber != 0 && !known)) {
    Refuse(kEntryInvalid);
    return;
  }
  Current().PtRef = pointNumber;
  RebuildFlags(TypeIndexOf(Current()));
  MarkValueChanged();
  RefreshPointFields();
}

// The point's flags from its input type, its qualifiers, its GPS values and its link.
void DataInputLogic::RebuildFlags(int typeIndex) {
  Point& point = Current();
  std::uint8_t flags = point.PtFlags & (kPtIntermediate | kPtJoin | kPtLink);
  point.PtMarks &= static_cast<std::uint8_t>(~kMarkCompass);
  switch (typeIndex) {
    case kTypeCoordinates:
      flags |= kPtXY;
      break;
    case kTypeBearingMagnetic:
      point.PtMarks |= kMarkCompass;
      [[fallthrough]];
    case kTypeBearingTrue:
      flags |= kPtBearing;
      break;
    case kTypeReference:
      // A reference only shares another point: no GPS values, no qualifier but the join.
      flags = (flags & kPtJoin) | kPtReference;
      point.InGPSLong.clear();
      point.InGPSLat.clear();
      break;
    default:
      flags |= kPtGps;
      break;
  }
  if (typeIndex != kTypeCoordinates) point.PtMarks &= static_cast<std::uint8_t>(~kMarkDummy);
  bool hasGps = !IsBlank(point.InGPSLong) || !IsBlank(point.InGPSLat);
  if (flags & kPtLink) {
    flags |= kPtGps;
  } else if (hasGps && typeIndex != kTypeGpsOnly && typeIndex != kTypeReference) {
    flags |= kPtGps | kPtAltGps;
  }
  point.PtFlags = flags;
  if (!LinkAllowed(point, typeIndex, survey_.Datasets[dataset_].DatasetType)) point.PtRef = 0;
  // A bearing from a linked point ("F"); an intermediate bearing names it without the flag.
  if (IsBearingType(typeIndex) && point.PtRef != 0 && !(flags & kPtIntermediate)) {
    flags |= kPtReference;
  }
  point.PtFlags = flags;
}

// After a change of input type, a field whose text does not read as the new kind of value
// is held refused, without a box, until it is corrected.
void DataInputLogic::RecheckFieldsQuietly() {
  if (TypeIndexOf(Current()) == kTypeReference) {
    Ctl("GPSTxt", 0).text.clear();
    Ctl("GPSTxt", 1).text.clear();
  }
  for (int field = 0; field < kFieldCount; ++field) refused_[field] = CheckField(field) != 0;
}

// An intermediate point given by a bearing takes its length from its line: a length typed
// before would make it a point given by a length.
void DataInputLogic::ClearDisabledLength() {
  Point& point = Current();
  if (IsBearingType(TypeIndexOf(point)) && (point.PtFlags & kPtIntermediate)) {
    point.InYL.clear();
    Ctl("DataTxt", 1).text.clear();
    refused_[1] = false;
  }
}

void DataInputLogic::MarkValueChanged() {
  edit_.Changes |= kDataChanged;
  if (newEntry_) edit_.Dialog |= kEntryHasValue;
}

void DataInputLogic::MarkSettingsChanged() { edit_.Changes |= kDatasetSettingsChanged; }

void DataInputLogic::ChooseTypOpt(int index) {
  if (index < 0 || index >= static_cast<int>(kDatasetKinds.size()) ||
      !Acting(Name("TypOpt", index))) {
    return;
  }
  if (Ctl("TypOpt", index).checked) return;
  std::uint8_t& type = survey_.Datasets[dataset_].DatasetType;
  std::uint8_t kept = index == 2 ? (type & (kDatasetHasDummy | kDatasetGenerated)) : 0;
  type = kDatasetKindTypes[index] | kept;
  // Only a sub-division starts at a dummy: elsewhere its first point is an X/Y point, as
  // the saved file will have it, also when an abandoned entry puts the point back.
  if (index != 2) {
    constexpr auto kNotDummy = static_cast<std::uint8_t>(~kMarkDummy);
    for (int p = survey_.Datasets[dataset_].DatasetStart; p < survey_.DatasetEnd(dataset_); ++p) {
      survey_.Points[p].PtMarks &= kNotDummy;
    }
    original_.PtMarks &= kNotDummy;
  }
  MarkSettingsChanged();
  RefreshPointFields();
}

void DataInputLogic::TypeDSTagTxt(std::string_view text) {
  if (!Acting("DSTagTxt")) return;
  Ctl("DSTagTxt").text = std::string(text);
  survey_.Datasets[dataset_].DatasetTag = TagAsFiled(text, survey_.FieldSeparator);
  MarkSettingsChanged();
}

void DataInputLogic::TypeFileTagTxt(std::string_view text) {
  if (!Acting("FileTagTxt")) return;
  Ctl("FileTagTxt").text = std::string(text);
  survey_.FileTag = TagAsFiled(text, survey_.FieldSeparator);
  MarkSettingsChanged();
}

void DataInputLogic::TypeMagDecTxt(std::string_view text) {
  if (!Acting("MagDecTxt")) return;
  Ctl("MagDecTxt").text = std::string(text);
  std::string value = Trimmed(text);
  std::optional<double> declination = value.empty() ? 0.0 : ReadNumber(value);
  if (!declination || std::fabs(*declination) > kMaxDeclination) {
    Refuse(kEntryInvalid);
    return;
  }
  survey_.MagneticDeclination = static_cast<float>(*declination);
  if (survey_.MagneticDeclination != 0) {
    survey_.FileFlags |= kFileMagnetic;
  } else {
    survey_.FileFlags &= static_cast<std::uint8_t>(~kFileMagnetic);
  }
  MarkSettingsChanged();
}

void DataInputLogic::ChooseUOMCmb(int item) {
  if (item < 0 || item >= kUnitCount || !Acting("UOMCmb")) return;
  if (item == survey_.UnitOfMeasure) return;
  bool gpsPoints = false;
  for (const Point& point : survey_.Points) gpsPoints = gpsPoints || (point.PtFlags & kPtGps);
  if (item == kUnitNotSpecified && gpsPoints) {
    Alert(dialogs_,
          MessageBox{.title = "Unit of Measure",
                     .text = "Cannot select 'Not specified' points dependent on GPS values",
                     .icon = Icon::Critical});
    RefreshPointFields();
    return;
  }
  // A new point with nothing typed yet holds no value that the question is about.
  bool emptyEntry = newEntry_ && !(edit_.Dialog & kEntryHasValue);
  if (survey_.PointCount() > (emptyEntry ? 1 : 0)) {
    MessageBox question{.title = "Unit of Measure",
                        .text =
                            "Changing the Unit of Measure does not convert the associated "
                            "numerical values.\n\nProceed Anyway ?",
                        .icon = Icon::Question,
                        .buttons = Buttons::YesNo,
                        .defaultButton = Button::No};
    if (dialogs_.Show(question) != Button::Yes) {
      RefreshPointFields();
      return;
    }
  }
  survey_.UnitOfMeasure = item;
  MarkSettingsChanged();
  RecheckFieldsQuietly();
  RefreshPointFields();
}

// ---------------------------------------------------------------------------------------
// Leaving a point: Next, Previous, the dataset moves, Apply and Cancel.

DataInputLogic::Entry DataInputLogic::EntryState() const {
  const Point& point = Current();
  bool x = !IsBlank(point.InXA);
  bool y = !IsBlank(point.InYL);
  bool longitude = !IsBlank(point.InGPSLong);
  bool latitude = !IsBlank(point.InGPSLat);
  if (longitude != latitude) return Entry::OneOfTwo;
  if ((point.PtFlags & kPtLink) && !longitude) return Entry::Incomplete;
  bool intermediate = (point.PtFlags & kPtIntermediate) != 0;
  auto pair = [](bool a, bool b) {
    return a && b ? Entry::Complete : (a || b) ? Entry::OneOfTwo : Entry::Incomplete;
  };
  switch (TypeIndexOf(point)) {
    case kTypeCoordinates:
      if (intermediate) return x || y ? Entry::Complete : Entry::Incomplete;
      return pair(x, y);
    case kTypeBearingTrue:
    case kTypeBearingMagnetic:
      if (intermediate) return (x && point.PtRef != 0) || y ? Entry::Complete : Entry::Incomplete;
      return pair(x, y);
    case kTypeReference:
      return point.PtRef != 0 ? Entry::Complete : Entry::Incomplete;
    default:
      return longitude ? Entry::Complete : Entry::Incomplete;
  }
}

// A field still holding text that was refused is reported again: nothing of it is stored.
bool DataInputLogic::FieldsAccepted() {
  static const std::array<std::string, kFieldCount> kFields = {"DataTxt_0", "DataTxt_1", "GPSTxt_0",
                                                               "GPSTxt_1"};
  for (int field = 0; field < kFieldCount; ++field) {
    if (refused_[field] && Control(kFields[field]).enabled && Refuse(CheckField(field))) {
      return false;
    }
  }
  return true;
}

// Whether the point may be left; an entry given up is taken out (a new point) or put back
// as it was loaded, and `current_` is then -1 for a point taken out.
bool DataInputLogic::LeaveEntry() {
  if (!FieldsAccepted()) return false;
  switch (EntryState()) {
    case Entry::OneOfTwo:
      Alert(dialogs_, MessageBox{.title = "Invalid Data",
                                 .text = "Both entry fields must contain values",
                                 .icon = Icon::Exclamation});
      return false;
    case Entry::Incomplete:
      if (dialogs_.Show(Question("Incomplete data, terminate this entry ?")) != Button::Yes) {
        return false;
      }
      if (newEntry_) {
        DropNewPoint();
      } else {
        Current() = original_;
        RecountJoinPoints(survey_);
      }
      return true;
    case Entry::Complete:
      CommitEntry();
      return true;
  }
  return false;
}

void DataInputLogic::CommitEntry() {
  if (newEntry_ || !SameEntry(Current(), original_)) edit_.Changes |= kPendingChange;
  newEntry_ = false;
  original_ = Current();
  edit_.Dialog &= static_cast<std::uint8_t>(~kEntryMarks);
}

void DataInputLogic::ClickNxtPrevBtn(int index) {
  if (index < 0 || index > 1 || !Acting(Name("NxtPrevBtn", index))) return;
  MovePoint(index == 0 ? 1 : -1);
}

void DataInputLogic::MovePoint(int step) {
  int d = dataset_;
  int position = CurrentPoint();
  if (!LeaveEntry()) return;
  bool dropped = current_ < 0;
  int target = step > 0 ? position + (dropped ? 0 : 1) : position - 1;
  if (d >= survey_.DatasetCount()) {
    // The dataset went with its only point: on to the end of the one before.
    d = survey_.DatasetCount() - 1;
    target = DatasetPointCount(survey_, d) - 1;
  }
  if (target >= 0 && target < DatasetPointCount(survey_, d)) {
    LoadPoint(survey_.Datasets[d].DatasetStart + target);
  } else {
    BeginNewPoint(d, DatasetPointCount(survey_, d));
  }
  ShowMovedTo();
}

void DataInputLogic::ClickDSNxtPrevBtn(int index) {
  if (index < 0 || index > 1 || !Acting(Name("DSNxtPrevBtn", index))) return;
  MoveDataset(index == 0 ? 1 : -1);
}

void DataInputLogic::MoveDataset(int step) {
  int d = dataset_;
  if (!LeaveEntry()) return;
  int target = d + step;
  if (target >= survey_.DatasetCount()) {
    BeginNewDataset();
  } else if (DatasetPointCount(survey_, target) == 0) {
    BeginNewPoint(target, 0);
  } else {
    LoadPoint(survey_.Datasets[target].DatasetStart);
  }
  ShowMovedTo();
}

void DataInputLogic::ClickExitBtn(int index) {
  if (index < 0 || index > 1 || !Acting(Name("ExitBtn", index))) return;
  if (index == 0) {
    Apply();
  } else {
    Cancel();
  }
}

// Without the unfinished new point, would its dataset keep enough points?
bool DataInputLogic::EnoughPointsWithoutEntry() const {
  int left = DatasetPointCount(survey_, dataset_) - 1;
  if (left == 0 && survey_.DatasetCount() > 1) return true;  // the dataset goes too
  std::uint8_t type = survey_.Datasets[dataset_].DatasetType;
  int needed = (type & kDatasetPerimeter) ? 3 : (type & kDatasetMain) ? 2 : 1;
  return left >= needed;
}

void DataInputLogic::Apply() {
  if (!FieldsAccepted()) return;
  int d = dataset_;
  int position = CurrentPoint();
  Entry entry = EntryState();
  if (newEntry_ && entry != Entry::Complete) {
    if (!EnoughPointsWithoutEntry()) {
      Alert(dialogs_, MessageBox{.title = kPointEditTitle,
                                 .text = "Please correct for incomplete data, 'Apply' not allowed.",
                                 .icon = Icon::Question});
      return;
    }
    if (dialogs_.Show(Question("Incomplete data, Apply without this entry ?")) != Button::Yes) {
      return;
    }
    DropNewPoint();
  } else if (!newEntry_ && entry != Entry::Complete) {
    if (!LeaveEntry()) return;
  }
  if (current_ >= 0) {
    RefreshPositions(survey_, state_);
    if (!CheckEnteredPoint(survey_, state_, current_, dialogs_)) return;
  }
  if (std::optional<std::string> fault = FaultOnLoading(survey_)) {
    Alert(dialogs_, MessageBox{.title = kPointEditTitle, .text = *fault, .icon = Icon::Critical});
    // The unfinished point has gone: the dialog stays on the point before it.
    if (current_ < 0) LoadNearest(d, position - 1);
    return;
  }
  // Changed already when the dialog opened: UnDo keeps the data marked changed.
  if (changesAtOpen_ & kUnsavedMarks) edit_.Changes |= kChangedBeforeEdit;
  edit_.Changes |= kDataChanged | kPendingChange;
  Close(DialogOutcome::Applied);
}

// What was typed is put back; the change marks are those of the opening, except that
// `DataChanged` is cleared unless `ChangedBeforeEdit` keeps it.
void DataInputLogic::Cancel() {
  RestoreUndoSnapshot(survey_, opening_);
  edit_.Changes = changesAtOpen_;
  if (!(edit_.Changes & kChangedBeforeEdit)) {
    edit_.Changes &= static_cast<std::uint8_t>(~kDataChanged);
  }
  Close(DialogOutcome::Cancelled);
}

void DataInputLogic::Close(DialogOutcome outcome) {
  outcome_ = outcome;
  edit_.Dialog &= static_cast<std::uint8_t>(~(kModeMarks | kEntryMarks));
}

// ---------------------------------------------------------------------------------------
// What the controls show.

void DataInputLogic::RefreshPointFields() {
  if (current_ < 0) return;
  filling_ = true;
  RefreshHeader();
  RefreshFields();
  RefreshQualifiers();
  RefreshMoves();
  RefreshDataset();
  RefreshHints();
  filling_ = false;
}

void DataInputLogic::RefreshHeader() {
  bool inserting = newEntry_ && mode_ == kInsertMode;
  Ctl("PointValHdrLbl").text = !newEntry_  ? "Modify Point:"
                               : inserting ? "Insert Point:"
                                           : "New at Point:";
  Ctl("PointValLbl").text = std::to_string(current_ + 1);
  Ctl("AddNoteLbl").visible = inserting;
}

void DataInputLogic::RefreshFields() {
  const Point& point = Current();
  int type = TypeIndexOf(point);
  std::uint8_t inputType = CurrentInputType();
  Ctl("PtTypCmb").index = type;
  bool values = type == kTypeCoordinates || IsBearingType(type);
  if (type == kTypeCoordinates) {
    Ctl("DataTxtLbl", 0).text = "X co-ordinate";
    Ctl("DataTxtLbl", 1).text = "Y co-ordinate";
  } else if (values) {
    // Chosen by bit 0x02 of the input type, which crosses them over the list's names.
    Ctl("DataTxtLbl", 0).text = (inputType & 0x02) ? "Bearing (magnetic)" : "Bearing (true)";
    Ctl("DataTxtLbl", 1).text = "Length";
  } else {
    Ctl("DataTxtLbl", 0).text = "Not applicable";
    Ctl("DataTxtLbl", 1).text = "Not applicable";
  }
  Ctl("DataTxt", 0).enabled = values;
  Ctl("DataTxt", 1).enabled = values && !(IsBearingType(type) && (point.PtFlags & kPtIntermediate));
  bool gps = type != kTypeReference && survey_.UnitOfMeasure != kUnitNotSpecified;
  for (const char* name : {"GPSTxt", "GPSCmb", "GPSTxtLbl"}) {
    Ctl(name, 0).enabled = gps;
    Ctl(name, 1).enabled = gps;
  }
  Ctl("GPSTxtHdrLbl").enabled = gps;
  ControlState& link = Ctl("TgtPtLbl");
  link.enabled = LinkAllowed(point, type, survey_.Datasets[dataset_].DatasetType);
  link.text = point.PtRef != 0 ? std::to_string(point.PtRef) : "None";
}

void DataInputLogic::RefreshQualifiers() {
  const Point& point = Current();
  int type = TypeIndexOf(point);
  std::uint8_t kind = survey_.Datasets[dataset_].DatasetType & kDatasetKindMask;
  bool otherLink = false;
  for (int i = 0; i < survey_.PointCount(); ++i) {
    otherLink = otherLink || (i != current_ && (survey_.Points[i].PtFlags & kPtLink));
  }
  std::array<bool, 3> enabled = {
      CurrentPoint() > 0 && kind != kDatasetPoints && type != kTypeReference &&
          !(point.PtFlags & kPtLink),
      (kind & kDatasetMain) && ((point.PtFlags & kPtJoin) || survey_.JoinPointCount < 2),
      survey_.UnitOfMeasure != kUnitNotSpecified && type != kTypeReference &&
          !(point.PtFlags & kPtIntermediate) && !otherLink};
  constexpr std::array<std::uint8_t, 3> kBits = {kPtIntermediate, kPtJoin, kPtLink};
  for (int i = 0; i < 3; ++i) {
    Ctl("PtQualifCkB", i).checked = (point.PtFlags & kBits[i]) != 0;
    Ctl("PtQualifCkB", i).enabled = enabled[i];
  }
}

void DataInputLogic::RefreshMoves() {
  bool lastOfDataset = current_ + 1 >= survey_.DatasetEnd(dataset_);
  // The 210th point is the last the program holds.
  Ctl("NxtPrevBtn", 0).enabled =
      current_ < kPointLimit - 1 && (!lastOfDataset || HasRoomForPoint());
  Ctl("NxtPrevBtn", 1).enabled = CurrentPoint() > 0;
  // A dataset is not left behind empty.
  bool holdsPoint = DatasetPointCount(survey_, dataset_) > (newEntry_ ? 1 : 0);
  Ctl("DSNxtPrevBtn", 0).enabled =
      holdsPoint && (dataset_ + 1 < survey_.DatasetCount() || HasRoomForPoint());
  Ctl("DSNxtPrevBtn", 1).enabled = dataset_ > 0;
}

void DataInputLogic::RefreshDataset() {
  std::uint8_t type = survey_.Datasets[dataset_].DatasetType;
  int mainElsewhere = -1;
  int subElsewhere = -1;
  for (int d = 0; d < survey_.DatasetCount(); ++d) {
    if (d == dataset_) continue;
    if (survey_.Datasets[d].DatasetType & kDatasetMain) mainElsewhere = d;
    if (survey_.Datasets[d].DatasetType & kDatasetSubDivision) subElsewhere = d;
  }
  for (int i = 0; i < static_cast<int>(kDatasetKinds.size()); ++i) {
    std::uint8_t kindType = kDatasetKindTypes[i];
    ControlState& option = Ctl("TypOpt", i);
    option.checked = (type & (kDatasetKindMask | kDatasetPerimeter)) == kindType;
    // There is always one main dataset, and at most one sub-division.
    bool onlyMain = (type & kDatasetMain) && mainElsewhere < 0;
    option.enabled = !((kindType & kDatasetMain) && mainElsewhere >= 0) &&
                     !((kindType & kDatasetSubDivision) && subElsewhere >= 0) &&
                     !(onlyMain && !(kindType & kDatasetMain));
  }
  ControlState& units = Ctl("UOMCmb");
  units.items = UnitListItems(survey_.SubValueSeparator);
  units.index = survey_.UnitOfMeasure;
}

void DataInputLogic::RefreshHints() {
  int unit = survey_.UnitOfMeasure;
  std::string length = LengthHint(unit, survey_.SubValueSeparator);
  if (CurrentPoint() == 0 && unit == kUnitNotSpecified) {
    length = (survey_.FileFlags & kFileOption) ? "Only Co-ordinates or GPS valid for Start Point."
                                               : "Only Co-ordinates valid for Start Point.";
  }
  bool angles = (CurrentInputType() & (0x02 | 0x04 | 0x10)) != 0;
  Ctl("LenNoteLbl").text = length;
  Ctl("LenNoteLbl").visible = !length.empty();
  Ctl("AngleNoteLbl").text = angles ? AngleHint(survey_.SubValueSeparator) : "";
  Ctl("AngleNoteLbl").visible = angles;
}

}  // namespace plotmeter
