// A printed sheet of the plot, without a toolkit: the drawing at an exact scale 1:N in
// the survey's unit of length, on a paper size, with a block underneath that carries the
// file tag, file name and date, the area, the scale with a scale bar, and a legend of the
// symbols the drawing uses. Every position is in millimetres from the paper's top left
// corner; the Qt layer only paints what is laid out here.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ui/PlotScene.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

enum class Paper { kA4, kA3, kLetter, kLegal };
inline constexpr std::array<Paper, 4> kPapers{Paper::kA4, Paper::kA3, Paper::kLetter,
                                              Paper::kLegal};

struct SizeMm {
  double width = 0, height = 0;
};

struct RectMm {
  double left = 0, top = 0, width = 0, height = 0;
  double right() const { return left + width; }
  double bottom() const { return top + height; }
};

// "A4", "A3", "Letter", "Legal".
std::string_view PaperName(Paper paper);
// A paper by its name, in any letter case.
std::optional<Paper> PaperNamed(std::string_view name);
// Portrait sizes are taller than wide; landscape turns the sheet.
SizeMm PaperSize(Paper paper, bool landscape);

// Millimetres in one unit of length of `unitOfMeasure`; 0 when the unit is not specified.
double MillimetresPerUnit(int unitOfMeasure);
// The unit on the scale bar: "m", "km", "ft", "mi", "ch"; "units" when not specified.
std::string_view UnitAbbreviation(int unitOfMeasure);

// The usual scales, largest first (smallest N): metric ones for metres and kilometres,
// inch-based ones for feet, miles and chains (1:1,200 is an inch to 100 feet, 1:7,920 an
// inch to 10 chains, 1:63,360 an inch to the mile).
std::span<const int> UsualScales(int unitOfMeasure);

// "Fit to page", "fit" or N of 1:N typed as "1000", "1:1000" or "1:1,000". Returns 0 for
// fit to page, N for a scale, nothing for any other text or a scale outside 1 to
// 100,000,000.
std::optional<int> ParseScale(std::string_view text);
// "1:1,000".
std::string ScaleText(int denominator);

struct SheetOptions {
  SizeMm paper = PaperSize(Paper::kA4, false);
  int scale = 0;  // N of 1:N; 0 fits the plot to the page
};

// A bar of a round length (1, 2 or 5 times a power of ten units) in black and white
// divisions, labelled at both ends.
struct ScaleBar {
  RectMm bar;  // its width is `length` units at the sheet's scale
  double length = 0;
  int divisions = 0;
  std::string endLabel;  // "100 m"
};

// One symbol of the drawing and what it stands for: a sample line, a sample marker, or
// both (the marker in the middle of the line).
struct LegendEntry {
  std::optional<LineRole> line;
  std::optional<MarkerRole> marker;
  std::string text;
};

struct Sheet {
  SizeMm paper;
  RectMm frame;  // the plot, cut at its edge
  RectMm block;  // the information block under the frame, in three cells
  RectMm titleCell, scaleCell, legendCell;
  RectMm northArrow;  // in the frame's top right corner

  int scale = 0;                  // N of 1:N; 0 when the survey has no unit of length
  int fittingScale = 0;           // what "Fit to page" gives; 0 when there is no unit of length
  bool fits = true;               // the whole plot lies inside the frame
  double millimetresPerUnit = 0;  // on the sheet, per unit of length
  double millimetresPerDisplayUnit = 0;  // on the sheet, per display unit of the scene
  // Where the centre of the plot's extent (display units) stands in the frame's middle.
  double centreX = 0, centreY = 0;
  double markerSide = 1.8;  // millimetres
  double lineWidth = 0.3;   // millimetres

  std::string title;     // the file tag, or the file's name without its folder
  std::string fileName;  // the file as it was loaded
  std::string date;
  std::string scaleLine;  // "Scale 1:1,000 (lengths in Meters)", or why there is none
  std::string areaHeading;
  std::vector<std::string> areaLines;  // the whole plot and both parts of a divided one
  ScaleBar scaleBar;
  std::vector<LegendEntry> legend;
};

// Lays out the sheet of what `logic` shows. A scale `options.scale` of 0, and every scale
// for a survey whose unit is not specified, fits the plot to the page; for a survey in a
// unit of length "Fit to page" takes the largest usual scale at which the plot fits.
Sheet LayOutSheet(const PlotmeterLogic& logic, const SheetOptions& options, std::string date);

// The largest usual scale at which a plot `width` by `height` units of length fits in
// `room` (millimetres); when none does, the smallest whole N that fits.
int FitScale(double width, double height, SizeMm room, int unitOfMeasure);

// The symbols that `scene` draws, in a fixed order.
std::vector<LegendEntry> LegendOf(const PlotScene& scene);

// Says that the plot is cut at the frame and which scale would fit it; "" when it fits.
std::string FitNote(const Sheet& sheet);

}  // namespace plotmeter
