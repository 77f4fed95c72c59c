#include "DiskState.h"

#include "DiskAndVolumeInfo.h"

namespace brisko {
namespace {

constexpr int kNoSuchDevice = 1;  // exit status of the disk tool

}  // namespace

DiskState DiskState::of(const std::string& device) {
  DiskCommandEnd end;
  const PropertyList info = DiskAndVolumeInfo::detailsOf(device, &end);
  DiskState state;
  state.isThere = !info["DeviceIdentifier"].string().empty();
  state.isGone = !state.isThere && end.status == kNoSuchDevice;
  state.name = info["VolumeName"].string();
  state.type = info["FilesystemName"].string();
  state.uuid = info["VolumeUUID"].string();
  state.mount = info["MountPoint"].string();
  return state;
}

}  // namespace brisko
