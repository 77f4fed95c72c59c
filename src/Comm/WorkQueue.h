#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>

namespace brisko {

/// Tasks for the workers of one walk that have none.
///
/// A worker gives away only while another one waits, so there are never many more tasks than
/// workers, and a tree that one worker is done with quickly costs no hand-over at all. Any thread.
template <typename Task>
class WorkQueue {
 public:
  /// Whether a worker waits for whom there is no task yet.
  bool isWanted() const { return wanted_.load(std::memory_order_relaxed) > 0; }

  void give(Task task) {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    updateWanted();
    changed_.notify_one();
  }

  /// Waits for a task. False when the whole walk has ended: there is none, and nobody at work who
  /// could give one.
  bool take(Task& task) {
    std::unique_lock lock(mutex_);
    ++waiting_;
    updateWanted();
    changed_.wait(lock, [this] { return !tasks_.empty() || working_ == 0; });
    --waiting_;
    const bool found = !tasks_.empty();
    if (found) {
      task = std::move(tasks_.front());
      tasks_.pop_front();
      ++working_;
    }
    updateWanted();
    return found;
  }

  /// The taker is done with its task, and has let go of all that it holds.
  void finish() {
    const std::lock_guard lock(mutex_);
    if (--working_ == 0 && tasks_.empty()) changed_.notify_all();
  }

 private:
  void updateWanted() {
    wanted_ = static_cast<std::ptrdiff_t>(waiting_) - static_cast<std::ptrdiff_t>(tasks_.size());
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Task> tasks_;
  std::size_t waiting_ = 0;
  std::size_t working_ = 0;
  std::atomic<std::ptrdiff_t> wanted_ = 0;
};

}  // namespace brisko
