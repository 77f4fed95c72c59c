#pragma once

#include "SimpleNodeData.h"

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace brisko {

/// A node of the two-level tree root, groups, copies. Belongs to the main thread.
///
/// Groups stand under two roots, the one with all groups and that of their type class; `nodeParent`
/// is the first. Nodes are owned by their tree and not by each other, so one that was taken out of
/// the outline stays valid until the tree goes.
class SimpleTreeNode {
 public:
  using Children = std::vector<SimpleTreeNode*>;

  /// Children, if any, get this node as their parent.
  explicit SimpleTreeNode(SimpleNodeData data, SimpleTreeNode* parent = nullptr,
                          Children children = {});
  SimpleTreeNode(const SimpleTreeNode&) = delete;
  SimpleTreeNode& operator=(const SimpleTreeNode&) = delete;

  SimpleNodeData nodeData;
  SimpleTreeNode* nodeParent = nullptr;
  Children children;

  std::size_t numberOfChildren() const { return children.size(); }
  void insertChild(SimpleTreeNode* child, std::size_t index);
  /// Nothing when it is no child of this node.
  void removeChild(SimpleTreeNode* child);
  void removeFromParent();

  /// Group: "ticked/all" of its leaves.
  std::string showSelectNumStr() const;

  // Each sorts the children and then theirs. What compares equal keeps its order.
  void acendingSortName() { sort(&SimpleNodeData::compareName); }
  void acendingSortSize() { sort(&SimpleNodeData::compareSize); }
  void acendingSortDate() { sort(&SimpleNodeData::compareDate); }
  void decendingSortName() { sort(&SimpleNodeData::compareNameR); }
  void decendingSortSize() { sort(&SimpleNodeData::compareSizeR); }
  void decendingSortDate() { sort(&SimpleNodeData::compareDateR); }

 private:
  void sort(int (SimpleNodeData::*compare)(const SimpleNodeData&) const);
};

/// The tree of one search's results, and the owner of its nodes.
class DuplicateTree {
 public:
  DuplicateTree();

  SimpleTreeNode& root() { return *root_; }
  /// A node of this tree that no one has as a child yet.
  SimpleTreeNode* make(SimpleNodeData data, SimpleTreeNode::Children children = {});

 private:
  std::deque<SimpleTreeNode> nodes_;
  SimpleTreeNode* root_;
};

}  // namespace brisko
