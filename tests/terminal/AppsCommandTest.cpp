#include "MadeApplications.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisko::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class AppsCommandLine : public testing::Test {
 protected:
  AppsCommandLine() { makeFortyBundles(root.path()); }

  Outcome brisko(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--root", root.path()});
    return Program().run(arguments);
  }
  std::string testApp() const { return root / "Applications/Test App.app"; }

  TemporaryFolder root;
};

TEST_F(AppsCommandLine, AppsListsSortsAndSearches) {
  const json items = brisko({"apps", "--json", "--sort", "size"}).json()["items"];
  ASSERT_EQ(items.size(), 30U);
  EXPECT_EQ(items[1]["name"], "Test App");
  EXPECT_EQ(items[1]["bundleID"], "com.example.testapp");
  EXPECT_EQ(items[1]["isSystemAppStr"], "NO");
  EXPECT_EQ(items[1]["size"], "2.00 MB");
  EXPECT_GE(items[1]["bytes"].get<std::uint64_t>(), 2'000'000U);
  const json named = brisko({"apps", "--json", "--sort", "name", "--search", "NOTES"}).json();
  ASSERT_EQ(named["items"].size(), 2U);
  EXPECT_EQ(named["items"][0]["name"], "Notes");
  EXPECT_EQ(brisko({"apps", "--type", "widgets", "--json"}).json()["items"].size(), 4U);
  EXPECT_THAT(brisko({"apps", "--type", "plugins"}).output, HasSubstr("6 items"));
  for (const char* wrong : {"--type=tools", "--sort=date"}) {
    const Outcome outcome = brisko({"apps", wrong});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errorLines(), 1U);
  }
}

TEST_F(AppsCommandLine, RelatedShowsTheBundleFirstAndDryRunRemovesNothing) {
  // As people on that system would write it, and as it lies here.
  for (const std::string& path : {testApp(), std::string("/Applications/Test App.app/")}) {
    const json items = brisko({"related", path, "--json"}).json()["items"];
    ASSERT_EQ(items.size(), 7U);
    EXPECT_EQ(items[0]["path"], testApp());
    EXPECT_EQ(items[0]["role"], "bundle");
    EXPECT_EQ(items[2]["path"], root / "Users/anna/Library/Caches/TestApp");
    EXPECT_EQ(items[2]["bytes"], 700'000);
    EXPECT_EQ(items[2]["selected"], true);
  }
  const json dry = brisko({"uninstall", testApp(), "--dry-run", "--json"}).json();
  EXPECT_EQ(dry["dryRun"], true);
  EXPECT_EQ(dry["wouldRemove"].size(), 7U);
  EXPECT_TRUE(exists(testApp()));
}

TEST_F(AppsCommandLine, UninstallTakesWhatBelongsToItAndNothingElse) {
  const Outcome asked = brisko({"uninstall", testApp()});
  EXPECT_EQ(asked.status, 2) << "nobody could be asked";
  EXPECT_TRUE(exists(testApp()));
  const json notes = brisko({"related", "com.example.notes", "--json"}).json()["items"];
  ASSERT_EQ(notes.size(), 2U);
  EXPECT_EQ(notes[1]["sharedWith"], "Notes Pro");
  const Outcome outcome = brisko({"uninstall", testApp(), "--yes", "--json"});
  EXPECT_EQ(outcome.status, 0) << outcome.output << outcome.errors;
  const json document = outcome.json();
  EXPECT_EQ(document["items"].size(), 7U);
  for (const json& item : document["items"])
    EXPECT_EQ(item["removed"], true) << item;
  EXPECT_TRUE(document["failed"].empty());
  EXPECT_EQ(document["freed"], "3.01 MB");
  EXPECT_FALSE(exists(testApp()));
  EXPECT_FALSE(exists(root / "Users/anna/Library/Caches/TestApp"));
  EXPECT_TRUE(exists(root / "Users/anna/Library/Caches/MyTest App"));
  EXPECT_TRUE(exists(root / "Users/anna/Library/Application Support/Notes Pro/notes.db"));
  EXPECT_EQ(brisko({"apps", "--json"}).json()["items"].size(), 29U);
}

TEST_F(AppsCommandLine, EntryListedTwiceIsRemovedAndItsBytesCountOnce) {
  const std::string app =
      makeBundle(root.path(), {"Applications/Foo.app", "foo.bar", "1", "Foo", ""});
  const std::string cache =
      root.file("Users/anna/Library/Caches/foo.bar", std::string(1 << 20, 'x'));
  const json document = brisko({"uninstall", app, "--yes", "--json"}).json();
  ASSERT_EQ(document["items"].size(), 3U);
  EXPECT_EQ(document["items"][1]["path"], cache);
  EXPECT_EQ(document["items"][2]["removed"], true);
  EXPECT_LT(document["freedBytes"].get<std::uint64_t>(), 2U << 20U);
  EXPECT_FALSE(exists(cache));
}

TEST_F(AppsCommandLine, PackageOfAnotherSystemStaysAndSaysWhy) {
  const std::string entry = "usr/share/applications/vim.desktop";
  root.file(entry, "[Desktop Entry]\nType=Application\nName=Vim\nExec=vim\n");
  root.file("var/lib/dpkg/info/vim.list", "/" + entry + "\n");
  root.file("var/lib/dpkg/status", "Package: vim\nStatus: install ok installed\nVersion: 9\n");
  root.file("Users/anna/.config/vim/rc");
  const Outcome outcome = brisko({"uninstall", "vim", "--yes", "--json"});
  EXPECT_EQ(outcome.status, 1);
  const json document = outcome.json();
  EXPECT_TRUE(document["items"].empty());
  EXPECT_EQ(document["failed"][0]["path"], "vim");
  EXPECT_THAT(document["failed"][0]["reason"].get<std::string>(), HasSubstr("running system"));
  EXPECT_TRUE(exists(root / "Users/anna/.config/vim/rc"));
}

TEST_F(AppsCommandLine, WhatIsNoBundleOrNotOneIsOneLine) {
  root.link("Applications/Linked.app", root / "Applications/Notes.app");
  for (const std::string& path :
       {root / "Users/anna/Downloads", root / "Applications/file.app",
        root / "Applications/Missing.app", std::string("/"), std::string(""),
        std::string("no.such.identifier"), std::string("com.example.plugin"),
        root / "Users/anna/Applications/Mail.app"}) {
    for (const char* command : {"related", "uninstall"}) {
      const Outcome outcome = brisko({command, "--yes", path});
      EXPECT_EQ(outcome.status, 2) << command << " " << path;
      EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
      EXPECT_EQ(outcome.output, "");
    }
  }
  EXPECT_EQ(brisko({"uninstall", "--yes", root / "Applications/Linked.app"}).status, 0);
  EXPECT_FALSE(exists(root / "Applications/Linked.app"));
  EXPECT_TRUE(exists(root / "Applications/Notes.app/Contents/Info.plist")) << "only the link";
}

}  // namespace
}  // namespace brisko::test
