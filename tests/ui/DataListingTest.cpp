#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "datafile/DataFileReader.h"
#include "support/MemoryLimit.h"
#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"
#include "ui/DataListWindow.h"
#include "ui/DataListing.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {
namespace {

using testing::TestFolder;

// The lines as they are handed on. (What plotmeter-cli prints before them, from `Begin`:
// the listing goldens.)
class CollectedListing : public ListingOutput {
 public:
  void Begin(const DataListLogic&) override {}
  void Line(std::string_view line) override { lines.emplace_back(line); }

  std::vector<std::string> lines;
};

// The listing goldens (tests/golden/listing) pin what plotmeter-cli prints.
const std::filesystem::path kGolden = std::filesystem::path(PLOTMETER_GOLDEN_DIR) / "listing";

// The window's survey once "Load" has read `file`: reset when the file was refused.
Survey SurveyOf(const std::string& file) {
  PlotmeterLogic logic;
  UnseenDialogs unseen;
  logic.Load(file, unseen);
  return logic.survey();
}

// The window keeps the lines that plotmeter-cli hands on as they are made (from the text it
// read itself), for every golden data file and a spread of the boxes.
TEST(DataListingGoldenTest, TheWindowListsWhatPlotmeterCliPrints) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kGolden)) {
    if (entry.path().extension() != ".csv") continue;
    SCOPED_TRACE(entry.path().filename().string());
    ++files;
    const Survey survey = SurveyOf(entry.path().string());
    std::string text;
    ReadDataFileText(entry.path().string(), text);
    for (int boxes = 0; boxes < 4; ++boxes) {
      DataListLogic list;
      list.ProcdCkB = boxes & 1;
      list.ShowColumns = boxes & 1 ? kShowAll : kShowInput;
      list.IncludeCkB[kIncludeSubDivision] = boxes < 2;
      list.IncludeCkB[kIncludePoints] = boxes < 2;
      list.Refresh(survey);
      const std::vector<std::string> kept = list.DataLst();
      CollectedListing written;
      list.Write(survey, text, written);
      EXPECT_EQ(kept, written.lines) << boxes;
      EXPECT_TRUE(list.DataLst().empty());
    }
  }
  EXPECT_GE(files, 25);
}

// Lists data files written into the test's own folder, as the window does with
// "Processed" cleared, or loads them as "Load" does for the window.
class DataListingTest : public ::testing::Test {
 protected:
  const std::vector<std::string>& ListFile(const std::string& text) {
    survey_.CurrentFileName = folder_.Write("survey.csv", text);
    list_.Refresh(survey_);
    return list_.DataLst();
  }
  const Survey& Load(const std::string& text) {
    logic_.LoadNamed(folder_.Write("survey.csv", text), dialogs_);
    return logic_.survey();
  }

  TestFolder folder_;
  Survey survey_;
  DataListLogic list_;
  testing::ScriptedDialogs dialogs_;
  PlotmeterLogic logic_;
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

// ---------------------------------------------------------------------------------------
// The window's own part: its boxes, "Edit" and "Copy"

const std::string kBlock =
    "44,#0092,1,0,0,58,Block\n"
    "H,M,Home\n1,X,,,0,0\n2,X,,,40.00000000,0\n3,X,,,40,30\n4,X,,,0,30\n"
    "H,L,Road\n5,X,,,0,40\n6,X,,,40,40\n";

// The boxes' own rebuilding is the window test's; here a box that does not exist, and the
// listing from the file, which is the file as last saved, not the survey in memory.
TEST_F(DataListingTest, ListingFollowsTheBoxesThatExist) {
  DataListWindowLogic window(Load(kBlock));
  const DataListLogic& listing = window.listing();
  window.ClickProcessed(true);
  window.ClickInclude(kIncludeMain, false);
  const std::vector<std::string> before = listing.DataLst();
  EXPECT_EQ(before[0], "[L] Dataset as Line for 'Road'");
  window.ClickShow(kShowCount, true);
  window.ClickInclude(-1, false);
  window.ClickShow(1, true);
  window.ClickShow(1, false);  // ticked and cleared again: the columns as they were
  EXPECT_EQ(listing.DataLst(), before);

  folder_.Write("survey.csv", "44,#0092,1,0,0,58\nH,P,Shed\n9,X,,,5,5\n");
  window.ClickProcessed(false);
  EXPECT_EQ(listing.DataLst()[0], "[P] Dataset as Single Point for 'Shed'");
  window.ClickProcessed(true);
  EXPECT_EQ(listing.DataLst(), before);
}

TEST_F(DataListingTest, EditShowsTheWholeTypedInputOfACutValue) {
  DataListWindowLogic window(Load(kBlock));
  window.ClickProcessed(true);
  ASSERT_EQ(window.listing().DataLst()[2].substr(0, 5), "  2 X");
  EXPECT_TRUE(window.Edit(2, dialogs_));
  const MessageBox& box = dialogs_.last();
  EXPECT_EQ(box.title, "Input Data");
  EXPECT_EQ(box.text, "Point 2\nI/P-X(B): 40.00000000\nI/P-Y(L): 0");
  EXPECT_EQ(box.icon, Icon::Information);
  // A heading line, a closing line row or no line at all shows nothing.
  for (int line : {-1, 0, 5}) EXPECT_FALSE(window.Edit(line, dialogs_)) << line;
  EXPECT_EQ(dialogs_.boxes.size(), 1u);

  // A value no one typed by hand (a damaged file) is shown in part, so the box stays usable.
  const std::string whole(1000, '7');
  DataListWindowLogic damaged(Load(std::string(kHeader) + "H,M\n1,X,,," + whole + ",1\n2,X,,," +
                                   whole + "8,2\n3,XA,,,3,4,151 30.25 E,33 15.5 S\n"));
  EXPECT_EQ(damaged.EditBox(1)->text, "Point 1\nI/P-X(B): " + whole + "\nI/P-Y(L): 1");
  EXPECT_EQ(damaged.EditBox(2)->text,
            "Point 2\nI/P-X(B): " + whole + "+ (1001 characters)\nI/P-Y(L): 2");
  EXPECT_EQ(damaged.EditBox(3)->text,
            "Point 3\nI/P-X(B): 3\nI/P-Y(L): 4\nI/P-Long: 151 30.25 E\nI/P-Lat: 33 15.5 S");
}

}  // namespace
}  // namespace plotmeter
