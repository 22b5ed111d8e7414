#include "ui/PlotmeterLogic.h"

#include <filesystem>

#include "datafile/DataFileReader.h"
#include "datafile/DataFileWriter.h"
#include "geometry/Area.h"
#include "geometry/PartOutlines.h"
#include "geometry/ResolvePoints.h"
#include "ui/Processing.h"

namespace plotmeter {

namespace {

constexpr std::string_view kFailureTitle = "Processing Failed";
constexpr std::string_view kBadPerimeterTitle = "Bad Perimeter Data";
constexpr std::string_view kResequencedNote = "Note some Intermediate points were resequenced";

// Passes every box on and keeps what the processing run told the user: the run itself
// has no result of its own.
class OutcomeDialogs : public UserDialogs {
 public:
  explicit OutcomeDialogs(UserDialogs& dialogs) : dialogs_(dialogs) {}

  Button Show(const MessageBox& box) override {
    if (box.title == kBadPerimeterTitle) {
      outcome.badPerimeter = true;
    } else if (box.title == kFailureTitle) {
      if (box.text.starts_with(kResequencedNote)) {
        outcome.resequenced = true;
      } else {
        outcome.failed = true;
      }
    }
    return dialogs_.Show(box);
  }
  void Beep() override { dialogs_.Beep(); }
  FileChoice SelectFile(const FileDialogRequest& request) override {
    return dialogs_.SelectFile(request);
  }

  ProcessingOutcome outcome;

 private:
  UserDialogs& dialogs_;
};

std::uint8_t OptionBit(int index) { return static_cast<std::uint8_t>(1u << index); }

bool IsOption(int index) { return index >= 0 && index < kOptionCount; }

std::string FileNamePart(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

}  // namespace

PlotmeterLogic::PlotmeterLogic() { display_.DisplayOptions = kDefaultDisplayOptions; }

LoadOutcome PlotmeterLogic::Load(const std::string& path, UserDialogs& dialogs) {
  state_ = ProcessingState{};
  SetOptionAvailable(kOptionLines, false);
  SetOptionAvailable(kOptionPoints, false);
  datSrcLbl_ = FileNamePart(path);

  LoadOutcome outcome;
  const ReadResult read = ReadDataFile(survey_, path);
  if (!CheckLoadedData(survey_, read, dialogs)) return outcome;
  if (!ResolvePoints(survey_, state_, kFirstPass, dialogs)) {
    ResetLoadedFile(survey_);
    return outcome;
  }
  outcome.loaded = true;
  state_.DataState |= kDataPresent;
  MakeOptionsAvailableByData();
  outcome.processing = Reprocess(dialogs);
  return outcome;
}

bool PlotmeterLogic::Save(const std::string& path, UserDialogs& dialogs) {
  if (!WriteDataFile(survey_, path, dialogs)) return false;
  survey_.CurrentFileName = path;
  datSrcLbl_ = FileNamePart(path);
  return true;
}

ProcessingOutcome PlotmeterLogic::Reprocess(UserDialogs& dialogs) {
  OutcomeDialogs observed(dialogs);
  RunProcessing(survey_, state_, display_, scene_, observed);
  return observed.outcome;
}

bool PlotmeterLogic::SetAreaUnit(int index) {
  if (index < 0 || index >= kAreaUnitCount) return false;
  display_.AreaUnitCmb.index = index;
  const bool areaShown = (state_.ProcessState & kAreaComputed) && !state_.BadPerimeter &&
                         FindMainPerimeter(survey_) >= 0;
  if (areaShown) {
    ComputeArea(survey_, state_, index);
    ShowArea(survey_, state_, display_);
  }
  return true;
}

bool PlotmeterLogic::SetSegment(int index) {
  if (index < 0 || index >= static_cast<int>(state_.SegmentAreas.size())) return false;
  display_.AreaSgmtCmb.index = index;
  // Only a list on show can be changed by the user.
  if (display_.AreaSgmtCmb.visible) ShowArea(survey_, state_, display_);
  return true;
}

ProcessingOutcome PlotmeterLogic::ClickOption(int index, bool ticked, UserDialogs& dialogs) {
  if (!IsOption(index)) return {};
  ticked_[index] = ticked;
  if (ticked && enabled_[index]) {
    display_.DisplayOptions |= OptionBit(index);
  } else {
    display_.DisplayOptions &= static_cast<std::uint8_t>(~OptionBit(index));
  }
  return Reprocess(dialogs);
}

void PlotmeterLogic::SetOptionAvailable(int index, bool available) {
  if (!IsOption(index)) return;
  enabled_[index] = available;
  if (!ticked_[index]) return;
  if (available) {
    display_.DisplayOptions |= OptionBit(index);
  } else {
    display_.DisplayOptions &= static_cast<std::uint8_t>(~OptionBit(index));
  }
}

void PlotmeterLogic::MakeOptionsAvailableByData() {
  SetOptionAvailable(kOptionLines, survey_.FindDataset(kDatasetLine) >= 0);
  SetOptionAvailable(kOptionPoints, survey_.FindDataset(kDatasetPoints) >= 0);
}

std::string PlotmeterLogic::AreaUnitText() const {
  const ComboState& units = display_.AreaUnitCmb;
  if (units.visible && units.index >= 0 && units.index < static_cast<int>(units.items.size())) {
    return units.items[units.index];
  }
  if (display_.AreaUnitLbl.visible) return display_.AreaUnitLbl.text;
  return "";
}

}  // namespace plotmeter
