#include <functional>

#include "cli/Commands.h"
#include "cli/FileBatch.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

namespace {

int CheckFile(const std::string& file, FileOutput& output, CliDialogs& dialogs) {
  PlotmeterLogic logic;
  if (!logic.Load(file, dialogs).Succeeded()) return kStatusFailed;
  output.Line("OK");
  return kStatusOk;
}

}  // namespace

int RunCheck(const CheckOptions& options, std::ostream& out, std::ostream& err) {
  return RunBatch(options.files, options.yes, out, err, CheckFile);
}

}  // namespace plotmeter
