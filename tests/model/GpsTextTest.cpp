#include <gtest/gtest.h>

#include <cmath>
#include <optional>

#include "model/GpsText.h"
#include "support/Latin1.h"

namespace plotmeter {
namespace {

using testing::Latin1;

constexpr double k333015 = 33 + 30 / 60.0 + 15.5 / 3600;
constexpr std::nullopt_t kNone = std::nullopt;

// The lists in GpsText.h: the letter before or after, either case, with or without a blank;
// the forms FormatGpsAngle writes are ValueFormatTest's round trips.
TEST(GpsTextTest, LatitudesAndLongitudesReadAsListed) {
  // clang-format off
  const struct {
    bool latitude;
    const char* text;  // UTF-8: "°" is read as code 176
    std::optional<double> expected;
  } rows[] = {
      {true, "s 33.5", -33.5}, {true, "33.5S", -33.5}, {true, "-33.5", -33.5},
      {true, "S33 30", -33.5}, {true, "33d30m15.5s S", -k333015}, {true, "+12.25", 12.25},
      {true, "  N 12 15  ", 12.25}, {true, "90 S", -90}, {true, "S0", 0},
      // A final "s" straight after digits is the seconds word when the angle is written
      // with word markers.
      {true, "12d15m36s", 12.26},
      {true, "S", kNone}, {true, "S33.5S", kNone}, {true, "S-33.5", kNone},
      {true, "E33.5", kNone}, {true, "90.0001", kNone}, {true, "33 60 S", kNone},
      {true, "33 S 30", kNone}, {true, "33.5x", kNone},
      {false, "151.2E", 151.2}, {false, "e 151 12", 151.2}, {false, "W 20.5", 339.5},
      {false, "-170", 190}, {false, "W180", 180}, {false, "W0", 0}, {false, "1.5e2", 150},
      {false, "E151.2W", kNone}, {false, "W-20", kNone}, {false, "N151", kNone},
      {false, "190", kNone}, {false, "180.5 W", kNone}, {false, "151 12 30 45 E", kNone}};
  // clang-format on
  Survey survey;
  for (const auto& row : rows) {
    std::string text = Latin1(row.text);
    auto read = row.latitude ? ParseGpsLatitude(survey, text) : ParseGpsLongitude(survey, text);
    ASSERT_EQ(read.has_value(), row.expected.has_value()) << row.text;
    if (!read) continue;
    EXPECT_NEAR(*read, *row.expected, 1e-9) << row.text;
    EXPECT_FALSE(std::signbit(*read) && *read == 0) << row.text;  // no -0
  }
}

TEST(GpsTextTest, TheSurveysSeparatorAndDegreeCharAreRead) {
  Survey survey;
  survey.SubValueSeparator = ':';
  survey.DegreeChar = '*';
  EXPECT_NEAR(*ParseGpsLatitude(survey, "S33:30"), -33.5, 1e-9);
  EXPECT_NEAR(*ParseGpsLongitude(survey, "20*30' W"), 339.5, 1e-9);
  EXPECT_EQ(survey.ValueMarks, 0);
}

}  // namespace
}  // namespace plotmeter
