#pragma once

#include <cstdint>
#include <string>

namespace brisko {

/// One mounted volume.
struct TCVolumDetail {
  std::int16_t volRefNumber = 0;  ///< the platform's volume reference number (enumerator only)
  std::uint64_t volType = 1;      ///< 1 fixed, 2 on external bus, 3 CD/DVD, 4 network, 5 removable
  bool bIsDefaultVol = false;     ///< the volume mounted at "/"
  std::string volumeName;
  std::string freeSpace;   ///< formatted
  std::string totalSpace;  ///< formatted
  std::string volRootDir;
  std::string volIcon;  ///< image name (enumerator only)
  bool bCanEject = false;
  std::uint64_t nTotalSize = 0;  ///< bytes
  std::uint64_t nFreeSize = 0;   ///< bytes
};

}  // namespace brisko
