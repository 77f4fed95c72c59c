#include "DuplicateModelRemoval.h"

#include "Dispatch.h"
#include "DuplicateRemovalPlan.h"

#include <algorithm>
#include <chrono>
#include <unordered_map>
#include <utility>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;

// The outline takes what was removed in batches: one update per file would keep the window busy.
constexpr std::chrono::milliseconds kBatch{50};

}  // namespace

void DuplicateModel::doRemoveDuplicateAction() {
  if (!removeButtonEnabled()) return;
  waitForSorting();
  removal_ = std::make_shared<Removal>();
  removal_->result = result_;
  removal_->model = this;
  removalTotal_ = selectedCount();
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
  auto plan = DuplicateRemovalPlan::of(*removal->result->root(0));
  auto lastTold = Clock::now();
  for (std::size_t step = 0; step < plan.count() && !removal->stop; ++step) {
    DuplicateRemoval outcome = plan.remove(step, removal->stop);
    SimpleTreeNode* leaf = plan.leaf(step);
    {
      std::lock_guard lock(removal->mutex);
      removal->outcomes.push_back({leaf, leaf->nodeData.name(), std::move(outcome)});
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
  {
    std::lock_guard lock(removal_->mutex);
    outcomes.swap(removal_->outcomes);
  }
  if (outcomes.empty()) return;
  const std::string last = outcomes.back().path;
  tell(&DuplicateModelListener::treeWillChange);
  std::unordered_map<SimpleTreeNode*, std::size_t> leavesLeft;
  for (Removal::Outcome& outcome : outcomes) {
    RemovalReport& report = outcome.removal.report;
    freedBytes_ += report.freedBytes;
    if (report.removed()) {
      removedPaths_.push_back(std::move(outcome.path));
      SimpleTreeNode* group = outcome.leaf->nodeParent;
      const auto left = leavesLeft.try_emplace(group, group->numberOfChildren()).first;
      refreshOutlineView(*outcome.leaf, left->second);
    } else if (report.outcome != RemovalOutcome::cancelled || !removal_->stop) {
      failures_.push_back(
          {std::move(outcome.path), std::move(report.reason), outcome.removal.wasTried});
    }
  }
  std::vector<SimpleTreeNode*> changed;
  for (const auto& [group, left] : leavesLeft)
    changed.push_back(group);
  result_->dropGone(changed);
  tell(&DuplicateModelListener::treeDidChange);
  tell(&DuplicateModelListener::countsChanged);
  if (listener_ != nullptr) {
    listener_->removalProgressed(last, removedPaths_.size() + failures_.size());
  }
}

// The leaf leaves its group, and a group with nothing left to compare leaves the outline.
void DuplicateModel::refreshOutlineView(SimpleTreeNode& leaf, std::size_t& leavesLeft) {
  SimpleTreeNode& group = *leaf.nodeParent;
  const bool wasPartlyTicked = group.nodeData.selectNum == 2;
  setTick(leaf, false);
  result_->countOut(leaf);
  --leavesLeft;
  if (leavesLeft == 0 || (wasPartlyTicked && leavesLeft == 1)) {
    deleteParentNode(group);
  } else {
    recomputeGroup(group, leavesLeft);
  }
}

void DuplicateModel::deleteParentNode(SimpleTreeNode& group) {
  group.nodeData.isGone = true;
  for (SimpleTreeNode* leaf : group.children) {
    if (leaf->nodeData.isGone) continue;
    setTick(*leaf, false);
    result_->countOut(*leaf);
  }
}

std::string DuplicateModel::removeWarning() const {
  if (removalTotal_ == 0 || isRemoving() || isClickStopRemove_ || selectedCount() == 0) return {};
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
  bSearchFinished_ = true;
  isCanClick_ = true;
  if (isClickStopRemove_) setAllSelectOrNoSelect(false);
  tell(&DuplicateModelListener::allTicksChanged);
  tell(&DuplicateModelListener::countsChanged);
  tell(&DuplicateModelListener::pageChanged);
  tell(&DuplicateModelListener::removalEnded);
}

}  // namespace brisko
