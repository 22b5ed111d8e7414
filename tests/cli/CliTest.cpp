// The command line run in-process: arguments, what goes to each stream and the status.
// The boxes' own texts are tested where they are made; here only how they are passed on.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
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
// Its lines cross: a bow-tie.
constexpr const char* kBowTie =
    "44,#0092,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,10\n3,X,,,10,0\n4,X,,,0,10\n";
constexpr const char* kNotOurs = "44,#0093,1,0,0,58\nH,M\n1,X,,,0,0\n";
constexpr const char* kOpenLine = "44,#0092,1,0,0,58\nH,N\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\n";
// A 100 m square divided from join point 1 by way of (70, 30) to join point 3: parts of
// 0.7 and 0.3 hectares.
constexpr const char* kDivided =
    "44,#0092,1,0,0,58\nH,M\n1,XJ,,,0,0\n2,X,,,100,0\n3,XJ,,,100,100\n4,X,,,0,100\n"
    "H,S\n5,R,1\n6,X,,,70,30\n";

class CliTest : public ::testing::Test {
 protected:
  std::string File(const std::string& name, const std::string& text) {
    return folder_.Write(name, text);
  }

  int Run(std::vector<std::string> args) {
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

  static std::string Contents(const std::string& path) {
    return testing::TestFolder::Contents(path);
  }

  testing::TestFolder folder_;
  std::ostringstream out_, err_;
};

TEST_F(CliTest, CheckPrintsOkOrTheBoxAndSeveralFilesAreHeadedByName) {
  const std::string good = File("good.csv", kBlock);
  const std::string bad = File("bad.csv", kNotOurs);
  EXPECT_EQ(Run({"check", good}), 0);
  EXPECT_EQ(out_.str(), "OK\n");
  EXPECT_EQ(err_.str(), "");

  EXPECT_EQ(Run({"check", bad}), 1);
  EXPECT_EQ(out_.str(), "");
  EXPECT_EQ(err_.str(),
            "[File Read Abort]\nFile selected is not for this program.\n"
            "Please correct for a valid file\n\n");

  // The worst status wins.
  EXPECT_EQ(Run({"check", good, bad, good}), 1);
  EXPECT_EQ(out_.str(), good + ": OK\n" + good + ": OK\n");
  EXPECT_TRUE(err_.str().starts_with(bad + ": [File Read Abort]\n")) << err_.str();
}

TEST_F(CliTest, AreaLineAndStatus) {
  std::string many = "44,#0092,1,0,0,58\nH,N\n";
  for (int i = 1; i <= 211; ++i) many += std::to_string(i) + ",X,,," + std::to_string(i) + ",0\n";
  struct Row {
    std::string file;
    std::vector<std::string> options;
    int status;
    std::string out;
  };
  const Row rows[] = {
      {File("block.csv", kBlock), {}, 0, "Area: 0.12 Hectares\n"},
      {File("block.csv", kBlock), {"--unit", "Sq. Meters"}, 0, "Area: 1,200 Sq. Meters\n"},
      {File("block.csv", kBlock), {"--unit", "2"}, 0, "Area: 0.3 Acres\n"},
      {File("divided.csv", kDivided), {"--segment", "1"}, 0, "Area: 0.7 Hectares\n"},
      // The box goes to standard error; a refused file or a failure prints no area.
      {File("bowtie.csv", kBowTie), {}, 1, "Area: < Bad Perimeter Lines >\n"},
      {File("bad.csv", kNotOurs), {}, 1, ""},
      {File("many.csv", many), {}, 1, ""},
  };
  for (const Row& row : rows) {
    std::vector<std::string> args = {"area", row.file};
    args.insert(args.end(), row.options.begin(), row.options.end());
    EXPECT_EQ(Run(args), row.status) << row.file;
    EXPECT_EQ(out_.str(), row.out) << row.file;
    EXPECT_EQ(err_.str().empty(), row.status == 0) << row.file;
  }
}

TEST_F(CliTest, AreaAsJsonIsOneObjectALine) {
  EXPECT_EQ(Run({"area", File("block.csv", kBlock), "--json", "--unit", "Sq. Meters"}), 0);
  const std::string text = out_.str();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
  const auto object = nlohmann::ordered_json::parse(text);
  std::vector<std::string> keys;
  for (const auto& item : object.items()) keys.push_back(item.key());
  EXPECT_EQ(keys, (std::vector<std::string>{"heading", "value", "unit", "areas", "segmented",
                                            "swapped", "perimeter"}));
  EXPECT_EQ(object["heading"], "Area");
  EXPECT_EQ(object["value"], "1,200");
  EXPECT_EQ(object["unit"], "Sq. Meters");
  ASSERT_EQ(object["areas"].size(), 3u);
  for (const auto& area : object["areas"]) EXPECT_NEAR(area.get<double>(), 1200.0, 1e-9);
  EXPECT_EQ(object["segmented"], false);
  EXPECT_EQ(object["swapped"], false);
  EXPECT_EQ(object["perimeter"], "valid");

  EXPECT_EQ(Run({"area", File("divided.csv", kDivided), "--json", "--unit", "0"}), 0);
  const auto divided = nlohmann::json::parse(out_.str());
  EXPECT_EQ(divided["segmented"], true);
  EXPECT_NEAR(divided["areas"][0].get<double>(), 10000.0, 1e-6);
  EXPECT_NEAR(divided["areas"][1].get<double>(), 7000.0, 1e-6);
  EXPECT_NEAR(divided["areas"][2].get<double>(), 3000.0, 1e-6);
}

TEST_F(CliTest, JsonWithoutAnAreaHasNullAreasAndNoUnit) {
  EXPECT_EQ(Run({"area", File("bowtie.csv", kBowTie), "--json"}), 1);
  auto object = nlohmann::json::parse(out_.str());
  EXPECT_EQ(object["value"], "< Bad Perimeter Lines >");
  EXPECT_TRUE(object["areas"].is_null());
  EXPECT_EQ(object["unit"], "");
  EXPECT_EQ(object["perimeter"], "bad");

  EXPECT_EQ(Run({"area", File("line.csv", kOpenLine), "--json"}), 0);
  object = nlohmann::json::parse(out_.str());
  EXPECT_EQ(object["value"], "< Not a Perimeter >");
  EXPECT_TRUE(object["areas"].is_null());
  EXPECT_EQ(object["perimeter"], "not a perimeter");
}

TEST_F(CliTest, JsonOfSeveralFilesNamesEachFileFirst) {
  const std::string block = File("block.csv", kBlock);
  const std::string line = File("line.csv", kOpenLine);
  EXPECT_EQ(Run({"area", "--json", block, File("bad.csv", kNotOurs), line}), 1);
  const std::vector<std::string> lines = OutLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(lines[0].starts_with("{\"file\":"));
  EXPECT_EQ(nlohmann::json::parse(lines[0])["file"], block);
  EXPECT_EQ(nlohmann::json::parse(lines[1])["file"], line);
}

// The question's own text is the reader's test; here --yes, before or after the command.
TEST_F(CliTest, QuestionsAreAnsweredNoUnlessYes) {
  // Two GPS-only points before the link point: GPS-only processing is possible.
  const std::string file = File("gps.csv",
                                "44,#0092,1,0,0,58\nH,M\n1,G,,,,,148.5 E,35.3 S\n"
                                "2,G,,,,,148.501 E,35.3 S\n3,XL,,,0,0,148.501 E,35.301 S\n"
                                "4,G,,,,,148.5 E,35.301 S\n");
  EXPECT_EQ(Run({"check", file}), 1);
  EXPECT_NE(err_.str().find("\n> No\n"), std::string::npos) << err_.str();
  EXPECT_EQ(Run({"check", file, "--yes"}), 0);
  EXPECT_EQ(out_.str(), "OK\n");
  EXPECT_EQ(Run({"--yes", "area", file}), 0);
  EXPECT_TRUE(out_.str().starts_with("Area (GPS): ")) << out_.str();
}

TEST_F(CliTest, ListShowsTheSettingsHeadingAndLinesInUtf8) {
  std::string text = kBlock;
  text.replace(text.find("0,0,58,Example"), 14, "0,-2.5,58,Caf\xE9");
  text.replace(text.find("2,X,,,40,0"), 10, "2,B,,,90\xB0,40");
  EXPECT_EQ(Run({"list", File("block.csv", text)}), 0);
  const std::vector<std::string> expected = {
      "Unit of Measure: Meters",
      "File Tag: Caf\xC3\xA9",
      "Mag Decl'n: -2.5",
      "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)  ",
      "[M] Dataset as Main (Perimeter) for 'Block'",
      "  1 X           |          0          0",
      "  2 B           |        90\xC2\xB0         40",
      "  3 X           |         40         30",
      "  4 X           |          0         30",
  };
  EXPECT_EQ(OutLines(), expected);
}

// The options reach the listing; what each box does is DataListingTest's.
TEST_F(CliTest, ListOfTheProcessedSurveyWithChosenGroupsAndSets) {
  const std::string file = File("divided.csv", kDivided);
  EXPECT_EQ(Run({"list", file, "--processed", "--show", "none", "--include", "sub"}), 0);
  std::vector<std::string> lines = OutLines();
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_EQ(lines[3], "Pt# Typ Ref Tgt");
  EXPECT_EQ(lines[4], "[S] Dataset as Sub-division (or Extension)");
  EXPECT_EQ(Run({"list", file, "--processed", "--show", "xy,bearing", "--include", "main"}), 0);
  EXPECT_EQ(OutLines()[3], "Pt# Typ Ref Tgt | X         Y         | Bearing    Length   ");
}

TEST_F(CliTest, SaveWritesWithTheWriterOptionsOrFails) {
  const std::string block = File("block.csv", kBlock);
  const std::string out = folder_.Path("saved.csv");
  EXPECT_EQ(Run({"save", block, out}), 0);
  EXPECT_EQ(out_.str(), "");
  EXPECT_EQ(Run({"area", out, "--unit", "0"}), 0);
  EXPECT_EQ(out_.str(), "Area: 1,200 Sq. Meters\n");
  EXPECT_NE(Contents(out).find("\n,/End data"), std::string::npos);

  // Plain layout, no column headings.
  EXPECT_EQ(Run({"save", block, out, "--writer-options", "202"}), 0);
  EXPECT_NE(Contents(out).find("\n/End data"), std::string::npos) << Contents(out);
  EXPECT_EQ(Contents(out).find("Column Headings"), std::string::npos) << Contents(out);

  EXPECT_EQ(Run({"save", block, folder_.Path("missing/out.csv")}), 1);
  EXPECT_TRUE(err_.str().starts_with("[Write File Abort]\n")) << err_.str();
  EXPECT_EQ(Run({"save", File("bad.csv", kNotOurs), folder_.Path("not.csv")}), 1);
  EXPECT_TRUE(err_.str().starts_with("[File Read Abort]\n")) << err_.str();
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("not.csv")));
}

TEST_F(CliTest, ListReadsAPipeOrAFifoOnceAndListsIt) {
  EXPECT_EQ(Run({"list", File("block.csv", kBlock)}), 0);
  const std::string expected = out_.str();

  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ASSERT_EQ(::write(ends[1], kBlock, std::strlen(kBlock)),
            static_cast<ssize_t>(std::strlen(kBlock)));
  ::close(ends[1]);
  EXPECT_EQ(Run({"list", "/dev/fd/" + std::to_string(ends[0])}), 0);
  ::close(ends[0]);
  EXPECT_EQ(out_.str(), expected);

  const std::string fifo = folder_.Path("fifo.csv");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(fifo, std::ios::binary) << kBlock; });
  EXPECT_EQ(Run({"list", fifo}), 0);
  writer.join();
  EXPECT_EQ(out_.str(), expected);
}

// A file that cannot be read has nothing to list: the box says why, and nothing else does.
TEST_F(CliTest, ListOfAFileThatCannotBeReadSaysWhyOnce) {
  const std::string cannotOpen =
      "[File Read Abort]\nCannot open file - check is not being used by another program.\n"
      "Please correct for a valid file\n";
  const struct {
    std::string file;
    std::string detail;
  } rows[] = {{folder_.Path("missing.csv"), ": No such file or directory\n"},
              {File("empty.csv", ""), ""},
              {File("comments.csv", "// nothing but a comment\n"), ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(Run({"list", row.file}), 1) << row.file;
    EXPECT_EQ(out_.str(), "") << row.file;
    const std::string detail = row.detail.empty() ? "" : row.file + row.detail;
    EXPECT_EQ(err_.str(), cannotOpen + detail + "\n") << row.file;
  }
}

TEST_F(CliTest, ControlBytesOfTheFileAreShownHarmlesslyOnATerminal) {
  std::string text = kBlock;
  text.replace(text.find("Example"), 7, "Tag\x1B[2J\x07");
  text.replace(text.find("Block"), 5,
               "A\x9B"
               "1m\x7F");
  const std::string file = File("block.csv", text);
  out_.str("");
  RunCli(std::vector<std::string>{"list", file}, out_, err_, true);
  const std::vector<std::string> terminal = OutLines();
  ASSERT_EQ(terminal.size(), 9u);
  EXPECT_EQ(terminal[1], "File Tag: Tag^[[2J^G");
  EXPECT_EQ(terminal[4], "[M] Dataset as Main (Perimeter) for 'AM-^[1m^?'");
  // Into a file or a pipe the bytes go as they are.
  Run({"list", file});
  EXPECT_EQ(OutLines()[1], "File Tag: Tag\x1B[2J\x07");
}

TEST_F(CliTest, FailedWritesOfTheResultsGiveAMessageAndStatusOne) {
  const std::string block = File("block.csv", kBlock);
  for (std::vector<std::string> args :
       {std::vector<std::string>{"check", block}, std::vector<std::string>{"area", block},
        std::vector<std::string>{"list", block}}) {
    const int full = ::open("/dev/full", O_WRONLY);
    ASSERT_GE(full, 0);
    OutputFile file(full);
    std::ostream out(&file);
    err_.str("");
    EXPECT_EQ(RunCli(args, out, err_), 1) << args[0];
    EXPECT_EQ(err_.str(), "plotmeter-cli: error writing standard output: No space left on device\n")
        << args[0];
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
  const std::string file = folder_.Path("large.csv");
  std::ofstream(file).close();
  ASSERT_EQ(::truncate(file.c_str(), 300 << 20), 0);
  EXPECT_EXIT(ListWithLittleMemory(file), ::testing::ExitedWithCode(1),
              "large.csv: Cannot allocate memory");
#endif
}

// The list command loads from the text it read itself: its boxes and status are those of
// the load that check makes.
TEST_F(CliTest, ListLoadsAsCheckDoes) {
  const std::string gps =
      "44,#0092,1,0,0,58\nH,M\n1,G,,,,,148.5 E,35.3 S\n2,G,,,,,148.501 E,35.3 S\n"
      "3,XL,,,0,0,148.501 E,35.301 S\n4,G,,,,,148.5 E,35.301 S\n";
  std::string many = "44,#0092,1,0,0,58\nH,N\n";
  for (int i = 1; i <= 211; ++i) many += std::to_string(i) + ",X,,," + std::to_string(i) + ",0\n";
  for (const std::string& file :
       {File("block.csv", kBlock), File("bowtie.csv", kBowTie), File("bad.csv", kNotOurs),
        File("divided.csv", kDivided), File("gps.csv", gps), File("many.csv", many)}) {
    for (const std::string answer : {"", "--yes"}) {
      std::vector<std::string> check = {"check", file}, list = {"list", file};
      if (!answer.empty()) {
        check.push_back(answer);
        list.push_back(answer);
      }
      const int checked = Run(check);
      const std::string boxes = err_.str();
      EXPECT_EQ(Run(list), checked) << file << answer;
      EXPECT_EQ(err_.str(), boxes) << file << answer;
    }
  }
}

TEST_F(CliTest, UsageErrorsGiveStatusTwoAndAShortUsage) {
  const std::vector<std::vector<std::string>> rows = {
      {},
      {"bogus", "FILE"},
      {"check"},
      {"list"},
      {"list", "FILE", "FILE"},
      {"save", "FILE"},
      {"area", "FILE", "--unit", "Furlongs"},
      {"area", "FILE", "--unit", "8"},
      {"area", "FILE", "--segment", "3"},
      {"area", "FILE", "--frobnicate"},
      {"list", "FILE", "--show", "input,colour"},
      {"list", "FILE", "--include", "roads"},
      {"save", "FILE", "OUT", "--writer-options", "256"}};
  const std::string file = File("block.csv", kBlock);
  for (std::vector<std::string> args : rows) {
    std::replace(args.begin(), args.end(), std::string("FILE"), file);
    EXPECT_EQ(Run(args), 2) << ::testing::PrintToString(args);
    EXPECT_EQ(out_.str(), "");
    EXPECT_TRUE(err_.str().starts_with("plotmeter-cli: ")) << err_.str();
    EXPECT_NE(err_.str().find("Usage: plotmeter-cli COMMAND FILE [options]\n"), std::string::npos);
  }
}

TEST_F(CliTest, HelpAndVersion) {
  EXPECT_EQ(Run({"--help"}), 0);
  for (const char* command : {"check", "area", "list", "save", "--yes"}) {
    EXPECT_NE(out_.str().find(command), std::string::npos) << command;
  }
  EXPECT_EQ(Run({"area", "--help"}), 0);
  EXPECT_NE(out_.str().find("--unit"), std::string::npos);
  EXPECT_EQ(Run({"--version"}), 0);
  EXPECT_EQ(out_.str(), "plotmeter-cli " + std::string(kPlotmeterVersion) + "\n");
  EXPECT_EQ(err_.str(), "");
}

}  // namespace
}  // namespace plotmeter
