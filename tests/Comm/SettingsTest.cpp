#include "CommUti.h"
#include "NSUserDefaults.h"
#include "Resources.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "ZKLinkUrl.h"

#include <gtest/gtest.h>

namespace brisko {
namespace {

class SettingsTest : public testing::Test {
 protected:
  PropertyList::Array loginItems() {
    return host_.host()
        .preferences->persistentDomain("loginwindow")["AutoLaunchedApplicationDictionary"]
        .array();
  }

  test::TemporaryFolder folder_;
  test::TestHost host_{folder_.path()};
  test::Environment language_{"LANGUAGE", nullptr};
  test::Environment all_{"LC_ALL", "de_DE.UTF-8"};
  test::Environment resources_{"BRISKO_RESOURCES", folder_.path().c_str()};
};

TEST_F(SettingsTest, AddressesFallBackToEnglishWhereALanguageHasNone) {
  PropertyList table;
  table.set("de", PropertyList::Dictionary{{"OnlineHelp", "de-help"}, {"HomeURL", ""}, {"Odd", 5}});
  table.set("en", PropertyList::Dictionary{
                      {"OnlineHelp", "help"}, {"HomeURL", "home"}, {"Odd", "odd"}, {"Empty", ""}});
  folder_.file(ZKLinkUrl::kTable, table.xml());
  EXPECT_EQ(ZKLinkUrl::GetUrl("OnlineHelp"), "de-help");
  EXPECT_EQ(ZKLinkUrl::GetUrl("HomeURL"), "home");
  EXPECT_EQ(ZKLinkUrl::GetUrl("Odd"), "odd");
  EXPECT_EQ(ZKLinkUrl::GetUrl("Empty"), "");
  EXPECT_FALSE(ZKLinkUrl::GetUrl("Missing").has_value());
  {
    const test::Environment french("LC_ALL", "fr_FR.UTF-8");
    EXPECT_EQ(ZKLinkUrl::GetUrl("OnlineHelp"), "help");
  }
  // Read afresh each time; a broken file is an empty one.
  folder_.file(ZKLinkUrl::kTable, "<plist>");
  EXPECT_FALSE(ZKLinkUrl::GetUrl("OnlineHelp").has_value());
}

TEST_F(SettingsTest, TheTableOfTheProgramHasEveryLink) {
  for (const char* key : {"SupportTeam", "OnlineHelp", "HomeURL", "IniURL", "WelcomeURL",
                          "RecoveryURL", "EraserURL", "StartMenuURL"}) {
    EXPECT_TRUE(ZKLinkUrl::GetUrl(key).value_or("").starts_with("https://")) << key;
  }
  EXPECT_TRUE(Resources::table(ZKLinkUrl::kTable)["openNight"].isBool());
}

TEST_F(SettingsTest, AnApplicationStandsInTheLoginItemsOnce) {
  EXPECT_TRUE(NSUserDefaults::addApplicationToLoginItems("/Applications/A.app"));
  EXPECT_FALSE(NSUserDefaults::addApplicationToLoginItems("/Applications/A.app"));
  EXPECT_FALSE(NSUserDefaults::addApplicationToLoginItems("A.app"));  // contained
  EXPECT_TRUE(NSUserDefaults::addApplicationToLoginItems("/Applications/B.app"));
  ASSERT_EQ(loginItems().size(), 2U);
  EXPECT_EQ(loginItems()[0], PropertyList(PropertyList::Dictionary{{"Path", "/Applications/A.app"},
                                                                   {"Hide", false}}));

  EXPECT_FALSE(NSUserDefaults::removeApplicationFromLoginItems("/Applications/C.app"));
  EXPECT_TRUE(NSUserDefaults::removeApplicationFromLoginItems("/Applications/A.app"));
  ASSERT_EQ(loginItems().size(), 1U);
  EXPECT_EQ(loginItems()[0]["Path"].string(), "/Applications/B.app");
}

TEST_F(SettingsTest, LoginItemsKeepWhatElseTheDomainHolds) {
  host_.host().preferences->setPersistentDomain(
      "loginwindow", PropertyList::Dictionary{
                         {"Other", 7},
                         {"AutoLaunchedApplicationDictionary",
                          PropertyList::Array{"odd", PropertyList::Dictionary{{"Path", 5}}}}});
  EXPECT_TRUE(NSUserDefaults::addApplicationToLoginItems("/A.app"));
  EXPECT_EQ(loginItems().size(), 3U);
  EXPECT_TRUE(NSUserDefaults::removeApplicationFromLoginItems("/A.app"));
  EXPECT_EQ(loginItems().size(), 2U);
  EXPECT_EQ(host_.host().preferences->value("loginwindow", "Other").integer(), 7);
}

}  // namespace
}  // namespace brisko
