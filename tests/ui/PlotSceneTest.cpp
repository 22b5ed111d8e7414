#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/PlotSurveys.h"
#include "ui/PlotScene.h"

namespace plotmeter {
namespace {

using testing::AddDataset;
using testing::DividedSurvey;
using testing::kSquare;
using testing::MarkJoins;
using testing::PerimeterSurvey;
using testing::XY;

// The default drawing area: a square of 7200 with a margin of 100, so 7000 available.
constexpr double kAvailable = kDrawingAreaSize - 2 * 100;

PlotScene Draw(const Survey& survey, std::uint8_t mode = kDefaultDisplayOptions,
               std::uint8_t options = kDefaultDisplayOptions,
               const ProcessingState& state = ProcessingState{}) {
  PlotScene scene;
  EXPECT_TRUE(DrawPlot(survey, state, mode, options, scene));
  return scene;
}

const SceneMarker* MarkerOf(const PlotScene& scene, int point, bool alternate = false) {
  for (const SceneMarker& marker : scene.markers) {
    if (marker.point == point && marker.alternate == alternate) return &marker;
  }
  return nullptr;
}

std::vector<int> LineEnds(const PlotScene& scene) {
  std::vector<int> ends;
  for (const SceneLine& line : scene.lines) ends.push_back(line.endsAt);
  return ends;
}

TEST(PlotSceneTest, WidePlotIsScaledByItsWidthAndCentredVertically) {
  Survey survey = PerimeterSurvey({{0, 0}, {100, 0}, {100, 10}, {0, 10}});
  PlotScene scene = Draw(survey);
  EXPECT_DOUBLE_EQ(scene.scale, kAvailable / 100);
  EXPECT_FLOAT_EQ(scene.screen[0].x, scene.margin);
  EXPECT_FLOAT_EQ(scene.screen[1].x, scene.width - scene.margin);
  // North at the top: point 3 (Y 10) is above point 0 (Y 0) by the height times the scale.
  EXPECT_FLOAT_EQ(scene.screen[0].y - scene.screen[3].y, 10 * scene.scale);
  float above = scene.screen[3].y - scene.top;
  float below = scene.top + scene.height - scene.screen[0].y;
  EXPECT_FLOAT_EQ(above, below);
}

TEST(PlotSceneTest, TallPlotIsScaledByItsHeightAndCentredHorizontally) {
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 100}, {0, 100}});
  PlotScene scene;
  scene.left = 500;
  scene.top = 200;
  ASSERT_TRUE(DrawPlot(survey, ProcessingState{}, 15, 15, scene));
  EXPECT_DOUBLE_EQ(scene.scale, kAvailable / 100);
  EXPECT_FLOAT_EQ(scene.screen[2].y, scene.top + scene.margin);
  EXPECT_FLOAT_EQ(scene.screen[0].y, scene.top + scene.height - scene.margin);
  float leftGap = scene.screen[0].x - scene.left;
  float rightGap = scene.left + scene.width - scene.screen[1].x;
  EXPECT_FLOAT_EQ(leftGap, rightGap);
}

TEST(PlotSceneTest, OnePointShowsOneUnitAcrossCentred) {
  for (const std::vector<XY>& points :
       {std::vector<XY>{{5, 7}}, std::vector<XY>{{5, 7}, {5, 7}, {5, 7}}}) {
    PlotScene scene = Draw(PerimeterSurvey(points, kUnitNotSpecified));
    EXPECT_DOUBLE_EQ(scene.scale, kAvailable);
    EXPECT_FLOAT_EQ(scene.screen[0].x, scene.width / 2);
    EXPECT_FLOAT_EQ(scene.screen[0].y, scene.height / 2);
    EXPECT_EQ(scene.ScaleLbl, "Window Width / Height = 1.05 Units");
  }
}

TEST(PlotSceneTest, NoPointsDrawsNothingButLaysOut) {
  Survey survey;
  AddDataset(survey, kTypeM, {});
  PlotScene scene = Draw(survey);
  EXPECT_TRUE(scene.markers.empty());
  EXPECT_TRUE(scene.lines.empty());
}

struct ScaleCase {
  const char* name;
  double windowWidth;  // in units of length
  int unit;
  const char* text;
};

class ScaleTextTest : public ::testing::TestWithParam<ScaleCase> {};

TEST_P(ScaleTextTest, ShowsTheWindowWidth) {
  // A plot as wide as the available width shows, so the window holds `windowWidth`.
  float range = static_cast<float>(GetParam().windowWidth * kAvailable / kDrawingAreaSize);
  Survey survey = PerimeterSurvey({{0, 0}, {range, 0}, {range, range / 4}}, GetParam().unit);
  EXPECT_EQ(Draw(survey).ScaleLbl, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    PlotSceneTest, ScaleTextTest,
    ::testing::Values(
        ScaleCase{"twelveAndAHalf", 12.5, kUnitNotSpecified, "Window Width / Height = 12.5 Units"},
        ScaleCase{"five", 5, kUnitNotSpecified, "Window Width / Height = 5.00 Units"},
        ScaleCase{"twoHundredFifty", 250, kUnitNotSpecified, "Window Width / Height = 250 Units"},
        ScaleCase{"ninetyNine", 99.94, kUnitNotSpecified, "Window Width / Height = 99.9 Units"},
        ScaleCase{"meters", 1234, kUnitMeters, "Window Width / Height = 1234 Meters"}),
    [](const auto& info) { return info.param.name; });

TEST(PlotSceneTest, MainPerimeterColoursAndClosingLine) {
  Survey survey = PerimeterSurvey(kSquare);
  PlotScene scene = Draw(survey);
  ASSERT_EQ(scene.markers.size(), 4u);
  EXPECT_EQ(MarkerOf(scene, 0)->border, kStartGreen);
  EXPECT_EQ(MarkerOf(scene, 0)->fill, kStartGreen);
  EXPECT_EQ(MarkerOf(scene, 2)->border, kBlack);
  EXPECT_EQ(MarkerOf(scene, 2)->fill, kBlack);
  EXPECT_FLOAT_EQ(MarkerOf(scene, 2)->size, scene.markerSize);
  ASSERT_EQ(LineEnds(scene), (std::vector<int>{1, 2, 3, 0}));
  EXPECT_EQ(scene.lines[0].colour, kBlack);
  const SceneLine& closing = scene.lines[3];
  EXPECT_EQ(closing.colour, kStartGreen);
  EXPECT_FLOAT_EQ(closing.x1, scene.screen[3].x);
  EXPECT_FLOAT_EQ(closing.y2, scene.screen[0].y);
}

TEST(PlotSceneTest, IntermediatePointsSitOnLinesBetweenShapePoints) {
  Survey survey = PerimeterSurvey({{0, 0}, {5, 0}, {10, 0}, {10, 10}});
  survey.Points[1].PtFlags |= kPtIntermediate;
  PlotScene scene = Draw(survey);
  EXPECT_EQ(MarkerOf(scene, 1)->border, kIntermediateGrey);
  EXPECT_EQ(MarkerOf(scene, 1)->fill, kWhite);
  EXPECT_EQ(LineEnds(scene), (std::vector<int>{2, 3, 0}));
}

TEST(PlotSceneTest, LinesBrownAndStandAlonePointsTealWithoutLines) {
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}});
  int road = AddDataset(survey, kTypeL, {{0, 12}, {10, 12}});
  int barns = AddDataset(survey, kTypeP, {{2, 2}, {3, 3}});
  PlotScene scene = Draw(survey);
  EXPECT_EQ(MarkerOf(scene, road)->border, kLineBrown);
  EXPECT_EQ(MarkerOf(scene, road)->fill, kLineBrown);
  EXPECT_EQ(MarkerOf(scene, barns)->border, kBlack);
  EXPECT_EQ(MarkerOf(scene, barns + 1)->fill, kPointsTeal);
  EXPECT_EQ(LineEnds(scene), (std::vector<int>{1, 2, 0, road + 1}));
  EXPECT_EQ(scene.lines.back().colour, kLineBrown);
  // The screen position of every drawn point is kept.
  ASSERT_EQ(scene.screen.size(), 7u);
  for (const SceneMarker& marker : scene.markers) {
    EXPECT_TRUE(scene.screen[marker.point].drawn);
    EXPECT_FLOAT_EQ(scene.screen[marker.point].x, marker.x);
    EXPECT_FLOAT_EQ(scene.screen[marker.point].y, marker.y);
  }
}

TEST(PlotSceneTest, UntickingShowPointsRemovesOnlyPointsCollections) {
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}});
  int road = AddDataset(survey, kTypeL, {{0, 12}, {10, 12}});
  int barn = AddDataset(survey, kTypeP, {{50, 50}});
  std::uint8_t options = kDefaultDisplayOptions & ~kShowPoints;
  PlotScene scene = Draw(survey, options, options);
  EXPECT_EQ(MarkerOf(scene, barn), nullptr);
  EXPECT_FALSE(scene.screen[barn].drawn);
  EXPECT_NE(MarkerOf(scene, 0), nullptr);
  EXPECT_NE(MarkerOf(scene, road), nullptr);
  // The hidden barn does not widen the drawing either.
  EXPECT_FLOAT_EQ(scene.maxX, 10);
  EXPECT_FLOAT_EQ(scene.maxY, 12);
}

Survey CrossedWithExtras() {
  // A bow-tie whose crossing lines end at points 1 and 3, a stand-alone point and a
  // point with an alternate GPS position.
  Survey survey = PerimeterSurvey({{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  survey.Points[1].PtMarks |= kMarkErrorLine;
  survey.Points[3].PtMarks |= kMarkErrorLine;
  survey.Points[2].HasAlternate = true;
  survey.Points[2].AltX = 12;
  survey.Points[2].AltY = -1;
  AddDataset(survey, kTypeP, {{5, 2}});
  return survey;
}

TEST(PlotSceneTest, BadPerimeterModeDrawsErrorLinesRedWithoutStandAlonePoints) {
  ProcessingState bad;
  bad.BadPerimeter = true;
  PlotScene scene = Draw(CrossedWithExtras(), kModeBadPerimeter, 15, bad);
  EXPECT_EQ(MarkerOf(scene, 4), nullptr);
  EXPECT_EQ(MarkerOf(scene, 2, true), nullptr);  // no alternates on a bad perimeter
  EXPECT_EQ(MarkerOf(scene, 1)->fill, kErrorRed);
  EXPECT_EQ(MarkerOf(scene, 3)->border, kErrorRed);
  EXPECT_EQ(MarkerOf(scene, 2)->fill, kBlack);
  ASSERT_EQ(LineEnds(scene), (std::vector<int>{1, 2, 3, 0}));
  EXPECT_EQ(scene.lines[0].colour, kErrorRed);
  EXPECT_EQ(scene.lines[1].colour, kBlack);
  EXPECT_EQ(scene.lines[2].colour, kErrorRed);
  EXPECT_EQ(scene.lines[3].colour, kStartGreen);
}

// Outside the bad perimeter mode error marks are not red.
TEST(PlotSceneTest, AlternatePositionIsMagentaAndJoined) {
  PlotScene scene = Draw(CrossedWithExtras(), 15, 15);
  EXPECT_EQ(MarkerOf(scene, 1)->fill, kBlack);
  EXPECT_EQ(scene.lines[0].colour, kBlack);
  const SceneMarker* alternate = MarkerOf(scene, 2, true);
  ASSERT_NE(alternate, nullptr);
  EXPECT_EQ(alternate->border, kAlternateMagenta);
  EXPECT_EQ(alternate->fill, kAlternateMagenta);
  const SceneLine& joining = scene.lines.back();
  EXPECT_EQ(joining.colour, kAlternateMagenta);
  EXPECT_FLOAT_EQ(joining.x1, scene.screen[2].x);
  EXPECT_FLOAT_EQ(joining.x2, alternate->x);
  EXPECT_FLOAT_EQ(joining.y2, alternate->y);
  // The alternate position widens the extent.
  EXPECT_FLOAT_EQ(scene.maxX, 12);
  EXPECT_FLOAT_EQ(scene.minY, -1);
}

TEST(PlotSceneTest, AlternatesFollowTheOptionsNotTheMode) {
  std::uint8_t withoutAlternates = 15 & ~kShowAlternateGps;
  PlotScene hidden = Draw(CrossedWithExtras(), 15, withoutAlternates);
  EXPECT_EQ(MarkerOf(hidden, 2, true), nullptr);
  EXPECT_FLOAT_EQ(hidden.maxX, 12);  // still inside the extent
  PlotScene shown = Draw(CrossedWithExtras(), withoutAlternates, 15);
  EXPECT_NE(MarkerOf(shown, 2, true), nullptr);
}

Survey DividedSquare() {
  return DividedSurvey(kSquare, 1, 3, {{10, 0}, {8, 6}, {2, 8}}, "  North lot ");
}

TEST(PlotSceneTest, DivisionRunsBetweenTheJoinPoints) {
  PlotScene scene = Draw(DividedSquare());
  EXPECT_EQ(MarkerOf(scene, 4)->fill, kStartGreen);
  ASSERT_EQ(LineEnds(scene), (std::vector<int>{1, 2, 3, 0, 5, 6, 4}));
  const SceneLine& first = scene.lines[4];
  EXPECT_FLOAT_EQ(first.x1, scene.screen[1].x);  // from the join point
  EXPECT_EQ(first.colour, kBlack);
  const SceneLine& last = scene.lines[6];
  EXPECT_FLOAT_EQ(last.x1, scene.screen[6].x);
  EXPECT_FLOAT_EQ(last.x2, scene.screen[3].x);  // to the other join point
  EXPECT_EQ(last.colour, kStartGreen);
}

TEST(PlotSceneTest, SubDivisionLabelAtTheCentreOfItsOwnExtent) {
  PlotScene scene = Draw(DividedSquare());
  ASSERT_TRUE(scene.LotLbl.visible);
  EXPECT_EQ(scene.LotLbl.text, "North lot");
  // The sub-division's points span X 2..10 and Y 0..8: the centre is (6, 4).
  EXPECT_FLOAT_EQ(scene.LotLbl.x, scene.screen[0].x + 6 * scene.scale);
  EXPECT_FLOAT_EQ(scene.LotLbl.y, scene.screen[0].y - 4 * scene.scale);
  std::uint8_t options = 15 & ~kShowSubDivision;
  PlotScene hidden = Draw(DividedSquare(), options, options);
  EXPECT_FALSE(hidden.LotLbl.visible);
  EXPECT_EQ(LineEnds(hidden), (std::vector<int>{1, 2, 3, 0}));
}

TEST(PlotSceneTest, StraightDivisionWithoutDatasetIsDrawnWithTheSubDivisions) {
  Survey survey = PerimeterSurvey(kSquare);
  MarkJoins(survey, 0, 2);
  PlotScene scene = Draw(survey);
  EXPECT_EQ(LineEnds(scene), (std::vector<int>{1, 2, 3, 0, 2}));
  EXPECT_FALSE(scene.LotLbl.visible);
}

// The selected point is enlarged; a tag label from before the redraw is hidden.
TEST(PlotSceneTest, SelectedPointIsEnlargedAndTheTagLabelHidden) {
  ProcessingState state;
  state.SelectedPoint = 2;
  state.SelectedDataset = 1;
  PlotScene scene;
  scene.TagDSLbl = {.text = "Main Road", .x = 10, .y = 10, .visible = true};
  ASSERT_TRUE(DrawPlot(PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}}), state, 15, 15, scene));
  EXPECT_FLOAT_EQ(MarkerOf(scene, 2)->size, 4 * scene.markerSize);
  EXPECT_FLOAT_EQ(MarkerOf(scene, 1)->size, scene.markerSize);
  EXPECT_FALSE(scene.TagDSLbl.visible);
}

TEST(PlotSceneTest, ExtentThatCannotBeLaidOutFailsAndClears) {
  for (float bad : {std::nanf(""), INFINITY, 3e38f}) {
    Survey survey = PerimeterSurvey({{0, 0}, {bad, 1}, {-3e38f, 2}});
    PlotScene scene;
    scene.ScaleLbl = "Window Width / Height = 5.00 Units";
    scene.LotLbl.visible = true;
    EXPECT_FALSE(DrawPlot(survey, ProcessingState{}, 15, 15, scene)) << bad;
    EXPECT_TRUE(scene.markers.empty());
    EXPECT_TRUE(scene.ScaleLbl.empty());
    EXPECT_FALSE(scene.LotLbl.visible);
  }
}

}  // namespace
}  // namespace plotmeter
