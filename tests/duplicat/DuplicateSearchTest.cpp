#include "DuplicateFilesOpt.h"
#include "LogCapture.h"
#include "Machine.h"
#include "PlainSearch.h"
#include "RandomTree.h"
#include "TemporaryFolder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

namespace brisko {
namespace {

using test::PlainSearch;
using test::TemporaryFolder;

using Paths = std::vector<std::string>;

std::vector<PlainSearch::File> plain(const std::vector<fileAttrbItem>& items) {
  std::vector<PlainSearch::File> files;
  for (const fileAttrbItem& item : items)
    files.push_back({item.filePathName, item.fileSize, item.md5, item.md5_1k});
  return files;
}

std::vector<Paths> paths(const std::vector<AppGroup>& groups) {
  std::vector<Paths> all;
  for (const AppGroup& group : groups) {
    Paths& each = all.emplace_back();
    for (const auto& bundle : group)
      each.push_back(bundle->DirectoryPathName);
  }
  return all;
}

// What differs between the fast search and the plain one on the tree at `root`; empty if nothing.
std::string difference(const std::string& root, bool hidden, std::uint64_t limit) {
  PlainSearch expected;
  expected.searchesHidden = hidden;
  expected.limit = limit;
  expected.run(root);

  getFileList list;
  list.m_bSearchHiddenFile = hidden;
  std::vector<fileAttrbItem> candidates;
  Paths bundles;
  list.getListAtPath(root, candidates, bundles, limit);
  if (plain(candidates) != expected.candidates) return "candidates";
  if (bundles != expected.bundles) return "bundles";

  duplicateFind find;
  find.setSearchOption(hidden, true);
  find.searchDuplicateFileAtPath(root, limit);
  std::vector<fileAttrbItem> copies;
  find.getAllDuplicateFile(copies);
  if (plain(copies) != expected.copies) return "copies";
  if (paths(find.appDuplicateDirs()) != expected.bundleGroups) return "bundle groups";
  return find.getProgress() == (expected.candidates.empty() ? 50U : 100U) ? "" : "progress";
}

// The same for the search's single steps, which take the candidates one after the other.
std::string differenceOfSteps(const std::string& root, const PlainSearch& expected) {
  getFileList list;
  Paths all;
  list.getDirectoryAtPath(root, all);
  Paths bundles;
  std::vector<fileAttrbItem> listed;
  Paths ignored;
  list.getListAtPath(root, listed, ignored, 0);
  algorithm::FileArray candidates;
  for (const std::string& path : all) {
    if (getFileList::getAppDirectory(path, bundles, 0)) continue;
    const auto record = std::find_if(listed.begin(), listed.end(),
                                     [&](const auto& item) { return item.filePathName == path; });
    if (record != listed.end()) candidates.push_back(std::make_shared<fileAttrbItem>(*record));
  }
  if (candidates.size() != expected.candidates.size()) return "candidates";
  if (bundles != expected.bundles) return "bundles";

  algorithm reader;
  std::vector<fileAttrbItem> copies;
  while (!candidates.empty()) {
    const auto item = candidates.front();
    candidates.erase(candidates.begin());
    algorithm::FileArray group;
    reader.getDuplicateFile(item, candidates, group);
    for (const auto& copy : group) {
      copies.push_back(*copy);
      std::erase(candidates, copy);
    }
  }
  if (plain(copies) != expected.copies) return "copies";

  AppGroup left;
  for (const std::string& path : bundles) {
    const auto bundle = std::make_shared<AppAttrbItem>();
    bundle->DirectoryPathName = path;
    if (FindDuplicateApp::getAllFilePathName(path, *bundle, false)) left.push_back(bundle);
  }
  std::vector<AppGroup> groups;
  while (!left.empty()) {
    const auto item = left.front();
    left.erase(left.begin());
    AppGroup group;
    if (!FindDuplicateApp::getDuplicateAppDirInArray(left, item, group)) continue;
    for (const auto& bundle : group)
      std::erase(left, bundle);
    groups.push_back(std::move(group));
  }
  return paths(groups) == expected.bundleGroups ? "" : "bundle groups";
}

struct Seen {
  std::size_t copies = 0;
  std::size_t bundleGroups = 0;
};

TEST(DuplicateSearch, FindsExactlyWhatTheProcedureFindsInRandomTrees) {
  Seen seen;
  for (std::uint32_t seed = 0; seed < 120; ++seed) {
    TemporaryFolder folder;
    test::RandomTree(seed).make(folder.path());
    ASSERT_EQ(difference(folder.path(), seed % 3 != 0, seed % 5 == 0 ? 39 : 0), "") << seed;
    PlainSearch found;
    found.run(folder.path());
    ASSERT_EQ(differenceOfSteps(folder.path(), found), "") << seed;
    seen.copies += found.copies.size();
    seen.bundleGroups += found.bundleGroups.size();
  }
  // The trees would prove nothing if there were little to find in them.
  EXPECT_GT(seen.copies, 1000U);
  EXPECT_GT(seen.bundleGroups, 20U);
}

TEST(DuplicateSearch, FindsTheSameWhereFilesAndFoldersCannotBeRead) {
  if (!test::isRoot()) GTEST_SKIP() << "because only root can become a user without rights";
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    TemporaryFolder folder;
    chmod(folder.path().c_str(), 0755);
    test::RandomTree tree(seed);
    tree.locksSome = true;
    tree.make(folder.path());
    const int status = test::asUser(test::kNobody, [&] {
      const std::string found = difference(folder.path(), true, 0);
      if (!found.empty()) std::fprintf(stderr, "seed %u: %s\n", seed, found.c_str());
      return found.empty() ? 0 : 1;
    });
    ASSERT_EQ(status, 0) << seed;
  }
}

TEST(DuplicateSearch, TreeNamesEachGroupAfterItsKeptCopy) {
  TemporaryFolder folder;
  for (const char* name : {"one.txt", "two.txt", "three.txt"})
    folder.file(name, "same bytes");
  folder.file("alone.txt", "other byte");
  DuplicateFilesOpt opt;
  std::unique_ptr<DuplicateTree> tree;
  EXPECT_FALSE(opt.getDuplicateFiles(tree));
  test::LogCapture log;
  opt.beginSearchAtPath(folder.path(), 0);
  opt.beginSearchAtPath(folder.path(), 0);
  EXPECT_TRUE(log.has(" -INFO:search Path:" + folder.path() + "  limitedsize:0"));
  EXPECT_TRUE(log.has("findDuplicate result:1"));
  EXPECT_TRUE(log.has("error need reinit"));
  ASSERT_TRUE(opt.getDuplicateFiles(tree));
  ASSERT_EQ(tree->root().numberOfChildren(), 1U);

  std::vector<fileAttrbItem> listed;
  Paths bundles;
  getFileList().getListAtPath(folder.path(), listed, bundles, 0);
  Paths order;
  for (const fileAttrbItem& item : listed) {
    if (item.fileName != "alone.txt") order.push_back(item.filePathName);
  }
  const SimpleTreeNode& group = *tree->root().children[0];
  ASSERT_EQ(group.numberOfChildren(), 3U);
  EXPECT_EQ(group.children[0]->nodeData.name(), order[2]);
  EXPECT_EQ(group.children[1]->nodeData.name(), order[0]);
  EXPECT_EQ(group.children[2]->nodeData.name(), order[1]);
  EXPECT_EQ(group.nodeData.name(), lastPathComponent(order[1]));
  EXPECT_EQ(group.nodeData.extendName(), "txt");
  EXPECT_EQ(group.nodeData.fileSize, 30U);
  EXPECT_EQ(group.showSelectNumStr(), "0/3");
  EXPECT_EQ(group.children[0]->nodeParent, &group);
}

TEST(DuplicateSearch, WithoutDuplicatesOrFolderThereIsNoTree) {
  TemporaryFolder folder;
  folder.file("a", "1");
  folder.file("b", "22");
  folder.file("empty");
  folder.file("empty too");
  for (const std::string& root : {folder.path(), folder / "a", folder / "missing"}) {
    DuplicateFilesOpt opt;
    opt.beginSearchAtPath(root, 0);
    std::unique_ptr<DuplicateTree> tree;
    EXPECT_FALSE(opt.getDuplicateFiles(tree)) << root;
    EXPECT_EQ(tree, nullptr);
  }
}

TEST(DuplicateSearch, FoldersAreComparedByTheirNamesOrByTheirBytesToo) {
  TemporaryFolder folder;
  for (const char* name : {"one/in/x", "one/y", "two/y", "two/in/x"})
    folder.file(name, "same bytes");
  const auto compared = [&] {
    return std::pair(algorithm::CompareDirectoryWithoutHash(folder / "one", folder / "two"),
                     algorithm::CompareDirectory(folder / "one", folder / "two"));
  };
  EXPECT_EQ(compared(), std::pair(true, true));
  folder.file("two/in/x", "other byte");
  EXPECT_EQ(compared(), std::pair(true, false));
  folder.file("two/z", "");
  EXPECT_EQ(compared(), std::pair(false, false));
  EXPECT_TRUE(algorithm::compareWholeFile(folder / "one/y", folder / "one/y"));
  EXPECT_FALSE(algorithm::compareWholeFile(folder / "one", folder / "two"));
}

TEST(DuplicateSearch, NeverOpensWhatIsNoRegularFile) {
  TemporaryFolder folder;
  folder.file("sub/a", std::string(2000, 'a'));
  folder.file("sub/b", std::string(2000, 'a'));
  folder.file("Tool.app/x", "x");
  folder.file("Other.app/x", "x");
  for (const char* name : {"fifo", "sub/fifo", "Tool.app/fifo", "Other.app/fifo"})
    ASSERT_EQ(mkfifo((folder / name).c_str(), 0644), 0);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (folder / "s").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  close(listener);
  if (test::isRoot()) {
    ASSERT_EQ(mknod((folder / "sub/zero").c_str(), S_IFCHR | 0644, makedev(1, 5)), 0);
  }
  folder.link("to-device", "/dev/zero");
  folder.link("to-fifo!!", "sub/fifo!");  // as long as the other's target
  std::filesystem::remove(folder / "to-fifo!!");
  folder.link("to-fifo", "fifo/////");

  // A FIFO that is opened would wait for ever, the device would never end.
  duplicateFind find;
  find.searchDuplicateFileAtPath(folder.path(), 0);
  EXPECT_EQ(find.duplicateFileCount(), 2U);
  EXPECT_TRUE(find.appDuplicateDirs().empty());  // what a FIFO would give is not known
}

TEST(DuplicateSearch, PassesOverFilesThatChangeBetweenListingAndReading) {
  TemporaryFolder folder;
  for (int i = 0; i < 400; ++i)
    folder.file(fmt::format("f{}", i), std::string(3000, 'q'));
  std::atomic<bool> isOver = false;
  std::thread changer([&] {
    for (int i = 0; !isOver; i = (i + 7) % 400) {
      const std::string path = folder / fmt::format("f{}", i);
      switch (i % 3) {
        case 0:
          if (truncate(path.c_str(), 100) != 0) return;
          break;
        case 1:
          std::ofstream(path, std::ios::app) << "more";
          break;
        default:
          std::filesystem::remove(path);
      }
    }
  });
  for (int round = 0; round < 20; ++round) {
    duplicateFind find;
    find.searchDuplicateFileAtPath(folder.path(), 2999);
    std::vector<fileAttrbItem> copies;
    find.getAllDuplicateFile(copies);
    for (const fileAttrbItem& copy : copies)
      EXPECT_GT(copy.fileSize, 2999U);
  }
  isOver = true;
  changer.join();
}

TEST(DuplicateSearch, PathsLongerThanTheSystemTakesAtOnceAreSearched) {
  TemporaryFolder folder;
  const int start = open(folder.path().c_str(), O_RDONLY | O_DIRECTORY);
  int at = dup(start);
  const std::string name(250, 'd');
  for (int depth = 0; depth < 40; ++depth) {
    ASSERT_EQ(mkdirat(at, name.c_str(), 0755), 0);
    const int next = openat(at, name.c_str(), O_RDONLY | O_DIRECTORY);
    close(at);
    at = next;
  }
  for (const char* file : {"one", "two"}) {
    const int made = openat(at, file, O_CREAT | O_WRONLY, 0644);
    ASSERT_EQ(write(made, "deep", 4), 4);
    close(made);
  }
  close(at);
  duplicateFind find;
  find.searchDuplicateFileAtPath(folder.path(), 0);
  EXPECT_EQ(find.duplicateFileCount(), 2U);

  close(start);
}

TEST(DuplicateSearch, StopKeepsWhatWasFoundAndEndsSoon) {
  TemporaryFolder folder;
  for (int i = 0; i < 3000; ++i)
    folder.file(fmt::format("d{}/f{}", i % 30, i), std::to_string(i % 700));
  for (int delay = 0; delay < 12; ++delay) {
    DuplicateFilesOpt opt;
    std::thread worker([&] { opt.beginSearchAtPath(folder.path(), 0); });
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    EXPECT_LE(opt.getProgress(), 100U);
    opt.getCurrentSearchFile();
    opt.stopSearch();
    worker.join();
    std::unique_ptr<DuplicateTree> tree;
    if (!opt.getDuplicateFiles(tree)) continue;
    for (const auto& group : tree->root().children)
      EXPECT_GE(group->numberOfChildren(), 2U);
  }
}

TEST(DuplicateSearch, SystemFoldersAreLeftOutOfTheRootOnly) {
  EXPECT_TRUE(getFileList::IsSystemDirectory("/Library/x"));
  EXPECT_TRUE(getFileList::IsSystemDirectory("/sBIN"));
  EXPECT_TRUE(getFileList::IsSystemDirectory("Volumes"));
  EXPECT_FALSE(getFileList::IsSystemDirectory("/Users/someone/Library"));
  TemporaryFolder folder;
  folder.file("System/a", "1");
  getFileList list;
  list.m_bSearchSystemDirectory = false;
  std::vector<fileAttrbItem> files;
  Paths bundles;
  ASSERT_TRUE(list.getListAtPath(folder.path(), files, bundles, 0));
  EXPECT_EQ(files.size(), 1U);
}

TEST(DuplicateSearch, BelowABundleEverythingBelongsToIt) {
  TemporaryFolder folder;
  folder.file("Foo.APP/sub/Bar.app/x", "xx");
  folder.file("Foo.APP/sub/y", "xx");
  getFileList list;
  std::vector<fileAttrbItem> files;
  Paths bundles;
  ASSERT_TRUE(list.getListAtPath(folder / "Foo.APP/sub", files, bundles, 0));
  EXPECT_TRUE(files.empty());
  EXPECT_EQ(bundles, Paths{folder / "Foo.APP"});
  EXPECT_EQ(getFileList::outermostBundle("/a/.app/b.App/c.app"), "/a/.app/b.App");
  EXPECT_TRUE(getFileList::HasAppDirectory("/a/.app/b"));
  EXPECT_FALSE(getFileList::IsAppDirectory("/a/.app"));
}

}  // namespace
}  // namespace brisko
