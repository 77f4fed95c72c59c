#include "VisibleTicker.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace brisko {

VisibleTicker::VisibleTicker(QWidget* view, int interval, int firstBeat)
    : QObject(view), view_(view), interval_(interval), firstBeat_(firstBeat) {
  view->installEventFilter(this);
  look();
}

bool VisibleTicker::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Expose:
    case QEvent::WindowStateChange:
      // Afterwards: a filter sees the event before its receiver has changed its state.
      QTimer::singleShot(0, this, &VisibleTicker::look);
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

bool VisibleTicker::isSeen() {
  if (!view_->isVisible()) return false;
  const QWidget* top = view_->window();
  QWindow* window = top->windowHandle();
  if (window != window_) {
    if (window_) window_->removeEventFilter(this);
    window_ = window;
    if (window_) window_->installEventFilter(this);
  }
  return window != nullptr && window->isExposed() && !top->isMinimized();
}

void VisibleTicker::look() {
  const bool isSeenNow = isSeen();
  if (isSeenNow == isRunning_) return;
  isRunning_ = isSeenNow;
  if (!isRunning_) {
    timer_.stop();
    Q_EMIT stopped();
    return;
  }
  isFirst_ = true;
  timer_.start(firstBeat_, this);
  Q_EMIT started();
}

void VisibleTicker::timerEvent(QTimerEvent* event) {
  if (event->timerId() != timer_.timerId()) return;
  if (!isSeen()) {
    look();
    return;
  }
  if (isFirst_) {
    isFirst_ = false;
    timer_.start(interval_, this);
  }
  Q_EMIT ticked();
}

}  // namespace brisko
