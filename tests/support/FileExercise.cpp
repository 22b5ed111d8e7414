#include "support/FileExercise.h"

#include "geometry/Area.h"
#include "support/ScriptedDialogs.h"
#include "ui/DataListing.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter::testing {

namespace {

// Every question gets `answer`: a queue longer than any load asks stands for "always".
ScriptedDialogs AnsweringAlways(Button answer) {
  ScriptedDialogs dialogs;
  dialogs.answers.assign(64, answer);
  return dialogs;
}

void ListBothWays(const PlotmeterLogic& logic) {
  DataListLogic listing;
  listing.Refresh(logic.survey());
  listing.ShowColumns = kShowAll;
  listing.ProcdCkB = true;
  listing.Refresh(logic.survey());
  for (int line = 0; line < static_cast<int>(listing.DataLst().size()); ++line) {
    listing.EditText(line);
  }
}

void ClickEveryOption(PlotmeterLogic& logic, ScriptedDialogs& dialogs) {
  for (int option = 0; option < kOptionCount; ++option) {
    logic.ClickOption(option, false, dialogs);
    logic.ClickOption(option, true, dialogs);
  }
  for (int unit = 0; unit < kAreaUnitCount; ++unit) logic.SetAreaUnit(unit);
  for (int segment = 0; segment < 3; ++segment) logic.SetSegment(segment);
}

std::string SaveAndLoadAgain(PlotmeterLogic& logic, Button answer,
                             const std::filesystem::path& saved) {
  ScriptedDialogs dialogs = AnsweringAlways(answer);
  if (!logic.SaveTo(saved.string(), dialogs)) return "";

  PlotmeterLogic reloaded;
  ScriptedDialogs reloadDialogs = AnsweringAlways(answer);
  if (reloaded.Load(saved.string(), reloadDialogs).loaded) return "";
  return "A file the program wrote does not load again: " +
         (reloadDialogs.boxes.empty() ? std::string() : reloadDialogs.last().text);
}

std::string LoadAnswering(const std::filesystem::path& file, Button answer,
                          const std::filesystem::path& saved) {
  PlotmeterLogic logic;
  ScriptedDialogs dialogs = AnsweringAlways(answer);
  const bool loaded = logic.Load(file.string(), dialogs).loaded;
  ListBothWays(logic);
  if (!loaded) return "";
  ClickEveryOption(logic, dialogs);
  return SaveAndLoadAgain(logic, answer, saved);
}

}  // namespace

std::string ExerciseDataFile(const std::filesystem::path& file,
                             const std::filesystem::path& workFolder) {
  const auto saved = workFolder / "saved.csv";
  std::string fault = LoadAnswering(file, Button::Yes, saved);
  if (fault.empty()) fault = LoadAnswering(file, Button::No, saved);
  return fault;
}

}  // namespace plotmeter::testing
