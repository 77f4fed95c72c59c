#include "Dispatch.h"
#include "DuplicateModel.h"
#include "LogCapture.h"
#include "Machine.h"
#include "TemporaryFolder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

using test::contentOf;
using test::exists;
using test::TemporaryFolder;

void search(DuplicateModel& model, const std::string& path) {
  ASSERT_TRUE(model.viewDragAction(path));
  Dispatch::runUntil([&] { return !model.isSearching(); });
  model.delayBtnChangeStateTime();
}

void remove(DuplicateModel& model) {
  model.doRemoveDuplicateAction();
  Dispatch::runUntil([&] { return !model.isRemoving(); });
}

SimpleTreeNode* groupWith(DuplicateModel& model, const std::string& path) {
  for (SimpleTreeNode* group : model.treeOfSegment(0)->children) {
    for (const SimpleTreeNode* leaf : group->children) {
      if (leaf->nodeData.name() == path) return group;
    }
  }
  return nullptr;
}

SimpleTreeNode* leafAt(DuplicateModel& model, const std::string& path) {
  SimpleTreeNode* group = groupWith(model, path);
  if (group == nullptr) return nullptr;
  return *std::find_if(group->children.begin(), group->children.end(),
                       [&](const SimpleTreeNode* leaf) { return leaf->nodeData.name() == path; });
}

class DuplicateModelTest : public testing::Test {
 protected:
  // Three groups: three documents, two pictures, two of an unknown kind.
  void makeThreeGroups() {
    for (const char* name : {"a.txt", "b.TXT", "c.txt"})
      folder.file(name, "a document");
    for (const char* name : {"p.JPG", "q.JPG"})
      folder.file(name, "a picture, longer");
    for (const char* name : {"x.tar.gz", "y.tar.gz"})
      folder.file(name, "an archive that is none to an exact list");
  }

  TemporaryFolder folder;
  DuplicateModel model;
};

TEST_F(DuplicateModelTest, GroupsAreSharedOutByTypeAndCounted) {
  makeThreeGroups();
  search(model, folder.path() + "/");
  ASSERT_EQ(model.view(), DuplicateView::detail);
  EXPECT_EQ(model.treeOfSegment(0)->numberOfChildren(), 3U);
  EXPECT_EQ(model.treeOfSegment(1)->numberOfChildren(), 1U);
  EXPECT_EQ(model.treeOfSegment(4)->numberOfChildren(), 0U);
  EXPECT_EQ(model.treeOfSegment(5)->numberOfChildren(), 1U);
  EXPECT_EQ(model.treeOfSegment(6)->numberOfChildren(), 1U);
  EXPECT_EQ(model.sizeOfSegment(1), 30U);
  EXPECT_EQ(model.sizeOfSegment(0), 30U + 34U + 80U);
  const std::string title = lastPathComponent(folder.path());
  EXPECT_EQ(model.summary(), "7 files in " + title + ", selected 0 file in All.");
  model.loadValueForSegment(5);
  EXPECT_EQ(model.summary(), "2 files in Pictures, selected 0 file in All.");
  EXPECT_FALSE(model.noResultShown());
  model.loadValueForSegment(2);
  EXPECT_EQ(model.titleOfSegment(2), "Videos");
  EXPECT_TRUE(model.noResultShown());
}

TEST(DuplicateTypes, ListsAreExactAndVideosAndMusicSwapNumbers) {
  const std::pair<const char*, int> cases[] = {
      {"doc", 1}, {"KEY", 1}, {"acc", 2}, {"aac", 2}, {"ogg", 3},    {"MP4", 3}, {"zip", 4},
      {"gz", 6},  {"JPG", 5}, {"APP", 6}, {"", 6},    {"tar.gz", 4}, {"jp", 6}};
  for (const auto& [extension, number] : cases)
    EXPECT_EQ(duplicateClass(extension), number) << extension;
  EXPECT_EQ(kDuplicateTitles[duplicateSegment(2)], "Music");
  EXPECT_EQ(kDuplicateTitles[duplicateSegment(3)], "Videos");
}

TEST_F(DuplicateModelTest, TickingFollowsTheGroupAndAsksBeforeTheLastCopy) {
  makeThreeGroups();
  search(model, folder.path());
  int questions = 0;
  bool answer = false;
  model.setDeleteAllQuestion([&] {
    ++questions;
    return answer;
  });
  SimpleTreeNode& group = *groupWith(model, folder / "a.txt");
  const auto state = [&] {
    return fmt::format("{} {} {}", DuplicateModel::boxImage(group.nodeData),
                       group.showSelectNumStr(), model.selectedCount());
  };
  EXPECT_EQ(state(), "unsel 0/3 0");
  model.toggle(group);
  EXPECT_EQ(state(), "halfsel 2/3 2");
  EXPECT_EQ(group.children.back()->nodeData.selectNum, 0);
  EXPECT_EQ(model.selectedText(), "selected 2 files in All");
  model.toggle(*group.children.back());
  EXPECT_EQ(questions, 1);
  EXPECT_EQ(state(), "halfsel 2/3 2");
  answer = true;
  model.toggle(*group.children.back());
  EXPECT_EQ(state(), "sel 3/3 3");
  EXPECT_EQ(model.selectedSize(), 30U);
  model.toggle(*group.children[0]);
  EXPECT_EQ(state(), "halfsel 2/3 2");
  model.toggle(group);
  EXPECT_EQ(state(), "unsel 0/3 0");
  model.toggle(*group.children[1]);
  EXPECT_EQ(state(), "halfsel 1/3 1");
  EXPECT_EQ(questions, 2);
}

TEST_F(DuplicateModelTest, TickAllKeepsTheLastOfEachGroupShownAndUntickingClearsAll) {
  makeThreeGroups();
  search(model, folder.path());
  EXPECT_STREQ(model.allSelectImage(), "unsel");
  model.setAllSelectOrNoSelect(true);
  EXPECT_EQ(model.selectedCount(), 4U);
  EXPECT_STREQ(model.allSelectImage(), "halfsel");
  EXPECT_TRUE(model.removeButtonEnabled());
  model.setAllSelectOrNoSelect(false);
  EXPECT_EQ(model.selectedCount(), 0U);
  EXPECT_FALSE(model.removeButtonEnabled());

  model.loadValueForSegment(5);
  model.setAllSelectOrNoSelect(true);
  EXPECT_EQ(model.selectedCount(), 1U);
  model.loadValueForSegment(1);
  EXPECT_STREQ(model.allSelectImage(), "unsel");
  EXPECT_EQ(model.selectedText(), "selected 1 files in All");
  model.setAllSelectOrNoSelect(false);
  EXPECT_EQ(model.selectedCount(), 0U);
}

TEST_F(DuplicateModelTest, TickedLeavesComeInTheOrderOfTicking) {
  makeThreeGroups();
  search(model, folder.path());
  SimpleTreeNode& documents = *groupWith(model, folder / "a.txt");
  SimpleTreeNode& pictures = *groupWith(model, folder / "p.JPG");
  SimpleTreeNode* const first = documents.children[0];
  SimpleTreeNode* const second = pictures.children[1];
  SimpleTreeNode* const third = documents.children[1];
  for (SimpleTreeNode* leaf : {third, second, first, third, third})
    model.toggle(*leaf);
  EXPECT_EQ(model.allSelectNumArr(), (SimpleTreeNode::Children{second, first, third}));
}

TEST_F(DuplicateModelTest, SortingOrdersGroupsAndLeavesAndTurnsOnASecondClick) {
  makeThreeGroups();
  const timespec times[2] = {{1000, 0}, {1000, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, (folder / "b.TXT").c_str(), times, 0), 0);
  search(model, folder.path());
  const SimpleTreeNode& root = *model.treeData();
  const auto sizes = [&] {
    std::vector<std::uint64_t> all;
    for (const SimpleTreeNode* group : root.children)
      all.push_back(group->nodeData.fileSize);
    return all;
  };
  model.didClickTableColumn(DuplicateColumn::FileSize);
  EXPECT_EQ(sizes(), (std::vector<std::uint64_t>{30, 34, 80}));
  EXPECT_FALSE(model.sortDescending());
  model.didClickTableColumn(DuplicateColumn::FileSize);
  EXPECT_EQ(sizes(), (std::vector<std::uint64_t>{80, 34, 30}));
  EXPECT_TRUE(model.sortDescending());
  const SimpleTreeNode& documents = *root.children[2];
  model.didClickTableColumn(DuplicateColumn::NameColumn);
  EXPECT_EQ(documents.children[0]->nodeData.name(), folder / "a.txt");
  model.didClickTableColumn(DuplicateColumn::ModifyDate);
  EXPECT_EQ(documents.children[0]->nodeData.name(), folder / "b.TXT");
}

TEST_F(DuplicateModelTest, RemovingTakesGroupsWithOneCopyLeftOutOfEveryView) {
  makeThreeGroups();
  folder.file("d.txt", "a document");
  search(model, folder.path());
  SimpleTreeNode& documents = *groupWith(model, folder / "a.txt");
  model.toggle(*documents.children[1]);
  remove(model);
  EXPECT_EQ(documents.nodeData.fileSize, 30U);
  EXPECT_EQ(documents.showSelectNumStr(), "0/3");
  EXPECT_EQ(model.sizeOfSegment(1), 30U);
  EXPECT_EQ(model.leavesOfSegment(0), 7U);

  model.setAllSelectOrNoSelect(true);
  std::set<std::string> kept;
  for (const SimpleTreeNode* group : model.treeData()->children)
    kept.insert(group->children.back()->nodeData.name());
  model.doRemoveDuplicateAction();
  EXPECT_FALSE(model.isCanClick());
  model.toggle(*model.treeData()->children[0]);  // refused while removing
  Dispatch::runUntil([&] { return !model.isRemoving(); });

  EXPECT_EQ(model.removedPaths().size(), 4U);
  EXPECT_TRUE(model.failures().empty());
  EXPECT_GT(model.freedBytes(), 0U);
  EXPECT_TRUE(model.noResultShown());
  EXPECT_EQ(model.treeOfSegment(5)->numberOfChildren(), 0U);
  EXPECT_EQ(model.sizeOfSegment(0), 0U);
  EXPECT_EQ(model.removeWarning(), "");
  std::set<std::string> left;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
    left.insert(entry.path().string());
  EXPECT_EQ(left, kept);
}

// What may happen between the search and the removal, to a group of two of which one is ticked.
TEST_F(DuplicateModelTest, ACopyStaysWhenNoOtherOneHoldsItsBytesAnyMore) {
  struct Case {
    const char* name;
    std::function<void(const std::string& ticked, const std::string& kept)> change;
    const char* reason;
  };
  const auto keepTime = [](const std::string& path, const std::function<void()>& act) {
    struct stat status;
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    act();
    const timespec times[2] = {status.st_atim, status.st_mtim};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  };
  const auto overwrite = [](const std::string& path) {
    std::fstream(path, std::ios::in | std::ios::out) << "!";
  };
  const Case cases[] = {
      {"other gone", [](const auto&, const auto& kept) { std::filesystem::remove(kept); },
       "the other copy has changed or gone"},
      {"other rewritten with its old time",
       [&](const auto&, const auto& kept) { keepTime(kept, [&] { overwrite(kept); }); },
       "the other copy does not hold the same bytes any more"},
      {"ticked rewritten with its old time",
       [&](const auto& ticked, const auto&) { keepTime(ticked, [&] { overwrite(ticked); }); },
       "the other copy does not hold the same bytes any more"},
      {"ticked touched",
       [](const auto& ticked, const auto&) {
         const timespec times[2] = {{5, 0}, {5, 0}};
         utimensat(AT_FDCWD, ticked.c_str(), times, 0);
       },
       "it has changed since it was found"},
      {"ticked replaced by an equal file",
       [&](const auto& ticked, const auto&) {
         keepTime(ticked, [&] {
           std::filesystem::copy_file(ticked, ticked + "~");
           std::filesystem::rename(ticked + "~", ticked);
         });
       },
       "it has changed since it was found"},
      {"other replaced by a link to the ticked",
       [](const auto& ticked, const auto& kept) {
         std::filesystem::remove(kept);
         std::filesystem::create_symlink(ticked, kept);
       },
       "the other copy has changed or gone"},
      {"other replaced by another name of the ticked",
       [](const auto& ticked, const auto& kept) {
         std::filesystem::remove(kept);
         std::filesystem::create_hard_link(ticked, kept);
       },
       "the other copy has changed or gone"},
      {"ticked replaced by a link",
       [](const auto& ticked, const auto& kept) {
         std::filesystem::remove(ticked);
         std::filesystem::create_symlink(kept, ticked);
       },
       "it is reached through a link"},
      {"ticked gone", [](const auto& ticked, const auto&) { std::filesystem::remove(ticked); },
       "it is not there any more"},
      {"no way to the ticked",
       [](const auto& ticked, const auto&) {
         const auto parent = std::filesystem::path(ticked).parent_path();
         std::filesystem::rename(parent, parent.string() + "~");
         std::filesystem::create_symlink(parent.filename(), parent);
       },
       "Too many levels of symbolic links"},
  };
  for (const Case& each : cases) {
    TemporaryFolder own;
    own.file("in/one", std::string(300000, 'z'));
    own.file("in/two", std::string(300000, 'z'));
    DuplicateModel page;
    search(page, own.path());
    SimpleTreeNode& group = *page.treeData()->children[0];
    page.toggle(group);
    const std::string ticked = group.children[0]->nodeData.name();
    const std::string kept = group.children[1]->nodeData.name();
    each.change(ticked, kept);
    const bool wasThere = exists(ticked);
    remove(page);
    EXPECT_EQ(exists(ticked), wasThere) << each.name;
    ASSERT_EQ(page.failures().size(), 1U) << each.name;
    EXPECT_EQ(page.failures()[0].path, ticked) << each.name;
    EXPECT_EQ(page.failures()[0].reason, each.reason) << each.name;
    EXPECT_EQ(page.selectedCount(), 1U) << each.name;
    EXPECT_EQ(page.removeWarning(),
              "Some files were left alone, because it was not safe to remove them");
  }
}

TEST_F(DuplicateModelTest, WhatTheSystemRefusesStaysTickedAndIsBlamedOnRights) {
  makeThreeGroups();
  search(model, folder.path());
  SimpleTreeNode& group = *groupWith(model, folder / "p.JPG");
  model.toggle(group);
  const std::string ticked = group.children[0]->nodeData.name();
  if (!test::setImmutable(ticked, true)) GTEST_SKIP() << "because nothing can be made immutable";
  remove(model);
  test::setImmutable(ticked, false);
  EXPECT_EQ(model.removeWarning(), "Some files that require admin access can't be removed!");
  EXPECT_EQ(model.selectedCount(), 1U);
  EXPECT_TRUE(exists(ticked));
}

TEST_F(DuplicateModelTest, TheLastCopyStaysEvenWhenAllAreTicked) {
  makeThreeGroups();
  search(model, folder.path());
  model.setDeleteAllQuestion([] { return true; });
  SimpleTreeNode& group = *groupWith(model, folder / "a.txt");
  for (SimpleTreeNode* leaf : group.children)
    model.toggle(*leaf);
  const std::string last = group.children.back()->nodeData.name();
  remove(model);
  EXPECT_EQ(model.removedPaths().size(), 2U);
  ASSERT_EQ(model.failures().size(), 1U);
  EXPECT_EQ(model.failures()[0].reason, "no other copy is left");
  EXPECT_EQ(contentOf(last), "a document");
  EXPECT_EQ(group.showSelectNumStr(), "1/1");
  EXPECT_STREQ(DuplicateModel::boxImage(group.nodeData), "sel");
}

TEST_F(DuplicateModelTest, NamesOfOneFileAreNoCopiesOfEachOther) {
  const std::string one = folder.file("one", std::string(9000, 'h'));
  ASSERT_EQ(link(one.c_str(), (folder / "two").c_str()), 0);
  search(model, folder.path());
  model.setAllSelectOrNoSelect(true);
  remove(model);
  ASSERT_EQ(model.failures().size(), 1U);
  EXPECT_EQ(model.failures()[0].reason, "the other copy is the same item under another name");

  // With a real copy both names may go, and only the second frees anything.
  const std::string copy = folder.file("three", std::string(9000, 'h'));
  DuplicateModel page;
  search(page, folder.path());
  EXPECT_FALSE(leafAt(page, copy)->nodeData.hardLink);
  for (const std::string& name : {one, folder / "two"}) {
    EXPECT_TRUE(leafAt(page, name)->nodeData.hardLink);
    page.toggle(*leafAt(page, name));
  }
  remove(page);
  EXPECT_EQ(page.removedPaths().size(), 2U);
  struct stat status;
  ASSERT_EQ(stat(copy.c_str(), &status), 0);
  EXPECT_EQ(page.freedBytes(), static_cast<std::uint64_t>(status.st_blocks) * 512);
}

TEST_F(DuplicateModelTest, ALinkedFolderGivesNamesThatAreNeverRemoved) {
  folder.file("real/file", "bytes of some length");
  folder.link("linked", "real");
  search(model, folder.path());
  ASSERT_EQ(model.leavesOfSegment(0), 2U);
  EXPECT_TRUE(leafAt(model, folder / "real/file")->nodeData.hardLink);
  for (SimpleTreeNode* leaf : model.treeData()->children[0]->children) {
    DuplicateModel page;
    search(page, folder.path());
    page.toggle(*leafAt(page, leaf->nodeData.name()));
    remove(page);
    EXPECT_EQ(page.failures().size(), 1U);
  }
  EXPECT_TRUE(exists(folder / "real/file"));
}

TEST_F(DuplicateModelTest, ABundleGoesOnlyWhileAnotherOneHoldsEverythingInIt) {
  const auto make = [&](const std::string& name, const char* inner) {
    folder.file(name + "/Contents/" + inner, std::string(5000, 'm'));
    folder.file(name + "/Contents/data", "d");
    folder.link(name + "/Contents/current", "data");
  };
  make("One.app", "binary");
  make("Two.app", "binary");
  search(model, folder.path());
  ASSERT_EQ(model.treeData()->numberOfChildren(), 1U);
  SimpleTreeNode& group = *model.treeData()->children[0];
  EXPECT_EQ(group.nodeData.fileType, kOtherTypes);
  EXPECT_EQ(group.nodeData.extendName(), "APP");
  model.toggle(group);
  const std::string ticked = group.children[0]->nodeData.name();
  const std::string kept = group.children[1]->nodeData.name();

  folder.file(lastPathComponent(kept) + "/Contents/data", "e");
  remove(model);
  ASSERT_EQ(model.failures().size(), 1U);
  EXPECT_TRUE(exists(ticked + "/Contents/binary"));

  folder.file(lastPathComponent(kept) + "/Contents/data", "d");
  remove(model);
  EXPECT_FALSE(exists(ticked));
  EXPECT_TRUE(exists(kept + "/Contents/binary"));
}

TEST_F(DuplicateModelTest, StoppingTheRemovalKeepsTheRestAndUnticksIt) {
  for (int i = 0; i < 400; ++i)
    folder.file(fmt::format("f{}", i), "the same");
  search(model, folder.path());
  model.setAllSelectOrNoSelect(true);
  model.doRemoveDuplicateAction();
  model.stopRemoveBtnClicked();
  Dispatch::runUntil([&] { return !model.isRemoving(); });
  EXPECT_LT(model.removedPaths().size(), 399U);
  EXPECT_EQ(model.leavesOfSegment(0), 400 - model.removedPaths().size());
  EXPECT_EQ(model.selectedCount(), 0U);
  EXPECT_TRUE(model.isCanClick());
  EXPECT_EQ(model.removeWarning(), "");
}

TEST_F(DuplicateModelTest, StoppingTheSearchLeadsBackToTheFirstView) {
  makeThreeGroups();
  EXPECT_FALSE(model.viewDragAction(folder / "a.txt"));
  ASSERT_TRUE(model.viewDragAction(folder.path()));
  EXPECT_FALSE(model.viewDragAction(folder.path()));  // one at a time
  model.getPathForSreachDuplicate();
  model.stopScanBtnClicked();
  Dispatch::runUntil([&] { return !model.isSearching(); });
  model.delayBtnChangeStateTime();
  EXPECT_EQ(model.view(), DuplicateView::progress);
  model.returnToFirstView();
  EXPECT_EQ(model.view(), DuplicateView::first);
  EXPECT_TRUE(model.folderButtonEnabled());
}

TEST_F(DuplicateModelTest, ALeavingPageTakesItsSearchAndItsRemovalWithIt) {
  for (int i = 0; i < 300; ++i)
    folder.file(fmt::format("f{}", i), "the same");
  {
    DuplicateModel page;
    page.viewDragAction(folder.path());
  }
  {
    DuplicateModel page;
    search(page, folder.path());
    page.setAllSelectOrNoSelect(true);
    page.doRemoveDuplicateAction();
  }
  Dispatch::runPending();
  EXPECT_FALSE(std::filesystem::is_empty(folder.path()));
}

// The highest value shown is kept for the life of the program, so this test runs in any order.
TEST_F(DuplicateModelTest, ShownProgressNeverFallsAndCreepsMeanwhile) {
  for (int i = 0; i < 2000; ++i)
    folder.file(fmt::format("d{}/f{}", i % 50, i), std::to_string(i % 300));
  struct Watch : DuplicateModelListener {
    std::vector<float> shown;
    void toProWithValue(float value) override { shown.push_back(value); }
  } watch;
  model.setListener(&watch);
  ASSERT_TRUE(model.viewDragAction(folder.path()));
  Dispatch::runUntil(
      [&] {
        model.getPathForSreachDuplicate();
        return !model.isSearching();
      },
      std::chrono::milliseconds(1));
  ASSERT_FALSE(watch.shown.empty());
  EXPECT_EQ(watch.shown.front(), 0);
  float highest = 0.06F;
  for (const float value : watch.shown) {
    const bool creeps = value <= 0.3F;
    EXPECT_TRUE(creeps || value >= highest) << value;
    if (!creeps) highest = value;
  }
  model.setListener(nullptr);
}

// Enough of them that the order is found in the background.
TEST_F(DuplicateModelTest, ManyGroupsAreSortedMeanwhileAndTheLastClickCounts) {
  constexpr std::size_t kGroups = 1100;
  for (std::size_t i = 0; i < kGroups; ++i) {
    for (const char* place : {"one", "two"})
      folder.file(fmt::format("{}/{}.{}", place, i, i % 2 == 0 ? "txt" : "bin"), std::to_string(i));
  }
  search(model, folder.path());
  const auto ended = [&] { return !model.isSorting(); };
  const auto isAfter = [](const SimpleTreeNode* a, const SimpleTreeNode* b) {
    return a->nodeData.name() > b->nodeData.name();
  };
  model.didClickTableColumn(DuplicateColumn::NameColumn);
  EXPECT_TRUE(model.isSorting());
  model.didClickTableColumn(DuplicateColumn::FileSize);
  model.didClickTableColumn(DuplicateColumn::NameColumn);
  model.didClickTableColumn(DuplicateColumn::NameColumn);
  Dispatch::runUntil(ended);
  for (const std::size_t segment : {0, 1, 6}) {
    const auto& groups = model.treeOfSegment(segment)->children;
    EXPECT_EQ(groups.size(), segment == 0 ? kGroups : kGroups / 2);
    EXPECT_TRUE(std::is_sorted(groups.begin(), groups.end(), isAfter)) << segment;
    for (const SimpleTreeNode* group : groups)
      EXPECT_TRUE(isAfter(group->children[0], group->children[1]));
  }

  // All are ticked in several turns, whatever comes between them.
  model.setAllSelectOrNoSelect(true);
  EXPECT_TRUE(model.isTicking());
  model.toggle(*model.treeData()->children[0]);
  model.didClickTableColumn(DuplicateColumn::NameColumn);
  Dispatch::waitForBackground();
  Dispatch::runUntil([&] { return !model.isTicking() && !model.isSorting(); });
  EXPECT_EQ(model.selectedCount(), kGroups);

  // A removal and a new search that begin in the middle of a sort.
  model.didClickTableColumn(DuplicateColumn::NameColumn);
  remove(model);
  EXPECT_EQ(model.removedPaths().size(), kGroups);
  EXPECT_EQ(model.leavesOfSegment(0), 0U);
  for (std::size_t i = 0; i < kGroups; ++i)
    folder.file(fmt::format("three/{}", i), std::to_string(i));
  search(model, folder.path());
  model.didClickTableColumn(DuplicateColumn::NameColumn);
  search(model, folder / "three");
  EXPECT_EQ(model.treeData(), nullptr);
}

}  // namespace
}  // namespace brisko
