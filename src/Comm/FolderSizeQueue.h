#pragma once

#include "Catalog.h"
#include "FolderSize.h"
#include "WorkQueue.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace brisko {

/// A part of a walk that one worker hands to another.
struct FolderSizeTask {
  std::shared_ptr<Catalog::Folder> folder;
  std::vector<char> subfolders;  ///< names in `folder`, each ended by a zero byte, to be walked
  CatalogBatch files;            ///< items of `folder` to be looked at
};

/// What the workers of one walk share: tasks for those that have none, and the sum.
class FolderSizeQueue : public WorkQueue<FolderSizeTask> {
 public:
  explicit FolderSizeQueue(const std::atomic<bool>* cancel) : cancel_(cancel) {}

  bool isCancelled() const { return cancel_ != nullptr && *cancel_; }

  /// The taker is done with its task, and this is what it came to.
  void finish(const FolderSize& part) {
    {
      const std::lock_guard lock(mutex_);
      sum_ += part;
    }
    WorkQueue::finish();
  }

  /// Once all workers are done.
  FolderSize sum() const { return sum_; }

 private:
  const std::atomic<bool>* cancel_;
  std::mutex mutex_;  ///< guards the sum
  FolderSize sum_;
};

}  // namespace brisko
