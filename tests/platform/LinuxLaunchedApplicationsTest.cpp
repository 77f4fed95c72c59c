#include "LinuxLaunchedApplications.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace brisko {
namespace {

TEST(LinuxLaunchedApplications, IdsAreReadFromTheUnitNamesOfEveryLauncher) {
  const std::pair<const char*, const char*> cases[] = {
      {"app-gnome-org.gnome.Evince-12345.scope", "org.gnome.Evince"},
      {"app-firefox\\x2desr-99.scope", "firefox-esr"},
      {"app-org.kde.dolphin@a1b2c3.service", "org.kde.dolphin"},
      {"app-flatpak-org.mozilla.firefox-3111.scope", "org.mozilla.firefox"},
      {"app-dbus\\x2dx.slice", ""},
      {"session-2.scope", ""},
      {"app-.scope", ""},
      {"app-broken\\x2-1.scope", "broken\\x2"},
      {"snap.two-words.app.01234567-89ab-cdef-0123-456789abcdef.scope", "two-words_app"},
      {"snap.short.scope", ""},
  };
  for (const auto& [unit, id] : cases)
    EXPECT_EQ(applicationIdOfUnit(unit), id) << unit;
}

class LaunchedApplications : public testing::Test {
 protected:
  void process(int number, const std::string& unit, const std::string& exe, std::string command,
               int start, char state = 'S') {
    const std::string folder = std::to_string(number);
    proc.file(folder + "/cgroup", "0::/user.slice/user@0.service/app.slice/" + unit + "\n");
    proc.link(folder + "/exe", exe);
    std::replace(command.begin(), command.end(), ' ', '\0');
    proc.file(folder + "/cmdline", command);
    proc.file(folder + "/stat", folder + " (a) b) " + state +
                                    " 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 " +
                                    std::to_string(start) + " 0 0");
  }
  void entry(const std::string& id, const std::string& name, const std::string& exec,
             bool isDisplayed = true) {
    DesktopEntry made;
    made.id = id;
    made.name = name;
    made.exec = exec;
    made.noDisplay = !isDisplayed;
    entries.push_back(made);
  }
  /// "NUMBER ID NAME" of each.
  std::vector<std::string> told() {
    std::vector<std::string> all;
    for (const LaunchedApplication& each : linuxLaunchedApplications(proc.path(), entries))
      all.push_back(std::to_string(each.processIdentifier) + " " + each.bundleIdentifier + " " +
                    each.name);
    return all;
  }

  test::TemporaryFolder proc;
  std::vector<DesktopEntry> entries;
};

TEST_F(LaunchedApplications, OneRowAnApplicationByItsFirstProcess) {
  entry("org.gnome.Evince", "Documents", "evince");
  entry("firefox_firefox", "Firefox", "env A=b /snap/bin/firefox");
  entry("alarm", "Alarm", "alarm", false);
  const std::string evince = "app-gnome-org.gnome.Evince-40.scope";
  process(39, evince, "/usr/bin/evince", "evince ", 0, 'Z');  // ended, and not yet noticed
  process(40, evince, "/usr/bin/evince", "evince ", 5);
  process(41, evince + "/child", "/usr/bin/evince", "evince ", 6);
  process(30, "snap.firefox.firefox-01234567-89ab-cdef-0123-456789abcdef.scope",
          "/snap/firefox/1/firefox", "firefox ", 7);
  process(20, "cron.service", "/usr/sbin/cron", "cron ", 1);
  process(21, "app-gnome-alarm-21.scope", "/usr/bin/alarm", "alarm ", 1);
  process(22, "app-gnome-helper-22.scope", "/usr/bin/helper", "helper ", 1);
  proc.file("self/cgroup", "0::/app-self-1.scope\n");
  EXPECT_EQ(told(),
            (std::vector<std::string>{"21 alarm ", "22 helper ", "30 firefox_firefox Firefox",
                                      "40 org.gnome.Evince Documents"}));
}

TEST_F(LaunchedApplications, OutsideOfUnitsTheProgramOfAnEntryTells) {
  entry("org.x.Mail", "Mail", "mail-bin %U");
  entry("org.x.Notes", "Notes", "/usr/bin/notes");
  entry("org.x.Any", "Any", "python3");
  entry("org.x.Agent", "Agent", "/opt/agent", false);
  const char* unit = "session-1.scope";
  process(50, unit, "/usr/lib/mail/mail-bin", "mail-bin ", 700);
  process(51, unit, "/usr/lib/mail/mail-bin", "mail-bin -child ", 600);
  process(60, unit, "/usr/bin/python3.11", "/usr/bin/python3 /usr/bin/notes -x ", 5);
  process(70, unit, "/usr/bin/python3.11", "python3 ", 5);
  process(80, unit, "/opt/agent", "agent ", 5);
  process(90, unit, "/x/libexec/brisko/brisko-window", "brisko-window ", 5);
  EXPECT_EQ(told(), (std::vector<std::string>{"51 org.x.Mail Mail", "60 org.x.Notes Notes",
                                              "90 com.brisko.Brisko Brisko"}));
  EXPECT_EQ(linuxProcessBeginning(proc.path() + "/51"), 600U);
}

}  // namespace
}  // namespace brisko
