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
  };
  for (const auto& [unit, id] : cases)
    EXPECT_EQ(applicationIdOfUnit(unit), id) << unit;
}

TEST(LinuxLaunchedApplications, OneRowAnApplicationByItsFirstProcess) {
  test::TemporaryFolder proc;
  const std::string group = "0::/user.slice/user@0.service/app.slice/";
  proc.file("40/cgroup", group + "app-gnome-org.gnome.Evince-40.scope\n");
  proc.file("41/cgroup", group + "app-gnome-org.gnome.Evince-40.scope/child\n");
  proc.file("30/cgroup", group + "app-firefox-30.scope\n");
  proc.file("20/cgroup", "0::/system.slice/cron.service\n");
  proc.file("self/cgroup", group + "app-self-1.scope\n");
  const auto applications = linuxLaunchedApplications(proc.path());
  ASSERT_EQ(applications.size(), 2U);
  EXPECT_EQ(applications[0].bundleIdentifier, "firefox");
  EXPECT_EQ(applications[1].bundleIdentifier, "org.gnome.Evince");
  EXPECT_EQ(applications[1].processIdentifier, 40);
}

TEST(LinuxLaunchedApplications, OutsideOfUnitsTheProgramOfAnEntryTells) {
  test::TemporaryFolder proc;
  const auto process = [&](const std::string& number, const std::string& exe,
                           std::string command, const std::string& start) {
    proc.file(number + "/cgroup", "0::/user.slice/user-0.slice/session-1.scope\n");
    proc.link(number + "/exe", exe);
    std::replace(command.begin(), command.end(), ' ', '\0');
    proc.file(number + "/cmdline", command);
    proc.file(number + "/stat", number + " (a) b) S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 " + start +
                                    " 0 0");
  };
  process("50", "/usr/lib/mail/mail-bin", "mail-bin ", "700");
  process("51", "/usr/lib/mail/mail-bin", "mail-bin -child ", "600");
  process("60", "/usr/bin/python3.11", "/usr/bin/python3 /usr/bin/notes -x ", "5");
  process("70", "/usr/bin/python3.11", "python3 ", "5");
  process("80", "/opt/agent", "agent ", "5");
  process("90", "/x/libexec/brisko/brisko-window", "brisko-window ", "5");
  std::vector<DesktopEntry> entries(4);
  const std::pair<const char*, const char*> made[] = {
      {"org.x.Mail", "mail-bin %U"}, {"org.x.Notes", "/usr/bin/notes"},
      {"org.x.Any", "python3"},      {"org.x.Agent", "/opt/agent"}};
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i].id = made[i].first;
    entries[i].name = entries[i].id.substr(6);
    entries[i].exec = made[i].second;
  }
  entries[3].noDisplay = true;
  const auto applications = linuxLaunchedApplications(proc.path(), entries);
  ASSERT_EQ(applications.size(), 3U);
  EXPECT_EQ(applications[0].processIdentifier, 51) << "the one that was there first";
  EXPECT_EQ(applications[0].name, "Mail");
  EXPECT_EQ(applications[1].name, "Notes");
  EXPECT_EQ(applications[2].name, "Brisko");
  EXPECT_EQ(linuxProcessBeginning(proc.path() + "/51"), 600U);
}

}  // namespace
}  // namespace brisko
