#include "cli/Commands.h"
#include "cli/FileBatch.h"
#include "ui/DataListing.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

int RunList(const ListOptions& options, std::ostream& out, std::ostream& err) {
  return RunBatch({options.file}, options.yes, out, err,
                  [&](const std::string& file, FileOutput& output, CliDialogs& dialogs) {
                    PlotmeterLogic logic;
                    const LoadOutcome outcome = logic.Load(file, dialogs);
                    // As in the window, the listing from the file still shows a refused
                    // file, with the reason it is bad.
                    DataListLogic list;
                    list.ProcdCkB = options.processed;
                    list.ShowColumns = options.showColumns;
                    for (int box = 0; box < kIncludeCount; ++box) {
                      list.IncludeCkB[box] = (options.includeSets >> box) & 1;
                    }
                    list.Refresh(logic.survey());
                    for (const SettingLabel& label : list.SettingLabels()) {
                      output.Line(label.caption + " " + label.value);
                    }
                    output.Line(list.LstHdrLbl());
                    for (const std::string& line : list.DataLst()) output.Line(line);
                    return outcome.Succeeded() ? kStatusOk : kStatusFailed;
                  });
}

}  // namespace plotmeter
