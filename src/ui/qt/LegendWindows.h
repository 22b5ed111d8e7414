// The two legends: "Area Display Legend" (`Legend`), each text beside a sample painted by
// the drawing's own painter, and "List Legend" (`ListLegend`), the listing's type codes.
// Both are read-only and close with "Close".
#pragma once

#include <QDialog>
#include <QPushButton>
#include <QWidget>
#include <vector>

#include "ui/Legends.h"

namespace plotmeter::qt {

// One sample of the area legend, drawn as the drawing draws that symbol: the same colours,
// line width and marker shape, on the drawing's white.
class LegendSampleView : public QWidget {
  Q_OBJECT

 public:
  // `markerSide`: the marker's side on the screen, in pixels, as the drawing shows it.
  LegendSampleView(const LegendSample& sample, double markerSide, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  void setMarkerSide(double side);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  LegendSample sample_;
  double markerSide_;
};

class AreaLegendWindow : public QDialog {
  Q_OBJECT

 public:
  explicit AreaLegendWindow(double markerSide, QWidget* parent = nullptr);
  // The drawing's markers are shown at a new size.
  void setMarkerSide(double side);

 private:
  std::vector<LegendSampleView*> samples_;
  QPushButton* CloseBtn;
};

class ListLegendWindow : public QDialog {
  Q_OBJECT

 public:
  explicit ListLegendWindow(QWidget* parent = nullptr);

 private:
  QPushButton* CloseBtn;
};

}  // namespace plotmeter::qt
