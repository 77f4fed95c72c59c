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
  /// Whether a full bar is a warning, as it is to begin with; not where it stands for a whole.
  void setWarnsWhenFull(bool warns);

  QSize sizeHint() const override { return {160, 8}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double fraction_ = 0;
  bool warnsWhenFull_ = true;
};

}  // namespace brisko
