#pragma once

#include "Workspace.h"

namespace brisko {

/// Tells the whole program of volumes that come and go: the workspace's notices, passed on through
/// the default notification centre with this object as sender and the volume (`MountedVolume`) as
/// user information. Main thread only.
class WatchMountUnmount {
 public:
  static constexpr const char* kMount = "BKVolumeMount";
  static constexpr const char* kUnmount = "BKVolumeUnmount";

  WatchMountUnmount() { registerNotifications(); }
  ~WatchMountUnmount();
  WatchMountUnmount(const WatchMountUnmount&) = delete;
  WatchMountUnmount& operator=(const WatchMountUnmount&) = delete;

  void registerNotifications();
  void mountedVolume(const MountedVolume& volume);
  void unmountedVolume(const MountedVolume& volume);

 private:
  int token_ = 0;
};

}  // namespace brisko
