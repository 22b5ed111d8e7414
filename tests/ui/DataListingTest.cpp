#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "datafile/DataFileReader.h"
#include "support/Latin1.h"
#include "support/MemoryLimit.h"
#include "support/TestFolder.h"
#include "ui/DataListing.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {
namespace {

using testing::TestFolder;

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
  return parts;
}

// What plotmeter-cli prints of a listing: the settings labels, the heading, the lines.
class CollectedListing : public ListingOutput {
 public:
  void Begin(const DataListLogic& list) override {
    for (const SettingLabel& label : list.SettingLabels()) {
      lines.push_back(label.caption + " " + label.value);
    }
    lines.push_back(list.LstHdrLbl());
  }
  void Line(std::string_view line) override { lines.emplace_back(line); }

  std::vector<std::string> lines;
};

const std::filesystem::path kGolden =
    std::filesystem::path(PLOTMETER_EXAMPLES_DIR).parent_path() / "tests/ui/golden/listing";

// Ticks the boxes as plotmeter-cli's options `words` say.
void SetBoxes(const std::vector<std::string>& words, DataListLogic& list) {
  const std::vector<std::string> groups = {"input", "xy", "bearing", "gps", "altgps", "none"};
  const std::vector<std::string> sets = {"main", "sub", "intermediate", "lines", "points"};
  for (std::size_t i = 0; i < words.size(); ++i) {
    list.ProcdCkB = list.ProcdCkB || words[i] == "--processed";
    if (words[i] == "--processed") continue;
    const bool show = words[i] == "--show";
    ASSERT_TRUE(show || words[i] == "--include") << words[i];
    const std::vector<std::string>& names = show ? groups : sets;
    if (show) list.ShowColumns = 0;
    if (!show) list.IncludeCkB.fill(false);
    for (const std::string& name : Split(words.at(++i), ',')) {
      const auto index = std::find(names.begin(), names.end(), name) - names.begin();
      ASSERT_LT(index, std::ssize(names)) << name;
      if (show) list.ShowColumns |= static_cast<std::uint8_t>((1 << index) & kShowAll);
      if (!show) list.IncludeCkB[index] = true;
    }
  }
}

// The window's survey once "Load" has read `file`: reset when the file was refused.
Survey SurveyOf(const std::string& file, bool processed) {
  PlotmeterLogic logic;
  UnseenDialogs unseen;
  const bool loaded = logic.Load(file, unseen).Succeeded();
  EXPECT_TRUE(loaded || !processed) << unseen.lastText;
  return logic.survey();
}

// Each golden/listing/*.lst file is a listing of a data file beside it: its first line the
// command ("plotmeter-cli list FILE OPTIONS"), then what the command prints, in UTF-8.
TEST(DataListingGoldenTest, ListingsAreTheGoldenOnes) {
  int listings = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kGolden)) {
    if (entry.path().extension() != ".lst") continue;
    SCOPED_TRACE(entry.path().filename().string());
    ++listings;
    std::vector<std::string> expected =
        Split(testing::Latin1(TestFolder::Contents(entry.path().string())), '\n');
    const std::vector<std::string> command = Split(expected.front(), ' ');
    expected.erase(expected.begin());
    ASSERT_GE(command.size(), 3u);
    const std::string file = (kGolden / command[2]).string();
    DataListLogic list;
    SetBoxes({command.begin() + 3, command.end()}, list);
    const Survey survey = SurveyOf(file, list.ProcdCkB);
    list.Refresh(survey);  // the window keeps the lines
    CollectedListing kept;
    kept.Begin(list);
    kept.lines.insert(kept.lines.end(), list.DataLst().begin(), list.DataLst().end());
    EXPECT_EQ(kept.lines, expected);
    // plotmeter-cli hands them on as they are made, from the text it read itself.
    std::string text;
    ReadDataFileText(file, text);
    CollectedListing written;
    list.Write(survey, text, written);
    EXPECT_EQ(written.lines, expected);
    EXPECT_TRUE(list.DataLst().empty());
  }
  EXPECT_GE(listings, 20);
}

// The values on screen are plain decimals even while a write has set its own formats.
TEST(DataListingGoldenTest, AWriteInProgressChangesNothingOfTheListing) {
  Survey survey = SurveyOf((kGolden / "block-feet-magnetic.csv").string(), true);
  DataListLogic list;
  list.ProcdCkB = true;
  list.ShowColumns = kShowAll;
  list.Refresh(survey);
  const std::vector<std::string> plain = list.DataLst();
  survey.WriterOptions = kWriteInProgress | kWriterOptionsDefault;
  list.Refresh(survey);
  EXPECT_EQ(list.DataLst(), plain);
  EXPECT_EQ(survey.WriterOptions, kWriteInProgress | kWriterOptionsDefault);
}

// Lists data files written into the test's own folder, as the window does with
// "Processed" cleared.
class DataListingTest : public ::testing::Test {
 protected:
  const std::vector<std::string>& ListFile(const std::string& text) {
    survey_.CurrentFileName = folder_.Write("survey.csv", text);
    list_.Refresh(survey_);
    return list_.DataLst();
  }

  TestFolder folder_;
  Survey survey_;
  DataListLogic list_;
};

constexpr const char* kHeader = "44,#0092,1,0,0,58\n";

// A file without a header, one that cannot be read and a folder are bad files (which
// plotmeter-cli does not list); the other bad files are golden.
TEST_F(DataListingTest, AFileThatCannotBeReadIsABadFile) {
  for (const std::string& name :
       {folder_.Write("empty.csv", ""), folder_.Path("none.csv"), folder_.Path()}) {
    survey_.CurrentFileName = name;
    list_.Refresh(survey_);
    EXPECT_EQ(list_.DataLst(), (std::vector<std::string>{"Aborted - Bad File",
                                                         "File selected has Invalid Header."}));
  }
}

TEST_F(DataListingTest, EditShowsTheWholeInputOfPointLinesOnly) {
  ListFile(std::string(kHeader) + "H,M\n1,X,,,0,12345678901\n2,XA,,,3,4,151 30.25 E,33 15.5 S\n");
  EXPECT_EQ(list_.EditText(1), "I/P-X(B): 0\nI/P-Y(L): 12345678901");
  EXPECT_EQ(list_.EditText(2),
            "I/P-X(B): 3\nI/P-Y(L): 4\nI/P-Long: 151 30.25 E\nI/P-Lat: 33 15.5 S");
  for (int line : {-1, 0, 3}) EXPECT_EQ(list_.EditText(line), std::nullopt) << line;
}

TEST_F(DataListingTest, HugeLineAndManyLinesAreListed) {
  std::string text = std::string(kHeader) + "H,M\n1,X,,," + std::string(3'000'000, '7') + ",1\n";
  for (int i = 2; i <= 100'000; ++i) text += std::to_string(i) + ",X,,,1,2\n";
  const auto& lines = ListFile(text);
  ASSERT_EQ(lines.size(), 100'001u);
  EXPECT_EQ(lines[1], "  1 X           | 777777777+          1");
  EXPECT_EQ(list_.EditText(1)->size(), std::string("I/P-X(B): \nI/P-Y(L): 1").size() + 3'000'000);
}

#ifndef PLOTMETER_ADDRESS_SANITIZER
// Lists with little memory left; exits 0 when the listing was given up for the abort of a
// file that cannot be read.
[[noreturn]] void ListWithLittleMemory(DataListLogic& list, const Survey& survey) {
  testing::LimitAddressSpace(48 << 20);
  list.Refresh(survey);
  const std::vector<std::string> givenUp = {"Aborted - Bad File",
                                            "File selected has Invalid Header."};
  std::exit(list.DataLst() == givenUp ? 0 : 1);
}
#endif

TEST_F(DataListingTest, AListingTooLongForTheMemoryLeftIsGivenUpNotACrash) {
#ifdef PLOTMETER_ADDRESS_SANITIZER
  GTEST_SKIP() << "AddressSanitizer needs more address space than the limit leaves";
#else
  std::string text = std::string(kHeader) + "H,P\n";
  for (int i = 1; i <= 600'000; ++i) text += std::to_string(i) + ",X,,,1,2\n";
  survey_.CurrentFileName = folder_.Write("survey.csv", text);
  EXPECT_EXIT(ListWithLittleMemory(list_, survey_), ::testing::ExitedWithCode(0), "");
#endif
}

}  // namespace
}  // namespace plotmeter
