#include "Host.h"
#include "LogCapture.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

using test::Environment;
using test::TemporaryFolder;

TEST(LinuxHostFolders, HomeLiesBelowTheRootWhateverTheEnvironmentSays) {
  const Environment user("USER", "anna");
  const struct {
    const char* root;
    const char* home;
    const char* expected;
  } kCases[] = {
      {"", "/home/anna/", "/home/anna"},
      {"/mnt/disk", "/home/anna", "/mnt/disk/Users/anna"},
      {"/mnt/disk", "/mnt/disk/home/anna", "/mnt/disk/home/anna"},
      {"/mnt/disk", "/mnt/disk2/home/anna", "/mnt/disk/Users/anna"},
      {"/mnt/disk", "/mnt/disk/../../home/anna", "/mnt/disk/Users/anna"},
  };
  for (const auto& row : kCases) {
    const Environment home("HOME", row.home);
    const Environment cache("XDG_CACHE_HOME", "/elsewhere/cache");
    const auto host = makeHost({row.root});
    EXPECT_EQ(host->folders->home(), row.expected);
    const bool hasRoot = *row.root != '\0';
    EXPECT_EQ(host->folders->variable("XDG_CACHE_HOME"),
              hasRoot ? std::string(row.expected) + "/.cache" : "/elsewhere/cache");
    EXPECT_EQ(host->folders->userFolder(), std::string(row.root) + "/Users/anna");
  }
}

TEST(LinuxHostFolders, AUserNameThatIsNoNameLeadsNowhereElse) {
  const Environment home("HOME", nullptr);
  for (const char* name : {"../etc", "..", "", "a/b"}) {
    const Environment user("USER", name);
    const std::string folder = makeHost({"/r"})->folders->userFolder();
    EXPECT_TRUE(folder.starts_with("/r/Users/")) << name;
    EXPECT_EQ(folder.find("..", 0), std::string::npos) << name;
    EXPECT_EQ(folder.find('/', 9), std::string::npos) << name;
  }
}

TEST(LinuxHostFolders, TheTemporaryFolderIsPrivateOrNone) {
  TemporaryFolder folder;
  const Environment runtime("XDG_RUNTIME_DIR", folder.path().c_str());
  const std::string made = makeHost({})->folders->temporary();
  EXPECT_EQ(made, folder / ("brisko-" + std::to_string(geteuid())));
  struct stat status;
  ASSERT_EQ(lstat(made.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  EXPECT_EQ(makeHost({})->folders->temporary(), made);

  // A link that waits there, or a folder that others can write, is not used.
  TemporaryFolder hostile;
  const Environment other("XDG_RUNTIME_DIR", hostile.path().c_str());
  const Environment temporary("TMPDIR", folder.folder("second").c_str());
  hostile.link("brisko-" + std::to_string(geteuid()), made);
  EXPECT_EQ(makeHost({})->folders->temporary(),
            folder / ("second/brisko-" + std::to_string(geteuid())));
  chmod((folder / ("second/brisko-" + std::to_string(geteuid()))).c_str(), 0777);
  EXPECT_NE(makeHost({})->folders->temporary(),
            folder / ("second/brisko-" + std::to_string(geteuid())));
}

class LinuxPreferencesTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  test::TestHost host_{folder_.path()};
  Preferences& preferences() { return *host_.host().preferences; }
};

TEST_F(LinuxPreferencesTest, WhatIsSetIsSeenAtOnceAndLastsOnceWritten) {
  preferences().setValue("com.example", "a", 1);
  preferences().setValue("com.example", "b", "two");
  EXPECT_EQ(preferences().value("com.example", "a").integer(), 1);
  EXPECT_TRUE(makeHost({folder_.path()})->preferences->value("com.example", "a").isNull());
  EXPECT_TRUE(preferences().synchronize());
  auto other = makeHost({folder_.path()});
  EXPECT_EQ(other->preferences->value("com.example", "b").string(), "two");

  // Two writers of different keys do not undo each other.
  other->preferences->setValue("com.example", "c", 3);
  preferences().setValue("com.example", "a", PropertyList());
  EXPECT_TRUE(other->preferences->synchronize());
  EXPECT_TRUE(preferences().synchronize());
  EXPECT_EQ(preferences().persistentDomain("com.example"),
            PropertyList(PropertyList::Dictionary{{"b", "two"}, {"c", 3}}));

  preferences().setPersistentDomain("com.example", PropertyList::Dictionary{{"d", 4}});
  preferences().setValue("com.example", "e", 5);
  EXPECT_TRUE(preferences().synchronize());
  EXPECT_EQ(other->preferences->persistentDomain("com.example"),
            PropertyList(PropertyList::Dictionary{{"d", 4}, {"e", 5}}));
}

TEST_F(LinuxPreferencesTest, TheApplicationFallsBackToTheGlobalDomain) {
  preferences().setValue(Preferences::kGlobalDomain, "Style", "dark");
  EXPECT_EQ(preferences().value(Preferences::kApplicationDomain, "Style").string(), "dark");
  preferences().setValue(Preferences::kApplicationDomain, "Style", "light");
  EXPECT_EQ(preferences().value(Preferences::kApplicationDomain, "Style").string(), "light");
  EXPECT_TRUE(preferences().value("com.example", "Style").isNull());
}

TEST_F(LinuxPreferencesTest, ADomainCannotNameAFileElsewhere) {
  folder_.file("Users/anna/.config/brisko/secret.plist", PropertyList(true).xml());
  preferences().setValue("../secret", "key", 1);
  EXPECT_FALSE(preferences().synchronize());
  EXPECT_TRUE(preferences().value("../secret", "key").isNull());
  EXPECT_EQ(PropertyList::read(folder_ / "Users/anna/.config/brisko/secret.plist"),
            PropertyList(true));
}

TEST_F(LinuxPreferencesTest, LanguagesComeFromTheLocaleUntilSomebodySetsThem) {
  const struct {
    const char *language, *all, *messages, *lang;
    PropertyList::Array expected;
  } kCases[] = {
      {nullptr, nullptr, nullptr, nullptr, {"en"}},
      {nullptr, nullptr, nullptr, "de_DE.UTF-8", {"de"}},
      {nullptr, "fr_CH", "it_IT", "de_DE.UTF-8", {"fr"}},
      {nullptr, "", "it_IT@euro", "de_DE.UTF-8", {"it"}},
      {"pt_BR:pt::en", nullptr, nullptr, "de_DE.UTF-8", {"pt", "en", "de"}},
      {"de", "C", nullptr, "de_DE.UTF-8", {"en"}},
      {"de", nullptr, nullptr, "C.UTF-8", {"en"}},
      {nullptr, nullptr, nullptr, "POSIX", {"en"}},
  };
  for (const auto& row : kCases) {
    const Environment language("LANGUAGE", row.language), all("LC_ALL", row.all),
        messages("LC_MESSAGES", row.messages), lang("LANG", row.lang);
    EXPECT_EQ(preferences().value(Preferences::kApplicationDomain, "AppleLanguages").array(),
              row.expected);
  }
  preferences().setValue(Preferences::kGlobalDomain, "AppleLanguages", PropertyList::Array{"ja"});
  EXPECT_EQ(preferences().value(Preferences::kGlobalDomain, "AppleLanguages").array(),
            PropertyList::Array{"ja"});
}

TEST(LinuxSystemVersion, IsTenThirteenUnlessTheRootSaysOtherwise) {
  const struct {
    const char* product;
    std::uint32_t packed, major, minor, bugFix;
  } kCases[] = {
      {nullptr, 0x1090, 10, 13, 0}, {"10.14.6", 0x1096, 10, 14, 6}, {"10.3.9", 0x1039, 10, 3, 9},
      {"11.2", 0x1120, 11, 2, 0},   {"12", 0x1200, 12, 0, 0},       {"10.15.x", 0x1090, 10, 13, 0},
      {"", 0x1090, 10, 13, 0},      {"-1.2", 0x1090, 10, 13, 0},    {"10.1.2.3", 0x1090, 10, 13, 0},
  };
  for (const auto& row : kCases) {
    TemporaryFolder folder;
    if (row.product != nullptr) {
      PropertyList list;
      list.set("ProductVersion", row.product);
      folder.file("System/Library/CoreServices/SystemVersion.plist", list.xml());
    }
    SystemVersion::Selectors found;
    EXPECT_EQ(makeHost({folder.path()})->systemVersion->read(found), 0);
    EXPECT_EQ(found.packed, row.packed);
    EXPECT_EQ(found.major, row.major);
    EXPECT_EQ(found.minor, row.minor);
    EXPECT_EQ(found.bugFix, row.bugFix);
  }
}

}  // namespace
}  // namespace brisko
