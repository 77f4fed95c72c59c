#include "BrowserProfiles.h"
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisko::test {
namespace {

using testing::HasSubstr;

/// Browsers of a home, known by desktop entries of the user's own.
class BrowsersCommand : public testing::Test {
 protected:
  BrowsersCommand() {
    install("chromium", "Chromium");
    install("vivaldi", "Vivaldi");
    makeLogins(home_ / (kChromium + "Login Data"), 2);
    makeLogins(home_ / (kVivaldi + "Login Data"), 2);
    home_.file(".cache/chromium/Default/Cache/a", std::string(2000, 'x'));
  }

  void install(const std::string& id, const std::string& name) {
    home_.file("share/applications/" + id + ".desktop",
               "[Desktop Entry]\nType=Application\nName=" + name +
                   "\nExec=" + home_.file("apps/" + id + "/" + id) + "\n");
  }
  int logins(const std::string& profile) const {
    return rowsIn(home_ / (profile + "Login Data"), "logins");
  }
  Outcome browsers(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "browsers");
    return Program()
        .variable("HOME", home_.path())
        .variable("XDG_DATA_HOME", home_ / "share")
        .variable("XDG_DATA_DIRS", home_ / "none")
        .run(arguments);
  }
  /// A kind in a document.
  static nlohmann::json kind(const nlohmann::json& document, const std::string& browser,
                             const std::string& name) {
    for (const auto& each : document["browsers"]) {
      for (const auto& one : each["chrArr"]) {
        if (each["name"] == browser && one["name"] == name) return one;
      }
    }
    return {};
  }

  const std::string kChromium = ".config/chromium/Default/";
  const std::string kVivaldi = ".config/vivaldi/Default/";
  TemporaryFolder home_;
};

TEST_F(BrowsersCommand, ListsWhatIsKeptAndChangesNothing) {
  const Outcome listed = browsers({"--json"});
  ASSERT_EQ(listed.status, 0) << listed.errors;
  const auto document = listed.json();
  EXPECT_EQ(kind(document, "Chromium", "Save Password")["size"], "2 Items");
  EXPECT_EQ(kind(document, "Chromium", "Save Password")["isSelect"], 1);
  EXPECT_EQ(kind(document, "Chromium", "Caches")["bytes"], 2000);
  EXPECT_EQ(kind(document, "Chromium", "Caches")["urlStr"], "${XDG_CACHE_HOME}/chromium/*/Cache");
  EXPECT_FALSE(document.contains("failed"));
  EXPECT_THAT(browsers({}).output, HasSubstr("2.00 KB"));
  EXPECT_EQ(logins(kChromium), 2);
}

TEST_F(BrowsersCommand, ErasesWhatIsNamedAndSaysWhatIsLost) {
  const Outcome plan = browsers({"--clean", "--dry-run", "--json", "--browser", "chromium",
                                 "--kind", "save password", "--kind", "Caches"});
  ASSERT_EQ(plan.status, 0) << plan.errors;
  EXPECT_EQ(plan.json()["wouldErase"].size(), 2U);
  EXPECT_EQ(plan.json()["wouldErase"][1]["paths"][0], home_ / (kChromium + "Login Data"));
  EXPECT_EQ(logins(kChromium), 2);
  const Outcome erased =
      browsers({"--clean", "--yes", "--json", "--browser", "Chromium", "--kind", "Save Password"});
  ASSERT_EQ(erased.status, 0) << erased.errors;
  EXPECT_THAT(erased.errors, HasSubstr("2 saved passwords of Chromium will be lost"));
  EXPECT_EQ(erased.json()["failed"].size(), 0U);
  EXPECT_EQ(kind(erased.json(), "Chromium", "Save Password")["size"], "0 Item");
  EXPECT_EQ(logins(kChromium), 0);
  EXPECT_EQ(logins(kVivaldi), 2);
  EXPECT_TRUE(exists(home_ / ".cache/chromium/Default/Cache/a"));
}

TEST_F(BrowsersCommand, WhatCouldNotBeErasedIsNamed) {
  home_.file(kVivaldi + "Cookies", std::string(4096, 'x'));
  const Outcome outcome = browsers({"--clean", "--yes", "--json"});
  EXPECT_EQ(outcome.status, 1);
  const auto failed = outcome.json()["failed"];
  ASSERT_EQ(failed.size(), 1U) << failed;
  EXPECT_EQ(failed[0]["browser"], "Vivaldi");
  EXPECT_EQ(failed[0]["kind"], "Cookies");
  EXPECT_THAT(failed[0]["reason"], HasSubstr("Cookies: it is encrypted"));
  EXPECT_EQ(logins(kVivaldi), 0) << "the others go on";
}

TEST_F(BrowsersCommand, WrongUsageIsOneLineAndTouchesNothing) {
  const std::vector<std::vector<std::string>> cases = {
      {"--clean"}, {"--clean", "--yes", "--browser", "Lynx"}, {"--kind", "Bookmarks"}, {"more"}};
  for (const auto& arguments : cases) {
    const Outcome outcome = browsers(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments[0];
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
    EXPECT_EQ(outcome.output, "");
  }
  EXPECT_EQ(logins(kChromium), 2);
}

}  // namespace
}  // namespace brisko::test
