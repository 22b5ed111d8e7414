// The processing run that follows a successful point resolution: the display reset, the
// point limit, the crossing test, the area and the drawing.
#pragma once

#include <string>
#include <vector>

#include "geometry/PerimeterCrossing.h"
#include "geometry/ProcessingState.h"
#include "model/Survey.h"
#include "model/UserDialogs.h"
#include "ui/MainDisplay.h"
#include "ui/PlotScene.h"

namespace plotmeter {

enum class ProcessingFault { kNone, kNoData, kOverLimit, kNotDisplayed };

// How a processing run ended.
struct ProcessingOutcome {
  ProcessingFault fault = ProcessingFault::kNone;
  int crossing = kCrossingNone;  // a bad perimeter is drawn without an area
  bool resequenced = false;      // intermediate points were resequenced: a note, not a failure

  bool failed() const { return fault != ProcessingFault::kNone; }
  bool badPerimeter() const { return crossing != kCrossingNone; }
};

// Runs processing on the resolved `survey`: resets the area display and the drawing,
// refuses a survey without data or over the point limit, tests the perimeter for crossing
// lines (a bad perimeter is drawn perimeter-only with its error lines red, without an
// area), computes the area in the unit chosen in `display.AreaUnitCmb`, draws the plot
// into `scene` with the display options of `display`, and shows the area. Shows nothing
// itself: `ReportProcessing` tells the user.
ProcessingOutcome RunProcessing(Survey& survey, ProcessingState& state, MainDisplay& display,
                                PlotScene& scene);

// The message boxes of a processing run, made from its outcome: the failure, or the bad
// perimeter's explanation, then the resequencing note.
void ReportProcessing(const ProcessingOutcome& outcome, const Survey& survey, UserDialogs& dialogs);

// The segment list's items for the computed parts: whole and parts of a division, or the
// enlarged plot, the main plot and the extension when the parts were exchanged.
std::vector<std::string> SegmentItems(const ProcessingState& state);

}  // namespace plotmeter
