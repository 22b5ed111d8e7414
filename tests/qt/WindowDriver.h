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

class WindowDriver {
 protected:
  static inline const QString kFarm = PLOTMETER_EXAMPLES_DIR "/farm.csv";

  // From the test's init(): a new main window, shown and active.
  void ShowWindow() {
    dialogs_ = ScriptedDialogs{};
    window_ = std::make_unique<qt::MainWindow>(&dialogs_);
    window_->resize(900, 640);
    window_->show();
    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
  }

  // Opens a survey of one rectangle from (0, 0) to (`x`, `y`), in the unit of length `unit`.
  void OpenRectangle(const QString& unit, const QString& x, const QString& y) {
    QFile file(folder_.filePath("rectangle.csv"));
    if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write %s", qPrintable(file.fileName()));
    const QString text(
        "44,#0092,%1,0,0,58\nH,M,Rectangle\n1,X,,,0,0\n2,X,,,%2,0\n"
        "3,X,,,%2,%3\n4,X,,,0,%3\n");
    file.write(text.arg(unit, x, y).toLatin1());
    file.close();
    window_->openFile(file.fileName());
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

  // Expects the controls of `expected` ("name=state") to show that state: a label its text, a
  // button its caption then " [x]" when ticked; either then " (off)" when disabled.
  static void ExpectShown(const QObject* parent, const QStringList& expected) {
    QStringList shown;
    for (const QString& state : expected) {
      const QString name = state.section('=', 0, 0);
      QWidget* control = Find(parent, name);
      auto* button = qobject_cast<QAbstractButton*>(control);
      const QString text = button ? button->text() + (button->isChecked() ? " [x]" : "")
                                  : Find<QLabel>(parent, name)->text();
      shown << name + '=' + text + (control->isEnabled() ? "" : " (off)");
    }
    QCOMPARE(shown, expected);
  }
  void ExpectShown(const QStringList& expected) { ExpectShown(window_.get(), expected); }

  // A click on the drawing where point `index` is drawn, `off` pixels away.
  void ClickPoint(int index, Qt::MouseButton button = Qt::LeftButton, QPoint off = {}) {
    auto* view = Find<qt::PlotView>("DisplaySh");
    const ScreenPoint& at = window_->logic().scene().screen[index];
    QTest::mouseClick(view, button, {}, view->transform().ToDevice(at.x, at.y).toPoint() + off);
  }

  // Runs `open`, which shows a modal dialog and returns once it has closed, and `steps`
  // on that dialog; a dialog the steps leave open is cancelled, so that a failed step
  // cannot hang the test.
  void InDialog(const std::function<void()>& open, const std::function<void(QDialog*)>& steps) {
    bool seen = false;
    QObject call;  // should no dialog open, the steps go with it
    QTimer::singleShot(0, &call, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog) return;
      seen = true;
      steps(dialog);
      if (dialog->isVisible()) dialog->reject();
    });
    open();
    QVERIFY2(seen, "no dialog opened");
  }
  void InDialog(const QString& button, const std::function<void(QDialog*)>& steps) {
    InDialog([&] { Click(button); }, steps);
  }

  QTemporaryDir folder_;
  ScriptedDialogs dialogs_;
  std::unique_ptr<qt::MainWindow> window_;
};

}  // namespace plotmeter::testing
