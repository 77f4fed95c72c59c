#pragma once

#include <optional>
#include <string>

namespace brisko {

/// What the quick switches change on a desktop.
enum class DesktopSetting {
  desktopIcons,  ///< they are shown
  darkMode,
  hiddenFiles,  ///< the file browser shows them
  doNotDisturb,
  dockHiding,  ///< dock or panel hides by itself
  nightLight,
};

/// The settings of the desktop that runs, wherever that desktop keeps them.
///
/// A desktop is known by XDG_CURRENT_DESKTOP. A setting that some program has installed but that
/// this desktop does not follow counts as none: writing it would change nothing that is seen. With
/// no desktop named, each setting that is there counts.
class DesktopSettings {
 public:
  /// Nothing, with the reason for people, where this desktop has no such setting.
  static std::optional<bool> read(DesktopSetting setting, std::string& reason);

  /// Changes it and looks whether it took. False, with the reason, when it did not.
  static bool write(DesktopSetting setting, bool isOn, std::string& reason);
};

}  // namespace brisko
