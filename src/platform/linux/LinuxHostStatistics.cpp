#include "LinuxHostStatistics.h"

#include "RegularFile.h"
#include "Trimmed.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <utility>

#include <strings.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace brisko {
namespace {

// /proc/stat has one figure for each interrupt line, /proc/cpuinfo a page for each core.
constexpr std::size_t kLargestFile = 16u << 20;

// What stands in the firmware of machines whose maker did not fill it in.
bool isFiller(const std::string& text) {
  constexpr std::array kFillers = {"To Be Filled By O.E.M.",
                                   "System Product Name",
                                   "System Version",
                                   "System manufacturer",
                                   "Default string",
                                   "Not Specified",
                                   "Not Applicable",
                                   "Product Name",
                                   "Type1ProductConfigId",
                                   "OEM",
                                   "O.E.M.",
                                   "None",
                                   "Unknown",
                                   "Undefined",
                                   "INVALID",
                                   "All Series"};
  return text.find_first_not_of(".0xX- ") == std::string::npos ||
         std::any_of(kFillers.begin(), kFillers.end(),
                     [&](const char* filler) { return strcasecmp(text.c_str(), filler) == 0; });
}

std::uint32_t wrapped(std::uint64_t ticks) {
  return static_cast<std::uint32_t>(ticks);
}

// "#48~22.04.1-Ubuntu SMP …": the build's number is the first word.
std::string buildNumber(std::string_view version) {
  if (version.starts_with('#')) version.remove_prefix(1);
  return std::string(version.substr(0, version.find(' ')));
}

}  // namespace

LinuxHostStatistics::LinuxHostStatistics(std::string root) : root_(std::move(root)) {}

std::string LinuxHostStatistics::text(const char* path) const {
  int error = 0;
  return readFile(root_ + path, kLargestFile, error).value_or("");
}

std::string LinuxHostStatistics::firmwareText(const char* name) const {
  const std::string file = text((std::string("/sys/class/dmi/id/") + name).c_str());
  std::string found(trimmed(file));
  return isFiller(found) ? std::string() : found;
}

std::optional<std::vector<ProcessorTicks>> LinuxHostStatistics::processorTicks() {
  const auto now = coreTicksFrom(text("/proc/stat"));
  if (now.empty()) return std::nullopt;
  const std::lock_guard lock(mutex_);
  for (const auto& [core, ticks] : now) {
    CoreTicks& kept = ticks_[core];
    kept.user = std::max(kept.user, ticks.user);
    kept.system = std::max(kept.system, ticks.system);
    kept.idle = std::max(kept.idle, ticks.idle);
    kept.nice = std::max(kept.nice, ticks.nice);
  }
  std::vector<ProcessorTicks> all;
  for (const auto& [core, ticks] : ticks_) {
    all.push_back(
        {wrapped(ticks.user), wrapped(ticks.system), wrapped(ticks.idle), wrapped(ticks.nice)});
  }
  return all;
}

bool LinuxHostStatistics::virtualMemory(VirtualMemoryStatistics& statistics) {
  return virtualMemoryFrom(text("/proc/meminfo"), text("/proc/vmstat"),
                           static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)), statistics);
}

std::string LinuxHostStatistics::model() const {
  if (strcasecmp(firmwareText("sys_vendor").c_str(), "LENOVO") == 0) {
    if (std::string name = firmwareText("product_version"); !name.empty()) return name;
  }
  if (std::string name = firmwareText("product_name"); !name.empty()) return name;
  const std::string tree = text("/sys/firmware/devicetree/base/model");
  if (const auto name = trimmed(tree); !name.empty()) return std::string(name);
  return firmwareText("board_name");
}

std::string LinuxHostStatistics::brand() const {
  const std::string cpuInfo = text("/proc/cpuinfo");
  for (const char* key : {"model name", "Model Name", "cpu model", "cpu", "Hardware", "uarch"}) {
    if (const auto value = cpuInfoValue(cpuInfo, key); !value.empty()) return std::string(value);
  }
  utsname name{};
  return uname(&name) == 0 ? name.machine : "";
}

std::uint64_t LinuxHostStatistics::frequency() const {
  std::uint64_t kilohertz = 0;
  const std::string highest = text("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
  std::from_chars(highest.data(), highest.data() + highest.size(), kilohertz);
  if (kilohertz != 0) return kilohertz * 1000;
  const std::string cpuInfo = text("/proc/cpuinfo");
  const std::string_view megahertz = cpuInfoValue(cpuInfo, "cpu MHz");
  double value = 0;
  std::from_chars(megahertz.data(), megahertz.data() + megahertz.size(), value);
  return value > 0 && value < 1e6 ? static_cast<std::uint64_t>(value * 1e6) : 0;
}

int LinuxHostStatistics::namedValue(std::string_view name, NamedValue& value) {
  const auto give = [&value](auto found) {
    if (found == decltype(found){}) return ENOENT;
    value = std::move(found);
    return 0;
  };
  if (name == "hw.pagesize") return give(static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)));
  if (name == "hw.physmem" || name == "hw.memsize")
    return give(memInfoBytes(text("/proc/meminfo"), "MemTotal").value_or(0));
  if (name == "hw.ncpu")
    return give(static_cast<std::uint64_t>(coreTicksFrom(text("/proc/stat")).size()));
  if (name == "hw.cpufrequency") return give(frequency());
  if (name == "hw.model") return give(model());
  if (name == "machdep.cpu.brand_string") return give(brand());
  if (name == "kern.hv_vmm_present") {
    const std::string cpuInfo = text("/proc/cpuinfo");
    const std::string flags = " " + std::string(cpuInfoValue(cpuInfo, "flags")) + " ";
    value = std::uint64_t{flags.find(" hypervisor ") != std::string::npos};
    return 0;
  }
  utsname system{};
  if (uname(&system) != 0) return errno;
  if (name == "kern.osrelease") return give(std::string(system.release));
  if (name == "kern.osversion") return give(buildNumber(system.version));
  if (name == "kern.hostname") return give(std::string(system.nodename));
  return ENOENT;
}

std::optional<std::string> LinuxHostStatistics::platformProperty(std::string_view name) {
  constexpr std::array<std::pair<std::string_view, const char*>, 4> kFiles = {{
      {"IOPlatformSerialNumber", "product_serial"},
      {"IOPlatformUUID", "product_uuid"},
      {"manufacturer", "sys_vendor"},
      {"model", "product_name"},
  }};
  for (const auto& [property, file] : kFiles) {
    if (property != name) continue;
    std::string found = firmwareText(file);
    return found.empty() ? std::nullopt : std::optional(std::move(found));
  }
  return std::nullopt;
}

std::string LinuxHostStatistics::productName() {
  std::string name = productNameFrom(text("/etc/os-release"));
  return name.empty() ? productNameFrom(text("/usr/lib/os-release")) : name;
}

}  // namespace brisko
