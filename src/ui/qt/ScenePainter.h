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
  // On screen, device pixels of a cosmetic pen; on paper, device units of a pen that
  // scales with the sheet, so that a PDF or SVG keeps its line widths when zoomed.
  double lineWidth = 1.6;
  bool cosmeticPens = true;
  // Device units across a marker of the scene's marker size (larger ones keep their
  // proportion); 0 scales markers with the drawing.
  double markerSide = 0;
  bool drawLabels = true;  // the window shows its labels as widgets of their own
  bool drawFrame = true;   // the border of the drawing area
};

// Maps scene positions (display units) onto the device, one scale for both axes.
class SceneTransform {
 public:
  // The scene's square drawing area onto the largest centred square of `target`.
  SceneTransform(const PlotScene& scene, const QRectF& target);
  // An exact scale: `scale` device units per display unit, the scene's point `centre`
  // in the middle of `area`, which then bounds the drawing.
  static SceneTransform Centred(const QRectF& area, QPointF centre, double scale);

  QPointF ToDevice(float x, float y) const;
  QPointF ToScene(QPointF device) const;
  double Scale() const { return scale_; }
  QRectF Area() const { return area_; }

 private:
  SceneTransform(const QRectF& area, QPointF origin, double scale)
      : area_(area), origin_(origin), scale_(scale) {}

  QRectF area_;     // the drawing area on the device
  QPointF origin_;  // where the scene's (0, 0) falls on the device
  double scale_ = 1;
};

// One marker, centred on `centre`, `side` across, in device units.
void PaintMarker(QPainter& painter, QPointF centre, double side, Rgb border, Rgb fill,
                 const SceneStyle& style);
void PaintLine(QPainter& painter, QPointF from, QPointF to, Rgb colour, const SceneStyle& style);
// A label's text placed by its anchor.
void PaintLabel(QPainter& painter, QPointF at, LabelAnchor anchor, const QString& text);

void PaintScene(QPainter& painter, const PlotScene& scene, const QRectF& target,
                const SceneStyle& style = {});
// The scene through `transform`, cut at its area.
void PaintScene(QPainter& painter, const PlotScene& scene, const SceneTransform& transform,
                const SceneStyle& style);

}  // namespace plotmeter::qt
