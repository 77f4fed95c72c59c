#include "LogCapture.h"
#include "Resources.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace brisko {
namespace {

class ResourcesTest : public testing::Test {
 protected:
  test::TemporaryFolder folder_;
  test::Environment data_{"XDG_DATA_HOME", folder_.path().c_str()};
  test::Environment given_{"BRISKO_RESOURCES", nullptr};
};

TEST_F(ResourcesTest, TheGivenFolderGoesBeforeTheUsersAndThatBeforeTheProgramsOwn) {
  const std::string name = "StringMessage.plist";
  const std::string own(Resources::builtIn(name).value());
  EXPECT_EQ(Resources::find(name), own);
  folder_.file("brisko/" + name, "user's");
  EXPECT_EQ(Resources::find(name), "user's");
  folder_.file("given/" + name, "given");
  test::Environment given("BRISKO_RESOURCES", (folder_ / "given").c_str());
  EXPECT_EQ(Resources::find(name), "given");
  EXPECT_EQ(Resources::builtIn(name), own);
  EXPECT_FALSE(Resources::find("no such").has_value());
}

TEST_F(ResourcesTest, NamesCannotLeadOutOfTheFolders) {
  folder_.file("secret", "secret");
  folder_.file("brisko/inside", "inside");
  EXPECT_TRUE(Resources::find("inside").has_value());
  for (const char* name : {"../secret", "x/../../secret", "/etc/passwd", "", ".."}) {
    EXPECT_FALSE(Resources::find(name).has_value()) << name;
    EXPECT_FALSE(Resources::writeTable(name, PropertyList(true))) << name;
  }
}

TEST_F(ResourcesTest, SettingsThatAreWrittenBackHideNothingThatANewerProgramBrings) {
  const std::string name = "StringMessage.plist";
  const PropertyList own = Resources::settings(name);
  PropertyList table = own;
  EXPECT_FALSE(table["openNight"].boolean());
  table.set("openNight", true);
  PropertyList english = table["en"];
  english.set("HomeURL", "https://mine.example/");
  table.set("en", english);
  ASSERT_TRUE(Resources::writeTable(name, table));
  EXPECT_EQ(Resources::settings(name), table);
  const PropertyList kept = PropertyList::read(folder_ / "brisko/" + name);
  EXPECT_EQ(kept.dictionary().size(), 2U) << kept.xml();
  EXPECT_EQ(kept["en"].dictionary().size(), 1U) << kept.xml();
  folder_.file("brisko/" + name, "<plist><dict>");
  EXPECT_EQ(Resources::settings(name), own) << "a broken copy changes nothing";
  ASSERT_TRUE(Resources::writeTable(name, own));
  const test::Environment given("BRISKO_RESOURCES", folder_.folder("given").c_str());
  ASSERT_TRUE(Resources::writeTable(name, table));
  EXPECT_EQ(PropertyList::read(folder_ / "given/" + name), table) << "whole, for packagers";
}

TEST_F(ResourcesTest, ABrokenTableIsEmptyAndSaid) {
  folder_.file("brisko/StringMessage.plist", "<plist><dict>");
  test::LogCapture log;
  EXPECT_TRUE(Resources::table("StringMessage.plist").isNull());
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(ResourcesTest, ImagesAreFoundUnderEveryFormOfTheirName) {
  folder_.file("brisko/images/ic_test.svg", "<svg/>");
  for (const char* name :
       {"ic_test", "ic_test@2x", "ic_test.png", "ic_test@2x.png", "ic_test.svg"}) {
    EXPECT_EQ(Resources::image(name), "<svg/>") << name;
  }
  EXPECT_FALSE(Resources::image("ic_test2x").has_value());
}

}  // namespace
}  // namespace brisko
