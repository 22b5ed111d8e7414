#include "ui/EntryChecks.h"

#include "model/GpsText.h"
#include "model/ValueText.h"

namespace plotmeter {

namespace {

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

// The sub-unit part of a length ("6" of "5\6" feet), or nothing when there is none.
std::optional<double> SubUnitValue(const Survey& survey, std::string_view text) {
  std::size_t split = text.find(survey.SubValueSeparator);
  if (survey.UnitOfMeasure == kUnitFeet) split = std::min(split, text.find('\''));
  if (split == std::string_view::npos) return std::nullopt;
  std::string_view sub = Trim(text.substr(split + 1));
  if (!sub.empty() && sub.back() == '"') sub = Trim(sub.substr(0, sub.size() - 1));
  return ReadNumber(sub);
}

std::uint8_t NotValueStatus(const Survey& survey, std::string_view text) {
  return text.find(survey.SubValueSeparator) != std::string_view::npos ? kEntrySeparator
                                                                       : kEntryInvalid;
}

std::uint8_t LengthStatus(Survey& survey, std::string_view text) {
  ParseLengthText(survey, text);
  if (survey.ValueMarks & kValueNotNumber) return NotValueStatus(survey, text);
  int perUnit = SubUnitsPerUnit(survey.UnitOfMeasure);
  std::optional<double> sub = perUnit > 0 ? SubUnitValue(survey, text) : std::nullopt;
  return sub && *sub >= perUnit ? kEntryInvalid : 0;
}

std::uint8_t BearingStatus(Survey& survey, std::string_view text) {
  ParseAngleText(survey, text);
  if (survey.ValueMarks & kValueOver60) return kEntryOver60;
  if (survey.ValueMarks & kValueNotNumber) return NotValueStatus(survey, text);
  return 0;
}

std::uint8_t GpsStatus(const Survey& survey, EntryKind kind, std::string_view text,
                       char hemisphere) {
  std::string withLetter = hemisphere + std::string(text);
  bool good = kind == EntryKind::GpsLatitude ? ParseGpsLatitude(survey, withLetter).has_value()
                                             : ParseGpsLongitude(survey, withLetter).has_value();
  if (good) return 0;
  if (ReadAngle(text, survey.DegreeChar, survey.SubValueSeparator, true).over60) {
    return kEntryOver60;
  }
  return NotValueStatus(survey, text);
}

std::string CodeText(char separator) {
  return std::to_string(static_cast<unsigned char>(separator));
}

}  // namespace

std::uint8_t CheckEntryText(Survey& survey, EntryKind kind, std::string_view text,
                            char hemisphere) {
  if (Trim(text).empty()) return 0;
  std::uint8_t marks = survey.ValueMarks;
  survey.ValueMarks = 0;
  std::uint8_t status = 0;
  switch (kind) {
    case EntryKind::Length:
      status = LengthStatus(survey, text);
      break;
    case EntryKind::Bearing:
      status = BearingStatus(survey, text);
      break;
    case EntryKind::GpsLongitude:
    case EntryKind::GpsLatitude:
      status = GpsStatus(survey, kind, Trim(text), hemisphere);
      break;
  }
  survey.ValueMarks = marks;
  return status;
}

std::optional<MessageBox> EntryFaultBox(std::uint8_t status, int unitOfMeasure) {
  MessageBox box{.title = kInvalidEntryTitle, .icon = Icon::Exclamation};
  if (status & kEntryOver60) {
    box.text = "Please correct - Minutes and Seconds values must be less than 60";
  } else if ((status & kEntrySeparator) && unitOfMeasure == kUnitNotSpecified) {
    box.text = "Please correct - Units separator found, invalid with 'Unspecified' Unit of Measure";
  } else if (status & kEntrySeparator) {
    box.text =
        "Please correct - Deg/Min/Sec, feet/inch, etc. separator must match character set for file";
  } else if (status & kEntryErrorBits) {
    box.text = "Please check entries for errors and correct";
    box.icon = Icon::Critical;
  } else {
    return std::nullopt;
  }
  return box;
}

std::vector<std::string> UnitListItems(char subValueSeparator) {
  std::vector<std::string> items;
  for (int unit = 0; unit < kUnitCount; ++unit) {
    std::string item(UnitName(unit));
    if (SubUnitsPerUnit(unit) > 0) {
      item.append(1, '[').append(1, subValueSeparator).append(SubUnitName(unit)).append(1, ']');
    }
    items.push_back(item);
  }
  return items;
}

std::string LengthHint(int unitOfMeasure, char subValueSeparator) {
  std::string code = CodeText(subValueSeparator);
  std::string lead = "May also use '" + code + "' separator to input ";
  switch (unitOfMeasure) {
    case kUnitFeet:
      return lead + "inches, for example '5" + code + "6' for '5 foot 6 inches'.";
    case kUnitMiles:
      return lead + "yards, for example '2" + code + "880' for '2 miles 880 yards'.";
    case kUnitChains:
      return lead + "links, for example '5" + code + "50' for '5 chains 50 links'.";
    default:
      return "";
  }
}

std::string AngleHint(char subValueSeparator) {
  std::string code = CodeText(subValueSeparator);
  return "May also use '" + code + "' separator to input 'min' && 'sec' values, for example '27" +
         code + "42" + code + "50' for '27 degrees 42 minutes 50 seconds'.";
}

}  // namespace plotmeter
