#include "cli/Commands.h"
#include "cli/FileBatch.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

int RunCheck(const CheckOptions& options, std::ostream& out, std::ostream& err) {
  return RunBatch(options.files, options.yes, out, err,
                  [](const std::string& file, FileOutput& output, CliDialogs& dialogs) {
                    PlotmeterLogic logic;
                    if (!logic.Load(file, dialogs).Succeeded()) return kStatusFailed;
                    output.Line("OK");
                    return kStatusOk;
                  });
}

}  // namespace plotmeter
