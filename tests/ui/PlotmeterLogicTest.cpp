// What the window does beyond what plotmeter-cli shows of it (the CLI tests cover the area
// lines, the segments and the refused files): the option boxes, the lists' choices
// refused or remembered, the file commands and the file label, clicks and keys on the
// drawing, and the edit buttons.
#include <gtest/gtest.h>

#include <filesystem>
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
  // A left click on the point.
  void Select(int point) {
    const ScreenPoint& at = logic_.scene().screen[point];
    logic_.ClickDrawing(MouseButton::kLeft, at.x, at.y);
    ASSERT_EQ(logic_.state().SelectedPoint, point);
  }
  void Click(int button) { logic_.ClickEditButton(button, dialogs_); }
  bool Enabled(int button) const { return logic_.display().EditPtBtnEnabled[button]; }

  testing::TestFolder folder_;
  PlotmeterLogic logic_;
  testing::ScriptedDialogs dialogs_;
};

TEST_F(PlotmeterLogicTest, AreaListsKeepTheirChoiceAndRefuseOthers) {
  EXPECT_TRUE(logic_.SetAreaUnit(0));  // chosen before loading
  ASSERT_TRUE(Load(kSquare).Succeeded());
  EXPECT_EQ(Area(), "10,000");
  EXPECT_TRUE(logic_.SetAreaUnit(2));
  EXPECT_TRUE(logic_.SetSegment(2));  // an undivided plot has one area
  for (int index : {8, -1}) EXPECT_FALSE(logic_.SetAreaUnit(index));
  for (int index : {3, -1}) EXPECT_FALSE(logic_.SetSegment(index));
  EXPECT_EQ(logic_.display().AreaUnitCmb.index, 2);
  EXPECT_EQ(Area(), "2.47");

  // A bad perimeter has no area to work out again.
  EXPECT_FALSE(
      Load("44,#0092,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,10\n3,X,,,10,0\n4,X,,,0,10\n").Succeeded());
  EXPECT_TRUE(logic_.SetAreaUnit(0));
  EXPECT_EQ(Area(), "< Bad Perimeter Lines >");
}

TEST_F(PlotmeterLogicTest, RefusedFileOrFailedResolutionLeavesNoSurvey) {
  for (const char* text : {"44,#0093,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\n",
                           "44,#0092,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,0\n"}) {
    Load(kSquare);
    dialogs_.boxes.clear();
    EXPECT_FALSE(Load(text).loaded);
    EXPECT_EQ(logic_.survey().PointCount() + logic_.survey().DatasetCount(), 0);
    EXPECT_FALSE(logic_.state().DataState & kDataPresent);
  }
  EXPECT_EQ(Titles(), std::vector<std::string>{"Failed Area Calculation"});
  Load(kSquare);
  EXPECT_FALSE(logic_.Load(folder_.Path("missing.csv"), dialogs_).loaded);  // cannot be read
  EXPECT_EQ(logic_.survey().PointCount(), 0);
  EXPECT_EQ(Titles().back(), "File Read Abort");
}

// "Show Lines" and "Show Points" are available only for data that has them, and keep
// their ticks; a click sets the bit by its tick and draws again.
TEST_F(PlotmeterLogicTest, OptionBoxesFollowTheDataAndTheirTicks) {
  Load(std::string(kSquare) + "H,P,Shed\n5,X,,,50,50\n");  // no lines
  const MainDisplay& shown = logic_.display();
  EXPECT_FALSE(shown.OptnsCkB[kOptionLines].enabled);
  EXPECT_TRUE(shown.OptnsCkB[kOptionPoints].enabled);
  EXPECT_TRUE(shown.OptnsCkB[kOptionLines].ticked);
  EXPECT_EQ(shown.DisplayOptions, kShowSubDivision | kShowPoints | kShowAlternateGps);
  EXPECT_FALSE(logic_.ClickOption(kOptionPoints, false, dialogs_).failed());
  EXPECT_EQ(logic_.display().DisplayOptions, kShowSubDivision | kShowAlternateGps);
  EXPECT_EQ(logic_.scene().markers.size(), 4u);  // the shed is no longer drawn
  // Unticked, a box made unavailable and available again stays clear.
  logic_.SetOptionAvailable(kOptionPoints, false);
  logic_.SetOptionAvailable(kOptionPoints, true);
  EXPECT_FALSE(logic_.display().DisplayOptions & kShowPoints);
  logic_.ClickOption(kOptionPoints, true, dialogs_);
  EXPECT_TRUE(logic_.display().DisplayOptions & kShowPoints);
  EXPECT_EQ(logic_.scene().markers.size(), 5u);
}

// "Save As": what each dialog answer leads to, and the label of the current file.
struct SaveAsCase {
  const char* chosen;  // file name in the test folder; "" cancels the dialog
  bool exists;         // the chosen file is there before the command
  Button answer;       // to the overwrite question
  const char* datSrcLbl;
  std::vector<std::string> titles;
  bool written;
};

class SaveAsTest : public PlotmeterLogicTest, public ::testing::WithParamInterface<SaveAsCase> {};

TEST_P(SaveAsTest, ChosenNameLeadsToItsOutcome) {
  const SaveAsCase& c = GetParam();
  Load(kSquare);
  const std::string target = folder_.Path(c.chosen);
  if (c.exists) folder_.Write(c.chosen, "old");
  if (*c.chosen) dialogs_.files.push_back({.cancelled = false, .path = target});
  dialogs_.answers.push_back(c.answer);
  EXPECT_EQ(logic_.CommandSaveAs(dialogs_), c.written);
  EXPECT_EQ(Titles(), c.titles);
  EXPECT_EQ(logic_.display().DatSrcLbl, c.datSrcLbl);
  if (c.exists) {
    EXPECT_EQ(folder_.Contents(target) == "old", !c.written);
  }
  ASSERT_EQ(dialogs_.fileRequests.size(), 1u);
  EXPECT_EQ(dialogs_.fileRequests[0].title, "Set File to Save data");
  EXPECT_EQ(dialogs_.fileRequests[0].filter, ".CSV|*.csv|All Files|*.*");
}

INSTANTIATE_TEST_SUITE_P(
    FileCommands, SaveAsTest,
    ::testing::Values(
        SaveAsCase{"", false, Button::No, "survey.csv", {}, false},
        SaveAsCase{"new.csv", false, Button::No, "new.csv", {}, true},
        SaveAsCase{"old.csv", true, Button::No, "survey.csv", {"File action"}, false},
        SaveAsCase{"old.csv", true, Button::Yes, "old.csv", {"File action"}, true},
        SaveAsCase{"gone/new.csv", false, Button::No, "< No File >", {"Data Function"}, false}));

TEST(FileNameTest, ChosenNamesGiveTheirCodes) {
  const struct {
    int mode;
    const char* extension;
    FileChoice choice;
    SelectedFile expected;
  } rows[] = {
      {kSelectSave, " CSV ", {false, "/a/b.txt"}, {kFileBadExtension, "/a/b.txt"}},
      {kSelectSave, "csv", {false, "/a/b.CSV"}, {kFileUsable, "/a/b.CSV"}},
      {kSelectSave, "csv", {false, "/a/b"}, {kFileUsable, "/a/b.csv"}},
      {kSelectSave, "csv", {false, "/a/b."}, {kFileUsable, "/a/b.csv"}},
      {kSelectSave, "", {false, "/a/b"}, {kFileUsable, "/a/b"}},
      {kSelectWholeFolder, "", {false, "/a/_whole directory_"}, {kFileUsable, "/a"}},
  };
  for (const auto& row : rows) {
    const SelectedFile file = CheckChosenName(row.mode, row.extension, row.choice);
    EXPECT_EQ(file.code, row.expected.code) << row.choice.path;
    EXPECT_EQ(file.path, row.expected.path) << row.choice.path;
  }
}

TEST_F(PlotmeterLogicTest, NameFaultsAreReportedInTheirWords) {
  for (const char* name : {".csv", "gone/x.csv"}) {
    dialogs_.files.push_back({.cancelled = false, .path = folder_.Path(name)});
    logic_.CommandLoad(dialogs_);
  }
  ASSERT_EQ(dialogs_.boxes.size(), 2u);
  EXPECT_EQ(dialogs_.boxes[0].text, "Invalid filename stem\n\n" + folder_.Path(".csv"));
  EXPECT_EQ(dialogs_.boxes[1].text,
            "Unidendified processing error\n\n" + folder_.Path("gone/x.csv"));
  EXPECT_EQ(dialogs_.boxes[1].icon, Icon::Critical);
  EXPECT_EQ(dialogs_.beeps, 2);
  EXPECT_EQ(dialogs_.fileRequests[0].title, "Select File to Load");
}

TEST_F(PlotmeterLogicTest, SaveWritesTheCurrentFileOrAsksForOne) {
  Load(kSquare);
  logic_.ClickOption(kOptionSubDivision, false, dialogs_);
  const std::string current = logic_.survey().CurrentFileName;
  EXPECT_TRUE(logic_.CommandSave(dialogs_));  // straight to the file, no dialog
  EXPECT_TRUE(dialogs_.fileRequests.empty());
  EXPECT_NE(folder_.Contents(current), kSquare);
  EXPECT_TRUE(logic_.edit().Changes & kDisplayChanged);  // "Save" leaves the display mark

  std::filesystem::remove(current);  // deleted since: "Save" becomes "Save As"
  EXPECT_FALSE(logic_.CommandSave(dialogs_));
  ASSERT_EQ(dialogs_.fileRequests.size(), 1u);
  // The dialog opens where the survey's file was.
  EXPECT_EQ(dialogs_.fileRequests[0].folder, PathFolder(current));

  const std::string saved = folder_.Path("saved.csv");
  ASSERT_TRUE(logic_.SaveTo(saved, dialogs_));
  // A failed save keeps the name.
  EXPECT_FALSE(logic_.SaveTo(folder_.Path("no such folder/out.csv"), dialogs_));
  EXPECT_EQ(Titles(), std::vector<std::string>{"Write File Abort"});
  EXPECT_EQ(logic_.survey().CurrentFileName, saved);
}

// (What the new survey shows, and "Save" waiting for a "Save As": the window test's.)
TEST_F(PlotmeterLogicTest, CreateNewStartsAnEmptySurveyWithoutAFile) {
  Load(kSquare);
  std::string header;
  logic_.CommandCreateNew(dialogs_, [&](DataInputLogic& dialog) {
    header = dialog.Control("PointValHdrLbl").text;
    dialog.ClickCancel();
  });
  EXPECT_EQ(header, "New at Point:");
  const Survey& survey = logic_.survey();
  EXPECT_EQ((std::string{survey.FieldSeparator, survey.SubValueSeparator}), "\t ");
  EXPECT_EQ(survey.DatasetCount(), 1);
  EXPECT_EQ(survey.PointCount(), 0);
  EXPECT_EQ(logic_.display().DatSrcLbl, "< No File >");
  EXPECT_FALSE(logic_.edit().Unsaved());
  EXPECT_TRUE(logic_.scene().markers.empty() && dialogs_.boxes.empty());
}

// Clicks on a 100 m square drawn in a 4200-unit area: the corners stand 100 units in.
TEST_F(PlotmeterLogicTest, ClicksSelectTheNearestDrawnPointAndShowTags) {
  const float area = logic_.scene().width;
  Load(kSquare);
  logic_.ClickDrawing(MouseButton::kLeft, area - 1, 1);  // far from any, still found
  EXPECT_EQ(logic_.state().SelectedPoint, 2);
  EXPECT_EQ(logic_.state().SelectedDataset, 1);
  logic_.ClickDrawing(MouseButton::kLeft, area + 1, area / 2);  // outside: ignored
  EXPECT_EQ(logic_.state().SelectedPoint, 2);
  logic_.ClickDrawing(MouseButton::kLeft, area / 2, area);  // equally near 1 and 2: 1 wins
  EXPECT_EQ(logic_.state().SelectedPoint, 0);
  std::vector<float> sizes(4);
  for (const SceneMarker& marker : logic_.scene().markers) sizes[marker.point] = marker.size;
  EXPECT_EQ(sizes, (std::vector<float>{120, 30, 30, 30}));  // the earlier selection restored

  // A right click: the tag beside the point (its side: TagLabelTest), the selection cleared.
  logic_.ClickDrawing(MouseButton::kRight, 0, area);
  const SceneLabel& tag = logic_.scene().TagDSLbl;
  EXPECT_TRUE(tag.visible);
  EXPECT_EQ(tag.text, "Square");
  EXPECT_FLOAT_EQ(tag.x, 100 + 36 + 20);
  EXPECT_FLOAT_EQ(tag.y, area - 100 - 90);
  EXPECT_EQ(logic_.state().SelectedPoint, -1);
}

TEST(TagLabelTest, SideFollowsTheRoomLeftInTheArea) {
  PlotScene scene;
  const float edge = scene.width - 36 - 2020;  // the last X that keeps the tag on the right
  const SceneLabel left = TagLabel(scene, {edge, 500, true}, "  Road ");
  const SceneLabel right = TagLabel(scene, {edge + 1, 500, true}, "   ");
  EXPECT_EQ(std::pair(left.anchor, left.text),
            std::pair(LabelAnchor::kTopLeft, std::string("Road")));
  EXPECT_EQ(std::pair(right.anchor, right.text),
            std::pair(LabelAnchor::kTopRight, std::string("<No Tag>")));
  EXPECT_FLOAT_EQ(right.x, edge + 1 - 36 - 20);
}

// The square with a sub-division whose start point stands on corner 2 (a click there
// always finds corner 2, the earlier point) and a stand-alone point.
TEST_F(PlotmeterLogicTest, ArrowKeysWalkTheDrawnPointsInOrder) {
  Load(
      "44,#0092,1,0,0,58\nH,M,Square\n1,X,,,0,0\n2,XJ,,,100,0\n3,X,,,100,100\n"
      "4,XJ,,,0,100\nH,S,Corner\n5,D,,,100,0\n6,X,,,50,50\nH,P,Shed\n7,X,,,20,20\n");
  auto walk = [&](int steps, int step) {
    std::vector<int> walked;
    for (int i = 0; i < steps; ++i) {
      logic_.StepSelection(step);
      walked.push_back(logic_.state().SelectedPoint);
    }
    return walked;
  };
  EXPECT_EQ(walk(8, 1), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 0}));  // wraps round
  EXPECT_EQ(walk(1, -1), std::vector<int>{6});
  EXPECT_EQ(logic_.state().SelectedDataset, 3);
  // A dataset that is not drawn is passed over, as a click passes over it.
  logic_.ClickOption(kOptionSubDivision, false, dialogs_);
  logic_.ClickDrawing(MouseButton::kRight, 0, 0);  // no selection
  EXPECT_EQ(walk(3, -1), (std::vector<int>{6, 3, 2}));
}

// (A deletion redrawn and taken back, and the exit guard: the window test's.) "Save As"
// leaves only the display mark, which is no unsaved data; a load ends the snapshot.
TEST_F(PlotmeterLogicTest, SaveAsTakesAwayTheMarksOfAnEditAndALoadTheSnapshot) {
  ASSERT_TRUE(Load(kSquare).Succeeded());
  logic_.SetAreaUnit(0);
  Select(1);
  Click(kDeleteButton);
  ASSERT_TRUE(logic_.SaveTo(folder_.Path("saved.csv"), dialogs_));
  EXPECT_EQ(logic_.edit().Changes, kDisplayChanged);
  EXPECT_TRUE(logic_.CommandExit(dialogs_));
  EXPECT_TRUE(dialogs_.boxes.empty());

  ASSERT_TRUE(Load(kSquare).Succeeded());
  EXPECT_FALSE(Enabled(kUndoButton));
  Click(kUndoButton);
  EXPECT_EQ(logic_.survey().PointCount(), 4);
}

// The square with a line that starts on its corner 2 (by reference) and a bearing from
// there: deleting corner 2 leaves a reference to nothing.
constexpr const char* kSquareAndLine =
    "44,#0092,1,0,0,58\nH,M,Square\n1,X,,,0,0\n2,X,,,100,0\n3,X,,,100,100\n4,X,,,0,100\n"
    "H,L,Track\n5,R,2\n6,B,,,45,10\n";

TEST_F(PlotmeterLogicTest, PointsThatCannotBeResolvedAreKeptUndrawnAndNotSaved) {
  ASSERT_TRUE(Load(kSquareAndLine).Succeeded());
  Select(1);
  Click(kDeleteButton);
  EXPECT_EQ(Titles(), std::vector<std::string>{"Failed Area Calculation"});
  EXPECT_EQ(logic_.survey().PointCount(), 5);
  EXPECT_TRUE(logic_.scene().markers.empty());
  EXPECT_EQ(Area(), "");
  EXPECT_TRUE(logic_.SetAreaUnit(0));  // no stale area comes back with another unit
  EXPECT_EQ(Area(), "");

  dialogs_.boxes.clear();
  EXPECT_FALSE(logic_.CommandSave(dialogs_));
  EXPECT_EQ(Titles(), std::vector<std::string>{"Write File Abort"});
  EXPECT_EQ(dialogs_.last().text,
            std::string(kNotSavedWouldNotLoad) +
                "\nNon-existent Point Reference [2]. [Point 4]\nPlease correct for a valid file");
  EXPECT_EQ(folder_.Contents(logic_.survey().CurrentFileName), kSquareAndLine);
  EXPECT_TRUE(logic_.edit().Unsaved());

  Click(kUndoButton);
  EXPECT_EQ(Area(), "10,000");  // in the unit chosen meanwhile
  EXPECT_EQ(logic_.scene().screen.size(), 6u);
}

}  // namespace
}  // namespace plotmeter
