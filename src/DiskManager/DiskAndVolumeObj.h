#pragma once

#include "TCVolumDetail.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// One node of the disk tree: a disk, or a volume on one. An empty text is one that the disk tool
/// did not give; `volRootDir` holds the device node.
struct DiskAndVolumeObj : TCVolumDetail {
  std::string diskType;  ///< disk: bus protocol; volume: name of its file system
  std::string diskId;    ///< device identifier, without "/dev/"
  std::string diskMediaName;
  std::string diskSMARTStatus;  ///< as the disk tool words it
  std::string diskContent;      ///< content or partition-map type
  std::string diskEx;           ///< file-system name for people (volumes)
  std::string diskMount;        ///< mount point (volumes)
  std::string vORpStr;          ///< "Virtual" or "Physical"
  std::string diskUUID;         ///< of the volume; what a rename goes by
  std::string volumePath;       ///< device node
  std::int16_t volumeNum = 0;   ///< not filled
  bool isInter = false;         ///< internal
  bool isSolidState = false;
  bool isWritable = false;
  bool isDisk = false;
  bool isOeners = false;      ///< the volume's global-permissions flag
  std::int32_t chrCount = 0;  ///< partitions that were listed for the disk, before any filter
  std::vector<std::shared_ptr<DiskAndVolumeObj>> chrArr;  ///< shown volumes, in listing order
};

using DiskNode = std::shared_ptr<DiskAndVolumeObj>;

}  // namespace brisko
