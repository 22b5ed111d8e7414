#include <functional>

#include "cli/Commands.h"
#include "cli/FileBatch.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

namespace {

int SaveFile(const SaveOptions& options, const std::string& file, FileOutput&,
             CliDialogs& dialogs) {
  PlotmeterLogic logic;
  // A refused file leaves nothing to write; its box has said why.
  if (!logic.Load(file, dialogs).loaded) return kStatusFailed;
  logic.SetWriterOptions(static_cast<std::uint8_t>(options.writerOptions));
  return logic.SaveTo(options.out, dialogs) ? kStatusOk : kStatusFailed;
}

}  // namespace

int RunSave(const SaveOptions& options, std::ostream& out, std::ostream& err) {
  return RunBatch({options.file}, options.yes, out, err,
                  std::bind_front(SaveFile, std::cref(options)));
}

}  // namespace plotmeter
