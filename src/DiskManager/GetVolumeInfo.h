#pragma once

#include "DiskAndVolumeObj.h"

#include <vector>

namespace brisko {

/// Told when the list of volumes is there.
class GetVolumeInfoDelegate {
 public:
  virtual ~GetVolumeInfoDelegate() = default;
  virtual void scanEndVolume() {}
};

/// Disks and volumes for modules other than the Disk Manager: only larger partitions, mounted or
/// not. Belongs to the main thread.
class GetVolumeInfo {
 public:
  static GetVolumeInfo& shareInstall();

  GetVolumeInfoDelegate* delegate = nullptr;  ///< must outlive its being set here
  std::vector<DiskNode> allValue;             ///< the disks, once `scanEndVolume` was called

  /// Asks in the background; ends with `scanEndVolume` on the main queue.
  void getVolume();
};

}  // namespace brisko
