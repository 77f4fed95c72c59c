#pragma once

#include "FilePreview.h"

namespace brisko {

class SimpleTreeNode;

/// What the highlighted row is.
class DuplicatePreview : public FilePreview {
  Q_OBJECT

 public:
  explicit DuplicatePreview(QWidget* parent = nullptr);

  /// Shows a copy, or a group by its first copy; nothing for null. The node is not kept.
  void show(const SimpleTreeNode* node);
  using QWidget::show;
};

}  // namespace brisko
