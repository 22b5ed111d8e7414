#include "ui/qt/ListingFont.h"

#include <QApplication>
#include <QFontDatabase>

namespace plotmeter::qt {

QFont ListingFont() {
  if (!QFontDatabase::hasFamily("Courier New")) {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
  }
  QFont font("Courier New");
  font.setStyleHint(QFont::TypeWriter);
  font.setPointSizeF(QApplication::font().pointSizeF());
  return font;
}

}  // namespace plotmeter::qt
