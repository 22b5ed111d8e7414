#include "ui/qt/LegendWindows.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/qt/ListingFont.h"
#include "ui/qt/ScenePainter.h"
#include "ui/qt/WidgetNames.h"

namespace plotmeter::qt {

namespace {

constexpr int kSampleWidth = 72;
constexpr int kSampleMinHeight = 22;
constexpr double kSampleInset = 10;  // from the sample's ends to its line's ends

QPushButton* CloseButton(QDialog* window) {
  auto* button = new QPushButton("Close");
  button->setObjectName("CloseBtn");
  QObject::connect(button, &QPushButton::clicked, window, &QDialog::close);
  return button;
}

QHBoxLayout* ButtonRow(QPushButton* button) {
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(button);
  return row;
}

}  // namespace

LegendSampleView::LegendSampleView(const LegendSample& sample, double markerSide, QWidget* parent)
    : QWidget(parent), sample_(sample), markerSide_(markerSide) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LegendSampleView::sizeHint() const {
  const double side = markerSide_ * (sample_.selected ? kSelectedMarkerScale : 1);
  const int labelWidth = fontMetrics().horizontalAdvance(Latin1(sample_.label)) + 8;
  return {std::max(kSampleWidth, labelWidth),
          std::max(kSampleMinHeight, static_cast<int>(side) + 6)};
}

void LegendSampleView::setMarkerSide(double side) {
  markerSide_ = side;
  updateGeometry();
  update();
}

// A line runs across the sample; a marker stands at the line's start, or in the middle
// when it has no line; a label stands where the drawing anchors it.
void LegendSampleView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  painter.setRenderHint(QPainter::Antialiasing);
  const SceneStyle style;
  const QRectF area = QRectF(rect());
  const double middle = area.center().y();
  const QPointF start(area.left() + kSampleInset, middle);
  if (sample_.line) {
    PaintLine(painter, start, {area.right() - kSampleInset, middle}, ColourOf(*sample_.line),
              style);
  }
  if (sample_.marker) {
    const MarkerColours colours = ColoursOf(*sample_.marker);
    const double side = markerSide_ * (sample_.selected ? kSelectedMarkerScale : 1);
    PaintMarker(painter, sample_.line ? start : area.center(), side, colours.border, colours.fill,
                style);
  }
  if (!sample_.label.empty()) {
    const QPointF at =
        sample_.anchor == LabelAnchor::kCentre ? area.center() : QPointF(area.left() + 2, 2);
    PaintLabel(painter, at, sample_.anchor, Latin1(sample_.label));
  }
}

void AreaLegendWindow::setMarkerSide(double side) {
  for (LegendSampleView* sample : samples_) sample->setMarkerSide(side);
}

AreaLegendWindow::AreaLegendWindow(double markerSide, QWidget* parent) : QDialog(parent) {
  setObjectName("Legend");
  setWindowTitle("Area Display Legend");
  setAttribute(Qt::WA_DeleteOnClose);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(12);
  for (int i = 0; i < static_cast<int>(kAreaLegendRows.size()); ++i) {
    const AreaLegendRow& row = kAreaLegendRows[i];
    const bool hasSample = row.sample.line || row.sample.marker || !row.sample.label.empty();
    if (hasSample) {
      auto* sample = new LegendSampleView(row.sample, markerSide);
      sample->setObjectName(Indexed("LegendSh", i));
      // A screen reader names the sample by the symbol it shows.
      sample->setAccessibleName("Symbol: " + Latin1(row.text));
      samples_.push_back(sample);
      grid->addWidget(sample, i, 0, Qt::AlignCenter);
    }
    grid->addWidget(NamedLabel(Indexed("LegendLbl", i), Latin1(row.text)), i, 1);
  }
  CloseBtn = CloseButton(this);
  auto* column = new QVBoxLayout(this);
  column->addLayout(grid);
  column->addLayout(ButtonRow(CloseBtn));
  column->setSizeConstraint(QLayout::SetFixedSize);
}

ListLegendWindow::ListLegendWindow(QWidget* parent) : QDialog(parent) {
  setObjectName("ListLegend");
  setWindowTitle("List Legend");
  setAttribute(Qt::WA_DeleteOnClose);
  auto* column = new QVBoxLayout(this);
  QFont bold = font();
  bold.setBold(true);
  int code = 0;
  for (int s = 0; s < static_cast<int>(kListLegendSections.size()); ++s) {
    const ListLegendSection& section = kListLegendSections[s];
    QLabel* heading = NamedLabel(Indexed("HdgLbl", s), Latin1(section.heading));
    heading->setFont(bold);
    if (s > 0) column->addSpacing(10);
    column->addWidget(heading);
    for (std::string_view line : section.lines) {
      if (line.empty()) continue;
      QLabel* label = NamedLabel(Indexed("CodeLbl", code++), Latin1(line));
      // The codes line up in the listing's font; the note on the '+' mark is plain text.
      if (s == 0) label->setFont(ListingFont());
      label->setIndent(12);
      column->addWidget(label);
    }
  }
  CloseBtn = CloseButton(this);
  column->addSpacing(6);
  column->addLayout(ButtonRow(CloseBtn));
  column->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace plotmeter::qt
