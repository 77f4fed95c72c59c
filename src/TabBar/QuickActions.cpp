#include "QuickActions.h"

#include "Host.h"
#include "HostTools.h"
#include "PreventSleep.h"
#include "QuickCommands.h"
#include "Resources.h"
#include "SystemLog.h"
#include "ZKLinkUrl.h"

#include <strings.h>

namespace brisko {
namespace {

constexpr const char* kOpenNight = "openNight";
constexpr const char* kFinder = "com.apple.finder";

// Desktop icons and hidden files: "TRUE" or "FALSE" in a key that is read when the browser starts.
SwitchState writeFinder(const char* key, bool value, bool isOn) {
  const std::string command =
      fmt::format("defaults write {} {} {};killall Finder", kFinder, key, value ? "TRUE" : "FALSE");
  return QuickCommands::meant(isOn, QuickCommands::bash(command).reason("defaults"));
}

SwitchState readFinder(const char* key, const char* textOfOn) {
  const auto answer = QuickCommands::bash(fmt::format("defaults read {} {}", kFinder, key));
  SystemLog::line("1--------|{}|", answer.output);
  return QuickCommands::meant(answer.output == textOfOn, answer.reason("defaults"));
}

SwitchState turnDarkMode(bool isOn) {
  const auto script = Resources::find(isOn ? "ToDarkMode.scpt" : "ToNotDarkMode.scpt");
  const auto answer = QuickCommands::run({"osascript", "-e", script.value_or("")});
  return QuickCommands::meant(isOn, answer.reason("osascript"));
}

void writeOpenNight(bool isOn) {
  PropertyList table = Resources::settings(ZKLinkUrl::kTable);
  // The file is written in place, and a full disk cuts it: the links in it are not to go with it.
  if (!table.isDictionary()) {
    table =
        PropertyList::parse(Resources::builtIn(ZKLinkUrl::kTable).value_or(""), ZKLinkUrl::kTable);
  }
  table.set(kOpenNight, isOn);
  Resources::writeTable(ZKLinkUrl::kTable, table);
}

SwitchState turnNightLight(bool isOn) {
  writeOpenNight(isOn);
  const std::string reason = QuickCommands::run({"nshift", isOn ? "50" : "0"}).reason("nshift");
  // What cannot be had is not remembered as on.
  if (isOn && !reason.empty()) writeOpenNight(false);
  return QuickCommands::meant(isOn, reason);
}

bool isSameText(const std::string& left, const char* right) {
  return ::strcasecmp(left.c_str(), right) == 0;
}

}  // namespace

const std::array<QuickAction, QuickActions::kCount>& QuickActions::all() {
  static constexpr std::array<QuickAction, kCount> actions = {{
      {1, "hide-icons", "Hide Icons", "Hides the icons on the desktop", "ic_desktop",
       "ic_hide_desktop", true},
      {2, "dark-mode", "Dark Mode", "Makes windows and menus dark", "ic_light", "ic_dark", true},
      {3, "hidden-files", "Hidden Files", "Shows hidden files in the file browser", "ic_hide",
       "ic_unhide", true},
      {4, "screen-saver", "Screen Saver", "Starts the screen saver now", "ic_screensaver",
       "ic_screensaver", false},
      {5, "keep-awake", "Keep Awake", "Keeps the machine awake while Brisko runs", "ic_awake",
       "ic_awake_on", true},
      {6, "do-not-disturb", "Do Not Disturb", "Keeps notifications back", "ic_notice",
       "ic_notice_close", true},
      {7, "night-light", "Night Light", "Makes the screen's colours warmer", "ic_Night",
       "ic_Nighton", true},
      {8, "hide-dock", "Hide Dock", "Hides the dock while it is not used", "ic_dock",
       "ic_hide_desktop", true},
  }};
  return actions;
}

const QuickAction* QuickActions::find(const std::string& name) {
  for (const QuickAction& action : all()) {
    if (isSameText(name, action.name) || isSameText(name, action.title) ||
        name == std::to_string(action.index))
      return &action;
  }
  return nullptr;
}

SwitchState QuickActions::read(int index) {
  switch (index) {
    case kDesktopIcons:
      return getShowDesktopIcon();
    case kDarkMode:
      return getDarkMode();
    case kHiddenFiles:
      return getShowAllFiles();
    case kKeepAwake:
      return {isSleepPrevented(), ""};
    case kDoNotDisturb:
      return getDoNotDisturb();
    case kNightLight:
      return getIsOpenNight();
    case kDockHiding:
      return getDockHide();
    default:
      return {};
  }
}

SwitchState QuickActions::toggle(int index, bool isOn) {
  switch (index) {
    case kDarkMode:
      return updateDarkMode();
    case kDoNotDisturb:
      return setDoNotDisturb();
    case kNightLight:
      return setNightLight();
    default:
      return turn(index, !isOn);
  }
}

SwitchState QuickActions::turn(int index, bool isOn) {
  switch (index) {
    case kDesktopIcons:
      return hiddenDesktopIcon(isOn);
    case kDarkMode:
      return turnDarkMode(isOn);
    case kHiddenFiles:
      return hiddenHiddenFiles(isOn);
    case kScreenSaver:
      return openScreen();
    case kKeepAwake:
      return enablePowerSave(isOn);
    case kDoNotDisturb:
      return isOn ? turnDoNotDisturbOn() : turnDoNotDisturbOff();
    case kNightLight:
      return turnNightLight(isOn);
    case kDockHiding:
      return setDockHide(isOn);
    default:
      return {};
  }
}

SwitchState QuickActions::getShowDesktopIcon() {
  return readFinder("CreateDesktop", "FALSE");
}

SwitchState QuickActions::hiddenDesktopIcon(bool isHidden) {
  return writeFinder("CreateDesktop", !isHidden, isHidden);
}

SwitchState QuickActions::getShowAllFiles() {
  return readFinder("AppleShowAllFiles", "TRUE");
}

SwitchState QuickActions::hiddenHiddenFiles(bool isShown) {
  return writeFinder("AppleShowAllFiles", isShown, isShown);
}

SwitchState QuickActions::getDarkMode() {
  // Where the tool stands in for the system's, it brings the stored preference into step with the
  // desktop, and says when that has no such thing.
  const auto answer = QuickCommands::run({"defaults", "read", "-g", "AppleInterfaceStyle"});
  const PropertyList style =
      Host::current().preferences->value(Preferences::kGlobalDomain, "AppleInterfaceStyle");
  return QuickCommands::meant(isSameText(style.string(), "dark"), answer.reason("defaults"));
}

SwitchState QuickActions::updateDarkMode() {
  return turnDarkMode(!getDarkMode().isOn);
}

SwitchState QuickActions::openScreen() {
  return {false, QuickCommands::bash("open -a ScreenSaverEngine.app").reason("open")};
}

SwitchState QuickActions::enablePowerSave(bool isOn) {
  if (isOn) return QuickCommands::meant(true, PreventSleep());
  ReleasePreventObj();
  return {};
}

SwitchState QuickActions::getIsOpenNight() {
  return {Resources::settings(ZKLinkUrl::kTable)[kOpenNight].boolean(), ""};
}

SwitchState QuickActions::setNightLight() {
  return turnNightLight(!getIsOpenNight().isOn);
}

SwitchState QuickActions::getDockHide() {
  const auto answer = QuickCommands::bash("defaults read com.apple.dock autohide");
  SystemLog::line("dock ------ |{}|", answer.output);
  return QuickCommands::meant(answer.output != "0", answer.reason("defaults"));
}

SwitchState QuickActions::setDockHide(bool isHidden) {
  const std::string source = fmt::format(
      "                        tell application \"System Events\"\n"
      "                        set autohide of dock preferences to {}\n"
      "                        end tell",
      isHidden ? "true" : "no");
  const auto answer = QuickCommands::run({"osascript", "-e", source});
  return QuickCommands::meant(isHidden, answer.reason("osascript"));
}

void QuickActions::setComputerSleep() {
  PowerAssertion& power = *Host::current().powerAssertion;
  power.release(power
                    .create(PowerAssertion::kNoDisplaySleep, PowerAssertion::kLevelOn,
                            "Describe Activity Type")
                    .identifier);
}

}  // namespace brisko
