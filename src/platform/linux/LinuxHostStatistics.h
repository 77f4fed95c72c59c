#pragma once

#include "HostStatistics.h"
#include "LinuxCounters.h"

#include <map>
#include <mutex>

namespace brisko {

/// /proc, DMI or the device tree, and uname.
class LinuxHostStatistics : public HostStatistics {
 public:
  /// `root` stands for "/" where the files of the kernel are looked for; tests put their own there.
  explicit LinuxHostStatistics(std::string root = "");

  /// A core that was switched off stays in the list, with the ticks it had. A counter never goes
  /// back, though the kernel's time of waiting for disks does now and then.
  std::optional<std::vector<ProcessorTicks>> processorTicks() override;
  bool virtualMemory(VirtualMemoryStatistics& statistics) override;
  /// "hw.model" is DMI's product name (for one maker that keeps a number there, its product
  /// version), else the device tree's model, else DMI's board name. Texts that makers forgot to
  /// fill in count as missing. "kern.osversion" is the number of the kernel's build.
  int namedValue(std::string_view name, NamedValue& value) override;
  std::optional<std::string> platformProperty(std::string_view name) override;
  std::string productName() override;

 private:
  std::string text(const char* path) const;
  std::string firmwareText(const char* name) const;
  std::string model() const;
  std::string brand() const;
  std::uint64_t frequency() const;

  std::string root_;
  std::mutex mutex_;
  std::map<int, CoreTicks> ticks_;  ///< the highest that were ever seen
};

}  // namespace brisko
