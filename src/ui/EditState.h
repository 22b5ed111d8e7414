// The edit flags shared by the main window, the point entry dialog and the file
// commands: what has changed since the file was last loaded or saved, which mode the
// point entry dialog is in, and whether a data file is current. Owned by the window
// logic beside the survey.
#pragma once

#include <cstdint>

namespace plotmeter {

// Change marks. The exit guard asks about unsaved data while any of `kUnsavedMarks` is
// set; the display mark records an option or unit change, which the data file does not
// hold.
inline constexpr std::uint8_t kDataChanged = 0x01;        // differs from the file
inline constexpr std::uint8_t kPendingChange = 0x02;      // changed, not yet processed
inline constexpr std::uint8_t kChangedBeforeEdit = 0x04;  // keeps kDataChanged across UnDo
inline constexpr std::uint8_t kDatasetSettingsChanged = 0x08;
inline constexpr std::uint8_t kDisplayChanged = 0x10;
inline constexpr std::uint8_t kUnsavedMarks =
    kDataChanged | kPendingChange | kDatasetSettingsChanged;
// "Save" to the current file clears these; "Save As" every change mark but the display's.
inline constexpr std::uint8_t kDataChangedMarks =
    kDataChanged | kPendingChange | kChangedBeforeEdit;
inline constexpr std::uint8_t kSaveAsKeptMarks = kDisplayChanged;

// Dialog marks: an entry in progress, and the mode the dialog opens in. The mode of an
// edit button with index i (0 "Modify", 1 "Add") is (i + 1) x 32.
inline constexpr std::uint8_t kEntryStarted = 0x01;   // a new point has been begun
inline constexpr std::uint8_t kEntryHasValue = 0x02;  // and holds a typed value
inline constexpr std::uint8_t kEntryMarks = kEntryStarted | kEntryHasValue;
inline constexpr std::uint8_t kModifyMode = 0x20;
inline constexpr std::uint8_t kInsertMode = 0x40;
inline constexpr std::uint8_t kNewDataMode = 0x80;  // created with "Create New"

// File marks.
inline constexpr std::uint8_t kFileCurrent = 0x01;  // a data file is loaded or saved

struct EditState {
  std::uint8_t Changes = 0;
  std::uint8_t Dialog = 0;
  std::uint8_t File = 0;

  bool Unsaved() const { return (Changes & kUnsavedMarks) != 0; }
};

}  // namespace plotmeter
