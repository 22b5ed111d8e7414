#include "ui/qt/ScenePainter.h"

#include <QFontMetricsF>
#include <algorithm>

namespace plotmeter::qt {

namespace {

QPen CosmeticPen(Rgb colour, double width) {
  QPen pen(ToQColor(colour), width);
  pen.setCosmetic(true);
  pen.setCapStyle(Qt::RoundCap);
  return pen;
}

QPen StylePen(Rgb colour, const SceneStyle& style) {
  QPen pen = CosmeticPen(colour, style.lineWidth);
  pen.setCosmetic(style.cosmeticPens);
  return pen;
}

double MarkerSide(const SceneMarker& marker, const PlotScene& scene,
                  const SceneTransform& transform, const SceneStyle& style) {
  if (style.markerSide > 0 && scene.markerSize > 0) {
    return style.markerSide * marker.size / scene.markerSize;
  }
  return marker.size * transform.Scale();
}

}  // namespace

QColor ToQColor(Rgb rgb) { return QColor(rgb.red, rgb.green, rgb.blue); }

SceneTransform::SceneTransform(const PlotScene& scene, const QRectF& target) {
  double side = std::min(target.width(), target.height());
  area_ = QRectF(target.center().x() - side / 2, target.center().y() - side / 2, side, side);
  scale_ = scene.width > 0 ? side / scene.width : 1;
  origin_ = area_.topLeft() - QPointF(scene.left, scene.top) * scale_;
}

SceneTransform SceneTransform::Centred(const QRectF& area, QPointF centre, double scale) {
  return SceneTransform(area, area.center() - centre * scale, scale);
}

QPointF SceneTransform::ToDevice(float x, float y) const {
  return {origin_.x() + x * scale_, origin_.y() + y * scale_};
}

QPointF SceneTransform::ToScene(QPointF device) const { return (device - origin_) / scale_; }

void PaintMarker(QPainter& painter, QPointF centre, double side, Rgb border, Rgb fill,
                 const SceneStyle& style) {
  painter.setPen(StylePen(border, style));
  painter.setBrush(ToQColor(fill));
  painter.drawEllipse(centre, side / 2, side / 2);
}

void PaintLine(QPainter& painter, QPointF from, QPointF to, Rgb colour, const SceneStyle& style) {
  painter.setPen(StylePen(colour, style));
  painter.drawLine(from, to);
}

void PaintLabel(QPainter& painter, QPointF at, LabelAnchor anchor, const QString& text) {
  QFontMetricsF metrics(painter.font());
  QRectF box = metrics.boundingRect(text);
  box.moveTo(0, 0);
  switch (anchor) {
    case LabelAnchor::kCentre:
      box.moveCenter(at);
      break;
    case LabelAnchor::kTopLeft:
      box.moveTopLeft(at);
      break;
    case LabelAnchor::kTopRight:
      box.moveTopRight(at);
      break;
  }
  painter.setPen(Qt::black);
  painter.drawText(box, Qt::AlignCenter, text);
}

void PaintScene(QPainter& painter, const PlotScene& scene, const QRectF& target,
                const SceneStyle& style) {
  PaintScene(painter, scene, SceneTransform(scene, target), style);
}

void PaintScene(QPainter& painter, const PlotScene& scene, const SceneTransform& transform,
                const SceneStyle& style) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (style.drawFrame) {
    painter.setPen(CosmeticPen({160, 160, 160}, 1));
    painter.setBrush(Qt::white);
    painter.drawRect(transform.Area());
  }
  painter.setClipRect(transform.Area());
  for (const SceneLine& line : scene.lines) {
    PaintLine(painter, transform.ToDevice(line.x1, line.y1), transform.ToDevice(line.x2, line.y2),
              line.colour, style);
  }
  for (const SceneMarker& marker : scene.markers) {
    PaintMarker(painter, transform.ToDevice(marker.x, marker.y),
                MarkerSide(marker, scene, transform, style), marker.border, marker.fill, style);
  }
  if (style.drawLabels) {
    for (const SceneLabel* label : {&scene.LotLbl, &scene.TagDSLbl}) {
      if (!label->visible) continue;
      PaintLabel(painter, transform.ToDevice(label->x, label->y), label->anchor,
                 QString::fromLatin1(label->text));
    }
  }
  painter.restore();
}

}  // namespace plotmeter::qt
