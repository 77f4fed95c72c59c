#include "Dispatch.h"
#include "DuplicateModel.h"

namespace brisko {
namespace {

// In one turn: about half a millisecond's work.
constexpr std::size_t kLeavesAtOnce = 2000;

}  // namespace

// Group after group is ticked or unticked, over as many turns as it takes.
struct DuplicateModel::Ticking {
  const SimpleTreeNode::Children* groups;
  bool on;
  std::size_t next;       ///< the group where it goes on
  DuplicateModel* model;  ///< null when it was given up
};

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
  if (!isCanClick_ || isTicking()) return;
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

void DuplicateModel::setAllSelectOrNoSelect(bool on) {
  if (!isCanClick_ || isTicking() || treeData() == nullptr) return;
  tickGroups(*treeOfSegment(on ? segment_ : 0), on);
}

void DuplicateModel::tickGroups(const SimpleTreeNode& root, bool on) {
  ticking_ = std::make_shared<Ticking>(Ticking{&root.children, on, 0, this});
  tickFurther();
}

void DuplicateModel::tickFurther() {
  const auto& groups = *ticking_->groups;
  std::size_t leaves = 0;
  while (ticking_->next < groups.size() && leaves < kLeavesAtOnce) {
    SimpleTreeNode& group = *groups[ticking_->next++];
    leaves += group.numberOfChildren();
    if (ticking_->on) {
      tickAllButLast(group);
    } else if (group.nodeData.tickNumber > 0) {
      untickGroup(group);
    }
  }
  if (ticking_->next < groups.size()) {
    Dispatch::mainAsync([ticking = ticking_] {
      if (ticking->model != nullptr) ticking->model->tickFurther();
    });
    return;
  }
  endTicking();
  tell(&DuplicateModelListener::allTicksChanged);
  tell(&DuplicateModelListener::countsChanged);
  takeFoundOrder();
}

void DuplicateModel::endTicking() {
  if (!isTicking()) return;
  ticking_->model = nullptr;
  ticking_.reset();
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
