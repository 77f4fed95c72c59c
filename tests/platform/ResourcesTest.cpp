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

TEST_F(ResourcesTest, ATableThatIsWrittenIsReadBackFromThere) {
  PropertyList table = Resources::table("StringMessage.plist");
  EXPECT_FALSE(table["openNight"].boolean());
  table.set("openNight", true);
  ASSERT_TRUE(Resources::writeTable("StringMessage.plist", table));
  EXPECT_TRUE(Resources::table("StringMessage.plist")["openNight"].boolean());
  EXPECT_TRUE(test::exists(folder_ / "brisko/StringMessage.plist"));
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
