#include "Dispatch.h"
#include "FakePowerAssertion.h"
#include "PreventSleep.h"
#include "QuickActions.h"
#include "QuickActionsModel.h"
#include "RecordedTools.h"
#include "Resources.h"
#include "ZKLinkUrl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisko::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class Quick : public testing::Test {
 protected:
  Quick() {
    auto made = std::make_unique<FakePowerAssertion>();
    power = made.get();
    Host::current().powerAssertion = std::move(made);
  }
  ~Quick() override { ReleasePreventObj(); }

  // As the shell passes it on.
  std::string noticesFile() const {
    return Host::current().folders->library(HostFolders::Domain::user) +
           "/Preferences/ByHost/com.apple.notificationcenterui";
  }
  void writeNotices(bool isOn, const char* name = "com.apple.notificationcenterui.A1.plist") {
    PropertyList list;
    list.set("doNotDisturb", isOn);
    root.file(std::string("Users/anna/Library/Preferences/ByHost/") + name, list.xml());
  }
  void setVersion(int major, int minor) {
    host.version().selectors.major = static_cast<std::uint32_t>(major);
    host.version().selectors.minor = static_cast<std::uint32_t>(minor);
  }

  TemporaryFolder root;
  TemporaryFolder resources;
  TestHost host{root.path()};
  Environment table{"BRISKO_RESOURCES", resources.path().c_str()};
  RecordedTools tools;
  FakePowerAssertion* power = nullptr;
};

TEST_F(Quick, EachSwitchRunsItsOwnCommands) {
  struct Case {
    int index;
    bool isOn;
    std::vector<std::string> calls;
  };
  const std::string script = "osascript -e tell application \"System Events\" ";
  const std::string dark = script + "tell appearance preferences set dark mode to ";
  const std::string dock = script + "set autohide of dock preferences to ";
  const Case cases[] = {
      {1, true, {"defaults write com.apple.finder CreateDesktop FALSE", "killall Finder"}},
      {1, false, {"defaults write com.apple.finder CreateDesktop TRUE", "killall Finder"}},
      {2, true, {dark + "true end tell end tell"}},
      {2, false, {dark + "false end tell end tell"}},
      {3, true, {"defaults write com.apple.finder AppleShowAllFiles TRUE", "killall Finder"}},
      {3, false, {"defaults write com.apple.finder AppleShowAllFiles FALSE", "killall Finder"}},
      {4, true, {"open -a ScreenSaverEngine.app"}},
      {7, true, {"nshift 50"}},
      {7, false, {"nshift 0"}},
      {8, true, {dock + "true end tell"}},
      {8, false, {dock + "no end tell"}},
  };
  for (const Case& each : cases) {
    const SwitchState meant = QuickActions::turn(each.index, each.isOn);
    EXPECT_EQ(tools.calls(), each.calls);
    EXPECT_EQ(meant.isOn, each.isOn && each.index != 4);
    EXPECT_EQ(meant.reason, "");
  }
}

TEST_F(Quick, DoNotDisturbIsWrittenWithItsDate) {
  setVersion(10, 13);
  EXPECT_TRUE(QuickActions::turnDoNotDisturbOn().isOn);
  const std::string write = "defaults -currentHost write " + noticesFile() + " doNotDisturb";
  EXPECT_THAT(tools.calls(),
              ElementsAre(write + " -boolean true",
                          AllOf(HasSubstr(write + "Date -date "),
                                MatchesRegex(".* [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8} \\+000")),
                          "killall NotificationCenter", HasSubstr("dndprefs_changed")));
  EXPECT_FALSE(QuickActions::turnDoNotDisturbOff().isOn);
  EXPECT_THAT(tools.calls(), ElementsAre(write + " -boolean false", "killall NotificationCenter",
                                         HasSubstr("dndprefs_changed")));
}

TEST_F(Quick, DoNotDisturbIsReadFromTheFileOrTheCommandByVersion) {
  struct Case {
    int minor;
    const char* output;
    bool isInFile;
    bool isOn;
  };
  tools.calls();
  EXPECT_FALSE(QuickActions::getDoNotDisturb().isOn) << "no file";
  EXPECT_EQ(QuickActions::getDoNotDisturbPath(), "");
  for (const Case& each :
       {Case{13, "0", true, true}, Case{13, "1", false, false}, Case{14, "1", false, false},
        Case{15, "1", false, true}, Case{15, "0", true, false}, Case{16, "", true, false}}) {
    setVersion(10, each.minor);
    writeNotices(each.isInFile);
    tools.script("defaults", std::string("echo '  ") + each.output + " '");
    EXPECT_EQ(QuickActions::getDoNotDisturb().isOn, each.isOn) << each.minor << each.output;
  }
  EXPECT_TRUE(host.logged("----" + noticesFile() + ".A1.plist"));
  EXPECT_TRUE(host.logged("outputString ------ 1"));
  EXPECT_TRUE(host.logged("system version -----------1015"));
  EXPECT_TRUE(host.logged("isOpen ------ 1"));
  EXPECT_TRUE(host.logged("isOpen ------ 0"));

  // A press goes by the file on every version.
  writeNotices(true);
  EXPECT_FALSE(QuickActions::toggle(QuickActions::kDoNotDisturb, false).isOn);
  writeNotices(false);
  EXPECT_TRUE(QuickActions::toggle(QuickActions::kDoNotDisturb, true).isOn);
}

TEST_F(Quick, StatesAreReadAndLoggedAsTheyCome) {
  tools.answer("CreateDesktop", "FALSE");
  tools.answer("AppleShowAllFiles", "true");
  tools.answer("autohide", "0");
  EXPECT_TRUE(QuickActions::read(1).isOn);
  EXPECT_FALSE(QuickActions::read(3).isOn) << "another text";
  EXPECT_FALSE(QuickActions::read(8).isOn);
  EXPECT_THAT(tools.calls(), ElementsAre("defaults read com.apple.finder CreateDesktop",
                                         "defaults read com.apple.finder AppleShowAllFiles",
                                         "defaults read com.apple.dock autohide"));
  EXPECT_TRUE(host.logged("1--------|FALSE|"));
  EXPECT_TRUE(host.logged("1--------|true|"));
  EXPECT_TRUE(host.logged("dock ------ |0|"));

  for (const auto& [style, isOn] : {std::pair{"dArK", true}, {"light", false}, {"", false}}) {
    Host::current().preferences->setValue(Preferences::kGlobalDomain, "AppleInterfaceStyle",
                                          PropertyList(style));
    EXPECT_EQ(QuickActions::getDarkMode().isOn, isOn) << style;
    EXPECT_EQ(QuickActions::toggle(2, isOn).isOn, !isOn);
  }
}

TEST_F(Quick, NightLightAlternatesWhateverTheScreenShows) {
  const auto stored = [] { return Resources::table(ZKLinkUrl::kTable)["openNight"].boolean(); };
  for (const bool isOn : {true, false, true}) {
    EXPECT_EQ(QuickActions::setNightLight().isOn, isOn);
    EXPECT_EQ(stored(), isOn);
    EXPECT_EQ(QuickActions::getIsOpenNight().isOn, isOn);
  }
  EXPECT_THAT(tools.calls(), ElementsAre("nshift 50", "nshift 0", "nshift 50"));
  EXPECT_EQ(ZKLinkUrl::GetUrl("HomeURL"), "https://brisko.example/") << "the rest is kept";
  QuickActions::setNightLight();
  resources.file(ZKLinkUrl::kTable, "<plist><dict>");
  EXPECT_TRUE(QuickActions::setNightLight().isOn);
  EXPECT_EQ(ZKLinkUrl::GetUrl("HomeURL"), "https://brisko.example/") << "made whole again";
  QuickActions::setNightLight();
  tools.refuse("nshift", "there is none");
  EXPECT_EQ(QuickActions::setNightLight().reason, "there is none");
  EXPECT_FALSE(stored()) << "what cannot be had is not remembered";
}

TEST_F(Quick, WhatTheSystemLacksIsOffAndSaysWhy) {
  for (const char* tool : {"defaults", "osascript", "open", "nshift"})
    tools.refuse(tool, "not on this desktop");
  power->refusal = "nobody listens";
  for (const QuickAction& action : QuickActions::all()) {
    const SwitchState state = QuickActions::turn(action.index, true);
    EXPECT_FALSE(state.isOn) << action.name;
    EXPECT_EQ(state.reason, action.index == 5 ? "nobody listens" : "not on this desktop");
  }
  EXPECT_EQ(QuickActions::read(8).reason, "not on this desktop");
  EXPECT_FALSE(QuickActions::read(8).isOn);
  // A key that nobody has set yet is no refusal, nor is what another program says.
  tools.script("defaults", "echo 'The domain/default pair of (a, b) does not exist' >&2; exit 1");
  tools.refuse("killall", "no process found");
  EXPECT_EQ(QuickActions::read(1).reason, "");
  EXPECT_TRUE(QuickActions::turn(1, true).isOn);
}

TEST_F(Quick, AwakeIsHeldOnceForTheWholeProcess) {
  EXPECT_TRUE(QuickActions::enablePowerSave(true).isOn);
  EXPECT_TRUE(QuickActions::enablePowerSave(true).isOn);
  EXPECT_EQ(power->held.size(), 1U);
  QuickActionsModel later;
  EXPECT_STREQ(later.row(5).label(), "Active");
  EXPECT_FALSE(QuickActions::enablePowerSave(false).isOn);
  EXPECT_THAT(power->held, IsEmpty());
  QuickActions::setComputerSleep();
  EXPECT_EQ(power->names.back(), "Describe Activity Type");
  EXPECT_THAT(power->held, IsEmpty());
}

TEST_F(Quick, OldSystemsAreKeptAwakeByATimer) {
  setVersion(10, 7);
  testing::internal::CaptureStdout();
  EXPECT_TRUE(QuickActions::enablePowerSave(true).isOn);
  EXPECT_TRUE(isSleepPrevented());
  const auto reports = [this] {
    const std::lock_guard lock(power->mutex);
    return power->activities;
  };
  while (reports() == 0)
    std::this_thread::yield();
  QuickActions::enablePowerSave(false);
  EXPECT_THAT(testing::internal::GetCapturedStdout(), MatchesRegex("[0-9]{2}:[0-9]{2}:[0-9]{2} "));
  EXPECT_FALSE(isSleepPrevented());
  EXPECT_THAT(power->names, IsEmpty());
}

TEST_F(Quick, ModelReadsAndPressesInTheBackground) {
  tools.answer("CreateDesktop", "FALSE");
  tools.answer("autohide", "0");
  QuickActionsModel model;
  std::vector<int> told;
  model.setListener([&](int index) {
    EXPECT_TRUE(Dispatch::isMainThread());
    told.push_back(index);
  });
  const auto finish = [&] { Dispatch::runUntil([&] { return model.isIdle(); }); };
  EXPECT_STREQ(model.row(4).label(), "");
  model.load();
  EXPECT_FALSE(model.isIdle()) << "nothing is waited for";
  finish();
  EXPECT_STREQ(model.row(1).label(), "Active");
  EXPECT_STREQ(model.row(1).icon(), "ic_hide_desktop");
  EXPECT_STREQ(model.row(8).label(), "Disabled");
  EXPECT_STREQ(model.row(8).icon(), "ic_dock");
  tools.calls();

  // Two hasty presses are one; and a press need not wait for all that is only looked at.
  model.load();
  model.press(8);
  model.press(8);
  finish();
  const auto calls = tools.calls();
  EXPECT_EQ(std::count_if(calls.begin(), calls.end(),
                          [](const auto& call) { return call.starts_with("osascript"); }),
            1);
  EXPECT_STREQ(model.row(8).icon(), "ic_hide_desktop");

  tools.refuse("osascript", "this desktop has no setting for hiding the dock");
  model.press(2);
  finish();
  EXPECT_STREQ(model.row(2).label(), "Disabled");
  EXPECT_EQ(model.row(2).state.reason, "this desktop has no setting for hiding the dock");
  EXPECT_EQ(told.back(), 2);
}

}  // namespace
}  // namespace brisko::test
