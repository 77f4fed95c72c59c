#pragma once

#include "FileDescriptor.h"
#include "Workspace.h"

#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace brisko {

/// Watches the kernel's mount table and tells observers, on the main queue, what came and went. The
/// watching thread runs only while somebody observes.
///
/// An observer is not called any more once `stopObserving` has returned on the main thread.
class LinuxVolumeWatch {
 public:
  LinuxVolumeWatch() = default;
  ~LinuxVolumeWatch();
  LinuxVolumeWatch(const LinuxVolumeWatch&) = delete;
  LinuxVolumeWatch& operator=(const LinuxVolumeWatch&) = delete;

  int observe(Workspace::Observer observer);
  void stopObserving(int token);

 private:
  void start();
  void stop();
  void watch(int table, int ended);
  void tell(const MountedVolume& volume, bool mounted);

  // Shared with the notices on the main queue: one that runs after its observer was taken out, or
  // after the watch is gone, finds it missing.
  struct Observers {
    std::mutex mutex;
    std::map<int, Workspace::Observer> byToken;
  };

  std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
  int nextToken_ = 1;
  std::vector<MountedVolume> known_;  ///< the watching thread's, set before it starts
  std::thread thread_;
  FileDescriptor stop_;
};

}  // namespace brisko
