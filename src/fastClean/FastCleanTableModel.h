#pragma once

#include "TCTreeNode.h"

#include <QAbstractTableModel>

#include <memory>

namespace brisko {

/// The entries of one category as a table: "CheckBox", "Name" and "Size". Shows the nodes as they
/// are; whoever changes them says so.
class FastCleanTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column : int { checkBox, name, size, count };

  using QAbstractTableModel::QAbstractTableModel;

  /// Shows `category`, or nothing for null. Also to be called when entries have come or gone.
  void reloadData(std::shared_ptr<TCTreeNode> category);
  /// The selection of entries changed, and nothing else.
  void selectionChanged();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  const std::shared_ptr<TCTreeNode>& category() const { return category_; }

 private:
  QVariant sortValue(const TCTreeNode& entry, int column) const;

  std::shared_ptr<TCTreeNode> category_;
  int rows_ = 0;
};

}  // namespace brisko
