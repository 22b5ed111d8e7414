// Reading an input whole, once, within a size limit.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>
#include <string>
#include <thread>

#include "datafile/InputText.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

constexpr std::size_t kLimit = 3 << 20;

std::string Pattern(std::size_t size) {
  std::string text(size, ' ');
  for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i % 23);
  return text;
}

// A file that cannot be read at all (open for writing only) shows whether a reading was
// tried: its size alone must refuse it.
TEST(InputTextTest, AFileLargerThanTheLimitIsRefusedBeforeItIsRead) {
  testing::TestFolder folder;
  const std::string path = folder.Write("large.csv", Pattern(kLimit + 1));
  const int writeOnly = ::open(path.c_str(), O_WRONLY);
  std::string text;
  EXPECT_EQ(ReadAllInput(writeOnly, text, kLimit), EFBIG);
  ::close(writeOnly);

  const std::string fits = folder.Write("fits.csv", Pattern(kLimit));
  const int readable = ::open(fits.c_str(), O_RDONLY);
  EXPECT_EQ(ReadAllInput(readable, text, kLimit), 0);
  ::close(readable);
  EXPECT_EQ(text, Pattern(kLimit));
}

TEST(InputTextTest, AStreamWithoutEndIsReadOnlyUpToTheLimit) {
  const int zero = ::open("/dev/zero", O_RDONLY);
  ASSERT_GE(zero, 0);
  std::string text = "left over";
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
    std::size_t done = 0;
    while (done < sent.size()) {
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

TEST(InputTextTest, AFolderIsNoInput) {
  testing::TestFolder folder;
  const int fd = ::open(folder.Path().c_str(), O_RDONLY);
  std::string text;
  EXPECT_EQ(ReadAllInput(fd, text, kLimit), EISDIR);
  ::close(fd);
}

TEST(InputTextTest, AStreamThatTellsItsSizeIsRefusedByIt) {
  std::string text;
  std::istringstream large(Pattern(kLimit + 1));
  EXPECT_EQ(ReadAllInput(large, text, kLimit), EFBIG);
  EXPECT_EQ(large.tellg(), 0);  // nothing read
  std::istringstream fits(Pattern(kLimit));
  EXPECT_EQ(ReadAllInput(fits, text, kLimit), 0);
  EXPECT_EQ(text, Pattern(kLimit));
}

}  // namespace
}  // namespace plotmeter
