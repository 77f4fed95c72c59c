#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPointer>

class QWidget;
class QWindow;

namespace brisko {

/// A clock that beats only while a widget can be seen: not while it or a parent is hidden, nor
/// while its window is minimised or not on the screen. Nothing runs meanwhile, not even a timer.
class VisibleTicker : public QObject {
  Q_OBJECT

 public:
  /// Beats every `interval` milliseconds, the first time `firstBeat` milliseconds after `view` came
  /// to be seen. Owned by `view`.
  VisibleTicker(QWidget* view, int interval, int firstBeat);

  bool isRunning() const { return isRunning_; }

 Q_SIGNALS:
  /// The widget can be seen from now on.
  void started();
  void ticked();
  void stopped();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void look();
  bool isSeen();

  QWidget* view_;
  QPointer<QWindow> window_;  ///< watched for being exposed
  QBasicTimer timer_;
  int interval_;
  int firstBeat_;
  bool isRunning_ = false;
  bool isFirst_ = false;
};

}  // namespace brisko
