#pragma once

#include "SimpleNodeData.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brisko {

/// What nodes are sorted by.
enum class SortKey : int { name, size, date };

/// A node of the two-level tree root, groups, copies. Belongs to one thread at a time: the
/// search's, then the main thread.
///
/// Groups stand under two roots, the one with all groups and that of their type class; `nodeParent`
/// is the first. Nodes are owned by their tree and not by each other, so one that was taken out of
/// the outline stays valid until the tree goes.
class SimpleTreeNode {
 public:
  using Children = std::vector<SimpleTreeNode*>;

  /// Children, if any, get this node as their parent.
  explicit SimpleTreeNode(const SimpleNodeData& data, SimpleTreeNode* parent = nullptr,
                          Children children = {});
  SimpleTreeNode(const SimpleTreeNode&) = delete;
  SimpleTreeNode& operator=(const SimpleTreeNode&) = delete;

  SimpleNodeData nodeData;
  SimpleTreeNode* nodeParent = nullptr;
  Children children;
  std::uint32_t rowHint = 0;  ///< group: the row an outline last saw it in, to look there first

  std::size_t numberOfChildren() const { return children.size(); }
  void insertChild(SimpleTreeNode* child, std::size_t index);
  /// Nothing when it is no child of this node.
  void removeChild(SimpleTreeNode* child);
  void removeFromParent();

  /// Group: "ticked/all" of its leaves.
  std::string showSelectNumStr() const;
  /// The name of the row's image: that of its group's type, or of bundles.
  const char* iconRep() const;

  // Each sorts the children and then theirs. What compares equal keeps its order.
  void acendingSortName() { take(sorted(SortKey::name, false)); }
  void acendingSortSize() { take(sorted(SortKey::size, false)); }
  void acendingSortDate() { take(sorted(SortKey::date, false)); }
  void decendingSortName() { take(sorted(SortKey::name, true)); }
  void decendingSortSize() { take(sorted(SortKey::size, true)); }
  void decendingSortDate() { take(sorted(SortKey::date, true)); }

  /// How the children of a node, and theirs, stand when they are sorted.
  struct Order {
    Children children;
    Children changed;  ///< those children whose own ones stand in another order than now
    Children below;    ///< all children of the changed ones, one after the other's
  };
  /// Finds an order and changes nothing. Any thread, while nobody changes lists of children, nor
  /// what is compared.
  Order sorted(SortKey key, bool descending) const;
  /// Puts an order into effect for which the same children are still there.
  void take(const Order& order);
};

/// The tree of one search's results, and the owner of its nodes.
class DuplicateTree {
 public:
  DuplicateTree();

  SimpleTreeNode& root() { return *root_; }
  /// A node of this tree that no one has as a child yet.
  SimpleTreeNode* make(const SimpleNodeData& data, SimpleTreeNode::Children children = {});
  /// A copy of `name` that stays as long as the tree, for the data of a node.
  const char* keep(std::string_view name) { return names_.keep(name); }
  /// Makes the folders and names that nodes' data point at stay as long.
  void keep(std::vector<CandidateArena> paths) { paths_ = std::move(paths); }

 private:
  CandidateArena names_;
  std::vector<CandidateArena> paths_;
  std::deque<SimpleTreeNode> nodes_;
  SimpleTreeNode* root_;
};

}  // namespace brisko
