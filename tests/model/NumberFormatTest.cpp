#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "model/NumberFormat.h"

namespace plotmeter {
namespace {

struct DoubleCase {
  double value;
  const char* pattern;
  const char* expected;
};

class FormatDoubleTest : public ::testing::TestWithParam<DoubleCase> {};

TEST_P(FormatDoubleTest, GivesText) {
  const DoubleCase& c = GetParam();
  EXPECT_EQ(FormatNumber(c.value, c.pattern), c.expected)
      << c.value << " with \"" << c.pattern << "\"";
}

INSTANTIATE_TEST_SUITE_P(
    NumberFormatTest, FormatDoubleTest,
    ::testing::Values(
        // Decimals: the least and the most.
        DoubleCase{12.5, "#0.0#####", "12.5"}, DoubleCase{12, "#0.0#####", "12.0"},
        DoubleCase{0.1234567, "#0.0#####", "0.123457"}, DoubleCase{1.23456789, "#0.0###", "1.2346"},
        DoubleCase{3.14159, "#0.0##", "3.142"}, DoubleCase{-0.12345678, "0.0######", "-0.1234568"},
        DoubleCase{1.5, "#0.000", "1.500"}, DoubleCase{99.999, "##0.0#", "100.0"},
        // Half away from zero on the decimal value, not on the binary one.
        DoubleCase{2.675, "#0.0#", "2.68"}, DoubleCase{1.005, "#0.00", "1.01"},
        DoubleCase{-1.25, "#0.0", "-1.3"}, DoubleCase{0.5, "#0", "1"}, DoubleCase{2.5, "#0", "3"},
        DoubleCase{-2.5, "#0", "-3"}, DoubleCase{2.4999, "#0", "2"},
        // Whole numbers and the point.
        DoubleCase{2.0004, "#0.###", "2"}, DoubleCase{2.0005, "#0.###", "2.001"},
        DoubleCase{0.04, "#0.###", "0.04"}, DoubleCase{1234567, "#####0", "1234567"},
        DoubleCase{0.0, "#0.0", "0.0"},
        // Carries through every digit.
        DoubleCase{9.9999, "#0.0##", "10.0"}, DoubleCase{999.9996, "#0.000", "1000.000"},
        // No "-0".
        DoubleCase{-0.0, "#0", "0"}, DoubleCase{-0.4, "#0", "0"},
        DoubleCase{-0.00001, "#0.0###", "0.0"}, DoubleCase{-0.00004, "0.0######", "-0.00004"},
        // Grouping, counted from the right.
        DoubleCase{1234567.8, "#,##0", "1,234,568"}, DoubleCase{999.5, "#,##0", "1,000"},
        DoubleCase{123, "#,##0", "123"}, DoubleCase{-1234, "#,##0", "-1,234"},
        DoubleCase{10000, "#,##0", "10,000"},
        // Extremes stay exact in the integer part.
        DoubleCase{1e21, "#0", "1000000000000000000000"}, DoubleCase{1e-300, "#0.0####", "0.0"},
        DoubleCase{123456789012.5, "#0", "123456789013"}));

TEST(NumberFormatTest, FloatUsesItsShortestForm) {
  EXPECT_EQ(FormatNumber(0.1f, "#0.0#####"), "0.1");
  EXPECT_EQ(FormatNumber(5.7f, "#0"), "6");
  EXPECT_EQ(FormatNumber(359.9f, "#0.0#####"), "359.9");
  // As a double the same float is 0.100000001490116..., which keeps its tail.
  EXPECT_EQ(FormatNumber(static_cast<double>(0.1f), "0.0######"), "0.1");
  EXPECT_EQ(FormatNumber(static_cast<double>(0.1f), "#0.0#########"), "0.1000000015");
  EXPECT_EQ(FormatNumber(-0.25f, "#0"), "0");
}

TEST(NumberFormatTest, IntegersFormatAsTheirValue) {
  EXPECT_EQ(FormatNumber(42, "#0.0##"), "42.0");
  EXPECT_EQ(FormatNumber(-1234567, "#,##0"), "-1,234,567");
  EXPECT_EQ(FormatNumber(std::numeric_limits<int>::min(), "#0"), "-2147483648");
}

TEST(NumberFormatTest, NonFiniteValuesAreNamed) {
  EXPECT_EQ(FormatNumber(std::numeric_limits<double>::infinity(), "#0"), "Infinity");
  EXPECT_EQ(FormatNumber(-std::numeric_limits<float>::infinity(), "#0"), "-Infinity");
  EXPECT_EQ(FormatNumber(std::nan(""), "#0.0"), "NaN");
}

TEST(NumberFormatTest, HugeValuesPrintEveryDigit) {
  std::string text = FormatNumber(1e300, "#0.0");
  EXPECT_EQ(text.size(), 303u);
  EXPECT_EQ(text.substr(0, 2), "10");
  EXPECT_EQ(text.substr(text.size() - 2), ".0");
}

TEST(NumberFormatTest, TextIsRightAligned) {
  EXPECT_EQ(FormatText("7", "@@@"), "  7");
  EXPECT_EQ(FormatText("123", "@@@"), "123");
  EXPECT_EQ(FormatText("12345", "@@@"), "12345");
  EXPECT_EQ(FormatText("", "@@@"), "   ");
}

}  // namespace
}  // namespace plotmeter
