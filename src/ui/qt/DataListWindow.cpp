#include "ui/qt/DataListWindow.h"

#include <QAction>
#include <QClipboard>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

#include "ui/qt/LegendWindows.h"
#include "ui/qt/ListingFont.h"
#include "ui/qt/WidgetNames.h"

namespace plotmeter::qt {

namespace {

constexpr std::array<const char*, 3> kSettingNames = {"UnitLbl", "FileTagLbl", "MagDecLbl"};
constexpr std::array<const char*, 3> kSettingHeadingNames = {"UnitHdrLbl", "FileTagHdrLbl",
                                                             "MagDecHdrLbl"};

QPushButton* NamedButton(const char* name, const char* caption) {
  auto* button = Named(new QPushButton(caption), name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

DataListWindow::DataListWindow(const Survey& survey, UserDialogs* dialogs, QWidget* parent)
    : QDialog(parent),
      logic_(survey),
      ownDialogs_(this),
      dialogs_(dialogs ? *dialogs : ownDialogs_) {
  setObjectName("DataList");
  setWindowTitle("Data Listing");
  setWindowModality(Qt::ApplicationModal);
  setSizeGripEnabled(true);
  auto* column = new QVBoxLayout(this);
  column->addLayout(createSettings());
  column->addWidget(createBoxes());
  column->addWidget(createListing(), 1);
  column->addLayout(createButtons());
  createConnections();
  showState();
  resize(980, 600);
}

QLayout* DataListWindow::createSettings() {
  auto* row = new QHBoxLayout;
  const std::array<SettingLabel, 3>& settings = logic_.listing().SettingLabels();
  for (std::size_t i = 0; i < settings.size(); ++i) {
    row->addWidget(Named(new QLabel(Latin1(settings[i].caption)), kSettingHeadingNames[i]));
    settingValues_[i] = Named(new QLabel, kSettingNames[i]);
    settingValues_[i]->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->addWidget(settingValues_[i]);
    row->addSpacing(24);
  }
  row->addStretch(1);
  return row;
}

QWidget* DataListWindow::createBoxes() {
  auto* show = new QGroupBox("Show");
  auto* showRow = new QHBoxLayout(show);
  for (int i = 0; i < kShowCount; ++i) {
    ShowCkB[i] = Named(new QCheckBox(kShowCaptions[i]), Indexed("ShowCkB", i));
    showRow->addWidget(ShowCkB[i]);
  }
  showRow->addStretch(1);
  ProcdCkB = Named(new QCheckBox("Processed"), "ProcdCkB");
  showRow->addWidget(ProcdCkB);

  auto* include = new QGroupBox("Include");
  auto* includeRow = new QHBoxLayout(include);
  for (int i = 0; i < kIncludeCount; ++i) {
    IncludeCkB[i] = Named(new QCheckBox(kIncludeCaptions[i]), Indexed("IncludeCkB", i));
    includeRow->addWidget(IncludeCkB[i]);
  }
  includeRow->addStretch(1);

  auto* boxes = new QWidget;
  auto* column = new QVBoxLayout(boxes);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(show);
  column->addWidget(include);
  return boxes;
}

// The heading stands in a strip of its own above the list and moves sideways with it.
QWidget* DataListWindow::createListing() {
  headingStrip_ = new QWidget;
  LstHdrLbl = Named(new QLabel(headingStrip_), "LstHdrLbl");
  LstHdrLbl->setFont(ListingFont());
  LstHdrLbl->setTextFormat(Qt::PlainText);
  headingStrip_->setFixedHeight(LstHdrLbl->sizeHint().height() + 2);

  DataLst = Named(new QListWidget, "DataLst");
  DataLst->setAccessibleName("Listing");
  DataLst->setFont(ListingFont());
  DataLst->setSelectionMode(QAbstractItemView::SingleSelection);
  DataLst->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  DataLst->setLayoutMode(QListView::Batched);

  auto* listing = new QWidget;
  auto* column = new QVBoxLayout(listing);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(headingStrip_);
  column->addWidget(DataLst, 1);
  return listing;
}

QLayout* DataListWindow::createButtons() {
  EditBtn = NamedButton("EditBtn", "Edit");
  CopyBtn = NamedButton("CopyBtn", "Copy");
  LegendBtn = NamedButton("LegendBtn", "Legend");
  CloseBtn = NamedButton("CloseBtn", "Close");
  auto* row = new QHBoxLayout;
  for (QPushButton* button : {EditBtn, CopyBtn, LegendBtn}) row->addWidget(button);
  row->addStretch(1);
  row->addWidget(CloseBtn);
  return row;
}

void DataListWindow::createConnections() {
  for (int i = 0; i < kShowCount; ++i) {
    connect(ShowCkB[i], &QCheckBox::clicked, this, [this, i](bool ticked) {
      logic_.ClickShow(i, ticked);
      showState();
    });
  }
  for (int i = 0; i < kIncludeCount; ++i) {
    connect(IncludeCkB[i], &QCheckBox::clicked, this, [this, i](bool ticked) {
      logic_.ClickInclude(i, ticked);
      showState();
    });
  }
  connect(ProcdCkB, &QCheckBox::clicked, this, [this](bool ticked) {
    logic_.ClickProcessed(ticked);
    showState();
  });
  connect(EditBtn, &QPushButton::clicked, this, &DataListWindow::edit);
  connect(DataLst, &QListWidget::doubleClicked, this, &DataListWindow::edit);
  connect(CopyBtn, &QPushButton::clicked, this, &DataListWindow::copy);
  connect(LegendBtn, &QPushButton::clicked, this, &DataListWindow::showLegend);
  connect(CloseBtn, &QPushButton::clicked, this, &DataListWindow::close);
  connect(DataLst->horizontalScrollBar(), &QScrollBar::valueChanged, this,
          &DataListWindow::alignHeading);

  auto* copyKey = new QAction(this);
  copyKey->setShortcut(QKeySequence::Copy);
  connect(copyKey, &QAction::triggered, CopyBtn, &QAbstractButton::click);
  addAction(copyKey);
}

void DataListWindow::showState() {
  const DataListLogic& listing = logic_.listing();
  for (std::size_t i = 0; i < settingValues_.size(); ++i) {
    settingValues_[i]->setText(Latin1(listing.SettingLabels()[i].value));
  }
  for (int i = 0; i < kShowCount; ++i) ShowCkB[i]->setChecked(logic_.ShowCkB(i));
  for (int i = 0; i < kIncludeCount; ++i) IncludeCkB[i]->setChecked(logic_.IncludeCkB(i));
  ProcdCkB->setChecked(logic_.ProcdCkB());
  showLines();
}

void DataListWindow::showLines() {
  const DataListLogic& listing = logic_.listing();
  LstHdrLbl->setText(Latin1(listing.LstHdrLbl()));
  LstHdrLbl->adjustSize();
  QStringList lines;
  lines.reserve(static_cast<qsizetype>(listing.DataLst().size()));
  for (const std::string& line : listing.DataLst()) lines << Latin1(line);
  DataLst->clear();
  DataLst->addItems(lines);
  alignHeading();
}

// The heading's first character stands over the lines' first character, however far the
// list is scrolled sideways.
void DataListWindow::alignHeading() {
  const int textMargin =
      DataLst->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, DataLst) + 1;
  const QPoint viewport = DataLst->viewport()->mapTo(this, QPoint(0, 0));
  const QPoint strip = headingStrip_->mapTo(this, QPoint(0, 0));
  LstHdrLbl->move(viewport.x() - strip.x() + textMargin - DataLst->horizontalScrollBar()->value(),
                  1);
}

void DataListWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  alignHeading();
}

void DataListWindow::edit() {
  const QList<QListWidgetItem*> selected = DataLst->selectedItems();
  if (selected.isEmpty()) return;
  logic_.Edit(DataLst->row(selected.first()), dialogs_);
}

void DataListWindow::copy() { QGuiApplication::clipboard()->setText(Latin1(logic_.CopyText())); }

void DataListWindow::showLegend() {
  if (!legend_) legend_ = new ListLegendWindow(this);
  legend_->show();
  legend_->raise();
  legend_->activateWindow();
}

}  // namespace plotmeter::qt
