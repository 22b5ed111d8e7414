// The processing run that follows a successful point resolution: the display reset, the
// point limit, the crossing test, the area and the drawing.
#pragma once

#include <string>
#include <vector>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"
#include "model/UserDialogs.h"
#include "ui/MainDisplay.h"
#include "ui/PlotScene.h"

namespace plotmeter {

// Runs processing on the resolved `survey`, showing its own message boxes through
// `dialogs`: resets the area display and the drawing, refuses a survey without data or
// over the point limit, tests the perimeter for crossing lines (a bad perimeter is drawn
// perimeter-only with its error lines red, without an area), computes the area in the
// unit chosen in `display.AreaUnitCmb`, draws the plot into `scene` with the display
// options of `display`, and shows the area.
void RunProcessing(Survey& survey, ProcessingState& state, MainDisplay& display, PlotScene& scene,
                   UserDialogs& dialogs);

// The segment list's items for the computed parts: whole and parts of a division, or the
// enlarged plot, the main plot and the extension when the parts were exchanged.
std::vector<std::string> SegmentItems(const ProcessingState& state);

}  // namespace plotmeter
