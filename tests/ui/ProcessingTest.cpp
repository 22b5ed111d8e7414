#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "support/PlotSurveys.h"
#include "support/ScriptedDialogs.h"
#include "ui/Processing.h"

namespace plotmeter {
namespace {

using testing::AddDataset;
using testing::DividedSurvey;
using testing::kSquare;
using testing::MarkJoins;
using testing::PerimeterSurvey;
using testing::ScriptedDialogs;
using testing::XY;

class ProcessingTest : public ::testing::Test {
 protected:
  void Run() { ReportProcessing(RunProcessing(survey, state, display, scene), survey, dialogs); }

  // Sets up a loaded survey, and leaves traces of an earlier run on the display.
  void Load(Survey loaded) {
    survey = std::move(loaded);
    state.DataState = kDataPresent;
    state.DisplayRequest = kRedrawPending;
    display.AreaValLbl.text = "12.5";
    display.AreaHdrLbl = "Area (GPS)";
    display.AreaSgmtCmb.visible = true;
    scene.ScaleLbl = "Window Width / Height = 5.00 Units";
    scene.LotLbl.visible = true;
    scene.TagDSLbl.visible = true;
  }

  void ExpectFailureBox(const std::string& text) {
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_EQ(dialogs.last().title, "Processing Failed");
    EXPECT_EQ(dialogs.last().text, text);
    EXPECT_EQ(dialogs.last().icon, Icon::Critical);
    EXPECT_EQ(dialogs.last().buttons, Buttons::Ok);
    EXPECT_EQ(dialogs.beeps, 1);
  }

  void ExpectDisplayReset() {
    EXPECT_EQ(display.AreaValLbl.text, "");
    EXPECT_EQ(display.AreaHdrLbl, "Area");
    EXPECT_FALSE(display.AreaSgmtCmb.visible);
    EXPECT_EQ(scene.ScaleLbl, "");
    EXPECT_FALSE(scene.LotLbl.visible);
    EXPECT_FALSE(scene.TagDSLbl.visible);
    EXPECT_TRUE(scene.markers.empty());
    EXPECT_TRUE(scene.lines.empty());
    EXPECT_FALSE(state.ProcessState & kAreaComputed);
  }

  const SceneLine* LineEndingAt(int point) const {
    for (const SceneLine& line : scene.lines) {
      if (line.endsAt == point) return &line;
    }
    return nullptr;
  }

  Survey survey;
  ProcessingState state;
  MainDisplay display;
  PlotScene scene;
  ScriptedDialogs dialogs;
};

// A regular polygon of `count` points, 100 m across.
std::vector<XY> Polygon(int count) {
  std::vector<XY> points;
  for (int i = 0; i < count; ++i) {
    double angle = 2 * std::numbers::pi * i / count;
    points.push_back(
        {static_cast<float>(50 * std::cos(angle)), static_cast<float>(50 * std::sin(angle))});
  }
  return points;
}

TEST_F(ProcessingTest, GoodPerimeterShowsItsArea) {
  Load(PerimeterSurvey({{0, 0}, {40, 0}, {40, 40}, {0, 40}}));
  display.AreaUnitCmb.index = 0;  // "Sq. Meters"
  Run();
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(dialogs.beeps, 0);
  EXPECT_TRUE(state.ProcessState & kAreaComputed);
  EXPECT_FALSE(state.BadPerimeter);
  EXPECT_EQ(display.AreaValLbl.text, "1,600");
  EXPECT_EQ(display.AreaHdrLbl, "Area");
  EXPECT_EQ(scene.ScaleLbl, "Window Width / Height = 42.0 Meters");
  EXPECT_EQ(scene.markers.size(), 4u);
  EXPECT_FALSE(state.DisplayRequest & kRedrawPending);
}

TEST_F(ProcessingTest, NoDataExists) {
  Load(PerimeterSurvey({{0, 0}, {100, 0}, {100, 100}}));
  state.DataState = 0;
  state.ErrorState = 0x5F;
  Run();
  ExpectFailureBox("No data exists");
  ExpectDisplayReset();
  EXPECT_EQ(state.ErrorState, 0x5F & 0xE8);
  EXPECT_FALSE(state.DisplayRequest & kRedrawPending);
}

TEST_F(ProcessingTest, PointLimitIsCountedOverEveryDataset) {
  Load(PerimeterSurvey(Polygon(kPointLimit)));
  Run();
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(scene.lines.size(), 210u);

  Survey loaded = PerimeterSurvey(Polygon(200));
  AddDataset(loaded, kTypeP, std::vector<XY>(11, XY{1, 1}));
  Load(loaded);
  Run();
  ExpectFailureBox(
      "The number of points specified exceeds the program limit of 210\n\n"
      "Split the data to create multiple non-overlapping areas and add the results");
  ExpectDisplayReset();
}

TEST_F(ProcessingTest, MainDatasetThatIsNotAPerimeterIsDrawnWithoutArea) {
  Survey loaded;
  AddDataset(loaded, kTypeN, {{0, 0}, {10, 10}, {10, 0}, {0, 10}});  // would be a bow-tie
  Load(loaded);
  Run();
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_FALSE(state.ProcessState & kAreaComputed);
  EXPECT_FALSE(state.BadPerimeter);
  EXPECT_EQ(display.AreaValLbl.text, "< Not a Perimeter >");
  EXPECT_EQ(scene.markers.size(), 4u);
  EXPECT_EQ(scene.lines.size(), 3u);  // an open line: no closing line
}

// The traverse's last point overshoots the start point, so its last line crosses the
// first line; a stand-alone point is kept out of the perimeter-only drawing.
Survey Overshooting() {
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {2, 10}, {1, -1}});
  survey.Datasets[0].ClosingLen = 1.5f;
  AddDataset(survey, kTypeP, {{5, 5}});
  return survey;
}

Survey OvershootingInTabs() {
  Survey survey = Overshooting();
  survey.FieldSeparator = '\t';
  survey.UnitOfMeasure = kUnitNotSpecified;
  return survey;
}

// The division's last point (-1, 10.5) overshoots the join point (0, 10). The message
// measures the line to that join, not a closing line back to the sub-division's start.
Survey DivisionOvershootingTheJoin() {
  Survey survey = DividedSurvey(kSquare, 1, 3, {{10, 0}, {6, 4}, {-1, 10.5f}});
  survey.Datasets[1].ClosingLen = 12.04f;
  return survey;
}

TEST_F(ProcessingTest, BadPerimeterMessages) {
  const std::string redLine =
      "Perimeter lines ONLY are displayed, the error line is highlghted in Red.";
  const struct {
    Survey survey;
    std::string text;
  } rows[] = {
      {Overshooting(),
       "The last line is crossing the first line preventing an area calculation.\n"
       "Possibly as the last point specified is intended to be the 'Start Point'.\n\n"
       "The last point is ,1.5 Meters from the Start point.\n\n"
       "If appropriate, remove the last point from the data to correct,\n"
       "using only the automatically created last line to the start point.\n\n" +
           redLine},
      {OvershootingInTabs(),
       "The last line is crossing the first line preventing an area calculation.\n"
       "Possibly as the last point specified is intended to be the 'Start Point'.\n\n"
       "The last point is \t1.5 <Not specified> from the Start point.\n\n"
       "If appropriate, remove the last point from the data to correct,\n"
       "using only the automatically created last line to the start point.\n\n" +
           redLine},
      {DivisionOvershootingTheJoin(),
       "The last sub-division line is crossing the main perimeter preventing an area "
       "calculation.\n"
       "Possibly as the last point specified is intended to be the 'Join Point'.\n\n"
       "The last point is ,1.11803 Meters from the Join point.\n\n"
       "If appropriate, remove the last point from the data to correct,\n"
       "using only the automatically created last line to the join point.\n\n" +
           redLine},
      {PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {14, 4}, {6, 4}, {0, 10}}),
       "Is not a valid Perimeter as Lines are crossing, no Area value can ce determined.\n\n"
       "Perimeter lines ONLY are displayed, the error lines concerned are highlghted in Red."},
  };
  for (const auto& row : rows) {
    dialogs = {};
    Load(row.survey);
    Run();
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_EQ(dialogs.last().title, "Bad Perimeter Data");
    EXPECT_EQ(dialogs.last().text, row.text);
    EXPECT_EQ(dialogs.last().icon, Icon::Exclamation);
    EXPECT_EQ(dialogs.beeps, 1);
  }
}

// How the display and the drawing show it: MainDisplayTest and PlotSceneTest.
TEST_F(ProcessingTest, BadPerimeterIsMarkedUntilAGoodRun) {
  Load(Overshooting());
  Run();
  EXPECT_TRUE(state.BadPerimeter);
  EXPECT_FALSE(state.ProcessState & kAreaComputed);
  EXPECT_EQ(LineEndingAt(4)->colour, kErrorRed);
  EXPECT_EQ(LineEndingAt(2)->colour, kBlack);

  survey.Points[4].X = -1;  // corrected: the last point now stays outside the first line
  survey.Points[4].Y = 5;
  dialogs.boxes.clear();
  Run();
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_FALSE(state.BadPerimeter);
  EXPECT_TRUE(state.ProcessState & kAreaComputed);
}

TEST_F(ProcessingTest, ResequencedNoteFollowsAGoodResult) {
  Load(PerimeterSurvey({{0, 0}, {100, 0}, {100, 100}}));
  state.ErrorState = kErrorResequenced;
  Run();
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().title, "Processing Failed");
  EXPECT_EQ(dialogs.last().text, "Note some Intermediate points were resequenced for validity\n\n");
  EXPECT_EQ(dialogs.last().icon, Icon::Critical);
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_TRUE(state.ProcessState & kAreaComputed);
  EXPECT_EQ(state.ErrorState, kErrorResequenced);  // not cleared: the note repeats
  Run();
  EXPECT_EQ(dialogs.boxes.size(), 2u);
}

TEST_F(ProcessingTest, DrawingThatFailsIsReported) {
  Survey loaded;
  AddDataset(loaded, kTypeN, {{0, 0}, {INFINITY, 3}});
  Load(loaded);
  state.ErrorState = 0x12;
  Run();
  ExpectFailureBox("Data could not be displayed");
  ExpectDisplayReset();
  EXPECT_EQ(state.ErrorState, 0);
}

TEST_F(ProcessingTest, SelectionOutOfViewIsReset) {
  Survey loaded = PerimeterSurvey({{0, 0}, {100, 0}, {100, 100}});
  int barn = AddDataset(loaded, kTypeP, {{50, 20}});
  Load(loaded);
  state.SelectedPoint = barn;
  state.SelectedDataset = 2;
  display.DisplayOptions = 15;
  Run();
  EXPECT_EQ(state.SelectedPoint, barn);
  display.DisplayOptions = 15 & ~kShowPoints;
  Run();
  EXPECT_EQ(state.SelectedPoint, -1);
  EXPECT_EQ(state.SelectedDataset, 0);
}

TEST_F(ProcessingTest, DividedPlotOffersItsSegments) {
  Survey loaded = PerimeterSurvey({{0, 0}, {100, 0}, {100, 100}, {0, 100}});
  MarkJoins(loaded, 0, 2);
  Load(loaded);
  display.AreaUnitCmb.index = 0;
  display.AreaSgmtCmb.index = 2;
  Run();
  EXPECT_TRUE(state.AreaState & kAreaSegmentCount);
  EXPECT_EQ(display.AreaSgmtCmb.items,
            (std::vector<std::string>{"Whole Plot", "Part 1", "Part 2"}));
  EXPECT_TRUE(display.AreaSgmtCmb.visible);
  EXPECT_EQ(display.AreaValLbl.text, "5,000");
  EXPECT_FALSE(scene.LotLbl.visible);  // no sub-division dataset to label
  EXPECT_TRUE(SegmentItems(ProcessingState{}).empty());
}

TEST_F(ProcessingTest, ExtensionOffersTheEnlargedPlotFirst) {
  Load(DividedSurvey(kSquare, 1, 2, {{10, 0}, {15, 5}}, "Creek paddock"));
  display.AreaUnitCmb.index = 0;
  Run();
  EXPECT_EQ(display.AreaSgmtCmb.items,
            (std::vector<std::string>{"Extended Plot", "Main Plot", "Extension"}));
  EXPECT_EQ(display.AreaValLbl.text, "125.0");
  EXPECT_TRUE(scene.LotLbl.visible);
  display.DisplayOptions = 15 & ~kShowSubDivision;
  Run();
  EXPECT_EQ(display.AreaValLbl.text, "100.0");  // the main plot as surveyed
  EXPECT_FALSE(display.AreaSgmtCmb.visible);
}

}  // namespace
}  // namespace plotmeter
