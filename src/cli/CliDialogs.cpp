#include "cli/CliDialogs.h"

#include <string_view>

#include "cli/TextOutput.h"

namespace plotmeter {

namespace {

std::string_view ButtonText(Button button) {
  switch (button) {
    case Button::Ok:
      return "OK";
    case Button::Cancel:
      return "Cancel";
    case Button::Yes:
      return "Yes";
    case Button::No:
      return "No";
  }
  return "";
}

}  // namespace

Button CliDialogs::Answer(Buttons buttons) const {
  switch (buttons) {
    case Buttons::Ok:
      return Button::Ok;
    case Buttons::OkCancel:
      return answerYes_ ? Button::Ok : Button::Cancel;
    case Buttons::YesNo:
      return answerYes_ ? Button::Yes : Button::No;
  }
  return Button::Ok;
}

Button CliDialogs::Show(const MessageBox& box) {
  // The file name is the user's own text, already in the terminal's encoding.
  if (!fileHeading_.empty()) err_ << fileHeading_ << ": ";
  std::string block = "[" + box.title + "]\n";
  if (!box.text.empty()) block += box.text + "\n";
  err_ << Utf8FromLatin1(block);
  // The detail is the system's own text (a path, its reason), not single-byte text.
  if (!box.detail.empty()) err_ << box.detail << '\n';
  const Button answer = Answer(box.buttons);
  if (box.buttons != Buttons::Ok) err_ << "> " << ButtonText(answer) << '\n';
  err_ << '\n' << std::flush;
  return answer;
}

}  // namespace plotmeter
