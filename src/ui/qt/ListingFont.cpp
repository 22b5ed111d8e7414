#include "ui/qt/ListingFont.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>

namespace plotmeter::qt {

namespace {

// A family fontconfig does not mark as monospaced (Noto Sans Mono, as Debian's default
// monospace, is one) may come back from the system's fixed font: the columns then need a
// family that really is fixed-pitch.
QFont FirstFixedPitchFamily(QFont font) {
  for (const QString& family : QFontDatabase::families()) {
    if (QFontDatabase::isFixedPitch(family) && !QFontDatabase::isPrivateFamily(family)) {
      font.setFamily(family);
      return font;
    }
  }
  return font;
}

}  // namespace

QFont ListingFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (QFontDatabase::hasFamily("Courier New")) {
    font = QFont("Courier New");
    font.setStyleHint(QFont::TypeWriter);
  }
  font.setPointSizeF(QApplication::font().pointSizeF());
  return QFontInfo(font).fixedPitch() ? font : FirstFixedPitchFamily(font);
}

}  // namespace plotmeter::qt
