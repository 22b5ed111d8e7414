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

// The first line of the listing of a data file that fails the listing's own checks; the
// reason follows on the next line.
inline constexpr const char* kAbortedBadFile = "Aborted - Bad File";

// A point's type code and flag letters as the listing shows them: "X", "XL", "GA", "BIs".
std::string PointTypeText(const Point& point);

// The settings labels above the listing, caption and value.
struct SettingLabel {
  std::string caption;
  std::string value;
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
  // chosen column group.
  void Refresh(const Survey& survey);

  // "Unit of Measure:", "File Tag:" and "Mag Decl'n:" with their values.
  const std::array<SettingLabel, 3>& SettingLabels() const { return settings_; }
  const std::string& LstHdrLbl() const { return heading_; }
  const std::vector<std::string>& DataLst() const { return lines_; }

  // The "Edit" view of list line `index`: the whole of its input as typed, one value a
  // line. Nothing (nullopt) for a line that is not a point, or no line at all.
  std::optional<std::string> EditText(int index) const;

 private:
  class FileLines;
  struct TextSpan {
    std::size_t offset = 0, size = 0;
  };

  void ListProcessed(const Survey& survey);
  void ListFile(const std::string& path);
  void AddLine(std::string line);
  // A point line and its typed input: X or bearing, Y or length, GPS longitude, latitude.
  void AddPointLine(std::string line, const std::array<std::string_view, 4>& input);

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
