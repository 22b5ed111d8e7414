#include "ui/qt/TestIds.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace plotmeter::qt {

bool TestIdsFilter::eventFilter(QObject* watched, QEvent* event) {
  // Some widgets are polished before they are named (the buttons of a button box), so the
  // name is looked at again when the widget is shown.
  const bool named = event->type() == QEvent::Polish || event->type() == QEvent::Show;
  if (named && watched->isWidgetType()) {
    auto* widget = static_cast<QWidget*>(watched);
    if (!widget->objectName().isEmpty() && widget->accessibleDescription().isEmpty()) {
      widget->setAccessibleDescription(widget->objectName());
    }
  }
  return QObject::eventFilter(watched, event);
}

void InstallTestIdsWhenAsked() {
  if (qEnvironmentVariable("PLOTMETER_TEST_IDS") != "1") return;
  qApp->installEventFilter(new TestIdsFilter(qApp));
}

}  // namespace plotmeter::qt
