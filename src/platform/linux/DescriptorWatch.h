#pragma once

#include "FileDescriptor.h"

#include <functional>
#include <thread>

namespace brisko {

/// A thread that waits for a descriptor to have something to tell. Not locked: started and stopped
/// by one thread at a time.
class DescriptorWatch {
 public:
  /// What the thread does each time, with the descriptor that it waits for.
  using Ready = std::function<void(int watched)>;

  DescriptorWatch() = default;
  ~DescriptorWatch() { stop(); }
  DescriptorWatch(const DescriptorWatch&) = delete;
  DescriptorWatch& operator=(const DescriptorWatch&) = delete;

  /// Waits for `events`, as poll takes them, then `together` milliseconds more for what comes with
  /// the first. False, with errno set, when that cannot be had.
  bool start(FileDescriptor watched, short events, int together, Ready ready);

  /// No call of `ready` begins after this, and one that runs is waited for. Not to be called by it.
  void stop();

 private:
  FileDescriptor stop_;
  std::thread thread_;
};

}  // namespace brisko
