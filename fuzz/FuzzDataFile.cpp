// libFuzzer target: arbitrary bytes as a data file, through everything a file reaches.
//
// Each input is loaded twice, once answering every question Yes and once No: reading,
// the load check, point resolution with its repeat passes, processing and the drawing.
// Then the option boxes are clicked through their draw modes, the listing is built from
// the file and from the processed survey with every column, and the survey is saved and
// loaded again. A file the program wrote must always load when the first load did;
// anything else aborts as a finding.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/ScriptedDialogs.h"
#include "geometry/Area.h"
#include "ui/DataListing.h"
#include "ui/PlotmeterLogic.h"

namespace {

using plotmeter::Button;
using plotmeter::DataListLogic;
using plotmeter::PlotmeterLogic;
using plotmeter::testing::ScriptedDialogs;

// Every question gets `answer`; the scripted dialogs fall back to it once the queue runs
// dry, so a long queue stands for "always".
ScriptedDialogs AnsweringAlways(Button answer) {
  ScriptedDialogs dialogs;
  dialogs.answers.assign(64, answer);
  return dialogs;
}

const std::filesystem::path& WorkFolder() {
  static const std::filesystem::path folder = [] {
    auto path = std::filesystem::temp_directory_path() /
                ("plotmeter-fuzz-" + std::to_string(getpid()));
    std::filesystem::create_directories(path);
    return path;
  }();
  return folder;
}

void WriteBytes(const std::filesystem::path& path, const std::uint8_t* data, std::size_t size) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

void ListBothWays(const PlotmeterLogic& logic) {
  DataListLogic listing;
  listing.Refresh(logic.survey());
  listing.ShowColumns = plotmeter::kShowAll;
  listing.ProcdCkB = true;
  listing.Refresh(logic.survey());
  for (int line = 0; line < static_cast<int>(listing.DataLst().size()); ++line) {
    listing.EditText(line);
  }
}

void ClickEveryOption(PlotmeterLogic& logic, ScriptedDialogs& dialogs) {
  for (int option = 0; option < plotmeter::kOptionCount; ++option) {
    logic.ClickOption(option, false, dialogs);
    logic.ClickOption(option, true, dialogs);
  }
  for (int unit = 0; unit < plotmeter::kAreaUnitCount; ++unit) logic.SetAreaUnit(unit);
  for (int segment = 0; segment < 3; ++segment) logic.SetSegment(segment);
}

void SaveAndLoadAgain(PlotmeterLogic& logic, Button answer) {
  const auto saved = WorkFolder() / "saved.csv";
  ScriptedDialogs dialogs = AnsweringAlways(answer);
  if (!logic.Save(saved.string(), dialogs)) return;

  PlotmeterLogic reloaded;
  ScriptedDialogs reloadDialogs = AnsweringAlways(answer);
  if (!reloaded.Load(saved.string(), reloadDialogs).loaded) {
    std::fprintf(stderr, "A file the program wrote does not load again: %s\n",
                 reloadDialogs.boxes.empty() ? "" : reloadDialogs.last().text.c_str());
    std::abort();
  }
}

void LoadAnswering(const std::string& path, Button answer) {
  PlotmeterLogic logic;
  ScriptedDialogs dialogs = AnsweringAlways(answer);
  const bool loaded = logic.Load(path, dialogs).loaded;
  ListBothWays(logic);
  if (!loaded) return;
  ClickEveryOption(logic, dialogs);
  SaveAndLoadAgain(logic, answer);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto input = WorkFolder() / "input.csv";
  WriteBytes(input, data, size);
  LoadAnswering(input.string(), Button::Yes);
  LoadAnswering(input.string(), Button::No);
  return 0;
}
