#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "datafile/FileText.h"

namespace plotmeter {
namespace {

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  LineCursor cursor(text);
  std::string_view line;
  while (cursor.Next(line)) lines.emplace_back(line);
  return lines;
}

using LinesList = std::vector<std::string>;

TEST(FileTextTest, LinesEndAtLfCrLfOrLoneCr) {
  EXPECT_EQ(Lines("a\nb\n"), (LinesList{"a", "b"}));
  EXPECT_EQ(Lines("a\r\nb\r\n"), (LinesList{"a", "b"}));
  EXPECT_EQ(Lines("a\rb\r"), (LinesList{"a", "b"}));
  EXPECT_EQ(Lines("a\r\n\r\nb"), (LinesList{"a", "", "b"}));
  EXPECT_EQ(Lines("a\n\nb"), (LinesList{"a", "", "b"}));
  EXPECT_EQ(Lines("last without break"), (LinesList{"last without break"}));
  EXPECT_EQ(Lines(""), LinesList{});
  EXPECT_EQ(Lines("\n"), LinesList{""});
  // Lone CRs before and after an LF, and a CR just before the CR LF.
  EXPECT_EQ(Lines("a\rb\rc\nd\re\n"), (LinesList{"a", "b", "c", "d", "e"}));
  EXPECT_EQ(Lines("c\r\r\nd"), (LinesList{"c", "", "d"}));
  EXPECT_EQ(Lines("\r\r\r"), (LinesList{"", "", ""}));
}

TEST(FileTextTest, TrimsBlanksAndTabsOnly) {
  EXPECT_EQ(TrimBlanks(" \t x y \t "), "x y");
  EXPECT_EQ(TrimBlanks("\rx\r"), "\rx\r");
  EXPECT_EQ(TrimBlanks("   "), "");
  EXPECT_EQ(TrimTrailingBlanks("  x  "), "  x");
}

struct WholeNumberRow {
  const char* text;
  std::optional<int> expected;
};

TEST(FileTextTest, WholeNumbers) {
  const WholeNumberRow rows[] = {{"0", 0},
                                 {"44", 44},
                                 {"+7", 7},
                                 {"-3", -3},
                                 {"007", 7},
                                 {"", std::nullopt},
                                 {"+", std::nullopt},
                                 {"+-3", std::nullopt},
                                 {"1.0", std::nullopt},
                                 {"12a", std::nullopt},
                                 {" 1", std::nullopt},
                                 {"2147483647", 2147483647},
                                 {"2147483648", std::nullopt},
                                 {"99999999999", std::nullopt}};
  for (const WholeNumberRow& row : rows) {
    EXPECT_EQ(ParseWholeNumber(row.text), row.expected) << row.text;
  }
}

struct DecimalRow {
  const char* text;
  std::optional<float> expected;
};

TEST(FileTextTest, Decimals) {
  const DecimalRow rows[] = {{"12", 12.0f},          {"-3.25", -3.25f},     {"+.5", 0.5f},
                             {"1e-3", 0.001f},       {"", std::nullopt},    {"east", std::nullopt},
                             {"1.5x", std::nullopt}, {"inf", std::nullopt}, {"nan", std::nullopt},
                             {"1e99", std::nullopt}, {"+-1", std::nullopt}};
  for (const DecimalRow& row : rows) {
    EXPECT_EQ(ParseDecimal(row.text), row.expected) << row.text;
  }
}

TEST(FileTextTest, DecimalTextReadsBackExactly) {
  for (float value : {0.0f, -0.0f, 12.5f, -3.25f, 0.1f, 11.111111f, 1e-6f, 359.99997f}) {
    std::string text = DecimalText(value);
    EXPECT_EQ(ParseDecimal(text), value == 0 ? 0.0f : value) << text;
  }
  EXPECT_EQ(DecimalText(-0.0f), "0");
  EXPECT_EQ(DecimalText(12.5f), "12.5");
}

TEST(FileTextTest, SplitsIntoAtMostNFields) {
  std::array<std::string_view, 3> fields;
  EXPECT_EQ(SplitFields("a,b", ',', fields), 2u);
  EXPECT_EQ(fields[0], "a");
  EXPECT_EQ(fields[1], "b");
  EXPECT_EQ(fields[2], "");
  EXPECT_EQ(SplitFields("a,,c,d,e", ',', fields), 3u);
  EXPECT_EQ(fields[1], "");
  EXPECT_EQ(fields[2], "c");
}

TEST(FileTextTest, TextAfterFieldsKeepsSeparatorsInsideButNotPadding) {
  EXPECT_EQ(TextAfterFields("H,M,North, east", ',', 2), "North, east");
  EXPECT_EQ(TextAfterFields("H,M, Front field ,,,,", ',', 2), "Front field");
  EXPECT_EQ(TextAfterFields("H,M", ',', 2), "");
  EXPECT_EQ(TextAfterFields("H,M,", ',', 2), "");
}

TEST(FileTextTest, CommentLines) {
  EXPECT_TRUE(IsCommentLine("/ Main Dataset Header", ','));
  EXPECT_TRUE(IsCommentLine("  /End data", ','));
  EXPECT_TRUE(IsCommentLine(",/End data", ','));
  EXPECT_TRUE(IsCommentLine(", / Column Headings (for data lines):", ','));
  EXPECT_TRUE(IsCommentLine("\t/End data", '\t'));
  EXPECT_FALSE(IsCommentLine("1,X,,,0,0", ','));
  EXPECT_FALSE(IsCommentLine(",X,/", ','));
  EXPECT_FALSE(IsCommentLine("", ','));
  EXPECT_FALSE(IsCommentLine(",,,", ','));
}

TEST(FileTextTest, EmptyRows) {
  EXPECT_TRUE(IsEmptyRow("", ','));
  EXPECT_TRUE(IsEmptyRow(" ,, ,\t", ','));
  EXPECT_FALSE(IsEmptyRow(",,x", ','));
}

struct Utf8Row {
  const char* name;
  std::string text;
  std::string expected;
};

TEST(FileTextTest, EditorUtf8BecomesSingleBytes) {
  const Utf8Row rows[] = {
      {"degree sign",
       "14\xC2\xB0"
       "30'",
       "14\xB0"
       "30'"},
      {"letters of Latin-1", "Caf\xC3\xA9 \xC3\xBF", "Caf\xE9 \xFF"},
      {"byte-order mark", "\xEF\xBB\xBF// a\n", "// a\n"},
      {"mark and degree",
       "\xEF\xBB\xBF"
       "1\xC2\xB0",
       "1\xB0"},
      {"already single bytes",
       "14\xB0"
       "30'",
       "14\xB0"
       "30'"},
      {"a code point above 255", "\xE2\x80\x99 and \xC2\xB0", "\xE2\x80\x99 and \xC2\xB0"},
      {"cut short at the end", "ok \xC2", "ok \xC2"},
      {"plain ASCII", "44,#0092", "44,#0092"},
  };
  for (const Utf8Row& row : rows) {
    std::string text = row.text;
    ConvertEditorUtf8(text);
    EXPECT_EQ(text, row.expected) << row.name;
  }
}

}  // namespace
}  // namespace plotmeter
