#pragma once

#include "DiskDetail.h"

#include <QWidget>

#include <vector>

class QLabel;

namespace brisko {

class UsageBar;

/// The values of the selected node: the usage bar, and captions with their values in two columns.
class DiskDetailView : public QWidget {
  Q_OBJECT

 public:
  explicit DiskDetailView(QWidget* parent = nullptr);
  void show(const DiskDetail& detail);
  using QWidget::show;

 private:
  QLayout* makeUsage();
  QLayout* makeValues();

  QLabel* usageCaption_;
  QLabel* usageValue_;
  UsageBar* bar_;
  QLabel* freeCaption_;
  QLabel* freeValue_;
  std::vector<QLabel*> captions_;  ///< left column first, downwards
  std::vector<QLabel*> values_;
};

}  // namespace brisko
