// Several files worked in turn by one command: each file's output lines and message
// blocks are headed by its name, and the exit status is the worst of them. With one file
// there is no heading.
#pragma once

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/CliDialogs.h"
#include "cli/TextOutput.h"

namespace plotmeter {

// Writes one file's lines to standard output, each headed by the file name when the
// batch holds several files.
class FileOutput {
 public:
  FileOutput(std::ostream& out, std::string heading) : out_(out), heading_(std::move(heading)) {}

  // Control bytes of the lines' text (an escape sequence, a bell, a NUL in a tag) are
  // shown in caret notation rather than sent, as for a terminal.
  void ShowControlsHarmlessly(bool show) { showControls_ = show; }

  // A line of the program's own (single-byte) text.
  void Line(std::string_view text) {
    Heading();
    WriteLine(out_, showControls_ ? ShowControls(text) : std::string(text));
  }
  // A line already in UTF-8 that names its file itself (a JSON object): no heading.
  void UnheadedLine(std::string_view text) { out_ << text << '\n'; }

 private:
  void Heading() {
    if (!heading_.empty()) out_ << heading_ << ": ";
  }

  std::ostream& out_;
  std::string heading_;
  bool showControls_ = false;
};

// Runs `work` on each file in turn and returns the worst status.
inline int RunBatch(const std::vector<std::string>& files, bool yes, std::ostream& out,
                    std::ostream& err,
                    const std::function<int(const std::string& file, FileOutput& output,
                                            CliDialogs& dialogs)>& work) {
  int worst = 0;
  const bool headed = files.size() > 1;
  for (const std::string& file : files) {
    CliDialogs dialogs(err, yes);
    dialogs.SetFileHeading(headed ? file : "");
    FileOutput output(out, headed ? file : "");
    worst = std::max(worst, work(file, output, dialogs));
  }
  out.flush();
  return worst;
}

}  // namespace plotmeter
