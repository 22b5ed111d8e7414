// With PLOTMETER_TEST_IDS=1 every widget's object name is copied into its accessible
// description, in every window and dialog the program creates, so that black-box tests
// can find each control through the accessibility bus as assistive technology does.
#pragma once

#include <QObject>

namespace plotmeter::qt {

class TestIdsFilter : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

// Installs the filter on the application when the environment asks for it.
void InstallTestIdsWhenAsked();

}  // namespace plotmeter::qt
