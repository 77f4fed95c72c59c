#pragma once

#include "CheckOutline.h"

#include <cstddef>
#include <unordered_set>

namespace brisko {

class DuplicateTreeModel;
class ImageCheckBox;
class SimpleTreeNode;
enum class DuplicateColumn : int;

/// The outline of groups and their copies, told of changes in terms of nodes. What the user opened
/// and highlighted stays so when the tree is sorted, thinned out or filtered by type.
class DuplicateOutline : public CheckOutline {
  Q_OBJECT

 public:
  explicit DuplicateOutline(QWidget* parent = nullptr);

  /// Shows the groups below `root`, those of a segment; null for none, which also forgets what was
  /// opened.
  void showTree(const SimpleTreeNode* root, std::size_t segment);
  /// Opens the first group and highlights it.
  void openFirst();

  // Around a change of the tree's order, or the removal of any number of nodes.
  void nodesWillMove();
  void nodesHaveMoved();

  void groupChanged(SimpleTreeNode* group);
  void allTicksChanged();
  /// The mark of the column by which the tree is sorted, or none.
  void showSortMark(DuplicateColumn column, bool descending);

  /// The highlighted node; null for none.
  SimpleTreeNode* currentNode() const;
  ImageCheckBox* selectAllBox() const;

 Q_SIGNALS:
  /// The user asked for the box of a node to change.
  void nodeToggleRequested(SimpleTreeNode* node);
  /// Another node is highlighted, or none, or what it is has changed.
  void currentNodeChanged(const SimpleTreeNode* node);
  void didClickTableColumn(DuplicateColumn column);
  /// The user wants to see the highlighted copy where it lies: a double click, or Return.
  void revealRequested();

 protected:
  void openRow(const QModelIndex& row) override;

 private:
  void setUpColumns();
  bool isShown(const SimpleTreeNode& group) const;
  void openAgain();

  DuplicateTreeModel* tree_;
  std::size_t segment_ = 0;
  std::unordered_set<SimpleTreeNode*> opened_;  ///< groups that the user left open, of any type
};

}  // namespace brisko
