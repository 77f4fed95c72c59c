#pragma once

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableView>

#include <string>

namespace brisko {

class ImageCheckBox;

/// What a table's model gives beside the usual roles.
enum EntryRole : int {
  /// The image name (text) of a check box column's cell, or of the icon before a name where
  /// Qt::DecorationRole gives none.
  ImageNameRole = Qt::UserRole,
  /// By what a column is sorted.
  SortRole,
};

/// A table header whose first section holds a tri-state box for all rows.
class CheckHeaderView : public QHeaderView {
  Q_OBJECT

 public:
  explicit CheckHeaderView(QWidget* parent = nullptr);
  ImageCheckBox* checkBox() const { return box_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;

 private:
  ImageCheckBox* box_;
};

/// Draws a cell: a check box image, or an icon and a text cut off with an ellipsis. Plain text, and
/// its control characters escaped by the model.
class EntryDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

/// A table of entries with a check box in its first column. Never edited; one highlighted row;
/// sorted by its header; driven by keys as by the mouse.
class EntryTable : public QTableView {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 44;

  explicit EntryTable(QWidget* parent = nullptr);

  /// Sets the model and the widths: check box column, one that takes the room left, the rest.
  void setEntries(QAbstractItemModel* entries, int stretchedColumn);

  ImageCheckBox* selectAllBox() const;

 Q_SIGNALS:
  /// The user asked for the row's box to change. The row is the selected one already.
  void toggleRequested(const QModelIndex& index);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QPersistentModelIndex pressed_;
};

}  // namespace brisko
