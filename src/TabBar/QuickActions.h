#pragma once

#include <array>
#include <string>

namespace brisko {

/// Whether a switch is on, and why it cannot be where this system has no such setting.
struct SwitchState {
  bool isOn = false;
  std::string reason;  ///< empty where the switch works; for people
};

/// One of the switches: what does not change about it.
struct QuickAction {
  int index;            ///< from 1, in the order of the grid
  const char* name;     ///< for the command line
  const char* title;    ///< what it is when it is on
  const char* toolTip;  ///< what it does
  const char* iconOff;
  const char* iconOn;
  bool hasState;  ///< else it does something once
};

/// The eight quick switches: how each reads its state from the system and changes it.
///
/// Commands go to "/bin/bash -c". What they come to is not asked; but where a tool says on standard
/// error that this system has no such setting, the switch is off and says why. All of this runs
/// programs and waits for them: not for the main thread. Each switch by one thread at a time.
class QuickActions {
 public:
  enum Index : int {
    kDesktopIcons = 1,
    kDarkMode,
    kHiddenFiles,
    kScreenSaver,
    kKeepAwake,
    kDoNotDisturb,
    kNightLight,
    kDockHiding
  };
  static constexpr int kCount = 8;

  static const std::array<QuickAction, kCount>& all();
  /// By index, name or title, in any case; null for none of those.
  static const QuickAction* find(const std::string& name);

  /// What a switch is told to be with its reason in place of "%@", where it has one.
  static constexpr const char* kNotPossible = "Not possible here: %@.";

  /// "Active" or "Disabled".
  static const char* label(bool isOn) { return isOn ? "Active" : "Disabled"; }

  static SwitchState read(int index);
  /// What a press on the button does while it shows `isOn`.
  static SwitchState toggle(int index, bool isOn);
  /// Turns it on or off whatever it is now; the state that was meant, not one that is read.
  static SwitchState turn(int index, bool isOn);

  /// On while the icons are hidden. Logs "1--------|%@|" with what was read.
  static SwitchState getShowDesktopIcon();
  static SwitchState getDarkMode();
  /// Logs "1--------|%@|".
  static SwitchState getShowAllFiles();
  /// By the notices' preference file below version 1015, by the command's output from there on; off
  /// without a file. Logs "----%@" with the file, "outputString ------ %@", "system version
  /// -----------%d" and "isOpen ------ %d".
  static SwitchState getDoNotDisturb();
  /// By "openNight" in the settings table, whatever the screen shows.
  static SwitchState getIsOpenNight();
  /// Logs "dock ------ |%@|".
  static SwitchState getDockHide();

  static SwitchState hiddenDesktopIcon(bool isHidden);
  /// To dark when the appearance is not dark, else back.
  static SwitchState updateDarkMode();
  static SwitchState hiddenHiddenFiles(bool isShown);
  /// Starts the screen saver; never on.
  static SwitchState openScreen();
  static SwitchState enablePowerSave(bool isOn);
  /// On when the preference file says off, else off.
  static SwitchState setDoNotDisturb();
  static SwitchState turnDoNotDisturbOn();
  static SwitchState turnDoNotDisturbOff();
  /// Changes the stored "openNight" to its opposite and the screen with it.
  static SwitchState setNightLight();
  static SwitchState setDockHide(bool isHidden);

  /// The first file of the user's host preferences that belongs to the notices; empty for none.
  static std::string getDoNotDisturbPath();
  /// Makes changed preferences of the notices last and tells the session
  /// "com.apple.notificationcenterui.dndprefs_changed".
  static void commitDoNotDisturbChanges();
  /// Asserts for a moment that the display is not to sleep, which a host may take for activity. No
  /// switch needs it; it is there for whoever has something to show at once.
  static void setComputerSleep();
};

}  // namespace brisko
