// The status bytes that pass state between the processing stages and the display.
// Owned by the window logic beside the survey; bit values are the program's own.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace plotmeter {

// Data-state byte.
inline constexpr std::uint8_t kDataPresent = 0x02;
// Processing-state byte.
inline constexpr std::uint8_t kPassComplete = 0x08;
inline constexpr std::uint8_t kTargetRepassNeeded = 0x40;
inline constexpr std::uint8_t kAreaComputed = 0x80;
// GPS-state byte.
inline constexpr std::uint8_t kGpsRepassNeeded = 0x10;
// Error-state byte.
inline constexpr std::uint8_t kErrorInvalidData = 0x02;
inline constexpr std::uint8_t kErrorOver60 = 0x04;
inline constexpr std::uint8_t kErrorUnitsSeparator = 0x10;
inline constexpr std::uint8_t kErrorResequenced = 0x40;  // the whole byte equal to it
inline constexpr std::uint8_t kErrorExitMask = 0xE8;     // applied at failure exits
// Display-request byte.
inline constexpr std::uint8_t kRedrawPending = 0x40;
// Area-state byte.
inline constexpr std::uint8_t kAreaSegmentCount = 0x01;  // whole plot and two parts computed
inline constexpr std::uint8_t kSegmentsSwapped = 0x02;

// Pass modes of `ResolvePoints`.
inline constexpr std::uint8_t kFirstPass = 0;
inline constexpr std::uint8_t kRepeatPass = 1;
inline constexpr std::uint8_t kDependentPass = 128;

struct ProcessingState {
  std::uint8_t DataState = 0;
  std::uint8_t ProcessState = 0;
  std::uint8_t GpsState = 0;
  std::uint8_t ErrorState = 0;
  std::uint8_t DisplayRequest = 0;
  std::uint8_t AreaState = 0;

  // Whole plot, first part, second part, in the chosen area unit.
  std::array<double, 3> SegmentAreas{};
  // The area was worked out from GPS positions (GPS-only processing): "Area (GPS)".
  bool GpsArea = false;
  // The crossing test found lines that cross: the plot is drawn perimeter-only.
  bool BadPerimeter = false;
  // The point indexes outlining the two parts of a divided plot, each in order.
  std::array<std::vector<int>, 2> PartOutlines;

  // The point picked on the plot: an index in `Points` (-1 none) and its dataset
  // number (0 none).
  int SelectedPoint = -1;
  int SelectedDataset = 0;

  void ResetSelection() {
    SelectedPoint = -1;
    SelectedDataset = 0;
  }
};

}  // namespace plotmeter
