#pragma once

#include <QWidget>

#include <array>

class QLabel;

namespace brisko {

class DiskHealth;
class LoadingView;

/// The drive's temperature, hours and cycles below a disk's values, or why there are none.
class DiskHealthView : public QWidget {
  Q_OBJECT

 public:
  explicit DiskHealthView(QWidget* parent = nullptr);
  void show(const DiskHealth& health);
  using QWidget::show;

 private:
  LoadingView* loading_;
  QWidget* figures_;
  std::array<QLabel*, 3> values_{};
  QLabel* explanation_;
};

}  // namespace brisko
