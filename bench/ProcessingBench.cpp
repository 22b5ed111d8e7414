// From file text to the drawn plot: read, load check, point resolution, crossing test,
// area and scene. A survey within the limit runs the whole way; a larger file stops at
// the point limit, and the cost up to that refusal must grow linearly with its size.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <sstream>
#include <string>

#include "BenchSurveys.h"
#include "datafile/DataFileReader.h"
#include "datafile/LoadCheck.h"
#include "geometry/ProcessingState.h"
#include "geometry/ResolvePoints.h"
#include "model/Survey.h"
#include "model/UserDialogs.h"
#include "ui/MainDisplay.h"
#include "ui/PlotScene.h"
#include "ui/Processing.h"

namespace plotmeter {
namespace {

class CountingDialogs : public UserDialogs {
 public:
  int boxes = 0;
  std::string lastText;

  Button Show(const MessageBox& box) override {
    ++boxes;
    lastText = box.text;
    return box.defaultButton;
  }
  void Beep() override {}
  FileChoice SelectFile(const FileDialogRequest&) override { return {}; }
};

// Returns the message of the one box shown, or "" when none was.
std::string ProcessFile(const std::string& text, PlotScene& scene) {
  Survey survey;
  ProcessingState state;
  MainDisplay display;
  CountingDialogs dialogs;
  std::istringstream in(text);
  ReadResult read = ReadDataFile(survey, in);
  if (!CheckLoadedData(survey, read, dialogs)) return dialogs.lastText;
  state.DataState = kDataPresent;
  if (!ResolvePoints(survey, state, kFirstPass, dialogs)) return dialogs.lastText;
  ReportProcessing(RunProcessing(survey, state, display, scene), survey, dialogs);
  benchmark::DoNotOptimize(state.SegmentAreas);
  return dialogs.lastText;
}

bool IsLimitMessage(const std::string& text) {
  return text.starts_with("The number of points specified exceeds the program limit of 210");
}

void BM_ProcessWithinTheLimit(benchmark::State& run) {
  const std::string text = SurveyFile(kPointLimit);
  PlotScene scene;
  for (auto _ : run) {
    std::string message = ProcessFile(text, scene);
    if (!message.empty() || scene.markers.size() != kPointLimit) {
      run.SkipWithError(("not processed: " + message).c_str());
      break;
    }
  }
}
BENCHMARK(BM_ProcessWithinTheLimit)->Unit(benchmark::kMicrosecond);

void BM_ProcessOverTheLimit(benchmark::State& run) {
  const std::string text = SurveyFile(static_cast<int>(run.range(0)));
  PlotScene scene;
  for (auto _ : run) {
    if (!IsLimitMessage(ProcessFile(text, scene))) {
      run.SkipWithError("the point limit was not reached");
      break;
    }
  }
  run.SetComplexityN(run.range(0));
}
BENCHMARK(BM_ProcessOverTheLimit)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ProcessOverTheLimit)
    ->Name("BM_ProcessOverTheLimit/Series")
    ->RangeMultiplier(2)
    ->Range(1'000, 128'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
}  // namespace plotmeter
