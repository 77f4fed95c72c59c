#pragma once

#include "SimpleTreeNode.h"

#include <QAbstractItemModel>

namespace brisko {

/// What an outline row gives beside the roles of `EntryRole`.
enum DuplicateRole : int {
  KeptRole = Qt::UserRole + 16,  ///< leaf: the copy of its group that ticking the group keeps
  HardLinkRole,                  ///< leaf: the same file as another leaf of its group
};

/// The shown tree as an item model: groups, and their copies below them.
///
/// Nothing is copied and nothing is prepared: an index holds its node, texts are made when a row is
/// drawn, and each group remembers the row it was last seen in. So a tree of any size is shown at
/// the cost of the view's own layout.
class DuplicateTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Column : int { Checkbox, NameColumn, allSelectNum, FileSize, ModifyDate, count };

  using QAbstractItemModel::QAbstractItemModel;

  /// Shows the children of `root`, or nothing for null.
  void reloadData(const SimpleTreeNode* root);

  // Around a change of the tree's order, or the removal of any number of nodes. One relayout each,
  // however many moved or went; what is highlighted or open stays so.
  void nodesWillMove();
  void nodesHaveMoved();

  /// A group's ticks, or those of its leaves, changed.
  void groupChanged(const SimpleTreeNode* group);
  /// The ticks of this one row changed.
  void rowChanged(const QModelIndex& row);

  SimpleTreeNode* node(const QModelIndex& index) const;
  /// The row of a group of the shown tree; none for others.
  QModelIndex indexOf(SimpleTreeNode* group) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  int rowOf(const SimpleTreeNode* node) const;
  static QString text(const SimpleTreeNode& node, int column);
  static QString imageName(const SimpleTreeNode& node, int column);

  const SimpleTreeNode* root_ = nullptr;
};

/// A copy's date in the user's short form.
QString modificationDateText(const SimpleNodeData& data);

}  // namespace brisko
