#pragma once

#include "DiskAndVolumeObj.h"
#include "ExecCommand.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brisko {

/// In what the two users of the disk tree differ.
struct DiskTreeRules {
  /// Smaller partitions are left out unless they can be ejected, in bytes.
  std::uint64_t partitionFloor = 1'073'741'824;
  /// A disk that cannot be ejected is left out when one with its media name is listed already, or
  /// when it has none. Else every disk without a media name is left out, and no other.
  bool dropsRepeatedDisks = true;
  bool readsContainerVolumes = true;  ///< a disk without partitions shows its container's volumes
  bool dropsBootAndUnmounted = true;  ///< "EFI", and what has an empty mount point
  bool volumeTypeIsItsBus = false;    ///< else it is the name of the file system
  bool logsContainers = false;
  DiskCommandFile containerFile = DiskCommandFile::zkapfs;

  static DiskTreeRules forDiskManager() { return {}; }
  static DiskTreeRules forVolumeLists();
};

struct DiskTree {
  std::vector<DiskNode> disks;
  /// The node of the listing's first entry; null when that was left out.
  DiskNode first;
  std::string complaints;  ///< lines that the disk tool wrote meanwhile, each once
};

/// Asks the disk tool for everything that is attached. Blocks for as long as that takes: not for
/// the main thread. What cannot be read makes the tree shorter. `cancelled` is asked between
/// devices.
DiskTree buildDiskTree(const DiskTreeRules& rules,
                       const std::function<bool()>& cancelled = nullptr);

/// Whether the node is the first volume of the first disk, which is taken for the system's.
bool isSystemVolume(const std::vector<DiskNode>& disks, const DiskAndVolumeObj& node);

/// The disk or the volume with this identifier (with or without "/dev/"); null when there is none.
/// A disk that holds a file system directly has the identifier of its one volume: each is found by
/// its own function.
DiskNode diskWithId(const std::vector<DiskNode>& disks, std::string id);
DiskNode volumeWithId(const std::vector<DiskNode>& disks, std::string id);

}  // namespace brisko
