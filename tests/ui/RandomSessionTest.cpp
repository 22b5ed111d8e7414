// A user who does anything at all, in the window and the point entry dialog, questions
// answered either way; after every action the survey must still hold together. A long run:
//   PLOTMETER_RANDOM_ACTIONS=1000000 PLOTMETER_RANDOM_SEED=7
//   plotmeter_tests --gtest_filter='RandomSession*'
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <functional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/TestFolder.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {
namespace {

long EnvironmentNumber(const char* name, long fallback) {
  const char* text = std::getenv(name);
  return text ? std::strtol(text, nullptr, 10) : fallback;
}

// An action of the user, listed with how likely it is against the others.
struct Action {
  int weight;
  const char* name;
  std::function<void()> run;
};

// What a data file keeps of a survey: the settings, the datasets' kinds, starts and tags,
// and the points as entered, with the compass and dummy marks; the declination aside.
std::string Entries(const Survey& s, std::uint8_t flagsAside = 0) {
  std::ostringstream text;
  text << s.UnitOfMeasure << s.FieldSeparator << s.SubValueSeparator << ' ' << s.FileTag << '\n';
  for (const Dataset& d : s.Datasets) {
    text << "H " << (d.DatasetType & (kDatasetKindMask | kDatasetPerimeter)) << ' '
         << d.DatasetStart << ' ' << d.DatasetTag << '\n';
  }
  for (const Point& p : s.Points) {
    text << p.PtNumber << ' ' << int(p.PtFlags & ~flagsAside) << ' '
         << (p.PtMarks & (kMarkCompass | kMarkDummy)) << ' ' << p.PtRef << ' ' << p.PtTarget << " '"
         << p.InXA << "' '" << p.InYL << "' '" << p.InGPSLong << "' '" << p.InGPSLat << "'\n";
  }
  return text.str();
}

// A link point in "All GPS Only" data is dropped as the file loads again, with a box.
struct ReloadDialogs : UnseenDialogs {
  Button Show(const MessageBox& box) override {
    linkIgnored |= box.text.starts_with("GPS link specification is irrelevant");
    return UnseenDialogs::Show(box);
  }
  bool linkIgnored = false;
};

// The session answers the boxes itself: questions either way, files among the examples
// (copied into the test's folder, as "Save" writes to the file last loaded), the saved
// file and names the file commands refuse.
class RandomSessionTest : public ::testing::Test, public UserDialogs {
 protected:
  void SetUp() override {
    for (const auto& entry : std::filesystem::directory_iterator(PLOTMETER_EXAMPLES_DIR)) {
      examples_.push_back(folder_.Path(entry.path().filename().string()));
      std::filesystem::copy_file(entry.path(), examples_.back());
    }
    std::sort(examples_.begin(), examples_.end());
  }

  Button Show(const MessageBox& box) override {
    ++boxes_;
    if (box.buttons == Buttons::Ok) return Button::Ok;
    const bool first = Chance(2);
    if (box.buttons == Buttons::YesNo) return first ? Button::Yes : Button::No;
    return first ? Button::Ok : Button::Cancel;
  }
  void Beep() override {}
  FileChoice SelectFile(const FileDialogRequest& request) override {
    const int choice = Pick(8);
    if (choice == 0) return {};
    if (choice <= 2) return {false, folder_.Path(choice == 1 ? ".csv" : "missing/x.csv")};
    if (request.mode == kSelectOpen && Chance(3)) return {false, Example()};
    return {false, folder_.Path("saved.csv")};
  }

  int Pick(std::size_t n) { return std::uniform_int_distribution<int>(0, int(n) - 1)(random_); }
  bool Chance(int n) { return Pick(n) == 0; }
  std::string Example() { return examples_[Pick(examples_.size())]; }

  // Text as a user might type it: values, values with the separator, signs, blanks and
  // stray characters, the separators and the degree mark among them.
  std::string RandomText() {
    const Survey& survey = logic_.survey();
    const std::string number = std::to_string(Pick(400));
    auto part = [&] { return survey.SubValueSeparator + std::to_string(Pick(80)); };
    const int kind = Pick(6);
    if (kind < 2) return number + (Chance(3) ? "." + std::to_string(Pick(100)) : "");
    if (kind == 2) return number + part() + (Chance(2) ? part() : "");
    if (kind == 3) return Chance(2) ? "" : "-" + number;
    const std::string alphabet = std::string("0123456789.-+eENSWns :,\\\t'\"x\xB0") +
                                 survey.SubValueSeparator + survey.FieldSeparator;
    std::string text(Pick(8) + 1, ' ');
    for (char& c : text) c = alphabet[Pick(alphabet.size())];
    return text;
  }

  // Runs one of `actions`, drawn by their weights, and notes it for the failure messages.
  void RunOne(const std::vector<Action>& actions, const char* indent = "") {
    int drawn = 0;
    for (const Action& action : actions) drawn += action.weight;
    drawn = Pick(drawn);
    for (const Action& action : actions) {
      if ((drawn -= action.weight) >= 0) continue;
      recent_.push_back(std::to_string(step_) + ": " + indent + action.name);
      if (recent_.size() > 40) recent_.pop_front();
      return action.run();
    }
  }
  std::string Recent() const {
    std::string text = "seed " + std::to_string(seed_) + ", last actions:\n";
    for (const std::string& line : recent_) text += "  " + line + "\n";
    return text;
  }

  void Act();
  void ActInDialog(DataInputLogic& dialog);
  void CheckSurvey(const Survey& survey, bool dialogOpen);
  void CheckWindow();

  const unsigned seed_ = static_cast<unsigned>(EnvironmentNumber("PLOTMETER_RANDOM_SEED", 1));
  std::mt19937 random_{seed_};
  // A folder of this process's own: a long run may go on beside the suite.
  testing::TestFolder folder_{"_" + std::to_string(getpid())};
  std::vector<std::string> examples_;
  PlotmeterLogic logic_;
  PointDialogShow dialog_ = [this](DataInputLogic& dialog) {
    for (int i = Pick(40); i > 0 && dialog.IsOpen() && !HasFatalFailure(); --i) {
      ActInDialog(dialog);
      CheckSurvey(logic_.survey(), dialog.IsOpen());
    }
    if (dialog.IsOpen() && Chance(2)) dialog.ClickApply();
  };
  long step_ = 0, boxes_ = 0, dialogActions_ = 0, reloads_ = 0;
  std::deque<std::string> recent_;
};

void RandomSessionTest::Act() {
  auto anywhere = [&] {
    const float x = Pick(4600) - 200.0f, y = Pick(4600) - 200.0f;  // beyond the area too
    logic_.ClickDrawing(static_cast<MouseButton>(Pick(3)), x, y);
  };
  auto onAPoint = [&] {
    const std::vector<ScreenPoint>& screen = logic_.scene().screen;
    if (screen.empty()) return anywhere();
    const ScreenPoint& at = screen[Pick(screen.size())];
    logic_.ClickDrawing(MouseButton::kLeft, at.x, at.y);
  };
  // What was saved loads again as the survey that was saved.
  auto save = [&] {
    if (!(Chance(2) ? logic_.CommandSaveAs(*this) : logic_.CommandSave(*this))) return;
    PlotmeterLogic reloaded;
    ReloadDialogs answers;
    ASSERT_TRUE(reloaded.Load(logic_.survey().CurrentFileName, answers).loaded)
        << answers.lastText << Recent();
    const std::uint8_t aside = answers.linkIgnored ? kPtLink : 0;
    EXPECT_EQ(Entries(reloaded.survey()), Entries(logic_.survey(), aside)) << Recent();
    EXPECT_NEAR(reloaded.survey().MagneticDeclination, logic_.survey().MagneticDeclination, 1e-5);
    ++reloads_;
  };
  auto enabledButton = [&] {
    for (int button = 0; button < kEditButtonCount; ++button) {
      if (logic_.display().EditPtBtnEnabled[button] && Chance(2)) {
        return logic_.ClickEditButton(button, *this, dialog_);
      }
    }
  };
  RunOne({
      {4, "left click on a point", onAPoint},
      {1, "click anywhere", anywhere},
      {6, "edit button", [&] { logic_.ClickEditButton(Pick(4), *this, dialog_); }},
      {1, "Create New", [&] { logic_.CommandCreateNew(*this, dialog_); }},
      {1, "Load", [&] { logic_.CommandLoad(*this); }},
      {1, "load an example", [&] { logic_.LoadNamed(Example(), *this); }},
      {2, "Save or Save As", save},
      {1, "option box", [&] { logic_.ClickOption(Pick(kOptionCount), Chance(2), *this); }},
      {1, "area unit and segment",
       [&] {
         logic_.SetAreaUnit(Pick(10) - 1);
         logic_.SetSegment(Pick(4) - 1);
       }},
      {1, "Exit", [&] { logic_.CommandExit(*this); }},
      {1, "an enabled edit button", enabledButton},
  });
}

// Typed text goes into the value fields, twice as often as into the others; a good point
// (co-ordinates typed, then "Next") is the likeliest action.
void RandomSessionTest::ActInDialog(DataInputLogic& dialog) {
  const Survey& survey = logic_.survey();
  const int index = Pick(2);
  auto linked = [&] {
    return Chance(4) || survey.Points.empty() ? Pick(300) - 2
                                              : survey.Points[Pick(survey.Points.size())].PtNumber;
  };
  ++dialogActions_;
  RunOne({{2, "DataTxt", [&] { dialog.TypeDataTxt(index, RandomText()); }},
          {1, "GPSTxt", [&] { dialog.TypeGPSTxt(index, RandomText()); }},
          {1, "GPSCmb", [&] { dialog.ChooseGPSCmb(index, Pick(3) - 1 + index); }},
          {1, "PtTypCmb", [&] { dialog.ChoosePtTypCmb(Pick(6)); }},
          {1, "PtQualifCkB", [&] { dialog.TickPtQualifCkB(Pick(3), Chance(2)); }},
          {1, "PtRef#", [&] { dialog.LinkToPoint(linked()); }},
          {1, "TypOpt", [&] { dialog.ChooseTypOpt(Pick(6)); }},
          {1, "DSTagTxt", [&] { dialog.TypeDSTagTxt(RandomText()); }},
          {1, "FileTagTxt", [&] { dialog.TypeFileTagTxt(RandomText()); }},
          {1, "MagDecTxt", [&] { dialog.TypeMagDecTxt(RandomText()); }},
          {1, "UOMCmb", [&] { dialog.ChooseUOMCmb(Pick(7)); }},
          {1, "NxtPrevBtn", [&] { dialog.ClickNxtPrevBtn(index); }},
          {1, "DSNxtPrevBtn", [&] { dialog.ClickDSNxtPrevBtn(index); }},
          {1, "ExitBtn", [&] { dialog.ClickExitBtn(Chance(3) ? 1 : 0); }},
          {3, "a good point",
           [&] {
             dialog.ChoosePtTypCmb(kTypeCoordinates);
             dialog.TypeDataTxt(0, std::to_string(Pick(500)));
             dialog.TypeDataTxt(1, std::to_string(Pick(500)));
             dialog.ClickNext();
           }}},
         "  ");
}

// Datasets start in order inside the points and cover them; every point number is used
// once; the join-point count is that of the points' join flags.
void RandomSessionTest::CheckSurvey(const Survey& survey, bool dialogOpen) {
  SCOPED_TRACE(Recent());
  ASSERT_LE(survey.PointCount(), kPointLimit);
  ASSERT_TRUE(survey.DatasetCount() > 0 || survey.PointCount() == 0);
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    const int start = survey.Datasets[d].DatasetStart;
    ASSERT_TRUE(d == 0 ? start == 0 : start >= survey.Datasets[d - 1].DatasetStart) << d + 1;
    ASSERT_LE(start, survey.PointCount());
    // A dataset without points is a new one being entered, or the new survey's only one.
    ASSERT_TRUE(dialogOpen || survey.DatasetCount() == 1 || survey.DatasetEnd(d) > start) << d + 1;
  }
  std::set<int> numbers;
  int joins = 0;
  for (const Point& point : survey.Points) {
    ASSERT_TRUE(numbers.insert(point.PtNumber).second) << "point " << point.PtNumber << " twice";
    joins += (point.PtFlags & kPtJoin) != 0;
  }
  ASSERT_EQ(survey.JoinPointCount, joins);
}

// The selection names a point of the data or none, the buttons follow it, and the drawing
// belongs to the data it shows.
void RandomSessionTest::CheckWindow() {
  const Survey& survey = logic_.survey();
  const int selected = logic_.state().SelectedPoint;
  const MainDisplay& display = logic_.display();
  CheckSurvey(survey, false);
  SCOPED_TRACE(Recent());
  ASSERT_TRUE(selected >= -1 && selected < survey.PointCount());
  if (selected >= 0) {
    ASSERT_EQ(logic_.state().SelectedDataset, DatasetOfPoint(survey, selected) + 1);
  }
  ASSERT_EQ(display.EditSubLbl, selected < 0
                                    ? std::string("Click on a Point")
                                    : "Point " + std::to_string(selected + 1) + " selected");
  for (int button : {kModifyButton, kAddButton, kDeleteButton}) {
    ASSERT_EQ(display.EditPtBtnEnabled[button], selected >= 0) << button;
  }
  const bool drawn = !logic_.scene().markers.empty();
  ASSERT_TRUE(!drawn || std::ssize(logic_.scene().screen) == survey.PointCount());
  ASSERT_EQ(logic_.edit().Dialog, 0);
}

TEST_F(RandomSessionTest, SurveyHoldsTogetherWhateverTheUserDoes) {
  const long actions = EnvironmentNumber("PLOTMETER_RANDOM_ACTIONS", 10000);
  for (step_ = 0; step_ < actions && !HasFailure(); ++step_) {
    Act();
    if (!HasFailure()) CheckWindow();
  }
  std::printf("%ld window actions, %ld dialog actions, %ld boxes, %ld saved files loaded again\n",
              step_, dialogActions_, boxes_, reloads_);
  // The session reached the states it is meant to exercise.
  EXPECT_GT(boxes_, actions / 20);
  EXPECT_GT(reloads_, actions / 100);
}

}  // namespace
}  // namespace plotmeter
