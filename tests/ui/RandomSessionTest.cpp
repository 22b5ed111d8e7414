// A user who does anything at all: random clicks on the drawing, every edit button,
// random text typed into every field of the point entry dialog, every list and box,
// questions answered either way, loads, saves and new surveys, one after another. After
// every action the survey must still hold together.
//
// The suite runs a bounded session. A long one, with its own seed:
//   PLOTMETER_RANDOM_ACTIONS=1000000 PLOTMETER_RANDOM_SEED=7
//   plotmeter_tests --gtest_filter='RandomSession*'
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/TestFolder.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {
namespace {

constexpr int kSuiteActions = 10000;

long EnvironmentNumber(const char* name, long fallback) {
  const char* text = std::getenv(name);
  return text ? std::strtol(text, nullptr, 10) : fallback;
}

// Questions answered at random, files chosen at random among the examples, the saved
// file and names the file commands refuse.
class RandomDialogs : public UserDialogs {
 public:
  // The examples are copied into `folder`: "Save" writes to the file last loaded.
  RandomDialogs(std::mt19937& random, std::string folder)
      : random_(random), folder_(std::move(folder)) {
    for (const auto& entry : std::filesystem::directory_iterator(PLOTMETER_EXAMPLES_DIR)) {
      examples_.push_back(folder_ + "/" + entry.path().filename().string());
      std::filesystem::copy_file(entry.path(), examples_.back());
    }
    std::sort(examples_.begin(), examples_.end());
  }

  Button Show(const MessageBox& box) override {
    ++shown;
    if (box.buttons == Buttons::Ok) return Button::Ok;
    bool first = Chance(2);
    if (box.buttons == Buttons::YesNo) return first ? Button::Yes : Button::No;
    return first ? Button::Ok : Button::Cancel;
  }
  void Beep() override {}
  FileChoice SelectFile(const FileDialogRequest& request) override {
    switch (Pick(8)) {
      case 0:
        return {};
      case 1:
        return {.cancelled = false, .path = folder_ + "/.csv"};  // no stem
      case 2:
        return {.cancelled = false, .path = folder_ + "/missing/x.csv"};
      default:
        break;
    }
    if (request.mode == 0 && Chance(3)) {
      return {.cancelled = false, .path = examples_[Pick(examples_.size())]};
    }
    return {.cancelled = false, .path = SavedPath()};
  }

  std::string Example() { return examples_[Pick(examples_.size())]; }
  std::string SavedPath() const { return folder_ + "/saved.csv"; }
  bool Chance(int n) { return Pick(n) == 0; }
  int Pick(std::size_t n) { return std::uniform_int_distribution<int>(0, int(n) - 1)(random_); }

  long shown = 0;

 private:
  std::mt19937& random_;
  std::string folder_;
  std::vector<std::string> examples_;
};

// Text as a user might type it: values, values with the separator, signs, blanks and
// stray characters, the separators and the degree mark among them.
std::string RandomText(RandomDialogs& pick, const Survey& survey) {
  auto number = [&] { return std::to_string(pick.Pick(400)); };
  switch (pick.Pick(6)) {
    case 0:
    case 1:
      return number() + (pick.Chance(3) ? "." + std::to_string(pick.Pick(100)) : "");
    case 2:
      return number() + survey.SubValueSeparator + std::to_string(pick.Pick(80)) +
             (pick.Chance(2) ? survey.SubValueSeparator + std::to_string(pick.Pick(80)) : "");
    case 3:
      return pick.Chance(2) ? "" : "-" + number();
    default:
      break;
  }
  const std::string alphabet = std::string("0123456789.-+eENSWns :,\\\t'\"x\xB0") +
                               survey.SubValueSeparator + survey.FieldSeparator;
  std::string text(pick.Pick(8) + 1, ' ');
  for (char& c : text) c = alphabet[pick.Pick(alphabet.size())];
  return text;
}

class RandomSessionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    seed_ = static_cast<unsigned>(EnvironmentNumber("PLOTMETER_RANDOM_SEED", 1));
    random_.seed(seed_);
  }

  void Note(std::string action) {
    recent_.push_back(std::to_string(step_) + ": " + std::move(action));
    if (recent_.size() > 40) recent_.pop_front();
  }
  std::string Recent() const {
    std::string text = "seed " + std::to_string(seed_) + ", last actions:\n";
    for (const std::string& line : recent_) text += "  " + line + "\n";
    return text;
  }

  void Act();
  void ActInDialog(DataInputLogic& dialog);
  void EnterGoodPoint(DataInputLogic& dialog);
  void CheckSurvey(const Survey& survey, bool dialogOpen);
  void CheckWindow();
  void CheckSavedFileLoadsAgain();

  unsigned seed_ = 1;
  std::mt19937 random_;
  // A folder of this process's own: a long run may go on beside the suite.
  testing::TestFolder folder_{"_" + std::to_string(getpid())};
  RandomDialogs dialogs_{random_, folder_.Path()};
  PlotmeterLogic logic_;
  PointDialogShow dialog_ = [this](DataInputLogic& dialog) {
    for (int i = dialogs_.Pick(40); i > 0 && dialog.IsOpen(); --i) {
      ActInDialog(dialog);
      CheckSurvey(logic_.survey(), dialog.IsOpen());
      if (HasFatalFailure()) return;
    }
    if (dialog.IsOpen() && dialogs_.Chance(2)) dialog.ClickApply();
  };
  long step_ = 0;
  long reloads_ = 0;
  long dialogActions_ = 0;
  std::deque<std::string> recent_;
};

void RandomSessionTest::Act() {
  RandomDialogs& pick = dialogs_;
  const PlotScene& scene = logic_.scene();
  switch (pick.Pick(20)) {
    case 0:
    case 1:
    case 2:
    case 3:
      if (!scene.screen.empty()) {
        int point = pick.Pick(scene.screen.size());
        Note("left click on point " + std::to_string(point + 1));
        logic_.ClickDrawing(MouseButton::kLeft, scene.screen[point].x, scene.screen[point].y);
        break;
      }
      [[fallthrough]];
    case 4: {
      float x = static_cast<float>(pick.Pick(4600)) - 200;
      float y = static_cast<float>(pick.Pick(4600)) - 200;
      auto button = static_cast<MouseButton>(pick.Pick(3));
      Note("click " + std::to_string(static_cast<int>(button)) + " at " + std::to_string(x) + "," +
           std::to_string(y));
      logic_.ClickDrawing(button, x, y);
      break;
    }
    case 5:
    case 6:
    case 7:
    case 8:
    case 9:
    case 10: {
      int button = pick.Pick(4);
      Note("edit button " + std::to_string(button));
      logic_.ClickEditButton(button, dialogs_, dialog_);
      break;
    }
    case 11:
      Note("Create New");
      logic_.CommandCreateNew(dialogs_, dialog_);
      break;
    case 12:
      Note("Load");
      logic_.CommandLoad(dialogs_);
      break;
    case 13: {
      std::string example = pick.Example();
      Note("load " + example);
      logic_.LoadNamed(example, dialogs_);
      break;
    }
    case 14:
    case 15: {
      bool saveAs = pick.Chance(2);
      Note(saveAs ? "Save As" : "Save");
      if (saveAs ? logic_.CommandSaveAs(dialogs_) : logic_.CommandSave(dialogs_)) {
        CheckSavedFileLoadsAgain();
      }
      break;
    }
    case 16: {
      int option = pick.Pick(kOptionCount);
      bool ticked = pick.Chance(2);
      Note("option " + std::to_string(option) + (ticked ? " ticked" : " cleared"));
      logic_.ClickOption(option, ticked, dialogs_);
      break;
    }
    case 17:
      Note("area unit / segment");
      logic_.SetAreaUnit(pick.Pick(10) - 1);
      logic_.SetSegment(pick.Pick(4) - 1);
      break;
    case 18:
      Note("Exit");
      logic_.CommandExit(dialogs_);
      break;
    default:
      Note("enabled edit button");
      for (int button = 0; button < kEditButtonCount; ++button) {
        if (logic_.display().EditPtBtnEnabled[button] && pick.Chance(2)) {
          logic_.ClickEditButton(button, dialogs_, dialog_);
          break;
        }
      }
      break;
  }
}

void RandomSessionTest::EnterGoodPoint(DataInputLogic& dialog) {
  dialog.ChoosePtTypCmb(kTypeCoordinates);
  dialog.TypeDataTxt(0, std::to_string(dialogs_.Pick(500)));
  dialog.TypeDataTxt(1, std::to_string(dialogs_.Pick(500)));
  dialog.ClickNext();
}

void RandomSessionTest::ActInDialog(DataInputLogic& dialog) {
  RandomDialogs& pick = dialogs_;
  const Survey& survey = logic_.survey();
  int index = pick.Pick(2);
  int action = pick.Pick(18);
  Note("  dialog action " + std::to_string(action) + " on " + std::to_string(index));
  ++dialogActions_;
  switch (action) {
    case 0:
    case 1:
      dialog.TypeDataTxt(index, RandomText(pick, survey));
      break;
    case 2:
      dialog.TypeGPSTxt(index, RandomText(pick, survey));
      break;
    case 3:
      dialog.ChooseGPSCmb(index, pick.Pick(3) - 1 + index);
      break;
    case 4:
      dialog.ChoosePtTypCmb(pick.Pick(6));
      break;
    case 5:
      dialog.TickPtQualifCkB(pick.Pick(3), pick.Chance(2));
      break;
    case 6: {
      int number = pick.Chance(4) || survey.Points.empty()
                       ? pick.Pick(300) - 2
                       : survey.Points[pick.Pick(survey.Points.size())].PtNumber;
      dialog.LinkToPoint(number);
      break;
    }
    case 7:
      dialog.ChooseTypOpt(pick.Pick(6));
      break;
    case 8:
      dialog.TypeDSTagTxt(RandomText(pick, survey));
      break;
    case 9:
      dialog.TypeFileTagTxt(RandomText(pick, survey));
      break;
    case 10:
      dialog.TypeMagDecTxt(RandomText(pick, survey));
      break;
    case 11:
      dialog.ChooseUOMCmb(pick.Pick(7));
      break;
    case 12:
      dialog.ClickNxtPrevBtn(index);
      break;
    case 13:
      dialog.ClickDSNxtPrevBtn(index);
      break;
    case 14:
      dialog.ClickExitBtn(pick.Chance(3) ? 1 : 0);
      break;
    default:
      EnterGoodPoint(dialog);
      break;
  }
}

// Datasets start in order inside the points and cover them; every point number is used
// once; the join-point count is that of the points' join flags.
void RandomSessionTest::CheckSurvey(const Survey& survey, bool dialogOpen) {
  ASSERT_LE(survey.PointCount(), kPointLimit) << Recent();
  ASSERT_TRUE(survey.DatasetCount() > 0 || survey.PointCount() == 0) << Recent();
  int previous = 0;
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    int start = survey.Datasets[d].DatasetStart;
    ASSERT_TRUE(d == 0 ? start == 0 : start >= previous) << "dataset " << d + 1 << "\n" << Recent();
    ASSERT_LE(start, survey.PointCount()) << Recent();
    // A dataset without points is a new one being entered, or the new survey's only one.
    if (!dialogOpen && survey.DatasetCount() > 1) {
      ASSERT_GT(survey.DatasetEnd(d), start) << "empty dataset " << d + 1 << "\n" << Recent();
    }
    previous = start;
  }
  std::set<int> numbers;
  int joins = 0;
  for (const Point& point : survey.Points) {
    ASSERT_TRUE(numbers.insert(point.PtNumber).second) << "point " << point.PtNumber << " twice\n"
                                                       << Recent();
    joins += (point.PtFlags & kPtJoin) != 0;
  }
  ASSERT_EQ(survey.JoinPointCount, joins) << Recent();
}

// The selection names a point of the data or none, the buttons follow it, and the drawing
// belongs to the data it shows.
void RandomSessionTest::CheckWindow() {
  const Survey& survey = logic_.survey();
  const ProcessingState& state = logic_.state();
  const MainDisplay& display = logic_.display();
  CheckSurvey(survey, false);
  if (HasFatalFailure()) return;
  int selected = state.SelectedPoint;
  if (selected < 0) {
    ASSERT_EQ(selected, -1) << Recent();
    ASSERT_EQ(display.EditSubLbl, "Click on a Point") << Recent();
  } else {
    ASSERT_LT(selected, survey.PointCount()) << Recent();
    ASSERT_EQ(state.SelectedDataset, DatasetOfPoint(survey, selected) + 1) << Recent();
    ASSERT_EQ(display.EditSubLbl, "Point " + std::to_string(selected + 1) + " selected");
  }
  for (int button : {kModifyButton, kAddButton, kDeleteButton}) {
    ASSERT_EQ(display.EditPtBtnEnabled[button], selected >= 0) << button << "\n" << Recent();
  }
  const PlotScene& scene = logic_.scene();
  if (!scene.markers.empty()) {
    ASSERT_EQ(static_cast<int>(scene.screen.size()), survey.PointCount()) << Recent();
  }
  ASSERT_EQ(logic_.edit().Dialog, 0) << Recent();
}

bool SameEntries(const Survey& a, const Survey& b, std::string& difference) {
  auto differ = [&](const std::string& what) {
    difference = what;
    return false;
  };
  if (a.UnitOfMeasure != b.UnitOfMeasure) return differ("unit");
  if (a.DatasetCount() != b.DatasetCount()) return differ("dataset count");
  if (a.PointCount() != b.PointCount()) return differ("point count");
  if (a.FileTag != b.FileTag) return differ("file tag '" + a.FileTag + "' '" + b.FileTag + "'");
  if (std::abs(a.MagneticDeclination - b.MagneticDeclination) > 1e-5f) return differ("declination");
  if (a.FieldSeparator != b.FieldSeparator || a.SubValueSeparator != b.SubValueSeparator) {
    return differ("separators");
  }
  for (int d = 0; d < a.DatasetCount(); ++d) {
    const Dataset& x = a.Datasets[d];
    const Dataset& y = b.Datasets[d];
    constexpr std::uint8_t kEntered = kDatasetKindMask | kDatasetPerimeter;
    if ((x.DatasetType & kEntered) != (y.DatasetType & kEntered) ||
        x.DatasetStart != y.DatasetStart || x.DatasetTag != y.DatasetTag) {
      return differ("dataset " + std::to_string(d + 1) + ": type " + std::to_string(x.DatasetType) +
                    " " + std::to_string(y.DatasetType) + ", start " +
                    std::to_string(x.DatasetStart) + " " + std::to_string(y.DatasetStart) +
                    ", tag '" + x.DatasetTag + "' '" + y.DatasetTag + "'");
    }
  }
  for (int i = 0; i < a.PointCount(); ++i) {
    const Point& p = a.Points[i];
    const Point& q = b.Points[i];
    if (p.PtNumber != q.PtNumber || p.PtFlags != q.PtFlags || p.PtRef != q.PtRef ||
        p.PtTarget != q.PtTarget || p.InXA != q.InXA || p.InYL != q.InYL ||
        p.InGPSLong != q.InGPSLong || p.InGPSLat != q.InGPSLat ||
        (p.PtMarks & kMarkCompass) != (q.PtMarks & kMarkCompass)) {
      return differ("point " + std::to_string(p.PtNumber) + ": flags " + std::to_string(p.PtFlags) +
                    " " + std::to_string(q.PtFlags) + ", values '" + p.InXA + "' '" + p.InYL +
                    "' '" + p.InGPSLong + "' '" + p.InGPSLat + "' / '" + q.InXA + "' '" + q.InYL +
                    "' '" + q.InGPSLong + "' '" + q.InGPSLat + "'");
    }
  }
  return true;
}

// What was saved loads again as the survey that was saved.
void RandomSessionTest::CheckSavedFileLoadsAgain() {
  const Survey& survey = logic_.survey();
  PlotmeterLogic reloaded;
  UnseenDialogs answers;
  ASSERT_TRUE(reloaded.Load(survey.CurrentFileName, answers).loaded) << answers.lastText << "\n"
                                                                     << Recent();
  std::string difference;
  ASSERT_TRUE(SameEntries(survey, reloaded.survey(), difference)) << difference << "\n" << Recent();
  ++reloads_;
}

TEST_F(RandomSessionTest, SurveyHoldsTogetherWhateverTheUserDoes) {
  const long actions = EnvironmentNumber("PLOTMETER_RANDOM_ACTIONS", kSuiteActions);
  for (step_ = 0; step_ < actions; ++step_) {
    Act();
    if (HasFatalFailure()) return;
    CheckWindow();
    if (HasFatalFailure()) return;
  }
  std::printf("%ld window actions, %ld dialog actions, %ld boxes, %ld saved files loaded again\n",
              actions, dialogActions_, dialogs_.shown, reloads_);
  // The session reached the states it is meant to exercise.
  EXPECT_GT(dialogs_.shown, actions / 20);
  EXPECT_GT(reloads_, actions / 100);
}

}  // namespace
}  // namespace plotmeter
