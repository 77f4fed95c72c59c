#include "SSCpuMonitor.h"

#include "Host.h"

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

CpuLoad loadBetween(const ProcessorTicks& before, const ProcessorTicks& now) {
  // Unsigned on purpose: a counter that wrapped round still gives the right small difference.
  const std::uint32_t dU = (now.user - before.user) + (now.nice - before.nice);
  const std::uint32_t dS = now.system - before.system;
  const std::uint32_t dI = now.idle - before.idle;
  const std::uint64_t T = std::max<std::uint64_t>(1, std::uint64_t{dU} + dS + dI);
  return {static_cast<double>(dU) / static_cast<double>(T),
          static_cast<double>(dS) / static_cast<double>(T)};
}

}  // namespace

SSCpuMonitor::SSCpuMonitor() : SSCpuMonitor(*Host::current().statistics) {}

int SSCpuMonitor::getNumCPUs() {
  auto ticks = host.processorTicks();
  if (!ticks) return 0;
  priorCPUTicks = std::move(*ticks);
  return static_cast<int>(priorCPUTicks.size());
}

std::optional<std::vector<CpuLoad>> SSCpuMonitor::monitorCPU() {
  auto ticks = host.processorTicks();
  if (!ticks) return std::nullopt;
  std::vector<CpuLoad> loads(ticks->size());
  // With another number of cores the entries of the two samples are not of the same cores.
  if (priorCPUTicks.size() == ticks->size()) {
    std::transform(priorCPUTicks.begin(), priorCPUTicks.end(), ticks->begin(), loads.begin(),
                   loadBetween);
  }
  priorCPUTicks = std::move(*ticks);
  return loads;
}

}  // namespace brisko
