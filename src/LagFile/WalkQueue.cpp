#include "WalkQueue.h"

#include <utility>

namespace brisko {

void WalkQueue::updateWanted() {
  wanted_ = static_cast<std::ptrdiff_t>(waiting_) - static_cast<std::ptrdiff_t>(tasks_.size());
}

void WalkQueue::give(WalkTask task) {
  const std::lock_guard lock(mutex_);
  tasks_.push_back(std::move(task));
  updateWanted();
  changed_.notify_one();
}

bool WalkQueue::take(WalkTask& task) {
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

void WalkQueue::finish() {
  const std::lock_guard lock(mutex_);
  if (--working_ == 0 && tasks_.empty()) changed_.notify_all();
}

}  // namespace brisko
