#include "DuplicateModelRemoval.h"

#include "Dispatch.h"

#include <algorithm>
#include <chrono>
#include <unordered_map>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;

// The outline takes what was removed in batches: one update per file would keep the window busy.
constexpr std::chrono::milliseconds kBatch{50};

DuplicateCopy copyOf(const SimpleNodeData& data) {
  return {data.name(), data.identity(), data.fileSize, data.isBundle, false};
}

std::size_t segmentOf(const SimpleTreeNode& group) {
  return kDuplicateClassSegments[static_cast<std::size_t>(group.nodeData.fileType)];
}

}  // namespace

std::shared_ptr<DuplicateModel::Removal> DuplicateModel::planRemoval() const {
  auto removal = std::make_shared<Removal>();
  std::unordered_map<const SimpleTreeNode*, std::size_t> groups;
  for (SimpleTreeNode* leaf : allSelectNumArr()) {
    const auto [known, isNew] = groups.try_emplace(leaf->nodeParent, groups.size());
    if (isNew) {
      auto& copies = removal->groups.emplace_back();
      for (const SimpleTreeNode* each : leaf->nodeParent->children) {
        if (each->nodeData.selectNum == 0) copies.push_back(copyOf(each->nodeData));
      }
    }
    auto& copies = removal->groups[known->second];
    removal->items.push_back({leaf, known->second, copies.size()});
    copies.push_back(copyOf(leaf->nodeData));
  }
  return removal;
}

void DuplicateModel::doRemoveDuplicateAction() {
  if (!removeButtonEnabled()) return;
  removal_ = planRemoval();
  removal_->model = this;
  removalTotal_ = removal_->items.size();
  isCanClick_ = false;
  isClickStopRemove_ = false;
  bSearchFinished_ = false;
  removedPaths_.clear();
  failures_.clear();
  freedBytes_ = 0;
  twRemoveDupFiles_ =
      ThreadWorker::workOn([removal = removal_](const ThreadWorker&) { deleteDupFiles(removal); },
                           [this] { deleteFinished(); });
  tell(&DuplicateModelListener::pageChanged);
}

void DuplicateModel::stopRemoveBtnClicked() {
  if (!isRemoving()) return;
  isClickStopRemove_ = true;
  removal_->stop = true;
}

void DuplicateModel::deleteDupFiles(const std::shared_ptr<Removal>& removal) {
  auto lastTold = Clock::now();
  for (const Removal::Item& item : removal->items) {
    if (removal->stop) return;
    auto& group = removal->groups[item.group];
    DuplicateCopy& copy = group[item.copy];
    DuplicateRemoval outcome = removeDuplicate(copy, group, removal->stop);
    copy.isGone = outcome.report.removed();
    {
      std::lock_guard lock(removal->mutex);
      removal->outcomes.push_back({item.leaf, std::move(outcome)});
      removal->pathAtWork = copy.path;
    }
    if (Clock::now() - lastTold < kBatch) continue;
    lastTold = Clock::now();
    Dispatch::mainAsync([removal] {
      if (removal->model != nullptr) removal->model->takeRemoved();
    });
  }
}

void DuplicateModel::takeRemoved() {
  std::vector<Removal::Outcome> outcomes;
  std::string path;
  {
    std::lock_guard lock(removal_->mutex);
    outcomes.swap(removal_->outcomes);
    path = removal_->pathAtWork;
  }
  if (outcomes.empty()) return;
  tell(&DuplicateModelListener::treeWillChange);
  LeavesLeft leavesLeft;
  for (Removal::Outcome& outcome : outcomes) {
    RemovalReport& report = outcome.removal.report;
    freedBytes_ += report.freedBytes;
    std::string name = outcome.leaf->nodeData.name();
    if (report.removed()) {
      removedPaths_.push_back(std::move(name));
      refreshOutlineView(*outcome.leaf, leavesLeft);
    } else if (report.outcome != RemovalOutcome::cancelled || !removal_->stop) {
      failures_.push_back({std::move(name), std::move(report.reason), outcome.removal.wasTried});
    }
  }
  compact(leavesLeft);
  tell(&DuplicateModelListener::treeDidChange);
  tell(&DuplicateModelListener::countsChanged);
  if (listener_ != nullptr) {
    listener_->removalProgressed(path, removedPaths_.size() + failures_.size());
  }
}

void DuplicateModel::countOut(SimpleTreeNode& leaf) {
  setTick(leaf, false);
  leaf.nodeData.isGone = true;
  SimpleTreeNode& group = *leaf.nodeParent;
  group.nodeData.fileSize -= leaf.nodeData.fileSize;
  for (const std::size_t segment : {std::size_t{0}, segmentOf(group)}) {
    sizes_[segment] -= leaf.nodeData.fileSize;
    --leaves_[segment];
  }
}

// A group that has no leaf any more, or of a partly ticked one a single leaf, goes too.
void DuplicateModel::refreshOutlineView(SimpleTreeNode& leaf, LeavesLeft& leavesLeft) {
  SimpleTreeNode& group = *leaf.nodeParent;
  std::size_t& left = leavesLeft.try_emplace(&group, group.numberOfChildren()).first->second;
  const int stateBefore = group.nodeData.selectNum;
  countOut(leaf);
  --left;
  const std::size_t ticked = group.nodeData.tickNumber;
  group.nodeData.selectNum = ticked == 0 ? 0 : ticked == left ? 1 : 2;
  if (left == 0 || (stateBefore == 2 && left == 1)) group.nodeData.isGone = true;
}

void DuplicateModel::compact(const LeavesLeft& leavesLeft) {
  const auto isGone = [](const SimpleTreeNode* node) { return node->nodeData.isGone; };
  bool isAnyGroupGone = false;
  for (const auto& [group, left] : leavesLeft) {
    if (group->nodeData.isGone) {
      isAnyGroupGone = true;
      for (SimpleTreeNode* leaf : group->children) {
        if (!leaf->nodeData.isGone) countOut(*leaf);
      }
    }
    std::erase_if(group->children, isGone);
  }
  if (!isAnyGroupGone) return;
  for (SimpleTreeNode* root : roots_)
    std::erase_if(root->children, isGone);
}

std::string DuplicateModel::removeWarning() const {
  if (removalTotal_ == 0 || isRemoving() || selectedCount() == 0) return {};
  const bool anyFailed = std::any_of(failures_.begin(), failures_.end(),
                                     [](const DuplicateFailure& each) { return each.wasTried; });
  return anyFailed ? "Some files that require admin access can't be removed!"
                   : "Some files were left alone, because it was not safe to remove them";
}

void DuplicateModel::deleteFinished() {
  twRemoveDupFiles_.reset();
  takeRemoved();
  removal_->model = nullptr;
  removal_.reset();
  if (isClickStopRemove_) untickAll();
  bSearchFinished_ = true;
  isCanClick_ = true;
  tell(&DuplicateModelListener::allTicksChanged);
  tell(&DuplicateModelListener::countsChanged);
  tell(&DuplicateModelListener::pageChanged);
  tell(&DuplicateModelListener::removalEnded);
}

}  // namespace brisko
