#include "SystemTexts.h"

#include "CommUti.h"
#include "Host.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include <pwd.h>
#include <unistd.h>

namespace brisko {
namespace {

std::string counted(std::uint64_t count, const char* one, const char* many) {
  return fmt::format("{} {}", count, count == 1 ? one : many);
}

// Name, and full name, which is the first of the comma-separated facts about a user.
void fillUser(VarSystemInfo& info) {
  passwd entry{};
  passwd* found = nullptr;
  char buffer[4096];
  if (getpwuid_r(getuid(), &entry, buffer, sizeof buffer, &found) != 0 || found == nullptr) return;
  const std::string facts = found->pw_gecos != nullptr ? found->pw_gecos : "";
  info.sysFullUserName = facts.substr(0, facts.find(','));
  if (info.sysUserName.empty()) info.sysUserName = found->pw_name;
}

}  // namespace

std::string SystemTexts::percent(double fraction) {
  return fmt::format("{}%", std::lround(std::clamp(fraction, 0.0, 1.0) * 100));
}

std::string SystemTexts::rate(double bytesPerSecond) {
  const double whole = std::round(std::clamp(bytesPerSecond, 0.0, 1e18));
  return CommUti::convertVolSpace(static_cast<std::uint64_t>(whole)) + "/s";
}

double SystemTexts::usedFraction(std::uint64_t totalBytes, std::uint64_t freeBytes) {
  if (totalBytes == 0 || freeBytes > totalBytes) return 0;
  return 1 - static_cast<double>(freeBytes) / static_cast<double>(totalBytes);
}

std::string SystemTexts::degrees(double celsius) {
  return fmt::format("{} °C", std::lround(celsius));
}

std::string SystemTexts::upTime(std::uint64_t seconds) {
  const std::uint64_t minutes = seconds / 60;
  const std::uint64_t hours = minutes / 60;
  const std::uint64_t days = hours / 24;
  if (seconds == 0) return {};
  if (minutes == 0) return "less than a minute";
  if (hours == 0) return fmt::format("{} min", minutes);
  if (days == 0) return fmt::format("{} h {} min", hours, minutes % 60);
  return fmt::format("{} {} h", counted(days, "day", "days"), hours % 24);
}

std::optional<double> SystemTexts::hottest(const SystemSample& sample, Temperature::Kind kind) {
  std::optional<double> highest;
  for (const Temperature& each : sample.temperatures) {
    if (each.kind == kind) highest = std::max(highest.value_or(each.celsius), each.celsius);
  }
  return highest;
}

std::string SystemTexts::networkState(const SystemSample& sample) {
  if (sample.interfaces.empty()) return "No network device";
  std::string names;
  for (const TransferCounters& each : sample.interfaces) {
    if (each.isUp) names += (names.empty() ? "" : ", ") + each.name;
  }
  return names.empty() ? "Not connected" : "Connected through " + names;
}

std::string SystemTexts::machineName(const VarSystemInfo& info) {
  if (!info.sysModelName.empty()) return info.sysModelName;
  return VarSystemInfo::_numControlEntry("kern.hv_vmm_present") != 0 ? "Virtual machine"
                                                                     : "This machine";
}

std::string SystemTexts::processor(const VarSystemInfo& info) {
  std::string text;
  const auto add = [&text](const std::string& part) {
    if (!part.empty()) text += (text.empty() ? "" : ", ") + part;
  };
  add(info.sysProcessorName);
  add(info.sysProcessorCount.empty()
          ? ""
          : info.sysProcessorCount + (info.sysProcessorCount == "1" ? " core" : " cores"));
  add(info.sysProcessorSpeed);
  return text;
}

std::string SystemTexts::system(const VarSystemInfo& info) {
  if (info.sysOSVersion.empty()) return info.sysOSName;
  const std::string kernel = "kernel " + info.sysOSVersion;
  return info.sysOSName.empty() ? kernel : info.sysOSName + ", " + kernel;
}

VarSystemInfo SystemTexts::systemInformation() {
  VarSystemInfo info;
  const auto text = [](const char* name) {
    return VarSystemInfo::_strControlEntry(name).value_or("");
  };
  const auto property = [](const char* name) {
    return VarSystemInfo::_strIORegistryEntry(name).value_or("");
  };
  info.sysName = text("kern.hostname");
  info.sysUserName = CommUti::userName();
  fillUser(info);
  info.sysOSName = Host::current().statistics->productName();
  if (info.sysOSName.empty()) info.sysOSName = VarSystemInfo::getMinorVer().value_or("");
  info.sysOSVersion = text("kern.osrelease");
  const std::uint64_t memory = VarSystemInfo::_numControlEntry("hw.memsize");
  if (memory != 0)
    info.sysPhysicalMemory = SSMemoryInfo::covertMemory(static_cast<std::int64_t>(memory));
  info.sysSerialNumber = property("IOPlatformSerialNumber");
  info.sysUUID = property("IOPlatformUUID");
  info.sysProcessorName = VarSystemInfo::_parseBrandName(text("machdep.cpu.brand_string"));
  const std::uint64_t hertz = VarSystemInfo::_numControlEntry("hw.cpufrequency");
  if (hertz != 0)
    info.sysProcessorSpeed = fmt::format("{:.2f} GHz", static_cast<double>(hertz) / 1e9);
  const std::uint64_t cores = VarSystemInfo::_numControlEntry("hw.ncpu");
  if (cores != 0) info.sysProcessorCount = std::to_string(cores);
  return info;
}

}  // namespace brisko
