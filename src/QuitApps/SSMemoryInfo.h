#pragma once

#include <cstdint>
#include <string>

namespace brisko {

/// The physical memory at one moment. All in bytes.
struct SSMemoryInfo {
  std::uint64_t totalMemory = 0;
  std::uint64_t freeMemory = 0;
  std::uint64_t wiredMemory = 0;     ///< the system's own
  std::uint64_t activeMemory = 0;    ///< what programs hold
  std::uint64_t inactiveMemory = 0;  ///< can be had back at once
  std::uint64_t usedMomory = 0;      ///< total without free and inactive
  std::uint64_t pageIn = 0;          ///< read from disks since the machine started
  std::uint64_t pageOut = 0;         ///< written to disks since the machine started
  std::uint64_t virtualMemory = 0;   ///< what page faults have brought in since then

  /// "%0.2f" of KB, MB or GB, where a KB is 1024 bytes, computed in single precision. A negative
  /// number is taken as unsigned.
  static std::string covertMemory(std::int64_t bytes);
};

}  // namespace brisko
