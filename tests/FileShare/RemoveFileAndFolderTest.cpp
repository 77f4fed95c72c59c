// The engine: in which order it works, what it starts, and what it reports.

#include "Dispatch.h"
#include "EraserTask.h"
#include "Machine.h"
#include "RemoveFileAndFolder.h"
#include "TaskTermination.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

struct Reports : RemoveFileAndFolderDelegate {
  std::vector<std::pair<std::string, float>> progress;
  int failures = 0;
  bool isOver = false;
  FileObjs items;
  void removeProgress(const std::string& path, float percent) override {
    progress.emplace_back(path, percent);
  }
  void haveFailEraser() override { ++failures; }
  void removeObjEnd(const FileObjs& all) override {
    items = all;
    isOver = true;
  }
};

std::shared_ptr<FileObj> item(const std::string& path, bool isSSD = false) {
  int error = 0;
  auto made = buildFileObj(path, error);
  EXPECT_TRUE(made) << path;
  made->isSSD = isSSD;
  return made;
}

class Eraser : public testing::Test {
 protected:
  Eraser()
      : host(folder / "root"), tools("BRISKO_TOOLS", (buildTree() + "/libexec/brisko").c_str()) {}

  /// Puts a tool in place of ours that notes what it was started with and removes the path.
  void useNotingTool() {
    const std::string path =
        folder.file("tools/srm", "#!/bin/sh\necho \"$@\" >> '" + (folder / "started") +
                                     "'\nfor last; do :; done\nrm -f -- \"$last\"\n");
    chmod(path.c_str(), 0700);
    noting = std::make_unique<Environment>("BRISKO_TOOLS", (folder / "tools").c_str());
  }
  std::vector<std::string> started() const {
    std::istringstream lines(contentOf(folder / "started"));
    std::vector<std::string> all;
    for (std::string line; std::getline(lines, line);)
      all.push_back(line);
    return all;
  }
  void run(FileObjs items) {
    reports = {};
    engine->benginToTraskWithArr(std::move(items));
    waitForEnd();
  }
  void waitForEnd() {
    Dispatch::runUntil([&] { return reports.isOver; });
  }
  void setTimes(int times) {
    host.host().preferences->setValue(Preferences::kApplicationDomain, "EraserTimes",
                                      PropertyList(times));
  }

  TemporaryFolder folder;
  TestHost host;
  Environment tools;
  std::unique_ptr<Environment> noting;
  Reports reports;
  std::shared_ptr<RemoveFileAndFolder> engine = std::make_shared<RemoveFileAndFolder>(&reports);
};

TEST_F(Eraser, AFolderIsExpandedContentsFirstAndLinksAreLeftAlone) {
  folder.file("tree/a/x", "1");
  folder.file("tree/a/b/y", "1");
  folder.folder("tree/empty");
  folder.file("outside/kept", "1");
  folder.link("tree/link", folder / "outside");
  FileObjs all;
  ASSERT_TRUE(eumeAllArrWithFileObj(*item(folder / "tree"), all));
  std::map<std::string, std::size_t> place;
  for (const auto& each : all)
    place.emplace(each->url.substr(folder.path().size() + 6), place.size());
  EXPECT_EQ(place.size(), 6U);
  EXPECT_EQ(place.size(), all.size());
  EXPECT_LT(place.at("a/b/y"), place.at("a/b"));
  EXPECT_LT(place.at("a/b"), place.at("a"));
  EXPECT_LT(place.at("a/x"), place.at("a"));
  EXPECT_FALSE(all[place.at("link")]->isDir);
  EXPECT_EQ(all[place.at("a")]->size, 0);
  EXPECT_EQ(all[place.at("a")]->type, "Folder");
}

TEST_F(Eraser, TheOptionFollowsTheDiskAndThePreference) {
  useNotingTool();
  const std::map<int, std::string> rotating = {{-3, "-fsvrz"}, {0, "-fsvrz"}, {1, "-fsvrz"},
                                               {2, "-fsvrz"},  {3, "-fEvrz"}, {7, "-fmvrz"},
                                               {35, "-fvrz"},  {36, "-fsvrz"}};
  EXPECT_EQ(engine->getEraserTimes(), 1) << "nothing is set";
  const auto file = item(folder.file("f", "1"));
  for (const auto& [times, option] : rotating) {
    setTimes(times);
    EXPECT_EQ(engine->optionsFor(*file), option) << times;
  }
  setTimes(35);
  const auto solid = item(folder.file("solid state", "1"), true);
  run({file, solid});
  EXPECT_THAT(started(), ElementsAre("-fvrz " + file->url, "-fsvrz " + solid->url));
}

TEST_F(Eraser, ProgressIsExactAndNeverFull) {
  useNotingTool();
  run({item(folder.file("alone", "1"))});
  EXPECT_THAT(reports.progress, ElementsAre(Pair(folder / "alone", 30.0F)));
  EXPECT_TRUE(host.logged("-------::" + (folder / "alone")));

  folder.file("d/a", "1");
  folder.file("d/empty");
  run({item(folder / "d/a"), item(folder / "d/empty"), item(folder / "d")});
  EXPECT_THAT(reports.progress,
              ElementsAre(Pair(folder / "d/a", 0.0F), Pair(folder / "d/empty", 33.0F),
                          Pair(folder / "d", 66.0F)));
  EXPECT_EQ(started().size(), 2U) << "an empty file and a folder need no tool";
  EXPECT_TRUE(host.logged("rm file sec " + (folder / "d/empty")));
  EXPECT_FALSE(exists(folder / "d"));
  for (const auto& each : reports.items)
    EXPECT_EQ(each->failStr, "Success");
}

TEST_F(Eraser, AFolderThatStillHoldsSomethingFailsAndABundleNeverDoes) {
  folder.file("d/kept", "1");
  folder.file("Foo.app/Contents/bin", "1");
  run({item(folder / "d"), item(folder / "Foo.app")});
  EXPECT_EQ(reports.items[0]->failStr, "Fail");
  EXPECT_EQ(reports.failures, 1);
  EXPECT_EQ(contentOf(folder / "d/kept"), "1");
  EXPECT_EQ(reports.items[1]->failStr, "Success");
  EXPECT_FALSE(exists(folder / "Foo.app"));
  EXPECT_EQ(engine->notes().size(), 1U) << "that it was not overwritten is said";
}

TEST_F(Eraser, AllNamesInTheListGoAndFewerAreRefused) {
  const std::string one = folder.file("one", "text");
  const std::string two = folder / "two";
  ASSERT_EQ(link(one.c_str(), two.c_str()), 0);
  run({item(one)});
  EXPECT_EQ(reports.items[0]->failStr, "Fail");
  EXPECT_EQ(reports.items[0]->reason, "it has 1 other name (a hard link)");
  EXPECT_EQ(contentOf(two), "text");
  run({item(one), item(two)});
  EXPECT_FALSE(exists(one) || exists(two));
  EXPECT_EQ(reports.failures, 0);

  const std::string three = folder.file("three", "text");
  ASSERT_EQ(link(three.c_str(), two.c_str()), 0);
  engine->setErasesAllNames(true);
  run({item(three)});
  EXPECT_FALSE(exists(three));
  EXPECT_EQ(contentOf(two), "") << "the other name leads to nothing any more";
}

// An empty file is deleted, but one that has been written to since is overwritten first.
TEST_F(Eraser, AFileThatWasEmptyWhenItWasListedGoesThroughTheTool) {
  useNotingTool();
  const auto file = item(folder.file("f"));
  folder.file("f", "secret");
  run({file});
  EXPECT_EQ(started().size(), 1U);
  EXPECT_EQ(file->failStr, "Success");
}

TEST_F(Eraser, WhatTookTheItemsPlaceIsNotErased) {
  const auto file = item(folder.file("f", "old"));
  rename((folder / "f").c_str(), (folder / "moved").c_str());
  folder.file("f", "new");
  const auto empty = item(folder.file("e"));
  rename((folder / "e").c_str(), (folder / "moved empty").c_str());
  folder.file("e", "new");
  run({file, empty});
  EXPECT_EQ(contentOf(folder / "f"), "new");
  EXPECT_EQ(contentOf(folder / "e"), "new");
  for (const auto& each : reports.items)
    EXPECT_EQ(each->reason, "it is not the item that was added any more");
}

TEST_F(Eraser, ImmutableFilesAreClearedAndGetItBackWhenTheyStay) {
  const std::string path = folder.file("f", "text");
  if (!isRoot() || !setImmutable(path, true)) {
    GTEST_SKIP() << "because no file can be made immutable here";
  }
  const std::string other = folder.file("g", "text");
  ASSERT_EQ(link(other.c_str(), (folder / "h").c_str()), 0);
  chmod(other.c_str(), 0444);
  ASSERT_TRUE(setImmutable(other, true));
  run({item(path), item(other)});
  EXPECT_FALSE(exists(path));
  EXPECT_EQ(contentOf(other), "text") << "it has another name";
  EXPECT_NE(unlink(other.c_str()), 0) << "it is immutable again";
  setImmutable(other, false);
}

TEST_F(Eraser, PermissionIsTriedByOpeningAndThenByTheMode) {
  if (!isRoot()) GTEST_SKIP() << "because only root can become a user without rights";
  chmod(folder.path().c_str(), 0755);
  const std::string own = folder.file("own");
  ASSERT_EQ(chown(own.c_str(), kNobody, kNobody), 0);
  chmod(own.c_str(), 0400);
  const std::string foreign = folder.file("foreign");
  const int answers = asUser(kNobody, [&] {
    return (checkPermissions(own) ? 1 : 0) + (checkPermissions(foreign) ? 2 : 0);
  });
  EXPECT_EQ(answers, 1);
  struct stat status;
  ASSERT_EQ(stat(own.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(Eraser, TheEndOfAnyProcessLeadsToTheNextItem) {
  const std::string tool = folder.file("slow/srm", "#!/bin/sh\nsleep 0.2\n");
  chmod(tool.c_str(), 0700);
  noting = std::make_unique<Environment>("BRISKO_TOOLS", (folder / "slow").c_str());
  const auto one = item(folder.file("1", "1"));
  const auto two = item(folder.file("2", "1"));
  engine->benginToTraskWithArr({one, two});
  TaskTermination::post();
  EXPECT_EQ(engine->idx, 1U);
  EXPECT_EQ(engine->filePathStr, two->url);
  waitForEnd();
  EXPECT_EQ(reports.progress.size(), 2U);
}

TEST_F(Eraser, AToolThatCannotBeStartedIsAFailure) {
  noting = std::make_unique<Environment>("BRISKO_TOOLS", (folder / "nothing here").c_str());
  run({item(folder.file("f", "text"))});
  EXPECT_EQ(reports.items[0]->failStr, "Fail");
  EXPECT_EQ(reports.items[0]->reason, "the eraser cannot be started");
  EXPECT_EQ(contentOf(folder / "f"), "text");
}

}  // namespace
}  // namespace brisko::test
