// The square drawing area `DisplaySh`: paints the scene that the window logic laid out,
// scaled to fit whatever size the window gives it, and turns mouse presses into scene
// units. From the keyboard, the arrow keys walk the points and the menu key shows the tag
// of the selected point's dataset, as a right click on it does. The sub-division label and the tag
// label are widgets of their own, so that a screen reader finds them; mouse presses on them fall
// through to the drawing beneath.
#pragma once

#include <QLabel>
#include <QWidget>

#include "ui/PlotScene.h"
#include "ui/PointSelection.h"
#include "ui/qt/ScenePainter.h"

namespace plotmeter::qt {

class PlotView : public QWidget {
  Q_OBJECT

 public:
  explicit PlotView(QWidget* parent = nullptr);

  // Shows `scene` (kept by reference: it lives in the window logic) with `selected` as
  // the selected point, -1 for none.
  void setScene(const PlotScene& scene, int selected);
  const PlotScene* scene() const { return scene_; }
  int selectedPoint() const { return selected_; }
  SceneTransform transform() const;

  QSize sizeHint() const override { return {620, 620}; }
  // Below this a plot's markers and labels crowd into one another.
  QSize minimumSizeHint() const override { return {360, 360}; }

 signals:
  void pressed(plotmeter::MouseButton button, QPointF scenePosition);
  // An arrow key: the next (1) or previous (-1) point to be selected.
  void stepped(int step);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void placeLabel(QLabel* label, const SceneLabel& state, float width);

  const PlotScene* scene_ = nullptr;
  int selected_ = -1;
  QLabel* lotLabel_;
  QLabel* tagLabel_;
};

// Makes the drawing's markers and lines reachable by assistive technology.
void InstallPlotAccessibility();
// Drops the accessible items of the last drawing, before a new one is shown.
void ForgetDrawnItems(PlotView* view);
// Tells assistive technology which point is now selected, when one is.
void AnnounceSelectedPoint(PlotView* view);

}  // namespace plotmeter::qt
