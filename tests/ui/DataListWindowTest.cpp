// The "Data Listing" window's own part: its boxes, "Edit" and "Copy"; the lines themselves
// are DataListingTest's.
#include <gtest/gtest.h>

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
  const DataListLogic& listing = window.listing();
  window.ClickShow(1, true);
  EXPECT_TRUE(window.ShowCkB(1));
  window.ClickProcessed(true);
  EXPECT_TRUE(window.ProcdCkB());
  EXPECT_EQ(listing.LstHdrLbl(), "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)   | X         Y        ");
  window.ClickShow(0, false);
  EXPECT_EQ(listing.LstHdrLbl(), "Pt# Typ Ref Tgt | X         Y        ");
  EXPECT_EQ(listing.DataLst()[0], "[M] Dataset as Main (Perimeter) for 'Home'");
  window.ClickInclude(kIncludeMain, false);
  EXPECT_FALSE(window.IncludeCkB(kIncludeMain));
  EXPECT_EQ(listing.DataLst()[0], "[L] Dataset as Line for 'Road'");
  // No such box: nothing changes.
  const std::vector<std::string> before = listing.DataLst();
  window.ClickShow(kShowCount, true);
  window.ClickInclude(-1, false);
  EXPECT_EQ(listing.DataLst(), before);

  // The listing from the file is the file as last saved, not the survey in memory.
  folder_.Write("survey.csv", "44,#0092,1,0,0,58\nH,P,Shed\n9,X,,,5,5\n");
  window.ClickProcessed(false);
  EXPECT_EQ(listing.DataLst()[0], "[P] Dataset as Single Point for 'Shed'");
  window.ClickProcessed(true);
  EXPECT_EQ(listing.DataLst()[0], "[L] Dataset as Line for 'Road'");
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
  for (int line : {-1, 0, 5, 1000}) EXPECT_FALSE(window.Edit(line, dialogs_)) << line;
  EXPECT_EQ(dialogs_.boxes.size(), 1u);

  // A value no one typed by hand (a damaged file) is shown in part, so the box stays usable.
  const std::string whole(1000, '7');
  DataListWindowLogic damaged(
      Load("44,#0092,1,0,0,58\nH,M\n1,X,,," + whole + ",1\n2,X,,," + whole + "8,2\n"));
  EXPECT_EQ(damaged.EditBox(1)->text, "Point 1\nI/P-X(B): " + whole + "\nI/P-Y(L): 1");
  EXPECT_EQ(damaged.EditBox(2)->text,
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
