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

inline constexpr const char* kNoFile = "< No File >";
inline constexpr const char* kClickOnAPoint = "Click on a Point";

// Indexes of the `OptnsCkB` boxes; box i owns display option bit 2 to the power i.
inline constexpr int kOptionSubDivision = 0;
inline constexpr int kOptionLines = 1;
inline constexpr int kOptionPoints = 2;
inline constexpr int kOptionAlternateGps = 3;
inline constexpr int kOptionCount = 4;

// Indexes of the `DataBtn` buttons (those of `EditPtBtn` are in ui/EditButtons.h).
inline constexpr int kLoadButton = 0;
inline constexpr int kSaveButton = 1;
inline constexpr int kSaveAsButton = 2;
inline constexpr int kCreateNewButton = 3;

struct CheckBoxState {
  bool ticked = true;
  bool enabled = true;
};

struct MainDisplay {
  AreaValueLabel AreaValLbl;
  std::string AreaHdrLbl = "Area";
  ComboState AreaSgmtCmb{.visible = false};
  ComboState AreaUnitCmb{.visible = true, .index = kDefaultAreaUnit};
  LabelState AreaUnitLbl{.text = "Sq. 'Not specified' Units", .visible = false};
  bool MagDecHdrLblEnabled = false;
  std::string MagDecLbl;
  std::string DatSrcLbl = kNoFile;  // the current file's name
  std::string TagFileLbl;           // the survey's file tag
  std::string EditSubLbl = kClickOnAPoint;
  std::array<CheckBoxState, kOptionCount> OptnsCkB{};
  std::array<bool, 4> DataBtnEnabled{true, false, true, true};
  std::array<bool, 4> EditPtBtnEnabled{};
  std::uint8_t DisplayOptions = 15;

  // The eight area units in `AreaUnitCmb`, "Hectares" chosen.
  MainDisplay();
};

// An area as `AreaValLbl` shows it: "#,##0" from 1000 up, "##0.0#" below.
std::string AreaText(double area);

// Shows the area after a processing run, or after a change of segment or unit: the value
// or a state text in `AreaValLbl`, the segment and unit lists, the heading ("Area", or
// "Area (GPS)" for an area worked out from GPS positions) and the magnetic declination.
void ShowArea(const Survey& survey, const ProcessingState& state, MainDisplay& display);

}  // namespace plotmeter
