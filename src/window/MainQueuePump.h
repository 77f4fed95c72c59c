#pragma once

#include <QBasicTimer>
#include <QObject>

namespace brisko {

/// Runs the main queue on the toolkit's event loop, in slices between which input and frames have
/// their turn. One while there is an application.
class MainQueuePump : public QObject {
  Q_OBJECT

 public:
  MainQueuePump();
  ~MainQueuePump() override;

 protected:
  bool event(QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void runSlice();

  QBasicTimer next_;
};

}  // namespace brisko
