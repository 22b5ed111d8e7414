#include "ui/MainDisplay.h"

#include <cmath>

#include "geometry/Area.h"
#include "geometry/PartOutlines.h"
#include "model/NumberFormat.h"
#include "model/ValueFormat.h"
#include "ui/PlotScene.h"

namespace plotmeter {

namespace {

int ChosenSegment(const ProcessingState& state, const MainDisplay& display) {
  bool threeAreas = (state.AreaState & kAreaSegmentCount) != 0;
  if (threeAreas && (display.DisplayOptions & kShowSubDivision)) {
    int chosen = display.AreaSgmtCmb.index;
    return chosen >= 0 && chosen < static_cast<int>(state.SegmentAreas.size()) ? chosen : 0;
  }
  return (state.AreaState & kSegmentsSwapped) ? 1 : 0;
}

void ShowUnitChoice(const Survey& survey, MainDisplay& display) {
  bool unspecified = survey.UnitOfMeasure == kUnitNotSpecified;
  display.AreaUnitCmb.visible = !unspecified;
  display.AreaUnitLbl.visible = unspecified;
}

void ShowDeclination(const Survey& survey, MainDisplay& display) {
  float declination = survey.MagneticDeclination;
  display.MagDecHdrLblEnabled = declination != 0;
  if (declination == 0) {
    display.MagDecLbl.clear();
    return;
  }
  float size = std::fabs(declination);
  display.MagDecLbl =
      FormatBearing(ValueSettingsOf(survey), 0, size) + (declination < 0 ? " W" : " E");
}

}  // namespace

std::string AreaText(double area) { return FormatNumber(area, area >= 1000 ? "#,##0" : "##0.0#"); }

MainDisplay::MainDisplay() {
  for (int unit = 0; unit < kAreaUnitCount; ++unit) {
    AreaUnitCmb.items.emplace_back(AreaUnitName(unit));
  }
}

void ShowArea(const Survey& survey, const ProcessingState& state, MainDisplay& display) {
  if (FindMainPerimeter(survey) < 0) {
    display.AreaValLbl.text = "< Not a Perimeter >";
    display.AreaUnitLbl.visible = false;
    display.AreaSgmtCmb.visible = false;
    display.AreaUnitCmb.visible = false;
  } else {
    display.AreaValLbl.red = false;
    if (state.BadPerimeter) {
      display.AreaValLbl.red = true;
      display.AreaValLbl.text = "< Bad Perimeter Lines >";
      display.AreaSgmtCmb.visible = false;
    } else {
      display.AreaValLbl.text = AreaText(state.SegmentAreas[ChosenSegment(state, display)]);
      display.AreaSgmtCmb.visible =
          (state.AreaState & kAreaSegmentCount) && (display.DisplayOptions & kShowSubDivision);
    }
    ShowUnitChoice(survey, display);
  }
  display.AreaHdrLbl = state.GpsArea ? "Area (GPS)" : "Area";
  ShowDeclination(survey, display);
}

}  // namespace plotmeter
