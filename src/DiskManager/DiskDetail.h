#pragma once

#include "DiskAndVolumeObj.h"

#include <array>
#include <string>

namespace brisko {

/// A caption and its value.
struct DiskDetailRow {
  std::string caption;
  std::string value;
};

/// What the detail panel shows of a node.
struct DiskDetail {
  std::string title;
  std::string subtitle;
  std::string imageName;
  std::array<DiskDetailRow, 4> left;
  std::array<DiskDetailRow, 4> right;
  std::string usageCaption;  ///< "Total" or "Used"
  std::string usageValue;
  int usagePercent = 0;  ///< 0 for a volume without a size
  bool freeSpaceShown = false;
  std::string freeSpace;
  bool ejectShown = false;
  bool renameAllowed = false;  ///< a disk's name cannot be changed; a volume's by its UUID only
};

/// `isSystemVolume` says that the node is the first volume of the first disk.
DiskDetail diskDetail(const DiskAndVolumeObj& node, bool isSystemVolume);

/// The image of a node in the tree and in the panel.
const char* diskImage(const DiskAndVolumeObj& node, bool isSystemVolume);

}  // namespace brisko
