#pragma once

#include "CheckOutline.h"

namespace brisko {

class ImageCheckBox;
class LargeTreeModel;

/// The outline of a scanned folder. A file is opened as a folder is: by a double click or Return.
/// The last row of a long folder shows more of it when it is clicked or opened.
class LargeOutline : public CheckOutline {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 34;

  explicit LargeOutline(QWidget* parent = nullptr);

  void setTree(LargeTreeModel* tree);
  ImageCheckBox* selectAllBox() const;

 Q_SIGNALS:
  /// The user wants to see what is in this file.
  void openRequested(const QModelIndex& index);
  /// The user asked for more of the folder whose last row this is.
  void moreRequested(const QModelIndex& index);

 protected:
  void openRow(const QModelIndex& row) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace brisko
