#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>

namespace brisko {

/// The path at work, told by workers and read by others for display.
class CurrentPath {
 public:
  std::string get() const {
    std::lock_guard lock(mutex_);
    return path_;
  }

  void set(std::string path) {
    std::lock_guard lock(mutex_);
    path_ = std::move(path);
  }

  /// Stores `make()`, but not more often than a display could show: a worker may call this for
  /// each file.
  template <typename Make>
  void offer(Make make) {
    using std::chrono::steady_clock;
    const auto now = steady_clock::now().time_since_epoch().count();
    auto due = due_.load(std::memory_order_relaxed);
    if (now < due) return;
    constexpr auto kPause = std::chrono::nanoseconds(std::chrono::milliseconds(20)).count();
    if (due_.compare_exchange_strong(due, now + kPause, std::memory_order_relaxed)) set(make());
  }

 private:
  mutable std::mutex mutex_;
  std::string path_;
  std::atomic<std::int64_t> due_ = 0;
};

}  // namespace brisko
