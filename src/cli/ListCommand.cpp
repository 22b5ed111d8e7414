#include <functional>

#include "cli/Commands.h"
#include "cli/FileBatch.h"
#include "datafile/DataFileReader.h"
#include "ui/DataListing.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

namespace {

// Prints the settings labels and the heading, then each line as it is made: a long listing
// is never held whole.
class PrintedListing : public ListingOutput {
 public:
  explicit PrintedListing(FileOutput& output) : output_(output) {}

  void Begin(const DataListLogic& list) override {
    for (const SettingLabel& label : list.SettingLabels()) {
      output_.Line(label.caption + " " + label.value);
    }
    output_.Line(list.LstHdrLbl());
  }
  void Line(std::string_view line) override { output_.Line(line); }

 private:
  FileOutput& output_;
};

// Read once: the load and the listing both work from the text, so that a pipe or a FIFO
// is listed as well as a file.
int ListFile(const ListOptions& options, const std::string& path, FileOutput& output,
             CliDialogs& dialogs) {
  output.ShowControlsHarmlessly(options.terminal);
  std::string text;
  const ReadResult read = ReadDataFileText(path, text);
  PlotmeterLogic logic;
  const LoadOutcome outcome = logic.LoadText(path, read, text, dialogs);
  // A file that could not be read, or held no header, has nothing to list; its box has
  // said why. As in the window, the listing from the file still shows any other refused
  // file, with the reason it is bad.
  if (outcome.readFault != kReadCannotOpen) {
    DataListLogic list;
    list.ProcdCkB = options.processed;
    list.ShowColumns = options.showColumns;
    for (int box = 0; box < kIncludeCount; ++box) {
      list.IncludeCkB[box] = (options.includeSets >> box) & 1;
    }
    PrintedListing printed(output);
    list.Write(logic.survey(), text, printed);
  }
  return outcome.Succeeded() ? kStatusOk : kStatusFailed;
}

}  // namespace

int RunList(const ListOptions& options, std::ostream& out, std::ostream& err) {
  return RunBatch({options.file}, options.yes, out, err,
                  std::bind_front(ListFile, std::cref(options)));
}

}  // namespace plotmeter
