// Sorting: what takes longer than a frame is found in the background and put in place at once.

#include "BackgroundDrop.h"
#include "DuplicateModel.h"

#include <atomic>

namespace brisko {
namespace {

// About a millisecond's work.
constexpr std::size_t kLeavesSortedAtOnce = 2000;

SortKey keyOf(DuplicateColumn column) {
  switch (column) {
    case DuplicateColumn::FileSize:
      return SortKey::size;
    case DuplicateColumn::ModifyDate:
      return SortKey::date;
    default:
      return SortKey::name;
  }
}

}  // namespace

// Shared with the background, which reads the result and fills in the order.
struct DuplicateModel::Sorting {
  std::shared_ptr<DuplicateResult> result;
  SortKey key;
  bool descending;
  DuplicateResult::Order order;
  std::atomic<bool> isFound = false;
  DuplicateModel* model;  ///< null when nobody waits for it any more; main thread only
};

void DuplicateModel::didClickTableColumn(DuplicateColumn column) {
  if (treeData() == nullptr || column == DuplicateColumn::none || isRemoving()) return;
  sortDescending_ = column == lastColumn_ && !sortDescending_;
  lastColumn_ = column;
  if (!isSorting()) sort();
  tell(&DuplicateModelListener::pageChanged);
}

void DuplicateModel::sort() {
  const SortKey key = keyOf(lastColumn_);
  if (leavesOfSegment(0) <= kLeavesSortedAtOnce) {
    tell(&DuplicateModelListener::treeWillChange);
    result_->sort(key, sortDescending_);
    tell(&DuplicateModelListener::treeDidChange);
    return;
  }
  sorting_ = std::make_shared<Sorting>();
  sorting_->result = result_;
  sorting_->key = key;
  sorting_->descending = sortDescending_;
  sorting_->model = this;
  Dispatch::global([sorting = sorting_] {
    sorting->order = sorting->result->sorted(sorting->key, sorting->descending);
    sorting->isFound = true;
    sorting->isFound.notify_all();
    Dispatch::mainAsync([sorting]() mutable {
      if (sorting->model != nullptr) sorting->model->takeFoundOrder();
      dropInBackground(std::move(sorting));
    });
  });
}

void DuplicateModel::sortFinished() {
  const std::shared_ptr<Sorting> found = std::move(sorting_);
  found->model = nullptr;
  if (found->key == keyOf(lastColumn_) && found->descending == sortDescending_) {
    tell(&DuplicateModelListener::treeWillChange);
    result_->take(found->order);
    tell(&DuplicateModelListener::treeDidChange);
  } else {
    sort();  // another header was pressed meanwhile
  }
}

// All groups are being ticked in the order in which they stand: then it waits.
void DuplicateModel::takeFoundOrder() {
  if (isSorting() && sorting_->isFound && !isTicking()) sortFinished();
}

// Nobody wants the order any more.
void DuplicateModel::endSorting() {
  if (!isSorting()) return;
  sorting_->model = nullptr;
  dropInBackground(std::move(sorting_));
}

// A removal changes what is being read.
void DuplicateModel::waitForSorting() {
  while (isSorting()) {
    sorting_->isFound.wait(false);
    sortFinished();
  }
}

}  // namespace brisko
