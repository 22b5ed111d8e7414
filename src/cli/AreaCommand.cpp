#include <functional>
#include <nlohmann/json.hpp>

#include "cli/Commands.h"
#include "cli/FileBatch.h"
#include "geometry/PartOutlines.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

namespace {

enum class Perimeter { kValid, kBad, kNotAPerimeter };

Perimeter PerimeterOf(const PlotmeterLogic& logic) {
  if (FindMainPerimeter(logic.survey()) < 0) return Perimeter::kNotAPerimeter;
  return logic.state().BadPerimeter ? Perimeter::kBad : Perimeter::kValid;
}

const char* PerimeterText(Perimeter perimeter) {
  switch (perimeter) {
    case Perimeter::kValid:
      return "valid";
    case Perimeter::kBad:
      return "bad";
    case Perimeter::kNotAPerimeter:
      return "not a perimeter";
  }
  return "";
}

// The unit beside the area; none when there is no area to measure.
std::string UnitText(const PlotmeterLogic& logic) {
  return PerimeterOf(logic) == Perimeter::kValid ? logic.AreaUnitText() : std::string();
}

// "Area: 1,000 Hectares", as the main window shows it.
std::string AreaLine(const PlotmeterLogic& logic) {
  const MainDisplay& display = logic.display();
  std::string line = display.AreaHdrLbl + ": " + display.AreaValLbl.text;
  const std::string unit = UnitText(logic);
  if (!unit.empty()) line += " " + unit;
  return line;
}

std::string AreaJson(const PlotmeterLogic& logic, const std::string& file) {
  const MainDisplay& display = logic.display();
  const ProcessingState& state = logic.state();
  nlohmann::ordered_json object;
  if (!file.empty()) object["file"] = file;
  object["heading"] = Utf8FromLatin1(display.AreaHdrLbl);
  object["value"] = Utf8FromLatin1(display.AreaValLbl.text);
  object["unit"] = Utf8FromLatin1(UnitText(logic));
  if (state.ProcessState & kAreaComputed) {
    object["areas"] = state.SegmentAreas;
  } else {
    object["areas"] = nullptr;
  }
  object["segmented"] = (state.AreaState & kAreaSegmentCount) != 0;
  object["swapped"] = (state.AreaState & kSegmentsSwapped) != 0;
  object["perimeter"] = PerimeterText(PerimeterOf(logic));
  // A file name that is not UTF-8 still gives valid JSON.
  return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

int AreaOfFile(const AreaOptions& options, const std::string& file, FileOutput& output,
               CliDialogs& dialogs) {
  PlotmeterLogic logic;
  const LoadOutcome outcome = logic.Load(file, dialogs);
  // A refused file, or a failure box, leaves nothing to show.
  if (!outcome.loaded || outcome.processing.failed()) return kStatusFailed;
  if (options.unit != logic.display().AreaUnitCmb.index) logic.SetAreaUnit(options.unit);
  if (options.segment != logic.display().AreaSgmtCmb.index) logic.SetSegment(options.segment);
  if (options.json) {
    const bool batch = options.files.size() > 1;
    output.UnheadedLine(AreaJson(logic, batch ? file : std::string()));
  } else {
    output.Line(AreaLine(logic));
  }
  return outcome.Succeeded() ? kStatusOk : kStatusFailed;
}

}  // namespace

int RunArea(const AreaOptions& options, std::ostream& out, std::ostream& err) {
  return RunBatch(options.files, options.yes, out, err,
                  std::bind_front(AreaOfFile, std::cref(options)));
}

}  // namespace plotmeter
