#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>

#include "model/GpsText.h"
#include "model/NumberFormat.h"
#include "model/ValueFormat.h"
#include "model/ValueText.h"
#include "support/Latin1.h"

namespace plotmeter {
namespace {

using testing::Latin1;

TEST(NumberFormatTest, DoublesAsThePatternAsks) {
  // clang-format off
  const struct {
    double value;
    const char* pattern;
    const char* expected;
  } rows[] = {
      // The least and the most decimals; "#"s before the point add nothing.
      {12, "#0.0#####", "12.0"}, {0.1234567, "#0.0#####", "0.123457"}, {2.0004, "#0.###", "2"},
      {1e21, "#0", "1000000000000000000000"},
      // Half away from zero on the decimal value, not on the binary one; carries through
      // every digit.
      {2.675, "#0.0#", "2.68"}, {-1.25, "#0.0", "-1.3"}, {99.999, "##0.0#", "100.0"},
      // Grouping, counted from the right; no "-0".
      {1234567.8, "#,##0", "1,234,568"}, {-1234, "#,##0", "-1,234"}, {-0.4, "#0", "0"}};
  // clang-format on
  for (const auto& row : rows) {
    EXPECT_EQ(FormatNumber(row.value, row.pattern), row.expected)
        << row.value << " " << row.pattern;
  }
}

TEST(NumberFormatTest, FloatsIntegersAndNonFiniteValues) {
  EXPECT_EQ(FormatNumber(0.1f, "#0.0#####"), "0.1");
  // As a double the same float is 0.100000001490116..., which keeps its tail.
  EXPECT_EQ(FormatNumber(static_cast<double>(0.1f), "#0.0#########"), "0.1000000015");
  EXPECT_EQ(FormatNumber(std::numeric_limits<int>::min(), "#,##0"), "-2,147,483,648");
  EXPECT_EQ(FormatNumber(std::numeric_limits<double>::infinity(), "#0"), "Infinity");
  EXPECT_EQ(FormatNumber(std::nan(""), "#0.0"), "NaN");
}

// Right-aligned in the pattern's width, which every listing golden shows; a longer text
// is not cut.
TEST(NumberFormatTest, TextLongerThanThePatternIsKeptWhole) {
  EXPECT_EQ(FormatText("12345", "@@@"), "12345");
}

constexpr std::uint8_t kScreen = kWriterOptionsDefault;  // bit 1 clear: not writing
constexpr std::uint8_t kFileMinutes = kWriteInProgress | kWriterOptionsDefault;
constexpr std::uint8_t kFileSeconds = kWriteInProgress;
constexpr std::uint8_t kFileDecimal = kWriteInProgress | kWriteBearingDecimal | kWriteGpsDecimal;
constexpr std::uint8_t kTight = kBearingJoinTight, kLat = kGpsLatitude, kGpsTight = kGpsJoinTight;

ValueSettings Settings(std::uint8_t options, int unit = kUnitNotSpecified, char mark = '\xB0',
                       char separator = '\\') {
  return {
      .writerOptions = options, .unit = unit, .degreeMark = mark, .subValueSeparator = separator};
}

TEST(ValueFormatTest, Bearings) {
  // clang-format off
  const struct {
    std::uint8_t options, style;
    float bearing;
    const char* expected;  // UTF-8: "°" stands for code 176
  } rows[] = {
      // Into [0, 360) in place; a tiny negative that adding 360 rounds to 360 itself is 0.
      {kScreen, 0, -90, "270.0"}, {kScreen, 0, 360, "0.0"}, {kScreen, 0, -1e-8f, "0.0"},
      // Decimal minutes; minutes that would show as 60.0 carry into the degrees.
      {kFileMinutes, 0, 30.5f, "30° 30.0'"}, {kFileMinutes, kTight, 30.5f, "30°30.0'"},
      {kFileMinutes, 0, 0.99999994f, "1°"},
      // Seconds (1/64 degree is exact in a float: 56.25 seconds); seconds that round to 60
      // carry into the minutes and on into the degrees.
      {kFileSeconds, kTight, 27.75f, "27°45'"}, {kFileSeconds, 0, 10.015625f, "10° 0' 56.25\""},
      {kFileSeconds, 0, 0.99999994f, "1°"}, {kFileSeconds, 0, 1.0166666f, "1° 1'"}};
  // clang-format on
  for (const auto& row : rows) {
    float bearing = row.bearing;
    const std::string text = FormatBearing(Settings(row.options), row.style, bearing);
    EXPECT_EQ(text, Latin1(row.expected)) << row.bearing;
    // On the screen the bearing left in place is the one shown.
    EXPECT_TRUE(row.options != kScreen || bearing == static_cast<float>(*ReadNumber(text)));
  }
  float bearing = 12.5f;
  EXPECT_EQ(FormatBearing(Settings(kFileMinutes, 0, '*'), 0, bearing), "12* 30.0'");
  bearing = 1e30f;  // without looping
  FormatBearing(Settings(kScreen), 0, bearing);
  EXPECT_TRUE(bearing >= 0 && bearing < 360) << bearing;
}

TEST(ValueFormatTest, GpsAngles) {
  // clang-format off
  const struct {
    std::uint8_t options, style;
    double value;
    const char* expected;
  } rows[] = {
      // A longitude outside [0, 360) is brought into it first; 180 is east.
      {kScreen, 0, -10, "10.0 W"}, {kScreen, 0, 180, "180.0 E"},
      {kScreen, kGpsTight, 151.2, "151.2E"}, {kScreen, kLat | kGpsTight, -0.0, "0.0N"},
      {kFileMinutes, kLat | kGpsTight, -33.5, "33°30.0'S"}, {kFileSeconds, 0, 151.2, "151° 12' E"},
      {kFileSeconds, kLat, -(33 + 30 / 60.0 + 15.5 / 3600), "33° 30' 15.5\" S"},
      {kFileSeconds, kLat, 89.99999999999, "90° N"}};
  // clang-format on
  for (const auto& row : rows) {
    EXPECT_EQ(FormatGpsAngle(Settings(row.options), row.style, row.value), Latin1(row.expected))
        << row.value;
  }
}

TEST(ValueFormatTest, Lengths) {
  // clang-format off
  const struct {
    std::uint8_t options;
    int unit;
    float value;
    const char* expected;
  } rows[] = {
      // The deliberate rounding of the whole part; the sign kept where it rounds to 0.
      {kFileMinutes, kUnitFeet, 5.7f, "6\\8.4"}, {kFileMinutes, kUnitMiles, 2.5f, "3\\880.0"},
      {kFileMinutes, kUnitFeet, -0.25f, "-0\\3.0"},
      // Meters are never split; nor is anything off a write or with plain lengths. A
      // negative value keeps two more decimals.
      {kFileMinutes, kUnitMeters, 5.7f, "5.7"}, {kScreen, kUnitFeet, 5.7f, "5.7"},
      {kFileMinutes | kWritePlainLengths, kUnitFeet, 5.7f, "5.7"},
      {kScreen, kUnitMeters, 0.123456f, "0.12346"},
      {kScreen, kUnitMeters, -0.1234567f, "-0.1234567"}};
  // clang-format on
  for (const auto& row : rows) {
    EXPECT_EQ(FormatLength(Settings(row.options, row.unit), row.value), row.expected) << row.value;
  }
  EXPECT_EQ(FormatLength(Settings(kFileMinutes, kUnitFeet, '\xB0', ':'), 5.5f), "6:6.0");
}

// ---- Round trips: what is written reads back within the printed precision ----

constexpr int kRoundTrips = 2000;

// Each form of angle, with half its last printed digit (in degrees) and a little more.
constexpr std::pair<std::uint8_t, double> kAngleModes[] = {{kScreen, 0.5e-6 + 1e-10},
                                                           {kFileDecimal, 0.5e-6 + 1e-10},
                                                           {kFileMinutes, 0.5e-4 / 60 + 1e-10},
                                                           {kFileSeconds, 0.5e-3 / 3600 + 1e-10}};

double AngleDifference(double a, double b) { return std::fabs(std::remainder(a - b, 360.0)); }

// A bearing (as the float it is held in), a longitude and a latitude from each angle.
TEST(ValueFormatRoundTrip, AnglesReadBack) {
  std::mt19937_64 random(20240917);
  std::uniform_real_distribution<double> anyAngle(-720, 720);
  std::vector<double> angles = {0,         30.5,       90,       -90,  180,       180.000001,
                                359.99997, 0.99999994, 10.99999, 1e-7, -0.000001, 89.99999999999};
  for (int i = 0; i < kRoundTrips; ++i) angles.push_back(anyAngle(random));
  Survey survey;
  survey.SubValueSeparator = ' ';
  for (const auto& [options, tolerance] : kAngleModes) {
    for (bool tight : {false, true}) {
      const ValueSettings values = Settings(options, 0, '\xB0', ' ');
      for (double angle : angles) {
        float bearing = static_cast<float>(angle);
        std::string text = FormatBearing(values, tight ? kTight : 0, bearing);
        double read = ParseAngleText(survey, text);
        ASSERT_EQ(survey.ValueMarks, 0) << text;
        // The plain forms start from the float's shortest decimal, up to an ulp away.
        double ulp = std::nextafter(bearing, 1e9f) - bearing;
        EXPECT_LE(AngleDifference(read, bearing), tolerance + ulp) << angle << " " << text;

        const std::uint8_t join = tight ? kGpsTight : 0;
        text = FormatGpsAngle(values, join, angle);
        std::optional<double> gps = ParseGpsLongitude(survey, text);
        ASSERT_TRUE(gps.has_value()) << text;
        EXPECT_LE(AngleDifference(*gps, angle), tolerance) << angle << " " << text;
        const double latitude = std::fabs(angle) <= 90 ? angle : std::fmod(angle, 90);
        text = FormatGpsAngle(values, kLat | join, latitude);
        gps = ParseGpsLatitude(survey, text);
        ASSERT_TRUE(gps.has_value()) << text;
        EXPECT_NEAR(*gps, latitude, tolerance) << text;
      }
    }
  }
}

// Split into sub-units the whole part is rounded, not truncated, so a fraction of a half
// or more reads back one unit further from zero: that is the written form, pinned here.
TEST(ValueFormatRoundTrip, LengthsReadBack) {
  std::mt19937 random(42);
  std::uniform_real_distribution<float> anyLength(-1e4f, 1e4f);
  std::vector<float> lengths = {0, 5.7f, 5.25f, -5.25f, -0.25f, 0.5f, 1e-6f, -1e-6f, 999.999f};
  for (int i = 0; i < kRoundTrips; ++i) lengths.push_back(anyLength(random));
  for (std::uint8_t options : {kFileMinutes, kScreen}) {
    for (int unit : {kUnitFeet, kUnitMiles, kUnitChains, kUnitMeters}) {
      Survey survey;
      survey.UnitOfMeasure = unit;
      const bool split = options == kFileMinutes && unit != kUnitMeters;
      const double tolerance = split ? 0.5e-3 / SubUnitsPerUnit(unit) : 0.5e-5;
      for (float value : lengths) {
        std::string text = FormatLength(Settings(options, unit), value);
        float read = ParseLengthText(survey, text);
        ASSERT_EQ(survey.ValueMarks, 0) << text;
        const double whole = std::trunc(static_cast<double>(value));
        const double expected = split ? value + (std::round(value) - whole) : value;
        EXPECT_NEAR(read, expected, tolerance + std::fabs(value) * 1.2e-7) << text;
      }
    }
  }
}

}  // namespace
}  // namespace plotmeter
