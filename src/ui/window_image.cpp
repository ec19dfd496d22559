#include "ui/window_image.h"

#include <QPixmap>
#include <QWidget>

#include "seluvorne/error.h"

namespace seluvorne::ui {

void SaveWindowImage(QWidget& window, const std::filesystem::path& file) {
  const QPixmap picture = window.grab();
  if (picture.isNull() || !picture.save(QString::fromStdString(file.string()), "PNG"))
    Raise(errc::kPathFileAccess, "(" + file.string() + ")");
}

}  // namespace seluvorne::ui
