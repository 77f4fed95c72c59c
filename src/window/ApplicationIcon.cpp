#include "ApplicationIcon.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

namespace brisko {

const QIcon& applicationIcon(const std::string& name) {
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

}  // namespace brisko
