#include "datafile/SafeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace plotmeter {

namespace {

namespace fs = std::filesystem;

fs::path FolderOf(const std::string& path) {
  fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? fs::path(".") : folder;
}

bool WriteAll(int fd, std::string_view text) {
  while (!text.empty()) {
    ssize_t written = ::write(fd, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// A replaced file keeps its permissions; a new one gets what the user's umask allows,
// rather than the owner-only mode of a temporary file.
bool TakeModeOf(int fd, const std::string& path) {
  struct stat existing;
  mode_t mode;
  if (::stat(path.c_str(), &existing) == 0 && S_ISREG(existing.st_mode)) {
    mode = existing.st_mode & 07777;
  } else {
    mode_t mask = ::umask(0);
    ::umask(mask);
    mode = 0666 & ~mask;
  }
  return ::fchmod(fd, mode) == 0;
}

// Makes the rename itself durable; a folder that cannot be synced loses nothing already
// written, so failure here is not reported.
void SyncFolder(const fs::path& folder) {
  int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

}  // namespace

bool FolderExists(const std::string& path) {
  std::error_code error;
  return fs::is_directory(FolderOf(path), error);
}

bool ReplaceFileSafely(const std::string& path, std::string_view text) {
  fs::path target(path);
  if (target.filename().empty()) return false;
  fs::path folder = FolderOf(path);
  std::string temporary = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
  int fd = ::mkstemp(temporary.data());
  if (fd < 0) return false;
  bool written = TakeModeOf(fd, path) && WriteAll(fd, text) && ::fsync(fd) == 0;
  bool closed = ::close(fd) == 0;
  if (!written || !closed || std::rename(temporary.c_str(), path.c_str()) != 0) {
    ::unlink(temporary.c_str());
    return false;
  }
  SyncFolder(folder);
  return true;
}

}  // namespace plotmeter
