// The point entry dialog `DataInput` ("Data Input") without a toolkit. It works on the
// shared survey directly: it adds a point, inserts one after the selected point or
// modifies the selected point, and sets the current dataset's kind and tag and the file's
// tag, declination and unit. Every typed value is checked as it is typed and stored only
// when it is good.
//
// The state of every control is kept here under its object name (an array member as
// name + "_" + index: "DataTxt_0"), so a Qt dialog only mirrors `Controls()` into its
// widgets and forwards each user action to the method of the same meaning. While it
// writes its widgets it sets `SetFillingFields(true)`, so that the change signals it
// causes are not taken for user input; every action does nothing while filling, after
// the dialog has closed, or on a control that is disabled.
//
// Modes, read from `EditState::Dialog` when the dialog opens:
// - `ModifyMode`: the selected point is loaded ("Modify Point:");
// - `InsertMode`: a new point is begun after the selected point ("Insert Point:", with
//   `AddNoteLbl` "inserted AFTER the selected point");
// - otherwise (`NewDataMode`, "Create New"): a new point is begun at the end of the
//   selected dataset, or of the last dataset ("New at Point:").
// Insert and modify take the undo snapshot first. A point begun in the dialog is in the
// survey from the start (later points move up one place) and is taken out again when its
// entry is abandoned; a point loaded from the data reads "Modify Point:".
//
// Next begins a new point after the last point of a dataset; dataset Next begins a new
// dataset (main perimeter when there is no main, else a line) with a new start point.
// A dataset left empty is removed again (unless it is the only one), and dataset Next is
// not offered from a dataset that holds no point yet.
//
// Apply: an unfinished new point may be dropped (when its dataset keeps enough points),
// the point is checked by `CheckEnteredPoint` against positions worked out afresh, the
// survey must load again from the file it would be saved as (else the reader's fault is
// shown under "Point Add / Edit" and the dialog stays), and
// `DataChanged` and `PendingChange` are set (`ChangedBeforeEdit` too when the data was
// unsaved as the dialog opened). Cancel puts back the survey and the change marks as
// they were when the dialog opened, then clears `DataChanged` unless `ChangedBeforeEdit`
// is set; the snapshot taken on opening stays. Either way the mode and entry marks are cleared.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"
#include "model/UserDialogs.h"
#include "ui/EditState.h"
#include "ui/PointEdits.h"

namespace plotmeter {

inline constexpr char kDataInputCaption[] = "Data Input";
inline constexpr char kPointEditTitle[] = "Point Add / Edit";

enum class ControlKind { Label, Text, Button, List, Check, Option, Frame };

struct ControlState {
  ControlKind kind = ControlKind::Label;
  std::string text;  // caption, label text or field text
  bool enabled = true;
  bool visible = true;
  std::vector<std::string> items;  // lists
  int index = -1;                  // the list's choice
  bool checked = false;            // check boxes and option buttons
};

enum class DialogOutcome { Open, Applied, Cancelled };

// `PtTypCmb` positions; choosing position i makes `CurrentInputType` 2 to the power i.
inline constexpr int kTypeCoordinates = 0;
inline constexpr int kTypeBearingTrue = 1;
inline constexpr int kTypeBearingMagnetic = 2;
inline constexpr int kTypeReference = 3;
inline constexpr int kTypeGpsOnly = 4;

// `PtQualifCkB` boxes.
inline constexpr int kQualifierIntermediate = 0;
inline constexpr int kQualifierJoin = 1;
inline constexpr int kQualifierLink = 2;

class DataInputLogic {
 public:
  DataInputLogic(Survey& survey, ProcessingState& state, EditState& edit, UndoSnapshot& snapshot,
                 UserDialogs& dialogs);

  // Opening the dialog: the mode, the snapshot, the point, the lists and every control.
  void Open();
  DialogOutcome Outcome() const { return outcome_; }
  bool IsOpen() const { return outcome_ == DialogOutcome::Open; }

  // Every control by object name; an unknown name gives a disabled, hidden, empty label.
  const ControlState& Control(std::string_view objectName) const;
  const std::map<std::string, ControlState, std::less<>>& Controls() const { return controls_; }

  // The point being edited: its place in its dataset (0 the start point), its index in
  // `Points`, its dataset (0-based) and its input type (0x01 to 0x10).
  int CurrentPoint() const;
  int CurrentPointIndex() const { return current_; }
  int CurrentDataset() const { return dataset_; }
  std::uint8_t CurrentInputType() const;

  bool FillingFields() const { return filling_; }
  void SetFillingFields(bool filling) { filling_ = filling; }

  // The main window's selection text ("Point 12 selected") after a move between points;
  // also handed to `onSelectionText` when set.
  const std::string& SelectionText() const { return selectionText_; }
  std::function<void(const std::string&)> onSelectionText;

  // User actions, by control.
  void TypeDataTxt(int index, std::string_view text);
  void TypeGPSTxt(int index, std::string_view text);
  void ChooseGPSCmb(int index, int item);  // 0 East / North, 1 West / South
  void ChoosePtTypCmb(int item);
  void TickPtQualifCkB(int index, bool ticked);
  // The point a reference or a bearing is taken from, by its number ("PtRef#"); 0 for none.
  void LinkToPoint(int pointNumber);
  void ChooseTypOpt(int index);
  void TypeDSTagTxt(std::string_view text);
  void TypeFileTagTxt(std::string_view text);
  void TypeMagDecTxt(std::string_view text);
  void ChooseUOMCmb(int item);
  void ClickNxtPrevBtn(int index);  // 0 "Next", 1 "Previous"
  void ClickDSNxtPrevBtn(int index);
  void ClickExitBtn(int index);  // 0 "Apply", 1 "Cancel" (also Escape and closing the window)

  void ClickNext() { ClickNxtPrevBtn(0); }
  void ClickPrevious() { ClickNxtPrevBtn(1); }
  void ClickApply() { ClickExitBtn(0); }
  void ClickCancel() { ClickExitBtn(1); }

  // Labels, enabled states, hints and choices for the current point, dataset and unit.
  void RefreshPointFields();

 private:
  enum class Entry { Complete, OneOfTwo, Incomplete };
  static constexpr int kFieldCount = 4;  // DataTxt 0 and 1, GPSTxt 0 and 1

  Point& Current() { return survey_.Points[current_]; }
  const Point& Current() const { return survey_.Points[current_]; }
  ControlState& Ctl(std::string_view name);
  ControlState& Ctl(std::string_view name, int index);
  bool Acting(std::string_view name) const;

  void LoadPoint(int index);
  void BeginNewPoint(int dataset, int position);
  void BeginNewDataset();
  void DropNewPoint();
  void LoadNearest(int dataset, int position);
  bool HasRoomForPoint() const;
  void FillPointFields();
  void FillGps(int index);
  void ShowMovedTo();

  std::uint8_t CheckField(int field);
  bool Refuse(std::uint8_t status);
  void StoreGps(int index);
  void RebuildFlags(int typeIndex);
  void RecheckFieldsQuietly();
  void ClearDisabledLength();
  void MarkValueChanged();
  void MarkSettingsChanged();

  Entry EntryState() const;
  bool FieldsAccepted();
  bool LeaveEntry();
  void CommitEntry();
  bool EnoughPointsWithoutEntry() const;
  void MovePoint(int step);
  void MoveDataset(int step);
  void Apply();
  void Cancel();
  void Close(DialogOutcome outcome);

  void RefreshHeader();
  void RefreshFields();
  void RefreshQualifiers();
  void RefreshMoves();
  void RefreshDataset();
  void RefreshHints();

  Survey& survey_;
  ProcessingState& state_;
  EditState& edit_;
  UndoSnapshot& snapshot_;
  UserDialogs& dialogs_;

  std::map<std::string, ControlState, std::less<>> controls_;
  DialogOutcome outcome_ = DialogOutcome::Cancelled;
  std::uint8_t mode_ = 0;
  bool filling_ = false;
  int dataset_ = 0;
  int current_ = -1;
  bool newEntry_ = false;
  Point original_;  // the point as it was loaded, for an abandoned change
  std::array<bool, kFieldCount> refused_{};
  UndoSnapshot opening_;
  std::uint8_t changesAtOpen_ = 0;
  std::string selectionText_;
};

}  // namespace plotmeter
