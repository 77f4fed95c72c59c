#include "DesktopSettings.h"

#include "SettingStores.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace brisko {
namespace {

using S = DesktopSetting;

/// One way in which a desktop keeps a setting.
struct Way {
  DesktopSetting setting;
  const char* desktop;  ///< that follows it, as XDG_CURRENT_DESKTOP names it; "" for all
  const SettingStore& store;
  SettingPlace place;
  const char* on;
  const char* off;
};

constexpr const char* kDolphinView =
    "dolphin/view_properties/global/.directory|Settings";  // below the user's data folder
constexpr const char* kDock = "org.gnome.shell.extensions.dash-to-dock";

// The first way of a setting that the desktop has tells its state; all that it has are written.
// clang-format off
const Way kWays[] = {
    {S::desktopIcons, "X-Cinnamon", kGsettings,
     {"org.nemo.desktop", "show-desktop-icons"}, "true", "false"},
    {S::desktopIcons, "MATE", kGsettings,
     {"org.mate.background", "show-desktop-icons"}, "true", "false"},
    {S::desktopIcons, "XFCE", kXfconf, {"xfce4-desktop", "/desktop-icons/style", "int"}, "2", "0"},
    // GNOME's own shell draws no icons; extensions do.
    {S::desktopIcons, "GNOME", kShellExtension, {"ding@rastersoft.com", ""}, "true", "false"},
    {S::desktopIcons, "GNOME", kShellExtension,
     {"gtk4-ding@smedius.gitlab.com", ""}, "true", "false"},
    {S::desktopIcons, "Unity", kGsettings,
     {"org.gnome.desktop.background", "show-desktop-icons"}, "true", "false"},

    {S::darkMode, "KDE", kPlasmaColours, {"", ""}, "dark", "light"},
    {S::darkMode, "", kGsettings,
     {"org.gnome.desktop.interface", "color-scheme"}, "'prefer-dark'", "'default'"},

    {S::hiddenFiles, "KDE", kKdeConfig, {kDolphinView, "HiddenFilesShown"}, "true", "false"},
    {S::hiddenFiles, "X-Cinnamon", kGsettings,
     {"org.nemo.preferences", "show-hidden-files"}, "true", "false"},
    {S::hiddenFiles, "MATE", kGsettings,
     {"org.mate.caja.preferences", "show-hidden-files"}, "true", "false"},
    {S::hiddenFiles, "XFCE", kXfconf, {"thunar", "/last-show-hidden", "bool"}, "true", "false"},
    {S::hiddenFiles, "", kGsettings,
     {"org.gtk.gtk4.Settings.FileChooser", "show-hidden"}, "true", "false"},
    {S::hiddenFiles, "", kGsettings,
     {"org.gtk.Settings.FileChooser", "show-hidden"}, "true", "false"},

    {S::doNotDisturb, "KDE", kPlasmaQuiet, {"", ""}, "true", "false"},
    {S::doNotDisturb, "X-Cinnamon", kGsettings,
     {"org.cinnamon.desktop.notifications", "display-notifications"}, "false", "true"},
    {S::doNotDisturb, "MATE", kGsettings,
     {"org.mate.NotificationDaemon", "do-not-disturb"}, "true", "false"},
    {S::doNotDisturb, "XFCE", kXfconf,
     {"xfce4-notifyd", "/do-not-disturb", "bool"}, "true", "false"},
    {S::doNotDisturb, "GNOME", kGsettings,
     {"org.gnome.desktop.notifications", "show-banners"}, "false", "true"},

    {S::dockHiding, "KDE", kPlasmaPanels, {"", ""}, "autohide", "none"},
    {S::dockHiding, "XFCE", kXfconf,
     {"xfce4-panel", "/panels/panel-1/autohide-behavior", "uint"}, "2", "0"},
    {S::dockHiding, "GNOME", kGsettings, {kDock, "dock-fixed"}, "false", "true"},

    {S::nightLight, "KDE", kPlasmaNight, {"", ""}, "true", "false"},
    {S::nightLight, "X-Cinnamon", kGsettings,
     {"org.cinnamon.settings-daemon.plugins.color", "night-light-enabled"}, "true", "false"},
    {S::nightLight, "GNOME", kGsettings,
     {"org.gnome.settings-daemon.plugins.color", "night-light-enabled"}, "true", "false"},
};
// clang-format on

const char* nameOf(DesktopSetting setting) {
  switch (setting) {
    case S::desktopIcons:
      return "desktop icons";
    case S::darkMode:
      return "a dark appearance";
    case S::hiddenFiles:
      return "hidden files";
    case S::doNotDisturb:
      return "Do Not Disturb";
    case S::dockHiding:
      return "hiding the dock";
    case S::nightLight:
      return "a night light";
  }
  return "";
}

bool isFollowed(const Way& way) {
  const char* variable = std::getenv("XDG_CURRENT_DESKTOP");
  const std::string names = variable != nullptr ? variable : "";
  const std::string_view desktop = way.desktop;
  if (desktop.empty()) return true;
  // KDE's tools write what they are told on any desktop, and Unity's setting outlived it.
  if (names.empty()) return desktop != "KDE" && desktop != "Unity";
  return (":" + names + ":").find(fmt::format(":{}:", desktop)) != std::string::npos;
}

std::vector<const Way*> waysOf(DesktopSetting setting) {
  std::vector<const Way*> ways;
  for (const Way& way : kWays)
    if (way.setting == setting && isFollowed(way)) ways.push_back(&way);
  return ways;
}

std::string noSuchSetting(DesktopSetting setting) {
  return fmt::format("this desktop has no setting for {}", nameOf(setting));
}

}  // namespace

std::optional<bool> DesktopSettings::read(DesktopSetting setting, std::string& reason) {
  for (const Way* way : waysOf(setting))
    if (const auto value = way->store.get(way->place)) return *value == way->on;
  reason = noSuchSetting(setting);
  return std::nullopt;
}

bool DesktopSettings::write(DesktopSetting setting, bool isOn, std::string& reason) {
  bool isFirst = true;
  for (const Way* way : waysOf(setting)) {
    auto value = way->store.get(way->place);
    if (!value) continue;
    if ((*value == way->on) != isOn) {
      way->store.set(way->place, isOn ? way->on : way->off);
      value = way->store.get(way->place);
    }
    // A service can take a setting and forget it, as one does that has nowhere to keep it.
    if (isFirst && (!value || (*value == way->on) != isOn)) {
      reason = fmt::format("the desktop did not take the setting for {}", nameOf(setting));
      return false;
    }
    isFirst = false;
  }
  if (isFirst) reason = noSuchSetting(setting);
  return !isFirst;
}

}  // namespace brisko
