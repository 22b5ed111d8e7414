#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "model/ValueText.h"
#include "support/Latin1.h"

namespace plotmeter {
namespace {

using testing::Latin1;

constexpr double kDegreeTolerance = 1e-9;
constexpr float kLengthTolerance = 1e-5f;

struct AngleCase {
  const char* text;  // UTF-8: "°" is read as code 176, "ø" as code 248
  char separator;
  double expected;
  std::uint8_t marks;
};

class AngleTextTest : public ::testing::TestWithParam<AngleCase> {};

TEST_P(AngleTextTest, ReadsAsListed) {
  const AngleCase& c = GetParam();
  Survey survey;
  survey.SubValueSeparator = c.separator;
  double angle = ParseAngleText(survey, Latin1(c.text));
  EXPECT_NEAR(angle, c.expected, kDegreeTolerance) << '"' << c.text << '"';
  EXPECT_EQ(survey.ValueMarks, c.marks) << '"' << c.text << '"';
}

constexpr double k274250 = 27 + 42 / 60.0 + 50 / 3600.0;
constexpr double k270050 = 27 + 50 / 3600.0;

// The LEGAL list above ParseAngleText: each way of marking or separating the parts once.
INSTANTIATE_TEST_SUITE_P(
    Legal, AngleTextTest,
    ::testing::Values(
        AngleCase{"27.7138888888889", '\\', k274250, 0}, AngleCase{"27d42m50s", '\\', k274250, 0},
        AngleCase{"27 degrees 42 minutes 50 seconds", '\\', k274250, 0},
        AngleCase{"27 DEG 42 MIN 50 SEC", '\\', k274250, 0},
        AngleCase{"27°42'50\"", '\\', k274250, 0}, AngleCase{"27°42'50", '\\', k274250, 0},
        AngleCase{"27ø42'50\"", '\\', k274250, 0}, AngleCase{"  27:42:50  ", ':', k274250, 0},
        AngleCase{"27  42", ' ', 27.7, 0}, AngleCase{"27°42'", '\\', 27.7, 0},
        AngleCase{"27°42", '\\', 27.7, 0}, AngleCase{"27d50s", '\\', k270050, 0},
        AngleCase{"27°'50\"", '\\', k270050, 0}, AngleCase{"10d75m", '\\', 11.25, kValueOver60},
        AngleCase{"10°74'60\"", '\\', 11.25, kValueOver60}, AngleCase{"-30", '\\', 330, 0},
        AngleCase{"690", '\\', 330, 0}, AngleCase{"-27°30'", '\\', 332.5, 0},
        AngleCase{"10:", ':', 10, 0}, AngleCase{"10::", ':', 10, 0}, AngleCase{"725", '\\', 5, 0},
        AngleCase{"360", '\\', 0, 0}, AngleCase{"+45", '\\', 45, 0}));

// The ILLEGAL list above ParseAngleText.
INSTANTIATE_TEST_SUITE_P(
    Illegal, AngleTextTest,
    ::testing::Values(
        AngleCase{"   ", '\\', 0, kValueNotNumber}, AngleCase{"27x", '\\', 0, kValueNotNumber},
        AngleCase{"27°42'50\"x", '\\', 0, kValueNotNumber},
        AngleCase{"°30'", '\\', 0, kValueNotNumber}, AngleCase{"27°-30'", '\\', 0, kValueNotNumber},
        AngleCase{"27:42:50:10", ':', 0, kValueNotNumber},
        AngleCase{"27 42", '\\', 0, kValueNotNumber}, AngleCase{"30'", '\\', 0, kValueNotNumber},
        AngleCase{"inf", '\\', 0, kValueNotNumber}, AngleCase{"1e", '\\', 0, kValueNotNumber},
        AngleCase{".", '\\', 0, kValueNotNumber}, AngleCase{"1e400", '\\', 0, kValueNotNumber},
        AngleCase{"0x1A", '\\', 0, kValueNotNumber},
        // The minutes were read before the seconds failed.
        AngleCase{"27d75m5x", '\\', 0, kValueOver60 | kValueNotNumber}));

TEST(ValueTextTest, AngleIsBroughtBelow360WithoutLooping) {
  Survey survey;
  double angle = ParseAngleText(survey, "1e300");
  EXPECT_GE(angle, 0.0);
  EXPECT_LT(angle, 360.0);
  EXPECT_DOUBLE_EQ(ParseAngleText(survey, "1e6"), 1e6 - 2777 * 360.0);
  EXPECT_EQ(ParseAngleText(survey, "-1e-20"), 0.0);
  EXPECT_FALSE(std::signbit(ParseAngleText(survey, "-0")));
  EXPECT_EQ(survey.ValueMarks, 0);
}

TEST(ValueTextTest, OwnDegreeCharIsTriedFirst) {
  Survey survey;
  survey.DegreeChar = '*';
  EXPECT_NEAR(ParseAngleText(survey, "27*42'"), 27.7, kDegreeTolerance);
  EXPECT_NEAR(ParseAngleText(survey, Latin1("27°42'")), 27.7, kDegreeTolerance);
  EXPECT_EQ(survey.ValueMarks, 0);
}

TEST(ValueTextTest, MarksAccumulateUntilTheCallerClearsThem) {
  Survey survey;
  ParseAngleText(survey, "10d75m");
  ParseAngleText(survey, "abc");
  EXPECT_EQ(survey.ValueMarks, kValueOver60 | kValueNotNumber);
}

struct DeclinationCase {
  std::uint8_t marks;
  float declination;
  int pointIndex;
  double expected;
};

class DeclinationTest : public ::testing::TestWithParam<DeclinationCase> {};

TEST_P(DeclinationTest, AppliesOnlyToCompassPoints) {
  const DeclinationCase& c = GetParam();
  Survey survey;
  survey.Points.resize(2);
  survey.Points[1].PtMarks = c.marks;
  survey.MagneticDeclination = c.declination;
  EXPECT_NEAR(ParseAngleText(survey, "10", c.pointIndex), c.expected, 1e-6);
}

// Point 0 is no compass point; an index beyond the points is none either.
INSTANTIATE_TEST_SUITE_P(ValueTextTest, DeclinationTest,
                         ::testing::Values(DeclinationCase{kMarkCompass, 2, 1, 8},
                                           DeclinationCase{kMarkCompass, 12, 1, 358},
                                           DeclinationCase{kMarkCompass, 2, -1, 10},
                                           DeclinationCase{kMarkCompass, 0, 1, 10},
                                           DeclinationCase{kMarkCompass, 2, 2, 10},
                                           DeclinationCase{kMarkCompass, 2, 0, 10}));

struct LengthCase {
  int unit;
  const char* text;
  float expected;
  bool bad;
};

class LengthTextTest : public ::testing::TestWithParam<LengthCase> {};

TEST_P(LengthTextTest, ReadsAsListed) {
  const LengthCase& c = GetParam();
  Survey survey;
  survey.UnitOfMeasure = c.unit;
  float length = ParseLengthText(survey, c.text);
  EXPECT_NEAR(length, c.expected, kLengthTolerance) << '"' << c.text << '"';
  EXPECT_EQ(survey.ValueMarks, c.bad ? kValueNotNumber : 0) << '"' << c.text << '"';
}

// The LEGAL list above ParseLengthText, then the other units.
INSTANTIATE_TEST_SUITE_P(Legal, LengthTextTest,
                         ::testing::Values(LengthCase{kUnitFeet, "5.5", 5.5f, false},
                                           LengthCase{kUnitFeet, "5\\6", 5.5f, false},
                                           LengthCase{kUnitFeet, "5'6", 5.5f, false},
                                           LengthCase{kUnitFeet, "5' 6\"", 5.5f, false},
                                           LengthCase{kUnitFeet, "5 \\ 6", 5.5f, false},
                                           LengthCase{kUnitFeet, "5'", 5, false},
                                           LengthCase{kUnitFeet, "5\\18", 6.5f, false},
                                           LengthCase{kUnitFeet, "-5\\3", -5.25f, false},
                                           LengthCase{kUnitFeet, "-0\\3", -0.25f, false},
                                           LengthCase{kUnitMeters, "+12.5", 12.5f, false},
                                           LengthCase{kUnitMeters, "1.25e1", 12.5f, false},
                                           LengthCase{kUnitMiles, "2\\880", 2.5f, false},
                                           LengthCase{kUnitChains, "3\\25", 3.25f, false},
                                           LengthCase{kUnitNotSpecified, " 7 ", 7, false}));

INSTANTIATE_TEST_SUITE_P(
    Illegal, LengthTextTest,
    ::testing::Values(LengthCase{kUnitFeet, "", 0, true}, LengthCase{kUnitFeet, "5x", 0, true},
                      LengthCase{kUnitFeet, "\\6", 0, true}, LengthCase{kUnitFeet, "6\"", 0, true},
                      LengthCase{kUnitFeet, "5\\-6", 0, true},
                      LengthCase{kUnitFeet, "5\\6\\7", 0, true},
                      LengthCase{kUnitFeet, "1e39", 0, true}, LengthCase{kUnitFeet, "inf", 0, true},
                      LengthCase{kUnitMeters, "5\\6", 0, true},
                      LengthCase{kUnitMeters, "1e39", 0, true},
                      // The apostrophe ends feet only.
                      LengthCase{kUnitChains, "5'6", 0, true}));

TEST(ValueTextTest, ReadNumberIsStrict) {
  EXPECT_EQ(ReadNumber(" 1.5 "), 1.5);
  EXPECT_EQ(ReadNumber("-2e3"), -2000);
  EXPECT_EQ(ReadNumber("1."), 1);
  EXPECT_EQ(ReadNumber(".5"), 0.5);
  for (const char* text : {"", "-", "+", "1 2", "1,5", "--1", "infinity", "1e+", "e5", "1.2.3"}) {
    EXPECT_FALSE(ReadNumber(text).has_value()) << '"' << text << '"';
  }
}

}  // namespace
}  // namespace plotmeter
