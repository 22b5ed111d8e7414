// The one way the core talks to the user: message boxes, questions, beeps and the
// file dialog. The desktop program implements it with Qt, plotmeter-cli prints the
// boxes as text, and tests use a scripted implementation that records every box.
#pragma once

#include <string>

namespace plotmeter {

enum class Icon { None, Critical, Question, Exclamation, Information };
enum class Buttons { Ok, OkCancel, YesNo };
enum class Button { Ok, Cancel, Yes, No };

struct MessageBox {
  std::string title;
  std::string text;  // lines separated by '\n'
  Icon icon = Icon::None;
  Buttons buttons = Buttons::Ok;
  Button defaultButton = Button::Ok;
  // Where the system gave a reason for the fault: the reason and the file's path, shown
  // apart from the fixed text (the window's detailed text). In the file system's own
  // encoding, not single-byte text. Empty for none.
  std::string detail;
};

// What the common file dialog is asked for. Mode 0 opens an existing file, 1 saves a
// file, 2 chooses a whole folder, 3 chooses a folder through a file name.
struct FileDialogRequest {
  int mode = 0;
  std::string extension;
  std::string filter;
  std::string title;
  bool keepName = false;
  std::string initialName;
  // Added by the dialog to a name typed without an extension; unlike `extension` it
  // refuses no other.
  std::string defaultSuffix;
  // Where the dialog opens: the folder of the survey's file. Empty for the dialog's own
  // choice.
  std::string folder;
};

struct FileChoice {
  bool cancelled = true;
  std::string path;
};

class UserDialogs {
 public:
  virtual ~UserDialogs() = default;
  // Shows a box and returns the button pressed; callers beep first where the program beeps.
  virtual Button Show(const MessageBox& box) = 0;
  virtual void Beep() = 0;
  virtual FileChoice SelectFile(const FileDialogRequest& request) = 0;
};

// No box reaches the user: for work done out of the user's sight (will this file load
// again?). Questions get Yes, the text of the last box is kept.
class UnseenDialogs : public UserDialogs {
 public:
  Button Show(const MessageBox& box) override {
    lastText = box.text;
    return box.buttons == Buttons::Ok ? Button::Ok : Button::Yes;
  }
  void Beep() override {}
  FileChoice SelectFile(const FileDialogRequest&) override { return {}; }

  std::string lastText;
};

// Beep, then show: how every fault box is shown.
inline Button Alert(UserDialogs& dialogs, const MessageBox& box) {
  dialogs.Beep();
  return dialogs.Show(box);
}

}  // namespace plotmeter
