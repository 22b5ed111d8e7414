// Reading a data file, and listing it from its text, cost the same for every line ending
// (LF, CR LF, a lone CR) and grow linearly with the number of lines: a file of CR-only
// endings once took time in the square of its size.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "datafile/DataFileReader.h"
#include "model/Survey.h"
#include "ui/DataListing.h"

namespace plotmeter {
namespace {

// Stand-alone points, one a line, each line ended by `ending`.
std::string PointsFile(int points, std::string_view ending) {
  std::string text = "44,#0092,1,0,0,58";
  text += ending;
  text += "H,P,Points";
  text += ending;
  for (int n = 1; n <= points; ++n) {
    text += std::to_string(n) + ",X,,," + std::to_string(n % 1000) + ".5,";
    text += std::to_string(n % 777) + ".25";
    text += ending;
  }
  return text;
}

void BM_Read(benchmark::State& run, std::string_view ending) {
  const std::string text = PointsFile(static_cast<int>(run.range(0)), ending);
  for (auto _ : run) {
    Survey survey;
    const ReadResult read = ReadDataText(survey, text);
    if (read.fault != 0 || survey.PointCount() != run.range(0)) {
      run.SkipWithError("not read");
      break;
    }
  }
  run.SetComplexityN(run.range(0));
  run.SetBytesProcessed(static_cast<std::int64_t>(run.iterations() * text.size()));
}

class CountedLines : public ListingOutput {
 public:
  void Begin(const DataListLogic&) override {}
  void Line(std::string_view) override { ++lines; }
  long lines = 0;
};

void BM_ListFromText(benchmark::State& run, std::string_view ending) {
  const std::string text = PointsFile(static_cast<int>(run.range(0)), ending);
  const Survey survey;
  for (auto _ : run) {
    DataListLogic list;
    CountedLines counted;
    list.Write(survey, text, counted);
    if (counted.lines != run.range(0) + 1) {
      run.SkipWithError("not listed");
      break;
    }
  }
  run.SetComplexityN(run.range(0));
  run.SetBytesProcessed(static_cast<std::int64_t>(run.iterations() * text.size()));
}

// Ten megabytes of lone CRs after the first point: ten million empty lines.
void BM_ReadBareCrs(benchmark::State& run) {
  const std::string text = PointsFile(1, "\n") + std::string(10'000'000, '\r');
  for (auto _ : run) {
    Survey survey;
    benchmark::DoNotOptimize(ReadDataText(survey, text));
  }
  run.SetBytesProcessed(static_cast<std::int64_t>(run.iterations() * text.size()));
}

#define PLOTMETER_READING_SERIES(function, name, ending) \
  BENCHMARK_CAPTURE(function, name, ending)              \
      ->RangeMultiplier(4)                               \
      ->Range(5'000, 320'000)                            \
      ->Unit(benchmark::kMillisecond)                    \
      ->Complexity(benchmark::oN)

PLOTMETER_READING_SERIES(BM_Read, Lf, "\n");
PLOTMETER_READING_SERIES(BM_Read, CrLf, "\r\n");
PLOTMETER_READING_SERIES(BM_Read, Cr, "\r");
PLOTMETER_READING_SERIES(BM_ListFromText, Lf, "\n");
PLOTMETER_READING_SERIES(BM_ListFromText, Cr, "\r");
BENCHMARK(BM_ReadBareCrs)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace plotmeter
