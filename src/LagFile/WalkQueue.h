#pragma once

#include "Catalog.h"
#include "FileNode.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace brisko {

/// A part of a walk that one worker hands to another.
struct WalkTask {
  std::shared_ptr<Catalog::Folder> folder;
  FileNode* node = nullptr;           ///< the folder's entry
  std::uint32_t top = 0;              ///< below which entry of the chosen folder it lies
  bool isWhole = false;               ///< nothing of the folder was read yet
  std::vector<FileNode*> subfolders;  ///< folders in it to be read
  std::span<FileNode> entries;        ///< entries of it to be looked at
};

/// Tasks for the workers of one walk that have none. Workers give only while another one waits, so
/// a small tree costs no hand-over.
class WalkQueue {
 public:
  bool isWanted() const { return wanted_.load(std::memory_order_relaxed) > 0; }
  void give(WalkTask task);
  /// Waits for a task. False when the whole walk has ended.
  bool take(WalkTask& task);
  /// The taker is done with its task.
  void finish();

 private:
  void updateWanted();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<WalkTask> tasks_;
  std::size_t waiting_ = 0;
  std::size_t working_ = 0;
  std::atomic<std::ptrdiff_t> wanted_ = 0;
};

}  // namespace brisko
