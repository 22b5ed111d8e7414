#include "ui/FileCommands.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "datafile/SafeFile.h"

namespace plotmeter {

namespace {

std::string LowerTrimmed(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  std::string result(text.substr(first, text.find_last_not_of(' ') - first + 1));
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

SelectedFile CheckFileName(std::string_view required, std::string path) {
  std::string name = PathFileName(path);
  std::size_t dot = name.rfind('.');
  std::string stem = dot == std::string::npos ? name : name.substr(0, dot);
  if (stem.empty()) return {kFileNoStem, path};
  if (required.empty()) return {kFileUsable, path};
  if (dot == std::string::npos || dot + 1 == name.size()) {
    if (path.back() != '.') path += '.';
    return {kFileUsable, path + std::string(required)};
  }
  if (LowerTrimmed(name.substr(dot + 1)) != required) return {kFileBadExtension, path};
  return {kFileUsable, path};
}

}  // namespace

SelectedFile CheckChosenName(int mode, std::string_view extension, const FileChoice& choice) {
  if (choice.cancelled || choice.path.empty()) return {kFileCancelled, ""};
  if (mode == kSelectWholeFolder || mode == kSelectFolderByName) {
    return {kFileUsable, PathFolder(choice.path)};
  }
  return CheckFileName(LowerTrimmed(extension), choice.path);
}

SelectedFile SelectFile(UserDialogs& dialogs, FileDialogRequest request) {
  request.extension = LowerTrimmed(request.extension);
  if (request.mode == kSelectWholeFolder) request.initialName = "_whole directory_";
  // One character assigned, not "_": g++ 12 -O3 wrongly warns (-Wrestrict) on the literal.
  if (request.mode == kSelectFolderByName) request.initialName.assign(1, '_');
  if (!request.keepName && request.mode <= kSelectSave) request.initialName.clear();
  return CheckChosenFile(request.mode, request.extension, dialogs.SelectFile(request));
}

SelectedFile CheckChosenFile(int mode, std::string_view extension, const FileChoice& choice) {
  SelectedFile file = CheckChosenName(mode, extension, choice);
  if (file.code == kFileUsable && mode <= kSelectSave && !FolderExists(file.path)) {
    file.code = kFileNoFolder;
  }
  return file;
}

bool FileExists(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::exists(path, error) &&
         !std::filesystem::is_directory(path, error);
}

std::string PathFolder(const std::string& path) {
  std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

std::string PathFileName(const std::string& path) {
  std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

void ReportNameFault(UserDialogs& dialogs, const SelectedFile& file) {
  const char* text = file.code == kFileNoStem         ? "Invalid filename stem"
                     : file.code == kFileBadExtension ? "Filename has bad extension"
                                                      : "Unidendified processing error";
  Alert(dialogs, {.title = "Data Function",
                  .text = std::string(text) + "\n\n" + file.path,
                  .icon = Icon::Critical});
}

}  // namespace plotmeter
