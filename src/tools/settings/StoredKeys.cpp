#include "StoredKeys.h"

#include "LinuxHostFolders.h"
#include "Preferences.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>

namespace brisko {
namespace {

using S = DesktopSetting;

constexpr const char* kFinder = "com.apple.finder";
constexpr const char* kNotices = "com.apple.notificationcenterui";

const std::array<StoredKey, 6>& keys() {
  static const std::array<StoredKey, 6> table = {{
      {kFinder, "CreateDesktop", S::desktopIcons, "TRUE", "FALSE", true},
      {kFinder, "AppleShowAllFiles", S::hiddenFiles, "TRUE", "FALSE"},
      {"com.apple.dock", "autohide", S::dockHiding, true, false},
      {kNotices, "doNotDisturb", S::doNotDisturb, true, false},
      {kNotices, "doNotDisturbDate", S::doNotDisturb, {}, {}, false, true},
      {Preferences::kGlobalDomain, "AppleInterfaceStyle", S::darkMode, "Dark", {}},
  }};
  return table;
}

}  // namespace

const StoredKey* storedKey(std::string_view domain, std::string_view key) {
  const auto found = std::find_if(keys().begin(), keys().end(), [&](const StoredKey& each) {
    return domain == each.domain && key == each.key;
  });
  return found == keys().end() ? nullptr : &*found;
}

bool meansOn(const PropertyList& value) {
  if (!value.isString()) return value.boolean();
  std::string text = value.string();
  for (char& character : text)
    character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  return text == "true" || text == "yes" || text == "1" || text == "on" || text == "dark";
}

std::string userPreferencesFolder() {
  const char* root = std::getenv("BRISKO_ROOT");
  return LinuxHostFolders(root != nullptr ? root : "").variable("XDG_CONFIG_HOME").value_or("") +
         "/brisko/Preferences";
}

std::string hostPreferencesFolder() {
  return userPreferencesFolder() + "/ByHost";
}

}  // namespace brisko
