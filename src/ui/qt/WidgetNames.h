// How the windows name their widgets and show the core's texts. A widget's object name is
// its control's own name (an array member as `DataBtn_0`), so that tests and assistive
// technology find it; the core's texts are single-byte (Latin-1), as the data file is.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QString>
#include <QStringList>
#include <string>
#include <string_view>
#include <vector>

namespace plotmeter::qt {

inline QString Latin1(std::string_view text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string ToLatin1(const QString& text) { return text.toLatin1().toStdString(); }

// The object name of member `index` of the control array `name`.
inline QString Indexed(const char* name, int index) {
  return QString("%1_%2").arg(name).arg(index);
}

template <typename Widget>
Widget* Named(Widget* widget, const QString& name) {
  widget->setObjectName(name);
  return widget;
}

inline QLabel* NamedLabel(const QString& name, const QString& text = {}) {
  return Named(new QLabel(text), name);
}

// Gives a list box `items` (kept as they are when it holds them already, so that an open
// list does not close) and chooses `index`.
inline void ShowItems(QComboBox* combo, const std::vector<std::string>& items, int index) {
  QStringList wanted;
  for (const std::string& item : items) wanted << Latin1(item);
  QStringList shown;
  for (int i = 0; i < combo->count(); ++i) shown << combo->itemText(i);
  if (shown != wanted) {
    combo->clear();
    combo->addItems(wanted);
  }
  combo->setCurrentIndex(index);
}

}  // namespace plotmeter::qt
