#include "Progress.h"

#include <chrono>

namespace brisko {

Progress& Progress::shareInit() {
  static auto* progress = new Progress;
  return *progress;
}

void Progress::isContinue() {
  {
    const std::lock_guard lock(mutex_);
    paused_ = !paused_;
  }
  changed_.notify_all();
}

void Progress::wait() {
  std::unique_lock lock(mutex_);
  while (paused_)
    changed_.wait_for(lock, std::chrono::seconds(1));
}

}  // namespace brisko
