// The "Data Listing" window `DataList`: the survey as a fixed-column listing, the boxes
// that choose its datasets, columns and source, and its "Edit", "Copy", "Legend" and
// "Close" buttons. Every box forwards its click to the window logic and the listing is
// shown again at once. Modal: the survey cannot change while it is open.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <array>

#include "ui/DataListWindow.h"
#include "ui/qt/QtDialogs.h"

namespace plotmeter::qt {

class ListLegendWindow;

class DataListWindow : public QDialog {
  Q_OBJECT

 public:
  // `dialogs` shows the "Edit" box; null for the window's own Qt boxes.
  explicit DataListWindow(const Survey& survey, UserDialogs* dialogs = nullptr,
                          QWidget* parent = nullptr);

  const DataListWindowLogic& logic() const { return logic_; }

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QLayout* createSettings();
  QWidget* createBoxes();
  QWidget* createListing();
  QLayout* createButtons();
  void createConnections();
  void showState();
  void showLines();
  void alignHeading();

  void edit();
  void copy();
  void showLegend();

  DataListWindowLogic logic_;
  QtDialogs ownDialogs_;
  UserDialogs& dialogs_;
  QPointer<ListLegendWindow> legend_;

  std::array<QLabel*, 3> settingValues_{};
  std::array<QCheckBox*, kShowCount> ShowCkB{};
  std::array<QCheckBox*, kIncludeCount> IncludeCkB{};
  QCheckBox* ProcdCkB;
  QWidget* headingStrip_;
  QLabel* LstHdrLbl;
  QListWidget* DataLst;
  QPushButton* EditBtn;
  QPushButton* CopyBtn;
  QPushButton* LegendBtn;
  QPushButton* CloseBtn;
};

}  // namespace plotmeter::qt
