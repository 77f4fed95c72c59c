#include "SSMemoryMonitor.h"

#include "Host.h"
#include "SystemLog.h"

#include <utility>

namespace brisko {

SSMemoryMonitor::SSMemoryMonitor() : SSMemoryMonitor(*Host::current().statistics) {}

int SSMemoryMonitor::getMemoryInfo() {
  int lastError = 0;
  // What is installed without what the firmware keeps is asked for too, only for its error.
  std::uint64_t physical = 0;
  const std::pair<const char*, std::uint64_t*> values[] = {
      {"hw.pagesize", &pagesize}, {"hw.physmem", &physical}, {"hw.memsize", &totalMemory}};
  for (const auto& [name, into] : values) {
    NamedValue value;
    const int error = host.namedValue(name, value);
    if (error != 0) {
      lastError = error;
    } else if (const auto* number = std::get_if<std::uint64_t>(&value)) {
      *into = *number;
    }
  }
  if (!host.virtualMemory(vmstat)) SystemLog::write("host_statistics failed");
  return lastError;
}

SSMemoryInfo SSMemoryMonitor::usagePercent() {
  getMemoryInfo();
  SSMemoryInfo info;
  info.totalMemory = totalMemory;
  info.freeMemory = vmstat.free * pagesize;
  info.wiredMemory = vmstat.wired * pagesize;
  info.activeMemory = vmstat.active * pagesize;
  info.inactiveMemory = vmstat.inactive * pagesize;
  info.usedMomory = totalMemory - info.freeMemory - info.inactiveMemory;
  info.pageIn = vmstat.pageIns * pagesize;
  info.pageOut = vmstat.pageOuts * pagesize;
  info.virtualMemory = vmstat.faults * pagesize;
  return info;
}

}  // namespace brisko
