#include "ui/Processing.h"

#include <optional>

#include "geometry/Area.h"
#include "geometry/PartOutlines.h"
#include "geometry/PerimeterCrossing.h"
#include "model/ValueFormat.h"

namespace plotmeter {

namespace {

constexpr const char* kFailureTitle = "Processing Failed";
constexpr const char* kBadPerimeterTitle = "Bad Perimeter Data";
constexpr const char* kNotDisplayed = "Data could not be displayed";

// The words that tell the two overshoot messages apart.
struct OvershootWords {
  const char* crossing;
  const char* possibly;
  const char* from;
  const char* lastLine;
};

constexpr OvershootWords kAtStartWords = {
    "The last line is crossing the first line preventing an area calculation.",
    "Possibly as the last point specified is intended to be the 'Start Point'.",
    " from the Start point.", "using only the automatically created last line to the start point."};

constexpr OvershootWords kAtJoinWords = {
    "The last sub-division line is crossing the main perimeter preventing an area "
    "calculation.",
    "Possibly as the last point specified is intended to be the 'Join Point'.",
    " from the Join point.", "using only the automatically created last line to the join point."};

std::string LimitMessage() {
  return "The number of points specified exceeds the program limit of " +
         std::to_string(kPointLimit) +
         "\n\nSplit the data to create multiple non-overlapping areas and add the results";
}

float MainClosingLength(const Survey& survey) {
  int d = survey.FindDataset(kDatasetMain);
  return d >= 0 ? survey.Datasets[d].ClosingLen : 0;
}

// Measured here rather than read from the sub-division's closing line, so that the
// message always names the line to the join point that the division ends on.
float JoinClosingLength(const Survey& survey) {
  std::optional<DivisionPath> path = FindDivisionPath(survey);
  return path ? DivisionClosingLength(survey, *path) : 0;
}

std::string OvershootMessage(const Survey& survey, const OvershootWords& words,
                             float closingLength) {
  std::string text = std::string(words.crossing) + "\n" + words.possibly + "\n\n" +
                     "The last point is " + survey.FieldSeparator +
                     FormatLength(ValueSettingsOf(survey), closingLength);
  if (survey.UnitOfMeasure < 6) {
    text.append(" ").append(UnitName(survey.UnitOfMeasure)).append(words.from).append("\n\n");
  }
  return text + "If appropriate, remove the last point from the data to correct,\n" +
         words.lastLine +
         "\n\nPerimeter lines ONLY are displayed, the error line is highlghted in Red.";
}

std::string CrossingMessage(const Survey& survey, int code) {
  switch (code & kCrossingKindMask) {
    case kCrossingAtStart:
      return OvershootMessage(survey, kAtStartWords, MainClosingLength(survey));
    case kCrossingAtJoin:
      return OvershootMessage(survey, kAtJoinWords, JoinClosingLength(survey));
    default:
      return "Is not a valid Perimeter as Lines are crossing, no Area value can ce "
             "determined.\n\nPerimeter lines ONLY are displayed, the error lines concerned "
             "are highlghted in Red.";
  }
}

// A selected point whose dataset the current mode no longer draws loses its selection.
void ResetSelectionOutOfView(const Survey& survey, ProcessingState& state,
                             const MainDisplay& display) {
  if (state.SelectedPoint < 0) return;
  int d = state.SelectedDataset - 1;
  bool shown =
      d >= 0 && d < survey.DatasetCount() &&
      (survey.Datasets[d].DatasetType & kDatasetKindMask & KindMask(display.DisplayOptions)) != 0;
  if (!shown) state.ResetSelection();
}

void ResetDisplay(ProcessingState& state, MainDisplay& display, PlotScene& scene) {
  display.AreaValLbl.text.clear();
  display.AreaHdrLbl = "Area";
  display.AreaSgmtCmb.visible = false;
  scene.Clear();
  state.BadPerimeter = false;
  state.ProcessState &= static_cast<std::uint8_t>(~kAreaComputed);
}

void FillSegmentItems(const ProcessingState& state, MainDisplay& display) {
  ComboState& combo = display.AreaSgmtCmb;
  combo.items = SegmentItems(state);
  if (combo.index < 0 || combo.index >= static_cast<int>(combo.items.size())) combo.index = 0;
}

ProcessingOutcome FailureExit(ProcessingFault fault, ProcessingState& state) {
  state.ErrorState &= kErrorExitMask;
  state.DisplayRequest &= static_cast<std::uint8_t>(~kRedrawPending);
  return {.fault = fault};
}

std::string FaultMessage(ProcessingFault fault) {
  switch (fault) {
    case ProcessingFault::kNoData:
      return "No data exists";
    case ProcessingFault::kOverLimit:
      return LimitMessage();
    case ProcessingFault::kNotDisplayed:
      return kNotDisplayed;
    case ProcessingFault::kNone:
      break;
  }
  return "";
}

// Draws, then shows the area as the drawing always does; false when nothing could be
// laid out.
bool Draw(const Survey& survey, ProcessingState& state, std::uint8_t mode, MainDisplay& display,
          PlotScene& scene) {
  if (!DrawPlot(survey, state, mode, display.DisplayOptions, scene)) return false;
  FillSegmentItems(state, display);
  ShowArea(survey, state, display);
  return true;
}

}  // namespace

std::vector<std::string> SegmentItems(const ProcessingState& state) {
  if (!(state.AreaState & kAreaSegmentCount)) return {};
  if (state.AreaState & kSegmentsSwapped) return {"Extended Plot", "Main Plot", "Extension"};
  return {"Whole Plot", "Part 1", "Part 2"};
}

ProcessingOutcome RunProcessing(Survey& survey, ProcessingState& state, MainDisplay& display,
                                PlotScene& scene) {
  ResetSelectionOutOfView(survey, state, display);
  ResetDisplay(state, display, scene);
  if (!(state.DataState & kDataPresent)) return FailureExit(ProcessingFault::kNoData, state);
  if (survey.PointCount() > kPointLimit) return FailureExit(ProcessingFault::kOverLimit, state);

  ProcessingOutcome outcome;
  state.AreaState &= static_cast<std::uint8_t>(~(kAreaSegmentCount | kSegmentsSwapped));
  if (FindMainPerimeter(survey) >= 0) {
    outcome.crossing = CheckPerimeterCrossing(survey);
    if (outcome.crossing != kCrossingNone) {
      state.BadPerimeter = true;
      if (!Draw(survey, state, kModeBadPerimeter, display, scene)) {
        return FailureExit(ProcessingFault::kNotDisplayed, state);
      }
    } else {
      BuildPartOutlines(survey, state);
      ComputeArea(survey, state, display.AreaUnitCmb.index);
    }
  }
  if (!state.BadPerimeter && !Draw(survey, state, display.DisplayOptions, display, scene)) {
    return FailureExit(ProcessingFault::kNotDisplayed, state);
  }
  // The flag stays set, so the note repeats on every run until new data is resolved.
  outcome.resequenced = state.ErrorState == kErrorResequenced;
  state.DisplayRequest &= static_cast<std::uint8_t>(~kRedrawPending);
  return outcome;
}

void ReportProcessing(const ProcessingOutcome& outcome, const Survey& survey,
                      UserDialogs& dialogs) {
  if (outcome.failed()) {
    Alert(dialogs,
          {.title = kFailureTitle, .text = FaultMessage(outcome.fault), .icon = Icon::Critical});
    return;
  }
  if (outcome.badPerimeter()) {
    Alert(dialogs, {.title = kBadPerimeterTitle,
                    .text = CrossingMessage(survey, outcome.crossing),
                    .icon = Icon::Exclamation});
  }
  // The note borrows the failure title and icon although processing succeeded.
  if (outcome.resequenced) {
    Alert(dialogs, {.title = kFailureTitle,
                    .text = "Note some Intermediate points were resequenced for validity\n\n",
                    .icon = Icon::Critical});
  }
}

}  // namespace plotmeter
