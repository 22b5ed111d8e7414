// Every input the fuzzer ever found a fault with, kept in tests/data/fuzz-regressions and
// run again through everything a data file reaches. Each file's name says the fault it
// pins; a crash or sanitizer report fails the test binary itself.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/FileExercise.h"

namespace plotmeter::testing {
namespace {

TEST(FuzzRegressionTest, EveryKeptFindingLoadsListsAndSavesCleanly) {
  const std::filesystem::path folder = PLOTMETER_TEST_DATA_DIR "/fuzz-regressions";
  const auto work = std::filesystem::temp_directory_path() / "plotmeter-fuzz-regressions";
  std::filesystem::create_directories(work);
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().filename() == "README") continue;
    SCOPED_TRACE(entry.path().filename().string());
    EXPECT_EQ(ExerciseDataFile(entry.path(), work), "");
    ++files;
  }
  if (files == 0) GTEST_SKIP() << "no findings kept";
}

}  // namespace
}  // namespace plotmeter::testing
