#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QRectF>
#include <QSize>

#include <string>
#include <string_view>

class QPainter;

namespace brisko {

/// Images by name. "ic_disk", "ic_disk@2x", "ic_disk.png" and "ic_disk@2x.png" are the same image.
///
/// Images are drawings whose colours are the theme's: "currentColor" is the tint, "var(--TOKEN)" a
/// token. Where a drawing must differ altogether, one named NAME-dark is used on dark. They are
/// drawn for the exact pixels of the screen they are shown on. Main thread only.
class ImageLookup {
 public:
  /// `imageName` without "@2x", ".png" and ".svg".
  static std::string baseName(std::string_view imageName);

  static bool exists(std::string_view imageName);

  /// The size in which it was drawn; empty when there is no such image.
  static QSize naturalSize(std::string_view imageName);

  /// The image at `size` points for a screen with `scale` pixels per point. An invalid tint is the
  /// theme's secondary text colour. Null, with one log line, when there is no such image.
  static QPixmap pixmap(std::string_view imageName, QSize size, qreal scale, QColor tint = {});

  /// Draws it into `rect`, sharp on whatever `painter` draws on.
  static void paint(QPainter* painter, std::string_view imageName, const QRectF& rect,
                    QColor tint = {});

  /// An icon that is drawn when needed, in the theme of that moment.
  static QIcon icon(std::string_view imageName, QColor tint = {});
};

}  // namespace brisko
