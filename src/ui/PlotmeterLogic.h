// The main window `Plotmeter` without a toolkit: it owns the one survey, the processing
// and edit state with the undo snapshot, what the window shows around the drawing and the
// drawing itself, and does what the window's file commands, option boxes, area lists,
// mouse clicks and point-edit buttons do.
// The desktop window and plotmeter-cli both drive it; the survey and the state change
// only through its operations.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "datafile/DataFileReader.h"
#include "geometry/ProcessingState.h"
#include "model/Survey.h"
#include "model/UserDialogs.h"
#include "ui/DataInputLogic.h"
#include "ui/EditButtons.h"
#include "ui/EditState.h"
#include "ui/FileCommands.h"
#include "ui/MainDisplay.h"
#include "ui/PlotScene.h"
#include "ui/PointEdits.h"
#include "ui/PointSelection.h"
#include "ui/Processing.h"

namespace plotmeter {

struct LoadOutcome {
  // The file was read, checked and resolved: the survey holds it. False when it was
  // refused or its points could not be resolved; the survey is then empty.
  bool loaded = false;
  int readFault = 0;  // the reader's fault code; 0 when the file was read whole
  ProcessingOutcome processing;

  // Loaded and processed to the end without a failure box.
  bool Succeeded() const { return loaded && !processing.failed() && !processing.badPerimeter(); }
};

// The start of the "Write File Abort" text for a survey whose file "Load" would refuse;
// the reason follows on the next line.
inline constexpr char kNotSavedWouldNotLoad[] = "Not saved: the file would not load again.";

// Shows the point entry dialog, already opened on the window's data, and returns once it
// has closed. The desktop window shows it modally; tests and scripts act on its logic
// directly. A dialog still open on return is cancelled.
using PointDialogShow = std::function<void(DataInputLogic& dialog)>;

class PlotmeterLogic {
 public:
  PlotmeterLogic();

  const Survey& survey() const { return survey_; }
  const ProcessingState& state() const { return state_; }
  const EditState& edit() const { return edit_; }
  const MainDisplay& display() const { return display_; }
  const PlotScene& scene() const { return scene_; }

  // The file buttons and "Exit". Each asks for what it needs through `dialogs`;
  // cancelling a dialog changes nothing.
  LoadOutcome CommandLoad(UserDialogs& dialogs);
  // A file named on the command line or dropped on the window, as if chosen with "Load".
  LoadOutcome LoadNamed(const std::string& path, UserDialogs& dialogs);
  bool CommandSave(UserDialogs& dialogs);
  bool CommandSaveAs(UserDialogs& dialogs);
  // An empty survey with one empty dataset, no file, and the point entry dialog shown to
  // enter its first points.
  void CommandCreateNew(UserDialogs& dialogs, const PointDialogShow& showDialog);
  // True when the program may end: nothing is unsaved, or the user said so.
  bool CommandExit(UserDialogs& dialogs);

  // "Load" once a usable file name has been chosen: the file read and checked, its points resolved
  // (a failed resolution rejects the file), the "Show Lines" and "Show Points" boxes made available
  // by the data, and processing run.
  LoadOutcome Load(const std::string& path, UserDialogs& dialogs);
  // The same for a file whose text has already been read (`read` says whether it could be):
  // a pipe can be read only once, and its text is listed too.
  LoadOutcome LoadText(const std::string& path, const ReadResult& read, std::string_view text,
                       UserDialogs& dialogs);
  // Writes the survey to `path` and, when written, takes it as the current file. A survey
  // whose file "Load" would refuse is not written.
  bool SaveTo(const std::string& path, UserDialogs& dialogs);
  void SetWriterOptions(std::uint8_t options) { survey_.WriterOptions = options; }

  // Processing and drawing again, as after an option click.
  ProcessingOutcome Reprocess(UserDialogs& dialogs);

  // `EditPtBtn` clicked: "Modify" (0) and "Add" (1) show the point entry dialog on the
  // selected point, "Delete" (2) and "UnDo" (3) act at once. After a change the points
  // are resolved afresh and processing runs; when they cannot be resolved the box says
  // why, nothing is drawn, and the data stays for the user to correct or take back. A
  // disabled button does nothing.
  void ClickEditButton(int index, UserDialogs& dialogs, const PointDialogShow& showDialog = {});

  // `AreaUnitCmb` changed: the index is kept, and an area already computed on a good
  // perimeter is worked out again in the new unit. False for an index outside the list.
  bool SetAreaUnit(int index);
  // `AreaSgmtCmb` changed: the area is shown again for the chosen segment. False for an
  // index outside 0 to 2.
  bool SetSegment(int index);

  // `OptnsCkB` clicked: the box's bit follows its tick, then processing runs again.
  ProcessingOutcome ClickOption(int index, bool ticked, UserDialogs& dialogs);
  // An unavailable box is disabled and its bit cleared while it keeps its tick; made
  // available again, a ticked box sets its bit anew.
  void SetOptionAvailable(int index, bool available);

  // A mouse press at (x, y) in display units. Outside the drawing area, or with nothing
  // drawn, nothing happens. A left click selects the nearest drawn point and enlarges its
  // marker; a right click shows the tag of that point's dataset beside it.
  void ClickDrawing(MouseButton button, float x, float y);
  // The arrow keys on the drawing: the next (step 1) or previous (-1) drawn point in point
  // order selected, as a left click on it selects it.
  void StepSelection(int step);

  // The unit text beside the area: the chosen list text, the "not specified" label, or
  // "" when neither is shown.
  std::string AreaUnitText() const;

 private:
  LoadOutcome LoadChosen(const SelectedFile& file, UserDialogs& dialogs);
  void MakeOptionsAvailableByData();
  void ShowFile(const std::string& path);
  bool WriteFile(const std::string& path, UserDialogs& dialogs);
  void ClearSelection();
  // The selection or tag that a click on `hit` makes (none: the selection cleared).
  void Select(MouseButton button, const PointHit& hit);
  void EnableEditButtons();
  void ClearDrawing();

  class EditHost;
  void RunEdit(UserDialogs& dialogs, const PointDialogShow& showDialog,
               const std::function<void(const PointEditContext&)>& edit);
  void ProcessEdited(UserDialogs& dialogs);

  Survey survey_;
  ProcessingState state_;
  EditState edit_;
  MainDisplay display_;
  PlotScene scene_;
  UndoSnapshot snapshot_;
};

}  // namespace plotmeter
