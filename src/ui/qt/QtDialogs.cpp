#include "ui/qt/QtDialogs.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QStringList>

namespace plotmeter::qt {

namespace {

QMessageBox::Icon ToQtIcon(Icon icon) {
  switch (icon) {
    case Icon::Critical:
      return QMessageBox::Critical;
    case Icon::Question:
      return QMessageBox::Question;
    case Icon::Exclamation:
      return QMessageBox::Warning;
    case Icon::Information:
      return QMessageBox::Information;
    case Icon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

// What a screen reader says of the icon: its kind.
QString IconName(Icon icon) {
  switch (icon) {
    case Icon::Critical:
      return "Critical";
    case Icon::Question:
      return "Question";
    case Icon::Exclamation:
      return "Exclamation";
    case Icon::Information:
      return "Information";
    case Icon::None:
      break;
  }
  return {};
}

QMessageBox::StandardButton ToQtButton(Button button) {
  switch (button) {
    case Button::Ok:
      return QMessageBox::Ok;
    case Button::Cancel:
      return QMessageBox::Cancel;
    case Button::Yes:
      return QMessageBox::Yes;
    case Button::No:
      return QMessageBox::No;
  }
  return QMessageBox::Ok;
}

QMessageBox::StandardButtons ToQtButtons(Buttons buttons) {
  switch (buttons) {
    case Buttons::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case Buttons::Ok:
      break;
  }
  return QMessageBox::Ok;
}

Button FromQtButton(int button) {
  switch (button) {
    case QMessageBox::Cancel:
      return Button::Cancel;
    case QMessageBox::Yes:
      return Button::Yes;
    case QMessageBox::No:
      return Button::No;
    default:
      return Button::Ok;
  }
}

}  // namespace

// A box raised from a dialog (the point entry dialog) stands over that dialog.
QWidget* QtDialogs::owner() const {
  QWidget* modal = QApplication::activeModalWidget();
  return modal ? modal : parent_;
}

Button QtDialogs::Show(const MessageBox& box) {
  QMessageBox message(ToQtIcon(box.icon), QString::fromLatin1(box.title),
                      QString::fromLatin1(box.text), ToQtButtons(box.buttons), owner());
  message.setDefaultButton(ToQtButton(box.defaultButton));
  if (!box.detail.empty()) message.setDetailedText(QString::fromLocal8Bit(box.detail));
  // Escape answers a question with its safe choice.
  if (box.buttons != Buttons::Ok) message.setEscapeButton(ToQtButton(box.defaultButton));
  if (auto* icon = message.findChild<QLabel*>("qt_msgboxex_icon_label")) {
    icon->setAccessibleName(IconName(box.icon));
  }
  return FromQtButton(message.exec());
}

void QtDialogs::Beep() { QApplication::beep(); }

FileChoice QtDialogs::SelectFile(const FileDialogRequest& request) {
  QFileDialog dialog(owner(), QString::fromLatin1(request.title));
  dialog.setNameFilter(QtFileFilter(request.filter));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setOption(QFileDialog::DontResolveSymlinks);
  if (request.mode == 0) {
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
  } else {
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // The overwrite question is the program's own.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
  }
  if (!request.defaultSuffix.empty()) {
    dialog.setDefaultSuffix(QString::fromLatin1(request.defaultSuffix));
  }
  if (!request.folder.empty()) dialog.setDirectory(QFile::decodeName(request.folder.c_str()));
  if (!request.initialName.empty())
    dialog.selectFile(QFile::decodeName(request.initialName.c_str()));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return {.cancelled = false,
          .path = QFile::encodeName(dialog.selectedFiles().first()).toStdString()};
}

QString QtFileFilter(const std::string& filter) {
  const QStringList parts = QString::fromLatin1(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    filters << QString("%1 (%2)").arg(parts[i], parts[i + 1]);
  }
  return filters.join(";;");
}

}  // namespace plotmeter::qt
