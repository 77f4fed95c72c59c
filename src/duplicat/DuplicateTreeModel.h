#pragma once

#include "SimpleTreeNode.h"

#include <QAbstractItemModel>

#include <unordered_map>

namespace brisko {

/// What an outline row gives beside the roles of `EntryRole`.
enum DuplicateRole : int {
  KeptRole = Qt::UserRole + 16,  ///< leaf: the copy of its group that ticking the group keeps
  HardLinkRole,                  ///< leaf: the same file as another leaf of its group
};

/// The shown tree as an item model: groups, and their copies below them.
///
/// Nothing is copied: an index holds its node, and texts are made when a row is drawn. What is kept
/// besides is the row of each group (one hash table, made when a tree is shown), so that questions
/// are answered in constant time with any number of groups.
class DuplicateTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Column : int { Checkbox, NameColumn, allSelectNum, FileSize, ModifyDate, count };

  using QAbstractItemModel::QAbstractItemModel;

  /// Shows the children of `root`, or nothing for null.
  void reloadData(const SimpleTreeNode* root);

  // Around a removal of any number of nodes from the tree. One relayout each, however many went.
  void nodesWillLeave();
  void nodesHaveLeft();

  /// A group's ticks, or those of its leaves, changed.
  void groupChanged(const SimpleTreeNode* group);
  /// Any ticks changed. The view is to draw itself anew: leaves are not listed one by one.
  void allTicksChanged();

  SimpleTreeNode* node(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void countRows();
  int rowOf(const SimpleTreeNode* node) const;
  QString text(const SimpleTreeNode& node, int column) const;
  QString imageName(const SimpleTreeNode& node, int column) const;

  const SimpleTreeNode* root_ = nullptr;
  mutable std::unordered_map<const SimpleTreeNode*, int>
      rows_;  ///< groups; corrected when asked for
};

/// The image for a group's type class, or for a copy in it.
const char* duplicateImage(const SimpleTreeNode& node);

/// A copy's date in the user's short form.
QString modificationDateText(const SimpleNodeData& data);

}  // namespace brisko
