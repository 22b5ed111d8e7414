#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "support/PlotSurveys.h"
#include "ui/PlotScene.h"

namespace plotmeter {
namespace {

using testing::AddDataset;
using testing::DividedSurvey;
using testing::kSquare;
using testing::PerimeterSurvey;
using testing::XY;

// The drawing area less its margin of 100 on each side.
constexpr double kAvailable = kDrawingAreaSize - 2 * 100;

PlotScene Draw(const Survey& survey, std::uint8_t mode = kDefaultDisplayOptions,
               std::uint8_t options = kDefaultDisplayOptions,
               const ProcessingState& state = ProcessingState{}, PlotScene scene = {}) {
  EXPECT_TRUE(DrawPlot(survey, state, mode, options, scene));
  return scene;
}

const SceneMarker* MarkerOf(const PlotScene& scene, int point, bool alternate = false) {
  for (const SceneMarker& marker : scene.markers) {
    if (marker.point == point && marker.alternate == alternate) return &marker;
  }
  return nullptr;
}

// A marker's border and fill colours.
using Colours = std::pair<Rgb, Rgb>;
Colours ColoursOf(const PlotScene& scene, int point) {
  const SceneMarker* marker = MarkerOf(scene, point);
  return marker ? Colours{marker->border, marker->fill} : Colours{};
}

std::vector<int> LineEnds(const PlotScene& scene) {
  std::vector<int> ends;
  for (const SceneLine& line : scene.lines) ends.push_back(line.endsAt);
  return ends;
}

std::vector<Rgb> LineColours(const PlotScene& scene) {
  std::vector<Rgb> colours;
  for (const SceneLine& line : scene.lines) colours.push_back(line.colour);
  return colours;
}

// One scale for both axes, from the axis the plot fills first; the other axis centred.
TEST(PlotSceneTest, PlotIsScaledByItsLongerSideAndCentred) {
  PlotScene wide = Draw(PerimeterSurvey({{0, 0}, {100, 0}, {100, 10}, {0, 10}}));
  EXPECT_DOUBLE_EQ(wide.scale, kAvailable / 100);
  EXPECT_FLOAT_EQ(wide.screen[0].x, wide.margin);
  EXPECT_FLOAT_EQ(wide.screen[1].x, wide.width - wide.margin);
  // North at the top: point 3 (Y 10) is above point 0 (Y 0) by the height times the scale.
  EXPECT_FLOAT_EQ(wide.screen[0].y - wide.screen[3].y, 10 * wide.scale);
  EXPECT_FLOAT_EQ(wide.screen[3].y - wide.top, wide.top + wide.height - wide.screen[0].y);

  PlotScene placed{.left = 500, .top = 200};
  PlotScene tall =
      Draw(PerimeterSurvey({{0, 0}, {10, 0}, {10, 100}, {0, 100}}), 15, 15, {}, placed);
  EXPECT_DOUBLE_EQ(tall.scale, kAvailable / 100);
  EXPECT_FLOAT_EQ(tall.screen[2].y, tall.top + tall.margin);
  EXPECT_FLOAT_EQ(tall.screen[0].y, tall.top + tall.height - tall.margin);
  EXPECT_FLOAT_EQ(tall.screen[0].x - tall.left, tall.left + tall.width - tall.screen[1].x);
}

// A plot without extent shows one unit across, centred; the window width's text takes
// fewer decimals as it grows, and names the unit.
TEST(PlotSceneTest, OnePointShowsOneUnitAcrossCentredAndNoPointsNothing) {
  PlotScene scene = Draw(PerimeterSurvey({{5, 7}, {5, 7}, {5, 7}}, kUnitNotSpecified));
  EXPECT_DOUBLE_EQ(scene.scale, kAvailable);
  EXPECT_FLOAT_EQ(scene.screen[0].x, scene.width / 2);
  EXPECT_FLOAT_EQ(scene.screen[0].y, scene.height / 2);
  EXPECT_EQ(scene.ScaleLbl, "Window Width / Height = 1.05 Units");
  PlotScene empty = Draw(PerimeterSurvey({}));
  EXPECT_TRUE(empty.markers.empty() && empty.lines.empty());
  // As wide as the available width, the window holds 1234: fewer decimals as it grows.
  const float x = static_cast<float>(1234 * kAvailable / kDrawingAreaSize);
  EXPECT_EQ(Draw(PerimeterSurvey({{0, 0}, {x, 0}, {x, x / 4}})).ScaleLbl,
            "Window Width / Height = 1234 Meters");
}

// Point 1 is an intermediate point: it sits on the line from point 0 to point 2.
TEST(PlotSceneTest, MainPerimeterColoursAndClosingLine) {
  Survey survey = PerimeterSurvey({{0, 0}, {5, 0}, {10, 0}, {10, 10}, {0, 10}});
  survey.Points[1].PtFlags |= kPtIntermediate;
  PlotScene scene = Draw(survey);
  ASSERT_EQ(scene.markers.size(), 5u);
  EXPECT_EQ(ColoursOf(scene, 0), Colours(kStartGreen, kStartGreen));
  EXPECT_EQ(ColoursOf(scene, 1), Colours(kIntermediateGrey, kWhite));
  EXPECT_EQ(ColoursOf(scene, 3), Colours(kBlack, kBlack));
  EXPECT_EQ(LineEnds(scene), (std::vector<int>{2, 3, 4, 0}));
  EXPECT_EQ(LineColours(scene), (std::vector<Rgb>{kBlack, kBlack, kBlack, kStartGreen}));
}

TEST(PlotSceneTest, LinesBrownAndStandAlonePointsTealWithoutLines) {
  Survey survey = PerimeterSurvey({{0, 0}, {10, 0}, {10, 10}});
  const int road = AddDataset(survey, kTypeL, {{0, 12}, {10, 12}});
  const int barns = AddDataset(survey, kTypeP, {{2, 2}, {50, 50}});
  PlotScene scene = Draw(survey);
  EXPECT_EQ(ColoursOf(scene, road), Colours(kLineBrown, kLineBrown));
  EXPECT_EQ(ColoursOf(scene, barns), Colours(kBlack, kPointsTeal));
  EXPECT_EQ(LineEnds(scene), (std::vector<int>{1, 2, 0, road + 1}));
  EXPECT_EQ(scene.lines.back().colour, kLineBrown);
  // Unticking "Show Points" takes away the stand-alone points only, and their extent.
  const std::uint8_t options = kDefaultDisplayOptions & ~kShowPoints;
  PlotScene hidden = Draw(survey, options, options);
  EXPECT_EQ(hidden.markers.size(), scene.markers.size() - 2);
  EXPECT_FALSE(hidden.screen[barns + 1].drawn);
  EXPECT_EQ(std::pair(hidden.maxX, hidden.maxY), std::pair(10.0f, 12.0f));
}

// A bow-tie whose crossing lines end at points 1 and 3, a stand-alone point and a point
// with an alternate GPS position.
TEST(PlotSceneTest, ErrorLinesAndAlternatePositions) {
  Survey survey = PerimeterSurvey({{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  survey.Points[1].PtMarks |= kMarkErrorLine;
  survey.Points[3].PtMarks |= kMarkErrorLine;
  survey.Points[2].HasAlternate = true;
  survey.Points[2].AltX = 12;
  survey.Points[2].AltY = -1;
  AddDataset(survey, kTypeP, {{5, 2}});

  // The bad perimeter mode: error lines red, no stand-alone points, no alternates.
  PlotScene bad = Draw(survey, kModeBadPerimeter, 15, ProcessingState{.BadPerimeter = true});
  EXPECT_EQ(bad.markers.size(), 4u);
  EXPECT_EQ(ColoursOf(bad, 1), Colours(kErrorRed, kErrorRed));
  EXPECT_EQ(ColoursOf(bad, 2), Colours(kBlack, kBlack));
  EXPECT_EQ(LineEnds(bad), (std::vector<int>{1, 2, 3, 0}));
  EXPECT_EQ(LineColours(bad), (std::vector<Rgb>{kErrorRed, kBlack, kErrorRed, kStartGreen}));

  // Otherwise error marks are not red, and the alternate position is magenta and joined.
  PlotScene scene = Draw(survey, 15, 15);
  EXPECT_EQ(ColoursOf(scene, 1), Colours(kBlack, kBlack));
  EXPECT_EQ(scene.lines[0].colour, kBlack);
  const SceneMarker* alternate = MarkerOf(scene, 2, true);
  ASSERT_NE(alternate, nullptr);
  EXPECT_EQ(Colours(alternate->border, alternate->fill),
            Colours(kAlternateMagenta, kAlternateMagenta));
  const SceneLine& joining = scene.lines.back();
  EXPECT_EQ(joining.colour, kAlternateMagenta);
  EXPECT_EQ(std::tuple(joining.x1, joining.x2, joining.y2),
            std::tuple(scene.screen[2].x, alternate->x, alternate->y));
  // The alternate position widens the extent.
  EXPECT_EQ(std::pair(scene.maxX, scene.minY), std::pair(12.0f, -1.0f));

  // Alternates follow the options, not the mode; hidden, they still widen the extent.
  const std::uint8_t withoutAlternates = 15 & ~kShowAlternateGps;
  PlotScene hidden = Draw(survey, 15, withoutAlternates);
  EXPECT_EQ(MarkerOf(hidden, 2, true), nullptr);
  EXPECT_FLOAT_EQ(hidden.maxX, 12);
  EXPECT_NE(MarkerOf(Draw(survey, withoutAlternates, 15), 2, true), nullptr);
}

TEST(PlotSceneTest, DivisionRunsBetweenTheJoinPointsWithItsLabel) {
  const Survey divided = DividedSurvey(kSquare, 1, 3, {{10, 0}, {8, 6}, {2, 8}}, "  North lot ");
  PlotScene scene = Draw(divided);
  EXPECT_EQ(ColoursOf(scene, 4).second, kStartGreen);
  ASSERT_EQ(LineEnds(scene), (std::vector<int>{1, 2, 3, 0, 5, 6, 4}));
  EXPECT_FLOAT_EQ(scene.lines[4].x1, scene.screen[1].x);  // from the join point
  EXPECT_FLOAT_EQ(scene.lines[6].x2, scene.screen[3].x);  // to the other join point
  EXPECT_EQ(LineColours(scene)[4], kBlack);
  EXPECT_EQ(LineColours(scene)[6], kStartGreen);
  // The label at the centre of the sub-division's own extent, X 2..10 and Y 0..8.
  ASSERT_TRUE(scene.LotLbl.visible);
  EXPECT_EQ(scene.LotLbl.text, "North lot");
  EXPECT_FLOAT_EQ(scene.LotLbl.x, scene.screen[0].x + 6 * scene.scale);
  EXPECT_FLOAT_EQ(scene.LotLbl.y, scene.screen[0].y - 4 * scene.scale);

  const std::uint8_t options = 15 & ~kShowSubDivision;
  PlotScene hidden = Draw(divided, options, options);
  EXPECT_FALSE(hidden.LotLbl.visible);
  EXPECT_EQ(LineEnds(hidden), (std::vector<int>{1, 2, 3, 0}));

  // A straight division without a dataset of its own is drawn with the sub-divisions.
  Survey straight = PerimeterSurvey(kSquare);
  testing::MarkJoins(straight, 0, 2);
  PlotScene joined = Draw(straight);
  EXPECT_EQ(LineEnds(joined), (std::vector<int>{1, 2, 3, 0, 2}));
  EXPECT_FALSE(joined.LotLbl.visible);
}

TEST(PlotSceneTest, ExtentThatCannotBeLaidOutFailsAndClears) {
  for (float bad : {std::nanf(""), INFINITY, 3e38f}) {
    PlotScene scene;
    scene.ScaleLbl = "Window Width / Height = 5.00 Units";
    scene.LotLbl.visible = true;
    EXPECT_FALSE(DrawPlot(PerimeterSurvey({{0, 0}, {bad, 1}, {-3e38f, 2}}), ProcessingState{}, 15,
                          15, scene))
        << bad;
    EXPECT_TRUE(scene.markers.empty() && scene.ScaleLbl.empty() && !scene.LotLbl.visible);
  }
}

}  // namespace
}  // namespace plotmeter
