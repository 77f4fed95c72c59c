#pragma once

#include "ASLoginStartItem.h"
#include "EntryTable.h"

#include <QAbstractTableModel>

#include <vector>

namespace brisko {

/// The login items as a table: "Name", "Kind", "Hide" and "Remove".
class LoginItemsTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column : int { name, kind, hide, remove, count };

  using QAbstractTableModel::QAbstractTableModel;

  void reloadData(const std::vector<ASLoginStartItem>& items);
  /// The path that the row shows; empty when there is no such row.
  std::string path(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QVariant text(const ASLoginStartItem& item, int column) const;
  QVariant accessibleText(const ASLoginStartItem& item, int column) const;

  std::vector<ASLoginStartItem> items_;
};

/// One row an item, its box under "Hide". Delete and a click on the trash ask for its removal.
class LoginItemsTable : public EntryTable {
  Q_OBJECT

 public:
  explicit LoginItemsTable(QWidget* parent = nullptr);
  void setItems(LoginItemsTableModel* items);

 Q_SIGNALS:
  void removeRequested(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace brisko
