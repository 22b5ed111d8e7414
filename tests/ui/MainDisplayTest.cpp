#include <gtest/gtest.h>

#include "support/PlotSurveys.h"
#include "ui/MainDisplay.h"

namespace plotmeter {
namespace {

using testing::PerimeterSurvey;

// The pattern changes at 1000 by the value before it is rounded; the patterns' own
// rounding and grouping are NumberFormatTest's.
TEST(MainDisplayTest, AreaTextIsFormattedBySize) {
  EXPECT_EQ(AreaText(999.99), "999.99");
  EXPECT_EQ(AreaText(999.996), "1000.0");
  EXPECT_EQ(AreaText(1000), "1,000");
}

// Whole plot 300, first part 200, second part 100.
TEST(MainDisplayTest, AreaOfTheChosenSegment) {
  const struct {
    std::uint8_t areaState;
    std::uint8_t options;
    int chosen;
    const char* text;
    bool listShown;
  } rows[] = {
      {kAreaSegmentCount, 15, 2, "100.0", true},
      {kAreaSegmentCount, 15, 0, "300.0", true},
      {kAreaSegmentCount, 14, 2, "300.0", false},  // sub-division not shown
      {kAreaSegmentCount | kSegmentsSwapped, 14, 2, "200.0", false},
      {kAreaSegmentCount | kSegmentsSwapped, 15, 2, "100.0", true},
      {0, 15, 2, "300.0", false},                 // one area
      {kAreaSegmentCount, 15, 7, "300.0", true},  // a choice out of range
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    const ProcessingState state{.AreaState = row.areaState, .SegmentAreas = {300, 200, 100}};
    MainDisplay display;
    display.DisplayOptions = row.options;
    display.AreaSgmtCmb.index = row.chosen;
    ShowArea(PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}}), state, display);
    EXPECT_EQ(display.AreaValLbl.text, row.text);
    EXPECT_FALSE(display.AreaValLbl.red);
    EXPECT_EQ(display.AreaSgmtCmb.visible, row.listShown);
  }
}

TEST(MainDisplayTest, NoAreaShownWithoutAGoodPerimeter) {
  ProcessingState state{.AreaState = kAreaSegmentCount, .SegmentAreas = {3, 3, 3}};
  Survey open;
  testing::AddDataset(open, kTypeN, {{0, 0}, {1, 0}, {1, 1}});
  MainDisplay display;
  display.AreaSgmtCmb.visible = display.AreaUnitLbl.visible = true;
  ShowArea(open, state, display);
  EXPECT_EQ(display.AreaValLbl.text, "< Not a Perimeter >");
  EXPECT_FALSE(display.AreaUnitCmb.visible || display.AreaUnitLbl.visible);
  EXPECT_FALSE(display.AreaSgmtCmb.visible);

  // A bad perimeter is red until a good one.
  const Survey survey = PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}});
  state.BadPerimeter = true;
  display.AreaSgmtCmb.visible = true;
  ShowArea(survey, state, display);
  EXPECT_EQ(display.AreaValLbl.text, "< Bad Perimeter Lines >");
  EXPECT_TRUE(display.AreaValLbl.red);
  EXPECT_FALSE(display.AreaSgmtCmb.visible);
  EXPECT_TRUE(display.AreaUnitCmb.visible);
  state.BadPerimeter = false;
  ShowArea(survey, state, display);
  EXPECT_EQ(display.AreaValLbl.text, "3.0");
  EXPECT_FALSE(display.AreaValLbl.red);
}

// The unit label stands in for the list with an unspecified unit, the heading names a GPS
// area, and the declination shows its side.
TEST(MainDisplayTest, LabelsFollowTheSurvey) {
  Survey survey = PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}}, kUnitNotSpecified);
  ProcessingState state{.SegmentAreas = {1, 1, 1}, .GpsArea = true};
  survey.MagneticDeclination = -2;
  MainDisplay display;
  ShowArea(survey, state, display);
  EXPECT_FALSE(display.AreaUnitCmb.visible);
  EXPECT_TRUE(display.AreaUnitLbl.visible);
  EXPECT_EQ(display.AreaHdrLbl, "Area (GPS)");
  EXPECT_TRUE(display.MagDecHdrLblEnabled);
  EXPECT_EQ(display.MagDecLbl, "2.0 W");
  survey.UnitOfMeasure = kUnitFeet;
  state.GpsArea = false;
  survey.MagneticDeclination = 3.5f;
  ShowArea(survey, state, display);
  EXPECT_TRUE(display.AreaUnitCmb.visible);
  EXPECT_FALSE(display.AreaUnitLbl.visible);
  EXPECT_EQ(display.AreaHdrLbl, "Area");
  EXPECT_EQ(display.MagDecLbl, "3.5 E");
  survey.MagneticDeclination = 0;
  ShowArea(survey, state, display);
  EXPECT_FALSE(display.MagDecHdrLblEnabled);
  EXPECT_EQ(display.MagDecLbl, "");
}

}  // namespace
}  // namespace plotmeter
