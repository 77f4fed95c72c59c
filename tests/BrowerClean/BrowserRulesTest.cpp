#include "BrowserKinds.h"
#include "BrowserRules.h"
#include "KindRecipe.h"
#include "PropertyList.h"
#include "Resources.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <set>

namespace brisko::test {
namespace {

TEST(BrowserRules, TheTablesNameEachBrowserOnceForEachInstallation) {
  const TestHost host;
  const auto bundles = bundleBrowserRules();
  ASSERT_EQ(bundles.size(), 4U);
  EXPECT_EQ(bundles[0].key, "Safari");
  EXPECT_EQ(bundles[3].key, "Opera");
  std::set<std::string> keys;
  std::set<std::string> places;
  for (const BrowserRule& rule : desktopBrowserRules()) {
    keys.insert(rule.key);
    ASSERT_FALSE(rule.kinds.empty());
    EXPECT_FALSE(rule.locks.empty()) << rule.key;
    for (const KindRule& kind : rule.kinds) {
      EXPECT_NE(KindRecipe::of(rule.family, kind.name).pick, KindRecipe::Pick::nothing)
          << rule.key << " " << kind.name;
      const std::string icon = BrowserKinds::getIconWithKey(kind.name);
      EXPECT_TRUE(Resources::image(icon)) << icon;
      EXPECT_EQ(icon == "icon_cookies", kind.name == "Cookies") << "no icon of its own";
      if (kind.name == "Cookies") {
        EXPECT_TRUE(places.insert(kind.locations.front()).second) << kind.locations.front();
      }
    }
  }
  EXPECT_EQ(keys, (std::set<std::string>{"Brave", "Chromium", "Firefox", "Google Chrome",
                                         "Microsoft Edge", "Opera", "Thunderbird", "Vivaldi"}));
  EXPECT_EQ(host.log(), std::vector<std::string>{});
}

TEST(BrowserRules, ATableThatIsNotUnderstoodTurnsItselfOff) {
  const TestHost host;
  const TemporaryFolder folder;
  const Environment resources("BRISKO_RESOURCES", folder.path().c_str());
  const auto table = [&](const std::string& row, const std::string& kind) {
    PropertyList::Dictionary browser{{"key", "X"},
                                     {"machinery", "Firefox"},
                                     {"kinds", "K"},
                                     {"desktopEntries", PropertyList::Array{"x"}},
                                     {"native", PropertyList::Dictionary{{"data", "${HOME}/x"}}}};
    browser[row] = "Lynx";
    PropertyList::Dictionary cookies{{"locations", PropertyList::Array{"${data}/*"}}};
    if (!kind.empty()) cookies[kind] = "x";
    const PropertyList::Dictionary kinds{{"K", PropertyList::Dictionary{{"Cookies", cookies}}}};
    PropertyList(
        PropertyList::Dictionary{{"browsers", PropertyList::Array{browser}}, {"kinds", kinds}})
        .writeInPlace(folder / "EraserHistoryLinux.plist");
    return desktopBrowserRules().size();
  };
  EXPECT_EQ(table("key", ""), 1U);
  EXPECT_EQ(table("machinery", ""), 0U);
  EXPECT_EQ(table("colour", ""), 0U);
  EXPECT_EQ(table("kinds", ""), 0U);
  EXPECT_EQ(table("key", "depth"), 0U);
  EXPECT_TRUE(
      host.logged("EraserHistoryLinux.plist: unknown key depth; no browsers are known by it"));
}

}  // namespace
}  // namespace brisko::test
