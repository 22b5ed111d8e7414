#include <gtest/gtest.h>

#include "support/PlotSurveys.h"
#include "ui/MainDisplay.h"

namespace plotmeter {
namespace {

using testing::AddDataset;
using testing::PerimeterSurvey;

ProcessingState WithArea(double area) {
  ProcessingState state;
  state.SegmentAreas = {area, area, area};
  state.ProcessState = kAreaComputed;
  return state;
}

struct ValueCase {
  double area;
  const char* text;
};

class AreaValueTest : public ::testing::TestWithParam<ValueCase> {};

TEST_P(AreaValueTest, IsFormattedBySize) {
  Survey survey = PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}});
  MainDisplay display;
  ShowArea(survey, WithArea(GetParam().area), display);
  EXPECT_EQ(display.AreaValLbl.text, GetParam().text);
  EXPECT_FALSE(display.AreaValLbl.red);
}

INSTANTIATE_TEST_SUITE_P(MainDisplayTest, AreaValueTest,
                         ::testing::Values(ValueCase{999.99, "999.99"}, ValueCase{1000, "1,000"},
                                           ValueCase{12.5, "12.5"}, ValueCase{0, "0.0"},
                                           ValueCase{0.004, "0.0"},
                                           ValueCase{1234567.4, "1,234,567"},
                                           ValueCase{999.996, "1000.0"}));

TEST(MainDisplayTest, NotAPerimeterHidesTheAreaControls) {
  Survey survey;
  AddDataset(survey, kTypeN, {{0, 0}, {1, 0}, {1, 1}});
  MainDisplay display;
  display.AreaSgmtCmb.visible = true;
  display.AreaUnitLbl.visible = true;
  ShowArea(survey, WithArea(5), display);
  EXPECT_EQ(display.AreaValLbl.text, "< Not a Perimeter >");
  EXPECT_FALSE(display.AreaUnitCmb.visible);
  EXPECT_FALSE(display.AreaUnitLbl.visible);
  EXPECT_FALSE(display.AreaSgmtCmb.visible);
}

TEST(MainDisplayTest, BadPerimeterIsRedUntilAGoodOne) {
  Survey survey = PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}});
  ProcessingState state = WithArea(3);
  state.BadPerimeter = true;
  state.AreaState = kAreaSegmentCount;
  MainDisplay display;
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

struct SegmentCase {
  const char* name;
  std::uint8_t areaState;
  std::uint8_t options;
  int chosen;
  const char* text;
  bool listShown;
};

class SegmentTest : public ::testing::TestWithParam<SegmentCase> {};

TEST_P(SegmentTest, PicksTheSegment) {
  Survey survey = PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}});
  ProcessingState state;
  state.SegmentAreas = {300, 200, 100};
  state.AreaState = GetParam().areaState;
  MainDisplay display;
  display.DisplayOptions = GetParam().options;
  display.AreaSgmtCmb.index = GetParam().chosen;
  ShowArea(survey, state, display);
  EXPECT_EQ(display.AreaValLbl.text, GetParam().text);
  EXPECT_EQ(display.AreaSgmtCmb.visible, GetParam().listShown);
}

INSTANTIATE_TEST_SUITE_P(
    MainDisplayTest, SegmentTest,
    ::testing::Values(
        SegmentCase{"chosenPart", kAreaSegmentCount, 15, 2, "100.0", true},
        SegmentCase{"chosenWhole", kAreaSegmentCount, 15, 0, "300.0", true},
        SegmentCase{"subDivisionOff", kAreaSegmentCount, 14, 2, "300.0", false},
        SegmentCase{"swappedOff", kAreaSegmentCount | kSegmentsSwapped, 14, 2, "200.0", false},
        SegmentCase{"swappedOn", kAreaSegmentCount | kSegmentsSwapped, 15, 2, "100.0", true},
        SegmentCase{"oneArea", 0, 15, 2, "300.0", false},
        SegmentCase{"choiceOutOfRange", kAreaSegmentCount, 15, 7, "300.0", true}),
    [](const auto& info) { return info.param.name; });

// The unit label stands in for the list with an unspecified unit, the heading names a GPS
// area, and the declination shows its side.
TEST(MainDisplayTest, LabelsFollowTheSurvey) {
  Survey survey = PerimeterSurvey({{0, 0}, {1, 0}, {1, 1}}, kUnitNotSpecified);
  ProcessingState state = WithArea(1);
  state.GpsArea = true;
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
