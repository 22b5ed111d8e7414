#include "ui/DataListWindow.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace plotmeter {

namespace {

// A value longer than anything typed by hand (a damaged file) is shown in part, marked
// as the listing marks a cut value, so that the box stays readable and quick to show.
constexpr std::size_t kEditValueLimit = 1000;

std::string CutLongValue(std::string_view line) {
  const std::size_t colon = line.find(": ");
  const std::size_t value = colon == std::string_view::npos ? 0 : colon + 2;
  if (line.size() <= value + kEditValueLimit) return std::string(line);
  return std::string(line.substr(0, value + kEditValueLimit)) + "+ (" +
         std::to_string(line.size() - value) + " characters)";
}

// The "Caption: value" lines of the input, each value cut to the limit.
std::string CutLongValues(std::string_view input) {
  std::string text;
  for (;;) {
    const std::size_t end = input.find('\n');
    text += CutLongValue(input.substr(0, end));
    if (end == std::string_view::npos) return text;
    text += '\n';
    input.remove_prefix(end + 1);
  }
}

bool IsBox(int index, int count) { return index >= 0 && index < count; }

std::uint8_t ShowBit(int index) { return static_cast<std::uint8_t>(1u << index); }

std::string_view WithoutTrailingBlanks(std::string_view line) {
  const std::size_t end = line.find_last_not_of(' ');
  return end == std::string_view::npos ? std::string_view() : line.substr(0, end + 1);
}

// The point number that opens a point line, right-aligned in its first three characters.
std::string PointNumberOf(std::string_view line) {
  std::string_view number = line.substr(0, 3);
  const std::size_t first = number.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(number.substr(first));
}

}  // namespace

DataListWindowLogic::DataListWindowLogic(const Survey& survey) : survey_(survey) { Refresh(); }

bool DataListWindowLogic::ShowCkB(int index) const {
  return IsBox(index, kShowCount) && (list_.ShowColumns & ShowBit(index)) != 0;
}

bool DataListWindowLogic::IncludeCkB(int index) const {
  return IsBox(index, kIncludeCount) && list_.IncludeCkB[index];
}

void DataListWindowLogic::ClickShow(int index, bool ticked) {
  if (!IsBox(index, kShowCount)) return;
  if (ticked) {
    list_.ShowColumns |= ShowBit(index);
  } else {
    list_.ShowColumns &= static_cast<std::uint8_t>(~ShowBit(index));
  }
  Refresh();
}

void DataListWindowLogic::ClickInclude(int index, bool ticked) {
  if (!IsBox(index, kIncludeCount)) return;
  list_.IncludeCkB[index] = ticked;
  Refresh();
}

void DataListWindowLogic::ClickProcessed(bool ticked) {
  list_.ProcdCkB = ticked;
  Refresh();
}

void DataListWindowLogic::Refresh() { list_.Refresh(survey_); }

std::optional<MessageBox> DataListWindowLogic::EditBox(int line) const {
  const std::optional<std::string> input = list_.EditText(line);
  if (!input) return std::nullopt;
  return MessageBox{
      .title = "Input Data",
      .text = "Point " + PointNumberOf(list_.DataLst()[line]) + "\n" + CutLongValues(*input),
      .icon = Icon::Information};
}

bool DataListWindowLogic::Edit(int line, UserDialogs& dialogs) const {
  const std::optional<MessageBox> box = EditBox(line);
  if (box) dialogs.Show(*box);
  return box.has_value();
}

std::string DataListWindowLogic::CopyText() const {
  std::string text(WithoutTrailingBlanks(list_.LstHdrLbl()));
  text += '\n';
  for (const std::string& line : list_.DataLst()) {
    text += WithoutTrailingBlanks(line);
    text += '\n';
  }
  return text;
}

}  // namespace plotmeter
