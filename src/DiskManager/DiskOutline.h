#pragma once

#include "CheckOutline.h"

namespace brisko {

class DiskTreeModel;

/// The outline of disks and volumes. Where others have a box, the rows that can be ejected have an
/// eject button; E ejects the selected row.
class DiskOutline : public CheckOutline {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 52;

  explicit DiskOutline(QWidget* parent = nullptr);

  void setTree(DiskTreeModel* tree);
  /// While locked, no key and no click changes the selection.
  void setLocked(bool locked) { isLocked_ = locked; }

 Q_SIGNALS:
  /// The eject button of the row, which is the selected one by now, was pressed.
  void EjectVolumes();

 protected:
  bool isBox(const QModelIndex& index) const override;
  void keyPressEvent(QKeyEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  bool isLocked_ = false;
};

}  // namespace brisko
