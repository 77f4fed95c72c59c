#include "LinuxLaunchedApplications.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace brisko
