// Saving replaces only what it may, updates the file the user named, and leaves nothing
// behind, also when it is killed half-way.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "datafile/SafeFile.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

namespace fs = std::filesystem;
using std::string_literals::operator""s;
using testing::TestFolder;

class SafeFileTest : public ::testing::Test {
 protected:
  static struct stat Info(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return info;
  }

  TestFolder folder_;
};

// Anything but a regular file or a new name, and a file no one may write, stays as it was.
TEST_F(SafeFileTest, RefusedTargetsAreLeftAsTheyWere) {
  const std::string fifo = folder_.Path("fifo.csv"), folder = folder_.Path("folder.csv");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0644), 0);
  fs::create_directory(folder);
  const std::string readOnly = folder_.Write("read-only.csv", "old\n");
  ASSERT_EQ(::chmod(readOnly.c_str(), 0444), 0);
  const std::pair<std::string, std::string> rows[] = {{fifo, "Not a regular file"},
                                                      {folder, "Is a directory"},
                                                      {folder + "/", "Is a directory"},
                                                      {readOnly, "Permission denied"}};
  for (const auto& [path, reason] : rows) {
    const SaveResult result = ReplaceFileSafely(path, "new text\n");
    EXPECT_EQ(std::pair(result.saved, result.reason), std::pair(false, reason)) << path;
  }
  EXPECT_TRUE(fs::is_fifo(fifo));
  EXPECT_TRUE(fs::is_empty(folder));
  EXPECT_EQ(TestFolder::Contents(readOnly), "old\n");
  EXPECT_EQ(folder_.FileCount(), 3);
}

TEST_F(SafeFileTest, SymbolicLinksAreFollowedToTheFileTheyName) {
  const std::string real = folder_.Write("real.csv", "old\n");
  fs::create_directory(folder_.Path("links"));
  fs::create_symlink("../real.csv", folder_.Path("links/relative.csv"));
  fs::create_symlink(folder_.Path("links/relative.csv"), folder_.Path("chain.csv"));
  fs::create_symlink("made-by-save.csv", folder_.Path("dangling.csv"));
  for (const char* name : {"links/relative.csv", "chain.csv"}) {
    const std::string text = std::string("through ") + name + "\n";
    ASSERT_TRUE(ReplaceFileSafely(folder_.Path(name), text).saved) << name;
    EXPECT_TRUE(fs::is_symlink(folder_.Path(name)));
    EXPECT_EQ(TestFolder::Contents(real), text);
  }
  ASSERT_TRUE(ReplaceFileSafely(folder_.Path("dangling.csv"), "new\n").saved);
  EXPECT_TRUE(fs::is_symlink(folder_.Path("dangling.csv")));
  EXPECT_EQ(TestFolder::Contents(folder_.Path("made-by-save.csv")), "new\n");

  fs::create_symlink("loop-b.csv", folder_.Path("loop-a.csv"));
  fs::create_symlink("loop-a.csv", folder_.Path("loop-b.csv"));
  const SaveResult loop = ReplaceFileSafely(folder_.Path("loop-a.csv"), "x\n");
  EXPECT_EQ(std::pair(loop.saved, loop.reason),
            std::pair(false, "Too many levels of symbolic links"s));
  EXPECT_EQ(folder_.FileCount(), 7);
}

// A replaced file stays the same file: every name of it sees the new text, and it keeps
// its mode, owner and group. A new file (here by way of a named temporary file, as where
// the system has no unnamed ones) gets what the umask allows.
TEST_F(SafeFileTest, TheReplacedFileKeepsItsNamesAndPermissions) {
  const std::string path = folder_.Write("lot.csv", "the old text, longer than the new one\n");
  const std::string second = folder_.Path("second.csv");
  fs::create_hard_link(path, second);
  ASSERT_EQ(::chmod(path.c_str(), 0604), 0);
  // Only root may give a file away; for anyone else the owner stays the user's.
  const bool root = ::geteuid() == 0;
  const uid_t owner = root ? 65534 : ::geteuid();
  const gid_t group = root ? 65534 : ::getegid();
  ASSERT_EQ(::chown(path.c_str(), owner, group), 0);
  const mode_t previous = ::umask(027);
  const bool replaced = ReplaceFileSafely(second, "new\n").saved;
  const bool made =
      ReplaceFileSafely(folder_.Path("new.csv"), "new\n", TemporaryFile::kNamed).saved;
  ::umask(previous);
  ASSERT_TRUE(replaced && made);
  const struct stat info = Info(path);
  EXPECT_EQ(std::tuple(info.st_mode & 07777, info.st_uid, info.st_gid, info.st_ino, info.st_nlink),
            std::tuple(0604u, owner, group, Info(second).st_ino, nlink_t{2}));
  EXPECT_EQ(TestFolder::Contents(path), "new\n");
  EXPECT_EQ(Info(folder_.Path("new.csv")).st_mode & 07777, 0640u);
  EXPECT_EQ(folder_.FileCount(), 3);
}

// The disk fills up half-way through: the save fails, and the old file survives whole with
// no temporary file left beside it.
TEST_F(SafeFileTest, AFailingWriteLeavesTheOldFileAndNothingElse) {
  const std::string path = folder_.Write("lot.csv", "the survey as last saved\n");
  struct rlimit saved;
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &saved), 0);
  auto previousHandler = ::signal(SIGXFSZ, SIG_IGN);
  struct rlimit small = saved;
  small.rlim_cur = 4096;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  std::vector<SaveResult> results;
  for (TemporaryFile kind : {TemporaryFile::kUnnamedWherePossible, TemporaryFile::kNamed}) {
    results.push_back(ReplaceFileSafely(path, std::string(20000, 'x'), kind));
  }
  ::setrlimit(RLIMIT_FSIZE, &saved);
  ::signal(SIGXFSZ, previousHandler);
  for (const SaveResult& result : results) {
    EXPECT_EQ(std::pair(result.saved, result.reason), std::pair(false, "File too large"s));
  }
  EXPECT_EQ(TestFolder::Contents(path), "the survey as last saved\n");
  EXPECT_EQ(folder_.FileCount(), 1);
}

// A temporary file whose save was killed goes with the next save in its folder; one that a
// save still holds, and any other name, stays.
TEST_F(SafeFileTest, TemporaryFilesOfKilledSavesGoWithTheNextSave) {
  const std::string abandoned = folder_.Write(".plotmeter-abc123", "half a survey");
  const std::string inUse = folder_.Write(".plotmeter-def456", "a save under way");
  folder_.Write(".plotmeter-ghi789-kept", "kept on purpose");
  folder_.Write(".plotmeter-notes", "the user's own");
  const int held = ::open(inUse.c_str(), O_RDONLY);
  ASSERT_EQ(::flock(held, LOCK_EX), 0);
  ASSERT_TRUE(ReplaceFileSafely(folder_.Path("lot.csv"), "new\n").saved);
  ::close(held);
  EXPECT_FALSE(fs::exists(abandoned));
  EXPECT_EQ(folder_.FileCount(), 4);  // lot.csv, the one in use, the kept file and the notes
}

// The whole file in one read: the kill test reads it after every kill.
std::string QuickContents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::string text(fs::file_size(path), '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  return text;
}

// Saves `text` in a child process; returns its id.
pid_t SaveInChild(const std::string& path, const std::string& text) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(ReplaceFileSafely(path, text).saved ? 0 : 1);
  return child;
}

// Saves of a large file killed at random moments by SIGKILL, SIGTERM and SIGINT, until a
// hundred kills (or PLOTMETER_KILL_TRIES) came before their save ended. After every kill
// the file is the old text or the new one, whole; once the next save has run nothing else
// is left. Only SIGKILL, between naming the finished file and renaming it, can leave it
// whole under its temporary name until then. A few seconds.
TEST_F(SafeFileTest, SavesKilledAtRandomMomentsLeaveOneWholeFileAndNothingElse) {
  const std::string path = folder_.Path("survey.csv");
  const std::string texts[] = {std::string(1 << 20, 'a'), std::string(3 << 18, 'b')};
  ASSERT_TRUE(ReplaceFileSafely(path, texts[0]).saved);

  // The kills fall anywhere from the fork to `window` later. A save's length varies on a
  // busy machine, so the window follows the saves: a kill after its save ended narrows it,
  // one in time widens it a little. About one kill in six then comes too late, so a save's
  // last moments, the naming and the rename, are still hit.
  const auto start = std::chrono::steady_clock::now();
  int status = 0;
  ASSERT_GT(::waitpid(SaveInChild(path, texts[1]), &status, 0), 0);
  ASSERT_EQ(status, 0);
  double window =
      std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();

  std::mt19937 random(20241);
  const int signals[] = {SIGKILL, SIGTERM, SIGINT};
  const char* triesSet = std::getenv("PLOTMETER_KILL_TRIES");
  const int tries = triesSet ? std::atoi(triesSet) : 100;
  int attempts = 0, killedInTime = 0, torn = 0, partial = 0;
  std::set<fs::path> named;
  for (; killedInTime < tries && attempts < 4 * tries; ++attempts) {
    const int signal = signals[attempts % 3];
    const pid_t child = SaveInChild(path, texts[attempts % 2]);
    std::this_thread::sleep_for(std::chrono::nanoseconds(
        std::uniform_int_distribution<long>(0, static_cast<long>(window))(random)));
    ::kill(child, signal);
    ::waitpid(child, &status, 0);
    const bool inTime = WIFSIGNALED(status);
    killedInTime += inTime;
    window *= inTime ? 1.05 : 0.8;
    const std::string now = QuickContents(path);
    if (now != texts[0] && now != texts[1]) ++torn;
    for (const auto& entry : fs::directory_iterator(folder_.Path())) {
      if (entry.path() == path || !named.insert(entry.path()).second) continue;
      const std::string left = QuickContents(entry.path());
      if ((left != texts[0] && left != texts[1]) || signal != SIGKILL) ++partial;
    }
  }
  ASSERT_TRUE(ReplaceFileSafely(path, texts[0]).saved);
  const int leftBehind = folder_.FileCount() - 1;
  std::cout << "[ figures  ] " << attempts << " saves killed, " << killedInTime
            << " before they ended: " << torn << " torn, " << leftBehind << " left behind; "
            << named.size() << " whole under the temporary name until the next save\n";
  EXPECT_EQ(torn, 0);
  EXPECT_EQ(partial, 0);
  EXPECT_EQ(leftBehind, 0);
  // The kills that came in time are the ones that prove anything.
  EXPECT_EQ(killedInTime, tries);
}

}  // namespace
}  // namespace plotmeter
