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

}  // namespace

QColor ToQColor(Rgb rgb) { return QColor(rgb.red, rgb.green, rgb.blue); }

SceneTransform::SceneTransform(const PlotScene& scene, const QRectF& target)
    : left_(scene.left), top_(scene.top) {
  double side = std::min(target.width(), target.height());
  area_ = QRectF(target.center().x() - side / 2, target.center().y() - side / 2, side, side);
  scale_ = scene.width > 0 ? side / scene.width : 1;
}

QPointF SceneTransform::ToDevice(float x, float y) const {
  return {area_.left() + (x - left_) * scale_, area_.top() + (y - top_) * scale_};
}

QPointF SceneTransform::ToScene(QPointF device) const {
  return {left_ + (device.x() - area_.left()) / scale_, top_ + (device.y() - area_.top()) / scale_};
}

void PaintMarker(QPainter& painter, QPointF centre, double side, Rgb border, Rgb fill,
                 const SceneStyle& style) {
  painter.setPen(CosmeticPen(border, style.lineWidth));
  painter.setBrush(ToQColor(fill));
  painter.drawEllipse(centre, side / 2, side / 2);
}

void PaintLine(QPainter& painter, QPointF from, QPointF to, Rgb colour, const SceneStyle& style) {
  painter.setPen(CosmeticPen(colour, style.lineWidth));
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
  SceneTransform transform(scene, target);
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
    PaintMarker(painter, transform.ToDevice(marker.x, marker.y), marker.size * transform.Scale(),
                marker.border, marker.fill, style);
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
