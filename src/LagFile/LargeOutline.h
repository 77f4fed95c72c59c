#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>

namespace brisko {

class ImageCheckBox;
class LargeTreeModel;

/// The outline of a scanned folder. Boxes and locks are drawn, not made of widgets, and all rows
/// are of one height, so its cost is that of the rows in sight. Space toggles the highlighted row's
/// box, left and right close and open folders, Enter on the last row of a long folder shows more of
/// it.
class LargeOutline : public QTreeView {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 34;

  explicit LargeOutline(QWidget* parent = nullptr);

  void setTree(LargeTreeModel* tree);
  ImageCheckBox* selectAllBox() const;

 Q_SIGNALS:
  /// The user asked for the row's box to change.
  void toggleRequested(const QModelIndex& index);
  /// The user asked for more of the folder whose last row this is.
  void moreRequested(const QModelIndex& index);
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
  QPersistentModelIndex pressed_;
};

}  // namespace brisko
