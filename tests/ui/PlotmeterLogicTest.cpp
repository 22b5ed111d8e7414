#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/ScriptedDialogs.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {
namespace {

constexpr const char* kMetersHeader = "44,#0092,1,0,0,58\n";

// A 100 m square, 1 hectare.
constexpr const char* kSquare = "H,M,Square\n1,X,,,0,0\n2,X,,,100,0\n3,X,,,100,100\n4,X,,,0,100\n";

class PlotmeterLogicTest : public ::testing::Test {
 protected:
  std::string WriteFile(const std::string& text, const std::string& name = "survey.csv") {
    const std::filesystem::path folder =
        std::filesystem::path(::testing::TempDir()) /
        ("PlotmeterLogicTest_" +
         std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::create_directories(folder);
    folder_ = folder.string();
    const std::string path = (folder / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  LoadOutcome Load(const std::string& text) { return logic_.Load(WriteFile(text), dialogs_); }

  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const MessageBox& box : dialogs_.boxes) titles.push_back(box.title);
    return titles;
  }

  void TearDown() override {
    if (!folder_.empty()) std::filesystem::remove_all(folder_);
  }

  std::string folder_;
  PlotmeterLogic logic_;
  testing::ScriptedDialogs dialogs_;
};

TEST_F(PlotmeterLogicTest, OpensWithHectaresAndEveryOptionOn) {
  EXPECT_EQ(logic_.display().AreaUnitCmb.index, 1);
  EXPECT_EQ(logic_.AreaUnitText(), "Hectares");
  EXPECT_EQ(logic_.display().DisplayOptions, 15);
  EXPECT_EQ(logic_.DatSrcLbl(), "< No File >");
}

TEST_F(PlotmeterLogicTest, LoadsProcessesAndShowsTheArea) {
  const LoadOutcome outcome = Load(std::string(kMetersHeader) + kSquare);
  EXPECT_TRUE(outcome.loaded);
  EXPECT_TRUE(outcome.Succeeded());
  EXPECT_TRUE(dialogs_.boxes.empty());
  EXPECT_TRUE(logic_.state().DataState & kDataPresent);
  EXPECT_EQ(logic_.display().AreaHdrLbl, "Area");
  EXPECT_EQ(logic_.display().AreaValLbl.text, "1.0");
  EXPECT_EQ(logic_.AreaUnitText(), "Hectares");
  EXPECT_EQ(logic_.DatSrcLbl(), "survey.csv");
  EXPECT_EQ(logic_.survey().PointCount(), 4);
}

struct UnitCase {
  int index;
  std::string value;
  std::string unit;
};

class PlotmeterLogicUnitTest : public PlotmeterLogicTest,
                               public ::testing::WithParamInterface<UnitCase> {};

TEST_P(PlotmeterLogicUnitTest, ChangingTheUnitWorksTheAreaOutAgain) {
  Load(std::string(kMetersHeader) + kSquare);
  ASSERT_TRUE(logic_.SetAreaUnit(GetParam().index));
  EXPECT_EQ(logic_.display().AreaValLbl.text, GetParam().value);
  EXPECT_EQ(logic_.AreaUnitText(), GetParam().unit);
}

// 10,000 square metres by the program's own table.
INSTANTIATE_TEST_SUITE_P(
    Units, PlotmeterLogicUnitTest,
    ::testing::Values(UnitCase{0, "10,000", "Sq. Meters"}, UnitCase{1, "1.0", "Hectares"},
                      UnitCase{2, "2.47", "Acres"}, UnitCase{3, "107,639", "Sq. Feet"},
                      UnitCase{4, "0.01", "Sq. Kilometers"}, UnitCase{7, "24.71", "Sq. Chains"}));

TEST_F(PlotmeterLogicTest, AreaUnitOutsideTheListIsRefused) {
  Load(std::string(kMetersHeader) + kSquare);
  EXPECT_FALSE(logic_.SetAreaUnit(8));
  EXPECT_FALSE(logic_.SetAreaUnit(-1));
  EXPECT_EQ(logic_.display().AreaUnitCmb.index, 1);
  EXPECT_EQ(logic_.display().AreaValLbl.text, "1.0");
}

TEST_F(PlotmeterLogicTest, UnitChosenBeforeLoadingIsUsedByProcessing) {
  EXPECT_TRUE(logic_.SetAreaUnit(0));
  Load(std::string(kMetersHeader) + kSquare);
  EXPECT_EQ(logic_.display().AreaValLbl.text, "10,000");
}

TEST_F(PlotmeterLogicTest, RefusedFileLeavesNoSurvey) {
  const LoadOutcome outcome = Load("44,#0093,1,0,0,58\n" + std::string(kSquare));
  EXPECT_FALSE(outcome.loaded);
  EXPECT_FALSE(outcome.Succeeded());
  ASSERT_EQ(Titles(), std::vector<std::string>{"File Read Abort"});
  EXPECT_EQ(dialogs_.last().text,
            "File selected is not for this program.\nPlease correct for a valid file");
  EXPECT_EQ(logic_.survey().PointCount(), 0);
  EXPECT_FALSE(logic_.state().DataState & kDataPresent);
}

TEST_F(PlotmeterLogicTest, MissingFileIsRefusedAsTheReaderSaysIt) {
  const LoadOutcome outcome = logic_.Load(::testing::TempDir() + "/no-such-file.csv", dialogs_);
  EXPECT_FALSE(outcome.loaded);
  ASSERT_EQ(dialogs_.boxes.size(), 1u);
  EXPECT_EQ(dialogs_.last().text,
            "Cannot open file - check is not being used by another program.\n"
            "Please correct for a valid file");
}

TEST_F(PlotmeterLogicTest, FailedResolutionRejectsTheFile) {
  const LoadOutcome outcome =
      Load(std::string(kMetersHeader) + "H,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,0\n4,X,,,0,10\n");
  EXPECT_FALSE(outcome.loaded);
  ASSERT_EQ(Titles(), std::vector<std::string>{"Failed Area Calculation"});
  EXPECT_EQ(logic_.survey().PointCount(), 0);
  EXPECT_EQ(logic_.survey().DatasetCount(), 0);
  EXPECT_FALSE(logic_.state().DataState & kDataPresent);
}

TEST_F(PlotmeterLogicTest, CrossingLinesEndInTheBadPerimeterBox) {
  const LoadOutcome outcome =
      Load(std::string(kMetersHeader) + "H,M\n1,X,,,0,0\n2,X,,,10,10\n3,X,,,10,0\n4,X,,,0,10\n");
  EXPECT_TRUE(outcome.loaded);
  EXPECT_TRUE(outcome.processing.badPerimeter);
  EXPECT_FALSE(outcome.processing.failed);
  EXPECT_FALSE(outcome.Succeeded());
  EXPECT_EQ(Titles(), std::vector<std::string>{"Bad Perimeter Data"});
  EXPECT_EQ(logic_.display().AreaValLbl.text, "< Bad Perimeter Lines >");
  // No area to work out again in another unit.
  EXPECT_TRUE(logic_.SetAreaUnit(0));
  EXPECT_EQ(logic_.display().AreaValLbl.text, "< Bad Perimeter Lines >");
}

TEST_F(PlotmeterLogicTest, OverThePointLimitProcessingFails) {
  std::string text = std::string(kMetersHeader) + "H,N\n";
  for (int i = 1; i <= kPointLimit + 1; ++i) {
    text += std::to_string(i) + ",X,,," + std::to_string(i) + "," + std::to_string(i % 7) + "\n";
  }
  const LoadOutcome outcome = Load(text);
  EXPECT_TRUE(outcome.loaded);
  EXPECT_TRUE(outcome.processing.failed);
  EXPECT_FALSE(outcome.Succeeded());
  ASSERT_EQ(Titles(), std::vector<std::string>{"Processing Failed"});
  EXPECT_TRUE(dialogs_.last().text.starts_with(
      "The number of points specified exceeds the program limit of 210"));
}

TEST_F(PlotmeterLogicTest, NonPerimeterMainShowsNoAreaAndNoUnit) {
  const LoadOutcome outcome =
      Load(std::string(kMetersHeader) + "H,N\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\n");
  EXPECT_TRUE(outcome.Succeeded());
  EXPECT_EQ(logic_.display().AreaValLbl.text, "< Not a Perimeter >");
  EXPECT_EQ(logic_.AreaUnitText(), "");
}

TEST_F(PlotmeterLogicTest, UnspecifiedUnitShowsTheRawAreaAndItsLabel) {
  const LoadOutcome outcome = Load("44,#0092,0,0,0,58\n" + std::string(kSquare));
  EXPECT_TRUE(outcome.Succeeded());
  EXPECT_EQ(logic_.display().AreaValLbl.text, "10,000");
  EXPECT_EQ(logic_.AreaUnitText(), "Sq. 'Not specified' Units");
}

TEST_F(PlotmeterLogicTest, LinesAndPointsOptionsFollowTheData) {
  Load(std::string(kMetersHeader) + kSquare);
  EXPECT_FALSE(logic_.OptnsCkBEnabled()[kOptionLines]);
  EXPECT_FALSE(logic_.OptnsCkBEnabled()[kOptionPoints]);
  EXPECT_TRUE(logic_.OptnsCkBTicked()[kOptionLines]);  // the ticks stay
  EXPECT_EQ(logic_.display().DisplayOptions, kShowSubDivision | kShowAlternateGps);

  Load(std::string(kMetersHeader) + kSquare + "H,L,Road\n5,X,,,0,120\n6,X,,,100,120\n");
  EXPECT_TRUE(logic_.OptnsCkBEnabled()[kOptionLines]);
  EXPECT_FALSE(logic_.OptnsCkBEnabled()[kOptionPoints]);
  EXPECT_EQ(logic_.display().DisplayOptions, kShowSubDivision | kShowLines | kShowAlternateGps);

  Load(std::string(kMetersHeader) + kSquare + "H,P,Shed\n5,X,,,50,50\n");
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
  Load(std::string(kMetersHeader) + kSquare);
  const ProcessingOutcome outcome = logic_.ClickOption(kOptionSubDivision, false, dialogs_);
  EXPECT_FALSE(outcome.failed);
  EXPECT_EQ(logic_.display().DisplayOptions, kShowAlternateGps);
  EXPECT_EQ(logic_.display().AreaValLbl.text, "1.0");
}

TEST_F(PlotmeterLogicTest, SegmentsOfADividedPlot) {
  // The sub-division runs from join point 1 by way of (70, 30) to join point 3: parts of
  // 3,000 and 7,000 square metres.
  const LoadOutcome outcome = Load(std::string(kMetersHeader) +
                                   "H,M\n1,XJ,,,0,0\n2,X,,,100,0\n3,XJ,,,100,100\n4,X,,,0,100\n"
                                   "H,S\n5,R,1\n6,X,,,70,30\n");
  ASSERT_TRUE(outcome.Succeeded()) << (dialogs_.boxes.empty() ? "" : dialogs_.last().text);
  EXPECT_TRUE(logic_.display().AreaSgmtCmb.visible);
  EXPECT_EQ(logic_.display().AreaValLbl.text, "1.0");
  std::vector<std::string> parts;
  for (int segment : {1, 2}) {
    ASSERT_TRUE(logic_.SetSegment(segment));
    parts.push_back(logic_.display().AreaValLbl.text);
  }
  std::sort(parts.begin(), parts.end());
  EXPECT_EQ(parts, (std::vector<std::string>{"0.3", "0.7"}));
  EXPECT_TRUE(logic_.SetSegment(0));
  EXPECT_EQ(logic_.display().AreaValLbl.text, "1.0");
  EXPECT_FALSE(logic_.SetSegment(3));
}

TEST_F(PlotmeterLogicTest, SegmentOfAnUndividedPlotChangesNothing) {
  Load(std::string(kMetersHeader) + kSquare);
  EXPECT_TRUE(logic_.SetSegment(2));
  EXPECT_EQ(logic_.display().AreaValLbl.text, "1.0");
}

TEST_F(PlotmeterLogicTest, SavesAndTakesTheNameAsTheCurrentFile) {
  Load(std::string(kMetersHeader) + kSquare);
  const std::string saved = WriteFile("", "saved.csv");
  ASSERT_TRUE(logic_.Save(saved, dialogs_));
  EXPECT_EQ(logic_.survey().CurrentFileName, saved);
  EXPECT_EQ(logic_.DatSrcLbl(), "saved.csv");
  PlotmeterLogic again;
  EXPECT_TRUE(again.Load(saved, dialogs_).Succeeded());
  EXPECT_EQ(again.display().AreaValLbl.text, "1.0");
}

TEST_F(PlotmeterLogicTest, SaveIntoAMissingFolderShowsTheWriteAbort) {
  Load(std::string(kMetersHeader) + kSquare);
  const std::string before = logic_.survey().CurrentFileName;
  EXPECT_FALSE(logic_.Save(folder_ + "/no such folder/out.csv", dialogs_));
  EXPECT_EQ(Titles(), std::vector<std::string>{"Write File Abort"});
  EXPECT_EQ(logic_.survey().CurrentFileName, before);
}

}  // namespace
}  // namespace plotmeter
