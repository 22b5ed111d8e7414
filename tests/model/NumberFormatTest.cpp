#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "model/NumberFormat.h"

namespace plotmeter {
namespace {

TEST(NumberFormatTest, DoublesAsThePatternAsks) {
  // clang-format off
  const struct {
    double value;
    const char* pattern;
    const char* expected;
  } rows[] = {
      // The least and the most decimals; "#"s before the point add nothing.
      {12.5, "#0.0#####", "12.5"}, {12, "#0.0#####", "12.0"}, {0.1234567, "#0.0#####", "0.123457"},
      {-0.12345678, "0.0######", "-0.1234568"}, {2.0004, "#0.###", "2"}, {0.04, "#0.###", "0.04"},
      {1234567, "#####0", "1234567"}, {0.0, "#0.0", "0.0"}, {1e21, "#0", "1000000000000000000000"},
      // Half away from zero on the decimal value, not on the binary one; carries through
      // every digit.
      {2.675, "#0.0#", "2.68"}, {-1.25, "#0.0", "-1.3"}, {0.5, "#0", "1"},
      {99.999, "##0.0#", "100.0"},
      // No "-0".
      {-0.0, "#0", "0"}, {-0.4, "#0", "0"}, {-0.00001, "#0.0###", "0.0"},
      // Grouping, counted from the right.
      {1234567.8, "#,##0", "1,234,568"}, {123, "#,##0", "123"}, {-1234, "#,##0", "-1,234"}};
  // clang-format on
  for (const auto& row : rows) {
    EXPECT_EQ(FormatNumber(row.value, row.pattern), row.expected)
        << row.value << " " << row.pattern;
  }
}

TEST(NumberFormatTest, FloatsIntegersAndNonFiniteValues) {
  EXPECT_EQ(FormatNumber(0.1f, "#0.0#####"), "0.1");
  EXPECT_EQ(FormatNumber(5.7f, "#0"), "6");
  // As a double the same float is 0.100000001490116..., which keeps its tail.
  EXPECT_EQ(FormatNumber(static_cast<double>(0.1f), "#0.0#########"), "0.1000000015");
  EXPECT_EQ(FormatNumber(-0.25f, "#0"), "0");
  EXPECT_EQ(FormatNumber(42, "#0.0##"), "42.0");
  EXPECT_EQ(FormatNumber(std::numeric_limits<int>::min(), "#,##0"), "-2,147,483,648");
  EXPECT_EQ(FormatNumber(std::numeric_limits<double>::infinity(), "#0"), "Infinity");
  EXPECT_EQ(FormatNumber(-std::numeric_limits<float>::infinity(), "#0"), "-Infinity");
  EXPECT_EQ(FormatNumber(std::nan(""), "#0.0"), "NaN");
}

TEST(NumberFormatTest, TextIsRightAligned) {
  EXPECT_EQ(FormatText("7", "@@@"), "  7");
  EXPECT_EQ(FormatText("12345", "@@@"), "12345");
  EXPECT_EQ(FormatText("", "@@@"), "   ");
}

}  // namespace
}  // namespace plotmeter
