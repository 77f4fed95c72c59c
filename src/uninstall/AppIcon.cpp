#include "AppIcon.h"

#include "AMAppItem.h"
#include "ApplicationIcon.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QPainter>

namespace brisko {
namespace {

void paintLetter(QPainter* painter, const QRectF& rect, const QString& name) {
  painter->setPen(Qt::NoPen);
  painter->setBrush(themeColor(Theme::Token::accentSoft));
  painter->drawRoundedRect(rect, rect.width() / 4, rect.width() / 4);
  // A character of some scripts is two units long.
  const int units = !name.isEmpty() && name[0].isHighSurrogate() ? 2 : 1;
  const QString letter = name.isEmpty() ? QStringLiteral("?") : name.left(units).toUpper();
  painter->setFont(Theme::shared().font(static_cast<int>(rect.height() / 2.1), QFont::DemiBold));
  painter->setPen(themeColor(Theme::Token::accent));
  painter->drawText(rect, Qt::AlignCenter, letter);
}

}  // namespace

void paintAppIcon(QPainter* painter, const QRectF& rect, const AMAppItem& item) {
  using Role = AMAppItem::Role;
  if (item.host && !item.image.empty()) {
    const QIcon& icon = applicationIcon(item.image);
    const qreal scale = painter->device()->devicePixelRatioF();
    const QPixmap picture = icon.pixmap(rect.size().toSize(), scale);
    if (!picture.isNull()) {
      QRectF area(QPointF(), QSizeF(picture.size()) / picture.devicePixelRatio());
      area.moveCenter(rect.center());
      return painter->drawPixmap(area.topLeft(), picture);
    }
  }
  if (item.role == Role::relatedFile) {
    const bool isFolder = item.identity && item.identity->kind == FileKind::directory;
    return ImageLookup::paint(painter, isFolder ? "ic_folder" : "ic_file", rect);
  }
  if (item.role == Role::packageAlong) return ImageLookup::paint(painter, "ic_archive", rect);
  paintLetter(painter, rect, displayText(item.name));
}

}  // namespace brisko
