// What the window tests share: the main window shown offscreen with its boxes answered by a
// script, controls found by their names, and a user's clicks on them.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "support/ScriptedDialogs.h"
#include "ui/qt/MainWindow.h"

namespace plotmeter::testing {

inline const QString kFarm = PLOTMETER_EXAMPLES_DIR "/farm.csv";

inline QString Write(const QTemporaryDir& folder, const QString& name, const QString& text) {
  QFile file(folder.filePath(name));
  if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write %s", qPrintable(name));
  file.write(text.toLatin1());
  return file.fileName();
}

class WindowDriver {
 protected:
  // From the test's init(): a new main window, shown and active.
  void ShowWindow() {
    dialogs_ = ScriptedDialogs{};
    window_ = std::make_unique<qt::MainWindow>(&dialogs_);
    window_->resize(900, 640);
    window_->show();
    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
  }

  // A control of `parent` (or of the main window) by name; the test ends when there is none.
  template <typename T = QWidget>
  static T* Find(const QObject* parent, const QString& name) {
    T* widget = parent->findChild<T*>(name);
    if (!widget) qFatal("no control %s", qPrintable(name));
    return widget;
  }
  template <typename T = QWidget>
  T* Find(const QString& name) {
    return Find<T>(window_.get(), name);
  }
  static QString Text(const QObject* parent, const QString& label) {
    return Find<QLabel>(parent, label)->text();
  }
  QString Text(const QString& label) { return Text(window_.get(), label); }
  static void Click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  void Click(const QString& button) { Click(Find(button)); }

  // The names of a control array's members, `name`_0 to `name`_(count - 1).
  static QStringList Members(const char* name, int count) {
    QStringList names;
    for (int i = 0; i < count; ++i) names << QString("%1_%2").arg(name).arg(i);
    return names;
  }
  // What buttons and boxes show: each caption, "[x]" when ticked and "(off)" when disabled.
  static QStringList States(const QObject* parent, const QStringList& names) {
    QStringList states;
    for (const QString& name : names) {
      auto* control = Find<QAbstractButton>(parent, name);
      states << control->text() + (control->isChecked() ? " [x]" : "") +
                    (control->isEnabled() ? "" : " (off)");
    }
    return states;
  }

  void ChooseFile(const QString& path) {
    dialogs_.files.push_back({.cancelled = false, .path = path.toStdString()});
  }

  // A click on the drawing where point `index` is drawn, `off` pixels away.
  void ClickPoint(int index, Qt::MouseButton button = Qt::LeftButton, QPoint off = {}) {
    auto* view = Find<qt::PlotView>("DisplaySh");
    const ScreenPoint& at = window_->logic().scene().screen[index];
    QTest::mouseClick(view, button, {}, view->transform().ToDevice(at.x, at.y).toPoint() + off);
  }

  // Runs `steps` on the modal dialog that the next click opens (that click returns once
  // it has closed). A dialog the steps leave open is cancelled, so that a failed step
  // cannot hang the test.
  void OnDialog(std::function<void(QDialog*)> steps) {
    dialogSeen_ = false;
    QTimer::singleShot(0, qApp, [this, steps] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog) return;
      dialogSeen_ = true;
      steps(dialog);
      if (dialog->isVisible()) dialog->reject();
    });
  }

  ScriptedDialogs dialogs_;
  std::unique_ptr<qt::MainWindow> window_;
  bool dialogSeen_ = false;
};

}  // namespace plotmeter::testing
