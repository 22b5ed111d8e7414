#include "ui/qt/PlotView.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace plotmeter::qt {

namespace {

MouseButton ToMouseButton(Qt::MouseButton button) {
  if (button == Qt::LeftButton) return MouseButton::kLeft;
  if (button == Qt::RightButton) return MouseButton::kRight;
  return MouseButton::kOther;
}

QLabel* DrawingLabel(QWidget* parent, const char* name) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  label->hide();
  return label;
}

}  // namespace

PlotView::PlotView(QWidget* parent)
    : QWidget(parent),
      lotLabel_(DrawingLabel(this, "LotLbl_0")),
      tagLabel_(DrawingLabel(this, "TagDSLbl")) {
  setObjectName("DisplaySh");
  setAccessibleName("Drawing");
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
}

void PlotView::setScene(const PlotScene& scene, int selected) {
  scene_ = &scene;
  selected_ = selected;
  placeLabel(lotLabel_, scene.LotLbl, 0);
  placeLabel(tagLabel_, scene.TagDSLbl, kTagWidth);
  update();
  ForgetDrawnItems(this);
  QAccessibleEvent reorder(this, QAccessible::ObjectReorder);
  QAccessible::updateAccessibility(&reorder);
  if (hasFocus()) AnnounceSelectedPoint(this);
}

SceneTransform PlotView::transform() const {
  static const PlotScene kEmpty;
  return SceneTransform(scene_ ? *scene_ : kEmpty, QRectF(rect()).adjusted(4, 4, -4, -4));
}

void PlotView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().window());
  static const PlotScene kEmpty;
  PaintScene(painter, scene_ ? *scene_ : kEmpty, QRectF(rect()).adjusted(4, 4, -4, -4),
             {.drawLabels = false});
  if (hasFocus()) {  // a frame in the highlight colour: the keys now act on the drawing
    painter.setPen(QPen(palette().highlight(), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
  }
}

void PlotView::mousePressEvent(QMouseEvent* event) {
  emit pressed(ToMouseButton(event->button()), transform().ToScene(event->position()));
}

void PlotView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
      emit stepped(1);
      return;
    case Qt::Key_Left:
    case Qt::Key_Up:
      emit stepped(-1);
      return;
    case Qt::Key_Menu:
      if (scene_ && selected_ >= 0 && selected_ < static_cast<int>(scene_->screen.size())) {
        const ScreenPoint& at = scene_->screen[static_cast<std::size_t>(selected_)];
        emit pressed(MouseButton::kRight, QPointF(at.x, at.y));
      }
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

void PlotView::resizeEvent(QResizeEvent*) {
  if (!scene_) return;
  placeLabel(lotLabel_, scene_->LotLbl, 0);
  placeLabel(tagLabel_, scene_->TagDSLbl, kTagWidth);
}

// The tag label spans its full width beside the point, its text on the point's side.
void PlotView::placeLabel(QLabel* label, const SceneLabel& state, float width) {
  label->setVisible(state.visible);
  if (!state.visible) return;
  label->setText(QString::fromLatin1(state.text));
  label->adjustSize();
  SceneTransform map = transform();
  QPointF at = map.ToDevice(state.x, state.y);
  QSize size = label->size();
  int span = std::max(size.width(), static_cast<int>(width * map.Scale()));
  switch (state.anchor) {
    case LabelAnchor::kCentre:
      label->move(static_cast<int>(at.x() - size.width() / 2.0),
                  static_cast<int>(at.y() - size.height() / 2.0));
      return;
    case LabelAnchor::kTopLeft:
      label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
      label->setGeometry(static_cast<int>(at.x()), static_cast<int>(at.y()), span, size.height());
      return;
    case LabelAnchor::kTopRight:
      label->setAlignment(Qt::AlignRight | Qt::AlignTop);
      label->setGeometry(static_cast<int>(at.x()) - span, static_cast<int>(at.y()), span,
                         size.height());
      return;
  }
}

}  // namespace plotmeter::qt
