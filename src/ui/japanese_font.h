// Fonts for Japanese captions.
#pragma once

#include <QFont>
#include <QString>

namespace seluvorne::ui {

// `family` at `point_size` when it is installed, else an installed font with
// Japanese glyphs (Noto Sans CJK JP first), so captions never show as boxes.
QFont JapaneseFont(const QString& family, qreal point_size);

}  // namespace seluvorne::ui
