#include <gtest/gtest.h>

#include <optional>

#include "model/GpsText.h"
#include "support/Latin1.h"

namespace plotmeter {
namespace {

using testing::Latin1;

constexpr double kTolerance = 1e-9;

struct GpsCase {
  const char* text;  // UTF-8: "°" is read as code 176
  std::optional<double> expected;
};

void ExpectReading(std::optional<double> read, std::optional<double> expected, const char* text) {
  ASSERT_EQ(read.has_value(), expected.has_value()) << '"' << text << '"';
  if (expected) {
    EXPECT_NEAR(*read, *expected, kTolerance) << '"' << text << '"';
  }
}

class LatitudeTextTest : public ::testing::TestWithParam<GpsCase> {};
class LongitudeTextTest : public ::testing::TestWithParam<GpsCase> {};

TEST_P(LatitudeTextTest, ReadsAsListed) {
  Survey survey;
  ExpectReading(ParseGpsLatitude(survey, Latin1(GetParam().text)), GetParam().expected,
                GetParam().text);
}

TEST_P(LongitudeTextTest, ReadsAsListed) {
  Survey survey;
  ExpectReading(ParseGpsLongitude(survey, Latin1(GetParam().text)), GetParam().expected,
                GetParam().text);
}

constexpr double k333015 = 33 + 30 / 60.0 + 15.5 / 3600;

// The LEGAL latitudes listed in GpsText.h: the letter before or after, either case, with
// or without a blank, and each form of the angle.
INSTANTIATE_TEST_SUITE_P(
    Legal, LatitudeTextTest,
    ::testing::Values(GpsCase{"s 33.5", -33.5}, GpsCase{"33.5 S", -33.5}, GpsCase{"33.5S", -33.5},
                      GpsCase{"-33.5", -33.5}, GpsCase{"S33 30", -33.5}, GpsCase{"33 30 S", -33.5},
                      GpsCase{"33° 30.0' S", -33.5}, GpsCase{"33°30'15.5\"S", -k333015},
                      GpsCase{"33d30m15.5s S", -k333015}, GpsCase{"33° S", -33},
                      GpsCase{"12.25 n", 12.25}, GpsCase{"+12.25", 12.25},
                      GpsCase{"  N 12 15  ", 12.25},
                      // A final "s" straight after digits is the seconds word when the
                      // angle is written with word markers.
                      GpsCase{"12d15m36s", 12.26}, GpsCase{"90 S", -90}, GpsCase{"S0", 0}));

// The ILLEGAL latitudes listed in GpsText.h.
INSTANTIATE_TEST_SUITE_P(
    Illegal, LatitudeTextTest,
    ::testing::Values(GpsCase{"   ", std::nullopt}, GpsCase{"S", std::nullopt},
                      GpsCase{"S33.5S", std::nullopt}, GpsCase{"S-33.5", std::nullopt},
                      GpsCase{"E33.5", std::nullopt}, GpsCase{"90.0001", std::nullopt},
                      GpsCase{"33 60 S", std::nullopt}, GpsCase{"33 S 30", std::nullopt},
                      GpsCase{"33.5x", std::nullopt}, GpsCase{"1e400", std::nullopt},
                      GpsCase{"SS33", std::nullopt}));

INSTANTIATE_TEST_SUITE_P(Legal, LongitudeTextTest,
                         ::testing::Values(GpsCase{"E151.2", 151.2}, GpsCase{"151.2E", 151.2},
                                           GpsCase{"e 151 12", 151.2}, GpsCase{"151° 12' E", 151.2},
                                           GpsCase{"W 20.5", 339.5}, GpsCase{"-170", 190},
                                           GpsCase{"W180", 180}, GpsCase{"W0", 0},
                                           GpsCase{"1.5e2", 150}));

INSTANTIATE_TEST_SUITE_P(
    Illegal, LongitudeTextTest,
    ::testing::Values(GpsCase{"W", std::nullopt}, GpsCase{"E151.2W", std::nullopt},
                      GpsCase{"W-20", std::nullopt}, GpsCase{"N151", std::nullopt},
                      GpsCase{"190", std::nullopt}, GpsCase{"180.5 W", std::nullopt},
                      GpsCase{"151 75 E", std::nullopt}, GpsCase{"151 12 30 45 E", std::nullopt}));

TEST(GpsTextTest, TheSurveysSeparatorAndDegreeCharAreRead) {
  Survey survey;
  survey.SubValueSeparator = ':';
  survey.DegreeChar = '*';
  EXPECT_NEAR(*ParseGpsLatitude(survey, "S33:30"), -33.5, kTolerance);
  EXPECT_NEAR(*ParseGpsLongitude(survey, "20*30' W"), 339.5, kTolerance);
  EXPECT_EQ(survey.ValueMarks, 0);
}

TEST(GpsTextTest, LatitudeIsNeverFolded) {
  Survey survey;
  EXPECT_NEAR(*ParseGpsLatitude(survey, "-10"), -10, kTolerance);
  EXPECT_FALSE(ParseGpsLatitude(survey, "350").has_value());
}

}  // namespace
}  // namespace plotmeter
