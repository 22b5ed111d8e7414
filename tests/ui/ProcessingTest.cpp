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
using testing::PerimeterSurvey;
using testing::XY;

class ProcessingTest : public ::testing::Test {
 protected:
  // Runs processing on `loaded` as after a load, over the traces of an earlier run on the
  // display.
  void Run(Survey loaded, std::uint8_t dataState = kDataPresent) {
    survey = std::move(loaded);
    state.DataState = dataState;
    state.DisplayRequest = kRedrawPending;
    display.AreaValLbl.text = "12.5";
    display.AreaHdrLbl = "Area (GPS)";
    display.AreaSgmtCmb.visible = true;
    scene.ScaleLbl = "Window Width / Height = 5.00 Units";
    scene.LotLbl.visible = true;
    scene.TagDSLbl.visible = true;
    Rerun();
  }
  void Rerun() { ReportProcessing(RunProcessing(survey, state, display, scene), survey, dialogs); }

  // The one box shown, by its title and icon (its text: the processing goldens').
  void ExpectBox(const std::string& title, Icon icon) {
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_EQ(dialogs.last().title, title);
    EXPECT_EQ(dialogs.last().icon, icon);
    EXPECT_EQ(dialogs.beeps, 1);
  }

  Survey survey;
  ProcessingState state;
  MainDisplay display;
  PlotScene scene;
  testing::ScriptedDialogs dialogs;
};

// A regular polygon of `count` points, 100 m across.
std::vector<XY> Polygon(int count) {
  std::vector<XY> points;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * std::numbers::pi * i / count;
    points.push_back(
        {static_cast<float>(50 * std::cos(angle)), static_cast<float>(50 * std::sin(angle))});
  }
  return points;
}

// The area's text is plotmeter-cli's area line.
TEST_F(ProcessingTest, GoodPerimeterShowsItsArea) {
  Run(PerimeterSurvey({{0, 0}, {40, 0}, {40, 40}, {0, 40}}));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(state.ProcessState & kAreaComputed);
  EXPECT_EQ(display.AreaHdrLbl + " / " + scene.ScaleLbl,
            "Area / Window Width / Height = 42.0 Meters");
  EXPECT_FALSE(state.DisplayRequest & kRedrawPending);

  Run(PerimeterSurvey(Polygon(kPointLimit)));  // the most points there may be
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(scene.lines.size(), 210u);
}

// A failed run shows its box, leaves nothing drawn and no area, and clears the error
// state but for its kept bits.
TEST_F(ProcessingTest, FailuresResetTheDisplay) {
  Survey overLimit = PerimeterSurvey(Polygon(200));  // the limit counts every dataset
  AddDataset(overLimit, kTypeP, std::vector<XY>(11, XY{1, 1}));
  Survey notLaidOut;
  AddDataset(notLaidOut, kTypeN, {{0, 0}, {INFINITY, 3}});
  const struct {
    Survey survey;
    std::uint8_t dataState, errorState, errorStateAfter;
    const char* text;
  } rows[] = {
      {PerimeterSurvey(kSquare), 0, 0x5F, 0x5F & 0xE8, "No data exists"},
      {overLimit, kDataPresent, 0, 0,
       "The number of points specified exceeds the program limit of 210\n\n"
       "Split the data to create multiple non-overlapping areas and add the results"},
      {notLaidOut, kDataPresent, 0x12, 0, "Data could not be displayed"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    dialogs = {};
    state.ErrorState = row.errorState;
    state.ProcessState = kAreaComputed;
    Run(row.survey, row.dataState);
    ExpectBox("Processing Failed", Icon::Critical);
    EXPECT_EQ(dialogs.last().text, row.text);
    EXPECT_EQ(state.ErrorState, row.errorStateAfter);
    EXPECT_FALSE(state.DisplayRequest & kRedrawPending || state.ProcessState & kAreaComputed);
    EXPECT_EQ(display.AreaValLbl.text + display.AreaHdrLbl + scene.ScaleLbl, "Area");
    EXPECT_FALSE(display.AreaSgmtCmb.visible || scene.LotLbl.visible || scene.TagDSLbl.visible);
    EXPECT_TRUE(scene.markers.empty() && scene.lines.empty());
  }
}

TEST_F(ProcessingTest, MainDatasetThatIsNotAPerimeterIsDrawnWithoutArea) {
  Survey loaded;
  AddDataset(loaded, kTypeN, {{0, 0}, {10, 10}, {10, 0}, {0, 10}});  // would be a bow-tie
  Run(loaded);
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_FALSE(state.ProcessState & kAreaComputed || state.BadPerimeter);
  EXPECT_EQ(scene.lines.size(), 3u);  // an open line: no closing line
}

// The traverse's last point overshoots the start point, so its last line crosses the first
// line. How the display and the drawing show it: the area display below and PlotSceneTest.
TEST_F(ProcessingTest, BadPerimeterIsMarkedUntilAGoodRun) {
  Run(PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}, {2, 10}, {1, -1}}));
  ExpectBox("Bad Perimeter Data", Icon::Exclamation);
  EXPECT_TRUE(state.BadPerimeter);
  EXPECT_FALSE(state.ProcessState & kAreaComputed);
  EXPECT_EQ(scene.lines[3].colour, kErrorRed);  // the line to point 4
  EXPECT_EQ(scene.lines[1].colour, kBlack);

  survey.Points[4].Y = 5;  // corrected: the last point now stays outside the first line
  dialogs.boxes.clear();
  Rerun();
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_FALSE(state.BadPerimeter);
  EXPECT_TRUE(state.ProcessState & kAreaComputed);
}

// The note (the resequenced golden) borrows the failure's title and icon; the flag stays,
// so the note repeats.
TEST_F(ProcessingTest, ResequencedNoteFollowsAGoodResult) {
  state.ErrorState = kErrorResequenced;
  Run(PerimeterSurvey({{0, 0}, {100, 0}, {100, 100}}));
  ExpectBox("Processing Failed", Icon::Critical);
  EXPECT_TRUE(state.ProcessState & kAreaComputed);
  Rerun();
  EXPECT_EQ(dialogs.boxes.size(), 2u);
}

TEST_F(ProcessingTest, SelectionOutOfViewIsReset) {
  Survey loaded = PerimeterSurvey({{0, 0}, {100, 0}, {100, 100}});
  const int barn = AddDataset(loaded, kTypeP, {{50, 20}});
  state.SelectedPoint = barn;
  state.SelectedDataset = 2;
  Run(loaded);
  EXPECT_EQ(state.SelectedPoint, barn);
  display.DisplayOptions = 15 & ~kShowPoints;
  Rerun();
  EXPECT_EQ(state.SelectedPoint, -1);
  EXPECT_EQ(state.SelectedDataset, 0);
}

// An extension offers the enlarged plot first; hidden, the main plot as surveyed. (A plain
// division's list: the sheet's area lines show it.)
TEST_F(ProcessingTest, ExtendedPlotOffersItsSegments) {
  display.AreaUnitCmb.index = 0;
  display.AreaSgmtCmb.index = 0;
  Run(DividedSurvey(kSquare, 1, 2, {{10, 0}, {15, 5}}, "Creek paddock"));
  EXPECT_EQ(display.AreaSgmtCmb.items,
            (std::vector<std::string>{"Extended Plot", "Main Plot", "Extension"}));
  EXPECT_EQ(display.AreaValLbl.text, "125.0");
  EXPECT_TRUE(scene.LotLbl.visible && display.AreaSgmtCmb.visible);
  display.DisplayOptions = 15 & ~kShowSubDivision;
  Rerun();
  EXPECT_EQ(display.AreaValLbl.text, "100.0");
  EXPECT_FALSE(display.AreaSgmtCmb.visible);
}

// ---------------------------------------------------------------------------------------
// The area display after a run

// The pattern changes at 1000 by the value before it is rounded; the patterns' own
// rounding and grouping are NumberFormatTest's.
TEST(MainDisplayTest, AreaTextIsFormattedBySize) {
  EXPECT_EQ(AreaText(999.99), "999.99");
  EXPECT_EQ(AreaText(999.996), "1000.0");
  EXPECT_EQ(AreaText(1000), "1,000");
}

// Whole plot 300, first part 200, second part 100; the list shows only with the
// sub-division drawn, and then the parts come in their own order.
TEST(MainDisplayTest, AreaOfTheChosenSegment) {
  const struct {
    std::uint8_t areaState, options;
    int chosen;
    const char* shown;  // the text, and "+" when the list is shown
  } rows[] = {
      {kAreaSegmentCount, 15, 2, "100.0+"},
      {kAreaSegmentCount, 14, 2, "300.0"},
      {kAreaSegmentCount | kSegmentsSwapped, 14, 2, "200.0"},
      {kAreaSegmentCount | kSegmentsSwapped, 15, 2, "100.0+"},
      {0, 15, 2, "300.0"},                   // one area
      {kAreaSegmentCount, 15, 7, "300.0+"},  // a choice out of range
  };
  for (const auto& row : rows) {
    const ProcessingState state{.AreaState = row.areaState, .SegmentAreas = {300, 200, 100}};
    MainDisplay display;
    display.DisplayOptions = row.options;
    display.AreaSgmtCmb.index = row.chosen;
    ShowArea(PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}}), state, display);
    EXPECT_EQ(display.AreaValLbl.text + (display.AreaSgmtCmb.visible ? "+" : ""), row.shown);
    EXPECT_FALSE(display.AreaValLbl.red);
  }
}

// Without a good perimeter neither the segment list nor, when it is not a perimeter at all,
// the unit shows; a bad perimeter's text is red until a good run. (The texts: the CLI's
// area lines.)
TEST(MainDisplayTest, NoAreaShownWithoutAGoodPerimeter) {
  ProcessingState state{.AreaState = kAreaSegmentCount, .SegmentAreas = {3, 3, 3}};
  Survey open;
  AddDataset(open, kTypeN, {{0, 0}, {1, 0}, {1, 1}});
  MainDisplay display;
  display.AreaSgmtCmb.visible = display.AreaUnitLbl.visible = true;
  ShowArea(open, state, display);
  EXPECT_FALSE(display.AreaUnitCmb.visible || display.AreaUnitLbl.visible ||
               display.AreaSgmtCmb.visible);

  const Survey survey = PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}});
  state.BadPerimeter = true;
  display.AreaSgmtCmb.visible = true;
  ShowArea(survey, state, display);
  EXPECT_TRUE(display.AreaValLbl.red && display.AreaUnitCmb.visible);
  EXPECT_FALSE(display.AreaSgmtCmb.visible);
  state.BadPerimeter = false;
  ShowArea(survey, state, display);
  EXPECT_EQ(display.AreaValLbl.text, "3.0");
  EXPECT_FALSE(display.AreaValLbl.red);
}

// The unit label stands in for the list with an unspecified unit, and the declination
// shows its side.
TEST(MainDisplayTest, LabelsFollowTheSurvey) {
  Survey survey = PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}}, kUnitNotSpecified);
  const ProcessingState state{.SegmentAreas = {1, 1, 1}};
  MainDisplay display;
  auto shown = [&](int unit, float declination) {
    survey.UnitOfMeasure = unit;
    survey.MagneticDeclination = declination;
    ShowArea(survey, state, display);
    return std::string(display.AreaUnitCmb.visible ? "list " : "") +
           (display.AreaUnitLbl.visible ? "label " : "") +
           (display.MagDecHdrLblEnabled ? "declination " : "") + display.MagDecLbl;
  };
  EXPECT_EQ(shown(kUnitNotSpecified, -2), "label declination 2.0 W");
  EXPECT_EQ(shown(kUnitFeet, 3.5f), "list declination 3.5 E");
  EXPECT_EQ(shown(kUnitFeet, 0), "list ");
}

}  // namespace
}  // namespace plotmeter
