#include "Dispatch.h"
#include "Host.h"
#include "LoginItems.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;

class LoginItemsStore : public testing::Test {
 protected:
  LoginItemsStore() : host_(root_.path()) {}

  LoginItems& store() { return *Host::current().loginItems; }
  std::string own(const std::string& name) {
    return root_ / ("Users/anna/.config/autostart/" + name);
  }
  std::string makeOwn(const std::string& name, const std::string& text) {
    return root_.file("Users/anna/.config/autostart/" + name, text);
  }
  std::string makeProgram(const std::string& name) {
    const std::string path = root_.file(name, "#!/bin/sh\n");
    ::chmod(path.c_str(), 0755);
    return path;
  }
  std::vector<LoginItem> items() {
    std::vector<LoginItem> all;
    EXPECT_EQ(store().snapshot(all), LoginItems::noErr);
    return all;
  }
  std::vector<std::string> paths() {
    std::vector<std::string> all;
    for (const LoginItem& item : items())
      all.push_back(store().resolve(item).value_or("-"));
    return all;
  }

  TemporaryFolder root_;
  TestHost host_;
};

using Paths = std::vector<std::string>;

TEST_F(LoginItemsStore, KeepsTheOrderInWhichItemsWereAddedAndMovesOneAddedAgainToTheEnd) {
  const std::string first = root_.file("z first.txt");
  const std::string second = makeProgram("a second");
  const std::string third = root_.folder("third");
  EXPECT_EQ(store().insertLast(first, false), LoginItems::noErr);
  EXPECT_EQ(store().insertLast(second, true), LoginItems::noErr);
  EXPECT_EQ(store().insertLast(third + "/", false), LoginItems::noErr);
  EXPECT_EQ(paths(), (Paths{first, second, third}));
  EXPECT_TRUE(items()[1].isHidden);
  EXPECT_EQ(store().insertLast(first, false), LoginItems::noErr);
  EXPECT_EQ(paths(), (Paths{second, third, first}));
  EXPECT_EQ(store().insertLast(root_ / "missing", false), LoginItems::fnfErr);
  makeOwn("b\xFF.desktop", "no text");
  const std::string odd = root_.file("\xFE odd.txt");
  EXPECT_EQ(store().insertLast(odd, false), LoginItems::noErr);
  EXPECT_EQ(paths(), (Paths{second, third, first, odd, own("b\xFF.desktop")}));
}

TEST_F(LoginItemsStore, WhatIsNoApplicationIsOpenedThroughTheDesktopByItsExactName) {
  const std::string odd = root_.file("50% \"of\" $HOME `x` \\ n.txt");
  ASSERT_EQ(store().insertLast(odd, false), LoginItems::noErr);
  EXPECT_EQ(paths(), Paths{odd});
  const std::string entry = contentOf(own(items()[0].identifier));
  EXPECT_NE(entry.find("\nExec=xdg-open \""), std::string::npos) << entry;
  EXPECT_NE(entry.find("/50%% \\\\\"of\\\\\" \\\\$HOME \\\\`x\\\\` \\\\\\\\ n.txt\"\n"),
            std::string::npos)
      << entry;
}

TEST_F(LoginItemsStore, AnApplicationsEntryIsCopiedAndGoesWhenTheApplicationGoes) {
  const std::string program = makeProgram("usr/bin/chat");
  const std::string entry = root_.file(
      "usr/share/applications/org.example.Chat.desktop",
      "# made by hand\n[Desktop Entry]\nType=Application\nHidden=true\nName=Chat\nExec=" + program +
          " %U\nX-Vendor=7\n\n[Desktop Action New]\nName=New\n");
  ASSERT_EQ(store().insertLast(entry, false), LoginItems::noErr);
  const std::string copy = contentOf(own("org.example.Chat.desktop"));
  EXPECT_TRUE(copy.starts_with("# made by hand\n[Desktop Entry]\nType=Application\nName=")) << copy;
  EXPECT_TRUE(copy.ends_with("X-Brisko-Hidden=false\n\n[Desktop Action New]\nName=New\n")) << copy;
  EXPECT_EQ(paths(), Paths{entry});
  fs::remove(entry);
  EXPECT_EQ(paths(), Paths{"-"});
}

TEST_F(LoginItemsStore, HidingIsStoredAndReachesProgramsThatCanStartHidden) {
  const std::string able = makeProgram("bin/telegram-desktop");
  const std::string text =
      "[Desktop Entry]\n# keep\nType=Application\nName=T\nExec=" + able + " -- %u\nOther=1\n";
  const std::string target = root_.file("elsewhere.desktop", text);
  fs::create_directories(fs::path(own("x")).parent_path());
  fs::create_symlink(target, own("t.desktop"));
  ASSERT_EQ(items().size(), 1U);
  EXPECT_EQ(store().setHidden(items()[0], true), LoginItems::noErr);
  EXPECT_EQ(contentOf(own("t.desktop")),
            "[Desktop Entry]\n# keep\nType=Application\nName=T\nExec=" + able +
                " -- %u -startintray\nOther=1\nX-Brisko-Hidden=true\n");
  EXPECT_EQ(contentOf(target), text) << "what a link leads to is not ours to change";
  EXPECT_TRUE(items()[0].isHidden);
  EXPECT_EQ(store().setHidden(items()[0], false), LoginItems::noErr);
  EXPECT_NE(contentOf(own("t.desktop")).find(" -- %u\n"), std::string::npos);
  EXPECT_EQ(store().remove(items()[0]), LoginItems::noErr);
  EXPECT_TRUE(items().empty());
  EXPECT_TRUE(fs::exists(target));
}

TEST_F(LoginItemsStore, WhatCannotBeUnderstoodIsListedByItsFileAndNeverRewritten) {
  makeOwn("a broken.desktop", "no entry at all");
  makeOwn("b huge.desktop", std::string((1U << 20) + 1, '#'));
  makeOwn("c no program.desktop", "[Desktop Entry]\nType=Application\nName=X\nExec=\"open\n");
  makeOwn("d gone.desktop", "[Desktop Entry]\nType=Application\nName=X\nExec=/nowhere/x\n");
  makeOwn("not an entry.txt", "");
  EXPECT_EQ(paths(), (Paths{own("a broken.desktop"), own("b huge.desktop"),
                            own("c no program.desktop"), "-"}));
  EXPECT_EQ(store().setHidden(items()[0], true), LoginItems::paramErr);
  EXPECT_EQ(contentOf(own("a broken.desktop")), "no entry at all");
}

TEST_F(LoginItemsStore, SharedEntriesAreSwitchedForTheUserAlone) {
  const std::string entry = "[Desktop Entry]\nType=Application\nName=Indexer\nExec=/bin/true\n";
  const std::string shared = root_.file("etc/xdg/autostart/indexer.desktop", entry);
  root_.file("etc/xdg/autostart/agent.desktop", entry + "NoDisplay=true\n");
  makeOwn("off.desktop", entry + "X-GNOME-Autostart-enabled=false\n");
  auto all = store().switchedItems();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].identifier, "indexer.desktop");
  EXPECT_TRUE(all[0].isOn && all[0].isForEveryone);
  EXPECT_FALSE(all[1].isOn || all[1].isForEveryone);
  EXPECT_EQ(store().setSwitched(all[0], false), LoginItems::noErr);
  EXPECT_FALSE(store().switchedItems()[0].isOn);
  EXPECT_TRUE(items().empty()) << "an override is no item of its own";
  EXPECT_EQ(contentOf(shared), entry);
  EXPECT_EQ(store().setSwitched(store().switchedItems()[0], true), LoginItems::noErr);
  EXPECT_FALSE(fs::exists(own("indexer.desktop")));
  EXPECT_EQ(store().setSwitched(all[1], true), LoginItems::noErr);
  EXPECT_EQ(items().size(), 1U) << "switched on it is an item again";
  EXPECT_EQ(store().setSwitched(all[0], false), LoginItems::noErr);
  fs::remove(shared);
  EXPECT_TRUE(store().switchedItems().empty()) << "there is nothing left to switch";
}

TEST_F(LoginItemsStore, TellsOfChangesByOthersEvenWhereTheFolderIsMadeLater) {
  Dispatch::attachMainThread();
  int told = 0;
  const int token = store().observe([&] { ++told; });
  makeOwn("late.desktop", "");
  Dispatch::runUntil([&] { return told > 0; });
  const int before = told;
  std::ofstream(own("late.desktop")) << "changed";
  Dispatch::runUntil([&] { return told > before; });
  store().stopObserving(token);
}

}  // namespace
}  // namespace brisko::test
