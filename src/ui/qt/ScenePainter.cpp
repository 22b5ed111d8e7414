#include "ui/qt/ScenePainter.h"

#include <QFontMetricsF>
#include <QLineF>
#include <algorithm>
#include <optional>

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

// The part of `line` inside `area` (Liang and Barsky's clipping), or nothing when none is:
// an SVG cannot clip, and a sheet at a large scale cuts the plot at its frame. A line
// inside keeps its ends exactly.
std::optional<QLineF> ClippedTo(const QRectF& area, const QLineF& line) {
  double enter = 0, leave = 1;
  const double along[4] = {-line.dx(), line.dx(), -line.dy(), line.dy()};
  const double room[4] = {line.x1() - area.left(), area.right() - line.x1(), line.y1() - area.top(),
                          area.bottom() - line.y1()};
  for (int side = 0; side < 4; ++side) {
    if (along[side] == 0) {
      if (room[side] < 0) return std::nullopt;
      continue;
    }
    double t = room[side] / along[side];
    if (along[side] < 0) {
      enter = std::max(enter, t);
    } else {
      leave = std::min(leave, t);
    }
    if (enter > leave) return std::nullopt;
  }
  return QLineF(enter > 0 ? line.pointAt(enter) : line.p1(),
                leave < 1 ? line.pointAt(leave) : line.p2());
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
  const QRectF area = transform.Area();
  for (const SceneLine& line : scene.lines) {
    std::optional<QLineF> inside = ClippedTo(
        area, {transform.ToDevice(line.x1, line.y1), transform.ToDevice(line.x2, line.y2)});
    if (inside) PaintLine(painter, inside->p1(), inside->p2(), line.colour, style);
  }
  for (const SceneMarker& marker : scene.markers) {
    QPointF centre = transform.ToDevice(marker.x, marker.y);
    if (!area.contains(centre)) continue;
    PaintMarker(painter, centre, MarkerSide(marker, scene, transform, style), marker.border,
                marker.fill, style);
  }
  if (style.drawLabels) {
    for (const SceneLabel* label : {&scene.LotLbl, &scene.TagDSLbl}) {
      QPointF at = transform.ToDevice(label->x, label->y);
      if (!label->visible || !area.contains(at)) continue;
      PaintLabel(painter, at, label->anchor, QString::fromLatin1(label->text));
    }
  }
  painter.restore();
}

}  // namespace plotmeter::qt
