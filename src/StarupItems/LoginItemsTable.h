#pragma once

#include "ASLoginStartItem.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QTableView>

#include <vector>

namespace brisko {

/// The login items as a table: "Name", "Kind", "Hide" and "Remove".
class LoginItemsTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column : int { name, kind, hide, remove, count };
  /// The item's path, as bytes.
  static constexpr int PathRole = Qt::UserRole + 10;

  using QAbstractTableModel::QAbstractTableModel;

  void reloadData(const std::vector<ASLoginStartItem>& items);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<ASLoginStartItem> items_;
};

class LoginItemsDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

/// One row an item. Space changes the highlighted row's box, Delete asks for its removal; a click
/// on a box or a button highlights its row first.
class LoginItemsTable : public QTableView {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 44;

  explicit LoginItemsTable(QWidget* parent = nullptr);
  void setItems(LoginItemsTableModel* items);

 Q_SIGNALS:
  void hideRequested(int row);
  void removeRequested(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QPersistentModelIndex pressed_;
};

}  // namespace brisko
