#include "MainQueuePump.h"

#include "Dispatch.h"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>

namespace brisko {
namespace {

// Half of a frame at 60 per second: the other half is for drawing what the blocks changed.
constexpr std::chrono::milliseconds kSlice{8};

QEvent::Type wakeEvent() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

}  // namespace

MainQueuePump::MainQueuePump() {
  Dispatch::attachMainThread();
  Dispatch::setWake([this] { QCoreApplication::postEvent(this, new QEvent(wakeEvent())); });
  runSlice();
}

MainQueuePump::~MainQueuePump() {
  Dispatch::setWake({});
}

bool MainQueuePump::event(QEvent* event) {
  if (event->type() != wakeEvent()) return QObject::event(event);
  runSlice();
  return true;
}

void MainQueuePump::timerEvent(QTimerEvent*) {
  runSlice();
}

void MainQueuePump::runSlice() {
  // The timer runs before the blocks do, because one of them may be a modal loop, and what is
  // queued behind it must go on meanwhile: the queue only wakes its owner when it was empty. A
  // timer rather than another posted event, which would be served before any input.
  next_.start(0, this);
  if (!Dispatch::runPendingFor(kSlice)) next_.stop();
}

}  // namespace brisko
