#include "ui/qt/MainWindow.h"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QMimeData>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/qt/DataInputDialog.h"
#include "ui/qt/DataListWindow.h"
#include "ui/qt/SheetDialog.h"
#include "ui/qt/WidgetNames.h"

namespace plotmeter::qt {

namespace {

constexpr const char* kDataCaptions[] = {"Load", "Save", "Save As", "Create New"};
constexpr const char* kEditCaptions[] = {"Modify", "Add", "Delete", "UnDo"};
constexpr const char* kOptionCaptions[] = {"Show Sub-division", "Show Lines", "Show Points",
                                           "Show Alternate GPS"};

QPushButton* NamedButton(const QString& name, const char* caption) {
  return Named(new QPushButton(caption), name);
}

// Fills a list box with `items` and chooses `index`, without it counting as the user's
// choice.
void ShowCombo(QComboBox* combo, const ComboState& state) {
  QSignalBlocker loading(combo);
  ShowItems(combo, state.items, state.index);
  combo->setVisible(state.visible);
}

}  // namespace

MainWindow::MainWindow(UserDialogs* dialogs, QWidget* parent)
    : QMainWindow(parent), ownDialogs_(this), dialogs_(*this, dialogs ? *dialogs : ownDialogs_) {
  setObjectName("Plotmeter");
  setWindowTitle("Plotmeter DEVELOPMENT VERSION");
  setAcceptDrops(true);
  createControls();
  createConnections();
  createShortcuts();
  showState();
}

void MainWindow::createControls() {
  auto* central = new QWidget;
  auto* drawingColumn = new QVBoxLayout;
  DisplaySh = new PlotView;
  ScaleLbl = NamedLabel("ScaleLbl");
  ScaleLbl->setAlignment(Qt::AlignCenter);
  drawingColumn->addWidget(DisplaySh, 1);
  drawingColumn->addWidget(ScaleLbl);

  auto* layout = new QHBoxLayout(central);
  layout->addLayout(drawingColumn, 1);
  layout->addWidget(createSidePanel());
  setCentralWidget(central);
  resize(960, 700);
}

QWidget* MainWindow::createSidePanel() {
  auto* files = new QGroupBox("File");
  auto* fileGrid = new QGridLayout(files);
  for (int i = 0; i < 4; ++i) {
    DataBtn[i] = NamedButton(Indexed("DataBtn", i), kDataCaptions[i]);
    fileGrid->addWidget(DataBtn[i], i / 2, i % 2);
  }

  auto* area = new QGroupBox;
  auto* areaColumn = new QVBoxLayout(area);
  AreaHdrLbl = NamedLabel("AreaHdrLbl");
  AreaValLbl = NamedLabel("AreaValLbl");
  AreaValLbl->setTextInteractionFlags(Qt::TextSelectableByMouse);
  AreaValLbl->setWordWrap(true);  // a state text such as "< Bad Perimeter Lines >" may not fit
  AreaUnitCmb = Named(new QComboBox, "AreaUnitCmb");
  AreaUnitLbl = NamedLabel("AreaUnitLbl");
  AreaSgmtCmb = Named(new QComboBox, "AreaSgmtCmb");
  for (QWidget* widget : std::initializer_list<QWidget*>{AreaHdrLbl, AreaValLbl, AreaUnitCmb,
                                                         AreaUnitLbl, AreaSgmtCmb}) {
    areaColumn->addWidget(widget);
  }

  auto* display = new QGroupBox("Display");
  auto* displayColumn = new QVBoxLayout(display);
  for (int i = 0; i < kOptionCount; ++i) {
    OptnsCkB[i] = Named(new QCheckBox(kOptionCaptions[i]), Indexed("OptnsCkB", i));
    displayColumn->addWidget(OptnsCkB[i]);
  }
  LegendBtn = NamedButton("LegendBtn", "Legend");
  displayColumn->addWidget(LegendBtn);

  auto* edit = new QGroupBox;
  auto* editGrid = new QGridLayout(edit);
  EditHdrLbl = NamedLabel("EditHdrLbl", "Edit");
  QFont bold = EditHdrLbl->font();
  bold.setBold(true);
  EditHdrLbl->setFont(bold);
  AreaHdrLbl->setFont(bold);
  EditSubLbl = NamedLabel("EditSubLbl");
  editGrid->addWidget(EditHdrLbl, 0, 0, 1, 2);
  editGrid->addWidget(EditSubLbl, 1, 0, 1, 2);
  for (int i = 0; i < 4; ++i) {
    EditPtBtn[i] = NamedButton(Indexed("EditPtBtn", i), kEditCaptions[i]);
    editGrid->addWidget(EditPtBtn[i], 2 + i / 2, i % 2);
  }

  // The labels sit in a widget of their own: a screen reader would read the group's title
  // for a label that stands empty in a titled group.
  auto* data = new QGroupBox("Survey");
  auto* dataLabels = new QWidget;
  (new QVBoxLayout(data))->addWidget(dataLabels);
  auto* dataGrid = new QGridLayout(dataLabels);
  dataGrid->setContentsMargins(0, 0, 0, 0);
  DatSrcLbl = NamedLabel("DatSrcLbl");
  TagFileLbl = NamedLabel("TagFileLbl");
  MagDecHdrLbl = NamedLabel("MagDecHdrLbl", "Magnetic Declination:");
  MagDecLbl = NamedLabel("MagDecLbl");
  for (QLabel* label : {DatSrcLbl, TagFileLbl}) {
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  }
  ListBtn = NamedButton("ListBtn", "List");
  dataGrid->addWidget(DatSrcLbl, 0, 0, 1, 2);
  dataGrid->addWidget(TagFileLbl, 1, 0, 1, 2);
  dataGrid->addWidget(MagDecHdrLbl, 2, 0);
  dataGrid->addWidget(MagDecLbl, 2, 1);
  dataGrid->addWidget(ListBtn, 3, 0, 1, 2);
  PrintBtn = NamedButton("PrintBtn", "Print...");
  ExportBtn = NamedButton("ExportBtn", "Export...");
  dataGrid->addWidget(PrintBtn, 4, 0);
  dataGrid->addWidget(ExportBtn, 4, 1);

  ExitBtn = NamedButton("ExitBtn", "Exit");

  auto* panel = new QWidget;
  panel->setFixedWidth(270);
  auto* column = new QVBoxLayout(panel);
  column->setContentsMargins(0, 0, 0, 0);
  for (QWidget* group : std::initializer_list<QWidget*>{files, area, display, edit, data}) {
    column->addWidget(group);
  }
  column->addStretch(1);
  column->addWidget(ExitBtn);
  return panel;
}

void MainWindow::createConnections() {
  connect(DataBtn[kLoadButton], &QPushButton::clicked, this, &MainWindow::load);
  connect(DataBtn[kSaveButton], &QPushButton::clicked, this, &MainWindow::save);
  connect(DataBtn[kSaveAsButton], &QPushButton::clicked, this, &MainWindow::saveAs);
  connect(DataBtn[kCreateNewButton], &QPushButton::clicked, this, &MainWindow::createNew);
  connect(ExitBtn, &QPushButton::clicked, this, &MainWindow::close);
  for (int i = 0; i < kEditButtonCount; ++i) {
    connect(EditPtBtn[i], &QPushButton::clicked, this, [this, i] { clickEditButton(i); });
  }
  for (int i = 0; i < kOptionCount; ++i) {
    connect(OptnsCkB[i], &QCheckBox::clicked, this,
            [this, i](bool ticked) { clickOption(i, ticked); });
  }
  // `activated` is the user's choice only: filling the lists never counts as one.
  connect(AreaUnitCmb, &QComboBox::activated, this, &MainWindow::chooseAreaUnit);
  connect(AreaSgmtCmb, &QComboBox::activated, this, &MainWindow::chooseSegment);
  connect(DisplaySh, &PlotView::pressed, this, &MainWindow::pressDrawing);
  connect(DisplaySh, &PlotView::stepped, this, [this](int step) {
    logic_.StepSelection(step);
    showState();
  });
  connect(ListBtn, &QPushButton::clicked, this, &MainWindow::showList);
  connect(LegendBtn, &QPushButton::clicked, this, &MainWindow::showLegend);
  connect(PrintBtn, &QPushButton::clicked, this, [this] { PrintPlot(this, logic_); });
  connect(ExportBtn, &QPushButton::clicked, this, [this] { ExportPlot(this, logic_, dialogs_); });
}

// Keys that act as the file and edit buttons; a disabled button ignores its key too.
void MainWindow::createShortcuts() {
  const std::pair<QKeySequence, QAbstractButton*> keys[] = {
      {QKeySequence::Open, DataBtn[kLoadButton]},
      {QKeySequence::Save, DataBtn[kSaveButton]},
      {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), DataBtn[kSaveAsButton]},
      {QKeySequence::New, DataBtn[kCreateNewButton]},
      {QKeySequence(Qt::CTRL | Qt::Key_Q), ExitBtn},
      {QKeySequence::Print, PrintBtn},
      {QKeySequence::Undo, EditPtBtn[kUndoButton]},
      {QKeySequence(Qt::Key_Delete), EditPtBtn[kDeleteButton]},
  };
  for (const auto& [key, button] : keys) {
    auto* action = new QAction(this);
    action->setShortcut(key);
    connect(action, &QAction::triggered, button, &QAbstractButton::click);
    addAction(action);
  }
}

void MainWindow::openFile(const QString& path) {
  logic_.LoadNamed(QFile::encodeName(path).toStdString(), dialogs_);
  showState();
}

void MainWindow::load() {
  logic_.CommandLoad(dialogs_);
  showState();
}

void MainWindow::save() {
  logic_.CommandSave(dialogs_);
  showState();
}

void MainWindow::saveAs() {
  logic_.CommandSaveAs(dialogs_);
  showState();
}

void MainWindow::createNew() {
  logic_.CommandCreateNew(dialogs_, [this](DataInputLogic& dialog) { showPointDialog(dialog); });
  showState();
}

void MainWindow::clickEditButton(int index) {
  logic_.ClickEditButton(index, dialogs_,
                         [this](DataInputLogic& dialog) { showPointDialog(dialog); });
  showState();
}

void MainWindow::showPointDialog(DataInputLogic& dialog) {
  showState();
  DataInputDialog window(dialog, this);
  // A move to another point shows in the main window's selection text at once.
  connect(&window, &DataInputDialog::selectionTextChanged, this, &MainWindow::showState);
  window.exec();
  // Without a window manager to hand it back, the keyboard would stay with no window.
  activateWindow();
}

void MainWindow::clickOption(int index, bool ticked) {
  logic_.ClickOption(index, ticked, dialogs_);
  showState();
}

void MainWindow::chooseAreaUnit(int index) {
  logic_.SetAreaUnit(index);
  showState();
}

void MainWindow::chooseSegment(int index) {
  logic_.SetSegment(index);
  showState();
}

void MainWindow::pressDrawing(MouseButton button, QPointF at) {
  logic_.ClickDrawing(button, static_cast<float>(at.x()), static_cast<float>(at.y()));
  showState();
}

// The listing opens afresh each time, with its opening boxes; it is modal, so the survey
// it lists cannot change under it.
void MainWindow::showList() {
  UserDialogs* injected = &dialogs_.inner() == &ownDialogs_ ? nullptr : &dialogs_.inner();
  auto* list = new DataListWindow(logic_.survey(), injected, this);
  list->setAttribute(Qt::WA_DeleteOnClose);
  list->show();
}

// The legend's markers are the size the drawing shows them at now.
void MainWindow::showLegend() {
  const double markerSide = logic_.scene().markerSize * DisplaySh->transform().Scale();
  if (!legend_) legend_ = new AreaLegendWindow(markerSide, this);
  legend_->setMarkerSide(markerSide);
  legend_->show();
  legend_->raise();
  legend_->activateWindow();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (logic_.CommandExit(dialogs_)) {
    event->accept();
  } else {
    event->ignore();
  }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.size() == 1 && urls.first().isLocalFile()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  openFile(event->mimeData()->urls().first().toLocalFile());
  event->acceptProposedAction();
}

Button MainWindow::StateFirstDialogs::Show(const MessageBox& box) {
  window_.showState();
  return dialogs_.Show(box);
}

void MainWindow::showState() {
  const MainDisplay& display = logic_.display();
  showAreaControls();
  MagDecHdrLbl->setEnabled(display.MagDecHdrLblEnabled);
  MagDecLbl->setText(Latin1(display.MagDecLbl));
  ScaleLbl->setText(Latin1(logic_.scene().ScaleLbl));
  DatSrcLbl->setText(Latin1(display.DatSrcLbl));
  TagFileLbl->setText(Latin1(display.TagFileLbl));
  EditSubLbl->setText(Latin1(display.EditSubLbl));
  for (int i = 0; i < kOptionCount; ++i) {
    OptnsCkB[i]->setChecked(display.OptnsCkB[i].ticked);
    OptnsCkB[i]->setEnabled(display.OptnsCkB[i].enabled);
  }
  for (int i = 0; i < 4; ++i) {
    DataBtn[i]->setEnabled(display.DataBtnEnabled[i]);
    EditPtBtn[i]->setEnabled(display.EditPtBtnEnabled[i]);
  }
  DisplaySh->setScene(logic_.scene(), logic_.state().SelectedPoint);
  PrintBtn->setEnabled(!logic_.scene().markers.empty());
  ExportBtn->setEnabled(!logic_.scene().markers.empty());
}

void MainWindow::showAreaControls() {
  const MainDisplay& display = logic_.display();
  AreaHdrLbl->setText(Latin1(display.AreaHdrLbl));
  AreaValLbl->setText(Latin1(display.AreaValLbl.text));
  // The area stands out large; a state text such as "< Not a Perimeter >" is smaller, so
  // that it fits on one line.
  const bool number = !display.AreaValLbl.text.starts_with('<');
  QFont font = this->font();
  font.setPointSizeF(font.pointSizeF() * (number ? 1.6 : 1.2));
  font.setBold(true);
  AreaValLbl->setFont(font);
  QPalette palette = AreaValLbl->palette();
  palette.setColor(QPalette::WindowText, display.AreaValLbl.red
                                             ? QColor(Qt::red)
                                             : this->palette().color(QPalette::ButtonText));
  AreaValLbl->setPalette(palette);
  ShowCombo(AreaUnitCmb, display.AreaUnitCmb);
  ShowCombo(AreaSgmtCmb, display.AreaSgmtCmb);
  AreaUnitLbl->setText(Latin1(display.AreaUnitLbl.text));
  AreaUnitLbl->setVisible(display.AreaUnitLbl.visible);
}

}  // namespace plotmeter::qt
