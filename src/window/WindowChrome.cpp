#include "WindowChrome.h"

#include "Theme.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>
#include <QWindow>
#include <QtGui/qguiapplication_platform.h>

#include <cstdlib>
#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace brisko {
namespace {

constexpr int kEdge = 6;
constexpr qreal kWindowRadius = 12;

// On X11 windows can be translucent only while a compositing manager holds the screen's selection.
bool hasCompositor(xcb_connection_t* connection) {
  const std::string name = "_NET_WM_CM_S0";
  const auto atomCookie =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
      xcb_intern_atom_reply(connection, atomCookie, nullptr), std::free);
  if (!atom) return false;
  const auto ownerCookie = xcb_get_selection_owner(connection, atom->atom);
  const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
      xcb_get_selection_owner_reply(connection, ownerCookie, nullptr), std::free);
  return owner && owner->owner != XCB_NONE;
}

Qt::CursorShape cursorFor(Qt::Edges edges) {
  if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge)) {
    return Qt::SizeFDiagCursor;
  }
  if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge)) {
    return Qt::SizeBDiagCursor;
  }
  return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

}  // namespace

WindowChrome::WindowChrome(QWidget* window, unsigned options)
    : QObject(window), window_(window), options_(options), isTranslucent_(hasTranslucency()) {
  window_->setWindowFlag(Qt::FramelessWindowHint);
  if (isTranslucent_) window_->setAttribute(Qt::WA_TranslucentBackground);
  window_->installEventFilter(this);
  window_->winId();  // makes the native window, whose events come before those of the widgets on it
  if (window_->windowHandle() != nullptr) window_->windowHandle()->installEventFilter(this);
}

bool WindowChrome::hasTranslucency() {
  if (QGuiApplication::platformName() != QLatin1String("xcb")) return true;
  auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr && x11->connection() != nullptr && hasCompositor(x11->connection());
}

bool WindowChrome::isRounded() const {
  return radius() > 0;
}

qreal WindowChrome::radius() const {
  const bool fills = window_->isMaximized() || window_->isFullScreen();
  return isTranslucent_ && !fills ? kWindowRadius : 0;
}

void WindowChrome::paintGround(QPainter* painter) const {
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(themeColor(Theme::Token::border), 1));
  painter->setBrush(themeColor(Theme::Token::window));
  painter->drawRoundedRect(QRectF(window_->rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius(),
                           radius());
}

Qt::Edges WindowChrome::edgesAt(const QPoint& position) const {
  Qt::Edges edges;
  if ((options_ & resizable) == 0 || window_->isMaximized() || window_->isFullScreen())
    return edges;
  if (position.x() < kEdge) edges |= Qt::LeftEdge;
  if (position.x() >= window_->width() - kEdge) edges |= Qt::RightEdge;
  if (position.y() < kEdge) edges |= Qt::TopEdge;
  if (position.y() >= window_->height() - kEdge) edges |= Qt::BottomEdge;
  return edges;
}

bool WindowChrome::eventFilter(QObject* watched, QEvent* event) {
  if (watched == window_) {
    if (event->type() != QEvent::MouseButtonPress) return false;
    // Nothing on the window took the press, so it is the background's.
    auto* press = static_cast<QMouseEvent*>(event);
    if (press->button() == Qt::LeftButton && window_->windowHandle() != nullptr) {
      window_->windowHandle()->startSystemMove();
    }
    return false;
  }
  if (event->type() == QEvent::MouseMove) {
    auto* move = static_cast<QMouseEvent*>(event);
    return move->buttons() == Qt::NoButton && handleHover(move->position().toPoint());
  }
  if (event->type() == QEvent::Leave && hasEdgeCursor_) handleHover({kEdge + 1, kEdge + 1});
  if (event->type() == QEvent::MouseButtonPress) {
    auto* press = static_cast<QMouseEvent*>(event);
    return press->button() == Qt::LeftButton && handlePress(press->position().toPoint());
  }
  return false;
}

bool WindowChrome::handleHover(const QPoint& position) {
  const Qt::Edges edges = edgesAt(position);
  if (hasEdgeCursor_) QGuiApplication::restoreOverrideCursor();
  hasEdgeCursor_ = edges != Qt::Edges();
  if (hasEdgeCursor_) QGuiApplication::setOverrideCursor(cursorFor(edges));
  return hasEdgeCursor_;
}

bool WindowChrome::handlePress(const QPoint& position) {
  const Qt::Edges edges = edgesAt(position);
  return edges != Qt::Edges() && window_->windowHandle()->startSystemResize(edges);
}

}  // namespace brisko
