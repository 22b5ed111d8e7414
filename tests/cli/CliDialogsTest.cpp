#include <gtest/gtest.h>

#include <sstream>

#include "cli/CliDialogs.h"
#include "cli/TextOutput.h"

namespace plotmeter {
namespace {

// The ends of the upper half, and a NUL byte kept. (° and é: the golden list.)
TEST(TextOutputTest, Latin1BytesBecomeUtf8) {
  EXPECT_EQ(Utf8FromLatin1(std::string_view("a\0\x80\xFF", 4)),
            std::string("a\0\xC2\x80\xC3\xBF", 6));
}

// (Escape and bell on a terminal: CliTest.ListShowsControlBytesHarmlesslyOnATerminal.)
TEST(TextOutputTest, ControlCharactersInCaretNotation) {
  EXPECT_EQ(ShowControls(std::string_view("\x07\0\x7F", 3)), "^G^@^?");
  EXPECT_EQ(ShowControls("\x9B\x80\x89"), "M-^[M-^@M-^I");
  EXPECT_EQ(ShowControls("tab\tstays, 90\xB0 and \xA0 too"), "tab\tstays, 90\xB0 and \xA0 too");
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
