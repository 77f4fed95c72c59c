#include "NSUserDefaults.h"

#include "Host.h"

#include <algorithm>

namespace brisko {
namespace {

constexpr const char* kDomain = "loginwindow";
constexpr const char* kKey = "AutoLaunchedApplicationDictionary";

bool names(const PropertyList& entry, const std::string& path) {
  const PropertyList& own = entry["Path"];
  return own.isString() && own.string().find(path) != std::string::npos;
}

PropertyList::Array entries() {
  return Host::current().preferences->persistentDomain(kDomain)[kKey].array();
}

// Only the one key is changed, so that nothing else of the domain is written back older than it is.
bool write(PropertyList::Array entries) {
  Preferences& preferences = *Host::current().preferences;
  preferences.setValue(kDomain, kKey, std::move(entries));
  return preferences.synchronize();
}

}  // namespace

bool NSUserDefaults::addApplicationToLoginItems(const std::string& path) {
  PropertyList::Array all = entries();
  const auto isThis = [&](const PropertyList& entry) { return names(entry, path); };
  if (std::any_of(all.begin(), all.end(), isThis)) return false;
  all.push_back(PropertyList::Dictionary{{"Path", path}, {"Hide", false}});
  return write(std::move(all));
}

bool NSUserDefaults::removeApplicationFromLoginItems(const std::string& path) {
  PropertyList::Array all = entries();
  if (std::erase_if(all, [&](const PropertyList& entry) { return names(entry, path); }) == 0) {
    return false;
  }
  return write(std::move(all));
}

}  // namespace brisko
