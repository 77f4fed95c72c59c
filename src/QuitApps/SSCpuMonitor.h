#pragma once

#include "HostStatistics.h"

#include <optional>
#include <vector>

namespace brisko {

/// What a core did between two looks, as fractions of that time, 0 to 1. What is left to 1 is rest.
struct CpuLoad {
  double user = 0;  ///< programs, those with a lowered priority included
  double system = 0;
};

/// Measures the load of each processor core from one call to the next.
///
/// Not locked: each instance is to be used by one thread at a time.
class SSCpuMonitor {
 public:
  /// Of the machine this process runs on.
  SSCpuMonitor();
  explicit SSCpuMonitor(HostStatistics& statistics) : host(statistics) {}

  /// The number of cores, 0 when the host refuses. Takes the sample that the next `monitorCPU`
  /// measures from, so it is to be called once before that.
  int getNumCPUs();

  /// One entry per core, in core order, for the time since the previous call; nothing when the host
  /// refuses the information, and the measured time then goes on. A core that was not there at the
  /// previous call counts as at rest.
  std::optional<std::vector<CpuLoad>> monitorCPU();

 private:
  HostStatistics& host;
  std::vector<ProcessorTicks> priorCPUTicks;
};

}  // namespace brisko
