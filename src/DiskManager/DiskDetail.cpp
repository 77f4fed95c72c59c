#include "DiskDetail.h"

#include "CommUti.h"

#include <fmt/format.h>

#include <algorithm>

namespace brisko {
namespace {

std::string known(const std::string& text) {
  return text.empty() ? "Unknow" : text;
}

std::string orBlank(const std::string& text) {
  return text.empty() ? " " : text;
}

std::string location(const DiskAndVolumeObj& node) {
  return node.isInter ? "Internal" : "External";
}

std::string subtitleOf(const DiskAndVolumeObj& node, const char* kind) {
  return fmt::format("{} {} {} {} {} {}", known(node.totalSpace), known(node.diskType),
                     location(node), orBlank(node.vORpStr), kind, orBlank(node.diskEx));
}

bool isUsableUUID(const std::string& uuid) {
  return !uuid.empty() && uuid != " " && uuid != "(null)";
}

void fillDisk(DiskDetail& detail, const DiskAndVolumeObj& disk) {
  detail.left = {{{"Location:", location(disk)},
                  {"Connection:", known(disk.diskType)},
                  {"Partition Map:", known(disk.diskContent)},
                  {"S.M.A.R.T.status:", orBlank(disk.diskSMARTStatus)}}};
  detail.right = {{{"Capacity:", known(disk.totalSpace)},
                   {"Child count:", std::to_string(disk.chrCount)},
                   {"Type:", disk.isSolidState ? "Solid state" : "Disk"},
                   {"Device:", known(disk.diskId)}}};
  detail.usageCaption = "Total";
  detail.usageValue = known(disk.totalSpace);
  detail.usagePercent = 100;
  detail.subtitle = subtitleOf(disk, "Disk");
}

void fillVolume(DiskDetail& detail, const DiskAndVolumeObj& volume) {
  const std::uint64_t used = volume.nTotalSize - std::min(volume.nFreeSize, volume.nTotalSize);
  const std::string usedSpace = orBlank(CommUti::convertVolSpace(used));
  detail.left = {{{"Mount Point:", known(volume.diskMount)},
                  {"Capacity:", known(volume.totalSpace)},
                  {"Used:", usedSpace},
                  {"Device:", known(volume.diskId)}}};
  const std::string type = fmt::format("{} {} {} {}", known(volume.diskType), location(volume),
                                       orBlank(volume.vORpStr), "Volumes");
  // The flag says that owners are honoured; the words are the other way round, and stay so.
  detail.right = {{{"Type:", type},
                   {"Available:", known(volume.freeSpace)},
                   {"Owners:", volume.isOeners ? "Disabled" : "Enabled"},
                   {"Connection:", known(volume.diskType)}}};
  detail.usageCaption = "Used";
  detail.usageValue = usedSpace;
  // In parts of the total that cannot overflow.
  detail.usagePercent =
      volume.nTotalSize == 0
          ? 0
          : static_cast<int>(used <= UINT64_MAX / 100 ? used * 100 / volume.nTotalSize
                                                      : used / (volume.nTotalSize / 100));
  detail.freeSpaceShown = true;
  detail.freeSpace = known(volume.freeSpace);
  detail.renameAllowed = isUsableUUID(volume.diskUUID);
  detail.subtitle = subtitleOf(volume, "Volumes");
}

}  // namespace

const char* diskImage(const DiskAndVolumeObj& node, bool isSystemVolume) {
  if (node.bCanEject) return "ic_usb";
  return isSystemVolume ? "ic_diskos" : "ic_diska";
}

DiskDetail diskDetail(const DiskAndVolumeObj& node, bool isSystemVolume) {
  DiskDetail detail;
  detail.title = known(node.volumeName);
  detail.imageName = diskImage(node, isSystemVolume);
  detail.ejectShown = node.bCanEject;
  if (node.isDisk) {
    fillDisk(detail, node);
  } else {
    fillVolume(detail, node);
  }
  return detail;
}

}  // namespace brisko
