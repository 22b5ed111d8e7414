#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"
#include "ui/DataListWindow.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {
namespace {

class DataListWindowTest : public ::testing::Test {
 protected:
  // Loads `text` as the survey's data file.
  const Survey& Load(const std::string& text) {
    logic_.LoadNamed(folder_.Write("survey.csv", text), dialogs_);
    return logic_.survey();
  }

  static bool HasLineStarting(const DataListWindowLogic& window, const std::string& start) {
    const auto& lines = window.listing().DataLst();
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return line.starts_with(start); });
  }

  testing::TestFolder folder_;
  testing::ScriptedDialogs dialogs_;
  PlotmeterLogic logic_;
};

const std::string kBlock =
    "44,#0092,1,0,0,58,Block\n"
    "H,M,Home\n1,X,,,0,0\n2,X,,,40.00000000,0\n3,X,,,40,30\n4,X,,,0,30\n"
    "H,L,Road\n5,X,,,0,40\n6,X,,,40,40\n";

TEST_F(DataListWindowTest, EveryClickRebuildsTheLinesAtOnce) {
  DataListWindowLogic window(Load(kBlock));
  // From the file only the input columns are listed, whatever else is ticked.
  window.ClickShow(1, true);
  EXPECT_TRUE(window.ShowCkB(1));
  EXPECT_EQ(window.listing().LstHdrLbl(), "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)  ");
  window.ClickProcessed(true);
  EXPECT_EQ(window.listing().LstHdrLbl(),
            "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)   | X         Y        ");
  EXPECT_TRUE(HasLineStarting(window, " -Closing Line Bearing:"));
  window.ClickShow(0, false);
  EXPECT_EQ(window.listing().LstHdrLbl(), "Pt# Typ Ref Tgt | X         Y        ");
  EXPECT_TRUE(HasLineStarting(window, "[M]"));
  window.ClickInclude(kIncludeMain, false);
  EXPECT_FALSE(window.IncludeCkB(kIncludeMain));
  EXPECT_FALSE(HasLineStarting(window, "[M]"));
  EXPECT_TRUE(HasLineStarting(window, "[L]"));
  // No such box: nothing changes.
  const std::vector<std::string> before = window.listing().DataLst();
  window.ClickShow(kShowCount, true);
  window.ClickInclude(-1, false);
  EXPECT_EQ(window.listing().DataLst(), before);
}

// The listing from the file is the file as last saved, not the survey in memory.
TEST_F(DataListWindowTest, ListingFromTheFileReadsTheFileAgain) {
  DataListWindowLogic window(Load(kBlock));
  folder_.Write("survey.csv", "44,#0092,1,0,0,58\nH,P,Shed\n9,X,,,5,5\n");
  window.ClickInclude(kIncludeLines, false);
  EXPECT_EQ(window.listing().DataLst()[0], "[P] Dataset as Single Point for 'Shed'");
  window.ClickProcessed(true);
  EXPECT_EQ(window.listing().DataLst()[0], "[M] Dataset as Main (Perimeter) for 'Home'");
}

TEST_F(DataListWindowTest, EditShowsTheWholeTypedInputOfACutValue) {
  DataListWindowLogic window(Load(kBlock));
  window.ClickProcessed(true);
  ASSERT_EQ(window.listing().DataLst()[2].substr(0, 5), "  2 X");
  EXPECT_TRUE(window.Edit(2, dialogs_));
  const MessageBox& box = dialogs_.last();
  EXPECT_EQ(box.title, "Input Data");
  EXPECT_EQ(box.text, "Point 2\nI/P-X(B): 40.00000000\nI/P-Y(L): 0");
  EXPECT_EQ(box.icon, Icon::Information);
  // A heading line, a closing line row or no line at all shows nothing.
  const std::size_t shown = dialogs_.boxes.size();
  for (int line : {-1, 0, 5, 1000}) EXPECT_FALSE(window.Edit(line, dialogs_)) << line;
  EXPECT_EQ(dialogs_.boxes.size(), shown);
}

// A value no one typed by hand (a damaged file) is shown in part, so the box stays usable.
TEST_F(DataListWindowTest, EditCutsAValueBeyondAThousandCharacters) {
  const std::string whole(1000, '7');
  DataListWindowLogic window(
      Load("44,#0092,1,0,0,58\nH,M\n1,X,,," + whole + ",1\n2,X,,," + whole + "8,2\n"));
  EXPECT_EQ(window.EditBox(1)->text, "Point 1\nI/P-X(B): " + whole + "\nI/P-Y(L): 1");
  EXPECT_EQ(window.EditBox(2)->text,
            "Point 2\nI/P-X(B): " + whole + "+ (1001 characters)\nI/P-Y(L): 2");
}

TEST_F(DataListWindowTest, CopyGivesTheHeadingAndTheLinesWithoutPadding) {
  DataListWindowLogic window(
      Load("44,#0092,1,0,0,58\nH,M,Shed\n1,X,,,0,0\n2,X,,,123456789012,5\n"));
  EXPECT_EQ(window.CopyText(),
            "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)\n"
            "[M] Dataset as Main (Perimeter) for 'Shed'\n"
            "  1 X           |          0          0\n"
            "  2 X           | 123456789+          5\n");
}

}  // namespace
}  // namespace plotmeter
