#pragma once

#include "Workspace.h"

#include <QWidget>

#include <vector>

class QGridLayout;
class QLabel;

namespace brisko {

class ImageView;
class UsageBar;

/// One mounted volume with its use: image, name, bar and figures.
class VolumeRow : public QWidget {
  Q_OBJECT

 public:
  explicit VolumeRow(QWidget* parent = nullptr);
  void show(const MountedVolume& volume);
  using QWidget::show;

  static const char* imageName(const MountedVolume& volume);

 private:
  ImageView* imageView_;
  QLabel* nameLabel_;
  QLabel* figuresLabel_;
  UsageBar* bar_;
};

/// The mounted volumes, kept as they are: looked at again when shown and on every mount and
/// unmount.
class VolumeList : public QWidget {
  Q_OBJECT

 public:
  explicit VolumeList(QWidget* parent = nullptr);
  ~VolumeList() override;

  /// Rows stand side by side where `columns` is more than 1.
  void setColumns(int columns);
  /// Shows so many at the most, and says how many more there are.
  void setMost(std::size_t most) { most_ = most; }
  void refresh();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void take(const std::vector<MountedVolume>& volumes);
  void setRowCount(std::size_t count);

  QGridLayout* grid_;
  QLabel* moreLabel_;
  std::vector<VolumeRow*> rows_;
  int columns_ = 1;
  std::size_t most_ = ~std::size_t{0};
  int token_ = 0;
  bool isLooking_ = false;
  bool looksAgain_ = false;
};

}  // namespace brisko
