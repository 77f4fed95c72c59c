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

/// A table header whose first section holds a tri-state box for all rows; without it, the first
/// title like the others.
class CheckHeaderView : public QHeaderView {
  Q_OBJECT

 public:
  explicit CheckHeaderView(QWidget* parent = nullptr, bool hasBox = true);
  ImageCheckBox* checkBox() const { return box_; }  ///< hidden in a header without it

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;

 private:
  ImageCheckBox* box_;
  bool hasBox_;
};

/// Draws a cell: a check box image, or an icon and a text cut off with an ellipsis. Plain text, and
/// its control characters escaped by the model.
class EntryDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  explicit EntryDelegate(QObject* parent = nullptr, int checkColumn = 0)
      : QStyledItemDelegate(parent), checkColumn_(checkColumn) {}
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 private:
  void paintText(QPainter* painter, const QRect& rect, const QModelIndex& index) const;

  int checkColumn_;
};

/// A cell that is a button, with its row's ground: the image in its middle, red while the mouse is
/// over it.
void paintRowButton(QPainter* painter, const QStyleOptionViewItem& option,
                    const std::string& imageName);

/// A table of entries with a check box in one column. Never edited; one highlighted row; sorted by
/// its header; driven by keys as by the mouse.
class EntryTable : public QTableView {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 44;

  /// The box for all rows is there only when theirs are in the first column.
  explicit EntryTable(QWidget* parent = nullptr, int checkColumn = 0);

  /// Sets the model and the widths: check box column, one that takes the room left, the rest.
  void setEntries(QAbstractItemModel* entries, int stretchedColumn);

  ImageCheckBox* selectAllBox() const;

 Q_SIGNALS:
  /// The user asked for the row's box to change. The row is the selected one already.
  void toggleRequested(const QModelIndex& index);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int checkColumn_;
};

}  // namespace brisko
