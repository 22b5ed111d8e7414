// The one painter of the drawing: markers, lines and labels of a `PlotScene` on any
// QPainter (the window's drawing area, a legend sample, a printer, a PDF, an SVG or an
// image), so that every surface shows a symbol the same way.
#pragma once

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QRectF>

#include "ui/PlotScene.h"

namespace plotmeter::qt {

QColor ToQColor(Rgb rgb);

struct SceneStyle {
  double lineWidth = 1.6;  // device pixels; every pen is cosmetic
  bool drawLabels = true;  // the window shows its labels as widgets of their own
  bool drawFrame = true;   // the border of the drawing area
};

// Maps the scene's square drawing area onto the largest centred square of `target`.
class SceneTransform {
 public:
  SceneTransform(const PlotScene& scene, const QRectF& target);
  QPointF ToDevice(float x, float y) const;
  QPointF ToScene(QPointF device) const;
  double Scale() const { return scale_; }
  QRectF Area() const { return area_; }

 private:
  QRectF area_;  // the drawing area on the device
  double scale_ = 1;
  float left_ = 0, top_ = 0;
};

// One marker, centred on `centre`, `side` across, in device units.
void PaintMarker(QPainter& painter, QPointF centre, double side, Rgb border, Rgb fill,
                 const SceneStyle& style);
void PaintLine(QPainter& painter, QPointF from, QPointF to, Rgb colour, const SceneStyle& style);
// A label's text placed by its anchor.
void PaintLabel(QPainter& painter, QPointF at, LabelAnchor anchor, const QString& text);

void PaintScene(QPainter& painter, const PlotScene& scene, const QRectF& target,
                const SceneStyle& style = {});

}  // namespace plotmeter::qt
