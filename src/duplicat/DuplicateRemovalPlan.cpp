#include "DuplicateRemovalPlan.h"

#include "DuplicateResult.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace brisko {
namespace {

DuplicateCopy copyOf(const SimpleNodeData& data) {
  return {data.name(), data.identity(), data.fileSize, data.isBundle, false};
}

}  // namespace

// What is not ticked stands first, because it stays. What is ticked follows from the last to the
// first: those that are gone are then never in the way of one that is not.
void DuplicateRemovalPlan::addGroup(const SimpleTreeNode& node) {
  Group& group = groups_.emplace_back();
  std::copy_if(node.children.begin(), node.children.end(), std::back_inserter(group.leaves),
               [](const SimpleTreeNode* leaf) { return leaf->nodeData.selectNum == 0; });
  group.leaves.resize(node.numberOfChildren());
}

DuplicateRemovalPlan DuplicateRemovalPlan::of(const SimpleTreeNode& root) {
  DuplicateRemovalPlan plan;
  std::unordered_map<const SimpleTreeNode*, std::size_t> known;
  for (SimpleTreeNode* leaf : tickedLeaves(root)) {
    const auto [at, isNew] = known.try_emplace(leaf->nodeParent, plan.groups_.size());
    if (isNew) plan.addGroup(*leaf->nodeParent);
    Group& group = plan.groups_[at->second];
    const std::size_t copy = group.leaves.size() - ++group.stepsLeft;
    group.leaves[copy] = leaf;
    plan.steps_.push_back({leaf, at->second, copy});
  }
  return plan;
}

DuplicateRemoval DuplicateRemovalPlan::remove(std::size_t step, const std::atomic<bool>& stop) {
  const Step& at = steps_[step];
  Group& group = groups_[at.group];
  if (group.copies.empty()) {
    std::transform(group.leaves.begin(), group.leaves.end(), std::back_inserter(group.copies),
                   [](const SimpleTreeNode* leaf) { return copyOf(leaf->nodeData); });
  }
  DuplicateCopy& copy = group.copies[at.copy];
  DuplicateRemoval removal = removeDuplicate(copy, group.copies, stop);
  copy.isGone = removal.report.removed();
  if (--group.stepsLeft == 0) group = {};
  return removal;
}

}  // namespace brisko
