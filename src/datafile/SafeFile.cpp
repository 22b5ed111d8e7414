#include "datafile/SafeFile.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

namespace plotmeter {

namespace {

namespace fs = std::filesystem;

// As many symbolic links as the system itself follows before it gives up.
constexpr int kMaxLinks = 40;
// Temporary names are short and all of one length, so that a target whose name is as long
// as the system allows can still be saved.
constexpr std::string_view kTemporaryPrefix = ".plotmeter-";
constexpr int kTemporarySuffixLength = 6;
constexpr std::string_view kNotRegularFile = "Not a regular file";

std::string SystemReason(int error) { return std::generic_category().message(error); }
std::string LastReason() { return SystemReason(errno); }

std::string FolderOf(const std::string& path) {
  fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? std::string(".") : folder.string();
}

// The file that `path` finally names: symbolic links in its last part are followed, so
// that the file behind them is the one updated. A link to nothing names the file to make.
std::string FollowLinks(std::string path, std::string& target) {
  for (int links = 0; links <= kMaxLinks; ++links) {
    struct stat info;
    if (::lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) {
      target = path;
      return "";
    }
    std::string link(PATH_MAX, '\0');
    const ssize_t length = ::readlink(path.c_str(), link.data(), link.size());
    if (length < 0) return LastReason();
    link.resize(static_cast<std::size_t>(length));
    if (fs::path(link).is_absolute()) {
      path = link;
    } else {
      path = (fs::path(path).parent_path() / link).string();
    }
  }
  return SystemReason(ELOOP);
}

struct Target {
  std::string path;  // with its links followed
  bool exists = false;
  struct stat info {};
};

// Root may write anything, but a file that no one may write (mode 0444) was made
// read-only on purpose by its owner.
bool MayWrite(const Target& target) {
  return (target.info.st_mode & 0222) != 0 &&
         ::faccessat(AT_FDCWD, target.path.c_str(), W_OK, AT_EACCESS) == 0;
}

std::string ExamineTarget(const std::string& path, Target& target) {
  if (path.empty()) return SystemReason(ENOENT);
  if (fs::path(path).filename().empty()) return SystemReason(EISDIR);
  if (std::string reason = FollowLinks(path, target.path); !reason.empty()) return reason;
  if (::lstat(target.path.c_str(), &target.info) != 0) {
    // A new file; a missing folder is reported when the file cannot be made there.
    return errno == ENOENT ? "" : LastReason();
  }
  target.exists = true;
  if (S_ISDIR(target.info.st_mode)) return SystemReason(EISDIR);
  if (!S_ISREG(target.info.st_mode)) return std::string(kNotRegularFile);
  if (!MayWrite(target)) return SystemReason(EACCES);
  return "";
}

// A replaced file keeps its permissions; a new one gets what the user's umask allows,
// rather than the owner-only mode of a temporary file.
mode_t ModeFor(const Target& target) {
  if (target.exists) return target.info.st_mode & 07777;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// The owner and group of the replaced file where the system allows: root may give a file
// to anyone, a user only to a group of their own. Otherwise the file is the user's.
void KeepOwner(int fd, const struct stat& old) {
  if (::fchown(fd, old.st_uid, old.st_gid) == 0) return;
  if (::fchown(fd, static_cast<uid_t>(-1), old.st_gid) == 0) return;
}

bool WriteAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(fd, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    if (written == 0) {
      errno = EIO;
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Makes a rename durable; a folder that cannot be synced loses nothing already written,
// so a failure here is not reported.
void SyncFolder(const std::string& folder) {
  const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

std::string TemporaryName(const std::string& folder, std::string_view suffix) {
  std::string name = folder;
  name += '/';
  name += kTemporaryPrefix;
  name += suffix;
  return name;
}

// Seeded afresh in each process: children forked after a save do not repeat its names.
std::string RandomSuffix() {
  static std::minstd_rand random;
  static pid_t seededFor = 0;
  if (seededFor != ::getpid()) {
    seededFor = ::getpid();
    random.seed(static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count() ^
                                      seededFor));
  }
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::string suffix(kTemporarySuffixLength, ' ');
  for (char& c : suffix) c = kLetters[random() % kLetters.size()];
  return suffix;
}

bool IsTemporaryName(std::string_view name) {
  return name.size() == kTemporaryPrefix.size() + kTemporarySuffixLength &&
         name.starts_with(kTemporaryPrefix);
}

// Removes `path` when it is a temporary file that no save holds any more (its save was
// killed) and still the file that was opened.
void RemoveIfAbandoned(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (fd < 0) return;
  struct stat opened, named;
  if (::fstat(fd, &opened) == 0 && S_ISREG(opened.st_mode) && ::flock(fd, LOCK_EX | LOCK_NB) == 0 &&
      ::lstat(path.c_str(), &named) == 0 && named.st_dev == opened.st_dev &&
      named.st_ino == opened.st_ino) {
    ::unlink(path.c_str());
  }
  ::close(fd);
}

// The temporary files that killed saves left in `folder` go with the next save there.
void RemoveAbandonedTemporaries(const std::string& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (IsTemporaryName(entry->path().filename().native())) {
      RemoveIfAbandoned(entry->path().string());
    }
  }
}

// The signals that a user sends to stop a program (Ctrl-C, kill) wait while they are held:
// between naming the finished file and renaming it, a stop would leave the name behind.
// Only SIGKILL, which nothing can hold, still finds those two calls.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, &previous_);
  }
  ~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t previous_;
};

#ifdef O_TMPFILE
// The errors of a system or file system without unnamed files.
bool IsUnsupported(int error) { return error == EOPNOTSUPP || error == EISDIR || error == EINVAL; }

bool LinkTo(int fd, const std::string& name) {
  if (::linkat(fd, "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH) == 0) return true;
  if (errno == EEXIST) return false;
  // Without the privilege that AT_EMPTY_PATH needs, the same file by way of /proc.
  std::string self = "/proc/self/fd/";
  self += std::to_string(fd);
  return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}
#endif

// The new text on its way to the target's folder: removed unless it is put in place (or
// kept on purpose).
class Temporary {
 public:
  explicit Temporary(std::string folder) : folder_(std::move(folder)) {}
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
  ~Temporary() {
    if (fd_ >= 0) ::close(fd_);
    if (!name_.empty() && !placed_ && !kept_) ::unlink(name_.c_str());
  }

  // The file is locked while this save lives, so that a later save can tell a file
  // abandoned by a killed one from a file still in use.
  std::string Open(TemporaryFile kind) {
#ifdef O_TMPFILE
    if (kind == TemporaryFile::kUnnamedWherePossible) {
      fd_ = ::open(folder_.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
      if (fd_ >= 0) {
        ::flock(fd_, LOCK_EX | LOCK_NB);
        return "";
      }
      if (!IsUnsupported(errno)) return LastReason();
    }
#else
    (void)kind;
#endif
    std::string name = TemporaryName(folder_, "XXXXXX");
    fd_ = ::mkstemp(name.data());
    if (fd_ < 0) return LastReason();
    ::flock(fd_, LOCK_EX | LOCK_NB);
    name_ = std::move(name);
    return "";
  }

  // Owner, mode and text, flushed to the disk.
  std::string Fill(const Target& target, std::string_view text) {
    if (target.exists) KeepOwner(fd_, target.info);
    if (::fchmod(fd_, ModeFor(target)) != 0) return LastReason();
    if (!WriteAll(fd_, text) || ::fsync(fd_) != 0) return LastReason();
    return "";
  }

  std::string PutInPlace(const std::string& target) {
    // Held open, the replaced file is freed when this save closes it, not inside the
    // rename: freeing its blocks can take milliseconds, during which a kill would find
    // the new file still under its temporary name.
    const int replaced = ::open(target.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    const std::string reason = NameAndRename(target);
    if (replaced >= 0) ::close(replaced);
    return reason;
  }

  // Kept under a name of its own, which no later save takes for an abandoned file.
  void Keep() {
    std::string kept = name_ + "-kept";
    if (std::rename(name_.c_str(), kept.c_str()) == 0) name_ = std::move(kept);
    kept_ = true;
  }
  const std::string& name() const { return name_; }

 private:
  std::string NameAndRename(const std::string& target) {
    SignalsHeld held;
    if (name_.empty()) {
      if (std::string reason = GiveName(); !reason.empty()) return reason;
    }
    if (std::rename(name_.c_str(), target.c_str()) != 0) return LastReason();
    placed_ = true;
    return "";
  }

  // Links the unnamed file into its folder under a fresh temporary name.
  std::string GiveName() {
#ifdef O_TMPFILE
    for (int attempt = 0; attempt < 100; ++attempt) {
      std::string name = TemporaryName(folder_, RandomSuffix());
      if (LinkTo(fd_, name)) {
        name_ = std::move(name);
        return "";
      }
      if (errno != EEXIST) return LastReason();
    }
#endif
    return SystemReason(EEXIST);
  }

  std::string folder_;
  int fd_ = -1;
  std::string name_;  // empty while the file has no name
  bool placed_ = false;
  bool kept_ = false;
};

std::string WriteAndReplace(const Target& target, std::string_view text, TemporaryFile kind) {
  const std::string folder = FolderOf(target.path);
  Temporary temporary(folder);
  std::string reason = temporary.Open(kind);
  if (reason.empty()) reason = temporary.Fill(target, text);
  if (reason.empty()) reason = temporary.PutInPlace(target.path);
  if (reason.empty()) SyncFolder(folder);
  return reason;
}

// A file of several names keeps them all, so it is rewritten in place. A complete copy of
// the text is made beside it first and its room on the disk reserved; should the rewrite
// still fail, the copy is kept and named in the reason, so that nothing is lost.
std::string WriteInPlace(const Target& target, std::string_view text) {
  Temporary copy(FolderOf(target.path));
  std::string reason = copy.Open(TemporaryFile::kNamed);
  if (reason.empty()) reason = copy.Fill(target, text);
  if (!reason.empty()) return reason;
  const int fd = ::open(target.path.c_str(), O_WRONLY | O_CLOEXEC);
  if (fd < 0) return LastReason();
  const auto size = static_cast<off_t>(text.size());
#ifdef FALLOC_FL_KEEP_SIZE
  ::fallocate(fd, FALLOC_FL_KEEP_SIZE, 0, size);  // where the file system can: best effort
#endif
  const bool written = WriteAll(fd, text) && ::ftruncate(fd, size) == 0 && ::fsync(fd) == 0;
  if (!written) reason = LastReason();
  ::close(fd);
  if (written) return "";
  copy.Keep();
  reason += "; the new text is kept in ";
  reason += copy.name();
  return reason;
}

}  // namespace

bool FolderExists(const std::string& path) {
  std::error_code error;
  return fs::is_directory(FolderOf(path), error);
}

SaveResult ReplaceFileSafely(const std::string& path, std::string_view text,
                             TemporaryFile temporary) {
  Target target;
  std::string reason = ExamineTarget(path, target);
  if (reason.empty()) {
    RemoveAbandonedTemporaries(FolderOf(target.path));
    reason = target.exists && target.info.st_nlink > 1 ? WriteInPlace(target, text)
                                                       : WriteAndReplace(target, text, temporary);
  }
  return {reason.empty(), reason};
}

}  // namespace plotmeter
