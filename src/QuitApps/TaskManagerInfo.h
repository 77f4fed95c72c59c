#pragma once

#include <cstdint>
#include <string>

namespace brisko {

/// One running application.
struct TaskManagerInfo {
  std::string image;      ///< icon name
  std::string name;       ///< the application's
  std::string procCpu;    ///< percentage of one core, as "ps" prints it
  std::string procVss;    ///< virtual size, as "ps" prints it
  std::string procETime;  ///< running time, as "ps" prints it
  std::int32_t pID = 0;
  double memSize = 0;  ///< never set
  bool bIsSelected = false;

  /// When the process began, as the kernel counts; tells it from a later one with the same number.
  std::uint64_t began = 0;
};

}  // namespace brisko
