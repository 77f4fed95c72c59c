#pragma once

#include "HostActivity.h"
#include "SSCpuMonitor.h"
#include "SSMemoryMonitor.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace brisko {

/// How fast bytes move, in bytes per second.
struct TransferRate {
  double in = 0;   ///< read, received
  double out = 0;  ///< written, sent
};

/// All figures of one look at the machine.
struct SystemSample {
  std::vector<CpuLoad> cores;  ///< empty when the host refuses
  SSMemoryInfo memory;
  std::vector<TransferCounters> disks;
  std::vector<TransferCounters> interfaces;
  TransferRate disk;
  TransferRate network;
  std::vector<Temperature> temperatures;
  std::uint64_t upTimeSeconds = 0;  ///< 0 when it is not known

  /// The mean over all cores.
  CpuLoad processor() const;
};

/// The rate over `seconds` between two looks, each device counted that is in both. A device whose
/// counters went back was taken out and put in again, and counts as at rest. 0 for no time.
TransferRate rateBetween(const std::vector<TransferCounters>& before,
                         const std::vector<TransferCounters>& now, double seconds);

/// Takes samples of the machine. Loads and rates are those of the time since the sample before.
///
/// Not locked: each instance is to be used by one thread at a time. A sample reads a handful of the
/// kernel's small files; sensors, which can be slow, are read with each fifth one.
class SystemSampler {
 public:
  SystemSampler();

  /// Measures from now on: the next sample does not cover what was before.
  void restart();
  SystemSample sample();

 private:
  using Clock = std::chrono::steady_clock;

  SSCpuMonitor processor_;
  SSMemoryMonitor memory_;
  std::vector<TransferCounters> disks_;
  std::vector<TransferCounters> interfaces_;
  std::vector<Temperature> temperatures_;
  Clock::time_point taken_;
  unsigned samples_ = 0;
};

}  // namespace brisko
