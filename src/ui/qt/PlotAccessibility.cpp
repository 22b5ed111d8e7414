// The drawing as assistive technology sees it: one graphic per shown marker ("Point 3",
// "Alternate Point 3") and per shown line ("Line 3", "Alternate Line 3"), each with its
// rectangle on the screen and its role as its description.
#include <QAccessibleWidget>
#include <map>

#include "ui/qt/PlotView.h"

namespace plotmeter::qt {

namespace {

QString MarkerRoleText(MarkerRole role) {
  switch (role) {
    case MarkerRole::kStart:
      return "start point";
    case MarkerRole::kIntermediate:
      return "intermediate point";
    case MarkerRole::kLine:
      return "line point";
    case MarkerRole::kStandAlone:
      return "stand-alone point";
    case MarkerRole::kAlternate:
      return "alternate position";
    case MarkerRole::kError:
      return "error point";
    case MarkerRole::kPerimeter:
      break;
  }
  return "perimeter point";
}

QString LineRoleText(LineRole role) {
  switch (role) {
    case LineRole::kClosing:
      return "closing line";
    case LineRole::kOther:
      return "other line";
    case LineRole::kAlternate:
      return "alternate line";
    case LineRole::kError:
      return "error line";
    case LineRole::kPerimeter:
      break;
  }
  return "perimeter line";
}

// Child `index` of the drawing: the markers first, then the lines, in the scene's order.
class SceneItemAccessible : public QAccessibleInterface {
 public:
  SceneItemAccessible(PlotView* view, int index) : view_(view), index_(index) {}

  bool isValid() const override {
    return view_ && view_->scene() && index_ < ItemCount(*view_->scene());
  }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return view_->window()->windowHandle(); }
  QList<std::pair<QAccessibleInterface*, QAccessible::Relation>> relations(
      QAccessible::Relation) const override {
    return {};
  }
  QAccessibleInterface* focusChild() const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(view_);
  }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  void setText(QAccessible::Text, const QString&) override {}
  QAccessible::Role role() const override { return QAccessible::Graphic; }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    if (const SceneMarker* marker = Marker()) {
      QString name = QString("Point %1").arg(marker->point + 1);
      if (kind == QAccessible::Name) return marker->alternate ? "Alternate " + name : name;
      if (kind == QAccessible::Description) return MarkerRoleText(marker->role);
      return {};
    }
    const SceneLine& line = Line();
    QString name = QString("Line %1").arg(line.endsAt + 1);
    if (kind == QAccessible::Name)
      return line.role == LineRole::kAlternate ? "Alternate " + name : name;
    if (kind == QAccessible::Description) return LineRoleText(line.role);
    return {};
  }

  QRect rect() const override {
    if (!isValid()) return {};
    SceneTransform map = view_->transform();
    QRectF box;
    if (const SceneMarker* marker = Marker()) {
      double side = std::max(2.0, marker->size * map.Scale());
      QPointF centre = map.ToDevice(marker->x, marker->y);
      box = QRectF(centre.x() - side / 2, centre.y() - side / 2, side, side);
    } else {
      const SceneLine& line = Line();
      box = QRectF(map.ToDevice(line.x1, line.y1), map.ToDevice(line.x2, line.y2)).normalized();
      box.adjust(-1, -1, 1, 1);
    }
    QRect local = box.toAlignedRect();
    return QRect(view_->mapToGlobal(local.topLeft()), local.size());
  }

  QAccessible::State state() const override {
    QAccessible::State state;
    const SceneMarker* marker = isValid() ? Marker() : nullptr;
    if (marker && !marker->alternate) {
      state.selectable = true;
      state.selected = marker->point == view_->selectedPoint();
    }
    return state;
  }

  static int ItemCount(const PlotScene& scene) {
    return static_cast<int>(scene.markers.size() + scene.lines.size());
  }

 private:
  const SceneMarker* Marker() const {
    const auto& markers = view_->scene()->markers;
    return index_ < static_cast<int>(markers.size()) ? &markers[index_] : nullptr;
  }
  const SceneLine& Line() const {
    return view_->scene()->lines[index_ - view_->scene()->markers.size()];
  }

  PlotView* view_;
  int index_;
};

class PlotViewAccessible : public QAccessibleWidget {
 public:
  explicit PlotViewAccessible(PlotView* view) : QAccessibleWidget(view, QAccessible::Canvas) {}
  ~PlotViewAccessible() override { Forget(); }

  // The drawing's own label widgets come first, then the drawn items.
  int childCount() const override {
    const PlotScene* scene = View()->scene();
    return QAccessibleWidget::childCount() + (scene ? SceneItemAccessible::ItemCount(*scene) : 0);
  }

  QAccessibleInterface* child(int index) const override {
    const int widgets = QAccessibleWidget::childCount();
    if (index < widgets) return QAccessibleWidget::child(index);
    if (index >= childCount()) return nullptr;
    const int item = index - widgets;
    auto found = children_.find(item);
    if (found != children_.end()) return QAccessible::accessibleInterface(found->second);
    auto* made = new SceneItemAccessible(View(), item);
    children_[item] = QAccessible::registerAccessibleInterface(made);
    return made;
  }

  int indexOfChild(const QAccessibleInterface* child) const override {
    for (const auto& [item, id] : children_) {
      if (QAccessible::accessibleInterface(id) == child)
        return QAccessibleWidget::childCount() + item;
    }
    return QAccessibleWidget::indexOfChild(child);
  }

  // The child that stands for marker `marker` of the scene.
  int ChildOfMarker(int marker) const { return QAccessibleWidget::childCount() + marker; }

  // Items are made anew for each drawing: the old ones name what is no longer drawn.
  void Forget() {
    for (const auto& [index, id] : children_) QAccessible::deleteAccessibleInterface(id);
    children_.clear();
  }

 private:
  PlotView* View() const { return static_cast<PlotView*>(widget()); }

  mutable std::map<int, QAccessible::Id> children_;
};

QAccessibleInterface* PlotAccessibleFactory(const QString& className, QObject* object) {
  if (className == QLatin1String("plotmeter::qt::PlotView") && object->isWidgetType()) {
    return new PlotViewAccessible(static_cast<PlotView*>(object));
  }
  return nullptr;
}

}  // namespace

void ForgetDrawnItems(PlotView* view) {
  if (!QAccessible::isActive()) return;
  if (auto* accessible =
          dynamic_cast<PlotViewAccessible*>(QAccessible::queryAccessibleInterface(view))) {
    accessible->Forget();
  }
}

void AnnounceSelectedPoint(PlotView* view) {
  const PlotScene* scene = view->scene();
  if (!QAccessible::isActive() || !scene || view->selectedPoint() < 0) return;
  auto* accessible = dynamic_cast<PlotViewAccessible*>(QAccessible::queryAccessibleInterface(view));
  if (!accessible) return;
  for (std::size_t marker = 0; marker < scene->markers.size(); ++marker) {
    if (scene->markers[marker].point != view->selectedPoint()) continue;
    QAccessibleEvent focus(view, QAccessible::Focus);
    focus.setChild(accessible->ChildOfMarker(static_cast<int>(marker)));
    QAccessible::updateAccessibility(&focus);
    return;
  }
}

void InstallPlotAccessibility() { QAccessible::installFactory(PlotAccessibleFactory); }

}  // namespace plotmeter::qt
