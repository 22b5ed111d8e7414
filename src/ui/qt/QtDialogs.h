// The message boxes, questions, beeps and file dialogs of the desktop program: the core's
// `UserDialogs` shown with QMessageBox and QFileDialog.
#pragma once

#include <QWidget>

#include "model/UserDialogs.h"

namespace plotmeter::qt {

class QtDialogs : public UserDialogs {
 public:
  explicit QtDialogs(QWidget* parent) : parent_(parent) {}

  Button Show(const MessageBox& box) override;
  void Beep() override;
  FileChoice SelectFile(const FileDialogRequest& request) override;

 private:
  QWidget* owner() const;

  QWidget* parent_;
};

// "Name|pattern|Name|pattern" as the file commands write a filter, as QFileDialog reads
// one: "Name (pattern);;Name (pattern)".
QString QtFileFilter(const std::string& filter);

}  // namespace plotmeter::qt
