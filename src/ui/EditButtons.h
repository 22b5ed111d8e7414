// The main window's point-edit buttons `EditPtBtn` ("Modify", "Add", "Delete", "UnDo")
// without a toolkit. The window logic owns the data and the enabled states and hands them
// over by reference; the two things that belong to the window itself, showing the point
// entry dialog and running processing, come back to it through `EditWindow`.
#pragma once

#include <array>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"
#include "ui/EditState.h"
#include "ui/PointEdits.h"

namespace plotmeter {

inline constexpr int kModifyButton = 0;
inline constexpr int kAddButton = 1;
inline constexpr int kDeleteButton = 2;
inline constexpr int kUndoButton = 3;
inline constexpr int kEditButtonCount = 4;

// The enabled states these buttons set: `EditPtBtn` 0 to 3 and the main window's "Save"
// (`DataBtn` index 1).
struct EditButtonsEnabled {
  std::array<bool, kEditButtonCount> EditPtBtn{};
  bool SaveBtn = false;
};

class EditWindow {
 public:
  virtual ~EditWindow() = default;
  // Shows the point entry dialog modally over the shared data; returns once it has
  // closed. The dialog reads its mode from `EditState::Dialog`.
  virtual void ShowPointDialog() = 0;
  // The processing pipeline and the redraw.
  virtual void RunProcessing() = 0;
  // The selection is about to be cleared: the window takes away the selected point's
  // highlight and its selection text. `SelectedPoint` still names the point.
  virtual void ClearSelectionDisplay() {}
};

struct PointEditContext {
  Survey& survey;
  ProcessingState& state;  // `SelectedPoint` and `SelectedDataset`
  EditState& edit;
  UndoSnapshot& snapshot;
  EditButtonsEnabled& buttons;
  EditWindow& window;
};

// The Click handler of `EditPtBtn` (index 0 "Modify", 1 "Add", 2 "Delete", 3 "UnDo"). A
// button that is disabled does nothing, and neither do "Modify", "Add" and "Delete"
// without a selected point.
//
// - Modify, Add: `ModifyMode` or `InsertMode` is set, the dialog shown (it takes the
//   snapshot and makes the change), the mode flags cleared; "Modify", "Add", "Delete"
//   are disabled, "UnDo" is enabled only while `DataChanged` is set and a snapshot is
//   held.
// - Delete: the snapshot is taken, `ChangedBeforeEdit` set when the data is unsaved (also
//   for a refused deletion, whose snapshot no longer reaches back to the file's data),
//   and the selected point deleted (`DeletePoint`; refused silently), which sets
//   `DataChanged` and `PendingChange`.
//   "Modify", "Add", "Delete" are disabled and "UnDo" enabled.
// - These three end alike: processing runs when `DataChanged` or
//   `DatasetSettingsChanged` is set, the selection is cleared, and "Save" is disabled
//   when no file is current or none of `PendingChange`, `ChangedBeforeEdit`,
//   `DatasetSettingsChanged` is set (`DataChanged` alone does not keep it enabled).
// - UnDo: "UnDo" is disabled and the snapshot restored (with none held, as after
//   "Create New", nothing else happens); unless `ChangedBeforeEdit` is set, `DataChanged`
//   and `PendingChange` are cleared; `DatasetSettingsChanged` and the entry marks are
//   cleared, and processing runs.
void OnEditPointButton(const PointEditContext& context, int index);

// "Create New" on the data: the change marks, processing state and snapshot are cleared,
// no file is current, the survey is made new (`CreateNewSurvey`) and the dialog shown
// in new-data mode; then the buttons and processing as after "Add". The window shows
// its own labels ("< No File >" and the like).
void OnCreateNew(const PointEditContext& context);

}  // namespace plotmeter
