// Each tests/golden/<topic>/*.txt is one run of plotmeter-cli on the data files beside it:
// its first line the command, then exactly what the command printed. The run is made
// in-process, in the golden's folder; what it wrote to standard error follows a line
// "--- stderr", and a status other than 0 is the last line, "--- status N".
// PLOTMETER_UPDATE_GOLDEN=1 writes each run's output into its file instead: read the
// differences before committing them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> Words(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

// What `command` prints when it is run in `folder`, in the golden's form.
std::string Printed(const std::string& command, const fs::path& folder) {
  std::vector<std::string> args = Words(command);
  if (args.empty() || args.front() != "plotmeter-cli") return "no plotmeter-cli command\n";
  args.erase(args.begin());
  const fs::path start = fs::current_path();
  fs::current_path(folder);
  std::ostringstream out, err;
  const int status = RunCli(args, out, err);
  fs::current_path(start);
  std::string printed = out.str();
  if (!err.str().empty()) printed += "--- stderr\n" + err.str();
  if (status != 0) printed += "--- status " + std::to_string(status) + "\n";
  return printed;
}

TEST(GoldenTest, EveryCommandPrintsItsGolden) {
  const bool update = std::getenv("PLOTMETER_UPDATE_GOLDEN") != nullptr;
  int goldens = 0;
  for (const auto& entry : fs::recursive_directory_iterator(PLOTMETER_GOLDEN_DIR)) {
    if (entry.path().extension() != ".txt") continue;
    SCOPED_TRACE(entry.path().string());
    ++goldens;
    const std::string golden = testing::TestFolder::Contents(entry.path().string());
    const std::size_t end = golden.find('\n');
    const std::string command = golden.substr(0, end);
    const std::string expected = end == std::string::npos ? "" : golden.substr(end + 1);
    const std::string printed = Printed(command, entry.path().parent_path());
    if (update) {
      std::ofstream(entry.path(), std::ios::binary) << command << '\n' << printed;
      continue;
    }
    EXPECT_EQ(expected, printed);
  }
  EXPECT_GT(goldens, 0);
}

}  // namespace
}  // namespace plotmeter
