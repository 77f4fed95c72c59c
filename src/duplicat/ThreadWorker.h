#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace brisko {

/// Runs one piece of work on a thread of its own and tells the main thread when it has ended.
///
/// Belongs to the main thread. Destroying it waits for the work, and takes back an end that was not
/// told yet.
class ThreadWorker {
 public:
  /// Starts `work(worker)`; `didEnd` runs on the main thread after it.
  static std::unique_ptr<ThreadWorker> workOn(std::function<void(const ThreadWorker&)> work,
                                              std::function<void()> didEnd);
  ~ThreadWorker();
  ThreadWorker(const ThreadWorker&) = delete;
  ThreadWorker& operator=(const ThreadWorker&) = delete;

  /// A mark that the work may look at.
  void markAsCancelled() { cancelled_ = true; }
  bool cancelled() const { return cancelled_; }

 private:
  ThreadWorker() = default;

  std::atomic<bool> cancelled_ = false;
  std::shared_ptr<std::function<void()>> didEnd_;
  std::thread thread_;
};

}  // namespace brisko
