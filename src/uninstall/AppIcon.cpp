#include "AppIcon.h"

#include "AMAppItem.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "Theme.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QIcon>
#include <QPainter>

namespace brisko {
namespace {

// Icons of the desktop's theme, looked for once; null ones too.
const QIcon& desktopIcon(const std::string& name) {
  static QHash<QString, QIcon> icons;
  const QString key = QFile::decodeName(QByteArray::fromStdString(name));
  const auto known = icons.constFind(key);
  if (known != icons.constEnd()) return *known;
  QIcon icon;
  if (!key.startsWith(QLatin1Char('/'))) {
    icon = QIcon::fromTheme(key);
  } else if (QFileInfo(key).isFile()) {
    // Only a plain file is opened: a FIFO would never answer.
    icon = QIcon(key);
  }
  return *icons.insert(key, icon);
}

void paintLetter(QPainter* painter, const QRectF& rect, const QString& name) {
  painter->setPen(Qt::NoPen);
  painter->setBrush(themeColor(Theme::Token::accentSoft));
  painter->drawRoundedRect(rect, rect.width() / 4, rect.width() / 4);
  const QString letter = name.isEmpty() ? QStringLiteral("?") : name.left(1).toUpper();
  painter->setFont(Theme::shared().font(static_cast<int>(rect.height() / 2.1), QFont::DemiBold));
  painter->setPen(themeColor(Theme::Token::accent));
  painter->drawText(rect, Qt::AlignCenter, letter);
}

}  // namespace

void paintAppIcon(QPainter* painter, const QRectF& rect, const AMAppItem& item) {
  using Role = AMAppItem::Role;
  if (item.host && !item.image.empty()) {
    const QIcon& icon = desktopIcon(item.image);
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
