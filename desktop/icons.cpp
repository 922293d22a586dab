#include "desktop/icons.h"

#include <QFile>
static void register_pictures() {
  Q_INIT_RESOURCE(strokemind_icons);
}

namespace desktop {

QIcon icon_of(const platform::Picture& picture) {
  if (picture.handle == 0) return {};
  // Linked from a static library, the pictures do not register themselves.
  register_pictures();
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64, 128}) {
    const QString path =
        QStringLiteral(":/icons/strokemind-%1-%2.png").arg(QString::fromStdString(picture.resource)).arg(size);
    if (!QFile::exists(path)) continue;
    // The same in a selected row: not tinted with the colour of the selection.
    for (const auto mode : {QIcon::Normal, QIcon::Selected}) icon.addFile(path, {size, size}, mode);
  }
  return icon;
}

QImage picture_of(const platform::Picture& picture) {
  if (picture.handle == 0) return {};
  register_pictures();
  return QImage(QStringLiteral(":/icons/%1.png").arg(QString::fromStdString(picture.resource)))
      .convertToFormat(QImage::Format_ARGB32);
}

QCursor pointer_of(const platform::Picture& picture) {
  // Its tip: the finger of the hand that the picture shows.
  constexpr QPoint tip(10, 1);
  const QImage image = picture_of(picture);
  if (image.isNull()) return Qt::ArrowCursor;
  return QCursor(QPixmap::fromImage(image), tip.x(), tip.y());
}

}  // namespace desktop
