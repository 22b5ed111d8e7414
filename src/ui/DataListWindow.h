// The "Data Listing" window (`DataList`) without a toolkit: its check boxes, what each
// click does to the listing, the "Edit" view of a line and the text that "Copy" puts on
// the clipboard. The window reads the survey and never changes it.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "model/Survey.h"
#include "model/UserDialogs.h"
#include "ui/DataListing.h"

namespace plotmeter {

inline constexpr int kShowCount = 5;

// Captions of the `ShowCkB` boxes, box i owning `ShowColumns` bit 2 to the power i, and of
// the `IncludeCkB` boxes.
inline constexpr std::array<const char*, kShowCount> kShowCaptions = {
    "Input Data", "X/Y Co-ords", "Bearing/Length", "GPS Co-ords", "Alternate GPS Co-ords"};
inline constexpr std::array<const char*, kIncludeCount> kIncludeCaptions = {
    "Main Perimeter", "Sub-division", "Intermediate Points", "Other Lines", "Stand Alone Points"};

class DataListWindowLogic {
 public:
  // The window as it opens: only "Input Data" shown, every dataset included, "Processed"
  // cleared, and the lines built from the data file as last saved.
  explicit DataListWindowLogic(const Survey& survey);

  bool ShowCkB(int index) const;
  bool IncludeCkB(int index) const;
  bool ProcdCkB() const { return list_.ProcdCkB; }

  // A box clicked: its state follows the tick and the lines are built again at once.
  // Indexes outside the boxes change nothing.
  void ClickShow(int index, bool ticked);
  void ClickInclude(int index, bool ticked);
  void ClickProcessed(bool ticked);

  const DataListLogic& listing() const { return list_; }

  // "Edit" (or a double click) on list line `line`: the box that shows the whole of that
  // point's input as typed; only a value beyond a thousand characters is cut. Nothing
  // for a line that is not a point, or no line (-1).
  std::optional<MessageBox> EditBox(int line) const;
  // Shows the "Edit" box of `line` when it has one; false when nothing was shown.
  bool Edit(int line, UserDialogs& dialogs) const;

  // "Copy": the heading and every line, one a line, without the blanks that pad the
  // last column, so that the listing pastes into a report or a spreadsheet.
  std::string CopyText() const;

 private:
  void Refresh();

  const Survey& survey_;
  DataListLogic list_;
};

}  // namespace plotmeter
