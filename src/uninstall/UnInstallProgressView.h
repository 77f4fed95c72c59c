#pragma once

#include <QWidget>

namespace brisko {

/// A bar that is filled from the left by a percentage.
class UnInstallProgressView : public QWidget {
  Q_OBJECT

 public:
  explicit UnInstallProgressView(QWidget* parent = nullptr);

  /// 0 to 100; more fills it all the same no further than its width.
  void setValue(float percentage);
  float value() const { return value_; }
  /// How much of the bar is filled, in points.
  double filledWidth() const;

  QSize sizeHint() const override { return {420, 8}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  float value_ = 0;
};

}  // namespace brisko
