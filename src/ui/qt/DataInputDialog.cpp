#include "ui/qt/DataInputDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/qt/WidgetNames.h"

namespace plotmeter::qt {

namespace {

constexpr int kFieldWidth = 150;
constexpr int kLabelGap = 8;
constexpr int kHintWidth = 330;
constexpr int kHighestPointNumber = 99999;

// A label without a mnemonic shows a doubled ampersand as it is written; the hints double
// theirs as a caption would, so they are shown single, to the eye and to a screen reader.
QString LabelText(const QLabel* label, const std::string& text) {
  QString shown = Latin1(text);
  return label->buddy() ? shown : shown.replace("&&", "&");
}

// A label that keeps its place when hidden, so that the dialog does not jump.
void KeepPlaceWhenHidden(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

}  // namespace

DataInputDialog::DataInputDialog(DataInputLogic& logic, QWidget* parent)
    : QDialog(parent), logic_(logic), selectionText_(logic.SelectionText()) {
  setObjectName("DataInput");
  setWindowTitle(kDataInputCaption);
  setModal(true);

  auto* header = new QHBoxLayout;
  QFont bold = font();
  bold.setBold(true);
  for (const char* name : {"PointValHdrLbl", "PointValLbl"}) {
    header->addWidget(add<QLabel>(name));
    controls_[name]->setFont(bold);
  }
  header->addSpacing(12);
  header->addWidget(add<QLabel>("AddNoteLbl"));
  KeepPlaceWhenHidden(controls_["AddNoteLbl"]);
  header->addStretch(1);

  auto* left = new QVBoxLayout;
  left->addWidget(createPointGroup());
  left->addWidget(createLinkGroup());
  for (const char* name : {"LenNoteLbl", "AngleNoteLbl"}) {
    auto* hint = add<QLabel>(name);
    hint->setWordWrap(true);
    hint->setFixedWidth(kHintWidth);
    KeepPlaceWhenHidden(hint);
    left->addWidget(hint);
  }
  left->addStretch(1);
  left->addLayout(createButtons("NxtPrevBtn", {1, 0}));  // "Previous", "Next"
  auto* right = new QVBoxLayout;
  right->addWidget(createDatasetGroup());
  right->addWidget(createFileGroup());
  right->addStretch(1);
  auto* exits = createButtons("ExitBtn", {0, 1});  // "Apply", "Cancel"
  static_cast<QHBoxLayout*>(exits)->insertStretch(0, 1);
  right->addLayout(exits);

  auto* columns = new QHBoxLayout;
  columns->addLayout(left);
  columns->addSpacing(8);
  columns->addLayout(right);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(header);
  layout->addLayout(columns);
  layout->setSizeConstraint(QLayout::SetFixedSize);

  // Reading order: the point, its link and moves, the dataset, the file, then leaving.
  const QStringList order = {"PtTypCmb",       "DataTxt_0",     "DataTxt_1", "GPSCmb_0",
                             "GPSTxt_0",       "GPSCmb_1",      "GPSTxt_1",  "PtQualifCkB_0",
                             "PtQualifCkB_1",  "PtQualifCkB_2", "TgtPtSpn",  "NxtPrevBtn_1",
                             "NxtPrevBtn_0",   "TypOpt_0",      "TypOpt_1",  "TypOpt_2",
                             "TypOpt_3",       "TypOpt_4",      "DSTagTxt",  "DSNxtPrevBtn_1",
                             "DSNxtPrevBtn_0", "FileTagTxt",    "MagDecTxt", "UOMCmb",
                             "ExitBtn_0",      "ExitBtn_1"};
  for (qsizetype i = 0; i + 1 < order.size(); ++i) {
    setTabOrder(findChild<QWidget*>(order[i]), findChild<QWidget*>(order[i + 1]));
  }
  qobject_cast<QPushButton*>(controls_["ExitBtn_0"])->setDefault(true);

  connectFields();
  connectChoices();
  connectButtons();
  showState();
}

template <typename Widget>
Widget* DataInputDialog::add(const QString& name) {
  auto* widget = new Widget;
  widget->setObjectName(name);
  controls_.insert(name, widget);
  return widget;
}

// A row of the buttons of array `name`, in the order of their indexes in `order`.
QLayout* DataInputDialog::createButtons(const char* name, std::initializer_list<int> order) {
  auto* row = new QHBoxLayout;
  for (int i : order) row->addWidget(add<QPushButton>(Indexed(name, i)));
  return row;
}

QGroupBox* DataInputDialog::createPointGroup() {
  auto* group = new QGroupBox("Specified as:");
  auto* grid = new QGridLayout(group);
  grid->addWidget(add<QComboBox>("PtTypCmb"), 0, 0, 1, 3);
  for (int i = 0; i < 2; ++i) {
    auto* label = add<QLabel>(Indexed("DataTxtLbl", i));
    auto* field = add<QLineEdit>(Indexed("DataTxt", i));
    field->setMinimumWidth(kFieldWidth);
    label->setBuddy(field);
    grid->addWidget(label, 1 + i, 0);
    grid->addWidget(field, 1 + i, 1, 1, 2);
  }
  grid->addWidget(add<QLabel>("GPSTxtHdrLbl"), 3, 0);
  for (int i = 0; i < 2; ++i) {
    auto* label = add<QLabel>(Indexed("GPSTxtLbl", i));
    auto* field = add<QLineEdit>(Indexed("GPSTxt", i));
    label->setBuddy(field);
    grid->addWidget(label, 4 + i, 0);
    grid->addWidget(add<QComboBox>(Indexed("GPSCmb", i)), 4 + i, 1);
    grid->addWidget(field, 4 + i, 2);
  }
  auto* qualifiers = new QHBoxLayout;
  for (int i = 0; i < 3; ++i) qualifiers->addWidget(add<QCheckBox>(Indexed("PtQualifCkB", i)));
  grid->addLayout(qualifiers, 6, 0, 1, 3);
  grid->setColumnStretch(2, 1);
  // The labels change with the input type: their column keeps the width of the longest,
  // so that the fields beside them stay in place.
  int labelWidth = 0;
  for (const char* text : {"X co-ordinate", "Bearing (magnetic)", "Not applicable"}) {
    labelWidth = std::max(labelWidth, fontMetrics().horizontalAdvance(text));
  }
  grid->setColumnMinimumWidth(0, labelWidth + kLabelGap);
  return group;
}

// The linked point is shown in `TgtPtLbl` and chosen by its number in the spin box
// beside it; 0 links none.
QGroupBox* DataInputDialog::createLinkGroup() {
  auto* group = new QGroupBox("Link to Point:");
  auto* row = new QHBoxLayout(group);
  auto* linked = add<QLabel>("TgtPtLbl");
  linked->setMinimumWidth(60);
  TgtPtSpn = new QSpinBox;
  TgtPtSpn->setObjectName("TgtPtSpn");
  TgtPtSpn->setRange(0, kHighestPointNumber);
  // No link shows blank: `TgtPtLbl` beside it says "None".
  TgtPtSpn->setSpecialValueText(" ");
  // The number is taken once typed in full (Enter, or leaving the box), not digit by digit.
  TgtPtSpn->setKeyboardTracking(false);
  TgtPtSpn->setAccessibleName("Link to Point");
  row->addWidget(linked);
  row->addWidget(TgtPtSpn);
  row->addStretch(1);
  return group;
}

QGroupBox* DataInputDialog::createDatasetGroup() {
  auto* group = new QGroupBox("For This Dataset:");
  auto* column = new QVBoxLayout(group);
  auto* kinds = add<QGroupBox>("TypFme");
  auto* options = new QVBoxLayout(kinds);
  for (int i = 0; i < 5; ++i) options->addWidget(add<QRadioButton>(Indexed("TypOpt", i)));
  column->addWidget(kinds);

  auto* tagRow = new QHBoxLayout;
  auto* tagLabel = new QLabel("Dataset Tag:");
  tagLabel->setBuddy(add<QLineEdit>("DSTagTxt"));
  tagRow->addWidget(tagLabel);
  tagRow->addWidget(controls_["DSTagTxt"], 1);
  column->addLayout(tagRow);
  column->addLayout(createButtons("DSNxtPrevBtn", {1, 0}));  // "Previous", "Next"
  return group;
}

QGroupBox* DataInputDialog::createFileGroup() {
  auto* group = new QGroupBox("For All Points:");
  auto* grid = new QGridLayout(group);
  const std::pair<const char*, QWidget*> rows[] = {
      {"File Tag", add<QLineEdit>("FileTagTxt")},
      {"Magnetic Declination", add<QLineEdit>("MagDecTxt")},
      {"Units of measure", add<QComboBox>("UOMCmb")}};
  int row = 0;
  for (const auto& [caption, control] : rows) {
    auto* label = new QLabel(caption);
    label->setBuddy(control);
    grid->addWidget(label, row, 0);
    grid->addWidget(control, row, 1);
    ++row;
  }
  return group;
}

void DataInputDialog::connectFields() {
  auto field = [this](const QString& name) { return findChild<QLineEdit*>(name); };
  for (int i = 0; i < 2; ++i) {
    connect(
        field(Indexed("DataTxt", i)), &QLineEdit::textEdited, this,
        [this, i](const QString& text) { act([&] { logic_.TypeDataTxt(i, ToLatin1(text)); }); });
    connect(field(Indexed("GPSTxt", i)), &QLineEdit::textEdited, this,
            [this, i](const QString& text) { act([&] { logic_.TypeGPSTxt(i, ToLatin1(text)); }); });
  }
  connect(field("DSTagTxt"), &QLineEdit::textEdited, this,
          [this](const QString& text) { act([&] { logic_.TypeDSTagTxt(ToLatin1(text)); }); });
  connect(field("FileTagTxt"), &QLineEdit::textEdited, this,
          [this](const QString& text) { act([&] { logic_.TypeFileTagTxt(ToLatin1(text)); }); });
  connect(field("MagDecTxt"), &QLineEdit::textEdited, this,
          [this](const QString& text) { act([&] { logic_.TypeMagDecTxt(ToLatin1(text)); }); });
}

// Lists by `activated` and boxes by `clicked`: the user's choices only, never the
// dialog's own filling.
void DataInputDialog::connectChoices() {
  auto combo = [this](const QString& name) { return findChild<QComboBox*>(name); };
  connect(combo("PtTypCmb"), &QComboBox::activated, this,
          [this](int item) { act([&] { logic_.ChoosePtTypCmb(item); }); });
  connect(combo("UOMCmb"), &QComboBox::activated, this,
          [this](int item) { act([&] { logic_.ChooseUOMCmb(item); }); });
  for (int i = 0; i < 2; ++i) {
    connect(combo(Indexed("GPSCmb", i)), &QComboBox::activated, this,
            [this, i](int item) { act([&] { logic_.ChooseGPSCmb(i, item); }); });
  }
  for (int i = 0; i < 3; ++i) {
    connect(findChild<QCheckBox*>(Indexed("PtQualifCkB", i)), &QCheckBox::clicked, this,
            [this, i](bool ticked) { act([&] { logic_.TickPtQualifCkB(i, ticked); }); });
  }
  for (int i = 0; i < 5; ++i) {
    connect(findChild<QRadioButton*>(Indexed("TypOpt", i)), &QRadioButton::clicked, this,
            [this, i] { act([&] { logic_.ChooseTypOpt(i); }); });
  }
  connect(TgtPtSpn, &QSpinBox::valueChanged, this,
          [this](int number) { act([&] { logic_.LinkToPoint(number); }); });
}

void DataInputDialog::connectButtons() {
  auto button = [this](const char* name, int index) {
    return findChild<QPushButton*>(Indexed(name, index));
  };
  for (int i = 0; i < 2; ++i) {
    connect(button("NxtPrevBtn", i), &QPushButton::clicked, this,
            [this, i] { act([&] { logic_.ClickNxtPrevBtn(i); }); });
    connect(button("DSNxtPrevBtn", i), &QPushButton::clicked, this,
            [this, i] { act([&] { logic_.ClickDSNxtPrevBtn(i); }); });
  }
  connect(button("ExitBtn", 0), &QPushButton::clicked, this,
          [this] { act([&] { logic_.ClickApply(); }); });
  connect(button("ExitBtn", 1), &QPushButton::clicked, this, &DataInputDialog::reject);
}

void DataInputDialog::reject() {
  act([&] { logic_.ClickCancel(); });
  // Closed from the title bar the dialog goes whatever the logic said; the window that
  // showed it cancels what is left.
  if (isVisible()) QDialog::reject();
}

template <typename Action>
void DataInputDialog::act(Action action) {
  // A box left with a number typed gives it up as the dialog closes: too late to count.
  if (!logic_.IsOpen()) return;
  action();
  if (logic_.SelectionText() != selectionText_) {
    selectionText_ = logic_.SelectionText();
    emit selectionTextChanged();
  }
  if (!logic_.IsOpen()) {
    done(logic_.Outcome() == DialogOutcome::Applied ? Accepted : Rejected);
    return;
  }
  showState();
}

void DataInputDialog::showState() {
  logic_.SetFillingFields(true);
  for (const auto& [name, state] : logic_.Controls()) showControl(Latin1(name), state);
  const ControlState& linked = logic_.Control("TgtPtLbl");
  {
    QSignalBlocker filling(TgtPtSpn);
    TgtPtSpn->setValue(linked.text == "None" ? 0 : QString::fromStdString(linked.text).toInt());
  }
  TgtPtSpn->setEnabled(linked.enabled);
  logic_.SetFillingFields(false);
}

void DataInputDialog::showControl(const QString& name, const ControlState& state) {
  QWidget* widget = controls_.value(name);
  if (!widget) return;
  widget->setEnabled(state.enabled);
  widget->setHidden(!state.visible);
  const QString text = Latin1(state.text);
  if (auto* label = qobject_cast<QLabel*>(widget)) {
    label->setText(LabelText(label, state.text));
  } else if (auto* field = qobject_cast<QLineEdit*>(widget)) {
    // What the user is typing stays as it is, cursor and all.
    if (field->text() != text) field->setText(text);
  } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
    ShowItems(combo, state.items, state.index);
  } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
    button->setText(text);
    // An option group may stand with none chosen: exclusivity is the logic's.
    const bool exclusive = button->autoExclusive();
    button->setAutoExclusive(false);
    button->setChecked(state.checked);
    button->setAutoExclusive(exclusive);
  } else if (auto* frame = qobject_cast<QGroupBox*>(widget)) {
    frame->setTitle(text);
  }
}

}  // namespace plotmeter::qt
