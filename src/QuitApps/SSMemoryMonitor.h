#pragma once

#include "HostStatistics.h"
#include "SSMemoryInfo.h"

#include <cstdint>

namespace brisko {

/// Measures the physical memory.
///
/// Not locked: each instance is to be used by one thread at a time.
class SSMemoryMonitor {
 public:
  /// Of the machine this process runs on.
  SSMemoryMonitor();
  explicit SSMemoryMonitor(HostStatistics& statistics) : host(statistics) {}

  /// Takes a sample. 0, or the number of the last error; what could not be read stays as it was.
  /// Logs "host_statistics failed" when the host does not tell its virtual-memory counters.
  int getMemoryInfo();

  /// Takes a sample and gives it as byte counts.
  SSMemoryInfo usagePercent();

 private:
  HostStatistics& host;
  std::uint64_t pagesize = 4096;  ///< bytes
  std::uint64_t totalMemory = 0;  ///< bytes
  VirtualMemoryStatistics vmstat;
};

}  // namespace brisko
