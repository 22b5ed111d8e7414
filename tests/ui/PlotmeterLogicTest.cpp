// What the window does beyond what plotmeter-cli shows of it (the CLI tests cover the area
// lines, the segments and the refused files): the option boxes, the lists' choices
// refused or remembered, the file label and a failed resolution.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {
namespace {

// A 100 m square, 1 hectare.
constexpr const char* kSquare =
    "44,#0092,1,0,0,58\nH,M,Square\n1,X,,,0,0\n2,X,,,100,0\n3,X,,,100,100\n4,X,,,0,100\n";

class PlotmeterLogicTest : public ::testing::Test {
 protected:
  LoadOutcome Load(const std::string& text) {
    return logic_.Load(folder_.Write("survey.csv", text), dialogs_);
  }

  const std::string& Area() const { return logic_.display().AreaValLbl.text; }

  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const MessageBox& box : dialogs_.boxes) titles.push_back(box.title);
    return titles;
  }

  testing::TestFolder folder_;
  PlotmeterLogic logic_;
  testing::ScriptedDialogs dialogs_;
};

TEST_F(PlotmeterLogicTest, AreaUnitIsKeptAndTheAreaWorkedOutAgain) {
  EXPECT_TRUE(logic_.SetAreaUnit(0));  // chosen before loading
  ASSERT_TRUE(Load(kSquare).Succeeded());
  EXPECT_EQ(Area(), "10,000");
  EXPECT_TRUE(logic_.SetAreaUnit(2));
  EXPECT_EQ(Area(), "2.47");
  EXPECT_EQ(logic_.AreaUnitText(), "Acres");
  EXPECT_FALSE(logic_.SetAreaUnit(8));
  EXPECT_FALSE(logic_.SetAreaUnit(-1));
  EXPECT_EQ(logic_.display().AreaUnitCmb.index, 2);
  EXPECT_EQ(Area(), "2.47");

  // A bad perimeter has no area to work out again.
  EXPECT_FALSE(
      Load("44,#0092,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,10\n3,X,,,10,0\n4,X,,,0,10\n").Succeeded());
  EXPECT_TRUE(logic_.SetAreaUnit(0));
  EXPECT_EQ(Area(), "< Bad Perimeter Lines >");
}

TEST_F(PlotmeterLogicTest, SegmentOutsideTheListIsRefused) {
  Load(kSquare);
  EXPECT_TRUE(logic_.SetSegment(2));  // an undivided plot has one area
  EXPECT_EQ(Area(), "1.0");
  EXPECT_FALSE(logic_.SetSegment(3));
  EXPECT_FALSE(logic_.SetSegment(-1));
}

TEST_F(PlotmeterLogicTest, RefusedFileOrFailedResolutionLeavesNoSurvey) {
  for (const char* text : {"44,#0093,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\n",
                           "44,#0092,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,0\n"}) {
    Load(kSquare);
    dialogs_.boxes.clear();
    EXPECT_FALSE(Load(text).loaded);
    EXPECT_EQ(logic_.survey().PointCount(), 0);
    EXPECT_EQ(logic_.survey().DatasetCount(), 0);
    EXPECT_FALSE(logic_.state().DataState & kDataPresent);
  }
  EXPECT_EQ(Titles(), std::vector<std::string>{"Failed Area Calculation"});
}

TEST_F(PlotmeterLogicTest, LinesAndPointsOptionsFollowTheData) {
  Load(kSquare);
  EXPECT_FALSE(logic_.OptnsCkBEnabled()[kOptionLines]);
  EXPECT_FALSE(logic_.OptnsCkBEnabled()[kOptionPoints]);
  EXPECT_TRUE(logic_.OptnsCkBTicked()[kOptionLines]);  // the ticks stay
  EXPECT_EQ(logic_.display().DisplayOptions, kShowSubDivision | kShowAlternateGps);

  Load(std::string(kSquare) + "H,L,Road\n5,X,,,0,120\n6,X,,,100,120\n");
  EXPECT_TRUE(logic_.OptnsCkBEnabled()[kOptionLines]);
  EXPECT_FALSE(logic_.OptnsCkBEnabled()[kOptionPoints]);
  EXPECT_EQ(logic_.display().DisplayOptions, kShowSubDivision | kShowLines | kShowAlternateGps);

  Load(std::string(kSquare) + "H,P,Shed\n5,X,,,50,50\n");
  EXPECT_FALSE(logic_.OptnsCkBEnabled()[kOptionLines]);
  EXPECT_TRUE(logic_.OptnsCkBEnabled()[kOptionPoints]);
  EXPECT_EQ(logic_.display().DisplayOptions, kShowSubDivision | kShowPoints | kShowAlternateGps);
}

TEST_F(PlotmeterLogicTest, UntickedUnavailableBoxStaysClearWhenMadeAvailable) {
  logic_.ClickOption(kOptionPoints, false, dialogs_);
  logic_.SetOptionAvailable(kOptionPoints, false);
  logic_.SetOptionAvailable(kOptionPoints, true);
  EXPECT_FALSE(logic_.display().DisplayOptions & kShowPoints);
  logic_.ClickOption(kOptionPoints, true, dialogs_);
  EXPECT_TRUE(logic_.display().DisplayOptions & kShowPoints);
}

TEST_F(PlotmeterLogicTest, OptionClickRunsProcessingAgain) {
  Load(kSquare);
  const ProcessingOutcome outcome = logic_.ClickOption(kOptionSubDivision, false, dialogs_);
  EXPECT_FALSE(outcome.failed);
  EXPECT_EQ(logic_.display().DisplayOptions, kShowAlternateGps);
  EXPECT_EQ(Area(), "1.0");
}

TEST_F(PlotmeterLogicTest, FileLabelFollowsTheLoadsAndTheSaves) {
  EXPECT_EQ(logic_.DatSrcLbl(), "< No File >");
  Load(kSquare);
  EXPECT_EQ(logic_.DatSrcLbl(), "survey.csv");
  const std::string saved = folder_.Path("saved.csv");
  ASSERT_TRUE(logic_.Save(saved, dialogs_));
  EXPECT_EQ(logic_.survey().CurrentFileName, saved);
  EXPECT_EQ(logic_.DatSrcLbl(), "saved.csv");
  // A failed save keeps the name.
  EXPECT_FALSE(logic_.Save(folder_.Path("no such folder/out.csv"), dialogs_));
  EXPECT_EQ(Titles(), std::vector<std::string>{"Write File Abort"});
  EXPECT_EQ(logic_.survey().CurrentFileName, saved);
}

}  // namespace
}  // namespace plotmeter
