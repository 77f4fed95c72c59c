#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace brisko {

/// A turning arc for work whose end is not known. It turns only while it is shown.
class LoadingView : public QWidget {
  Q_OBJECT

 public:
  explicit LoadingView(QWidget* parent = nullptr);
  QSize sizeHint() const override { return {20, 20}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  QBasicTimer timer_;
  int angle_ = 0;  ///< degrees, clockwise from the top
};

}  // namespace brisko
