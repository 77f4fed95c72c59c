#pragma once

#include "SimpleNodeData.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// A node of the two-level tree root, groups, copies. Belongs to the main thread.
///
/// Groups stand under two roots, the one with all groups and that of their type class; `nodeParent`
/// is the first.
class SimpleTreeNode {
 public:
  using Pointer = std::shared_ptr<SimpleTreeNode>;
  using Children = std::vector<Pointer>;

  /// Children, if any, get this node as their parent.
  explicit SimpleTreeNode(SimpleNodeData data, SimpleTreeNode* parent = nullptr,
                          Children children = {});

  SimpleNodeData nodeData;
  SimpleTreeNode* nodeParent = nullptr;
  Children children;

  std::size_t numberOfChildren() const { return children.size(); }
  void insertChild(const Pointer& child, std::size_t index);
  /// Nothing when it is no child of this node.
  void removeChild(const SimpleTreeNode* child);
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

}  // namespace brisko
