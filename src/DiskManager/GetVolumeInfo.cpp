#include "GetVolumeInfo.h"

#include "DiskTree.h"
#include "Dispatch.h"

#include <utility>

namespace brisko {

GetVolumeInfo& GetVolumeInfo::shareInstall() {
  static auto* shared = new GetVolumeInfo;
  return *shared;
}

void GetVolumeInfo::getVolume() {
  Dispatch::global([this] {
    DiskTree tree = buildDiskTree(DiskTreeRules::forVolumeLists());
    Dispatch::mainAsync([this, disks = std::move(tree.disks)]() mutable {
      allValue = std::move(disks);
      if (delegate != nullptr) delegate->scanEndVolume();
    });
  });
}

}  // namespace brisko
