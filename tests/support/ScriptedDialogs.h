// A `UserDialogs` for tests: records every box and beep, answers from a queue.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "model/UserDialogs.h"

namespace plotmeter::testing {

class ScriptedDialogs : public UserDialogs {
 public:
  // Answers given in turn to the boxes that ask a question; when the queue is empty a
  // question gets its default button.
  std::deque<Button> answers;
  std::deque<FileChoice> files;

  std::vector<MessageBox> boxes;
  std::vector<FileDialogRequest> fileRequests;
  int beeps = 0;

  Button Show(const MessageBox& box) override {
    boxes.push_back(box);
    if (box.buttons == Buttons::Ok) return Button::Ok;
    if (answers.empty()) return box.defaultButton;
    Button answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void Beep() override { ++beeps; }
  FileChoice SelectFile(const FileDialogRequest& request) override {
    fileRequests.push_back(request);
    if (files.empty()) return FileChoice{};
    FileChoice choice = files.front();
    files.pop_front();
    return choice;
  }

  const MessageBox& last() const { return boxes.back(); }
};

}  // namespace plotmeter::testing
