#include "DuplicateModel.h"

namespace brisko {
// Brings the counters of the leaf's group, type and of all up to date; not the group's state.
void DuplicateModel::setTick(SimpleTreeNode& leaf, bool ticked) {
  SimpleNodeData& data = leaf.nodeData;
  if ((data.selectNum == 1) == ticked) return;
  data.selectNum = ticked ? 1 : 0;
  SimpleTreeNode& group = *leaf.nodeParent;
  if (ticked) {
    if (tickedLeaves_[0] == 0) nextTick_ = 1;
    data.tickNumber = nextTick_++;
    ++group.nodeData.tickNumber;
    ++tickedLeaves_[0];
    ++tickedLeaves_[segmentOf(group)];
    tickedSize_ += data.fileSize;
  } else {
    data.tickNumber = 0;
    --group.nodeData.tickNumber;
    --tickedLeaves_[0];
    --tickedLeaves_[segmentOf(group)];
    tickedSize_ -= data.fileSize;
  }
}

// `leaves` are those that the group has left.
void DuplicateModel::recomputeGroup(SimpleTreeNode& group, std::size_t leaves) {
  const std::size_t ticked = group.nodeData.tickNumber;
  group.nodeData.selectNum = ticked == 0 ? 0 : ticked == leaves ? 1 : 2;
}

void DuplicateModel::toggle(SimpleTreeNode& node) {
  if (!isCanClick_) return;
  if (node.nodeData.isLeaf && node.nodeData.selectNum == 1) {
    setTick(node, false);
    recomputeGroup(*node.nodeParent, node.nodeParent->numberOfChildren());
    tellGroup(*node.nodeParent);
  } else if (node.nodeData.isLeaf) {
    setSelectState(node);
  } else {
    node.nodeData.selectNum == 0 ? tickAllButLast(node) : untickGroup(node);
    tellGroup(node);
  }
  tell(&DuplicateModelListener::countsChanged);
}

void DuplicateModel::setSelectState(SimpleTreeNode& leaf) {
  SimpleTreeNode& group = *leaf.nodeParent;
  const bool isLast = group.nodeData.tickNumber + 1 >= group.numberOfChildren();
  if (isLast && !(askDeleteAll_ && askDeleteAll_())) return;
  setTick(leaf, true);
  recomputeGroup(group, group.numberOfChildren());
  tellGroup(group);
}

// The last leaf is the copy that is kept.
void DuplicateModel::tickAllButLast(SimpleTreeNode& group) {
  for (SimpleTreeNode* leaf : group.children)
    setTick(*leaf, leaf != group.children.back());
  recomputeGroup(group, group.numberOfChildren());
}

void DuplicateModel::untickGroup(SimpleTreeNode& group) {
  for (SimpleTreeNode* leaf : group.children)
    setTick(*leaf, false);
  recomputeGroup(group, group.numberOfChildren());
}

void DuplicateModel::untickAll() {
  if (selectedCount() == 0) return;
  for (SimpleTreeNode* group : treeOfSegment(0)->children) {
    if (group->nodeData.tickNumber > 0) untickGroup(*group);
  }
}

void DuplicateModel::setAllSelectOrNoSelect(bool on) {
  if (!isCanClick_ || treeData() == nullptr) return;
  if (on) {
    for (SimpleTreeNode* group : treeData()->children)
      tickAllButLast(*group);
  } else {
    untickAll();
  }
  tell(&DuplicateModelListener::allTicksChanged);
  tell(&DuplicateModelListener::countsChanged);
}

const char* DuplicateModel::boxImage(const SimpleNodeData& data) {
  if (data.selectNum == 2) return "halfsel";
  return data.selectNum == 1 ? "sel" : "unsel";
}

const char* DuplicateModel::allSelectImage() const {
  const std::size_t ticked = tickedLeaves_[segment_];
  if (ticked == 0) return "unsel";
  return ticked == leavesOfSegment(segment_) ? "sel" : "halfsel";
}

}  // namespace brisko
