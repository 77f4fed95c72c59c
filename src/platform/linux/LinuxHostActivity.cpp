#include "LinuxHostActivity.h"

#include "LinuxCounters.h"
#include "LinuxTemperatures.h"
#include "RegularFile.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include <unistd.h>

namespace brisko {
namespace {

constexpr std::size_t kLargestFile = 4u << 20;

}  // namespace

LinuxHostActivity::LinuxHostActivity(std::string root) : root_(std::move(root)) {}

std::string LinuxHostActivity::text(const std::string& path) const {
  int error = 0;
  return readFile(root_ + path, kLargestFile, error).value_or("");
}

bool LinuxHostActivity::exists(const std::string& path) const {
  return access((root_ + path).c_str(), F_OK) == 0;
}

std::vector<TransferCounters> LinuxHostActivity::disks() {
  // Only whole disks are in this folder, and only those that are made of hardware have a device.
  return disksFrom(text("/proc/diskstats"), [this](const std::string& name) {
    return exists("/sys/block/" + name + "/device");
  });
}

std::vector<TransferCounters> LinuxHostActivity::networkInterfaces() {
  auto interfaces = interfacesFrom(text("/proc/net/dev"));
  for (TransferCounters& each : interfaces) {
    // Drivers that do not watch their line say "unknown".
    const std::string state = text("/sys/class/net/" + each.name + "/operstate");
    each.isUp = state.starts_with("up") || state.starts_with("unknown");
  }
  const auto isVirtual = [this](const TransferCounters& each) {
    return !exists("/sys/class/net/" + each.name + "/device");
  };
  if (!std::all_of(interfaces.begin(), interfaces.end(), isVirtual))
    std::erase_if(interfaces, isVirtual);
  return interfaces;
}

std::vector<Temperature> LinuxHostActivity::temperatures() {
  return linuxTemperatures(root_ + "/sys/class");
}

std::optional<std::uint64_t> LinuxHostActivity::upTimeSeconds() {
  const std::string upTime = text("/proc/uptime");
  std::uint64_t seconds = 0;
  const auto [end, error] = std::from_chars(upTime.data(), upTime.data() + upTime.size(), seconds);
  return error == std::errc() ? std::optional(seconds) : std::nullopt;
}

}  // namespace brisko
