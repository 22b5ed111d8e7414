// Picking a point on the drawing with the mouse: the hit test over what the scene drew,
// and the placing of the dataset tag that a right click shows. Positions are in display
// units, the units of `PlotScene`.
#pragma once

#include <cstdint>
#include <string>

#include "model/Survey.h"
#include "ui/PlotScene.h"

namespace plotmeter {

enum class MouseButton { kLeft, kRight, kOther };

// The tag label stands this far above the point, and this far beside its marker.
inline constexpr float kTagRise = 90;
inline constexpr float kTagGap = 20;
inline constexpr float kTagWidth = 2000;

struct PointHit {
  int point = -1;   // index in `Points`, -1 when nothing is drawn
  int dataset = 0;  // dataset number (from 1), 0 when nothing is drawn
};

bool InsideDrawingArea(const PlotScene& scene, float x, float y);

// The drawn point nearest to (x, y) among the datasets that `displayOptions` draws. No
// distance limit; of two equally near points the one walked first wins.
PointHit NearestDrawnPoint(const Survey& survey, const PlotScene& scene,
                           std::uint8_t displayOptions, float x, float y);

// The drawn point `step` places after point `from` in point order, among the datasets that
// `displayOptions` draws, wrapping round; from a point not drawn (-1: none) the first
// drawn point going forward, the last going back. How the arrow keys walk the drawing.
PointHit AdjacentDrawnPoint(const Survey& survey, const PlotScene& scene,
                            std::uint8_t displayOptions, int from, int step);

// `TagDSLbl` for a right click on `point`: the dataset's tag, trimmed, or "<No Tag>",
// above the point and beside its marker, on whichever side keeps it in the drawing area.
SceneLabel TagLabel(const PlotScene& scene, const ScreenPoint& point, const std::string& tag);

// Gives the point's own marker (not its alternate position) a new size.
void ResizeMarker(PlotScene& scene, int point, float size);

}  // namespace plotmeter
