// The text helpers of the data file (line ends are the reader's forgiving forms), and
// reading an input whole, once, within a size limit.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>
#include <thread>

#include "datafile/FileText.h"
#include "datafile/InputText.h"
#include "support/Latin1.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

TEST(FileTextTest, WholeAndDecimalNumbers) {
  // clang-format off
  const std::pair<const char*, std::optional<int>> wholes[] = {
      {"-3", -3}, {"2147483647", 2147483647}, {"+-3", std::nullopt}, {"1.0", std::nullopt},
      {"2147483648", std::nullopt}};
  // clang-format on
  for (const auto& [text, expected] : wholes) EXPECT_EQ(ParseWholeNumber(text), expected) << text;
  // clang-format off
  const std::pair<const char*, std::optional<float>> decimals[] = {
      {"+.5", 0.5f}, {"", std::nullopt}, {"1.5x", std::nullopt}, {"inf", std::nullopt},
      {"1e99", std::nullopt}};
  // clang-format on
  for (const auto& [text, expected] : decimals) EXPECT_EQ(ParseDecimal(text), expected) << text;
  for (float value : {-0.0f, -3.25f, 0.1f, 11.111111f, 1e-6f, 359.99997f}) {
    std::string text = DecimalText(value);
    EXPECT_EQ(ParseDecimal(text), value == 0 ? 0.0f : value) << text;
  }
  EXPECT_EQ(DecimalText(-0.0f), "0");
}

// Only text that is all valid UTF-8 of code points below 256 is converted.
TEST(FileTextTest, EditorUtf8BecomesSingleBytes) {
  // clang-format off
  const std::pair<std::string, std::string> rows[] = {
      {"14°30' Café ÿ", testing::Latin1("14°30' Café ÿ")},
      {"\xE2\x80\x99 and °", "\xE2\x80\x99 and °"},
      {"ok \xC2", "ok \xC2"}};
  // clang-format on
  for (const auto& [given, expected] : rows) {
    std::string text = given;
    ConvertEditorUtf8(text);
    EXPECT_EQ(text, expected) << ::testing::PrintToString(given);
  }
}

constexpr std::size_t kLimit = 3 << 20;

std::string Pattern(std::size_t size) {
  std::string text(size, ' ');
  for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i % 23);
  return text;
}

// A file open for writing only cannot be read at all: its size alone must refuse it.
TEST(InputTextTest, AnInputLargerThanTheLimitIsRefused) {
  testing::TestFolder folder;
  const std::string path = folder.Write("large.csv", Pattern(kLimit + 1));
  const int writeOnly = ::open(path.c_str(), O_WRONLY);
  std::string text;
  EXPECT_EQ(ReadAllInput(writeOnly, text, kLimit), EFBIG);
  ::close(writeOnly);
  const int readable = ::open(folder.Write("fits.csv", Pattern(kLimit)).c_str(), O_RDONLY);
  EXPECT_EQ(ReadAllInput(readable, text, kLimit), 0);
  ::close(readable);
  EXPECT_EQ(text, Pattern(kLimit));

  // A stream without end is read only up to the limit, and nothing of it is kept.
  const int zero = ::open("/dev/zero", O_RDONLY);
  EXPECT_EQ(ReadAllInput(zero, text, kLimit), EFBIG);
  ::close(zero);
  EXPECT_EQ(text, "");
}

// A pipe arrives in pieces of its own size and is held in blocks: all of it, in order.
TEST(InputTextTest, APipeIsReadWholeAcrossItsBlocks) {
  const std::string sent = Pattern(kLimit - 12345);
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  std::thread writer([&] {
    for (std::size_t done = 0; done < sent.size();) {
      const ssize_t written = ::write(ends[1], sent.data() + done, sent.size() - done);
      if (written <= 0) break;
      done += static_cast<std::size_t>(written);
    }
    ::close(ends[1]);
  });
  std::string text;
  EXPECT_EQ(ReadAllInput(ends[0], text, kLimit), 0);
  writer.join();
  ::close(ends[0]);
  EXPECT_EQ(text, sent);
}

}  // namespace
}  // namespace plotmeter
