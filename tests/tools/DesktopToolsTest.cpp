// The stand-ins for the system's tools, run as programs beside a made desktop.

#include "HostTools.h"
#include "MockSession.h"
#include "PropertyList.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <initializer_list>

#include <sys/stat.h>

namespace brisko::test {
namespace {

using testing::HasSubstr;

constexpr const char* kDock = "org.gnome.shell.extensions.dash-to-dock.dock-fixed";
constexpr const char* kColours = "org.gnome.desktop.interface.color-scheme";
constexpr const char* kBanners = "org.gnome.desktop.notifications.show-banners";

class DesktopTools : public testing::Test {
 protected:
  DesktopTools() {
    // A setting is a file; one that is not there has no schema.
    const std::string program = bin.file(
        "gsettings", "#!/bin/sh\nf=\"" + settings.path() +
                         "/$2.$3\"\n[ -f \"$f\" ] || { echo 'No such schema' >&2; exit 1; }\n"
                         "case $1 in get) cat \"$f\";; set) [ -w \"$f.locked\" ] || echo \"$4\" > "
                         "\"$f\";; esac\n");
    ::chmod(program.c_str(), 0755);
  }

  HostTools::Outcome run(std::initializer_list<std::string> words) {
    const HostTools::Outcome outcome = HostTools::run(words);
    EXPECT_LE(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
    return outcome;
  }
  std::string printed(std::initializer_list<std::string> words) {
    const HostTools::Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return outcome.output;
  }
  std::string setting(const char* name) { return contentOf(settings / name); }
  PropertyList domain(const std::string& name) {
    return PropertyList::read(home / (".config/brisko/Preferences/" + name + ".plist"));
  }

  TemporaryFolder home;
  TemporaryFolder settings;
  TemporaryFolder bin;
  Environment homeVariable{"HOME", home.path().c_str()};
  Environment configuration{"XDG_CONFIG_HOME", nullptr};
  Environment path{"PATH", (bin.path() + ":/usr/bin:/bin").c_str()};
  Environment desktop{"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"};
  Environment display{"DISPLAY", nullptr};
  Environment wayland{"WAYLAND_DISPLAY", nullptr};
  Environment session{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"};
  Environment login{"XDG_SESSION_ID", nullptr};
};

TEST_F(DesktopTools, DefaultsKeepsValuesOfAllTypesInDomainsAndFiles) {
  for (const std::string& where : {std::string("org.made.app"), home / "made/list"}) {
    run({"defaults", "write", where, "text", "TRUE"});
    run({"defaults", "write", where, "flag", "-boolean", "true"});
    run({"defaults", "write", where, "number", "-int", "-7"});
    run({"defaults", "write", where, "when", "-date", "2026-11-21 10:20:30 +000"});
    EXPECT_EQ(printed({"defaults", "read", where, "flag"}), "1\n");
    EXPECT_EQ(printed({"defaults", "read", where}),
              "{\n    flag = 1;\n    number = -7;\n    text = TRUE;\n"
              "    when = \"2026-11-21 10:20:30 +0000\";\n}\n");
    EXPECT_EQ(run({"defaults", "delete", where, "flag"}).status, 0);
    const HostTools::Outcome missing = run({"defaults", "read", where, "flag"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.errors, HasSubstr("does not exist"));
    EXPECT_FALSE(missing.errors.starts_with("defaults: ")) << "no refusal";
  }
  EXPECT_EQ(domain("org.made.app")["text"], PropertyList("TRUE"));
  EXPECT_EQ(PropertyList::read(home / "made/list.plist")["number"], PropertyList(-7));
  run({"defaults", "-currentHost", "write", "org.made.app", "text", "here"});
  EXPECT_EQ(printed({"defaults", "-currentHost", "read", "org.made.app", "text"}), "here\n");
  EXPECT_EQ(printed({"defaults", "read", "org.made.app", "text"}), "TRUE\n");
}

TEST_F(DesktopTools, DefaultsRefusesWhatItCannotDoAndHarmsNothing) {
  const std::string file = home.file("notes.plist", "dear diary");
  const std::vector<std::vector<std::string>> cases = {
      {"defaults"},
      {"defaults", "read"},
      {"defaults", "change", "a", "b"},
      {"defaults", "write", "a", "b"},
      {"defaults", "write", "a", "b", "-bool", "perhaps"},
      {"defaults", "write", "a", "b", "-int", "1x"},
      {"defaults", "write", "a", "b", "-date", "tomorrow"},
      {"defaults", "write", "../a", "b/../../c", "d", "e"},
      {"defaults", "write", file, "b", "c"},
  };
  for (const auto& words : cases) {
    const HostTools::Outcome outcome = HostTools::run(words);
    EXPECT_EQ(outcome.status, 1) << testing::PrintToString(words);
    EXPECT_TRUE(outcome.errors.starts_with("defaults: ")) << outcome.errors;
  }
  EXPECT_EQ(contentOf(file), "dear diary");
  EXPECT_TRUE(domain("a").isNull());
}

TEST_F(DesktopTools, KnownKeysAreCarriedToTheDesktopAndFollowIt) {
  settings.file(kDock, "true\n");
  EXPECT_EQ(printed({"defaults", "read", "com.apple.dock", "autohide"}), "0\n");
  EXPECT_EQ(run({"defaults", "write", "com.apple.dock", "autohide", "-bool", "true"}).status, 0);
  EXPECT_EQ(setting(kDock), "false\n");
  EXPECT_EQ(printed({"defaults", "read", "com.apple.dock", "autohide"}), "1\n");
  settings.file(kDock, "true\n");  // changed elsewhere
  EXPECT_EQ(printed({"defaults", "read", "com.apple.dock", "autohide"}), "0\n");
  EXPECT_FALSE(domain("com.apple.dock")["autohide"].boolean());

  settings.file("org.gtk.Settings.FileChooser.show-hidden", "false");
  settings.file("org.gtk.gtk4.Settings.FileChooser.show-hidden", "false");
  run({"defaults", "write", "com.apple.finder", "AppleShowAllFiles", "TRUE"});
  EXPECT_EQ(setting("org.gtk.Settings.FileChooser.show-hidden"), "true\n");
  EXPECT_EQ(setting("org.gtk.gtk4.Settings.FileChooser.show-hidden"), "true\n");
  EXPECT_EQ(printed({"defaults", "read", "com.apple.finder", "AppleShowAllFiles"}), "TRUE\n");

  settings.file(kBanners, "true");
  const std::string notices = home / "Library/Preferences/ByHost/com.apple.notificationcenterui";
  EXPECT_EQ(printed({"defaults", "-currentHost", "read", notices, "doNotDisturb"}), "0\n");
  EXPECT_FALSE(exists(home / "Library")) << "nothing is made by looking";
  run({"defaults", "-currentHost", "write", notices, "doNotDisturb", "-boolean", "true"});
  EXPECT_EQ(setting(kBanners), "false\n");
  EXPECT_TRUE(PropertyList::read(notices + ".plist")["doNotDisturb"].boolean());
}

TEST_F(DesktopTools, ADesktopWithoutTheSettingIsSaidAndNothingIsStored) {
  const std::string notices = home / "Library/Preferences/ByHost/com.apple.notificationcenterui";
  const std::vector<std::vector<std::string>> cases = {
      {"defaults", "read", "com.apple.dock", "autohide"},
      {"defaults", "write", "com.apple.dock", "autohide", "-bool", "true"},
      {"defaults", "write", "com.apple.finder", "CreateDesktop", "FALSE"},
      {"defaults", "-currentHost", "write", notices, "doNotDisturb", "-boolean", "true"},
      {"defaults", "-currentHost", "write", notices, "doNotDisturbDate", "-date",
       "2026-11-21 10:20:30 +000"},
      {"osascript", "-e",
       "tell application \"System Events\"\nset autohide of dock preferences to true\nend tell"},
      {"nshift", "50"},
      {"open", "-a", "ScreenSaverEngine.app"},
  };
  for (const auto& words : cases) {
    const HostTools::Outcome outcome = HostTools::run(words);
    EXPECT_EQ(outcome.status, 1) << testing::PrintToString(words);
    EXPECT_TRUE(outcome.errors.starts_with(words[0] + ": this ")) << outcome.errors;
  }
  EXPECT_FALSE(exists(home / ".config"));
  EXPECT_FALSE(exists(home / "Library"));

  // One that is installed and that this desktop does not follow.
  settings.file(kDock, "true\n");
  const Environment other("XDG_CURRENT_DESKTOP", "sway");
  EXPECT_EQ(run({"defaults", "read", "com.apple.dock", "autohide"}).status, 1);
}

TEST_F(DesktopTools, ASettingThatDoesNotTakeIsNotClaimed) {
  settings.file(kDock, "true\n");
  settings.file(std::string(kDock) + ".locked");
  const auto outcome = run({"defaults", "write", "com.apple.dock", "autohide", "-bool", "true"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("did not take"));
  EXPECT_TRUE(domain("com.apple.dock").isNull());
}

TEST_F(DesktopTools, ScriptsSetAppearanceAndDockAndNothingElse) {
  settings.file(kColours, "'default'\n");
  settings.file(kDock, "true\n");
  const auto dark = [](const char* value) {
    return std::string(
               "tell application \"System Events\"\n\ttell appearance preferences\n"
               "\t\tset dark mode to ") +
           value + "\n\tend tell\nend tell\n";
  };
  EXPECT_EQ(run({"osascript", home.file("on.scpt", dark("true"))}).status, 0);
  EXPECT_EQ(setting(kColours), "'prefer-dark'\n");
  EXPECT_EQ(domain("NSGlobalDomain")["AppleInterfaceStyle"], PropertyList("Dark"));
  EXPECT_EQ(run({"osascript", "-e", dark("false")}).status, 0);
  EXPECT_EQ(setting(kColours), "'default'\n");
  EXPECT_TRUE(domain("NSGlobalDomain")["AppleInterfaceStyle"].isNull());
  EXPECT_EQ(run({"osascript", "-e", "  tell application \"System Events\"", "-e",
                 "set autohide of dock preferences to true", "-e", "end tell"})
                .status,
            0);
  EXPECT_EQ(setting(kDock), "false\n");
  for (const std::string& other :
       {std::string("beep"), dark("maybe"), dark("true") + "do shell script \"true\"",
        std::string(
            "tell application \"Finder\"\nset autohide of dock preferences to no\nend tell")})
    EXPECT_EQ(run({"osascript", "-e", other}).status, 1) << other;
  EXPECT_EQ(run({"osascript", home / "missing.scpt"}).status, 1);
  EXPECT_EQ(run({"osascript", "-e"}).status, 1);
  EXPECT_EQ(setting(kDock), "false\n");
}

TEST_F(DesktopTools, ScreenSaverIsAskedOverTheSession) {
  if (!MockSession::isPossible()) GTEST_SKIP() << "dbus-daemon is not installed";
  MockSession mock;
  const Environment bus("DBUS_SESSION_BUS_ADDRESS", mock.address().c_str());
  EXPECT_EQ(run({"open", "-a", "ScreenSaverEngine.app"}).status, 0);
  EXPECT_EQ(mock.calls(), std::vector<std::string>{"SetActive"});
  EXPECT_EQ(run({"open", "-a", "Calculator.app"}).status, 1);
  EXPECT_EQ(run({"open", home.path()}).status, 1);
}

TEST_F(DesktopTools, NightLightIsTheDesktopsOrOfTheDisplay) {
  settings.file("org.gnome.settings-daemon.plugins.color.night-light-enabled", "false\n");
  EXPECT_EQ(run({"nshift", "50"}).status, 0);
  EXPECT_EQ(setting("org.gnome.settings-daemon.plugins.color.night-light-enabled"), "true\n");
  EXPECT_EQ(run({"nshift", "0"}).status, 0);
  EXPECT_EQ(setting("org.gnome.settings-daemon.plugins.color.night-light-enabled"), "false\n");
  for (const char* wrong : {"", "-1", "101", "5O", "50 "})
    EXPECT_EQ(run({"nshift", wrong}).status, 1) << wrong;
}

}  // namespace
}  // namespace brisko::test
