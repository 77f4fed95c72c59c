#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>

namespace brisko {

class DiskTreeModel;

/// The outline of disks and volumes, with an eject button in the rows that can be ejected. Left and
/// right close and open a disk; E ejects the selected row.
class DiskOutline : public QTreeView {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 52;

  explicit DiskOutline(QWidget* parent = nullptr);

  void setTree(DiskTreeModel* tree);
  /// While locked, no key and no click changes the selection.
  void setLocked(bool locked) { isLocked_ = locked; }

 Q_SIGNALS:
  void rowChosen(const QModelIndex& index);
  /// The eject button of the row, which is the selected one by now, was pressed.
  void EjectVolumes();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool isEjectButton(const QModelIndex& index) const;

  QPersistentModelIndex pressed_;
  bool isLocked_ = false;
};

}  // namespace brisko
