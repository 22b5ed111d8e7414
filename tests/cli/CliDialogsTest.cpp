#include <gtest/gtest.h>

#include <sstream>

#include "cli/CliDialogs.h"
#include "cli/TextOutput.h"

namespace plotmeter {
namespace {

TEST(TextOutputTest, Latin1BytesBecomeUtf8) {
  EXPECT_EQ(Utf8FromLatin1("27\xB0 30'"), "27\xC2\xB0 30'");
  EXPECT_EQ(Utf8FromLatin1("plain text"), "plain text");
  EXPECT_EQ(Utf8FromLatin1("\x80\xFF"), "\xC2\x80\xC3\xBF");
  EXPECT_EQ(Utf8FromLatin1(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

struct AnswerCase {
  Buttons buttons;
  bool yes;
  Button answer;
  std::string answerLine;  // empty for a box that asks nothing
};

class CliDialogsAnswerTest : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(CliDialogsAnswerTest, PrintsTheBlockWithTheAnswerUsed) {
  std::ostringstream err;
  CliDialogs dialogs(err, GetParam().yes);
  const MessageBox box{.title = "GPS Link issue",
                       .text = "first line\nsecond line",
                       .icon = Icon::Question,
                       .buttons = GetParam().buttons,
                       .defaultButton = Button::Yes};
  EXPECT_EQ(dialogs.Show(box), GetParam().answer);
  const std::string answer = GetParam().answerLine.empty() ? "" : GetParam().answerLine + "\n";
  EXPECT_EQ(err.str(), "[GPS Link issue]\nfirst line\nsecond line\n" + answer + "\n");
}

INSTANTIATE_TEST_SUITE_P(Buttons, CliDialogsAnswerTest,
                         ::testing::Values(AnswerCase{Buttons::YesNo, false, Button::No, "> No"},
                                           AnswerCase{Buttons::YesNo, true, Button::Yes, "> Yes"},
                                           AnswerCase{Buttons::OkCancel, false, Button::Cancel,
                                                      "> Cancel"},
                                           AnswerCase{Buttons::OkCancel, true, Button::Ok, "> OK"},
                                           AnswerCase{Buttons::Ok, false, Button::Ok, ""},
                                           AnswerCase{Buttons::Ok, true, Button::Ok, ""}));

TEST(CliDialogsTest, BlockIsHeadedByTheFileNameAndSpeaksUtf8) {
  std::ostringstream err;
  CliDialogs dialogs(err, false);
  dialogs.SetFileHeading("farm.csv");
  dialogs.Beep();
  Alert(dialogs, MessageBox{.title = "File Read Abort", .text = "Bad 90\xB0\nPlease correct"});
  EXPECT_EQ(err.str(), "farm.csv: [File Read Abort]\nBad 90\xC2\xB0\nPlease correct\n\n");
}

// The detail is the system's text, in the terminal's encoding already: one more line of
// the block, as it is.
TEST(CliDialogsTest, DetailIsOneMoreLineAfterTheText) {
  std::ostringstream err;
  CliDialogs dialogs(err, false);
  dialogs.Show(MessageBox{.title = "Write File Abort",
                          .text = "Cannot open file",
                          .detail = "/home/j\xC3\xB6rg/lot.csv: No space left on device"});
  EXPECT_EQ(err.str(),
            "[Write File Abort]\nCannot open file\n"
            "/home/j\xC3\xB6rg/lot.csv: No space left on device\n\n");
}

TEST(TextOutputTest, ControlCharactersInCaretNotation) {
  EXPECT_EQ(ShowControls("a\x1B[31mb"), "a^[[31mb");
  EXPECT_EQ(ShowControls(std::string_view("\x07\0\x7F", 3)), "^G^@^?");
  EXPECT_EQ(ShowControls("\x9B\x80\x89"), "M-^[M-^@M-^I");
  EXPECT_EQ(ShowControls("tab\tstays, 90\xB0 and \xA0 too"), "tab\tstays, 90\xB0 and \xA0 too");
}

TEST(CliDialogsTest, FileDialogIsCancelled) {
  std::ostringstream err;
  CliDialogs dialogs(err, true);
  EXPECT_TRUE(dialogs.SelectFile(FileDialogRequest{}).cancelled);
  EXPECT_EQ(err.str(), "");
}

}  // namespace
}  // namespace plotmeter
