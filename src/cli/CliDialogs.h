// The message boxes of plotmeter-cli: each box is printed to standard error as a block,
//
//   [TITLE]
//   the text, each line break a new line
//   the detail      (only where the system gave a reason: the path and the reason)
//   > No            (questions only: the answer used)
//   (an empty line)
//
// Questions are answered No (Cancel), the safe answer, unless every answer is to be Yes
// (OK). There is no file dialog: a request for one is cancelled.
#pragma once

#include <ostream>
#include <string>
#include <utility>

#include "model/UserDialogs.h"

namespace plotmeter {

class CliDialogs : public UserDialogs {
 public:
  CliDialogs(std::ostream& err, bool answerYes) : err_(err), answerYes_(answerYes) {}

  // The file name that heads each block when several files are worked in turn; empty for
  // none.
  void SetFileHeading(std::string fileName) { fileHeading_ = std::move(fileName); }

  Button Show(const MessageBox& box) override;
  void Beep() override {}
  FileChoice SelectFile(const FileDialogRequest&) override { return FileChoice{}; }

 private:
  Button Answer(Buttons buttons) const;

  std::ostream& err_;
  bool answerYes_;
  std::string fileHeading_;
};

}  // namespace plotmeter
