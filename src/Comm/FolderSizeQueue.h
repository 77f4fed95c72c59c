#pragma once

#include "Catalog.h"
#include "FolderSize.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
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
///
/// A worker gives away only when another one waits, so there are never more tasks than workers and
/// a tree that one worker is done with quickly costs no hand-over at all.
class FolderSizeQueue {
 public:
  explicit FolderSizeQueue(const std::atomic<bool>* cancel) : cancel_(cancel) {}

  bool isCancelled() const { return cancel_ != nullptr && *cancel_; }

  /// Whether a worker waits for whom there is no task yet.
  bool isWanted() const { return wanted_.load(std::memory_order_relaxed) > 0; }

  void give(FolderSizeTask task);

  /// Waits for a task. False when the whole walk has ended.
  bool take(FolderSizeTask& task);

  /// The taker is done with its task and has let go of the folder.
  void finish(const FolderSize& part);

  /// Once all workers are done.
  FolderSize sum() const { return sum_; }

 private:
  void updateWanted();

  const std::atomic<bool>* cancel_;
  std::atomic<std::ptrdiff_t> wanted_ = 0;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<FolderSizeTask> tasks_;
  std::size_t waiting_ = 0;
  std::size_t working_ = 0;
  FolderSize sum_;
};

}  // namespace brisko
