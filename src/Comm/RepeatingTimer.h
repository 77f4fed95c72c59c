#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace brisko {

/// Calls a block again and again, for engines, which have no event loop of their own.
///
/// The block runs on the timer's own thread, so it may wait for a device; the next call comes one
/// interval after it has ended.
class RepeatingTimer {
 public:
  RepeatingTimer() = default;
  ~RepeatingTimer() { invalidate(); }
  RepeatingTimer(const RepeatingTimer&) = delete;
  RepeatingTimer& operator=(const RepeatingTimer&) = delete;

  /// The first call comes after one interval. A timer that runs already is started over.
  void schedule(std::chrono::milliseconds interval, std::function<void()> block);

  /// No call begins after this, and one that runs is waited for. Not to be called by the block.
  void invalidate();

  bool isValid() const { return thread_.joinable(); }

 private:
  std::mutex mutex_;
  std::condition_variable ended_;
  bool isEnded_ = false;
  std::thread thread_;
};

}  // namespace brisko
