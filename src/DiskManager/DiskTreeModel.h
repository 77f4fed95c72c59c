#pragma once

#include "DiskAndVolumeObj.h"

#include <QAbstractItemModel>

#include <vector>

namespace brisko {

/// The disk tree as an item model: disks, and their volumes below them. Holds the nodes that it
/// shows, so they may be dropped elsewhere.
class DiskTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Column : int { Name, Eject, count };
  enum Role : int {
    ImageRole = Qt::UserRole,  ///< image before the name, or the eject image, or ""
    CaptionRole,               ///< the second line: size and type
  };

  using QAbstractItemModel::QAbstractItemModel;

  void reloadData(std::vector<DiskNode> disks);
  DiskNode node(const QModelIndex& index) const;
  /// The row of a node, by its identity; invalid when it is not in the tree.
  QModelIndex indexOf(const DiskNode& node) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const std::vector<DiskNode>& childrenOf(const QModelIndex& parent) const;

  std::vector<DiskNode> disks_;
};

}  // namespace brisko
