// The list as people see it, from adding to the outcome.

#include "Dispatch.h"
#include "FileDescriptor.h"
#include "FileShareModel.h"
#include "Machine.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using testing::HasSubstr;

class ShredList : public testing::Test {
 protected:
  ShredList()
      : host(folder / "root"), tools("BRISKO_TOOLS", (buildTree() + "/libexec/brisko").c_str()) {}

  void plan() {
    model.preparePlan();
    Dispatch::runUntil([&] { return !model.isPlanning(); });
  }
  void erase() {
    plan();
    model.doDeleteButtonClick();
    EXPECT_FALSE(model.isCanClick());
    Dispatch::runUntil([&] { return !model.isShredding(); });
  }
  std::string outcome(std::size_t row) const { return model.row(row).failStr; }

  TemporaryFolder folder;
  TestHost host;
  Environment tools;
  FileShareModel model;
};

TEST_F(ShredList, TakesWhatIsThereOnceAndNothingThatIsProtected) {
  folder.file("real/f", "1");
  folder.link("way", folder / "real");
  const auto refused = model.addFileToArr(
      {folder / "way/f", "/etc", folder / "real/f", folder / "gone", folder / "way/"});
  ASSERT_EQ(refused.size(), 2U);
  EXPECT_EQ(refused[0].path, "/etc");
  EXPECT_EQ(refused[1].reason, "It is not there.");
  ASSERT_EQ(model.rowCount(), 2U) << "two lead to the same item";
  EXPECT_EQ(model.row(0).url, folder / "real/f");
  EXPECT_TRUE(model.row(0).isSelect);
  EXPECT_FALSE(model.row(1).isDir) << "the link itself";
}

TEST_F(ShredList, BoxesFollowTheRows) {
  model.addFileToArr({folder.file("a", "1"), folder.file("b", "1"), folder.file("c", "1")});
  EXPECT_STREQ(model.selectAllImage(), "sel");
  model.toggle(1);
  EXPECT_STREQ(model.selectAllImage(), "halfsel");
  EXPECT_EQ(model.selectedCount(), 2U);
  model.setAllSelectOrNoSelect(false);
  EXPECT_STREQ(model.selectAllImage(), "unsel");
  plan();
  EXPECT_EQ(model.planCount(), 0U);
  model.removeFromList(0);
  EXPECT_EQ(model.row(0).name, "b");
  EXPECT_TRUE(exists(folder / "a")) << "taken out of the list, not off the disk";
  model.emptyListButtonAction();
  EXPECT_EQ(model.rowCount(), 0U);
}

TEST_F(ShredList, EndsWithWhatTheDiskSaysAndKeepsTheUnticked) {
  ASSERT_EQ(link(folder.file("linked/f", "1").c_str(), (folder / "other").c_str()), 0);
  model.addFileToArr({folder.file("tree/a", "12345"), folder / "tree", folder.file("unticked", "1"),
                      folder / "linked"});
  model.toggle(2);
  plan();
  EXPECT_EQ(model.planCount(), 4U) << "the file in the listed folder counts once";
  EXPECT_EQ(model.planBytes(), 6U);
  erase();
  ASSERT_EQ(model.deleteErrorArr().size(), 3U);
  EXPECT_EQ(outcome(0), "Erased");
  EXPECT_EQ(outcome(1), "Erased");
  EXPECT_EQ(outcome(2), "Failed");
  EXPECT_EQ(model.row(2).reason, "f: it has 1 other name (a hard link)");
  ASSERT_EQ(model.valueArr().size(), 1U);
  EXPECT_EQ(model.row(3).name, "unticked");
  EXPECT_TRUE(exists(folder / "unticked"));
  EXPECT_TRUE(model.isFailedEraser());
  EXPECT_FALSE(model.isCancel());
  EXPECT_STREQ(model.selectAllImage(), "unsel");
  EXPECT_TRUE(host.logged("----" + (folder / "linked")));
}

// In a folder a bundle's contents are erased one by one, and it goes only when they are gone.
TEST_F(ShredList, ABundleInAFolderTakesNothingWithItThatCouldNotBeErased) {
  const std::string kept = folder.file("apps/Foo.app/kept", "text");
  folder.file("apps/Foo.app/goes", "text");
  ASSERT_EQ(link(kept.c_str(), (folder / "other").c_str()), 0);
  model.addFileToArr({folder / "apps"});
  erase();
  EXPECT_EQ(outcome(0), "Failed");
  EXPECT_EQ(model.row(0).reason, "Foo.app/kept: it has 1 other name (a hard link)");
  EXPECT_EQ(contentOf(kept), "text");
  EXPECT_FALSE(exists(folder / "apps/Foo.app/goes"));
}

TEST_F(ShredList, ABundleThatStaysIsNoSuccess) {
  if (!isRoot()) GTEST_SKIP() << "because only root can make a folder that nobody can empty";
  const std::string stuck = folder.file("Foo.app/stuck", "1");
  if (!setImmutable(stuck, true)) GTEST_SKIP() << "because no file can be made immutable here";
  model.addFileToArr({folder / "Foo.app"});
  erase();
  EXPECT_EQ(outcome(0), "Failed");
  EXPECT_NE(model.row(0).reason, "");
  EXPECT_TRUE(model.isFailedEraser());
  setImmutable(stuck, false);
}

TEST_F(ShredList, PathsLongerThanTheSystemTakesAreErased) {
  constexpr int kDepth = 20;
  const std::string name(250, 'n');
  FileDescriptor level(open(folder.folder("deep").c_str(), O_PATH | O_CLOEXEC));
  for (int i = 0; i < kDepth; ++i) {
    ASSERT_EQ(mkdirat(level.get(), name.c_str(), 0700), 0);
    level.reset(openat(level.get(), name.c_str(), O_PATH | O_CLOEXEC));
  }
  FileDescriptor file(openat(level.get(), "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  EXPECT_EQ(write(file.get(), "text", 4), 4);
  file.reset();
  model.addFileToArr({folder / "deep"});
  plan();
  EXPECT_EQ(model.planCount(), kDepth + 2U);
  EXPECT_EQ(model.plan().front()->url.size(), (folder / "deep").size() + kDepth * 251 + 5);
  erase();
  EXPECT_EQ(outcome(0), "Erased") << model.row(0).reason;
}

TEST_F(ShredList, ThePreferenceLasts) {
  EXPECT_EQ(model.eraserTimes(), 1);
  model.setEraserTimes(7);
  Host::install(makeHost({folder / "root"}));
  EXPECT_EQ(model.eraserTimes(), 7);
}

}  // namespace
}  // namespace brisko::test
