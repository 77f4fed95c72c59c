#include "AppNames.h"
#include "MadeApplications.h"
#include "RelatedAppFilesScanner.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisko::test {
namespace {

using testing::ElementsAre;

class RelatedFiles : public testing::Test {
 protected:
  RelatedFiles() : host(root.path()) {}

  std::vector<std::string> related(const std::string& bundle, SizeTime sizes = SizeTime::now) {
    std::vector<std::string> paths;
    for (const AppItem& item :
         RelatedAppFilesScanner::relatedFilesToApplicationAtPath(root / bundle, sizes))
      paths.push_back(item->path.substr(root.path().size() + 1));
    return paths;
  }

  TemporaryFolder root;
  TestHost host;
};

TEST_F(RelatedFiles, LocationsAreWalkedInOrderWithTheNameBeforeTheIdentifier) {
  makeFortyBundles(root.path());
  const std::string library = "Users/anna/Library/";
  root.file(library + "Preferences/test app.old");
  root.file("Library/Preferences/com.example.testapp.plist");
  root.file(library + "Saved Application State/com.example.testapp.savedState/data");
  const std::vector<std::string> expected = {
      "Applications/Test App.app",
      library + "Preferences/test app.old",
      library + "Preferences/com.example.testapp.plist",
      "Library/Preferences/com.example.testapp.plist",
      library + "Caches/TestApp",
      library + "Logs/test app.log",
      library + "Saved Application State/com.example.testapp.savedState",
      "Library/Application Support/Test App",
      "Users/anna/Downloads/Test App Installer.dmg",
      library + "Application Support/Growl/Tickets/Test App.growlTicket"};
  EXPECT_EQ(related("Applications/Test App.app"), expected);
  EXPECT_EQ(related("Applications/Test App.app", SizeTime::later), expected);
  const AppItems items =
      RelatedAppFilesScanner::relatedFilesToApplicationAtPath(root / "Applications/Test App.app");
  EXPECT_EQ(items[4]->size, "700.00 KB");
  EXPECT_EQ(items[4]->bytes, 700'000U);
}

TEST_F(RelatedFiles, BundleAloneComesBackWhenItTellsNoNameOrNoIdentifier) {
  root.file("Users/anna/Library/Preferences/Quiet.plist");
  makeBundle(root.path(), {"A/NoID.app", "", "1", "Quiet", ""});
  makeBundle(root.path(), {"A/Blank.app", " ", "1", "Quiet", ""});
  makeBundle(root.path(), {"A/NoName.app", "com.example.quiet", "1", "", ""});
  makeBundle(root.path(), {"A/Program.app", "com.example.quiet", "1", "", "quiet"});
  EXPECT_EQ(related("A/NoID.app").size(), 1U);
  EXPECT_EQ(related("A/Blank.app").size(), 1U);
  EXPECT_EQ(related("A/NoName.app").size(), 1U);
  EXPECT_EQ(related("A/Program.app").size(), 2U) << "the executable's name stands in";
  EXPECT_EQ(RelatedAppFilesScanner::relatedFilesToApplicationAtPath("").size(), 1U);
  EXPECT_TRUE(host.logged("......."));
}

TEST_F(RelatedFiles, EntryThatFitsTwiceIsListedTwiceAndAnEmptyKeyFitsNothing) {
  makeBundle(root.path(), {"A/Foo.app", "foo.bar", "1", "Foo", ""});
  root.file("Users/anna/Library/Caches/foo.bar.db");
  EXPECT_THAT(related("A/Foo.app"), ElementsAre("A/Foo.app", "Users/anna/Library/Caches/foo.bar.db",
                                                "Users/anna/Library/Caches/foo.bar.db"));
  makeBundle(root.path(), {"A/Blanks.app", "com.example.blanks", "1", "  ", ""});
  root.file("Users/anna/Library/Caches/  two blanks");
  EXPECT_EQ(related("A/Blanks.app").size(), 1U);
}

TEST_F(RelatedFiles, PrefixesGoByLettersOfAnyScriptAndWithoutBlanks) {
  for (const char* name :
       {"Älpha One.plist", "älphaone2", "ALPHA", "FlashPlayerInstallManager.log"})
    root.file("folder/" + std::string(name));
  AppItems items;
  AddPathIfExists(items, root / "folder", "ÄLPHA one");
  EXPECT_EQ(items.size(), 2U);
  EXPECT_TRUE(host.logged("Break here!"));
  AddPathIfExists(items, root / "no such folder", "x");
  AddPathIfExists(items, root.link("linked", root / "folder"), "alpha");
  EXPECT_EQ(items.size(), 2U);
  EXPECT_EQ(lowerCased("ÀÉ\xffZ"), "àé\xffz");
}

}  // namespace
}  // namespace brisko::test
