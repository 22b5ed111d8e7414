#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/EnteredSurvey.h"
#include "support/ScriptedDialogs.h"
#include "ui/DataInputLogic.h"
#include "ui/EditButtons.h"
#include "ui/PointEdits.h"

namespace plotmeter {
namespace {

using testing::Entered;

// Point 3 is an intermediate point given by a length along the line to point 4, which is
// measured from it; point 7 is an intermediate point given by co-ordinates.
constexpr const char* kLoaded =
    "H,M\n1,X,,,0,0\n2,X,,,40,0\n3,BI,2,,,10\n4,B,,,0,20\n5,X,,,0,30\n"
    "H,L\n6,X,,,5,5\n7,XI,,,6,5\n8,B,,,90,4\n"
    "H,P\n9,X,,,1,1";

// The entered part of every point, in order, with the dataset starts.
std::string Entries(const Survey& survey) {
  std::string text;
  for (const Dataset& dataset : survey.Datasets) text += "@" + std::to_string(dataset.DatasetStart);
  for (const Point& point : survey.Points) {
    text += " " + std::to_string(point.PtNumber) + ":" + point.InXA + "," + point.InYL;
  }
  return text;
}

TEST(PointEditsTest, DeleteRemovesThePointOrRefusesSilently) {
  const struct {
    const char* name;
    int index;
    bool deleted;
    const char* followingLength;  // of the point that takes the deleted one's place
  } rows[] = {
      {"start point", 5, false, ""},
      {"only point of its dataset", 8, false, ""},
      {"shape point", 1, true, "10"},
      {"intermediate by length lengthens the next", 2, true, "30.0"},
      {"intermediate by co-ordinates", 6, true, "4"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Survey before = Entered(kLoaded);
    Survey survey = before;
    ASSERT_EQ(DeletePoint(survey, row.index), row.deleted);
    if (!row.deleted) {
      EXPECT_EQ(Entries(survey), Entries(before));
      continue;
    }
    ASSERT_EQ(survey.PointCount(), before.PointCount() - 1);
    for (int later = DatasetOfPoint(before, row.index) + 1; later < survey.DatasetCount();
         ++later) {
      EXPECT_EQ(survey.Datasets[later].DatasetStart, before.Datasets[later].DatasetStart - 1);
    }
    EXPECT_EQ(survey.Points[row.index].PtNumber, before.Points[row.index + 1].PtNumber);
    EXPECT_EQ(survey.Points[row.index].InYL, row.followingLength);
  }
}

// The edit buttons over the data, the dialog run as a user would: each edit types a new X
// into point 2 and applies or cancels; processing runs are counted.
class EditSession : public EditWindow {
 public:
  void ShowPointDialog() override {
    DataInputLogic dialog(survey, state, edit, snapshot, dialogs);
    dialog.Open();
    dialog.TypeDataTxt(0, std::to_string(++typed));
    dialog.ClickExitBtn(cancel ? 1 : 0);
    EXPECT_FALSE(dialog.IsOpen());
  }
  void RunProcessing() override { ++processingRuns; }

  // Each letter one action on point 2: D delete, M modify and apply, C modify and cancel,
  // U UnDo; S deletes the start point (refused). The point is selected first, as a click
  // on it does.
  void Run(std::string_view actions) {
    if (history.empty()) history.push_back(Entries(survey));
    for (char action : actions) {
      if (action != 'U') {
        state.SelectedPoint = action == 'S' ? 0 : 1;
        state.SelectedDataset = 1;
        buttons.EditPtBtn = {true, true, true, buttons.EditPtBtn[kUndoButton]};
      }
      cancel = action == 'C';
      OnEditPointButton(context, action == 'D' || action == 'S' ? kDeleteButton
                                 : action == 'U'                ? kUndoButton
                                                                : kModifyButton);
      history.push_back(Entries(survey));
    }
  }

  Survey survey = Entered(kLoaded);
  ProcessingState state;
  EditState edit{.File = kFileCurrent};
  UndoSnapshot snapshot;
  EditButtonsEnabled buttons{.SaveBtn = true};
  testing::ScriptedDialogs dialogs;
  PointEditContext context{survey, state, edit, snapshot, buttons, *this};
  std::vector<std::string> history;
  int typed = 100;
  bool cancel = false;
  int processingRuns = 0;
};

TEST(EditButtonsTest, SequencesLeaveTheirDataMarksAndSnapshot) {
  const struct {
    const char* actions;
    bool unsaved;       // the exit guard asks
    int sameAsAfter;    // the data is as it was after this many actions
    int snapshotAfter;  // the snapshot holds the data as after this many actions
  } rows[] = {
      {"DU", false, 0, 0},
      {"DDU", true, 1, 1},
      {"MU", false, 0, 0},
      {"MMU", true, 1, 1},
      // Cancelled: the snapshot is taken all the same.
      {"C", false, 0, 0},
      {"DC", true, 1, 1},
      // UnDo after a refused deletion once cleared the marks of data still changed.
      {"MSU", true, 1, 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.actions);
    EditSession session;
    session.Run(row.actions);
    EXPECT_EQ(session.edit.Unsaved(), row.unsaved);
    EXPECT_EQ(session.history.back(), session.history[row.sameAsAfter]);
    Survey snapshotData;
    RestoreUndoSnapshot(snapshotData, session.snapshot);
    EXPECT_EQ(Entries(snapshotData), session.history[row.snapshotAfter]);
    EXPECT_FALSE(session.buttons.EditPtBtn[kModifyButton] ||
                 session.buttons.EditPtBtn[kDeleteButton]);
    EXPECT_EQ(session.state.SelectedPoint, -1);
    EXPECT_TRUE(session.dialogs.boxes.empty());
  }
}

TEST(EditButtonsTest, UndoTakesBackOnlyTheLastEditAndThenIsDisabled) {
  EditSession session;
  session.Run("MM");
  EXPECT_TRUE(session.buttons.EditPtBtn[kUndoButton]);
  const int runs = session.processingRuns;
  session.Run("U");
  EXPECT_FALSE(session.buttons.EditPtBtn[kUndoButton]);
  EXPECT_EQ(session.processingRuns, runs + 1);
  session.Run("U");  // a disabled button does nothing
  EXPECT_EQ(session.processingRuns, runs + 1);
  EXPECT_EQ(session.history.back(), session.history[1]);
  EXPECT_NE(session.history.back(), session.history[0]);
}

TEST(EditButtonsTest, DeleteEndsWithTheSaveRule) {
  const struct {
    std::uint8_t changes, file;
    int deleted;
    bool saveEnabled;
  } rows[] = {
      {0, kFileCurrent, 1, true},   // deleted
      {0, 0, 1, false},             // no file current
      {0, kFileCurrent, 0, false},  // refused, nothing changed
      // A refused deletion after a change keeps the change across UnDo.
      {kDataChanged, kFileCurrent, 0, true},
  };
  for (const auto& row : rows) {
    EditSession session;
    session.edit = {.Changes = row.changes, .File = row.file};
    session.state.SelectedPoint = row.deleted;
    session.buttons.EditPtBtn[kDeleteButton] = true;
    OnEditPointButton(session.context, kDeleteButton);
    EXPECT_EQ(session.buttons.SaveBtn, row.saveEnabled) << row.deleted << row.file;
    EXPECT_TRUE(session.buttons.EditPtBtn[kUndoButton]);
  }
}

}  // namespace
}  // namespace plotmeter
