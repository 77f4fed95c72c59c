#pragma once

#include <QWidget>

namespace brisko {

/// A bar that fills from the left with the share of something that is used.
class UsageBar : public QWidget {
  Q_OBJECT

 public:
  explicit UsageBar(QWidget* parent = nullptr);

  /// 0 to 1. From 0.9 on the bar is drawn as a warning.
  void setFraction(double fraction);
  double fraction() const { return fraction_; }

  QSize sizeHint() const override { return {160, 8}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double fraction_ = 0;
};

}  // namespace brisko
