// The common file dialog as the file commands use it: the result codes of a chosen name,
// the checks that give them, and the box that reports a bad name.
#pragma once

#include <string>
#include <string_view>

#include "model/UserDialogs.h"

namespace plotmeter {

// Modes of the file dialog.
inline constexpr int kSelectOpen = 0;
inline constexpr int kSelectSave = 1;
inline constexpr int kSelectWholeFolder = 2;
inline constexpr int kSelectFolderByName = 3;

// Result codes of `SelectFile`; any other value is a name that may be used.
inline constexpr int kFileUsable = 0;
inline constexpr int kFileCancelled = 64;  // cancelled, or no name chosen
inline constexpr int kFileNoStem = 65;
inline constexpr int kFileBadExtension = 66;
inline constexpr int kFileNoFolder = 67;  // the folder of the name does not exist

inline constexpr const char* kDataFileFilter = ".CSV|*.csv|All Files|*.*";

struct SelectedFile {
  int code = kFileCancelled;
  std::string path;
};

// The name the user chose, checked: cancelled or empty gives 64; for the file modes a
// name without a stem 65, and, when `extension` is required, another extension 66 (in
// any case), while a name without one gets it added. The folder modes give the folder.
SelectedFile CheckChosenName(int mode, std::string_view extension, const FileChoice& choice);

// As `CheckChosenName`, and for the file modes a usable name whose folder does not exist
// gives `kFileNoFolder`.
SelectedFile CheckChosenFile(int mode, std::string_view extension, const FileChoice& choice);

// Shows the common file dialog and checks the chosen name.
SelectedFile SelectFile(UserDialogs& dialogs, FileDialogRequest request);

// A file of that path exists and is not a folder.
bool FileExists(const std::string& path);
// The folder part of a path: what stands before its last folder separator ("" for none).
std::string PathFolder(const std::string& path);
// The file name part of a path: what follows its last folder separator.
std::string PathFileName(const std::string& path);

// The "Data Function" box that reports a bad name, after a beep.
void ReportNameFault(UserDialogs& dialogs, const SelectedFile& file);

}  // namespace plotmeter
