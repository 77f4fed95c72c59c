#include "LinuxCounters.h"

#include "Trimmed.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace brisko {
namespace {

constexpr std::uint64_t kKibibyte = 1024;
constexpr std::uint64_t kSector = 512;  // bytes; the kernel counts in these whatever the disk has

template <typename Visitor>
void eachLine(std::string_view text, Visitor visit) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    visit(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::vector<std::string_view> words(std::string_view line) {
  std::vector<std::string_view> found;
  while (!(line = trimmed(line)).empty()) {
    const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
    found.push_back(line.substr(0, end));
    line.remove_prefix(end);
  }
  return found;
}

bool parse(std::string_view word, std::uint64_t& number) {
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  return error == std::errc() && end == word.data() + word.size();
}

std::uint64_t number(const std::vector<std::string_view>& words, std::size_t index) {
  std::uint64_t value = 0;
  return index < words.size() && parse(words[index], value) ? value : 0;
}

std::uint64_t vmStatCount(std::string_view vmStat, std::string_view name) {
  std::uint64_t count = 0;
  eachLine(vmStat, [&](std::string_view line) {
    if (line.size() > name.size() && line.starts_with(name) && line[name.size()] == ' ') {
      parse(trimmed(line.substr(name.size())), count);
    }
  });
  return count;
}

}  // namespace

std::map<int, CoreTicks> coreTicksFrom(std::string_view stat) {
  std::map<int, CoreTicks> cores;
  eachLine(stat, [&](std::string_view line) {
    if (!line.starts_with("cpu")) return;
    const auto fields = words(line);
    std::uint64_t core = 0;
    // The line "cpu" without a number is the sum of all; an unfinished line has no idle time.
    constexpr std::size_t kIdle = 4;
    if (!parse(fields[0].substr(3), core) || core > 65535 || fields.size() <= kIdle) return;
    // user nice system idle iowait irq softirq steal; guests' time is within user already
    CoreTicks& ticks = cores[static_cast<int>(core)];
    ticks.user = number(fields, 1);
    ticks.nice = number(fields, 2);
    ticks.system = number(fields, 3) + number(fields, 6) + number(fields, 7) + number(fields, 8);
    ticks.idle = number(fields, kIdle) + number(fields, 5);
  });
  return cores;
}

std::optional<std::uint64_t> memInfoBytes(std::string_view memInfo, std::string_view name) {
  std::optional<std::uint64_t> bytes;
  eachLine(memInfo, [&](std::string_view line) {
    if (bytes || !line.starts_with(name) || !line.substr(name.size()).starts_with(':')) return;
    const auto fields = words(line.substr(name.size() + 1));
    std::uint64_t kibibytes = 0;
    if (!fields.empty() && parse(fields[0], kibibytes)) bytes = kibibytes * kKibibyte;
  });
  return bytes;
}

bool virtualMemoryFrom(std::string_view memInfo, std::string_view vmStat, std::uint64_t pageSize,
                       VirtualMemoryStatistics& statistics) {
  const auto total = memInfoBytes(memInfo, "MemTotal");
  const auto free = memInfoBytes(memInfo, "MemFree");
  if (!total || !free || pageSize == 0) return false;
  const auto bytes = [&](std::string_view name) { return memInfoBytes(memInfo, name).value_or(0); };
  // Kernels before 3.14 do not say what is available; then it is the cache but for shared memory.
  const std::uint64_t cache = bytes("Buffers") + bytes("Cached") + bytes("SReclaimable");
  const std::uint64_t available =
      std::clamp(memInfoBytes(memInfo, "MemAvailable")
                     .value_or(*free + cache - std::min(cache, bytes("Shmem"))),
                 *free, std::max(*free, *total));
  const std::uint64_t used = *total - std::min(*total, available);
  const std::uint64_t ofPrograms = std::min(used, bytes("AnonPages") + bytes("Shmem"));
  const auto pages = [pageSize](std::uint64_t amount) {
    return static_cast<std::uint32_t>(amount / pageSize);
  };
  const auto count = [&](std::string_view name) {
    return static_cast<std::uint32_t>(vmStatCount(vmStat, name));
  };
  VirtualMemoryStatistics read;
  read.free = pages(*free);
  read.inactive = pages(available - *free);
  read.active = pages(ofPrograms);
  read.wired = pages(used - ofPrograms);
  read.reactivations = count("pgactivate");
  // These two count kibibytes, whatever a page is.
  read.pageIns = pages(vmStatCount(vmStat, "pgpgin") * kKibibyte);
  read.pageOuts = pages(vmStatCount(vmStat, "pgpgout") * kKibibyte);
  read.faults = count("pgfault");
  read.copyOnWriteFaults = count("pgreuse");
  read.purges = count("pglazyfreed");
  statistics = read;
  return true;
}

std::vector<TransferCounters> disksFrom(std::string_view diskStats,
                                        const std::function<bool(const std::string&)>& isDisk) {
  std::vector<TransferCounters> disks;
  eachLine(diskStats, [&](std::string_view line) {
    // major minor name reads merged sectors-read ms writes merged sectors-written …
    constexpr std::size_t kSectorsRead = 5;
    constexpr std::size_t kSectorsWritten = 9;
    const auto fields = words(line);
    if (fields.size() <= kSectorsWritten) return;
    std::string name(fields[2]);
    if (!isDisk(name)) return;
    disks.push_back({std::move(name), number(fields, kSectorsRead) * kSector,
                     number(fields, kSectorsWritten) * kSector, true});
  });
  return disks;
}

std::vector<TransferCounters> interfacesFrom(std::string_view netDev) {
  std::vector<TransferCounters> interfaces;
  eachLine(netDev, [&](std::string_view line) {
    // "name:" may be followed by the first figure without a blank; a name may hold a colon itself.
    const std::size_t colon = line.rfind(':');
    if (colon == std::string_view::npos) return;
    constexpr std::size_t kReceived = 0;
    constexpr std::size_t kSent = 8;
    const auto fields = words(line.substr(colon + 1));
    const std::string name(trimmed(line.substr(0, colon)));
    if (fields.size() <= kSent || name == "lo") return;
    interfaces.push_back({name, number(fields, kReceived), number(fields, kSent), true});
  });
  return interfaces;
}

std::string_view cpuInfoValue(std::string_view cpuInfo, std::string_view key) {
  std::string_view value;
  eachLine(cpuInfo, [&](std::string_view line) {
    const std::size_t colon = line.find(':');
    if (!value.empty() || colon == std::string_view::npos) return;
    if (trimmed(line.substr(0, colon)) == key) value = trimmed(line.substr(colon + 1));
  });
  return value;
}

std::string productNameFrom(std::string_view osRelease) {
  std::string pretty;
  std::string plain;
  eachLine(osRelease, [&](std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return;
    std::string_view value = trimmed(line.substr(equals + 1));
    if (value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0]) {
      value = value.substr(1, value.size() - 2);
    }
    const std::string_view key = trimmed(line.substr(0, equals));
    if (key == "PRETTY_NAME") pretty = value;
    if (key == "NAME") plain = value;
  });
  return pretty.empty() ? plain : pretty;
}

}  // namespace brisko
