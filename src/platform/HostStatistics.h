#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brisko {

/// What a processor core has done since the machine started, in the kernel's clock ticks. Each
/// counter wraps round at 2^32.
struct ProcessorTicks {
  std::uint32_t user = 0;
  std::uint32_t system = 0;
  std::uint32_t idle = 0;
  std::uint32_t nice = 0;

  friend bool operator==(const ProcessorTicks&, const ProcessorTicks&) = default;
};

/// The virtual-memory counters. Those that say how much of something there is are in pages; those
/// that say how often something happened count from the start of the machine and wrap round.
struct VirtualMemoryStatistics {
  std::uint32_t free = 0;      ///< pages that hold nothing
  std::uint32_t active = 0;    ///< pages in use by programs
  std::uint32_t inactive = 0;  ///< pages that can be had back without writing anything out
  std::uint32_t wired = 0;     ///< pages of the system itself
  std::uint32_t zeroFill = 0;
  std::uint32_t reactivations = 0;
  std::uint32_t pageIns = 0;   ///< pages read from disks
  std::uint32_t pageOuts = 0;  ///< pages written to disks
  std::uint32_t faults = 0;
  std::uint32_t copyOnWriteFaults = 0;
  std::uint32_t lookups = 0;
  std::uint32_t hits = 0;
  std::uint32_t purgeable = 0;
  std::uint32_t purges = 0;
  std::uint32_t speculative = 0;

  friend bool operator==(const VirtualMemoryStatistics&, const VirtualMemoryStatistics&) = default;
};

/// A value of the kernel's name space: a number or a text, by its name.
using NamedValue = std::variant<std::uint64_t, std::string>;

/// The kernel's own figures about the machine. Reads afresh at each call; usable from every thread.
class HostStatistics {
 public:
  virtual ~HostStatistics() = default;

  /// One entry per core, in core order. Nothing when the host refuses the information.
  virtual std::optional<std::vector<ProcessorTicks>> processorTicks() = 0;

  /// False, with `statistics` as it was, when the host does not tell.
  virtual bool virtualMemory(VirtualMemoryStatistics& statistics) = 0;

  /// The value called `name`; 0 for success, else the error's number and `value` as it was (ENOENT
  /// for a name that this host does not have). Every host knows "hw.pagesize", "hw.physmem" and
  /// "hw.memsize" (bytes), "hw.ncpu", "kern.osrelease", "kern.osversion" and "kern.hostname"; where
  /// the machine tells: "hw.model", "hw.cpufrequency" (hertz), "machdep.cpu.brand_string" and
  /// "kern.hv_vmm_present" (1 in a virtual machine).
  virtual int namedValue(std::string_view name, NamedValue& value) = 0;

  /// A text property of the machine's platform device: "IOPlatformSerialNumber", "IOPlatformUUID",
  /// "manufacturer", "model". Nothing where the machine has none or keeps it from this user.
  virtual std::optional<std::string> platformProperty(std::string_view name) = 0;

  /// What people call the installed system, with its version; empty when unknown.
  virtual std::string productName() = 0;
};

}  // namespace brisko
