// The fuzzer's inputs that matter, run again through everything a data file reaches: every
// input it ever found a fault with (tests/data/fuzz-regressions, each named after the
// fault it pins), its seeds and the examples. A crash or sanitizer report fails the test
// binary itself; a saved file that does not load again fails the test.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/FileExercise.h"

namespace plotmeter::testing {
namespace {

TEST(FuzzRegressionTest, KeptFindingsSeedsAndExamplesGoThroughEverythingCleanly) {
  const auto work = std::filesystem::temp_directory_path() / "plotmeter-fuzz-regressions";
  std::filesystem::create_directories(work);
  int files = 0;
  for (const char* folder : {PLOTMETER_TEST_DATA_DIR "/fuzz-regressions", PLOTMETER_FUZZ_SEEDS_DIR,
                             PLOTMETER_EXAMPLES_DIR}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().filename() == "README") continue;
      SCOPED_TRACE(entry.path().string());
      EXPECT_EQ(ExerciseDataFile(entry.path(), work), "");
      ++files;
    }
  }
  EXPECT_GE(files, 8);
}

}  // namespace
}  // namespace plotmeter::testing
