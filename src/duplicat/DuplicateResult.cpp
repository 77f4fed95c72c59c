#include "DuplicateResult.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace brisko {

void DuplicateResult::constructSubtrees(std::unique_ptr<DuplicateTree> tree) {
  tree_ = std::move(tree);
  roots_[0] = &tree_->root();
  for (SimpleTreeNode* group : roots_[0]->children) {
    group->nodeData.fileType =
        static_cast<std::int8_t>(duplicateClass(group->nodeData.extendName()));
  }
  for (int fileType = 1; fileType <= kOtherTypes; ++fileType)
    getTypeFile(fileType);
  for (std::size_t segment = 1; segment < kDuplicateSegments; ++segment) {
    sizes_[0] += sizes_[segment];
    leaves_[0] += leaves_[segment];
  }
}

// Takes the groups of one class that no class has taken before.
void DuplicateResult::getTypeFile(int fileType) {
  const std::size_t segment = duplicateSegment(fileType);
  roots_[segment] = tree_->make(SimpleNodeData::groupDataWithName("Root"));
  for (SimpleTreeNode* group : roots_[0]->children) {
    if (group->nodeData.Mark || group->nodeData.fileType != fileType) continue;
    group->nodeData.Mark = true;
    roots_[segment]->children.push_back(group);
    sizes_[segment] += group->nodeData.fileSize;
    leaves_[segment] += group->numberOfChildren();
  }
}

// Sorting.

DuplicateResult::Roots DuplicateResult::shareOut(const SimpleTreeNode::Children& groups) {
  Roots roots;
  for (SimpleTreeNode* group : groups)
    roots[segmentOf(*group)].push_back(group);
  return roots;
}

void DuplicateResult::sort(SortKey key, bool descending) {
  SimpleTreeNode& root = *roots_[0];
  switch (key) {
    case SortKey::name:
      descending ? root.decendingSortName() : root.acendingSortName();
      break;
    case SortKey::size:
      descending ? root.decendingSortSize() : root.acendingSortSize();
      break;
    case SortKey::date:
      descending ? root.decendingSortDate() : root.acendingSortDate();
      break;
  }
  Roots ofType = shareOut(root.children);
  for (std::size_t segment = 1; segment < kDuplicateSegments; ++segment)
    roots_[segment]->children.swap(ofType[segment]);
}

DuplicateResult::Order DuplicateResult::sorted(SortKey key, bool descending) const {
  Order order;
  order.all = roots_[0]->sorted(key, descending);
  order.ofType = shareOut(order.all.children);
  return order;
}

void DuplicateResult::take(Order& order) {
  roots_[0]->take(order.all);
  for (std::size_t segment = 1; segment < kDuplicateSegments; ++segment)
    roots_[segment]->children.swap(order.ofType[segment]);
}

// Removing.

void DuplicateResult::countOut(SimpleTreeNode& leaf) {
  leaf.nodeData.isGone = true;
  SimpleTreeNode& group = *leaf.nodeParent;
  group.nodeData.fileSize -= leaf.nodeData.fileSize;
  for (const std::size_t segment : {std::size_t{0}, segmentOf(group)}) {
    sizes_[segment] -= leaf.nodeData.fileSize;
    --leaves_[segment];
  }
}

void DuplicateResult::dropGone(const std::vector<SimpleTreeNode*>& groups) {
  const auto isGone = [](const SimpleTreeNode* node) { return node->nodeData.isGone; };
  std::unordered_set<SimpleTreeNode*> gone;
  for (SimpleTreeNode* group : groups) {
    std::erase_if(group->children, isGone);
    if (isGone(group)) gone.insert(group);
  }
  // By their addresses: to go to each of a hundred thousand groups takes most of a frame.
  constexpr std::size_t kFew = 4;
  if (gone.size() <= kFew) {
    for (SimpleTreeNode* group : gone) {
      roots_[segmentOf(*group)]->removeChild(group);
      group->removeFromParent();
    }
    return;
  }
  for (SimpleTreeNode* root : roots_)
    std::erase_if(root->children, [&](SimpleTreeNode* group) { return gone.contains(group); });
}

SimpleTreeNode::Children tickedLeaves(const SimpleTreeNode& root) {
  SimpleTreeNode::Children ticked;
  for (const SimpleTreeNode* group : root.children) {
    if (group->nodeData.tickNumber == 0) continue;
    std::copy_if(group->children.begin(), group->children.end(), std::back_inserter(ticked),
                 [](const SimpleTreeNode* leaf) { return leaf->nodeData.selectNum == 1; });
  }
  std::sort(ticked.begin(), ticked.end(), [](const SimpleTreeNode* a, const SimpleTreeNode* b) {
    return a->nodeData.tickNumber < b->nodeData.tickNumber;
  });
  return ticked;
}

}  // namespace brisko
