#include "StatusReport.h"

#include "Json.h"
#include "SystemLog.h"
#include "SystemTexts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brisko {
namespace {

constexpr std::size_t kLabel = 13;
constexpr std::size_t kFigure = 5;
constexpr double kNearlyFull = 0.9;
// Above this many cores each is only a figure.
constexpr std::size_t kMostBars = 32;

std::string figure(double fraction) {
  return rightAligned(SystemTexts::percent(fraction), kFigure);
}

std::string memoryText(std::uint64_t bytes) {
  return SSMemoryInfo::covertMemory(static_cast<std::int64_t>(bytes));
}

std::size_t barColumns(std::size_t columns) {
  return std::clamp<std::size_t>(columns / 4, 10, 40);
}

const char* kindName(Temperature::Kind kind) {
  switch (kind) {
    case Temperature::Kind::processor:
      return "processor";
    case Temperature::Kind::drive:
      return "drive";
    case Temperature::Kind::other:
      return "other";
  }
  return "other";
}

Json informationJson(const VarSystemInfo& info) {
  const std::pair<const char*, const std::string&> fields[] = {
      {"sysName", info.sysName},
      {"sysUserName", info.sysUserName},
      {"sysFullUserName", info.sysFullUserName},
      {"sysOSName", info.sysOSName},
      {"sysOSVersion", info.sysOSVersion},
      {"sysPhysicalMemory", info.sysPhysicalMemory},
      {"sysSerialNumber", info.sysSerialNumber},
      {"sysUUID", info.sysUUID},
      {"sysModelID", info.sysModelID},
      {"sysModelName", info.sysModelName},
      {"sysProcessorName", info.sysProcessorName},
      {"sysProcessorSpeed", info.sysProcessorSpeed},
      {"sysProcessorCount", info.sysProcessorCount}};
  Json object = Json::object();
  for (const auto& [key, value] : fields)
    object[key] = replacedUtf8(value);
  return object;
}

// Null where the host refuses the information.
Json processorJson(const SystemSample& sample) {
  if (sample.cores.empty()) return nullptr;
  Json cores = Json::array();
  for (const CpuLoad& core : sample.cores)
    cores.push_back({{"user", core.user}, {"system", core.system}});
  const CpuLoad together = sample.processor();
  return {{"user", together.user}, {"system", together.system}, {"cores", std::move(cores)}};
}

Json memoryJson(const SSMemoryInfo& memory) {
  return {{"totalMemory", memory.totalMemory},
          {"freeMemory", memory.freeMemory},
          {"wiredMemory", memory.wiredMemory},
          {"activeMemory", memory.activeMemory},
          {"inactiveMemory", memory.inactiveMemory},
          {"usedMomory", memory.usedMomory},
          {"pageIn", memory.pageIn},
          {"pageOut", memory.pageOut},
          {"virtualMemory", memory.virtualMemory}};
}

Json volumesJson(const std::vector<TCVolumDetail>& volumes) {
  Json all = Json::array();
  for (const TCVolumDetail& volume : volumes) {
    Json one = {{"volumeName", replacedUtf8(volume.volumeName)}};
    setPath(one, "volRootDir", volume.volRootDir);
    one["volType"] = volume.volType;
    one["bIsDefaultVol"] = volume.bIsDefaultVol;
    one["bCanEject"] = volume.bCanEject;
    one["totalSpace"] = volume.totalSpace;
    one["freeSpace"] = volume.freeSpace;
    one["nTotalSize"] = volume.nTotalSize;
    one["nFreeSize"] = volume.nFreeSize;
    all.push_back(std::move(one));
  }
  return all;
}

Json networkJson(const SystemSample& sample) {
  Json interfaces = Json::array();
  for (const TransferCounters& each : sample.interfaces)
    interfaces.push_back({{"name", replacedUtf8(each.name)}, {"isUp", each.isUp}});
  return {{"receivedBytesPerSecond", std::round(sample.network.in)},
          {"sentBytesPerSecond", std::round(sample.network.out)},
          {"interfaces", std::move(interfaces)}};
}

Json temperaturesJson(const SystemSample& sample) {
  Json all = Json::array();
  for (const Temperature& each : sample.temperatures) {
    all.push_back({{"name", replacedUtf8(each.name)},
                   {"kind", kindName(each.kind)},
                   {"celsius", each.celsius}});
  }
  return all;
}

}  // namespace

StatusReport::StatusReport(VarSystemInfo information)
    : information_(std::move(information)), style_(Style::ofStandardOutput()) {}

std::string StatusReport::line(std::string_view label, std::string_view text) const {
  if (text.empty()) return {};
  return style_.dim(leftAligned(label, kLabel)) + std::string(text) + "\n";
}

std::string StatusReport::bar(double fraction, std::size_t columns) const {
  const auto filled = static_cast<std::size_t>(
      std::lround(std::clamp(fraction, 0.0, 1.0) * static_cast<double>(columns)));
  std::string full;
  std::string rest;
  for (std::size_t i = 0; i < columns; ++i)
    (i < filled ? full : rest) += i < filled ? "█" : "░";
  return (fraction >= kNearlyFull ? style_.warning(full) : style_.accent(full)) + style_.dim(rest);
}

std::string StatusReport::machine(const SystemSample& sample) const {
  const auto safe = [](const std::string& text) { return escapedForDisplay(text); };
  return style_.bold(safe(SystemTexts::machineName(information_))) + "\n" +
         line("Processor", safe(SystemTexts::processor(information_))) +
         line("System", safe(SystemTexts::system(information_))) +
         line("Memory", information_.sysPhysicalMemory) +
         line("Up for", SystemTexts::upTime(sample.upTimeSeconds));
}

std::string StatusReport::processor(const SystemSample& sample, std::size_t columns) const {
  if (sample.cores.empty()) return line("Processor", "no information");
  const CpuLoad load = sample.processor();
  const std::string parts = fmt::format("  programs {}, system {}", SystemTexts::percent(load.user),
                                        SystemTexts::percent(load.system));
  return style_.bold(leftAligned("Processor", kLabel)) +
         bar(load.user + load.system, barColumns(columns)) + figure(load.user + load.system) +
         style_.dim(parts) + "\n" + cores(sample, columns);
}

// As many side by side as fit: few with a bar each, many as figures in numbered rows.
std::string StatusReport::cores(const SystemSample& sample, std::size_t columns) const {
  constexpr std::size_t kNumber = 3;
  constexpr std::size_t kBar = 10;
  constexpr std::size_t kGap = 2;
  const std::size_t count = sample.cores.size();
  const bool hasBars = count <= kMostBars;
  const std::size_t width = hasBars ? kNumber + 1 + kBar + kFigure : kFigure;
  const std::size_t room = columns > kLabel ? columns - kLabel : 0;
  const std::size_t inRow = std::max<std::size_t>(1, (room + kGap) / (width + kGap));
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    const double busy = sample.cores[i].user + sample.cores[i].system;
    if (i % inRow == 0) {
      const std::string label = hasBars
                                    ? (i == 0 ? "  cores" : "")
                                    : fmt::format("  {} to {}", i + 1, std::min(i + inRow, count));
      text += style_.dim(leftAligned(label, kLabel));
    } else {
      text += std::string(kGap, ' ');
    }
    if (hasBars)
      text += style_.dim(rightAligned(std::to_string(i + 1), kNumber)) + " " + bar(busy, kBar);
    text += figure(busy);
    if (i + 1 == count || (i + 1) % inRow == 0) text += "\n";
  }
  return text;
}

std::string StatusReport::memory(const SystemSample& sample, std::size_t columns) const {
  const SSMemoryInfo& memory = sample.memory;
  if (memory.totalMemory == 0) return line("Memory", "no information");
  const double fraction =
      static_cast<double>(memory.usedMomory) / static_cast<double>(memory.totalMemory);
  return style_.bold(leftAligned("Memory", kLabel)) + bar(fraction, barColumns(columns)) +
         figure(fraction) +
         style_.dim(fmt::format("  {} used of {}", memoryText(memory.usedMomory),
                                memoryText(memory.totalMemory))) +
         "\n" +
         line("", fmt::format("programs {}, system {}, cache {}, free {}",
                              memoryText(memory.activeMemory), memoryText(memory.wiredMemory),
                              memoryText(memory.inactiveMemory), memoryText(memory.freeMemory)));
}

std::string StatusReport::volumes(const std::vector<TCVolumDetail>& volumes,
                                  std::size_t columns) const {
  std::string text;
  for (const TCVolumDetail& volume : volumes) {
    const double fraction = SystemTexts::usedFraction(volume.nTotalSize, volume.nFreeSize);
    text += style_.bold(leftAligned(text.empty() ? "Volumes" : "", kLabel)) +
            bar(fraction, barColumns(columns)) + figure(fraction) + "  " +
            escapedForDisplay(volume.volumeName) +
            style_.dim(fmt::format("  {} free of {}", volume.freeSpace, volume.totalSpace)) + "\n";
  }
  return text;
}

std::string StatusReport::transfers(const SystemSample& sample) const {
  const auto both = [](const char* in, double inRate, const char* out, double outRate) {
    constexpr std::size_t kRate = 14;
    return fmt::format("{} {}   {} {}", in, leftAligned(SystemTexts::rate(inRate), kRate), out,
                       SystemTexts::rate(outRate));
  };
  const std::string disk = sample.disks.empty()
                               ? "no disk"
                               : both("read    ", sample.disk.in, "written", sample.disk.out);
  std::string text = style_.bold(leftAligned("Disks", kLabel)) + disk + "\n" +
                     style_.bold(leftAligned("Network", kLabel));
  const std::string state = escapedForDisplay(SystemTexts::networkState(sample));
  if (sample.interfaces.empty()) return text + style_.dim(state) + "\n";
  return text + both("received", sample.network.in, "sent   ", sample.network.out) + "\n" +
         line("", state);
}

std::string StatusReport::temperatures(const SystemSample& sample) const {
  std::string text;
  for (const Temperature& each : sample.temperatures) {
    text += style_.bold(leftAligned(text.empty() ? "Temperature" : "", kLabel)) +
            rightAligned(SystemTexts::degrees(each.celsius), 6) + "  " +
            style_.dim(escapedForDisplay(each.name)) + "\n";
  }
  return text;
}

std::string StatusReport::text(const SystemSample& sample,
                               const std::vector<TCVolumDetail>& volumeList,
                               std::size_t columns) const {
  return machine(sample) + "\n" + processor(sample, columns) + memory(sample, columns) +
         volumes(volumeList, columns) + transfers(sample) + temperatures(sample);
}

std::string StatusReport::json(const SystemSample& sample,
                               const std::vector<TCVolumDetail>& volumeList) const {
  const Json document = {{"machine", informationJson(information_)},
                         {"upTimeSeconds", sample.upTimeSeconds},
                         {"processor", processorJson(sample)},
                         {"memory", memoryJson(sample.memory)},
                         {"volumes", volumesJson(volumeList)},
                         {"disk",
                          {{"readBytesPerSecond", std::round(sample.disk.in)},
                           {"writtenBytesPerSecond", std::round(sample.disk.out)}}},
                         {"network", networkJson(sample)},
                         {"temperatures", temperaturesJson(sample)}};
  return documentText(document);
}

}  // namespace brisko
