#include <functional>
#include <utility>

#include "cli/Commands.h"
#include "cli/ExportFormats.h"
#include "cli/FileBatch.h"
#include "datafile/DataFileWriter.h"
#include "datafile/SafeFile.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

namespace {

void ShowNotTiedToGps(UserDialogs& dialogs) {
  Alert(dialogs, MessageBox{.title = "Export Abort",
                            .text = "The survey is not tied to GPS: none of its points has GPS "
                                    "values.\nGeoJSON and KML need them, through a GPS link "
                                    "point; --to csv exports the plane co-ordinates.",
                            .icon = Icon::Critical,
                            .buttons = Buttons::Ok,
                            .defaultButton = Button::Ok});
}

// Replaces `path` whole, or leaves it as it was and says so, with the system's reason, as a
// failed save does.
bool WriteDocument(const std::string& path, const std::string& text, UserDialogs& dialogs) {
  const SaveResult saved = ReplaceFileSafely(path, text);
  if (saved.saved) return true;
  Alert(dialogs, MessageBox{.title = "Write File Abort",
                            .text = WriteFaultMessage(kWriteCannotOpen),
                            .icon = Icon::Critical,
                            .buttons = Buttons::Ok,
                            .defaultButton = Button::Ok,
                            .detail = saved.reason.empty() ? "" : path + ": " + saved.reason});
  return false;
}

// Loads one file and keeps what its export needs.
int CollectFile(const ExportOptions& options, std::vector<ExportedSurvey>& surveys,
                const std::string& file, FileOutput&, CliDialogs& dialogs) {
  PlotmeterLogic logic;
  if (!logic.Load(file, dialogs).Succeeded()) return kStatusFailed;
  ExportedSurvey survey =
      CollectExport(logic.survey(), logic.state(), logic.display().AreaUnitCmb.index);
  if (NeedsGps(options.format) && !survey.tiedToGps) {
    ShowNotTiedToGps(dialogs);
    return kStatusFailed;
  }
  if (options.files.size() > 1) survey.file = file;
  surveys.push_back(std::move(survey));
  return kStatusOk;
}

}  // namespace

int RunExport(const ExportOptions& options, std::ostream& out, std::ostream& err) {
  std::vector<ExportedSurvey> surveys;
  const int status = RunBatch(options.files, options.yes, out, err,
                              std::bind_front(CollectFile, std::cref(options), std::ref(surveys)));
  // Nothing to export leaves OUT untouched.
  if (surveys.empty()) return status;
  const std::string text = ExportText(options.format, surveys);
  if (options.out.empty()) {
    out << text << std::flush;
    return status;
  }
  CliDialogs dialogs(err, options.yes);
  return WriteDocument(options.out, text, dialogs) ? status : kStatusFailed;
}

}  // namespace plotmeter
