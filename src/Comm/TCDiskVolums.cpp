#include "TCDiskVolums.h"

#include "CommUti.h"
#include "Host.h"

#include <cstdint>
#include <utility>

namespace brisko {
namespace {

std::uint64_t volumeType(MountedVolume::Place place) {
  switch (place) {
    case MountedVolume::Place::fixed:
      return 1;
    case MountedVolume::Place::externalBus:
      return 2;
    case MountedVolume::Place::optical:
      return 3;
    case MountedVolume::Place::network:
      return 4;
    case MountedVolume::Place::removable:
      return 5;
  }
  return 1;
}

const char* volumeIcon(const MountedVolume& volume) {
  if (volume.root == "/") return "ic_diskos";
  return volume.isEjectable ? "ic_usb" : "ic_diska";
}

TCVolumDetail detailOf(const MountedVolume& volume, std::int16_t number) {
  TCVolumDetail detail;
  detail.volRefNumber = number;
  detail.volType = volumeType(volume.place);
  detail.bIsDefaultVol = volume.root == "/";
  detail.volumeName = volume.name;
  detail.nTotalSize = volume.totalBytes;
  detail.nFreeSize = volume.freeBytes;
  detail.totalSpace = CommUti::convertVolSpace(volume.totalBytes);
  detail.freeSpace = CommUti::convertVolSpace(volume.freeBytes);
  detail.volRootDir = volume.root;
  detail.volIcon = volumeIcon(volume);
  detail.bCanEject = volume.place == MountedVolume::Place::network ||
                     volume.place == MountedVolume::Place::externalBus || volume.isEjectable;
  return detail;
}

}  // namespace

const std::vector<TCVolumDetail>& TCDiskVolums::allDiskVolums() {
  volumes_.clear();
  std::int16_t number = 0;
  for (const MountedVolume& volume : Host::current().workspace->mountedVolumes()) {
    TCVolumDetail detail = detailOf(volume, ++number);
    if (detail.volType == 3 && !detail.bCanEject) continue;
    volumes_.push_back(std::move(detail));
  }
  return volumes_;
}

}  // namespace brisko
