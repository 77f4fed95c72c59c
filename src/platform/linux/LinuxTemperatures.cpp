#include "LinuxTemperatures.h"

#include "RegularFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>

namespace brisko {
namespace {

namespace fs = std::filesystem;

std::string lineIn(const fs::path& file) {
  int error = 0;
  std::string text = readFile(file.string(), 4096, error).value_or("");
  return text.substr(0, text.find('\n'));
}

// Sensors tell thousandths of a degree.
std::optional<double> celsiusIn(const fs::path& file) {
  const std::string text = lineIn(file);
  long thousandths = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), thousandths);
  if (error != std::errc() || thousandths < -40'000 || thousandths > 150'000) return std::nullopt;
  return static_cast<double>(thousandths) / 1000;
}

// By the driver's name for hwmon, by the zone's type for thermal zones.
Temperature::Kind kindOf(std::string_view name) {
  constexpr std::array kProcessors = {"coretemp",    "k8temp",      "k10temp",
                                      "zenpower",    "cpu",         "x86_pkg_temp",
                                      "soc_thermal", "via_cputemp", "fam15h"};
  for (const char* processor : kProcessors) {
    if (name.starts_with(processor)) return Temperature::Kind::processor;
  }
  return name == "nvme" || name == "drivetemp" ? Temperature::Kind::drive
                                               : Temperature::Kind::other;
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    entries.push_back(entry->path());
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

// A drive's sensor is told apart by the drive's model, which people know.
std::string nameOf(const fs::path& monitor, const std::string& driver, const std::string& label) {
  if (kindOf(driver) == Temperature::Kind::drive) {
    std::string model = lineIn(monitor / "device/model");
    model.erase(model.find_last_not_of(' ') + 1);
    if (!model.empty()) return model;
  }
  return label.empty() ? driver : label;
}

void addMonitor(const fs::path& monitor, std::vector<Temperature>& found) {
  const std::string driver = lineIn(monitor / "name");
  for (const fs::path& file : entriesOf(monitor)) {
    constexpr std::string_view kSuffix = "_input";
    const std::string name = file.filename();
    if (!name.starts_with("temp") || !name.ends_with(kSuffix)) continue;
    const auto celsius = celsiusIn(file);
    if (!celsius) continue;
    const std::string sensor = name.substr(0, name.size() - kSuffix.size());
    found.push_back(
        {nameOf(monitor, driver, lineIn(monitor / (sensor + "_label"))), kindOf(driver), *celsius});
  }
}

void addZone(const fs::path& zone, std::vector<Temperature>& found) {
  if (!zone.filename().string().starts_with("thermal_zone")) return;
  const auto celsius = celsiusIn(zone / "temp");
  const std::string type = lineIn(zone / "type");
  if (celsius) found.push_back({type, kindOf(type), *celsius});
}

}  // namespace

std::vector<Temperature> linuxTemperatures(const std::string& classFolder) {
  std::vector<Temperature> found;
  for (const fs::path& monitor : entriesOf(classFolder + "/hwmon"))
    addMonitor(monitor, found);
  const auto isProcessor = [](const Temperature& each) {
    return each.kind == Temperature::Kind::processor;
  };
  if (std::none_of(found.begin(), found.end(), isProcessor)) {
    for (const fs::path& zone : entriesOf(classFolder + "/thermal"))
      addZone(zone, found);
  }
  std::stable_sort(found.begin(), found.end(), [](const Temperature& a, const Temperature& b) {
    return a.kind != b.kind ? a.kind < b.kind : a.celsius > b.celsius;
  });
  return found;
}

}  // namespace brisko
