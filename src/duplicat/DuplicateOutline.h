#pragma once

#include "CheckOutline.h"

namespace brisko {

class DuplicateTreeModel;
class ImageCheckBox;

/// The outline of groups and their copies. Opening a copy asks to see it where it lies.
class DuplicateOutline : public CheckOutline {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 36;

  explicit DuplicateOutline(QWidget* parent = nullptr);

  void setTree(DuplicateTreeModel* tree);
  ImageCheckBox* selectAllBox() const;

 Q_SIGNALS:
  /// The user wants to see the copy where it lies: a double click, or Return.
  void revealRequested(const QModelIndex& index);

 protected:
  void openRow(const QModelIndex& row) override;
};

}  // namespace brisko
