#include <gtest/gtest.h>

#include <functional>
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
using testing::ScriptedDialogs;

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

struct DeleteRow {
  const char* name;
  int index;
  bool deleted;
  const char* followingLength;  // of the point that takes the deleted one's place
};

void PrintTo(const DeleteRow& row, std::ostream* out) { *out << row.name; }

class DeleteTest : public ::testing::TestWithParam<DeleteRow> {};

TEST_P(DeleteTest, RemovesThePointOrRefusesSilently) {
  const DeleteRow& row = GetParam();
  Survey survey = Entered(kLoaded);
  const Survey before = survey;
  ASSERT_EQ(DeletePoint(survey, row.index), row.deleted);
  if (!row.deleted) {
    EXPECT_EQ(Entries(survey), Entries(before));
    return;
  }
  ASSERT_EQ(survey.PointCount(), before.PointCount() - 1);
  int d = DatasetOfPoint(before, row.index);
  for (int later = d + 1; later < survey.DatasetCount(); ++later) {
    EXPECT_EQ(survey.Datasets[later].DatasetStart, before.Datasets[later].DatasetStart - 1);
  }
  EXPECT_EQ(survey.Points[row.index].PtNumber, before.Points[row.index + 1].PtNumber);
  EXPECT_EQ(survey.Points[row.index].InYL, row.followingLength);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DeleteTest,
    ::testing::Values(DeleteRow{"start point", 5, false, ""},
                      DeleteRow{"only point of its dataset", 8, false, ""},
                      DeleteRow{"shape point", 1, true, "10"},
                      DeleteRow{"intermediate by length lengthens the next", 2, true, "30.0"},
                      DeleteRow{"intermediate by co-ordinates", 6, true, "4"}));

// Runs the dialog as a user would and counts the processing runs.
class ScriptedWindow : public EditWindow {
 public:
  explicit ScriptedWindow(std::function<void()> dialog) : dialog_(std::move(dialog)) {}
  void ShowPointDialog() override { dialog_(); }
  void RunProcessing() override { ++processingRuns; }
  int processingRuns = 0;

 private:
  std::function<void()> dialog_;
};

class EditButtonsTest : public ::testing::Test {
 protected:
  // Each letter one action on point 2: D delete, M modify (a new X) and apply, C modify
  // and cancel, U UnDo; S deletes the start point (refused). The point is selected first,
  // as a click on it does.
  void Run(std::string_view actions) {
    if (history.empty()) history.push_back(Entries(survey));
    for (char action : actions) {
      if (action != 'U') {
        state.SelectedPoint = action == 'S' ? 0 : 1;
        state.SelectedDataset = 1;
        buttons.EditPtBtn = {true, true, true, buttons.EditPtBtn[kUndoButton]};
      }
      cancel = action == 'C';
      int button = action == 'D' || action == 'S' ? kDeleteButton
                   : action == 'U'                ? kUndoButton
                                                  : kModifyButton;
      OnEditPointButton(context, button);
      history.push_back(Entries(survey));
    }
  }

  void RunDialog() {
    DataInputLogic dialog(survey, state, edit, snapshot, dialogs);
    dialog.Open();
    dialog.TypeDataTxt(0, std::to_string(++typed));
    dialog.ClickExitBtn(cancel ? 1 : 0);
    EXPECT_FALSE(dialog.IsOpen());
  }

  Survey survey = Entered(kLoaded);
  ProcessingState state;
  EditState edit{.File = kFileCurrent};
  UndoSnapshot snapshot;
  EditButtonsEnabled buttons{.SaveBtn = true};
  ScriptedDialogs dialogs;
  ScriptedWindow window{[this] { RunDialog(); }};
  PointEditContext context{survey, state, edit, snapshot, buttons, window};
  std::vector<std::string> history;
  int typed = 100;
  bool cancel = false;
};

struct SequenceRow {
  const char* actions;
  bool unsaved;       // the exit guard asks
  int sameAsAfter;    // the data is as it was after this many actions
  int snapshotAfter;  // the snapshot holds the data as after this many actions
};

void PrintTo(const SequenceRow& row, std::ostream* out) { *out << row.actions; }

class EditSequenceTest : public EditButtonsTest,
                         public ::testing::WithParamInterface<SequenceRow> {};

TEST_P(EditSequenceTest, LeavesDataMarksAndSnapshot) {
  const SequenceRow& row = GetParam();
  Run(row.actions);
  EXPECT_EQ(edit.Unsaved(), row.unsaved);
  EXPECT_EQ(history.back(), history[row.sameAsAfter]);
  Survey snapshotData;
  RestoreUndoSnapshot(snapshotData, snapshot);
  EXPECT_EQ(Entries(snapshotData), history[row.snapshotAfter]);
  EXPECT_FALSE(buttons.EditPtBtn[kModifyButton] || buttons.EditPtBtn[kDeleteButton]);
  EXPECT_EQ(state.SelectedPoint, -1);
  EXPECT_TRUE(dialogs.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, EditSequenceTest,
    ::testing::Values(SequenceRow{"DU", false, 0, 0}, SequenceRow{"DDU", true, 1, 1},
                      SequenceRow{"MU", false, 0, 0}, SequenceRow{"MMU", true, 1, 1},
                      // Cancelled: the snapshot is taken all the same.
                      SequenceRow{"C", false, 0, 0}, SequenceRow{"DC", true, 1, 1},
                      // UnDo after a refused deletion once cleared the marks of data still
                      // changed.
                      SequenceRow{"MSU", true, 1, 1}));

TEST_F(EditButtonsTest, UndoTakesBackOnlyTheLastEditAndThenIsDisabled) {
  Run("MM");
  EXPECT_TRUE(buttons.EditPtBtn[kUndoButton]);
  Run("U");
  EXPECT_FALSE(buttons.EditPtBtn[kUndoButton]);
  Run("U");  // a disabled button does nothing
  EXPECT_EQ(history.back(), history[1]);
  EXPECT_NE(history.back(), history[0]);
}

struct SaveRow {
  const char* name;
  std::uint8_t changes;
  std::uint8_t file;
  int deleted;
  bool saveEnabled;
};

void PrintTo(const SaveRow& row, std::ostream* out) { *out << row.name; }

class SaveRuleTest : public EditButtonsTest, public ::testing::WithParamInterface<SaveRow> {};

TEST_P(SaveRuleTest, DeleteEndsWithTheSaveRule) {
  const SaveRow& row = GetParam();
  edit.Changes = row.changes;
  edit.File = row.file;
  state.SelectedPoint = row.deleted;
  buttons.EditPtBtn[kDeleteButton] = true;
  OnEditPointButton(context, kDeleteButton);
  EXPECT_EQ(buttons.SaveBtn, row.saveEnabled);
  EXPECT_TRUE(buttons.EditPtBtn[kUndoButton]);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SaveRuleTest,
    ::testing::Values(SaveRow{"deleted", 0, kFileCurrent, 1, true},
                      SaveRow{"no file current", 0, 0, 1, false},
                      SaveRow{"refused, nothing changed", 0, kFileCurrent, 0, false},
                      // A refused deletion after a change keeps the change across UnDo.
                      SaveRow{"refused, data changed", kDataChanged, kFileCurrent, 0, true}));

}  // namespace
}  // namespace plotmeter
