#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "model/GpsText.h"
#include "model/ValueFormat.h"
#include "model/ValueText.h"
#include "support/Latin1.h"

namespace plotmeter {
namespace {

using testing::Latin1;

constexpr std::uint8_t kScreen = kWriterOptionsDefault;  // bit 1 clear: not writing
constexpr std::uint8_t kFileMinutes = kWriteInProgress | kWriterOptionsDefault;
constexpr std::uint8_t kFileSeconds = kWriteInProgress;
constexpr std::uint8_t kFileDecimal = kWriteInProgress | kWriteBearingDecimal | kWriteGpsDecimal;

ValueSettings WithOptions(std::uint8_t options) { return {.writerOptions = options}; }

std::string Bearing(std::uint8_t options, float bearing, std::uint8_t style = 0) {
  return FormatBearing(WithOptions(options), style, bearing);
}

// ---- Bearings ----

struct BearingCase {
  std::uint8_t options;
  std::uint8_t style;
  float bearing;
  const char* expected;  // UTF-8: "°" stands for code 176
};

class FormatBearingTest : public ::testing::TestWithParam<BearingCase> {};

TEST_P(FormatBearingTest, GivesText) {
  const BearingCase& c = GetParam();
  EXPECT_EQ(Bearing(c.options, c.bearing, c.style), Latin1(c.expected)) << c.bearing;
}

INSTANTIATE_TEST_SUITE_P(
    ValueFormatTest, FormatBearingTest,
    ::testing::Values(BearingCase{kScreen, 0, 27.5f, "27.5"}, BearingCase{kScreen, 0, 0.1f, "0.1"},
                      BearingCase{kFileDecimal, 0, 27.5f, "27.5"},
                      // Decimal minutes.
                      BearingCase{kFileMinutes, 0, 30.5f, "30° 30.0'"},
                      BearingCase{kFileMinutes, kBearingJoinTight, 30.5f, "30°30.0'"},
                      BearingCase{kFileMinutes, 0, 30, "30°"},
                      BearingCase{kFileMinutes, 0, 10.1f, "10° 6.0'"},
                      // Minutes that would show as 60.0 carry into the degrees.
                      BearingCase{kFileMinutes, 0, 0.99999994f, "1°"},
                      // Seconds.
                      BearingCase{kFileSeconds, kBearingJoinTight, 27.75f, "27°45'"},
                      BearingCase{kFileSeconds, 0, 45, "45°"},
                      // 1/64 degree is exact in a float: 56.25 seconds.
                      BearingCase{kFileSeconds, 0, 10.015625f, "10° 0' 56.25\""},
                      // The float nearest 27°42'50" lies 0.004" beyond it.
                      BearingCase{kFileSeconds, 0, 27 + 42 / 60.f + 50 / 3600.f,
                                  "27° 42' 50.004\""},
                      BearingCase{kFileSeconds, kBearingJoinTight, 10.99999f, "10°59'59.966\""},
                      // Seconds that round to 60 carry into the minutes and on into the degrees.
                      BearingCase{kFileSeconds, 0, 0.99999994f, "1°"},
                      BearingCase{kFileSeconds, 0, 1.0166666f, "1° 1'"}));

TEST(ValueFormatTest, BearingIsNormalisedInPlace) {
  ValueSettings survey;
  float bearing = -90;
  FormatBearing(survey, 0, bearing);
  EXPECT_EQ(bearing, 270);
  bearing = 360;
  FormatBearing(survey, 0, bearing);
  EXPECT_EQ(bearing, 0);
  bearing = 1e30f;  // must not loop for ever
  FormatBearing(survey, 0, bearing);
  EXPECT_GE(bearing, 0);
  EXPECT_LT(bearing, 360);
  bearing = -1e-8f;  // adding 360 rounds to 360 itself
  FormatBearing(survey, 0, bearing);
  EXPECT_EQ(bearing, 0);
}

TEST(ValueFormatTest, BearingUsesTheSurveysDegreeChar) {
  ValueSettings survey = WithOptions(kFileMinutes);
  survey.degreeMark = '*';
  float bearing = 12.5f;
  EXPECT_EQ(FormatBearing(survey, 0, bearing), "12* 30.0'");
}

// ---- GPS angles ----

struct GpsCase {
  std::uint8_t options;
  std::uint8_t style;
  double value;
  const char* expected;
};

class FormatGpsTest : public ::testing::TestWithParam<GpsCase> {};

TEST_P(FormatGpsTest, GivesText) {
  const GpsCase& c = GetParam();
  EXPECT_EQ(FormatGpsAngle(WithOptions(c.options), c.style, c.value), Latin1(c.expected))
      << c.value;
}

INSTANTIATE_TEST_SUITE_P(
    ValueFormatTest, FormatGpsTest,
    ::testing::Values(
        GpsCase{kScreen, 0, 190, "170.0 W"}, GpsCase{kScreen, kGpsLatitude, -33.5, "33.5 S"},
        GpsCase{kScreen, 0, 180, "180.0 E"}, GpsCase{kScreen, kGpsJoinTight, 151.2, "151.2E"},
        GpsCase{kScreen, kGpsLatitude | kGpsJoinTight, -0.0, "0.0N"},
        // A longitude outside [0, 360) is brought into it first.
        GpsCase{kScreen, 0, -10, "10.0 W"}, GpsCase{kScreen, 0, 370, "10.0 E"},
        GpsCase{kFileDecimal, kGpsLatitude, -33.5, "33.5 S"},
        GpsCase{kFileMinutes, kGpsLatitude | kGpsJoinTight, -33.5, "33°30.0'S"},
        GpsCase{kFileMinutes, 0, 151.2, "151° 12.0' E"},
        GpsCase{kFileSeconds, 0, 151.2, "151° 12' E"},
        GpsCase{kFileSeconds, kGpsLatitude, -(33 + 30 / 60.0 + 15.5 / 3600), "33° 30' 15.5\" S"},
        GpsCase{kFileSeconds, kGpsLatitude, 89.99999999999, "90° N"},
        GpsCase{kFileMinutes, 0, 179.9999999999, "180° E"}));

// ---- Lengths ----

struct LengthCase {
  std::uint8_t options;
  int unit;
  float value;
  const char* expected;
};

class FormatLengthTest : public ::testing::TestWithParam<LengthCase> {};

TEST_P(FormatLengthTest, GivesText) {
  const LengthCase& c = GetParam();
  ValueSettings survey = WithOptions(c.options);
  survey.unit = c.unit;
  EXPECT_EQ(FormatLength(survey, c.value), c.expected) << c.value;
}

INSTANTIATE_TEST_SUITE_P(
    ValueFormatTest, FormatLengthTest,
    ::testing::Values(
        // The deliberate rounding of the whole part.
        LengthCase{kFileMinutes, kUnitFeet, 5.7f, "6\\8.4"},
        LengthCase{kFileMinutes, kUnitFeet, 5, "5"},
        LengthCase{kFileMinutes, kUnitMiles, 2.5f, "3\\880.0"},
        LengthCase{kFileMinutes, kUnitFeet, 0.25f, "0\\3.0"},
        // The sign is kept where the whole part rounds to 0.
        LengthCase{kFileMinutes, kUnitFeet, -0.25f, "-0\\3.0"},
        // Meters are never split; nor is anything off a write or with plain lengths.
        LengthCase{kFileMinutes, kUnitMeters, 5.7f, "5.7"},
        LengthCase{kScreen, kUnitFeet, 5.7f, "5.7"},
        LengthCase{kFileMinutes | kWritePlainLengths, kUnitFeet, 5.7f, "5.7"},
        LengthCase{kScreen, kUnitMeters, 12, "12.0"},
        LengthCase{kScreen, kUnitMeters, 0.123456f, "0.12346"},
        LengthCase{kScreen, kUnitMeters, -0.1234567f, "-0.1234567"}));

TEST(ValueFormatTest, LengthUsesTheSurveysSeparator) {
  ValueSettings survey = WithOptions(kFileMinutes);
  survey.unit = kUnitFeet;
  survey.subValueSeparator = ':';
  EXPECT_EQ(FormatLength(survey, 5.5f), "6:6.0");
}

// ---- Round trips: what is written reads back within the printed precision ----

constexpr int kRoundTrips = 2000;

double AngleDifference(double a, double b) {
  double d = std::fabs(a - b);
  return std::min(d, 360 - d);
}

struct BearingMode {
  std::uint8_t options;
  double tolerance;  // degrees: half the last printed digit, and a little for the float
};

TEST(ValueFormatRoundTrip, BearingsReadBack) {
  const BearingMode modes[] = {{kScreen, 0.5e-6 + 1e-10},
                               {kFileDecimal, 0.5e-6 + 1e-10},
                               {kFileMinutes, 0.5e-4 / 60 + 1e-10},
                               {kFileSeconds, 0.5e-3 / 3600 + 1e-10}};
  std::mt19937 random(20240917);
  std::uniform_real_distribution<float> anyBearing(-720, 720);
  std::vector<float> bearings = {0,      0.5f,   30.5f, 359.99997f, 0.99999994f, 10.99999f,
                                 89.75f, 180.0f, 1e-7f, 12.345678f, 359.5f,      -0.0001f};
  for (int i = 0; i < kRoundTrips; ++i) bearings.push_back(anyBearing(random));
  for (const BearingMode& mode : modes) {
    for (std::uint8_t style : {std::uint8_t{0}, kBearingJoinTight}) {
      Survey survey;
      survey.SubValueSeparator = ' ';
      ValueSettings values = ValueSettingsOf(survey);
      values.writerOptions = mode.options;
      for (float original : bearings) {
        float bearing = original;
        std::string text = FormatBearing(values, style, bearing);
        double read = ParseAngleText(survey, text);
        ASSERT_EQ(survey.ValueMarks, 0) << text;
        // The plain forms start from the float's shortest decimal, up to an ulp away.
        double ulp = std::nextafter(bearing, 1e9f) - bearing;
        EXPECT_LE(AngleDifference(read, bearing), mode.tolerance + ulp)
            << original << " written " << text << " options " << int{mode.options};
      }
    }
  }
}

TEST(ValueFormatRoundTrip, GpsAnglesReadBack) {
  const BearingMode modes[] = {{kScreen, 0.5e-6 + 1e-12},
                               {kFileDecimal, 0.5e-6 + 1e-12},
                               {kFileMinutes, 0.5e-4 / 60 + 1e-12},
                               {kFileSeconds, 0.5e-3 / 3600 + 1e-12}};
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> anyLatitude(-90, 90);
  std::uniform_real_distribution<double> anyLongitude(0, 360);
  std::vector<double> latitudes = {0, 90, -90, -33.5, 89.99999999999, -0.000001, 45.25};
  std::vector<double> longitudes = {0, 180, 180.000001, 359.9999999, 190, 151.2, 0.5};
  for (int i = 0; i < kRoundTrips; ++i) {
    latitudes.push_back(anyLatitude(random));
    longitudes.push_back(anyLongitude(random));
  }
  for (const BearingMode& mode : modes) {
    for (std::uint8_t join : {std::uint8_t{0}, kGpsJoinTight}) {
      const Survey survey;
      for (double latitude : latitudes) {
        std::string text = FormatGpsAngle(WithOptions(mode.options), kGpsLatitude | join, latitude);
        std::optional<double> read = ParseGpsLatitude(survey, text);
        ASSERT_TRUE(read.has_value()) << text;
        EXPECT_NEAR(*read, latitude, mode.tolerance) << text;
      }
      for (double longitude : longitudes) {
        std::string text = FormatGpsAngle(WithOptions(mode.options), join, longitude);
        std::optional<double> read = ParseGpsLongitude(survey, text);
        ASSERT_TRUE(read.has_value()) << text;
        EXPECT_LE(AngleDifference(*read, longitude), mode.tolerance) << text;
      }
    }
  }
}

// Split into sub-units the whole part is rounded, not truncated, so a fraction of a half
// or more reads back one unit further from zero: that is the written form, pinned here.
double ExpectedReadBack(float value) {
  double whole = std::trunc(static_cast<double>(value));
  return value + (std::round(static_cast<double>(value)) - whole);
}

TEST(ValueFormatRoundTrip, LengthsReadBack) {
  std::mt19937 random(42);
  std::uniform_real_distribution<float> anyLength(-1e4f, 1e4f);
  std::vector<float> lengths = {0, 5.7f, 5.25f, -5.25f, -0.25f, 0.5f, 1e-6f, -1e-6f, 999.999f};
  for (int i = 0; i < kRoundTrips; ++i) lengths.push_back(anyLength(random));
  for (std::uint8_t options : {kFileMinutes, kScreen}) {
    for (int unit : {kUnitFeet, kUnitMiles, kUnitChains, kUnitMeters}) {
      Survey survey;
      survey.UnitOfMeasure = unit;
      ValueSettings values = ValueSettingsOf(survey);
      values.writerOptions = options;
      bool split = options == kFileMinutes && unit != kUnitMeters;
      double tolerance = split ? 0.5e-3 / SubUnitsPerUnit(unit) : 0.5e-5;
      for (float value : lengths) {
        std::string text = FormatLength(values, value);
        float read = ParseLengthText(survey, text);
        ASSERT_EQ(survey.ValueMarks, 0) << text;
        double slack = tolerance + std::fabs(value) * 1.2e-7;  // the float result
        EXPECT_NEAR(read, split ? ExpectedReadBack(value) : value, slack) << text;
      }
    }
  }
}

}  // namespace
}  // namespace plotmeter
