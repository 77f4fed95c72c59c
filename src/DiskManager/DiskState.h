#pragma once

#include <string>

namespace brisko {

/// What there is to see of a device from outside, before and after something was done to it.
struct DiskState {
  bool isThere = false;
  bool isGone = false;  ///< the disk tool says that there is none; neither, when it did not answer
  std::string name;
  std::string type;
  std::string uuid;
  std::string mount;

  /// Asks the disk tool for the device ("/dev/disk0s1"). Blocks.
  static DiskState of(const std::string& device);
};

}  // namespace brisko
