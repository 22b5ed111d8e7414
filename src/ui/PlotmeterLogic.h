// The main window `Plotmeter` without a toolkit: it owns the one survey, the processing
// state, what the window shows around the drawing and the drawing itself, and does what
// the window's file commands, option boxes and area lists do. The desktop window and
// plotmeter-cli both drive it.
#pragma once

#include <array>
#include <string>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"
#include "model/UserDialogs.h"
#include "ui/MainDisplay.h"
#include "ui/PlotScene.h"

namespace plotmeter {

// Indexes of the `OptnsCkB` boxes; box i owns display option bit 2 to the power i.
inline constexpr int kOptionSubDivision = 0;
inline constexpr int kOptionLines = 1;
inline constexpr int kOptionPoints = 2;
inline constexpr int kOptionAlternateGps = 3;
inline constexpr int kOptionCount = 4;

inline constexpr const char* kNoFile = "< No File >";

// How a processing run ended, as its message boxes told the user.
struct ProcessingOutcome {
  bool failed = false;        // a "Processing Failed" failure box
  bool badPerimeter = false;  // the "Bad Perimeter Data" box: no area
  bool resequenced = false;   // the resequencing note alone, which is no failure
};

struct LoadOutcome {
  // The file was read, checked and resolved: the survey holds it. False when it was
  // refused or its points could not be resolved; the survey is then empty.
  bool loaded = false;
  ProcessingOutcome processing;

  // Loaded and processed to the end without a failure box.
  bool Succeeded() const { return loaded && !processing.failed && !processing.badPerimeter; }
};

class PlotmeterLogic {
 public:
  PlotmeterLogic();

  Survey& survey() { return survey_; }
  const Survey& survey() const { return survey_; }
  ProcessingState& state() { return state_; }
  const ProcessingState& state() const { return state_; }
  const MainDisplay& display() const { return display_; }
  const PlotScene& scene() const { return scene_; }

  // "Load" once a usable file name has been chosen: the processing state is cleared, the
  // file read and checked, its points resolved (a failed resolution rejects the file),
  // the "Show Lines" and "Show Points" boxes made available by the data, and processing
  // run.
  LoadOutcome Load(const std::string& path, UserDialogs& dialogs);

  // "Save As" once the name is settled: writes the survey and, when written, takes the
  // name as the current file.
  bool Save(const std::string& path, UserDialogs& dialogs);

  // Processing and drawing again, as after an accepted edit or an option click.
  ProcessingOutcome Reprocess(UserDialogs& dialogs);

  // `AreaUnitCmb` changed: the index is kept, and an area already computed on a good
  // perimeter is worked out again in the new unit. False for an index outside the list.
  bool SetAreaUnit(int index);
  // `AreaSgmtCmb` changed: the area is shown again for the chosen segment. False for an
  // index outside 0 to 2.
  bool SetSegment(int index);

  // `OptnsCkB` clicked: the box's bit follows its tick, then processing runs again.
  ProcessingOutcome ClickOption(int index, bool ticked, UserDialogs& dialogs);
  // An unavailable box is disabled and its bit cleared while it keeps its tick; made
  // available again, a ticked box sets its bit anew.
  void SetOptionAvailable(int index, bool available);

  const std::array<bool, kOptionCount>& OptnsCkBTicked() const { return ticked_; }
  const std::array<bool, kOptionCount>& OptnsCkBEnabled() const { return enabled_; }
  // The file name part of the current file, or "< No File >".
  const std::string& DatSrcLbl() const { return datSrcLbl_; }

  // The unit text beside the area: the chosen list text, the "not specified" label, or
  // "" when neither is shown.
  std::string AreaUnitText() const;

 private:
  void MakeOptionsAvailableByData();

  Survey survey_;
  ProcessingState state_;
  MainDisplay display_;
  PlotScene scene_;
  std::array<bool, kOptionCount> ticked_{true, true, true, true};
  std::array<bool, kOptionCount> enabled_{true, true, true, true};
  std::string datSrcLbl_ = kNoFile;
};

}  // namespace plotmeter
