#pragma once

#include "Theme.h"

#include <QPersistentModelIndex>
#include <QTreeView>

namespace brisko {

/// A tree of rows with a check box each in the first column and their names in the second. Boxes
/// are drawn, not made of widgets, and all rows are of one height, so its cost is that of the rows
/// in sight. Space toggles the highlighted row's box, left and right close and open rows, and so do
/// Return and a double click.
class CheckOutline : public QTreeView {
  Q_OBJECT

 public:
  explicit CheckOutline(QWidget* parent = nullptr);

 Q_SIGNALS:
  /// The user asked for the row's box to change.
  void toggleRequested(const QModelIndex& index);
  /// The highlighted row is another one, or none.
  void currentRowChanged(const QModelIndex& index);

 protected:
  /// Whether a click on this valid cell asks for a toggle.
  virtual bool isBox(const QModelIndex& index) const { return index.column() == 0; }

  /// Return or a double click on the row, given by its first column: opens or closes it.
  virtual void openRow(const QModelIndex& row);

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

/// What delegates of such outlines and of tables draw below a row.
void paintRowGround(QPainter* painter, const QRect& rect, bool isSelected);

/// A word on a rounded ground at the right end of `area`; what is left of the area remains. Nothing
/// when the name before it would have no room.
void paintTag(QPainter* painter, QRect& area, const QString& word, Theme::Token ink);

/// A box image in the middle of a cell.
void paintBox(QPainter* painter, const QRect& rect, const QModelIndex& index);

}  // namespace brisko
