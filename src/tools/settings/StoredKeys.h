#pragma once

#include "DesktopSettings.h"
#include "PropertyList.h"

#include <string>
#include <string_view>

namespace brisko {

/// A preference that stands for a setting of the desktop, and what is stored for on and off.
struct StoredKey {
  const char* domain;
  const char* key;
  DesktopSetting setting;
  PropertyList on;
  PropertyList off;          ///< null: the key is taken out
  bool untouched = false;    ///< the state of a system on which nobody has set it
  bool isCompanion = false;  ///< says more about the setting, and is stored where there is that

  PropertyList valueFor(bool isOn) const { return isOn ? on : off; }
};

/// Null for a preference that the desktop knows nothing of.
const StoredKey* storedKey(std::string_view domain, std::string_view key);

/// Whether a stored value, of any type, means on.
bool meansOn(const PropertyList& value);

/// The folder of the user's preference domains, as LinuxPreferences takes it.
std::string userPreferencesFolder();
/// That of the domains for this machine alone.
std::string hostPreferencesFolder();

}  // namespace brisko
