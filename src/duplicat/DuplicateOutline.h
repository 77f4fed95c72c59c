#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>

namespace brisko {

class DuplicateTreeModel;
class ImageCheckBox;

/// The outline of groups and their copies. Boxes are drawn, not made of widgets, and all rows are
/// of one height, so its cost is that of the rows in sight. Space toggles the highlighted row's
/// box, left and right close and open groups, and so does Return; on a copy it asks to see it.
class DuplicateOutline : public QTreeView {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 36;

  explicit DuplicateOutline(QWidget* parent = nullptr);

  void setTree(DuplicateTreeModel* tree);
  ImageCheckBox* selectAllBox() const;

 Q_SIGNALS:
  /// The user asked for the row's box to change.
  void toggleRequested(const QModelIndex& index);
  /// The user wants to see the copy where it lies: a double click, or Return.
  void revealRequested(const QModelIndex& index);
  /// The highlighted row is another one, or none.
  void currentRowChanged(const QModelIndex& index);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void openOrReveal(const QModelIndex& index);

  QPersistentModelIndex pressed_;
};

}  // namespace brisko
