#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>

#include "model/GpsText.h"
#include "model/ValueText.h"
#include "support/Latin1.h"

namespace plotmeter {
namespace {

using testing::Latin1;

constexpr double k274250 = 27 + 42 / 60.0 + 50 / 3600.0;
constexpr double k270050 = 27 + 50 / 3600.0;
constexpr std::uint8_t kOver = kValueOver60, kBad = kValueNotNumber;

struct AngleRow {
  const char* text;  // UTF-8: "°" is read as code 176, "ø" as code 248
  double expected;
  std::uint8_t marks = 0;
  char separator = '\\';
};

// The lists above ParseAngleText: each way of marking or separating the parts once, then
// the texts that are no angle.
TEST(ValueTextTest, AnglesReadAsListed) {
  // clang-format off
  const AngleRow rows[] = {
      {"27d42m50s", k274250}, {"27 degrees 42 minutes 50 seconds", k274250},
      {"27 DEG 42 MIN 50 SEC", k274250}, {"27ø42'50\"", k274250}, {"27°42", 27.7},
      {"  27:42:50  ", k274250, 0, ':'}, {"27d50s", k270050}, {"10d75m", 11.25, kOver},
      {"10°74'60\"", 11.25, kOver},
      // Brought into [0, 360) without looping, and never -0.
      {"-27°30'", 332.5}, {"690", 330}, {"360", 0}, {"1e300", std::fmod(1e300, 360.0)},
      {"-1e-20", 0}, {"10::", 10, 0, ':'},
      // Not numbers, also where the system's own number reading would take them.
      {"   ", 0, kBad}, {"30'", 0, kBad}, {"27°42'50\"x", 0, kBad}, {"27°-30'", 0, kBad},
      {"27:42:50:10", 0, kBad, ':'}, {"27 42", 0, kBad}, {"1e400", 0, kBad}, {"inf", 0, kBad},
      {"0x1A", 0, kBad},
      // The minutes were read before the seconds failed.
      {"27d75m5x", 0, kOver | kBad}};
  // clang-format on
  for (const AngleRow& row : rows) {
    Survey survey;
    survey.SubValueSeparator = row.separator;
    const double angle = ParseAngleText(survey, Latin1(row.text));
    EXPECT_NEAR(angle, row.expected, 1e-9) << row.text;
    EXPECT_FALSE(std::signbit(angle)) << row.text;
    EXPECT_EQ(survey.ValueMarks, row.marks) << row.text;
  }
}

// The survey's own degree mark and separator are read, the mark as well as code 176, also
// in GPS values; marks add up until the caller clears them.
TEST(ValueTextTest, OwnDegreeCharAndSeparatorAndMarksThatAddUp) {
  Survey survey;
  survey.DegreeChar = '*';
  survey.SubValueSeparator = ':';
  EXPECT_NEAR(ParseAngleText(survey, "27*42'"), 27.7, 1e-9);
  EXPECT_NEAR(ParseAngleText(survey, Latin1("27°42'")), 27.7, 1e-9);
  EXPECT_NEAR(*ParseGpsLatitude(survey, "S33:30"), -33.5, 1e-9);
  EXPECT_NEAR(*ParseGpsLongitude(survey, "20*30' W"), 339.5, 1e-9);
  EXPECT_EQ(survey.ValueMarks, 0);
  ParseAngleText(survey, "10d75m");
  ParseAngleText(survey, "abc");
  EXPECT_EQ(survey.ValueMarks, kValueOver60 | kValueNotNumber);
}

// The declination applies to a compass point only: point 1 is one (and the result wraps
// round), point 0, no point (-1) and an index beyond the points are none.
TEST(ValueTextTest, DeclinationAppliesOnlyToCompassPoints) {
  Survey survey;
  survey.Points.resize(2);
  survey.Points[1].PtMarks = kMarkCompass;
  survey.MagneticDeclination = 12;
  EXPECT_NEAR(ParseAngleText(survey, "10", 1), 358, 1e-6);
  for (int index : {0, -1, 2}) EXPECT_NEAR(ParseAngleText(survey, "10", index), 10, 1e-6) << index;
}

// The lists above ParseLengthText, then the other units.
TEST(ValueTextTest, LengthsReadAsListed) {
  // clang-format off
  const struct {
    int unit;
    const char* text;
    float expected;  // 0, with kValueNotNumber, for the texts that are no length
  } rows[] = {
      {kUnitFeet, "5' 6\"", 5.5f}, {kUnitFeet, "5 \\ 6", 5.5f}, {kUnitFeet, "5'", 5},
      {kUnitFeet, "5\\18", 6.5f}, {kUnitFeet, "-0\\3", -0.25f}, {kUnitChains, "3\\25", 3.25f},
      // Not lengths; the apostrophe ends feet only.
      {kUnitFeet, "", 0}, {kUnitFeet, "\\6", 0}, {kUnitFeet, "5\\-6", 0}, {kUnitFeet, "5\\6\\7", 0},
      {kUnitMeters, "5\\6", 0}, {kUnitMeters, "1e39", 0}, {kUnitChains, "5'6", 0}};
  // clang-format on
  for (const auto& row : rows) {
    Survey survey;
    survey.UnitOfMeasure = row.unit;
    EXPECT_NEAR(ParseLengthText(survey, row.text), row.expected, 1e-5f) << row.text;
    EXPECT_EQ(survey.ValueMarks, row.expected == 0 ? kValueNotNumber : 0) << row.text;
  }
}

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
      {true, "s 33.5", -33.5}, {true, "33d30m15.5s S", -k333015}, {true, "  N 12 15  ", 12.25},
      {true, "90 S", -90}, {true, "S0", 0},
      // A final "s" straight after digits is the seconds word when the angle is written
      // with word markers.
      {true, "12d15m36s", 12.26}, {true, "S33.5S", kNone}, {true, "S-33.5", kNone},
      {true, "E33.5", kNone}, {true, "90.0001", kNone}, {true, "33 60 S", kNone},
      {false, "e 151 12", 151.2}, {false, "W 20.5", 339.5}, {false, "-170", 190}, {false, "W0", 0},
      {false, "180.5 W", kNone}, {false, "151 12 30 45 E", kNone}};
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

}  // namespace
}  // namespace plotmeter
