#include "LargeTestTree.h"
#include "SystemFolder.h"

#include <filesystem>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;

struct Points : ControllerDelegate {
  std::vector<int> points;
  std::vector<std::string> paths;
  std::function<void()> atFirst;
  int ends = 0;
  void changeProgressWithPoint(int point, const std::string& path) override {
    points.push_back(point);
    paths.push_back(path);
    if (points.size() == 1 && atFirst) atFirst();
  }
  void removeEnd() override { ++ends; }
};

class LargeController : public LargeTestTree {
 protected:
  void SetUp() override { controller.setDelegate(&points); }
  void TearDown() override { controller.setDelegate(nullptr); }
  TickState state(const std::string& path) { return node(path)->state; }
  void tick(const std::string& path, bool on = true) {
    controller.changeSelectWithNode(*node(path), on);
  }
  void removeTicked() {
    ASSERT_TRUE(controller.deleteFilesWithDic());
    remove();
  }

  Points points;
};

constexpr TickState kOff = TickState::off;
constexpr TickState kOn = TickState::on;
constexpr TickState kPartly = TickState::partly;

TEST_F(LargeController, AFolderOfFilesIsTickedThroughThemAndOneWithAFolderNever) {
  folder.file("files/a", "a");
  folder.file("files/b", "b");
  folder.file("mixed/a", "a");
  folder.file("mixed/sub/b", "b");
  scan();
  tick("files/a");
  EXPECT_EQ(state("files"), kPartly);
  tick("files/b");
  EXPECT_EQ(state("files"), kOn);
  tick("mixed/a");
  tick("mixed/sub");
  EXPECT_EQ(state("mixed/sub/b"), kOn);
  EXPECT_EQ(state("mixed"), kPartly);
  EXPECT_EQ(controller.selection().count, 3U) << "the folder of files, and two in the other";
  tick("mixed/sub", false);
  tick("mixed/a", false);
  EXPECT_EQ(state("mixed"), kOff);
}

TEST_F(LargeController, ACollapsedFolderIsTickedOneLevelDeepAndAnOpenOneFurther) {
  folder.file("top/sub/deep/file", "x");
  folder.folder("top/empty");
  scan();
  tick("top");
  EXPECT_EQ(state("top/sub"), kOn);
  EXPECT_EQ(state("top/sub/deep"), kOff);
  controller.selectAllFileNode(false);
  EXPECT_EQ(state("top/sub"), kOff);
  EXPECT_TRUE(controller.selectNodeArr().empty());
  node("top")->folder->isExpand = true;
  tick("top");
  EXPECT_EQ(state("top/sub/deep"), kOn);
  EXPECT_EQ(state("top/sub/deep/file"), kOff);
  EXPECT_EQ(names(controller.selectNodeArr()), (std::vector<std::string>{"top", "sub", "empty"}));
  EXPECT_STREQ(controller.changeSelectAllButtonState(), "sel");
  EXPECT_EQ(controller.selectedText(), "Selected: 1 item");
  tick("top", false);
  EXPECT_EQ(controller.selectedText(), "Selected: 0 items");
}

TEST_F(LargeController, OneTickedFileReportsThirtyThenAHundred) {
  folder.file("in/a", "aa");
  folder.file("in/b", "b");
  folder.file("in/c", "c");
  scan();
  tick("in/a");
  tick("in/b");
  tick("in/b", false);
  removeTicked();
  EXPECT_EQ(points.points, (std::vector<int>{30, 100}));
  EXPECT_EQ(points.paths[1], folder / "in/a");
  EXPECT_EQ(points.ends, 1);
  EXPECT_FALSE(exists(folder / "in/a"));
  EXPECT_EQ(node("in")->children().size(), 2U);
  EXPECT_EQ(node("in")->size, 2U) << "what went is in no size any more";
  EXPECT_EQ(state("in"), kOff);
  EXPECT_GT(controller.freedBytes(), 0U);
}

TEST_F(LargeController, RemovalUnticksWhatStaysAndTakesOnlyWhatWasTicked) {
  for (const char* name : {"f/1", "f/2", "f/3", "f/sub/4", "f/sub/5", "g/6"})
    folder.file(name, name);
  scan();
  tick("f/1");
  tick("f/sub/4");
  tick("g");
  removeTicked();
  EXPECT_EQ(points.points, (std::vector<int>{0, 33, 66, 100}));
  EXPECT_FALSE(exists(folder / "f/1"));
  EXPECT_FALSE(exists(folder / "f/sub/4"));
  EXPECT_FALSE(exists(folder / "g"));
  for (const char* name : {"f/2", "f/3", "f/sub/5"}) {
    EXPECT_TRUE(exists(folder / name));
    EXPECT_EQ(state(name), kOff);
  }
  EXPECT_EQ(state("f"), kOff);
  EXPECT_EQ(controller.removedPaths().size(), 3U);
  EXPECT_FALSE(controller.deleteFilesWithDic()) << "nothing is ticked any more";
}

TEST_F(LargeController, WhatChangedSinceItWasListedStaysWithItsReason) {
  TemporaryFolder safe;
  safe.file("precious", "keep");
  folder.file("grown", "1");
  folder.file("swapped/in", "1");
  folder.file("linked", "1");
  folder.file("gone", "1");
  scan();
  folder.file("grown", "12");
  fs::rename(folder / "swapped", folder / "moved");
  folder.link("swapped", safe.path());
  fs::remove(folder / "linked");
  folder.link("linked", safe / "precious");
  fs::remove(folder / "gone");
  controller.selectAllFileNode(true);
  removeTicked();
  EXPECT_TRUE(exists(folder / "grown"));
  EXPECT_TRUE(exists(folder / "moved/in"));
  EXPECT_EQ(contentOf(safe / "precious"), "keep");
  EXPECT_EQ(controller.failures().size(), 3U);
  EXPECT_TRUE(controller.removedPaths().empty());
  EXPECT_EQ(controller.freedBytes(), 0U);
  int lines = 0;
  for (const std::string& line : host.log())
    lines += line.starts_with("--delete file error ---::") ? 1 : 0;
  EXPECT_EQ(lines, 3);
}

TEST_F(LargeController, StoppingLeavesWhatWasNotReachedAndUnticksIt) {
  for (int i = 0; i < 20; ++i)
    folder.file("f" + std::to_string(i), "x");
  scan();
  controller.selectAllFileNode(true);
  points.atFirst = [this] { controller.stopRemove(); };
  removeTicked();
  EXPECT_TRUE(controller.isStopRemove());
  EXPECT_EQ(points.points.back(), 100);
  std::size_t left = 0;
  for (const FileNode* each : controller.aRootArr()) {
    EXPECT_EQ(each->state, kOff);
    EXPECT_TRUE(exists(each->_path()));
    ++left;
  }
  EXPECT_GE(left, 19U);
  EXPECT_EQ(left + controller.removedPaths().size(), 20U);
}

// Names that nothing may read anything into, and a path that no single call takes.
TEST_F(LargeController, HostileNamesAndDeepPathsGo) {
  const std::string names[] = {"-rf", "a\nb", "\xff\xfe", "$(reboot)", "'; rm *"};
  for (const std::string& name : names)
    folder.file(name, "x");
  const std::string at = folder.folder("deep");
  const int start = ::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ASSERT_EQ(::chdir(at.c_str()), 0);
  for (int i = 0; i < 22; ++i) {
    ASSERT_EQ(::mkdir(std::string(180, 'd').c_str(), 0755), 0);
    ASSERT_EQ(::chdir(std::string(180, 'd').c_str()), 0);
  }
  ASSERT_EQ(::close(::open("last", O_CREAT | O_WRONLY | O_CLOEXEC, 0644)), 0);
  ASSERT_EQ(::fchdir(start), 0);
  ::close(start);
  scan();
  FileNode* last = node("deep");
  while (last->folder != nullptr)
    last = last->children().at(0);
  EXPECT_GT(last->_path().size(), 4000U);
  controller.changeSelectWithNode(*last, true);
  removeTicked();
  EXPECT_TRUE(controller.failures().empty());
  controller.selectAllFileNode(true);
  removeTicked();
  EXPECT_TRUE(controller.aRootArr().empty());
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(LargeController, ProtectedPlacesAreLockedAndNoTickReachesThem) {
  EXPECT_TRUE(SystemFolder::isSystemFileWithFilePath("/usr"));
  EXPECT_FALSE(SystemFolder::isSystemFileWithFilePath("/usr/games/rogue"));
  TestHost image(folder.path());
  folder.file("Users/anna/Documents/letter", "x");
  folder.file("Users/anna/notes", "x");
  folder.file("etc/passwd", "x");
  scan();
  EXPECT_NE(controller.lockReason(*node("etc")), "");
  EXPECT_NE(controller.lockReason(*node("Users/anna/Documents")), "");
  EXPECT_EQ(controller.lockReason(*node("Users/anna/Documents/letter")), "");
  tick("etc");
  tick("Users/anna/Documents");
  controller.selectAllFileNode(true);
  EXPECT_EQ(controller.selection().count, 0U);
  tick("Users/anna/notes");
  tick("Users/anna/Documents/letter");
  EXPECT_EQ(state("Users/anna/Documents"), kOn) << "all its files are ticked";
  removeTicked();
  EXPECT_TRUE(exists(folder / "Users/anna/Documents")) << "whatever its box says";
  EXPECT_TRUE(exists(folder / "etc/passwd"));
}

TEST_F(LargeController, FilterShowsLargeOrOldFilesAndNeverTicksWhatItHides) {
  folder.sizedFile("a/new big", 50'000);
  folder.sizedFile("a/old big", 40'000);
  folder.sizedFile("b/old small", 10);
  folder.sizedFile("c/old big", 30'000);
  const auto age = [this](const char* name) {
    const utimbuf times{1'500'000'000, 1'500'000'000};
    ASSERT_EQ(::utime((folder / name).c_str(), &times), 0);
  };
  age("a/old big");
  age("b/old small");
  age("c/old big");
  scan();
  tick("b");
  controller.setFilter(FileFilter::of(20'000, 365));
  EXPECT_EQ(controller.selection().count, 0U) << "another filter unticks";
  EXPECT_TRUE(isShown(*node("a")));
  EXPECT_FALSE(isShown(*node("a/new big")));
  EXPECT_FALSE(isShown(*node("b")));
  EXPECT_NE(controller.lockReason(*node("a")), "");
  tick("a");
  EXPECT_EQ(state("a"), kOff);
  tick("a/old big");
  EXPECT_EQ(state("a"), kPartly) << "a hidden file is in it";
  controller.selectAllFileNode(true);
  EXPECT_EQ(state("c"), kOn);
  removeTicked();
  EXPECT_TRUE(exists(folder / "a/new big"));
  EXPECT_TRUE(exists(folder / "b/old small"));
  EXPECT_FALSE(exists(folder / "a/old big"));
  controller.setFilter({});
  EXPECT_TRUE(isShown(*node("b")));
  // The same filter while the tree is read.
  controller.setFilter(FileFilter::of(20'000, 0));
  scan();
  EXPECT_TRUE(isShown(*node("a")));
  EXPECT_FALSE(isShown(*node("b")));
}

}  // namespace
}  // namespace brisko::test
