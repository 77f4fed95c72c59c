#include "SettingStores.h"

#include "HostTools.h"
#include "Trimmed.h"

#include <sstream>
#include <vector>

namespace brisko {
namespace {

std::optional<std::string> outputOf(const std::vector<std::string>& arguments) {
  const HostTools::Outcome outcome = HostTools::run(arguments);
  if (outcome.status != 0) return std::nullopt;
  return std::string(trimmed(outcome.output));
}

bool hasLine(const std::string& text, const std::string& wanted) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    if (trimmed(line) == wanted) return true;
  return false;
}

std::optional<std::string> getGsettings(const SettingPlace& place) {
  return outputOf({"gsettings", "get", place.where, place.key});
}

void setGsettings(const SettingPlace& place, const std::string& value) {
  HostTools::run({"gsettings", "set", place.where, place.key, value});
}

std::optional<std::string> getExtension(const SettingPlace& place) {
  const auto installed = outputOf({"gnome-extensions", "list"});
  if (!installed || !hasLine(*installed, place.where)) return std::nullopt;
  const auto enabled = outputOf({"gnome-extensions", "list", "--enabled"});
  return enabled && hasLine(*enabled, place.where) ? "true" : "false";
}

void setExtension(const SettingPlace& place, const std::string& value) {
  HostTools::run({"gnome-extensions", value == "true" ? "enable" : "disable", place.where});
}

std::optional<std::string> getXfconf(const SettingPlace& place) {
  if (auto value = outputOf({"xfconf-query", "-c", place.where, "-p", place.key})) return value;
  // A property is only there once somebody has set it.
  const auto channels = outputOf({"xfconf-query", "-l"});
  return channels && hasLine(*channels, place.where) ? std::optional<std::string>("")
                                                     : std::nullopt;
}

void setXfconf(const SettingPlace& place, const std::string& value) {
  const std::vector<std::string> base = {"xfconf-query", "-c", place.where, "-p", place.key};
  std::vector<std::string> change = base;
  change.insert(change.end(), {"-s", value});
  if (HostTools::run(change).status == 0) return;
  change = base;
  change.insert(change.end(), {"-n", "-t", place.type, "-s", value});
  HostTools::run(change);
}

}  // namespace

const SettingStore kGsettings = {getGsettings, setGsettings};
const SettingStore kShellExtension = {getExtension, setExtension};
const SettingStore kXfconf = {getXfconf, setXfconf};

}  // namespace brisko
