#pragma once

#include "DuplicateTypes.h"
#include "SimpleTreeNode.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace brisko {

/// What one search found, shared out by type: the tree of all groups, one more root for each type,
/// and what each of these seven holds in all.
///
/// It is made on the search's thread; from then on only the main thread changes it. A sort or a
/// removal in the background keeps it alive and reads of it what nobody changes meanwhile.
class DuplicateResult {
 public:
  /// Builds the types' trees. Called once; without it nothing was found.
  void constructSubtrees(std::unique_ptr<DuplicateTree> tree);

  /// The root of a segment, 0 to 6; null when nothing was found.
  SimpleTreeNode* root(std::size_t segment) const { return roots_[segment]; }
  std::uint64_t size(std::size_t segment) const { return sizes_[segment]; }  ///< bytes
  std::size_t leaves(std::size_t segment) const { return leaves_[segment]; }

  // Sorting. It holds for every segment, so that changing the segment changes no order.

  struct Order {
    SimpleTreeNode::Order all;
    std::array<SimpleTreeNode::Children, kDuplicateSegments> ofType;  ///< the first is empty
  };
  void sort(SortKey key, bool descending);
  /// Finds an order and changes nothing; any thread.
  Order sorted(SortKey key, bool descending) const;
  void take(Order& order);

  // Removing.

  /// Marks a leaf as gone and takes it out of its group's size and of what the segments hold.
  void countOut(SimpleTreeNode& leaf);
  /// Takes the leaves that are marked as gone out of these groups, and of the groups those that
  /// are.
  void dropGone(const std::vector<SimpleTreeNode*>& groups);

 private:
  using Roots = std::array<SimpleTreeNode::Children, kDuplicateSegments>;

  void getTypeFile(int fileType);
  static Roots shareOut(const SimpleTreeNode::Children& groups);

  std::unique_ptr<DuplicateTree> tree_;
  std::array<SimpleTreeNode*, kDuplicateSegments> roots_{};
  // Per segment; the first is the sum.
  std::array<std::uint64_t, kDuplicateSegments> sizes_{};
  std::array<std::size_t, kDuplicateSegments> leaves_{};
};

/// The segment that shows this group beside the first.
inline std::size_t segmentOf(const SimpleTreeNode& group) {
  return duplicateSegment(group.nodeData.fileType);
}

/// The ticked leaves below `root` in the order of ticking.
SimpleTreeNode::Children tickedLeaves(const SimpleTreeNode& root);

}  // namespace brisko
