#pragma once

#include "DuplicateCopies.h"
#include "SimpleTreeNode.h"

#include <atomic>
#include <cstddef>
#include <vector>

namespace brisko {

/// Which leaves a removal takes, in which order, and what else there is in their groups.
///
/// Made and used on the removal's thread, because with a hundred thousand groups it takes a while.
/// Of the nodes it reads what stays the same until the tree goes: names, identities, sizes of
/// leaves. Lists of children and ticks are read by `of` only.
class DuplicateRemovalPlan {
 public:
  /// Of all ticked leaves below `root`, in the order of ticking.
  static DuplicateRemovalPlan of(const SimpleTreeNode& root);

  std::size_t count() const { return steps_.size(); }
  SimpleTreeNode* leaf(std::size_t step) const { return steps_[step].leaf; }

  /// Removes the step's leaf as `removeDuplicate` does. Steps are taken in their order.
  DuplicateRemoval remove(std::size_t step, const std::atomic<bool>& stop);

 private:
  struct Step {
    SimpleTreeNode* leaf;
    std::size_t group;
    std::size_t copy;  ///< the leaf's place among its group's
  };
  struct Group {
    SimpleTreeNode::Children leaves;
    std::vector<DuplicateCopy> copies;  ///< the same, from its first step to its last
    std::size_t stepsLeft = 0;
  };

  void addGroup(const SimpleTreeNode& node);

  std::vector<Step> steps_;
  std::vector<Group> groups_;
};

}  // namespace brisko
