// The printed sheet's layout: scales that are exact in every unit of length, "Fit to
// page", the scale bar against its label, the paper and the information block.
#include <gtest/gtest.h>

#include <string>

#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"
#include "ui/PlotmeterLogic.h"
#include "ui/Sheet.h"

namespace plotmeter {
namespace {

// A rectangle `width` by `height` in `unit` (a `UnitOfMeasure` code).
std::string Rectangle(int unit, const std::string& width, const std::string& height) {
  return "44,#0092," + std::to_string(unit) + ",0,0,58,Rectangle\nH,M,Rectangle\n1,X,,,0,0\n" +
         "2,X,,," + width + ",0\n3,X,,," + width + "," + height + "\n4,X,,,0," + height + "\n";
}

class SheetLayoutTest : public ::testing::Test {
 protected:
  void Load(const std::string& text) {
    ASSERT_TRUE(logic_.Load(folder_.Write("plot.csv", text), dialogs_).Succeeded());
  }
  void LoadExample(const std::string& name) {
    ASSERT_TRUE(
        logic_.Load(std::string(PLOTMETER_EXAMPLES_DIR) + "/" + name, dialogs_).Succeeded());
  }
  Sheet LayOut(int scale, Paper paper = Paper::kA4, bool landscape = false) {
    return LayOutSheet(logic_, {.paper = PaperSize(paper, landscape), .scale = scale},
                       "2024-05-31");
  }

  testing::TestFolder folder_;
  testing::ScriptedDialogs dialogs_;
  PlotmeterLogic logic_;
};

TEST(SheetScale, TypedScalesAndPapersAreReadOrRefused) {
  const std::pair<const char*, std::optional<int>> cases[] = {
      {"1000", 1000},       {"1:1,250", 1250},           {" fit ", 0},
      {"Fit to page", 0},   {"0", std::nullopt},         {"100000000", 100000000},
      {"1:", std::nullopt}, {"100000001", std::nullopt}, {"1:1000x", std::nullopt},
  };
  for (const auto& [text, scale] : cases) EXPECT_EQ(ParseScale(text), scale) << '"' << text << '"';
  EXPECT_EQ(ScaleText(1250), "1:1,250");
  EXPECT_EQ(PaperNamed("letter"), Paper::kLetter);
  EXPECT_EQ(PaperNamed("B5"), std::nullopt);
}

// "Fit to page" takes the largest usual scale that fits; beyond the last one the least
// whole N that fits.
TEST(SheetScale, FitToPageTakesTheLargestUsualScaleThatFits) {
  struct Case {
    int unit;
    double width, height;
    int scale;
  };
  const SizeMm room{170, 200};
  const Case cases[] = {
      {kUnitMeters, 170, 100, 1000},          // exactly 170 mm at 1:1,000
      {kUnitMeters, 10, 400, 2000},           // the height decides, exactly 1:2,000
      {kUnitFeet, 1000, 500, 2400},           // 1:1,793 needed: an inch to 200 feet
      {kUnitMeters, 0, 0, 50},                // one point: the largest usual scale
      {kUnitKilometers, 2000, 10, 11764706},  // beyond 1:1,000,000
      {kUnitNotSpecified, 400, 300, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FitScale(c.width, c.height, room, c.unit), c.scale)
        << c.unit << ": " << c.width << " x " << c.height;
  }
}

// At 1:N a unit of length is exactly its millimetres / N on the sheet (the inch 25.4 mm,
// the chain 66 feet, the mile 80 chains; the foot: the window's SheetTest), the scale
// bar's length is what its label says, and the bar fits in its cell.
TEST_F(SheetLayoutTest, ScaleAndScaleBarAreExact) {
  struct Case {
    int unit;
    const char* side;
    int scale;
    double millimetresPerUnit;  // on the sheet
    const char* barLabel;
    double barLength;  // units
  };
  const Case cases[] = {
      {kUnitMeters, "100", 1000, 1.0, "20 m", 20},
      {kUnitChains, "10", 7920, 2.54, "10 ch", 10},    // an inch to 10 chains
      {kUnitKilometers, "2", 25000, 40.0, "1 km", 1},  // 40 mm to the kilometre
      {kUnitMiles, "1", 63360, 25.4, "1 mi", 1},       // an inch to the mile
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.barLabel);
    Load(Rectangle(c.unit, c.side, c.side));
    const Sheet sheet = LayOut(c.scale);
    EXPECT_EQ(sheet.scale, c.scale);
    EXPECT_NEAR(sheet.millimetresPerUnit, c.millimetresPerUnit, 1e-12);
    EXPECT_NEAR(sheet.millimetresPerDisplayUnit * logic_.scene().scale, c.millimetresPerUnit, 1e-9);
    EXPECT_EQ(sheet.scaleBar.endLabel, c.barLabel);
    EXPECT_NEAR(sheet.scaleBar.length, c.barLength, 1e-12);
    EXPECT_NEAR(sheet.scaleBar.bar.width, c.barLength * c.millimetresPerUnit, 1e-9);
    const RectMm& bar = sheet.scaleBar.bar;
    const RectMm& cell = sheet.scaleCell;
    EXPECT_TRUE(bar.left >= cell.left && bar.right() <= cell.right() &&
                bar.bottom() <= cell.bottom());
  }
}

TEST_F(SheetLayoutTest, AScaleTooLargeForThePaperSaysSo) {
  Load(Rectangle(kUnitMeters, "100", "60"));
  const Sheet fitted = LayOut(0);
  EXPECT_EQ(fitted.scale, 1000);
  EXPECT_TRUE(fitted.fits);
  EXPECT_EQ(FitNote(fitted), "");

  const Sheet cut = LayOut(500);
  EXPECT_FALSE(cut.fits);  // 200 mm across a frame 190 mm wide
  EXPECT_EQ(FitNote(cut),
            "At 1:500 the plot does not fit on the page: it is cut at the edge of the frame.\n"
            "Fit to page gives 1:1,000.");
  EXPECT_TRUE(LayOut(500, Paper::kA3, true).fits);
}

TEST_F(SheetLayoutTest, WithoutAUnitOfLengthThePlotIsOnlyFitted) {
  Load(Rectangle(kUnitNotSpecified, "100", "60"));
  const Sheet sheet = LayOut(500);
  EXPECT_EQ(sheet.scale, 0);
  EXPECT_EQ(sheet.scaleLine,
            "No true scale: fitted to the page, the unit of length is not specified");
  EXPECT_TRUE(sheet.scaleBar.endLabel.ends_with(" units"));
  // The plot fills the room across: the frame less the padding on both sides.
  EXPECT_NEAR(100 * sheet.millimetresPerUnit, sheet.frame.width - 16, 1e-9);
  EXPECT_EQ(sheet.areaLines, std::vector<std::string>{"6,000 Sq. 'Not specified' Units"});
}

TEST_F(SheetLayoutTest, TheBlockNamesTheFileAndBothPartsOfADividedPlot) {
  LoadExample("farm.csv");
  const Sheet sheet = LayOut(0);
  EXPECT_EQ(sheet.title, "Willow Creek farm");
  EXPECT_TRUE(sheet.fileName.ends_with("examples/farm.csv"));
  EXPECT_EQ(sheet.date, "2024-05-31");
  EXPECT_EQ(sheet.scaleLine, "Scale 1:5,000 (lengths in Meters)");
  EXPECT_EQ(sheet.areaHeading, "Area");
  std::string parts;  // the values are the CLI's
  for (const std::string& line : sheet.areaLines) parts += line.substr(0, line.find(':')) + ";";
  EXPECT_EQ(parts, "Whole Plot;Part 1;Part 2;");
  EXPECT_EQ(sheet.legend.size(), 3u);  // what the farm's drawing uses: SheetLegend's

  // An untagged file is titled by its name.
  Load("44,#0092,1,0,0,58\nH,M\n1,X,,,0,0\n2,X,,,10,0\n3,X,,,10,10\n");
  EXPECT_EQ(LayOut(0).title, "plot.csv");
}

// The legend lists the symbols the drawing uses, and only those, in a fixed order.
TEST(SheetLegend, ASymbolShowsOnlyWhatTheDrawingUses) {
  PlotScene scene;
  scene.lines.push_back({.role = LineRole::kError});
  std::vector<LegendEntry> legend = LegendOf(scene);
  ASSERT_EQ(legend.size(), 1u);
  EXPECT_EQ(legend[0].line, LineRole::kError);
  EXPECT_EQ(legend[0].marker, std::nullopt);  // no red marker was drawn

  scene.markers = {{.role = MarkerRole::kIntermediate}, {.role = MarkerRole::kStandAlone}};
  for (LineRole role :
       {LineRole::kAlternate, LineRole::kClosing, LineRole::kOther, LineRole::kPerimeter}) {
    scene.lines.push_back({.role = role});
  }
  std::vector<std::string> texts;
  for (const LegendEntry& entry : LegendOf(scene)) texts.push_back(entry.text);
  EXPECT_EQ(texts, (std::vector<std::string>{
                       "Main and Sub-division Perimeter Lines",
                       "Start Point & Closing Line (Main / Sub-div only)",
                       "Other Lines (e.g. roads / fences)",
                       "Stand Alone Points (e.g buildings, dams, windmills)",
                       "Intermediate Points (not shape defining)",
                       "Point Alternate position as defined from GPS",
                       "Crossing Lines and their end points",
                   }));
}

}  // namespace
}  // namespace plotmeter
