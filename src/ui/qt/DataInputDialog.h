// The point entry dialog `DataInput` ("Data Input"), shown modally over the main window.
// It holds no state of its own: after every user action it shows the controls of its
// logic again, and every action goes to the logic's method of the same meaning.
#pragma once

#include <QDialog>
#include <QHash>
#include <QString>
#include <initializer_list>

#include "ui/DataInputLogic.h"

class QGroupBox;
class QLayout;
class QSpinBox;

namespace plotmeter::qt {

class DataInputDialog : public QDialog {
  Q_OBJECT

 public:
  // `logic` has been opened on the survey; it outlives the dialog.
  explicit DataInputDialog(DataInputLogic& logic, QWidget* parent = nullptr);

  // Cancel, Escape and the title bar's close button: the logic's "Cancel".
  void reject() override;

 signals:
  // The main window's selection text changed (a move to another point).
  void selectionTextChanged();

 private:
  // A control of the logic, named and kept by its object name.
  template <typename Widget>
  Widget* add(const QString& name);
  QLayout* createButtons(const char* name, std::initializer_list<int> order);
  QGroupBox* createPointGroup();
  QGroupBox* createLinkGroup();
  QGroupBox* createDatasetGroup();
  QGroupBox* createFileGroup();
  void connectFields();
  void connectChoices();
  void connectButtons();

  // Runs a user action on the logic, then shows what it left; closes the dialog once the
  // logic has.
  template <typename Action>
  void act(Action action);
  void showState();
  void showControl(const QString& name, const ControlState& state);
  void apply();

  DataInputLogic& logic_;
  std::string selectionText_;
  // Every control of the logic, by object name.
  QHash<QString, QWidget*> controls_;
  QSpinBox* TgtPtSpn;
};

}  // namespace plotmeter::qt
