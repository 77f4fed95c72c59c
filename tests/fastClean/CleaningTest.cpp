#include "FastCleanFileNode.h"
#include "FastCleanModel.h"
#include "JunkTestHost.h"
#include "MadeImage.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class JunkCleaning : public testing::Test {
 protected:
  void scan() {
    model.beginScanFile();
    Dispatch::runUntil([&] { return model.indexPage() == 2; });
  }
  void clean() {
    model.beginCleanFile();
    Dispatch::runUntil([&] { return model.isCanClick(); });
  }

  TemporaryFolder folder;
  JunkTestHost host{folder.path()};
  FastCleanModel model;
};

TEST_F(JunkCleaning, removesTheTickedAndNothingElse) {
  const MadeImage image = MadeImage::build(folder.path());
  scan();
  // One entry of a ticked category is spared, one of an unticked one is given up.
  model.detailButtonAction(0);
  model.selectListButton(0);
  model.backToDetailButtonAction();
  model.detailButtonAction(4);
  model.selectListButton(0);
  model.backToDetailButtonAction();
  std::vector<std::string> planned;
  for (const FastCleanItem& item : model.plan())
    planned.push_back(item.entry->path);
  std::vector<std::string> spared;
  for (const auto& category : model.allTypeArr()) {
    for (const auto& entry : category->detailChildren) {
      if (entry->selectState != 1) spared.push_back(entry->path);
    }
  }
  model.beginCleanFile();
  EXPECT_FALSE(model.isCanClick());
  EXPECT_EQ(model.totalSizeLabel().plain(), "Cleaning junk files, please wait...");
  EXPECT_EQ(model.mainButton().title, "...");
  EXPECT_FALSE(model.backHomeButtonEnabled());
  EXPECT_TRUE(model.rows()[4].loadingShown);
  EXPECT_FALSE(model.rows()[3].loadingShown) << "nothing of it goes";
  Dispatch::runUntil([&] { return model.isCanClick(); });

  EXPECT_THAT(model.failures(), IsEmpty());
  EXPECT_EQ(model.removedPaths(), planned);
  for (const std::string& path : planned)
    EXPECT_FALSE(exists(path)) << path;
  for (const std::string& path : spared)
    EXPECT_TRUE(exists(path)) << path;
  EXPECT_TRUE(image.isIntact());
  EXPECT_TRUE(exists(folder / "Library/Caches")) << "the location itself stays";

  EXPECT_EQ(model.indexPage(), 0);
  EXPECT_EQ(model.view(), FastCleanView::cleanEnd);
  EXPECT_EQ(model.mainButton().title, "Scan");
  EXPECT_EQ(model.totalSize(), 0);
  EXPECT_EQ(model.rows()[0].checkBoxImage, "unsel");
  EXPECT_EQ(model.rows()[1].checkBoxImage, "disable");
  EXPECT_EQ(model.rows()[1].size, "0.00 KB");
  EXPECT_FALSE(model.rows()[0].checkBoxShown);
}

TEST_F(JunkCleaning, showsTheSumOfTheShownSizesAndCountsWhatTheFileSystemGaveBack) {
  const std::string content(300'000, 'x');
  folder.file("Library/Logs/a", content);
  const std::string kept = folder.file("Documents/b", content);
  fs::create_hard_link(kept, folder / "Library/Logs/b");
  scan();
  clean();
  EXPECT_EQ(model.cleanTotalSize(), 600'000U);
  EXPECT_EQ(model.cleanValueLabel(), "600.00 KB");
  EXPECT_GE(model.freedBytes(), 300'000U);
  EXPECT_LT(model.freedBytes(), 350'000U) << "the other name's bytes are still there";
  EXPECT_EQ(contentOf(kept), content);
}

TEST_F(JunkCleaning, leavesWhatIsNoLongerWhatWasShown) {
  const std::string replaced = folder.sizedFile("Library/Logs/replaced", 2'000'000);
  const std::string grown = folder.sizedFile("Library/Logs/grown", 3'000'000);
  const std::string swapped = folder.folder("Library/Logs/swapped");
  folder.sizedFile("Library/Logs/swapped/f", 4'000'000);
  const std::string vanished = folder.sizedFile("Library/Logs/vanished", 1'000'000);
  const std::string precious = folder.file("Documents/thesis.txt", "keep");
  scan();
  fs::rename(replaced, folder / "aside");
  std::ofstream(replaced) << "new";
  std::ofstream(grown, std::ios::app) << "more";
  fs::rename(swapped, folder / "aside2");
  fs::create_directory_symlink(folder / "Documents", swapped);
  fs::remove(vanished);
  clean();
  EXPECT_THAT(model.removedPaths(), IsEmpty());
  std::vector<std::string> failed;
  for (const FastCleanFailure& failure : model.failures()) {
    failed.push_back(failure.path);
    EXPECT_NE(failure.reason, "");
  }
  EXPECT_THAT(failed, UnorderedElementsAre(replaced, grown, swapped));
  EXPECT_EQ(contentOf(replaced), "new");
  EXPECT_EQ(contentOf(precious), "keep");
  EXPECT_EQ(model.cleanTotalSize(), 0U) << "nothing is claimed";
  EXPECT_EQ(model.allTypeArr()[0]->detailChildren.size(), 3U) << "what stayed stays listed";
  EXPECT_EQ(model.rows()[0].size, "9.00 MB");
  EXPECT_EQ(model.rows()[0].checkBoxImage, "unsel");
}

TEST_F(JunkCleaning, aStopEndsItAfterTheEntryAtWork) {
  for (int i = 0; i < 400; ++i)
    folder.file("Library/Logs/f" + std::to_string(i), "text");
  scan();
  model.beginCleanFile();
  model.stopCleaning();
  Dispatch::runUntil([&] { return model.isCanClick(); });
  EXPECT_TRUE(model.cleaningWasStopped());
  const auto left = static_cast<std::size_t>(
      std::distance(fs::directory_iterator(folder / "Library/Logs"), fs::directory_iterator()));
  EXPECT_EQ(left + model.removedPaths().size(), 400U);
  EXPECT_EQ(model.allTypeArr()[0]->detailChildren.size(), left);
}

TEST_F(JunkCleaning, namesAreRemovedByTheirBytes) {
  const std::string hostile = folder.file("Library/Logs/a\n\xFF'$(x)", "text");
  const std::string similar = folder.file("Library/Caches2/a\n\xFF'$(x)", "keep");
  const std::string dashes = folder.file("Library/Logs/-rf", "text");
  const std::string doubled =
      folder.file("Users/anna/Library/Developer/Xcode/Products/a/b", "text");
  scan();
  model.selectCategory(5);
  clean();
  EXPECT_THAT(model.failures(), IsEmpty());
  EXPECT_FALSE(exists(hostile));
  EXPECT_FALSE(exists(dashes));
  EXPECT_FALSE(exists(doubled));
  EXPECT_TRUE(exists(similar));
}

TEST(TrashRecords, goWithTheirEntryAndOnlyInARealTrash) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  const auto entry = [](const std::string& path) {
    TCTreeNode node;
    node.path = path;
    node.identity = FileIdentity::at(path);
    return node;
  };
  const std::string file = folder.file("share/Trash/files/a.txt", "text");
  const std::string record = folder.file("share/Trash/info/a.txt.trashinfo", "[Trash Info]");
  const std::string other = folder.file("share/Trash/info/b.txt.trashinfo", "[Trash Info]");
  EXPECT_TRUE(FastCleanFileNode::shareInstall().removeFile(entry(file)).removed());
  EXPECT_FALSE(exists(record));
  EXPECT_TRUE(exists(other));

  folder.file("stick/.Trash-1000/info/c.trashinfo");
  folder.file("shared/.Trash/1000/info/c.trashinfo");
  folder.file("project/info/c.trashinfo");
  folder.file("share/Trash/info/link.trashinfo.real");
  folder.link("share/Trash/info/link.trashinfo", folder / "share/Trash/info/link.trashinfo.real");
  EXPECT_NE(trashInfoPath(folder / "stick/.Trash-1000/files/c"), "");
  EXPECT_NE(trashInfoPath(folder / "shared/.Trash/1000/files/c"), "");
  EXPECT_EQ(trashInfoPath(folder / "project/files/c"), "");
  EXPECT_EQ(trashInfoPath(folder / "share/Trash/files/link"), "");
  EXPECT_EQ(trashInfoPath(folder / "stick/.Trash-1000/files/c/inside"), "");

  // The record of a file that could not go is what brings it back.
  const std::string changed = folder.file("share/Trash/files/d", "text");
  const std::string itsRecord = folder.file("share/Trash/info/d.trashinfo", "[Trash Info]");
  const TCTreeNode shown = entry(changed);
  std::ofstream(changed, std::ios::app) << "more";
  EXPECT_FALSE(FastCleanFileNode::shareInstall().removeFile(shown).removed());
  EXPECT_TRUE(exists(itsRecord));
}

}  // namespace
}  // namespace brisko::test
