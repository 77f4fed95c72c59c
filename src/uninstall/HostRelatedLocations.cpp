#include "HostRelatedLocations.h"

#include "AppNames.h"
#include "Host.h"
#include "Resources.h"
#include "SystemLog.h"

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

constexpr const char* kTableName = "HostRelatedLocations.plist";
constexpr std::string_view kKey = "${KEY}";

// A placeholder stands at the start of a location only, so that its value is all that is trusted.
// Nothing for an unknown one.
std::optional<std::string> resolved(const std::string& location, const HostVariable& variable) {
  const std::size_t end = location.find('}');
  if (!location.starts_with("${") || end == std::string::npos) return std::nullopt;
  const auto value = variable(location.substr(2, end - 2));
  if (!value || !value->starts_with('/')) return std::nullopt;
  return *value + location.substr(end + 1);
}

// The complaint about a row, empty when it was taken.
std::string take(const PropertyList& entry, HostRelatedLocation& row, std::string& location) {
  for (const auto& [key, value] : entry.dictionary()) {
    if (key == "location") {
      location = value.string();
    } else if (key == "name") {
      row.pattern = value.string();
    } else if (key == "whole" && value.isBool()) {
      row.isWhole = value.boolean();
    } else if (key == "exclude" && value.isArray()) {
      for (const PropertyList& name : value.array())
        row.excluded.push_back(lowerCased(name.string()));
    } else {
      return "unknown key or value: " + key;
    }
  }
  if (!location.starts_with("${")) return "has no location below a base folder";
  if (row.pattern.find(kKey) == std::string::npos) return "has a name without the key";
  return "";
}

}  // namespace

bool HostRelatedLocation::matches(std::string_view entry, std::string_view key) const {
  if (withoutBlanks(key).empty()) return false;
  std::string wanted = pattern;
  wanted.replace(wanted.find(kKey), kKey.size(), key);
  if (isWhole) return entry == wanted;
  const std::string name = lowerCased(entry);
  if (std::find(excluded.begin(), excluded.end(), name) != excluded.end()) return false;
  wanted = lowerCased(wanted);
  return name.starts_with(wanted) || name.starts_with(withoutBlanks(wanted));
}

std::vector<HostRelatedLocation> hostRelatedLocations(const PropertyList& table,
                                                      const HostVariable& variable) {
  std::vector<HostRelatedLocation> rows;
  int index = 0;
  for (const PropertyList& entry : table["locations"].array()) {
    ++index;
    HostRelatedLocation row;
    std::string location;
    const std::string complaint = take(entry, row, location);
    if (!complaint.empty()) {
      SystemLog::line("{}: location {}: {}; none are used", kTableName, index, complaint);
      return {};
    }
    const auto folder = resolved(location, variable);
    if (!folder) continue;
    row.folder = *folder;
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<HostRelatedLocation> hostRelatedLocations() {
  return hostRelatedLocations(Resources::table(kTableName), [](std::string_view name) {
    return Host::current().folders->variable(name);
  });
}

}  // namespace brisko
