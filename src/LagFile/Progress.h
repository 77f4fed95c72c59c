#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace brisko {

/// Whether scanning is paused. One for the whole run.
class Progress {
 public:
  static Progress& shareInit();

  /// Pauses what runs, or lets it go on.
  void isContinue();

  /// Whether it is paused.
  bool getProgress() const { return paused_.load(std::memory_order_relaxed); }

  /// Keeps the caller for as long as it is paused, in waits of one second each. Asked once for each
  /// entry, so it costs next to nothing while nothing is paused. Not for the main thread.
  void isPause() {
    if (getProgress()) wait();
  }

 private:
  void wait();

  std::atomic<bool> paused_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
};

}  // namespace brisko
