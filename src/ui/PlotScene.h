// The drawing of the plot as data: what the main window's drawing area shows, worked
// out by `DrawPlot` and painted as it stands by the Qt widget. Positions and sizes are
// in display units; the widget scales the square drawing area to its own size.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"

namespace plotmeter {

struct Rgb {
  std::uint8_t red = 0, green = 0, blue = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

// Colours by role.
inline constexpr Rgb kStartGreen{0, 192, 0};  // start point and closing line
inline constexpr Rgb kIntermediateGrey{128, 128, 128};
inline constexpr Rgb kWhite{255, 255, 255};
inline constexpr Rgb kLineBrown{192, 64, 0};  // line datasets
inline constexpr Rgb kBlack{0, 0, 0};
inline constexpr Rgb kPointsTeal{0, 192, 192};  // fill of stand-alone points
inline constexpr Rgb kAlternateMagenta{255, 0, 255};
inline constexpr Rgb kErrorRed{255, 0, 0};

// Display option bits (the `OptnsCkB` check boxes) and the draw mode bits.
inline constexpr std::uint8_t kShowSubDivision = 1;
inline constexpr std::uint8_t kShowLines = 2;
inline constexpr std::uint8_t kShowPoints = 4;
inline constexpr std::uint8_t kShowAlternateGps = 8;
inline constexpr std::uint8_t kDefaultDisplayOptions = 15;
inline constexpr std::uint8_t kModeErrorLines = 64;
// Perimeter lines only, error lines red: the mode after a perimeter fails ("C").
inline constexpr std::uint8_t kModeBadPerimeter = 'C';

// The dataset kinds a draw mode shows: the main dataset always, the others by bits 1,
// 2 and 4 of the mode.
std::uint8_t KindMask(std::uint8_t mode);

// What a marker or a line stands for; its colours follow from it.
enum class MarkerRole { kStart, kPerimeter, kIntermediate, kLine, kStandAlone, kAlternate, kError };
enum class LineRole { kPerimeter, kClosing, kOther, kAlternate, kError };

struct MarkerColours {
  Rgb border, fill;
};
MarkerColours ColoursOf(MarkerRole role);
Rgb ColourOf(LineRole role);

struct SceneMarker {
  int point = -1;      // index in `Points`
  float x = 0, y = 0;  // centre on the screen
  float size = 0;
  MarkerRole role = MarkerRole::kPerimeter;
  Rgb border, fill;
  bool alternate = false;  // marks the point's alternate GPS position
};

struct SceneLine {
  float x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  LineRole role = LineRole::kPerimeter;
  Rgb colour;
  // The point the line ends at: its error-line mark makes the line red; for an alternate
  // joining line, the point whose alternate position it joins.
  int endsAt = -1;
};

// Where a label's point (x, y) sits on its text: the sub-division label is centred on
// its point; the tag label hangs from its top left or top right corner.
enum class LabelAnchor { kCentre, kTopLeft, kTopRight };

struct SceneLabel {
  std::string text;
  float x = 0, y = 0;
  LabelAnchor anchor = LabelAnchor::kCentre;
  bool visible = false;
};

// Where a point stands on the screen, for the mouse hit test.
struct ScreenPoint {
  float x = 0, y = 0;
  bool drawn = false;
};

// A left click enlarges the selected point's marker to this many times the marker size.
inline constexpr float kSelectedMarkerScale = 4;

// The side of the square drawing area in display units: wide enough that a tag label
// fits beside a point on one side or the other, small enough that a marker of 30 units
// reads as a marker on screen.
inline constexpr float kDrawingAreaSize = 4200;

struct PlotScene {
  // The square drawing area `DisplaySh`, the free margin and the marker size.
  float left = 0, top = 0, width = kDrawingAreaSize, height = kDrawingAreaSize;
  float margin = 100;
  float markerSize = 30;

  // Display units per unit of length, and the axis offsets inside the drawing area.
  double scale = 0;
  double xOffset = 0, yOffset = 0;
  float minX = 0, minY = 0, maxX = 0, maxY = 0;

  std::vector<SceneMarker> markers;
  std::vector<SceneLine> lines;
  SceneLabel LotLbl;    // the sub-division label
  SceneLabel TagDSLbl;  // the tag shown by a right click; hidden by every redraw
  std::string ScaleLbl;
  std::vector<ScreenPoint> screen;  // one per point of the survey

  // Hides everything drawn: markers, lines, labels and the scale text.
  void Clear();
};

// Lays the survey out in `scene`: extent, one scale for both axes, a marker per drawn
// point and a line per drawn segment coloured by role, alternate positions, error lines,
// the sub-division label and the scale text. The selected point's marker is enlarged.
// Returns false, with `scene` cleared, when the extent cannot be laid out (a co-ordinate
// that is not finite, or a range beyond single precision).
//
// With no extent (one point, or every point in one place) the drawing area shows one unit
// of length across, centred on the point, so that nothing is divided by zero.
bool DrawPlot(const Survey& survey, const ProcessingState& state, std::uint8_t mode,
              std::uint8_t displayOptions, PlotScene& scene);

}  // namespace plotmeter
