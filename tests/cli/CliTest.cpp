#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Cli.h"

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
// 0.3 and 0.7 hectares.
constexpr const char* kDivided =
    "44,#0092,1,0,0,58\nH,M\n1,XJ,,,0,0\n2,X,,,100,0\n3,XJ,,,100,100\n4,X,,,0,100\n"
    "H,S\n5,R,1\n6,X,,,70,30\n";
// Two GPS-only points before the link point: GPS-only processing is possible.
constexpr const char* kGpsBeforeLink =
    "44,#0092,1,0,0,58\nH,M\n1,G,,,,,148.5 E,35.3 S\n2,G,,,,,148.501 E,35.3 S\n"
    "3,XL,,,0,0,148.501 E,35.301 S\n4,G,,,,,148.5 E,35.301 S\n";

class CliTest : public ::testing::Test {
 protected:
  std::string File(const std::string& name, const std::string& text) {
    const std::string path = Folder() + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  std::string Folder() {
    if (folder_.empty()) {
      const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
      std::string name = std::string("CliTest_") + info->name();
      std::replace(name.begin(), name.end(), '/', '_');
      folder_ = (std::filesystem::path(::testing::TempDir()) / name).string();
      std::filesystem::create_directories(folder_);
    }
    return folder_;
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

  void TearDown() override {
    if (!folder_.empty()) std::filesystem::remove_all(folder_);
  }

  std::string folder_;
  std::ostringstream out_, err_;
};

TEST_F(CliTest, CheckPrintsOkForAGoodFile) {
  EXPECT_EQ(Run({"check", File("block.csv", kBlock)}), 0);
  EXPECT_EQ(out_.str(), "OK\n");
  EXPECT_EQ(err_.str(), "");
}

TEST_F(CliTest, CheckOfARefusedFilePrintsTheBoxAndFails) {
  EXPECT_EQ(Run({"check", File("bad.csv", kNotOurs)}), 1);
  EXPECT_EQ(out_.str(), "");
  EXPECT_EQ(err_.str(),
            "[File Read Abort]\nFile selected is not for this program.\n"
            "Please correct for a valid file\n\n");
}

TEST_F(CliTest, MissingFileIsReportedAsTheDesktopReportsIt) {
  EXPECT_EQ(Run({"check", Folder() + "/none.csv"}), 1);
  EXPECT_EQ(err_.str(),
            "[File Read Abort]\nCannot open file - check is not being used by another "
            "program.\nPlease correct for a valid file\n\n");
}

TEST_F(CliTest, SeveralFilesAreHeadedByNameAndTheWorstStatusWins) {
  const std::string good = File("good.csv", kBlock);
  const std::string bad = File("bad.csv", kNotOurs);
  EXPECT_EQ(Run({"check", good, bad, good}), 1);
  EXPECT_EQ(out_.str(), good + ": OK\n" + good + ": OK\n");
  EXPECT_TRUE(err_.str().starts_with(bad + ": [File Read Abort]\n")) << err_.str();
}

struct AreaCase {
  std::string unit;
  std::string line;
};

class CliAreaUnitTest : public CliTest, public ::testing::WithParamInterface<AreaCase> {};

TEST_P(CliAreaUnitTest, PrintsTheAreaInTheChosenUnit) {
  std::vector<std::string> args = {"area", File("block.csv", kBlock)};
  if (!GetParam().unit.empty()) args.insert(args.end(), {"--unit", GetParam().unit});
  EXPECT_EQ(Run(args), 0);
  EXPECT_EQ(out_.str(), GetParam().line + "\n");
  EXPECT_EQ(err_.str(), "");
}

INSTANTIATE_TEST_SUITE_P(Units, CliAreaUnitTest,
                         ::testing::Values(AreaCase{"", "Area: 0.12 Hectares"},
                                           AreaCase{"Sq. Meters", "Area: 1,200 Sq. Meters"},
                                           AreaCase{"0", "Area: 1,200 Sq. Meters"},
                                           AreaCase{"Acres", "Area: 0.3 Acres"},
                                           AreaCase{"2", "Area: 0.3 Acres"},
                                           AreaCase{"Sq. Feet", "Area: 12,917 Sq. Feet"},
                                           AreaCase{"7", "Area: 2.97 Sq. Chains"}));

TEST_F(CliTest, AreaWithoutUnitOfMeasureShowsTheRawArea) {
  std::string text = kBlock;
  text.replace(text.find(",1,0,0,58"), 9, ",0,0,0,58");
  EXPECT_EQ(Run({"area", File("raw.csv", text), "--unit", "Acres"}), 0);
  EXPECT_EQ(out_.str(), "Area: 1,200 Sq. 'Not specified' Units\n");
}

TEST_F(CliTest, AreaOfANonPerimeterHasNoUnit) {
  EXPECT_EQ(Run({"area", File("line.csv", kOpenLine)}), 0);
  EXPECT_EQ(out_.str(), "Area: < Not a Perimeter >\n");
}

TEST_F(CliTest, AreaOfCrossingLinesShowsTheBoxAndFails) {
  EXPECT_EQ(Run({"area", File("bowtie.csv", kBowTie)}), 1);
  EXPECT_EQ(out_.str(), "Area: < Bad Perimeter Lines >\n");
  EXPECT_TRUE(err_.str().starts_with("[Bad Perimeter Data]\n")) << err_.str();
  EXPECT_NE(err_.str().find("highlghted in Red.\n"), std::string::npos) << err_.str();
}

TEST_F(CliTest, AreaPrintsNothingForARefusedFileOrAFailure) {
  EXPECT_EQ(Run({"area", File("bad.csv", kNotOurs)}), 1);
  EXPECT_EQ(out_.str(), "");
  std::string many = "44,#0092,1,0,0,58\nH,N\n";
  for (int i = 1; i <= 211; ++i) many += std::to_string(i) + ",X,,," + std::to_string(i) + ",0\n";
  EXPECT_EQ(Run({"area", File("many.csv", many)}), 1);
  EXPECT_EQ(out_.str(), "");
  EXPECT_TRUE(
      err_.str().starts_with("[Processing Failed]\nThe number of points specified "
                             "exceeds the program limit of 210\n\nSplit the data"))
      << err_.str();
}

TEST_F(CliTest, SegmentsOfADividedPlot) {
  const std::string file = File("divided.csv", kDivided);
  std::vector<std::string> parts;
  for (const char* segment : {"1", "2"}) {
    EXPECT_EQ(Run({"area", file, "--segment", segment}), 0);
    parts.push_back(out_.str());
  }
  std::sort(parts.begin(), parts.end());
  EXPECT_EQ(parts, (std::vector<std::string>{"Area: 0.3 Hectares\n", "Area: 0.7 Hectares\n"}));
  EXPECT_EQ(Run({"area", file}), 0);
  EXPECT_EQ(out_.str(), "Area: 1.0 Hectares\n");
}

TEST_F(CliTest, AreaAsJson) {
  EXPECT_EQ(Run({"area", File("block.csv", kBlock), "--json", "--unit", "Sq. Meters"}), 0);
  const auto object = nlohmann::json::parse(out_.str());
  EXPECT_EQ(object["heading"], "Area");
  EXPECT_EQ(object["value"], "1,200");
  EXPECT_EQ(object["unit"], "Sq. Meters");
  ASSERT_EQ(object["areas"].size(), 3u);
  for (const auto& area : object["areas"]) EXPECT_NEAR(area.get<double>(), 1200.0, 1e-9);
  EXPECT_EQ(object["segmented"], false);
  EXPECT_EQ(object["swapped"], false);
  EXPECT_EQ(object["perimeter"], "valid");
  EXPECT_FALSE(object.contains("file"));
  const std::string text = out_.str();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
}

TEST_F(CliTest, JsonOfADividedPlotHasThreeAreas) {
  EXPECT_EQ(Run({"area", File("divided.csv", kDivided), "--json", "--unit", "0"}), 0);
  const auto object = nlohmann::json::parse(out_.str());
  EXPECT_EQ(object["segmented"], true);
  std::vector<double> parts = {object["areas"][1], object["areas"][2]};
  std::sort(parts.begin(), parts.end());
  EXPECT_NEAR(object["areas"][0].get<double>(), 10000.0, 1e-6);
  EXPECT_NEAR(parts[0], 3000.0, 1e-6);
  EXPECT_NEAR(parts[1], 7000.0, 1e-6);
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

TEST_F(CliTest, JsonOfSeveralFilesIsOneObjectALineNamingItsFile) {
  const std::string block = File("block.csv", kBlock);
  const std::string line = File("line.csv", kOpenLine);
  const std::string bad = File("bad.csv", kNotOurs);
  EXPECT_EQ(Run({"area", "--json", block, bad, line}), 1);
  const std::vector<std::string> lines = OutLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(nlohmann::json::parse(lines[0])["file"], block);
  EXPECT_EQ(nlohmann::json::parse(lines[1])["file"], line);
  EXPECT_TRUE(lines[0].starts_with("{\"file\":"));
}

TEST_F(CliTest, QuestionsAreAnsweredNoUnlessYes) {
  const std::string file = File("gps.csv", kGpsBeforeLink);
  const std::string question =
      "[GPS Link issue]\n'GPS Only' data precedes first available link point, but a 'GPS Only' "
      "calculation is possible.\nproceed on a 'GPS Only' basis ?\n";
  EXPECT_EQ(Run({"check", file}), 1);
  EXPECT_TRUE(err_.str().starts_with(question + "> No\n\n[File Read Abort]\n'GPS Only' data "
                                                "precedes first available link point, cannot "
                                                "process."))
      << err_.str();
  EXPECT_EQ(out_.str(), "");

  EXPECT_EQ(Run({"check", file, "--yes"}), 0);
  EXPECT_EQ(err_.str(), question + "> Yes\n\n");
  EXPECT_EQ(out_.str(), "OK\n");
  EXPECT_EQ(Run({"--yes", "area", file}), 0);
  EXPECT_TRUE(out_.str().starts_with("Area (GPS): ")) << out_.str();
}

TEST_F(CliTest, ListShowsTheSettingsHeadingAndLines) {
  std::string text = kBlock;
  text.replace(text.find("0,0,58"), 6, "0,-2.5,58");
  text.replace(text.find("2,X,,,40,0"), 10, "2,B,,,90,40");
  EXPECT_EQ(Run({"list", File("block.csv", text)}), 0);
  const std::vector<std::string> expected = {
      "Unit of Measure: Meters",
      "File Tag: Example",
      "Mag Decl'n: -2.5",
      "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)  ",
      "[M] Dataset as Main (Perimeter) for 'Block'",
      "  1 X           |          0          0",
      "  2 B           |         90         40",
      "  3 X           |         40         30",
      "  4 X           |          0         30",
  };
  EXPECT_EQ(OutLines(), expected);
}

TEST_F(CliTest, ListOfTheProcessedSurveyWithChosenGroupsAndSets) {
  const std::string file = File("divided.csv", kDivided);
  EXPECT_EQ(Run({"list", file, "--processed", "--show", "none", "--include", "sub"}), 0);
  std::vector<std::string> lines = OutLines();
  ASSERT_GE(lines.size(), 4u);
  lines.erase(lines.begin(), lines.begin() + 3);
  EXPECT_EQ(lines.front(), "Pt# Typ Ref Tgt");
  EXPECT_EQ(lines[1], "[S] Dataset as Sub-division (or Extension)");
  EXPECT_EQ(lines[2], "  5 R     1    ");
  EXPECT_EQ(lines[3], "  6 X          ");

  EXPECT_EQ(Run({"list", file, "--processed", "--show", "xy,bearing", "--include", "main"}), 0);
  EXPECT_EQ(OutLines()[3], "Pt# Typ Ref Tgt | X         Y         | Bearing    Length   ");
  EXPECT_EQ(OutLines()[6], "  2 X           |     100.0       0.0 |       90.0     100.0");
}

TEST_F(CliTest, ListOfARefusedFileStillShowsWhyItIsBad) {
  EXPECT_EQ(Run({"list", File("bad.csv", "44,#0092,1,0,0,58\nH,M\n1,XB,,,0,0\n")}), 1);
  const std::vector<std::string> lines = OutLines();
  ASSERT_EQ(lines.size(), 6u);
  EXPECT_EQ(lines[0], "Unit of Measure: <Not specified>");
  EXPECT_EQ(lines[4], "Aborted - Bad File");
  EXPECT_EQ(lines[5], "Multiple type codes present.");
  EXPECT_TRUE(err_.str().starts_with("[File Read Abort]\nData line with unknown type code."));
}

TEST_F(CliTest, OutputIsUtf8) {
  EXPECT_EQ(Run({"list", File("deg.csv",
                              "44,#0092,1,0,0,58,Caf\xE9\nH,M\n1,X,,,0,0\n2,B,,,90\xB0,5\n"
                              "3,X,,,5,5\n")}),
            0);
  const std::vector<std::string> lines = OutLines();
  EXPECT_EQ(lines[1], "File Tag: Caf\xC3\xA9");
  EXPECT_EQ(lines[6], "  2 B           |        90\xC2\xB0          5");
}

TEST_F(CliTest, SaveWritesAFileThatLoadsAgain) {
  const std::string out = Folder() + "/saved.csv";
  EXPECT_EQ(Run({"save", File("block.csv", kBlock), out}), 0);
  EXPECT_EQ(out_.str(), "");
  EXPECT_EQ(Run({"area", out, "--unit", "0"}), 0);
  EXPECT_EQ(out_.str(), "Area: 1,200 Sq. Meters\n");
  std::ifstream in(out, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_NE(text.find("\n,/End data"), std::string::npos);
}

TEST_F(CliTest, SaveTakesTheWriterOptions) {
  const std::string out = Folder() + "/plain.csv";
  EXPECT_EQ(Run({"save", File("block.csv", kBlock), out, "--writer-options", "202"}), 0);
  std::ifstream in(out, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  // Plain layout, no column headings.
  EXPECT_NE(text.find("\n/End data"), std::string::npos) << text;
  EXPECT_EQ(text.find("Column Headings"), std::string::npos) << text;
}

TEST_F(CliTest, SaveFailuresGiveStatusOne) {
  EXPECT_EQ(Run({"save", File("block.csv", kBlock), Folder() + "/missing/out.csv"}), 1);
  EXPECT_TRUE(err_.str().starts_with("[Write File Abort]\n")) << err_.str();
  EXPECT_EQ(Run({"save", File("bad.csv", kNotOurs), Folder() + "/out.csv"}), 1);
  EXPECT_TRUE(err_.str().starts_with("[File Read Abort]\n")) << err_.str();
  EXPECT_FALSE(std::filesystem::exists(Folder() + "/out.csv"));
}

class CliUsageTest : public CliTest,
                     public ::testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(CliUsageTest, UsageErrorsGiveStatusTwoAndAShortUsage) {
  std::vector<std::string> args = GetParam();
  for (std::string& arg : args) {
    if (arg == "FILE") arg = File("block.csv", kBlock);
  }
  EXPECT_EQ(Run(args), 2);
  EXPECT_EQ(out_.str(), "");
  EXPECT_TRUE(err_.str().starts_with("plotmeter-cli: ")) << err_.str();
  EXPECT_NE(err_.str().find("Usage: plotmeter-cli COMMAND FILE [options]\n"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, CliUsageTest,
    ::testing::Values(std::vector<std::string>{}, std::vector<std::string>{"bogus", "FILE"},
                      std::vector<std::string>{"check"}, std::vector<std::string>{"list"},
                      std::vector<std::string>{"list", "FILE", "FILE"},
                      std::vector<std::string>{"save", "FILE"},
                      std::vector<std::string>{"area", "FILE", "--unit", "Furlongs"},
                      std::vector<std::string>{"area", "FILE", "--unit", "8"},
                      std::vector<std::string>{"area", "FILE", "--segment", "3"},
                      std::vector<std::string>{"area", "FILE", "--frobnicate"},
                      std::vector<std::string>{"list", "FILE", "--show", "input,colour"},
                      std::vector<std::string>{"list", "FILE", "--include", "roads"},
                      std::vector<std::string>{"save", "FILE", "OUT", "--writer-options", "256"}));

TEST_F(CliTest, HelpAndVersion) {
  EXPECT_EQ(Run({"--help"}), 0);
  for (const char* command : {"check", "area", "list", "save", "--yes"}) {
    EXPECT_NE(out_.str().find(command), std::string::npos) << command;
  }
  EXPECT_EQ(Run({"area", "--help"}), 0);
  EXPECT_NE(out_.str().find("--unit"), std::string::npos);
  EXPECT_EQ(Run({"--version"}), 0);
  EXPECT_EQ(out_.str(), "plotmeter-cli 0.1.0\n");
  EXPECT_EQ(err_.str(), "");
}

}  // namespace
}  // namespace plotmeter
