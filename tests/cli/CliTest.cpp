// The command line run in-process: what a golden cannot show. What each command prints
// is the goldens' in tests/golden/cli, on the data files kept there; here the terminal,
// pipes, the written file, failed writes and memory.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "cli/Cli.h"
#include "cli/TextOutput.h"
#include "support/MemoryLimit.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

// The cli goldens' data file `name`.
std::string Data(const std::string& name) { return PLOTMETER_GOLDEN_DIR "/cli/" + name; }

// Each test runs in its own folder, which the files it writes are named in.
class CliTest : public ::testing::Test {
 protected:
  void SetUp() override { std::filesystem::current_path(folder_.Path()); }
  void TearDown() override { std::filesystem::current_path(start_); }

  int Run(const std::vector<std::string>& args, bool terminal = false) {
    out_.str("");
    err_.str("");
    return RunCli(args, out_, err_, terminal);
  }

  const std::filesystem::path start_ = std::filesystem::current_path();
  testing::TestFolder folder_;
  std::ostringstream out_, err_;
};

// On a terminal the file's control bytes are shown harmlessly; into a file or a pipe
// (the golden "list") they go as they are.
TEST_F(CliTest, ListShowsControlBytesHarmlesslyOnATerminal) {
  EXPECT_EQ(Run({"list", Data("cafe.csv")}, true), 0);
  EXPECT_NE(out_.str().find("\nFile Tag: Caf\xC3\xA9^[[2J^G\n"), std::string::npos) << out_.str();
}

// The file is read once, for the load and the listing both: a FIFO is listed whole.
TEST_F(CliTest, ListReadsAFifoOnce) {
  ASSERT_EQ(Run({"list", Data("block.csv")}), 0);
  const std::string expected = out_.str();
  ASSERT_EQ(::mkfifo("fifo.csv", 0600), 0);
  std::thread writer([] {
    std::ofstream("fifo.csv", std::ios::binary) << testing::TestFolder::Contents(Data("block.csv"));
  });
  EXPECT_EQ(Run({"list", "fifo.csv"}), 0);
  writer.join();
  EXPECT_EQ(out_.str(), expected);
}

// The list command loads from the text it read itself: its boxes and status are those of
// the load that check makes.
TEST_F(CliTest, ListLoadsAsCheckDoes) {
  for (const char* file : {"bowtie.csv", "bad.csv", "gps.csv", "many.csv"}) {
    for (std::vector<std::string> args : {std::vector<std::string>{"check", Data(file)},
                                          std::vector<std::string>{"check", Data(file), "--yes"}}) {
      SCOPED_TRACE(::testing::PrintToString(args));
      const int checked = Run(args);
      const std::string boxes = err_.str();
      args[0] = "list";
      EXPECT_EQ(Run(args), checked);
      EXPECT_EQ(err_.str(), boxes);
    }
  }
}

TEST_F(CliTest, SaveWritesWithTheWriterOptionsOrFails) {
  const std::string block = Data("block.csv");
  EXPECT_EQ(Run({"save", block, "saved.csv"}), 0);
  EXPECT_EQ(out_.str() + err_.str(), "");
  EXPECT_NE(testing::TestFolder::Contents("saved.csv").find("\n,/End data"), std::string::npos);
  // Plain layout, no column headings.
  EXPECT_EQ(Run({"save", block, "saved.csv", "--writer-options", "202"}), 0);
  const std::string plain = testing::TestFolder::Contents("saved.csv");
  EXPECT_NE(plain.find("\n/End data"), std::string::npos) << plain;
  EXPECT_EQ(plain.find("Column Headings"), std::string::npos) << plain;

  EXPECT_EQ(Run({"save", Data("bad.csv"), "not.csv"}), 1);
  EXPECT_TRUE(err_.str().starts_with("[File Read Abort]\n")) << err_.str();
  EXPECT_FALSE(std::filesystem::exists("not.csv"));
}

// Checked once for every command, after it has run.
TEST_F(CliTest, FailedWritesOfTheResultsGiveAMessageAndStatusOne) {
  const int full = ::open("/dev/full", O_WRONLY);
  ASSERT_GE(full, 0);
  OutputFile file(full);
  std::ostream out(&file);
  EXPECT_EQ(RunCli(std::vector<std::string>{"list", Data("block.csv")}, out, err_), 1);
  EXPECT_EQ(err_.str(), "plotmeter-cli: error writing standard output: No space left on device\n");
  ::close(full);
}

#ifndef PLOTMETER_ADDRESS_SANITIZER
// Lists `file` with only a little more address space than the process holds; exits with
// the status of the list command, its boxes on standard error.
[[noreturn]] void ListWithLittleMemory(const std::string& file) {
  testing::LimitAddressSpace(64 << 20);
  std::ostringstream out, err;
  const int status = RunCli(std::vector<std::string>{"list", file}, out, err);
  std::cerr << err.str();
  std::exit(status);
}
#endif

// Memory running out is a refusal like any other: a message and status 1.
TEST_F(CliTest, OutOfMemoryGivesAMessageAndStatusOne) {
#ifdef PLOTMETER_ADDRESS_SANITIZER
  GTEST_SKIP() << "AddressSanitizer needs more address space than the limit leaves";
#else
  // A file that fits the size limit but not the memory left: sparse, so it costs no disk.
  std::ofstream("large.csv").close();
  ASSERT_EQ(::truncate("large.csv", 300 << 20), 0);
  EXPECT_EXIT(ListWithLittleMemory("large.csv"), ::testing::ExitedWithCode(1),
              "large.csv: Cannot allocate memory");
#endif
}

}  // namespace
}  // namespace plotmeter
