#include "model/ValueFormat.h"

#include <cmath>

#include "model/NumberFormat.h"
#include "model/ValueText.h"

namespace plotmeter {

namespace {

constexpr double kMinutesPerDegree = 60;
constexpr double kSecondsPerMinute = 60;
constexpr double kFullCircle = 360;
constexpr double kHalfCircle = 180;
// Seconds are rounded to three decimals; above this they have rounded up to a minute.
constexpr double kLastSecond = 59.999;

constexpr char kDoubleQuote = '"';

bool Writing(const ValueSettings& values) { return (values.writerOptions & kWriteInProgress) != 0; }

bool BearingTextForm(const ValueSettings& values) {
  return Writing(values) && (values.writerOptions & kWriteBearingDecimal) == 0;
}

bool GpsTextForm(const ValueSettings& values) {
  return Writing(values) && (values.writerOptions & kWriteGpsDecimal) == 0;
}

bool SubUnitTextForm(const ValueSettings& values) {
  return Writing(values) && (values.writerOptions & kWritePlainLengths) == 0 &&
         SubUnitsPerUnit(values.unit) > 0;
}

// The value as the pattern rounds it, so that carries are decided on what is shown.
double RoundedAs(double value, std::string_view pattern) {
  return ReadNumber(FormatNumber(value, pattern)).value_or(value);
}

// Degrees and decimal minutes; minutes that would show as 60 carry into the degrees.
std::string DegreesMinutesText(double angle, char degreeChar, const std::string& join) {
  double degrees = std::floor(angle);
  double minutes = RoundedAs((angle - degrees) * kMinutesPerDegree, "#0.0###");
  if (minutes >= kMinutesPerDegree) {
    degrees += 1;
    minutes = 0;
  }
  std::string text = FormatNumber(degrees, "#0") + degreeChar;
  if (minutes > 0) text += join + FormatNumber(minutes, "#0.0###") + "'";
  return text;
}

// Degrees, whole minutes and seconds; seconds that would show as 60 carry into the
// minutes, and minutes of 60 into the degrees.
std::string DegreesMinutesSecondsText(double angle, char degreeChar, const std::string& join) {
  double degrees = std::floor(angle);
  double decimalMinutes = (angle - degrees) * kMinutesPerDegree;
  double minutes = std::floor(decimalMinutes);
  double seconds = RoundedAs((decimalMinutes - minutes) * kSecondsPerMinute, "#0.000");
  if (seconds > kLastSecond) {
    minutes += 1;
    seconds -= kSecondsPerMinute;
  }
  if (minutes >= kMinutesPerDegree) {
    degrees += 1;
    minutes -= kMinutesPerDegree;
  }
  std::string text = FormatNumber(degrees, "#0") + degreeChar;
  if (seconds != 0 || minutes >= 1) text += join + FormatNumber(minutes, "#0") + "'";
  if (seconds > 0) text += join + FormatNumber(seconds, "#0.0##") + kDoubleQuote;
  return text;
}

// `angle` is finite and not negative.
std::string AngleText(double angle, bool decimalMinutes, char degreeChar, const std::string& join) {
  return decimalMinutes ? DegreesMinutesText(angle, degreeChar, join)
                        : DegreesMinutesSecondsText(angle, degreeChar, join);
}

// The remainder by 360, as repeated subtraction would give, without looping.
float NormaliseBearing(float bearing) {
  bearing = std::fmod(bearing, static_cast<float>(kFullCircle));
  if (bearing < 0) bearing += static_cast<float>(kFullCircle);
  if (bearing >= static_cast<float>(kFullCircle)) bearing = 0;  // a tiny negative rounds up
  return bearing == 0 ? 0.0f : bearing;
}

double NormaliseLongitude(double longitude) {
  if (longitude >= 0 && longitude < kFullCircle) return longitude;
  longitude = std::fmod(longitude, kFullCircle);
  if (longitude < 0) longitude += kFullCircle;
  return longitude >= kFullCircle ? 0.0 : longitude;
}

}  // namespace

ValueSettings ValueSettingsOf(const Survey& survey) {
  return {.writerOptions = survey.WriterOptions,
          .unit = survey.UnitOfMeasure,
          .degreeMark = survey.DegreeChar,
          .subValueSeparator = survey.SubValueSeparator};
}

std::string FormatBearing(const ValueSettings& values, std::uint8_t style, float& bearing) {
  bearing = NormaliseBearing(bearing);
  if (!BearingTextForm(values) || !std::isfinite(bearing)) {
    return FormatNumber(bearing, "#0.0#####");
  }
  std::string join = (style & kBearingJoinTight) ? "" : " ";
  bool decimalMinutes = (values.writerOptions & kWriteBearingMinutes) != 0;
  return AngleText(bearing, decimalMinutes, values.degreeMark, join);
}

std::string FormatGpsAngle(const ValueSettings& values, std::uint8_t style, double value) {
  char letter;
  if (style & kGpsLatitude) {
    letter = value < 0 ? 'S' : 'N';
    value = std::fabs(value);
  } else {
    value = NormaliseLongitude(value);
    letter = value <= kHalfCircle ? 'E' : 'W';
    if (letter == 'W') value = kFullCircle - value;
  }
  std::string join = (style & kGpsJoinTight) ? "" : " ";
  std::string text;
  if (!GpsTextForm(values) || !std::isfinite(value)) {
    text = FormatNumber(value, "#0.0#####");
  } else {
    bool decimalMinutes = (values.writerOptions & kWriteGpsMinutes) != 0;
    text = AngleText(value, decimalMinutes, values.degreeMark, join);
  }
  return text + join + letter;
}

std::string FormatLength(const ValueSettings& values, float value) {
  if (SubUnitTextForm(values) && std::isfinite(value)) {
    // Deliberately rounded from the whole value: 5.7 feet is written "6", separator, "8.4".
    std::string whole = FormatNumber(value, "#0");
    double fraction = std::fabs(static_cast<double>(value) - std::trunc(value));
    if (fraction == 0) return whole;
    std::string sub = FormatNumber(fraction * SubUnitsPerUnit(values.unit), "#0.0##");
    // -0.25 ft rounds to a whole part of "0"; the sign must still be written to read back.
    if (value < 0 && whole.front() != '-' && sub != "0.0") whole.insert(whole.begin(), '-');
    return whole + values.subValueSeparator + sub;
  }
  // A negative value keeps two more decimals, on purpose.
  return value >= 0 ? FormatNumber(value, "#0.0####") : FormatNumber(value, "0.0######");
}

}  // namespace plotmeter
