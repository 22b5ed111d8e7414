// What the main window shows around the drawing, held without a toolkit: the window
// logic owns one, processing and the area display set it, and the Qt window (or
// plotmeter-cli) shows it. Members are named after the controls they stand for.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"

namespace plotmeter {

struct AreaValueLabel {
  std::string text;
  bool red = false;  // otherwise the normal button text colour
};

struct ComboState {
  bool visible = true;
  std::vector<std::string> items;
  int index = 0;
};

struct LabelState {
  std::string text;
  bool visible = true;
};

inline constexpr int kDefaultAreaUnit = 1;  // "Hectares"

struct MainDisplay {
  AreaValueLabel AreaValLbl;
  std::string AreaHdrLbl = "Area";
  ComboState AreaSgmtCmb{.visible = false};
  ComboState AreaUnitCmb{.visible = true, .index = kDefaultAreaUnit};
  LabelState AreaUnitLbl{.text = "Sq. 'Not specified' Units", .visible = false};
  std::string ScaleLbl;
  std::array<bool, 2> LotLblVisible{};
  bool TagDSLblVisible = false;
  bool MagDecHdrLblEnabled = false;
  std::string MagDecLbl;
  std::uint8_t DisplayOptions = 15;

  // The eight area units in `AreaUnitCmb`, "Hectares" chosen.
  MainDisplay();
};

// Shows the area after a processing run, or after a change of segment or unit: the value
// or a state text in `AreaValLbl`, the segment and unit lists, the heading ("Area", or
// "Area (GPS)" for an area worked out from GPS positions) and the magnetic declination.
void ShowArea(const Survey& survey, const ProcessingState& state, MainDisplay& display);

}  // namespace plotmeter
