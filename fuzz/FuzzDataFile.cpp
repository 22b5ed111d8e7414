// libFuzzer target: arbitrary bytes as a data file, through everything a file reaches.
// A file the program wrote that does not load again aborts as a finding, as does any
// crash, leak, sanitizer report or slow input.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/FileExercise.h"

namespace {

const std::filesystem::path& WorkFolder() {
  static const std::filesystem::path folder = [] {
    auto path =
        std::filesystem::temp_directory_path() / ("plotmeter-fuzz-" + std::to_string(getpid()));
    std::filesystem::create_directories(path);
    return path;
  }();
  return folder;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto input = WorkFolder() / "input.csv";
  {
    std::ofstream out(input, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  const std::string fault = plotmeter::testing::ExerciseDataFile(input, WorkFolder());
  if (!fault.empty()) {
    std::fprintf(stderr, "%s\n", fault.c_str());
    std::abort();
  }
  return 0;
}
