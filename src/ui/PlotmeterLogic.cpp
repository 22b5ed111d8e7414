#include "ui/PlotmeterLogic.h"

#include <sstream>

#include "datafile/DataFileReader.h"
#include "datafile/DataFileWriter.h"
#include "datafile/LoadCheck.h"
#include "geometry/Area.h"
#include "geometry/PartOutlines.h"
#include "geometry/ResolvePoints.h"

namespace plotmeter {

namespace {

constexpr const char* kFileTitleLoad = "Select File to Load";
constexpr const char* kFileTitleSave = "Set File to Save data";

std::uint8_t OptionBit(int index) { return static_cast<std::uint8_t>(1u << index); }

bool IsOption(int index) { return index >= 0 && index < kOptionCount; }

// What "Load" would say of the survey's own file, out of the user's sight: its fault box
// text, or "" when it would load (or cannot be written at all: the writer says why).
std::string ReloadFault(const Survey& survey) {
  Survey written = survey;
  std::stringstream file;
  if (WriteSurvey(written, file) != 0) return "";
  Survey loaded;
  ReadResult read = ReadDataFile(loaded, file);
  UnseenDialogs unseen;
  ProcessingState state;
  bool loads =
      CheckLoadedData(loaded, read, unseen) && ResolvePoints(loaded, state, kFirstPass, unseen);
  return loads ? "" : unseen.lastText;
}

}  // namespace

PlotmeterLogic::PlotmeterLogic() { display_.DisplayOptions = kDefaultDisplayOptions; }

LoadOutcome PlotmeterLogic::CommandLoad(UserDialogs& dialogs) {
  return LoadChosen(SelectFile(dialogs, {.mode = kSelectOpen,
                                         .filter = kDataFileFilter,
                                         .title = kFileTitleLoad,
                                         .folder = PathFolder(survey_.CurrentFileName)}),
                    dialogs);
}

LoadOutcome PlotmeterLogic::LoadNamed(const std::string& path, UserDialogs& dialogs) {
  return LoadChosen(CheckChosenFile(kSelectOpen, "", {.cancelled = false, .path = path}), dialogs);
}

LoadOutcome PlotmeterLogic::LoadChosen(const SelectedFile& file, UserDialogs& dialogs) {
  if (file.code == kFileCancelled) return {};
  if (file.code != kFileUsable) {
    display_.DatSrcLbl = kNoFile;
    ReportNameFault(dialogs, file);
    return {};
  }
  return Load(file.path, dialogs);
}

bool PlotmeterLogic::CommandSave(UserDialogs& dialogs) {
  if (!FileExists(survey_.CurrentFileName)) return CommandSaveAs(dialogs);
  if (!WriteFile(survey_.CurrentFileName, dialogs)) return false;
  edit_.Changes &= static_cast<std::uint8_t>(~kDataChangedMarks);
  return true;
}

bool PlotmeterLogic::CommandSaveAs(UserDialogs& dialogs) {
  SelectedFile file = SelectFile(dialogs, {.mode = kSelectSave,
                                           .filter = kDataFileFilter,
                                           .title = kFileTitleSave,
                                           .defaultSuffix = "csv",
                                           .folder = PathFolder(survey_.CurrentFileName)});
  if (file.code == kFileCancelled) return false;
  if (file.code != kFileUsable) {
    display_.DatSrcLbl = kNoFile;
    ReportNameFault(dialogs, file);
    return false;
  }
  if (FileExists(file.path)) {
    Button answer = Alert(dialogs, {.title = "File action",
                                    .text = "Overwrite the existing file ?",
                                    .icon = Icon::Question,
                                    .buttons = Buttons::YesNo,
                                    .defaultButton = Button::No});
    if (answer != Button::Yes) return false;
  }
  return SaveTo(file.path, dialogs);
}

void PlotmeterLogic::CommandCreateNew(UserDialogs& dialogs, const PointDialogShow& showDialog) {
  ClearDrawing();
  display_.DatSrcLbl = kNoFile;
  display_.TagFileLbl.clear();
  display_.DataBtnEnabled[kSaveAsButton] = true;
  ClearSelection();
  RunEdit(dialogs, showDialog, OnCreateNew);
}

bool PlotmeterLogic::CommandExit(UserDialogs& dialogs) {
  if (!edit_.Unsaved()) return true;
  return dialogs.Show({.title = "Exit",
                       .text = "Unsaved data exists, exit anyway ?",
                       .icon = Icon::Question,
                       .buttons = Buttons::OkCancel,
                       .defaultButton = Button::Cancel}) == Button::Ok;
}

LoadOutcome PlotmeterLogic::Load(const std::string& path, UserDialogs& dialogs) {
  std::string text;
  const ReadResult read = ReadDataFileText(path, text);
  return LoadText(path, read, text, dialogs);
}

LoadOutcome PlotmeterLogic::LoadText(const std::string& path, const ReadResult& fileRead,
                                     std::string_view text, UserDialogs& dialogs) {
  edit_ = EditState{};
  state_ = ProcessingState{};
  ClearUndoSnapshot(snapshot_);
  display_.EditPtBtnEnabled[kUndoButton] = false;
  ClearSelection();
  SetOptionAvailable(kOptionLines, false);
  SetOptionAvailable(kOptionPoints, false);
  ShowFile(path);

  LoadOutcome outcome;
  survey_.CurrentFileName = path;
  const ReadResult read = fileRead.fault != 0 ? fileRead : ReadDataText(survey_, text);
  outcome.readFault = read.fault;
  bool resolved = CheckLoadedData(survey_, read, dialogs) &&
                  ResolvePoints(survey_, state_, kFirstPass, dialogs);
  if (!resolved) {
    ResetLoadedFile(survey_);
    ClearDrawing();
    display_.TagFileLbl.clear();
    display_.DataBtnEnabled[kSaveButton] = display_.DataBtnEnabled[kSaveAsButton] = false;
    return outcome;
  }
  outcome.loaded = true;
  state_.DataState |= kDataPresent;
  edit_.File |= kFileCurrent;
  display_.TagFileLbl = survey_.FileTag;
  display_.DataBtnEnabled[kSaveButton] = display_.DataBtnEnabled[kSaveAsButton] = true;
  MakeOptionsAvailableByData();
  outcome.processing = Reprocess(dialogs);
  return outcome;
}

bool PlotmeterLogic::SaveTo(const std::string& path, UserDialogs& dialogs) {
  if (!WriteFile(path, dialogs)) return false;
  edit_.Changes &= kSaveAsKeptMarks;
  edit_.File |= kFileCurrent;
  survey_.CurrentFileName = path;
  ShowFile(path);
  // A new survey has a file of its own from now on.
  display_.DataBtnEnabled[kSaveButton] = true;
  return true;
}

// Edited data may hold what "Load" refuses (a point that refers to a deleted one, or
// stands on its new neighbour): such a file is not written, so that it never replaces one
// that opens. The box says why; the data stays for the user to correct or take back.
bool PlotmeterLogic::WriteFile(const std::string& path, UserDialogs& dialogs) {
  if (std::string fault = ReloadFault(survey_); !fault.empty()) {
    Alert(dialogs, {.title = "Write File Abort",
                    .text = kNotSavedWouldNotLoad + ("\n" + fault),
                    .icon = Icon::Critical});
    return false;
  }
  return WriteDataFile(survey_, path, dialogs);
}

ProcessingOutcome PlotmeterLogic::Reprocess(UserDialogs& dialogs) {
  ProcessingOutcome outcome = RunProcessing(survey_, state_, display_, scene_);
  // A box stands over a window that no longer names a point gone from the drawing.
  if (state_.SelectedPoint < 0) ClearSelection();
  ReportProcessing(outcome, survey_, dialogs);
  return outcome;
}

// The window's side of the point-edit buttons: the dialog shown through the caller's
// function, processing after a change, the selected marker back to its own size.
class PlotmeterLogic::EditHost : public EditWindow {
 public:
  EditHost(PlotmeterLogic& logic, UserDialogs& dialogs, const PointDialogShow& showDialog)
      : logic_(logic), dialogs_(dialogs), showDialog_(showDialog) {}

  void ShowPointDialog() override {
    DataInputLogic dialog(logic_.survey_, logic_.state_, logic_.edit_, logic_.snapshot_, dialogs_);
    dialog.onSelectionText = [this](const std::string& text) { logic_.display_.EditSubLbl = text; };
    dialog.Open();
    if (showDialog_) showDialog_(dialog);
    if (dialog.IsOpen()) {
      dialog.SetFillingFields(false);
      dialog.ClickCancel();
    }
  }

  void RunProcessing() override { logic_.ProcessEdited(dialogs_); }

  void ClearSelectionDisplay() override {
    ResizeMarker(logic_.scene_, logic_.state_.SelectedPoint, logic_.scene_.markerSize);
    logic_.display_.EditSubLbl = kClickOnAPoint;
  }

 private:
  PlotmeterLogic& logic_;
  UserDialogs& dialogs_;
  const PointDialogShow& showDialog_;
};

void PlotmeterLogic::ClickEditButton(int index, UserDialogs& dialogs,
                                     const PointDialogShow& showDialog) {
  RunEdit(dialogs, showDialog,
          [index](const PointEditContext& context) { OnEditPointButton(context, index); });
}

// The edit buttons' enabled states and "Save" go to the edit and come back from it; the
// selection it leaves decides "Modify", "Add" and "Delete" as a click does.
void PlotmeterLogic::RunEdit(UserDialogs& dialogs, const PointDialogShow& showDialog,
                             const std::function<void(const PointEditContext&)>& edit) {
  EditHost host(*this, dialogs, showDialog);
  EditButtonsEnabled buttons{.EditPtBtn = display_.EditPtBtnEnabled,
                             .SaveBtn = display_.DataBtnEnabled[kSaveButton]};
  edit({survey_, state_, edit_, snapshot_, buttons, host});
  display_.EditPtBtnEnabled = buttons.EditPtBtn;
  display_.DataBtnEnabled[kSaveButton] = buttons.SaveBtn;
  if (state_.SelectedPoint < 0) display_.EditSubLbl = kClickOnAPoint;
  EnableEditButtons();
}

// Edited points have no positions yet: they are resolved first, as after a load.
void PlotmeterLogic::ProcessEdited(UserDialogs& dialogs) {
  display_.TagFileLbl = survey_.FileTag;
  MakeOptionsAvailableByData();
  if (survey_.PointCount() == 0) {
    state_.DataState &= static_cast<std::uint8_t>(~kDataPresent);
    ClearDrawing();
    return;
  }
  state_.DataState |= kDataPresent;
  if (!ResolvePoints(survey_, state_, kFirstPass, dialogs)) {
    ClearDrawing();
    ClearSelection();
    return;
  }
  Reprocess(dialogs);
}

bool PlotmeterLogic::SetAreaUnit(int index) {
  if (index < 0 || index >= kAreaUnitCount) return false;
  display_.AreaUnitCmb.index = index;
  edit_.Changes |= kDisplayChanged;
  const bool areaShown = (state_.ProcessState & kAreaComputed) && !state_.BadPerimeter &&
                         FindMainPerimeter(survey_) >= 0;
  if (areaShown) {
    ComputeArea(survey_, state_, index);
    ShowArea(survey_, state_, display_);
  }
  return true;
}

bool PlotmeterLogic::SetSegment(int index) {
  if (index < 0 || index >= static_cast<int>(state_.SegmentAreas.size())) return false;
  display_.AreaSgmtCmb.index = index;
  // Only a list on show can be changed by the user.
  if (display_.AreaSgmtCmb.visible) ShowArea(survey_, state_, display_);
  return true;
}

ProcessingOutcome PlotmeterLogic::ClickOption(int index, bool ticked, UserDialogs& dialogs) {
  if (!IsOption(index)) return {};
  display_.OptnsCkB[index].ticked = ticked;
  if (ticked && display_.OptnsCkB[index].enabled) {
    display_.DisplayOptions |= OptionBit(index);
  } else {
    display_.DisplayOptions &= static_cast<std::uint8_t>(~OptionBit(index));
  }
  edit_.Changes |= kDisplayChanged;
  return Reprocess(dialogs);
}

void PlotmeterLogic::SetOptionAvailable(int index, bool available) {
  if (!IsOption(index)) return;
  CheckBoxState& box = display_.OptnsCkB[index];
  box.enabled = available;
  if (!box.ticked) return;
  if (available) {
    display_.DisplayOptions |= OptionBit(index);
  } else {
    display_.DisplayOptions &= static_cast<std::uint8_t>(~OptionBit(index));
  }
}

void PlotmeterLogic::ClickDrawing(MouseButton button, float x, float y) {
  if (!InsideDrawingArea(scene_, x, y) || scene_.markers.empty()) return;
  Select(button, NearestDrawnPoint(survey_, scene_, display_.DisplayOptions, x, y));
}

void PlotmeterLogic::StepSelection(int step) {
  if (scene_.markers.empty()) return;
  Select(MouseButton::kLeft,
         AdjacentDrawnPoint(survey_, scene_, display_.DisplayOptions, state_.SelectedPoint, step));
}

void PlotmeterLogic::Select(MouseButton button, const PointHit& hit) {
  const int previous = state_.SelectedPoint;
  state_.ResetSelection();
  if (previous >= 0) ResizeMarker(scene_, previous, scene_.markerSize);
  display_.EditSubLbl = kClickOnAPoint;
  if (hit.point >= 0) {
    state_.SelectedDataset = hit.dataset;
    if (button == MouseButton::kLeft) {
      state_.SelectedPoint = hit.point;
      display_.EditSubLbl = "Point " + std::to_string(hit.point + 1) + " selected";
      ResizeMarker(scene_, hit.point, kSelectedMarkerScale * scene_.markerSize);
    } else if (button == MouseButton::kRight) {
      scene_.TagDSLbl =
          TagLabel(scene_, scene_.screen[hit.point], survey_.Datasets[hit.dataset - 1].DatasetTag);
    }
  }
  EnableEditButtons();
}

void PlotmeterLogic::MakeOptionsAvailableByData() {
  SetOptionAvailable(kOptionLines, survey_.FindDataset(kDatasetLine) >= 0);
  SetOptionAvailable(kOptionPoints, survey_.FindDataset(kDatasetPoints) >= 0);
}

void PlotmeterLogic::ShowFile(const std::string& path) { display_.DatSrcLbl = PathFileName(path); }

void PlotmeterLogic::ClearSelection() {
  state_.ResetSelection();
  display_.EditSubLbl = kClickOnAPoint;
  EnableEditButtons();
}

// Nothing drawn and no area: the positions of the last drawing are gone.
void PlotmeterLogic::ClearDrawing() {
  scene_.Clear();
  display_.AreaValLbl = {};
  display_.AreaSgmtCmb.visible = false;
  state_.ProcessState &= static_cast<std::uint8_t>(~kAreaComputed);
  state_.BadPerimeter = false;
}

void PlotmeterLogic::EnableEditButtons() {
  const bool selected = state_.SelectedPoint >= 0;
  display_.EditPtBtnEnabled[kModifyButton] = selected;
  display_.EditPtBtnEnabled[kAddButton] = selected;
  display_.EditPtBtnEnabled[kDeleteButton] = selected;
}

std::string PlotmeterLogic::AreaUnitText() const {
  const ComboState& units = display_.AreaUnitCmb;
  if (units.visible && units.index >= 0 && units.index < static_cast<int>(units.items.size())) {
    return units.items[units.index];
  }
  if (display_.AreaUnitLbl.visible) return display_.AreaUnitLbl.text;
  return "";
}

}  // namespace plotmeter
