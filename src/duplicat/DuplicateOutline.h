#pragma once

#include "CheckOutline.h"

namespace brisko {

class DuplicateTreeModel;
class ImageCheckBox;

/// The outline of groups and their copies.
class DuplicateOutline : public CheckOutline {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 36;

  explicit DuplicateOutline(QWidget* parent = nullptr);

  void setTree(DuplicateTreeModel* tree);
  ImageCheckBox* selectAllBox() const;
};

}  // namespace brisko
