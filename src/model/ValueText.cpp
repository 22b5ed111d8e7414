#include "model/ValueText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <system_error>

namespace plotmeter {

namespace {

constexpr double kMinutesPerDegree = 60;
constexpr double kSecondsPerDegree = 3600;
constexpr double kFullCircle = 360;
constexpr char kCode248 = '\xF8';
constexpr char kApostrophe = '\'';
constexpr char kDoubleQuote = '"';

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string ToLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

// Digits with at most one point and at least one digit, then an optional exponent.
bool IsPlainNumber(std::string_view text) {
  std::size_t i = 0;
  int digits = 0;
  while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  }
  if (digits == 0) return false;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    std::size_t exponentStart = i;
    while (i < text.size() && IsDigit(text[i])) ++i;
    if (i == exponentStart) return false;
  }
  return i == text.size();
}

std::optional<double> ReadUnsigned(std::string_view text) {
  if (!IsPlainNumber(text)) return std::nullopt;
  double value = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

// A minutes or seconds part: no sign, and an empty part counts as 0.
std::optional<double> ReadSubPart(std::string_view text) {
  text = Trim(text);
  if (text.empty()) return 0.0;
  return ReadUnsigned(text);
}

bool StartsNegative(std::string_view text) {
  text = Trim(text);
  return !text.empty() && text.front() == '-';
}

// Where a marker stands in the text and how long it is (a word marker counts whole).
struct Marker {
  std::size_t pos = std::string_view::npos;
  std::size_t length = 0;
  bool found() const { return pos != std::string_view::npos; }
  std::size_t end() const { return pos + length; }
};

// The first marker of `symbols`, then of `words`, that occurs at or after `from`; the
// order of the lists decides, not the position in the text.
template <std::size_t S, std::size_t W>
Marker FindMarker(std::string_view text, const std::string& lower, std::size_t from,
                  const std::array<char, S>& symbols,
                  const std::array<std::string_view, W>& words) {
  for (char symbol : symbols) {
    std::size_t pos = text.find(symbol, from);
    if (pos != std::string_view::npos) return {pos, 1};
  }
  for (std::string_view word : words) {
    std::size_t pos = lower.find(word, from);
    if (pos != std::string::npos) return {pos, word.size()};
  }
  return {};
}

// The texts of the three parts of an angle; `valid` is false when something stands
// where no part may.
struct AngleTexts {
  std::string_view degrees, minutes, seconds;
  bool valid = true;
};

AngleTexts SplitAtMarkers(std::string_view text, Marker degrees) {
  static constexpr std::array<std::string_view, 3> kMinuteWords = {"minutes", "min", "m"};
  static constexpr std::array<std::string_view, 3> kSecondWords = {"seconds", "sec", "s"};
  std::string lower = ToLower(text);
  AngleTexts parts;
  parts.degrees = text.substr(0, degrees.pos);
  std::size_t rest = degrees.end();
  Marker minutes = FindMarker(text, lower, rest, std::array<char, 1>{kApostrophe}, kMinuteWords);
  if (minutes.found()) {
    parts.minutes = text.substr(rest, minutes.pos - rest);
    rest = minutes.end();
  }
  Marker seconds = FindMarker(text, lower, rest, std::array<char, 1>{kDoubleQuote}, kSecondWords);
  if (seconds.found()) {
    parts.seconds = text.substr(rest, seconds.pos - rest);
    parts.valid = Trim(text.substr(seconds.end())).empty();
  } else if (minutes.found()) {
    parts.seconds = text.substr(rest);
  } else {
    parts.minutes = text.substr(rest);
  }
  return parts;
}

// The next separator from `from`; with blanks as separators a run of them counts as one.
Marker FindSeparator(std::string_view text, std::size_t from, char separator, bool blanks) {
  if (!blanks) return {text.find(separator, from), 1};
  std::size_t pos = from;
  while (pos < text.size() && !IsBlank(text[pos])) ++pos;
  if (pos == text.size()) return {};
  std::size_t end = pos;
  while (end < text.size() && IsBlank(text[end])) ++end;
  return {pos, end - pos};
}

AngleTexts SplitAtSeparators(std::string_view text, char separator, bool blanks) {
  AngleTexts parts;
  Marker first = FindSeparator(text, 0, separator, blanks);
  if (!first.found()) {
    parts.degrees = text;
    return parts;
  }
  parts.degrees = text.substr(0, first.pos);
  Marker second = FindSeparator(text, first.end(), separator, blanks);
  if (!second.found()) {
    parts.minutes = text.substr(first.end());
    return parts;
  }
  parts.minutes = text.substr(first.end(), second.pos - first.end());
  parts.seconds = text.substr(second.end());
  return parts;
}

AngleTexts SplitAngle(std::string_view text, char degreeChar, char separator, bool blanksSeparate) {
  static constexpr std::array<std::string_view, 3> kDegreeWords = {"degrees", "deg", "d"};
  std::string lower = ToLower(text);
  Marker degrees = FindMarker(text, lower, 0,
                              std::array<char, 3>{degreeChar, kCode248, kDegreeSign}, kDegreeWords);
  if (degrees.found()) return SplitAtMarkers(text, degrees);
  if (text.find(separator) != std::string_view::npos) {
    return SplitAtSeparators(text, separator, separator == ' ');
  }
  return SplitAtSeparators(text, separator, blanksSeparate);
}

// Brings an angle into [0, 360). The remainder is exact, as repeated subtraction is
// for any angle it can reach, and it does not hang on huge values.
double NormaliseDegrees(double angle) {
  angle = std::fmod(angle, kFullCircle);
  if (angle < 0) angle += kFullCircle;
  if (angle >= kFullCircle) angle = 0;  // a tiny negative angle rounds up to 360
  return angle == 0 ? 0.0 : angle;      // no -0
}

bool IsCompassPoint(const Survey& survey, int pointIndex) {
  return pointIndex >= 0 && pointIndex < survey.PointCount() &&
         (survey.Points[static_cast<std::size_t>(pointIndex)].PtMarks & kMarkCompass) != 0;
}

bool HasSubUnits(int unit) { return SubUnitsPerUnit(unit) > 0; }

// Splits a Feet, Miles or Chains length into main and sub-unit texts.
AngleTexts SplitLength(std::string_view text, char separator, bool feet) {
  AngleTexts parts;
  bool inchMark = feet && !text.empty() && text.back() == kDoubleQuote;
  if (inchMark) text.remove_suffix(1);
  std::size_t end = text.find(separator);
  if (feet) end = std::min(end, text.find(kApostrophe));
  parts.degrees = text.substr(0, end);
  if (end != std::string_view::npos) parts.minutes = text.substr(end + 1);
  // Inches stand only after the feet: 6" alone could be taken for six feet.
  parts.valid = !inchMark || end != std::string_view::npos;
  return parts;
}

}  // namespace

std::optional<double> ReadNumber(std::string_view text) {
  text = Trim(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  std::optional<double> value = ReadUnsigned(text);
  if (value && negative) *value = -*value;
  return value;
}

AngleReading ReadAngle(std::string_view text, char degreeChar, char subValueSeparator,
                       bool blanksSeparate) {
  AngleReading reading;
  reading.notNumber = true;  // until every part has been read
  AngleTexts parts = SplitAngle(Trim(text), degreeChar, subValueSeparator, blanksSeparate);
  std::optional<double> degrees = ReadNumber(parts.degrees);
  if (!degrees) return reading;
  std::optional<double> minutes = ReadSubPart(parts.minutes);
  if (!minutes) return reading;
  reading.over60 = *minutes >= kMinutesPerDegree;
  std::optional<double> seconds = ReadSubPart(parts.seconds);
  if (!seconds) return reading;
  reading.over60 = reading.over60 || *seconds >= kMinutesPerDegree;
  double magnitude =
      std::fabs(*degrees) + *minutes / kMinutesPerDegree + *seconds / kSecondsPerDegree;
  if (!parts.valid || !std::isfinite(magnitude)) return reading;
  reading.notNumber = false;
  reading.degrees = StartsNegative(parts.degrees) ? -magnitude : magnitude;
  return reading;
}

double ParseAngleText(Survey& survey, std::string_view text, int pointIndex) {
  AngleReading reading = ReadAngle(text, survey.DegreeChar, survey.SubValueSeparator);
  if (reading.over60) survey.ValueMarks |= kValueOver60;
  if (reading.notNumber) {
    survey.ValueMarks |= kValueNotNumber;
    return 0;
  }
  double angle = reading.degrees;
  if (survey.MagneticDeclination != 0 && IsCompassPoint(survey, pointIndex)) {
    angle -= survey.MagneticDeclination;
  }
  return NormaliseDegrees(angle);
}

float ParseLengthText(Survey& survey, std::string_view text) {
  text = Trim(text);
  std::optional<double> length;
  if (!HasSubUnits(survey.UnitOfMeasure)) {
    length = ReadNumber(text);
  } else {
    AngleTexts parts =
        SplitLength(text, survey.SubValueSeparator, survey.UnitOfMeasure == kUnitFeet);
    std::optional<double> main = ReadNumber(parts.degrees);
    std::optional<double> sub = ReadSubPart(parts.minutes);
    if (parts.valid && main && sub) {
      double magnitude = std::fabs(*main) + *sub / SubUnitsPerUnit(survey.UnitOfMeasure);
      length = StartsNegative(parts.degrees) ? -magnitude : magnitude;
    }
  }
  if (!length || std::fabs(*length) > std::numeric_limits<float>::max()) {
    survey.ValueMarks |= kValueNotNumber;
    return 0;
  }
  return static_cast<float>(*length);
}

}  // namespace plotmeter
