#pragma once

#include "DescriptorWatch.h"
#include "ObserverList.h"
#include "Workspace.h"

#include <mutex>
#include <vector>

namespace brisko {

/// Watches the kernel's mount table and tells observers what came and went. The watching thread
/// runs only while somebody observes.
class LinuxVolumeWatch {
 public:
  int observe(Workspace::Observer observer);
  void stopObserving(int token);

 private:
  void start();
  void compare();

  std::mutex running_;  ///< held while the thread is started or ended
  ObserverList<Workspace::Observer> observers_;
  std::vector<MountedVolume> known_;  ///< the watching thread's, set before it starts
  DescriptorWatch watch_;             ///< last: it ends before what it uses goes
};

}  // namespace brisko
