// The command line run in-process: arguments, what goes to each stream and the status.
// What the layers below make (the boxes' texts, the area and the listing lines) is tested
// where it is made; here only how the commands pass it on.
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

#include "PlotmeterVersion.h"
#include "cli/Cli.h"
#include "cli/TextOutput.h"
#include "support/MemoryLimit.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

// A 40 by 30 metre block: 1,200 square metres.
constexpr const char* kBlock =
    "44,#0092,1,0,0,58,Example\nH,M,Block\n1,X,,,0,0\n2,X,,,40,0\n3,X,,,40,30\n4,X,,,0,30\n";

class CliTest : public ::testing::Test {
 protected:
  // The files the tests name, written to the test's folder, which is the working folder
  // while the test runs: the commands name them as given.
  void SetUp() override {
    std::string many = "44,#0092,1,0,0,58\nH,N\n";
    for (int i = 1; i <= 211; ++i) many += std::to_string(i) + ",X,,," + std::to_string(i) + ",0\n";
    const std::pair<const char*, std::string> files[] = {
        {"block.csv", kBlock},
        // Its lines cross: a bow-tie.
        {"bowtie.csv", "44,#0092,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,10\n3,X,,,10,0\n4,X,,,0,10\n"},
        {"bad.csv", "44,#0093,1,0,0,58\nH,M\n1,X,,,0,0\n"},  // not a file of this program
        {"line.csv", "44,#0092,1,0,0,58\nH,N\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\n"},
        // A 100 m square divided from join point 1 by way of (70, 30) to join point 3.
        {"divided.csv",
         "44,#0092,1,0,0,58\nH,M\n1,XJ,,,0,0\n2,X,,,100,0\n3,XJ,,,100,100\n4,X,,,0,100\n"
         "H,S\n5,R,1\n6,X,,,70,30\n"},
        // GPS-only points before the link point: the reader asks whether to process GPS
        // only.
        {"gps.csv",
         "44,#0092,1,0,0,58\nH,M\n1,G,,,,,148.5 E,35.3 S\n2,G,,,,,148.501 E,35.3 S\n"
         "3,XL,,,0,0,148.501 E,35.301 S\n4,G,,,,,148.5 E,35.301 S\n"},
        {"many.csv", many},  // over the point limit: processing fails
    };
    for (const auto& [name, text] : files) folder_.Write(name, text);
    std::filesystem::current_path(folder_.Path());
  }
  void TearDown() override { std::filesystem::current_path(start_); }

  int Run(const std::vector<std::string>& args) {
    out_.str("");
    err_.str("");
    return RunCli(args, out_, err_);
  }

  std::vector<std::string> OutLines() const {
    std::vector<std::string> lines;
    std::istringstream in(out_.str());
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
  }

  const std::filesystem::path start_ = std::filesystem::current_path();
  testing::TestFolder folder_;
  std::ostringstream out_, err_;
};

TEST_F(CliTest, CheckPrintsOkOrTheBoxAndSeveralFilesAreHeadedByName) {
  EXPECT_EQ(Run({"check", "block.csv"}), 0);
  EXPECT_EQ(out_.str(), "OK\n");
  EXPECT_EQ(err_.str(), "");
  EXPECT_EQ(Run({"check", "bad.csv"}), 1);
  EXPECT_EQ(out_.str(), "");
  EXPECT_EQ(err_.str(),
            "[File Read Abort]\nFile selected is not for this program.\n"
            "Please correct for a valid file\n\n");
  // The worst status wins.
  EXPECT_EQ(Run({"check", "block.csv", "bad.csv", "block.csv"}), 1);
  EXPECT_EQ(out_.str(), "block.csv: OK\nblock.csv: OK\n");
  EXPECT_TRUE(err_.str().starts_with("bad.csv: [File Read Abort]\n")) << err_.str();
}

// The area line as the main window shows it, or one JSON object a file; a refused file or
// a failure box prints no area, any box makes the status 1.
TEST_F(CliTest, AreaPrintsTheWindowsLineOrJson) {
  const std::string json =
      R"({"heading":"Area","value":"1,200","unit":"Sq. Meters","areas":[1200.0,1200.0,1200.0],)"
      R"("segmented":false,"swapped":false,"perimeter":"valid"})";
  const std::string notAPerimeter =
      R"({"file":"line.csv","heading":"Area","value":"< Not a Perimeter >","unit":"",)"
      R"("areas":null,"segmented":false,"swapped":false,"perimeter":"not a perimeter"})";
  const struct {
    std::vector<std::string> args;
    int status;
    std::string out;
  } rows[] = {
      {{"area", "block.csv"}, 0, "Area: 0.12 Hectares\n"},
      {{"area", "block.csv", "--unit", "Sq. Meters"}, 0, "Area: 1,200 Sq. Meters\n"},
      {{"area", "divided.csv", "--segment", "1"}, 0, "Area: 0.7 Hectares\n"},
      {{"area", "bowtie.csv"}, 1, "Area: < Bad Perimeter Lines >\n"},
      {{"area", "bad.csv"}, 1, ""},
      {{"area", "many.csv"}, 1, ""},
      {{"area", "block.csv", "--json", "--unit", "0"}, 0, json + "\n"},
      {{"area", "divided.csv", "--json", "--unit", "0"},
       0,
       R"({"heading":"Area","value":"10,000","unit":"Sq. Meters",)"
       R"("areas":[10000.0,7000.0,3000.0],"segmented":true,"swapped":false,"perimeter":"valid"})"
       "\n"},
      // Several files: each object names its file first; a survey without an area has
      // none, nor a unit.
      {{"area", "--json", "block.csv", "bowtie.csv", "line.csv", "--unit", "0"},
       1,
       R"({"file":"block.csv",)" + json.substr(1) + "\n" +
           R"({"file":"bowtie.csv","heading":"Area","value":"< Bad Perimeter Lines >","unit":"",)"
           R"("areas":null,"segmented":false,"swapped":false,"perimeter":"bad"})"
           "\n" +
           notAPerimeter + "\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::PrintToString(row.args));
    EXPECT_EQ(Run(row.args), row.status);
    EXPECT_EQ(out_.str(), row.out);
    EXPECT_EQ(err_.str().empty(), row.status == 0);
  }
}

// The question's own text is the reader's test; here --yes, before or after the command.
TEST_F(CliTest, QuestionsAreAnsweredNoUnlessYes) {
  EXPECT_EQ(Run({"check", "gps.csv"}), 1);
  EXPECT_NE(err_.str().find("\n> No\n"), std::string::npos) << err_.str();
  EXPECT_EQ(Run({"check", "gps.csv", "--yes"}), 0);
  EXPECT_EQ(out_.str(), "OK\n");
  EXPECT_EQ(Run({"--yes", "area", "gps.csv"}), 0);
  EXPECT_TRUE(out_.str().starts_with("Area (GPS): ")) << out_.str();
}

// The settings labels, the heading and the lines, in UTF-8; on a terminal the file's
// control bytes are shown harmlessly, into a file or a pipe they go as they are.
TEST_F(CliTest, ListShowsTheSettingsHeadingAndLinesInUtf8) {
  std::string text = kBlock;
  text.replace(text.find("0,0,58,Example"), 14, "0,-2.5,58,Caf\xE9\x1B[2J\x07");
  text.replace(text.find("2,X,,,40,0"), 10, "2,B,,,90\xB0,40");
  const std::vector<std::string> args = {"list", folder_.Write("cafe.csv", text)};
  EXPECT_EQ(Run(args), 0);
  const std::vector<std::string> expected = {
      "Unit of Measure: Meters",
      "File Tag: Caf\xC3\xA9\x1B[2J\x07",
      "Mag Decl'n: -2.5",
      "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)  ",
      "[M] Dataset as Main (Perimeter) for 'Block'",
      "  1 X           |          0          0",
      "  2 B           |        90\xC2\xB0         40",
      "  3 X           |         40         30",
      "  4 X           |          0         30",
  };
  EXPECT_EQ(OutLines(), expected);
  out_.str("");
  EXPECT_EQ(RunCli(args, out_, err_, true), 0);
  EXPECT_EQ(OutLines()[1], "File Tag: Caf\xC3\xA9^[[2J^G");
}

// The options reach the listing; what each box does is DataListingTest's.
TEST_F(CliTest, ListOfTheProcessedSurveyWithChosenGroupsAndSets) {
  EXPECT_EQ(Run({"list", "divided.csv", "--processed", "--show", "none", "--include", "sub"}), 0);
  ASSERT_EQ(OutLines().size(), 8u);
  EXPECT_EQ(OutLines()[3], "Pt# Typ Ref Tgt");
  EXPECT_EQ(OutLines()[4], "[S] Dataset as Sub-division (or Extension)");
  EXPECT_EQ(Run({"list", "divided.csv", "--processed", "--show", "xy,bearing"}), 0);
  EXPECT_EQ(OutLines()[3], "Pt# Typ Ref Tgt | X         Y         | Bearing    Length   ");
}

// The file is read once, for the load and the listing both: a FIFO is listed whole.
TEST_F(CliTest, ListReadsAFifoOnce) {
  ASSERT_EQ(Run({"list", "block.csv"}), 0);
  const std::string expected = out_.str();
  ASSERT_EQ(::mkfifo("fifo.csv", 0600), 0);
  std::thread writer([] { std::ofstream("fifo.csv", std::ios::binary) << kBlock; });
  EXPECT_EQ(Run({"list", "fifo.csv"}), 0);
  writer.join();
  EXPECT_EQ(out_.str(), expected);
}

// A file that cannot be read has nothing to list: the box says why, and nothing else does.
TEST_F(CliTest, ListOfAFileThatCannotBeReadSaysWhyOnce) {
  const std::string cannotOpen =
      "[File Read Abort]\nCannot open file - check is not being used by another program.\n"
      "Please correct for a valid file\n";
  EXPECT_EQ(Run({"list", "missing.csv"}), 1);
  EXPECT_EQ(out_.str(), "");
  EXPECT_EQ(err_.str(), cannotOpen + "missing.csv: No such file or directory\n\n");
  EXPECT_EQ(Run({"list", folder_.Write("empty.csv", "")}), 1);
  EXPECT_EQ(out_.str(), "");
  EXPECT_EQ(err_.str(), cannotOpen + "\n");
}

// The list command loads from the text it read itself: its boxes and status are those of
// the load that check makes.
TEST_F(CliTest, ListLoadsAsCheckDoes) {
  for (const char* file : {"bowtie.csv", "bad.csv", "gps.csv", "many.csv"}) {
    for (std::vector<std::string> args : {std::vector<std::string>{"check", file},
                                          std::vector<std::string>{"check", file, "--yes"}}) {
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
  EXPECT_EQ(Run({"save", "block.csv", "saved.csv"}), 0);
  EXPECT_EQ(out_.str() + err_.str(), "");
  EXPECT_NE(testing::TestFolder::Contents("saved.csv").find("\n,/End data"), std::string::npos);
  // Plain layout, no column headings.
  EXPECT_EQ(Run({"save", "block.csv", "saved.csv", "--writer-options", "202"}), 0);
  const std::string plain = testing::TestFolder::Contents("saved.csv");
  EXPECT_NE(plain.find("\n/End data"), std::string::npos) << plain;
  EXPECT_EQ(plain.find("Column Headings"), std::string::npos) << plain;

  EXPECT_EQ(Run({"save", "block.csv", "missing/out.csv"}), 1);
  EXPECT_TRUE(err_.str().starts_with("[Write File Abort]\n")) << err_.str();
  EXPECT_EQ(Run({"save", "bad.csv", "not.csv"}), 1);
  EXPECT_TRUE(err_.str().starts_with("[File Read Abort]\n")) << err_.str();
  EXPECT_FALSE(std::filesystem::exists("not.csv"));
}

TEST_F(CliTest, FailedWritesOfTheResultsGiveAMessageAndStatusOne) {
  for (const char* command : {"check", "area", "list"}) {
    const int full = ::open("/dev/full", O_WRONLY);
    ASSERT_GE(full, 0);
    OutputFile file(full);
    std::ostream out(&file);
    err_.str("");
    EXPECT_EQ(RunCli(std::vector<std::string>{command, "block.csv"}, out, err_), 1) << command;
    EXPECT_EQ(err_.str(), "plotmeter-cli: error writing standard output: No space left on device\n")
        << command;
    ::close(full);
  }
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

TEST_F(CliTest, UsageErrorsGiveStatusTwoAndAShortUsage) {
  const std::vector<std::vector<std::string>> rows = {
      {},
      {"bogus", "block.csv"},
      {"check"},
      {"list"},
      {"list", "block.csv", "block.csv"},
      {"save", "block.csv"},
      {"area", "block.csv", "--unit", "Furlongs"},
      {"area", "block.csv", "--unit", "8"},
      {"area", "block.csv", "--segment", "3"},
      {"area", "block.csv", "--frobnicate"},
      {"list", "block.csv", "--show", "input,colour"},
      {"list", "block.csv", "--include", "roads"},
      {"save", "block.csv", "out.csv", "--writer-options", "256"}};
  for (const std::vector<std::string>& args : rows) {
    EXPECT_EQ(Run(args), 2) << ::testing::PrintToString(args);
    EXPECT_EQ(out_.str(), "");
    EXPECT_TRUE(err_.str().starts_with("plotmeter-cli: ")) << err_.str();
    EXPECT_NE(err_.str().find("Usage: plotmeter-cli COMMAND FILE [options]\n"), std::string::npos);
  }
}

TEST_F(CliTest, HelpAndVersion) {
  EXPECT_EQ(Run({"--help"}), 0);
  for (const char* command : {"check", "area", "list", "save", "export", "--yes"}) {
    EXPECT_NE(out_.str().find(command), std::string::npos) << command;
  }
  EXPECT_EQ(Run({"--version"}), 0);
  EXPECT_EQ(out_.str(), "plotmeter-cli " + std::string(kPlotmeterVersion) + "\n");
  EXPECT_EQ(err_.str(), "");
}

}  // namespace
}  // namespace plotmeter
