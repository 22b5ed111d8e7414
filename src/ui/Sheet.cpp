#include "ui/Sheet.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "geometry/PartOutlines.h"
#include "model/NumberFormat.h"
#include "ui/MainDisplay.h"

namespace plotmeter {

namespace {

// The sheet's frame: a margin round the paper, the information block under the drawing.
constexpr double kMargin = 10;
constexpr double kBlockHeight = 42;
constexpr double kScaleCellWidth = 58;
constexpr double kLegendCellWidth = 88;
constexpr double kCellPadding = 3;
// "Fit to page" keeps the plot this far inside the frame, clear of its edge.
constexpr double kFitPadding = 8;
// The scale bar and its end labels sit at the foot of the scale cell.
constexpr double kBarHeight = 1.8;
constexpr double kBarLabelHeight = 3.5;
constexpr double kBarLabelRoom = 10;  // half an end label may stand beyond the bar
constexpr double kMaxBarLength = 46;
constexpr double kNorthArrowWidth = 10, kNorthArrowHeight = 16, kNorthArrowInset = 5;

constexpr double kMillimetresPerInch = 25.4;
constexpr int kLargestScale = 100'000'000;

constexpr std::array<int, 19> kMetricScales{50,     100,    200,    250,    500,    1000,  1250,
                                            2000,   2500,   5000,   10000,  20000,  25000, 50000,
                                            100000, 200000, 250000, 500000, 1000000};
// An inch to 10, 20, 40, 50, 100, 200, 400 and 800 feet, to 4, 8, 10 and 20 chains, and to a
// quarter, half, one, two, four, eight and sixteen miles.
constexpr std::array<int, 18> kInchScales{120,   240,   480,    600,    1200,   2400,
                                          3168,  4800,  6336,   7920,   9600,   15840,
                                          31680, 63360, 126720, 253440, 506880, 1013760};

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

std::string Trimmed(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string BaseName(const std::string& path) {
  std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The plot's extent in units of length, as the scene laid it out.
struct Extent {
  double width = 0, height = 0;
};

Extent ExtentOf(const PlotScene& scene) {
  return {static_cast<double>(scene.maxX) - scene.minX,
          static_cast<double>(scene.maxY) - scene.minY};
}

void LayOutFrame(Sheet& sheet) {
  const SizeMm paper = sheet.paper;
  const double inner = paper.width - 2 * kMargin;
  sheet.frame = {kMargin, kMargin, inner, paper.height - 2 * kMargin - kBlockHeight};
  sheet.block = {kMargin, sheet.frame.bottom(), inner, kBlockHeight};
  const double titleWidth = inner - kScaleCellWidth - kLegendCellWidth;
  sheet.titleCell = {kMargin, sheet.block.top, titleWidth, kBlockHeight};
  sheet.scaleCell = {sheet.titleCell.right(), sheet.block.top, kScaleCellWidth, kBlockHeight};
  sheet.legendCell = {sheet.scaleCell.right(), sheet.block.top, kLegendCellWidth, kBlockHeight};
  sheet.northArrow = {sheet.frame.right() - kNorthArrowInset - kNorthArrowWidth,
                      sheet.frame.top + kNorthArrowInset, kNorthArrowWidth, kNorthArrowHeight};
}

// Never empty, so that a paper too small for the block still divides by something.
SizeMm FitRoom(const Sheet& sheet) {
  return {std::max(1.0, sheet.frame.width - 2 * kFitPadding),
          std::max(1.0, sheet.frame.height - 2 * kFitPadding)};
}

// With no unit of length the plot is only fitted: as many millimetres to the unit as the
// room allows.
double FittedMillimetresPerUnit(Extent extent, SizeMm room) {
  if (extent.width <= 0 && extent.height <= 0) return room.width;
  double across =
      extent.width > 0 ? room.width / extent.width : std::numeric_limits<double>::infinity();
  double down =
      extent.height > 0 ? room.height / extent.height : std::numeric_limits<double>::infinity();
  return std::min(across, down);
}

// The longest bar of 1, 2 or 5 times a power of ten units that is no longer than
// `longest` millimetres.
ScaleBar ChooseScaleBar(double millimetresPerUnit, double longest, int unit) {
  ScaleBar bar;
  if (!(millimetresPerUnit > 0)) return bar;
  double most = longest / millimetresPerUnit;
  double power = std::pow(10.0, std::floor(std::log10(most)));
  constexpr std::array<std::pair<int, int>, 3> kSteps{{{5, 5}, {2, 4}, {1, 5}}};
  for (auto [mantissa, divisions] : kSteps) {
    if (mantissa * power <= most * (1 + 1e-9)) {
      bar.length = mantissa * power;
      bar.divisions = divisions;
      break;
    }
  }
  bar.endLabel =
      FormatNumber(bar.length, "#,##0.##########") + " " + std::string(UnitAbbreviation(unit));
  bar.bar.width = bar.length * millimetresPerUnit;
  bar.bar.height = kBarHeight;
  return bar;
}

void PlaceScaleBar(Sheet& sheet, int unit) {
  double longest =
      std::min(kMaxBarLength, sheet.scaleCell.width - 2 * kCellPadding - kBarLabelRoom);
  sheet.scaleBar = ChooseScaleBar(sheet.millimetresPerUnit, longest, unit);
  sheet.scaleBar.bar.left = sheet.scaleCell.left + kCellPadding + kBarLabelRoom / 2;
  sheet.scaleBar.bar.top = sheet.scaleCell.bottom() - kCellPadding - kBarLabelHeight - kBarHeight;
}

void ChooseScale(Sheet& sheet, const PlotScene& scene, int unit, int asked) {
  const Extent extent = ExtentOf(scene);
  const SizeMm room = FitRoom(sheet);
  const double perUnit = MillimetresPerUnit(unit);
  if (perUnit == 0) {
    sheet.millimetresPerUnit = FittedMillimetresPerUnit(extent, room);
  } else {
    sheet.fittingScale = FitScale(extent.width, extent.height, room, unit);
    sheet.scale = asked > 0 ? asked : sheet.fittingScale;
    sheet.millimetresPerUnit = perUnit / sheet.scale;
  }
  sheet.millimetresPerDisplayUnit = scene.scale > 0 ? sheet.millimetresPerUnit / scene.scale : 0;
  sheet.centreX = scene.left + scene.xOffset + extent.width * scene.scale / 2;
  sheet.centreY = scene.top + scene.height - scene.yOffset - extent.height * scene.scale / 2;
  sheet.fits = extent.width * sheet.millimetresPerUnit + sheet.markerSide <= sheet.frame.width &&
               extent.height * sheet.millimetresPerUnit + sheet.markerSide <= sheet.frame.height;
}

std::string ScaleLine(const Sheet& sheet, int unit) {
  if (sheet.scale == 0) {
    return "No true scale: fitted to the page, the unit of length is not specified";
  }
  return "Scale " + ScaleText(sheet.scale) + " (lengths in " + std::string(UnitName(unit)) + ")";
}

void WriteArea(Sheet& sheet, const PlotmeterLogic& logic) {
  const MainDisplay& display = logic.display();
  const ProcessingState& state = logic.state();
  sheet.areaHeading = display.AreaHdrLbl;
  const bool measured = FindMainPerimeter(logic.survey()) >= 0 && !state.BadPerimeter;
  // Built by appending: g++ 12 -O3 wrongly warns (-Wrestrict) on text put before a temporary.
  const std::string unit = measured ? std::string(" ").append(logic.AreaUnitText()) : "";
  const std::vector<std::string>& segments = display.AreaSgmtCmb.items;
  if (measured && display.AreaSgmtCmb.visible && segments.size() == state.SegmentAreas.size()) {
    for (std::size_t i = 0; i < segments.size(); ++i) {
      sheet.areaLines.push_back(segments[i] + ": " + AreaText(state.SegmentAreas[i]) + unit);
    }
    return;
  }
  sheet.areaLines.push_back(display.AreaValLbl.text + unit);
}

void WriteTitle(Sheet& sheet, const Survey& survey) {
  sheet.fileName = survey.CurrentFileName.empty() ? kNoFile : survey.CurrentFileName;
  sheet.title = Trimmed(survey.FileTag);
  if (sheet.title.empty()) sheet.title = BaseName(survey.CurrentFileName);
}

}  // namespace

std::string_view PaperName(Paper paper) {
  switch (paper) {
    case Paper::kA4:
      return "A4";
    case Paper::kA3:
      return "A3";
    case Paper::kLetter:
      return "Letter";
    case Paper::kLegal:
      return "Legal";
  }
  return "";
}

std::optional<Paper> PaperNamed(std::string_view name) {
  for (Paper paper : kPapers) {
    if (Lower(name) == Lower(PaperName(paper))) return paper;
  }
  return std::nullopt;
}

SizeMm PaperSize(Paper paper, bool landscape) {
  SizeMm size;
  switch (paper) {
    case Paper::kA4:
      size = {210, 297};
      break;
    case Paper::kA3:
      size = {297, 420};
      break;
    case Paper::kLetter:
      size = {8.5 * kMillimetresPerInch, 11 * kMillimetresPerInch};
      break;
    case Paper::kLegal:
      size = {8.5 * kMillimetresPerInch, 14 * kMillimetresPerInch};
      break;
  }
  if (landscape) std::swap(size.width, size.height);
  return size;
}

double MillimetresPerUnit(int unitOfMeasure) {
  switch (unitOfMeasure) {
    case kUnitMeters:
      return 1000;
    case kUnitKilometers:
      return 1'000'000;
    case kUnitFeet:
      return 12 * kMillimetresPerInch;
    case kUnitMiles:
      return 5280 * 12 * kMillimetresPerInch;
    case kUnitChains:
      return 66 * 12 * kMillimetresPerInch;
    default:
      return 0;
  }
}

std::string_view UnitAbbreviation(int unitOfMeasure) {
  switch (unitOfMeasure) {
    case kUnitMeters:
      return "m";
    case kUnitKilometers:
      return "km";
    case kUnitFeet:
      return "ft";
    case kUnitMiles:
      return "mi";
    case kUnitChains:
      return "ch";
    default:
      return "units";
  }
}

std::span<const int> UsualScales(int unitOfMeasure) {
  switch (unitOfMeasure) {
    case kUnitMeters:
    case kUnitKilometers:
      return kMetricScales;
    case kUnitFeet:
    case kUnitMiles:
    case kUnitChains:
      return kInchScales;
    default:
      return {};
  }
}

std::optional<int> ParseScale(std::string_view text) {
  std::string lower = Lower(Trimmed(text));
  if (lower == "fit" || lower == "fit to page") return 0;
  if (lower.starts_with("1:")) lower.erase(0, 2);
  std::erase(lower, ',');
  int value = 0;
  auto [end, error] = std::from_chars(lower.data(), lower.data() + lower.size(), value);
  if (error != std::errc() || end != lower.data() + lower.size() || lower.empty()) {
    return std::nullopt;
  }
  if (value < 1 || value > kLargestScale) return std::nullopt;
  return value;
}

std::string ScaleText(int denominator) { return "1:" + FormatNumber(denominator, "#,##0"); }

int FitScale(double width, double height, SizeMm room, int unitOfMeasure) {
  const double perUnit = MillimetresPerUnit(unitOfMeasure);
  if (perUnit == 0) return 0;
  const double needed = std::max(width * perUnit / room.width, height * perUnit / room.height);
  for (int scale : UsualScales(unitOfMeasure)) {
    if (scale >= needed) return scale;
  }
  return static_cast<int>(std::min<double>(std::ceil(needed), kLargestScale));
}

std::vector<LegendEntry> LegendOf(const PlotScene& scene) {
  auto usesLine = [&](LineRole role) {
    return std::any_of(scene.lines.begin(), scene.lines.end(),
                       [role](const SceneLine& line) { return line.role == role; });
  };
  auto usesMarker = [&](MarkerRole role) {
    return std::any_of(scene.markers.begin(), scene.markers.end(),
                       [role](const SceneMarker& marker) { return marker.role == role; });
  };
  struct Symbol {
    std::optional<LineRole> line;
    std::optional<MarkerRole> marker;
    const char* text;
  };
  const Symbol symbols[] = {
      {LineRole::kPerimeter, MarkerRole::kPerimeter, "Main and Sub-division Perimeter Lines"},
      {LineRole::kClosing, MarkerRole::kStart, "Start Point & Closing Line (Main / Sub-div only)"},
      {LineRole::kOther, MarkerRole::kLine, "Other Lines (e.g. roads / fences)"},
      {std::nullopt, MarkerRole::kStandAlone,
       "Stand Alone Points (e.g buildings, dams, windmills)"},
      {std::nullopt, MarkerRole::kIntermediate, "Intermediate Points (not shape defining)"},
      {LineRole::kAlternate, MarkerRole::kAlternate,
       "Point Alternate position as defined from GPS"},
      {LineRole::kError, MarkerRole::kError, "Crossing Lines and their end points"},
  };
  std::vector<LegendEntry> legend;
  for (const Symbol& symbol : symbols) {
    bool line = symbol.line && usesLine(*symbol.line);
    bool marker = symbol.marker && usesMarker(*symbol.marker);
    if (!line && !marker) continue;
    legend.push_back(
        {line ? symbol.line : std::nullopt, marker ? symbol.marker : std::nullopt, symbol.text});
  }
  return legend;
}

Sheet LayOutSheet(const PlotmeterLogic& logic, const SheetOptions& options, std::string date) {
  const int unit = logic.survey().UnitOfMeasure;
  Sheet sheet;
  sheet.paper = options.paper;
  sheet.date = std::move(date);
  LayOutFrame(sheet);
  ChooseScale(sheet, logic.scene(), unit, options.scale);
  PlaceScaleBar(sheet, unit);
  sheet.scaleLine = ScaleLine(sheet, unit);
  WriteTitle(sheet, logic.survey());
  WriteArea(sheet, logic);
  sheet.legend = LegendOf(logic.scene());
  return sheet;
}

std::string FitNote(const Sheet& sheet) {
  if (sheet.fits) return "";
  std::string note = "At " + ScaleText(sheet.scale) +
                     " the plot does not fit on the page: it is cut at the edge of the frame.";
  if (sheet.fittingScale > 0) note += "\nFit to page gives " + ScaleText(sheet.fittingScale) + ".";
  return note;
}

}  // namespace plotmeter
