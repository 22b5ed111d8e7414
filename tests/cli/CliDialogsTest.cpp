#include <gtest/gtest.h>

#include <sstream>

#include "cli/CliDialogs.h"
#include "cli/TextOutput.h"

namespace plotmeter {
namespace {

TEST(TextOutputTest, Latin1BytesBecomeUtf8) {
  EXPECT_EQ(Utf8FromLatin1("27\xB0 30'"), "27\xC2\xB0 30'");
  EXPECT_EQ(Utf8FromLatin1("\x80\xFF"), "\xC2\x80\xC3\xBF");
  EXPECT_EQ(Utf8FromLatin1(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

TEST(TextOutputTest, ControlCharactersInCaretNotation) {
  EXPECT_EQ(ShowControls("a\x1B[31mb"), "a^[[31mb");
  EXPECT_EQ(ShowControls(std::string_view("\x07\0\x7F", 3)), "^G^@^?");
  EXPECT_EQ(ShowControls("\x9B\x80\x89"), "M-^[M-^@M-^I");
  EXPECT_EQ(ShowControls("tab\tstays, 90\xB0 and \xA0 too"), "tab\tstays, 90\xB0 and \xA0 too");
}

// A question is answered No (Cancel) unless every answer is to be Yes (OK); the block
// then says which answer was used. Yes/No questions and boxes that ask nothing are the
// goldens' (question-answered-no, question-answered-yes); no command asks OK/Cancel.
TEST(CliDialogsTest, PrintsTheBlockWithTheAnswerUsed) {
  for (const bool yes : {false, true}) {
    std::ostringstream err;
    CliDialogs dialogs(err, yes);
    EXPECT_EQ(dialogs.Show(MessageBox{.title = "GPS Link issue",
                                      .text = "first line\nsecond line",
                                      .icon = Icon::Question,
                                      .buttons = Buttons::OkCancel,
                                      .defaultButton = Button::Yes}),
              yes ? Button::Ok : Button::Cancel);
    EXPECT_EQ(err.str(), std::string("[GPS Link issue]\nfirst line\nsecond line\n") +
                             (yes ? "> OK\n" : "> Cancel\n") + "\n");
  }
}

// The text speaks UTF-8; the detail is the system's text, in the terminal's encoding
// already, and comes as it is. (The file heading: the golden check-several-worst-status-wins.)
TEST(CliDialogsTest, TextIsUtf8AndTheDetailComesAsItIs) {
  std::ostringstream err;
  CliDialogs dialogs(err, false);
  Alert(dialogs, MessageBox{.title = "Write File Abort",
                            .text = "Bad 90\xB0\nPlease correct",
                            .detail = "/home/j\xC3\xB6rg/lot.csv: No space left on device"});
  // There is no file dialog: a request for one is cancelled, and says nothing.
  EXPECT_TRUE(dialogs.SelectFile(FileDialogRequest{}).cancelled);
  EXPECT_EQ(err.str(),
            "[Write File Abort]\nBad 90\xC2\xB0\nPlease correct\n"
            "/home/j\xC3\xB6rg/lot.csv: No space left on device\n\n");
}

}  // namespace
}  // namespace plotmeter
