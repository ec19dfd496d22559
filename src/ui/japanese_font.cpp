#include "ui/japanese_font.h"

#include <QFontDatabase>
#include <QStringList>

namespace seluvorne::ui {

namespace {

QString FallbackFamily() {
  for (const char* preferred : {"Noto Sans CJK JP", "IPAPGothic", "IPAexGothic", "VL PGothic"})
    if (QFontDatabase::hasFamily(preferred)) return preferred;
  const QStringList japanese = QFontDatabase::families(QFontDatabase::Japanese);
  if (!japanese.isEmpty()) return japanese.front();
  return QFont().family();  // fontconfig still substitutes glyph by glyph
}

}  // namespace

QFont JapaneseFont(const QString& family, qreal point_size) {
  QFont font(QFontDatabase::hasFamily(family) ? family : FallbackFamily());
  font.setPointSizeF(point_size);
  return font;
}

}  // namespace seluvorne::ui
