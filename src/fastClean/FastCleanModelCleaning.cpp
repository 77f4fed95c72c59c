// Cleaning: from the plan to the end screen.

#include "Dispatch.h"
#include "FastCleanFileNode.h"
#include "FastCleanModel.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <set>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kProgressPause{50};

std::uint64_t remainingBytes(const TCTreeNode& category) {
  std::uint64_t total = 0;
  for (const auto& entry : category.detailChildren) {
    total += CommUti::volSpaceFromString(entry->size);
  }
  return total;
}

}  // namespace

std::vector<FastCleanItem> FastCleanModel::plan() const {
  std::vector<FastCleanItem> items;
  if (indexPage_ != 2) return items;
  for (std::size_t i = 0; i < allTypeArr_.size(); ++i) {
    for (const auto& entry : allTypeArr_[i]->detailChildren) {
      if (entry->selectState == 1) items.push_back({static_cast<int>(i), entry});
    }
  }
  return items;
}

std::uint64_t FastCleanModel::planSize() const {
  return selectedTotal(allTypeArr_);
}

void FastCleanModel::beginCleanFile() {
  if (indexPage_ != 2 || cleaning_) return;
  cleaning_ = std::make_shared<Cleaning>();
  cleaning_->items = plan();
  isCanClick_ = false;
  mainButton_ = {.title = "...", .enabled = false};
  backHomeEnabled_ = false;
  completedShown_ = false;
  cleanTotalSize_ = 0;
  freedBytes_ = 0;
  removedPaths_.clear();
  failures_.clear();
  cleaningWasStopped_ = false;
  for (std::size_t i = 0; i < allTypeArr_.size(); ++i) {
    const auto& entries = allTypeArr_[i]->detailChildren;
    rows_[i].checkBoxShown = false;
    rows_[i].checkBoxEnabled = false;
    rows_[i].detailButtonEnabled = false;
    rows_[i].loadingShown = std::any_of(entries.begin(), entries.end(),
                                        [](const auto& entry) { return entry->selectState == 1; });
  }
  Dispatch::global([cleaning = cleaning_, lifetime = std::weak_ptr(lifetime_)] {
    removeItems(*cleaning, lifetime);
    Dispatch::mainAsync([cleaning, lifetime] {
      const auto alive = lifetime.lock();
      if (alive && alive->model != nullptr) alive->model->cleanEnd(*cleaning);
    });
  });
  tell(&FastCleanModelListener::pageChanged);
  tell(&FastCleanModelListener::sizeLineChanged);
  tellRows();
}

void FastCleanModel::stopCleaning() {
  if (cleaning_) cleaning_->stop = true;
}

// In the background. The nodes are only read: the main thread takes out what is gone when all is
// done.
void FastCleanModel::removeItems(Cleaning& cleaning, const std::weak_ptr<Lifetime>& lifetime) {
  auto lastTold = Clock::now() - kProgressPause;
  cleaning.reports.reserve(cleaning.items.size());
  for (const FastCleanItem& item : cleaning.items) {
    if (cleaning.stop) break;
    const std::string& path = item.entry->path;
    {
      std::lock_guard lock(cleaning.mutex);
      cleaning.pathAtWork = path;
    }
    if (Clock::now() - lastTold >= kProgressPause) {
      lastTold = Clock::now();
      Dispatch::mainAsync([lifetime, path] {
        const auto alive = lifetime.lock();
        if (!alive || alive->model == nullptr || alive->model->listener_ == nullptr) return;
        alive->model->listener_->cleaningProgressed(path);
      });
    }
    cleaning.reports.push_back(
        FastCleanFileNode::shareInstall().removeFile(*item.entry, &cleaning.stop));
  }
}

void FastCleanModel::takeResults(const Cleaning& cleaning) {
  std::set<const TCTreeNode*> gone;
  for (std::size_t i = 0; i < cleaning.reports.size(); ++i) {
    const RemovalReport& report = cleaning.reports[i];
    const TCTreeNode& entry = *cleaning.items[i].entry;
    freedBytes_ += report.freedBytes;
    if (report.removed()) {
      gone.insert(&entry);
      cleanTotalSize_ += CommUti::volSpaceFromString(entry.size);
      removedPaths_.push_back(entry.path);
    } else if (report.outcome == RemovalOutcome::missing) {
      // Somebody else was faster: it is no longer there to be listed, and nothing to be proud of.
      gone.insert(&entry);
    } else {
      failures_.push_back({entry.path, report.reason});
    }
  }
  for (const auto& category : allTypeArr_) {
    std::erase_if(category->detailChildren,
                  [&](const auto& entry) { return gone.contains(entry.get()); });
  }
  cleaningWasStopped_ = cleaning.reports.size() < cleaning.items.size();
}

void FastCleanModel::cleanEnd(const Cleaning& cleaning) {
  takeResults(cleaning);
  backHomeEnabled_ = true;
  for (std::size_t i = 0; i < allTypeArr_.size(); ++i) {
    TCTreeNode& category = *allTypeArr_[i];
    category.size = CommUti::convertVolSpace(remainingBytes(category));
    category.logicalBytes = 0;
    for (const auto& entry : category.detailChildren) {
      category.logicalBytes += entry->logicalBytes;
    }
    const bool isLeft = category.size != "0.00 KB";
    FastTypeRow& row = rows_[i];
    row.bSelect = false;
    row.size = category.size;
    row.sizeIsDimmed = !isLeft;
    row.loadingShown = false;
    row.checkBoxShown = false;
    row.checkBoxEnabled = isLeft;
    row.checkBoxImage = isLeft ? "unsel" : "disable";
    row.detailButtonShown = isLeft;
    row.detailButtonEnabled = true;
  }
  totalSize_ = 0;
  cleaning_.reset();
  showCleanEnd();
  isCanClick_ = true;
  tell(&FastCleanModelListener::pageChanged);
  tell(&FastCleanModelListener::sizeLineChanged);
  tellRows();
}

void FastCleanModel::showCleanEnd() {
  indexPage_ = 0;
  mainButton_ = {};
  view_ = FastCleanView::cleanEnd;
}

}  // namespace brisko
