// The notices' part of the quick switches.

#include "CommUti.h"
#include "Host.h"
#include "QuickActions.h"
#include "QuickCommands.h"
#include "SystemLog.h"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace brisko {
namespace {

constexpr const char* kDomain = "com.apple.notificationcenterui";
constexpr const char* kKey = "doNotDisturb";
/// The first version on which the command's output decides, and no longer the file.
constexpr int kFirstByCommand = 1015;

constexpr const char* kRead =
    "defaults -currentHost read ~/Library/Preferences/ByHost/com.apple.notificationcenterui "
    "doNotDisturb";
constexpr const char* kTurnOn =
    "defaults -currentHost write ~/Library/Preferences/ByHost/com.apple.notificationcenterui "
    "doNotDisturb -boolean true";
constexpr const char* kWriteDate =
    "defaults -currentHost write ~/Library/Preferences/ByHost/com.apple.notificationcenterui "
    "doNotDisturbDate -date \"`date -u +\"%Y-%m-%d %H:%M:%S +000\"`\"";
constexpr const char* kRestart = "killall NotificationCenter";
constexpr const char* kTurnOff =
    "defaults -currentHost write ~/Library/Preferences/ByHost/com.apple.notificationcenterui "
    "doNotDisturb -boolean false;killall NotificationCenter";

bool fileSaysOn(const std::string& path) {
  return !path.empty() && PropertyList::read(path)[kKey].boolean();
}

}  // namespace

std::string QuickActions::getDoNotDisturbPath() {
  const std::string folder =
      Host::current().folders->library(HostFolders::Domain::user) + "/Preferences/ByHost/";
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator each(folder, error), end; !error && each != end;
       each.increment(error))
    if (each->path().filename().string().starts_with(kDomain))
      names.push_back(each->path().filename().string());
  // A folder has no order of its own.
  return names.empty() ? "" : folder + *std::min_element(names.begin(), names.end());
}

SwitchState QuickActions::getDoNotDisturb() {
  // The command first: where the tool stands in for the system's, it brings the file into step with
  // the desktop.
  const auto answer = QuickCommands::bash(kRead);
  const std::string path = getDoNotDisturbPath();
  SystemLog::line("----{}", path);
  const int version = CommUti::getSystemVersion();
  SystemLog::line("outputString ------ {}", answer.output);
  SystemLog::line("system version -----------{}", version);
  const bool isOpen =
      version >= kFirstByCommand ? !path.empty() && answer.output == "1" : fileSaysOn(path);
  SystemLog::line("isOpen ------ {}", isOpen ? 1 : 0);
  return QuickCommands::meant(isOpen, answer.reason("defaults"));
}

SwitchState QuickActions::setDoNotDisturb() {
  return fileSaysOn(getDoNotDisturbPath()) ? turnDoNotDisturbOff() : turnDoNotDisturbOn();
}

SwitchState QuickActions::turnDoNotDisturbOn() {
  const std::string reason = QuickCommands::bash(kTurnOn).reason("defaults");
  QuickCommands::bash(kWriteDate);
  QuickCommands::bash(kRestart);
  commitDoNotDisturbChanges();
  return QuickCommands::meant(true, reason);
}

SwitchState QuickActions::turnDoNotDisturbOff() {
  const std::string reason = QuickCommands::bash(kTurnOff).reason("defaults");
  commitDoNotDisturbChanges();
  return QuickCommands::meant(false, reason);
}

void QuickActions::commitDoNotDisturbChanges() {
  Host::current().preferences->synchronize();
  QuickCommands::run({"dbus-send", "--session", "--type=signal", "/com/apple/notificationcenterui",
                      "com.apple.notificationcenterui.dndprefs_changed"});
}

}  // namespace brisko
