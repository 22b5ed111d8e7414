// The two legend windows without a toolkit: "Area Display Legend" (`Legend`), each text
// beside a sample of the symbol the drawing uses for it, and "List Legend" (`ListLegend`),
// the type codes and the "+" mark of the listing. The samples name the roles of the
// drawing's markers and lines, so they take their colours from the same place the
// drawing does.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "ui/PlotScene.h"

namespace plotmeter {

// A sample of a symbol: a line, a marker at the line's start (or alone), or a label.
struct LegendSample {
  std::optional<LineRole> line;
  std::optional<MarkerRole> marker;
  bool selected = false;  // the marker as a left click enlarges it
  std::string_view label;
  LabelAnchor anchor = LabelAnchor::kCentre;
};

struct AreaLegendRow {
  LegendSample sample;
  std::string_view text;
};

inline constexpr std::array<AreaLegendRow, 10> kAreaLegendRows = {{
    {{.line = LineRole::kPerimeter}, "Main and Sub-division Perimeter Lines"},
    {{.line = LineRole::kClosing, .marker = MarkerRole::kStart},
     "Start Point & Closing Line (Main / Sub-div only)"},
    {{.line = LineRole::kOther}, "Other Lines (e.g. roads / fences)"},
    {{.marker = MarkerRole::kStandAlone}, "Stand Alone Points (e.g buildings, dams, windmills)"},
    {{.marker = MarkerRole::kIntermediate}, "Intermediate Points (not shape defining)"},
    {{.marker = MarkerRole::kAlternate}, "Point Alternate position as defined from GPS"},
    {{.marker = MarkerRole::kPerimeter, .selected = true},
     "Point for Editing (mouse Left click on a point)"},
    {{.label = "Sub-division"}, "Sub-division Label (at centre of its Max/Min values)"},
    {{.label = "Main Road", .anchor = LabelAnchor::kTopLeft},
     "Tag description  (mouse Right click on a point)"},
    {{}, "-  'Sub-division' may also be an 'Area Extension'"},
}};

struct ListLegendSection {
  std::string_view heading;
  std::array<std::string_view, 12> lines;  // the code texts; unused ones empty
};

inline constexpr std::array<ListLegendSection, 2> kListLegendSections = {{
    {"'Typ' [Input type codes]",
     {"X_: X/Y Co-ordinates", "B_: Bearing and Length (True North)",
      "C_: Compass Bearing and Length (Magnetic North)", "G_: GPS only input",
      "R_: Reference (is a shared point)", "D_: Dummy for sub-division start",
      "_A: has an Alternative GPS value", "_I: as Intermediate Point",
      "_Is: Resequenced Intermediate Point", "_J: is Sub-divison join point",
      "_L: is GPS to non-GPS values Link", "_F: From another referenced point"}},
    {"Input (I/P..) values '+' suffix:",
     {"Actual input had additional characters (view with 'Edit')"}},
}};

}  // namespace plotmeter
