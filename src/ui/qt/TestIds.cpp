#include "ui/qt/TestIds.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace plotmeter::qt {

bool TestIdsFilter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Polish && watched->isWidgetType()) {
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
