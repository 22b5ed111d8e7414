#include "cli/Commands.h"
#include "cli/FileBatch.h"
#include "datafile/DataFileReader.h"
#include "geometry/ResolvePoints.h"
#include "ui/DataListing.h"
#include "ui/PlotmeterLogic.h"

namespace plotmeter {

namespace {

// The file read once: the load and the listing both work from its text, so that a pipe or
// a FIFO is listed as well as a file.
struct ReadFile {
  ReadResult read;  // the reading of the text, or why it could not be read
  std::string text;
};

// What `PlotmeterLogic::Load` does, from the text already read: the read, the load check,
// point resolution (a failed resolution rejects the file), the boxes made available by the
// data, and processing.
LoadOutcome LoadFromText(PlotmeterLogic& logic, const std::string& path, ReadFile& file,
                         UserDialogs& dialogs) {
  Survey& survey = logic.survey();
  survey.CurrentFileName = path;
  if (file.read.fault == 0) file.read = ReadDataText(survey, file.text);
  LoadOutcome outcome;
  if (!CheckLoadedData(survey, file.read, dialogs)) return outcome;
  if (!ResolvePoints(survey, logic.state(), kFirstPass, dialogs)) {
    ResetLoadedFile(survey);
    return outcome;
  }
  outcome.loaded = true;
  logic.state().DataState |= kDataPresent;
  logic.SetOptionAvailable(kOptionLines, survey.FindDataset(kDatasetLine) >= 0);
  logic.SetOptionAvailable(kOptionPoints, survey.FindDataset(kDatasetPoints) >= 0);
  outcome.processing = logic.Reprocess(dialogs);
  return outcome;
}

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

}  // namespace

int RunList(const ListOptions& options, std::ostream& out, std::ostream& err) {
  return RunBatch({options.file}, options.yes, out, err,
                  [&](const std::string& path, FileOutput& output, CliDialogs& dialogs) {
                    output.ShowControlsHarmlessly(options.terminal);
                    ReadFile file;
                    file.read = ReadDataFileText(path, file.text);
                    PlotmeterLogic logic;
                    const LoadOutcome outcome = LoadFromText(logic, path, file, dialogs);
                    // A file that could not be read, or held no header, has nothing to list;
                    // its box has said why. As in the window, the listing from the file still
                    // shows any other refused file, with the reason it is bad.
                    if (file.read.fault != 1) {
                      DataListLogic list;
                      list.ProcdCkB = options.processed;
                      list.ShowColumns = options.showColumns;
                      for (int box = 0; box < kIncludeCount; ++box) {
                        list.IncludeCkB[box] = (options.includeSets >> box) & 1;
                      }
                      PrintedListing printed(output);
                      list.Write(logic.survey(), file.text, printed);
                    }
                    return outcome.Succeeded() ? kStatusOk : kStatusFailed;
                  });
}

}  // namespace plotmeter
