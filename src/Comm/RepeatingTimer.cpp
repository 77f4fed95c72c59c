#include "RepeatingTimer.h"

#include <utility>

namespace brisko {

void RepeatingTimer::schedule(std::chrono::milliseconds interval, std::function<void()> block) {
  invalidate();
  isEnded_ = false;
  thread_ = std::thread([this, interval, block = std::move(block)] {
    std::unique_lock lock(mutex_);
    while (!ended_.wait_for(lock, interval, [this] { return isEnded_; })) {
      lock.unlock();
      block();
      lock.lock();
    }
  });
}

void RepeatingTimer::invalidate() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
  }
  ended_.notify_all();
  thread_.join();
}

}  // namespace brisko
