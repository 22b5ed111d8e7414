#include "ui/EditButtons.h"

namespace plotmeter {

namespace {

constexpr std::uint8_t kModeMarks = kModifyMode | kInsertMode | kNewDataMode;
constexpr std::uint8_t kKeepSaveMarks =
    kPendingChange | kChangedBeforeEdit | kDatasetSettingsChanged;

bool HasSelection(const PointEditContext& context) {
  int selected = context.state.SelectedPoint;
  return selected >= 0 && selected < context.survey.PointCount();
}

void DisableSelectionButtons(EditButtonsEnabled& buttons) {
  buttons.EditPtBtn[kModifyButton] = false;
  buttons.EditPtBtn[kAddButton] = false;
  buttons.EditPtBtn[kDeleteButton] = false;
}

void ShowDialogInMode(const PointEditContext& context, std::uint8_t mode) {
  context.edit.Dialog = static_cast<std::uint8_t>((context.edit.Dialog & ~kModeMarks) | mode);
  context.window.ShowPointDialog();
  context.edit.Dialog &= static_cast<std::uint8_t>(~kModeMarks);
  DisableSelectionButtons(context.buttons);
  context.buttons.EditPtBtn[kUndoButton] =
      (context.edit.Changes & kDataChanged) && context.snapshot.Held;
}

void DeleteSelected(const PointEditContext& context) {
  TakeUndoSnapshot(context.survey, context.snapshot);
  // Once the data differs from the file, the snapshot no longer reaches back to it (even
  // when the deletion is refused): an UnDo must not take the change marks away. A
  // cancelled dialog may have cleared `DataChanged` alone, so every unsaved mark counts.
  std::uint8_t& changes = context.edit.Changes;
  if (context.edit.Unsaved()) changes |= kChangedBeforeEdit;
  if (DeletePoint(context.survey, context.state.SelectedPoint)) {
    changes |= kDataChanged | kPendingChange;
  }
  DisableSelectionButtons(context.buttons);
  context.buttons.EditPtBtn[kUndoButton] = true;
}

void Undo(const PointEditContext& context) {
  context.buttons.EditPtBtn[kUndoButton] = false;
  // Nothing to take back (a new survey): the change marks must stay as they are.
  if (!RestoreUndoSnapshot(context.survey, context.snapshot)) return;
  std::uint8_t& changes = context.edit.Changes;
  if (!(changes & kChangedBeforeEdit)) {
    changes &= static_cast<std::uint8_t>(~(kDataChanged | kPendingChange));
  }
  changes &= static_cast<std::uint8_t>(~kDatasetSettingsChanged);
  context.edit.Dialog &= static_cast<std::uint8_t>(~kEntryMarks);
  context.window.RunProcessing();
}

// What Modify, Add and Delete do once the data has changed, or not.
void CommonEnding(const PointEditContext& context) {
  const EditState& edit = context.edit;
  if (edit.Changes & (kDataChanged | kDatasetSettingsChanged)) context.window.RunProcessing();
  if (context.state.SelectedPoint >= 0) {
    context.window.ClearSelectionDisplay();
    context.state.ResetSelection();
  }
  if (!(edit.File & kFileCurrent) || !(edit.Changes & kKeepSaveMarks)) {
    context.buttons.SaveBtn = false;
  }
}

}  // namespace

void OnEditPointButton(const PointEditContext& context, int index) {
  if (index < 0 || index >= kEditButtonCount || !context.buttons.EditPtBtn[index]) return;
  if (index == kUndoButton) {
    Undo(context);
    return;
  }
  if (!HasSelection(context)) return;
  if (index == kDeleteButton) {
    DeleteSelected(context);
  } else {
    ShowDialogInMode(context, static_cast<std::uint8_t>((index + 1) * 32));
  }
  CommonEnding(context);
}

void OnCreateNew(const PointEditContext& context) {
  context.edit.Changes = 0;
  context.edit.File &= static_cast<std::uint8_t>(~kFileCurrent);
  context.state = ProcessingState{};
  ClearUndoSnapshot(context.snapshot);
  CreateNewSurvey(context.survey);
  ShowDialogInMode(context, kNewDataMode);
  CommonEnding(context);
}

}  // namespace plotmeter
