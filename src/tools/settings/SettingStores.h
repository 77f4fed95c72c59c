#pragma once

#include <optional>
#include <string>

namespace brisko {

/// Where a desktop keeps a setting, and under which name.
struct SettingPlace {
  const char* where;           ///< schema, channel, file and group: as its store has it
  const char* key;             ///< in there
  const char* type = nullptr;  ///< of a value that is not there yet, where the store asks
};

/// A kind of place that settings are kept in.
struct SettingStore {
  /// The value as text; nothing when there is no such setting or nobody to ask.
  std::optional<std::string> (*get)(const SettingPlace& place);
  /// What went wrong shows when the value is read again.
  void (*set)(const SettingPlace& place, const std::string& value);
};

/// GSettings: schema and key, values as that writes them ("true", "'text'").
extern const SettingStore kGsettings;
/// GNOME Shell's extensions, "true" or "false" for one that is installed; `where` names it.
extern const SettingStore kShellExtension;
/// Xfconf: channel and property. A property that was never set is "".
extern const SettingStore kXfconf;
/// KDE's configuration files: "FILE|GROUP" and key. A key that was never set is "".
extern const SettingStore kKdeConfig;
/// KDE's colours, "dark" or "light".
extern const SettingStore kPlasmaColours;
/// KDE's panels, "autohide" or "none".
extern const SettingStore kPlasmaPanels;
/// Whether KDE keeps notices back, "true" or "false".
extern const SettingStore kPlasmaQuiet;
/// KDE's night colour, "true" or "false".
extern const SettingStore kPlasmaNight;

}  // namespace brisko
