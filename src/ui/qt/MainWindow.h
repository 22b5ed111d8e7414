// The main window `Plotmeter`: the drawing and the controls around it. Every control
// forwards what the user did to the window logic and then shows the logic's state again;
// the window decides nothing itself.
#pragma once

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <array>

#include "ui/PlotmeterLogic.h"
#include "ui/qt/LegendWindows.h"
#include "ui/qt/PlotView.h"
#include "ui/qt/QtDialogs.h"

namespace plotmeter::qt {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // `dialogs` shows every box; null for the window's own Qt boxes.
  explicit MainWindow(UserDialogs* dialogs = nullptr, QWidget* parent = nullptr);

  // A file named on the command line or dropped on the window, as if chosen with "Load".
  void openFile(const QString& path);

  const PlotmeterLogic& logic() const { return logic_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void createControls();
  QWidget* createSidePanel();
  void createConnections();
  void createShortcuts();
  void showState();
  void showAreaControls();

  void load();
  void save();
  void saveAs();
  void createNew();
  void clickEditButton(int index);
  // Shows the point entry dialog modally; returns once it has closed.
  void showPointDialog(DataInputLogic& dialog);
  void clickOption(int index, bool ticked);
  void chooseAreaUnit(int index);
  void chooseSegment(int index);
  void pressDrawing(MouseButton button, QPointF at);
  void showList();
  void showLegend();

  // Shows the window's latest state before each box, so that a box raised half-way
  // through a command stands over what it talks about (a bad perimeter drawn in red).
  class StateFirstDialogs : public UserDialogs {
   public:
    StateFirstDialogs(MainWindow& window, UserDialogs& dialogs)
        : window_(window), dialogs_(dialogs) {}
    Button Show(const MessageBox& box) override;
    void Beep() override { dialogs_.Beep(); }
    FileChoice SelectFile(const FileDialogRequest& request) override {
      return dialogs_.SelectFile(request);
    }
    UserDialogs& inner() { return dialogs_; }

   private:
    MainWindow& window_;
    UserDialogs& dialogs_;
  };

  PlotmeterLogic logic_;
  QtDialogs ownDialogs_;
  StateFirstDialogs dialogs_;
  QPointer<AreaLegendWindow> legend_;

  PlotView* DisplaySh;
  std::array<QPushButton*, 4> DataBtn{};
  QPushButton* ExitBtn;
  std::array<QPushButton*, 4> EditPtBtn{};
  QPushButton* ListBtn;
  QPushButton* LegendBtn;
  QPushButton* PrintBtn;  // the sheet to scale: "Print..." and "Export..."
  QPushButton* ExportBtn;
  std::array<QCheckBox*, kOptionCount> OptnsCkB{};
  QComboBox* AreaSgmtCmb;
  QComboBox* AreaUnitCmb;
  QLabel* AreaHdrLbl;
  QLabel* AreaValLbl;
  QLabel* AreaUnitLbl;
  QLabel* MagDecHdrLbl;
  QLabel* MagDecLbl;
  QLabel* ScaleLbl;
  QLabel* DatSrcLbl;
  QLabel* TagFileLbl;
  QLabel* EditHdrLbl;
  QLabel* EditSubLbl;
};

}  // namespace plotmeter::qt
