#include "LinuxLaunchedApplications.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

std::string unescaped(std::string_view escaped) {
  std::string plain;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    unsigned value = 0;
    if (escaped.substr(i, 2) == "\\x" && i + 3 < escaped.size() &&
        std::from_chars(&escaped[i + 2], &escaped[i + 2] + 2, value, 16).ec == std::errc()) {
      plain += static_cast<char>(value);
      i += 3;
    } else {
      plain += escaped[i];
    }
  }
  return plain;
}

// The last "app-….scope" or "app-….service" of the process's place in the group tree.
std::string unitOf(const std::string& groupFile) {
  std::ifstream stream(groupFile);
  for (std::string line; std::getline(stream, line);) {
    const std::size_t slash = line.rfind("/app-");
    if (slash == std::string::npos) continue;
    std::string unit = line.substr(slash + 1);
    return unit.substr(0, unit.find('/'));
  }
  return {};
}

}  // namespace

std::string applicationIdOfUnit(std::string_view unit) {
  if (!unit.starts_with("app-")) return {};
  unit.remove_prefix(4);
  if (unit.ends_with(".scope")) {
    unit.remove_suffix(6);
    const std::size_t random = unit.rfind('-');
    if (random == std::string_view::npos) return {};
    unit = unit.substr(0, random);
  } else if (unit.ends_with(".service")) {
    unit.remove_suffix(8);
    unit = unit.substr(0, unit.find('@'));
  } else {
    return {};
  }
  // A "-" inside the id is escaped, so one that is left separates the launcher from it.
  return unescaped(unit.substr(unit.rfind('-') + 1));
}

std::vector<LaunchedApplication> linuxLaunchedApplications(const std::string& proc) {
  std::map<std::string, LaunchedApplication> byUnit;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(proc, error)) {
    const std::string name = entry.path().filename();
    int process = 0;
    const auto parsed = std::from_chars(name.data(), name.data() + name.size(), process);
    if (parsed.ec != std::errc() || parsed.ptr != name.data() + name.size()) continue;
    struct stat status;
    if (stat(entry.path().c_str(), &status) != 0 || status.st_uid != getuid()) continue;
    const std::string unit = unitOf(entry.path() / "cgroup");
    const std::string id = applicationIdOfUnit(unit);
    if (id.empty()) continue;
    LaunchedApplication& application = byUnit[unit];
    if (application.processIdentifier != 0 && application.processIdentifier < process) continue;
    application.bundleIdentifier = id;
    application.name = id;
    application.iconName = id;
    application.processIdentifier = process;
    application.path = fs::read_symlink(entry.path() / "exe", error);
  }
  std::vector<LaunchedApplication> applications;
  for (auto& [unit, application] : byUnit)
    applications.push_back(std::move(application));
  std::sort(applications.begin(), applications.end(),
            [](const auto& a, const auto& b) { return a.processIdentifier < b.processIdentifier; });
  return applications;
}

}  // namespace brisko
