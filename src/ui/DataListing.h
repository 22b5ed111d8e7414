// The logic of the "Data Listing" window (`DataList`): the survey as a fixed-column text
// listing, either from the processed survey in memory or from the data file itself.
//
// The window's check boxes are plain members; `Refresh` rebuilds the settings labels, the
// heading line (`LstHdrLbl`) and every line of the list box (`DataLst`) from them. Lines
// keep the trailing blanks that their columns make, so that a fixed-pitch list lines up.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Survey.h"

namespace plotmeter {

// `ShowColumns` bits: the column groups of the `ShowCkB` boxes.
inline constexpr std::uint8_t kShowInput = 0x01;    // "Input Data"
inline constexpr std::uint8_t kShowXY = 0x02;       // "X/Y Co-ords"
inline constexpr std::uint8_t kShowBearing = 0x04;  // "Bearing/Length"
inline constexpr std::uint8_t kShowGps = 0x08;      // "GPS Co-ords"
inline constexpr std::uint8_t kShowAltGps = 0x10;   // "Alternate GPS Co-ords"
inline constexpr std::uint8_t kShowAll = 0x1F;

// Indexes of the `IncludeCkB` boxes.
inline constexpr int kIncludeMain = 0;          // "Main Perimeter"
inline constexpr int kIncludeSubDivision = 1;   // "Sub-division"
inline constexpr int kIncludeIntermediate = 2;  // "Intermediate Points"
inline constexpr int kIncludeLines = 3;         // "Other Lines"
inline constexpr int kIncludePoints = 4;        // "Stand Alone Points"
inline constexpr int kIncludeCount = 5;
inline constexpr std::uint8_t kIncludeAll = (1 << kIncludeCount) - 1;  // every box ticked

// The first line of the listing of a data file that fails the listing's own checks; the
// reason follows on the next line.
inline constexpr const char* kAbortedBadFile = "Aborted - Bad File";

// The settings labels above the listing, caption and value.
struct SettingLabel {
  std::string caption;
  std::string value;
};

class DataListLogic;

// Where the lines of a listing go as they are made, for a listing too long to be held
// (plotmeter-cli prints them).
class ListingOutput {
 public:
  virtual ~ListingOutput() = default;
  // Called once, before any line: the settings labels and the heading line are set.
  virtual void Begin(const DataListLogic& list) = 0;
  virtual void Line(std::string_view line) = 0;
};

class DataListLogic {
 public:
  // As the window opens: only "Input Data" shown, every dataset and point included,
  // "Processed" cleared.
  std::uint8_t ShowColumns = kShowInput;
  std::array<bool, kIncludeCount> IncludeCkB{true, true, true, true, true};
  bool ProcdCkB = false;

  // Rebuilds everything from the survey. With "Processed" cleared the data file named by
  // `CurrentFileName` is read again line by line and only its input columns are listed,
  // values as typed; with it ticked the processed survey in memory is listed with every
  // chosen column group. A listing too long for the memory left shows as the listing of a
  // file that cannot be read.
  void Refresh(const Survey& survey);
  // As `Refresh`, but the listing from the file lists `fileText`, the data file's text as
  // the reader takes it (read once by the caller), and every line goes to `output` as it
  // is made instead of to `DataLst`, which stays empty.
  void Write(const Survey& survey, std::string_view fileText, ListingOutput& output);

  // "Unit of Measure:", "File Tag:" and "Mag Decl'n:" with their values.
  const std::array<SettingLabel, 3>& SettingLabels() const { return settings_; }
  const std::string& LstHdrLbl() const { return heading_; }
  const std::vector<std::string>& DataLst() const { return lines_; }

  // The "Edit" view of list line `index`: the whole of its input as typed, one value a
  // line. Nothing (nullopt) for a line that is not a point, or no line at all.
  std::optional<std::string> EditText(int index) const;

 private:
  class Lines;
  class KeptLines;
  class HandedLines;
  class FileLines;
  struct TextSpan {
    std::size_t offset = 0, size = 0;
  };

  // Sets the settings labels and empties the list.
  void Start(const Survey& survey);
  void ListProcessed(const Survey& survey, Lines& lines);
  // The listing from the file's text; no text for a file that could not be read.
  void ListFile(const std::string_view* text, Lines& lines);

  std::array<SettingLabel, 3> settings_;
  std::string heading_;
  std::vector<std::string> lines_;
  // The typed input of the point lines, held together in one text: list line i shows the
  // point whose four values stand at `inputs_[lineInput_[i]]` (-1 for other lines).
  std::string inputText_;
  std::vector<std::array<TextSpan, 4>> inputs_;
  std::vector<int> lineInput_;
};

}  // namespace plotmeter
