#pragma once

#include "HostActivity.h"
#include "HostStatistics.h"

#include <functional>
#include <map>
#include <string_view>

namespace brisko {

/// The kernel's counters out of the texts it gives them in. Lines that are cut or not understood
/// are passed over.

/// Ticks of one core as the kernel counts them, without wrapping.
struct CoreTicks {
  std::uint64_t user = 0;
  std::uint64_t system = 0;
  std::uint64_t idle = 0;
  std::uint64_t nice = 0;
};

/// The cores in /proc/stat's text, by number. Interrupts and time taken by other virtual machines
/// count as system time, waiting for a disk as idle time.
std::map<int, CoreTicks> coreTicksFrom(std::string_view stat);

/// The counters from /proc/meminfo and /proc/vmstat. False when the first lacks the memory's size
/// or what of it is free.
///
/// `active` is what programs hold, `inactive` what the kernel would give back at once, so that
/// total - free - inactive is the memory in use as people know it from other tools; `wired` is the
/// rest. Five of the counters have no counterpart and stay 0: zero fills, look-ups, hits, purgeable
/// and speculative pages.
bool virtualMemoryFrom(std::string_view memInfo, std::string_view vmStat, std::uint64_t pageSize,
                       VirtualMemoryStatistics& statistics);

/// "NAME: N kB" of /proc/meminfo in bytes; nothing when there is no such line.
std::optional<std::uint64_t> memInfoBytes(std::string_view memInfo, std::string_view name);

/// The devices in /proc/diskstats's text that `isDisk`.
std::vector<TransferCounters> disksFrom(std::string_view diskStats,
                                        const std::function<bool(const std::string&)>& isDisk);

/// The interfaces in /proc/net/dev's text but the loop-back one.
std::vector<TransferCounters> interfacesFrom(std::string_view netDev);

/// The first value of "KEY : VALUE" in /proc/cpuinfo's text; empty when there is none.
std::string_view cpuInfoValue(std::string_view cpuInfo, std::string_view key);

/// PRETTY_NAME of an os-release text, else NAME; empty when it has neither.
std::string productNameFrom(std::string_view osRelease);

}  // namespace brisko
