#include "DropArea.h"

#include "Theme.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

namespace brisko {
namespace {

// Through the encoded form, because a path need not be text in any character set.
std::vector<std::string> localPaths(const QMimeData* data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data->urls()) {
    if (!url.isLocalFile()) continue;
    const QByteArray path =
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    if (!path.contains('\0')) paths.push_back(path.toStdString());
  }
  return paths;
}

}  // namespace

DropArea::DropArea(QWidget* parent) : QFrame(parent) {
  setAcceptDrops(true);
}

void DropArea::setQuiet(bool isQuiet) {
  isQuiet_ = isQuiet;
  update();
}

void DropArea::setLit(bool isLit) {
  isLit_ = isLit;
  update();
}

void DropArea::dragEnterEvent(QDragEnterEvent* event) {
  if (localPaths(event->mimeData()).empty()) return;
  event->acceptProposedAction();
  setLit(true);
}

void DropArea::dragLeaveEvent(QDragLeaveEvent*) {
  setLit(false);
}

void DropArea::dropEvent(QDropEvent* event) {
  setLit(false);
  const std::vector<std::string> paths = localPaths(event->mimeData());
  if (paths.empty()) return;
  event->acceptProposedAction();
  Q_EMIT viewDragAction(paths.front());
  Q_EMIT pathsDropped(paths);
}

void DropArea::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPen pen(themeColor(isLit_ ? Theme::Token::accent : Theme::Token::control), 2, Qt::CustomDashLine,
           Qt::RoundCap);
  pen.setDashPattern({4, 4});
  painter.setPen(pen);
  if (isQuiet_ && !isLit_) painter.setPen(QPen(themeColor(Theme::Token::border), 1));
  painter.setBrush(themeColor(isLit_ ? Theme::Token::accentSoft : Theme::Token::card));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCardRadius, kCardRadius);
}

}  // namespace brisko
