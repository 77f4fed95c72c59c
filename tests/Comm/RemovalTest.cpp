#include "LogCapture.h"
#include "Machine.h"
#include "ProtectedPaths.h"
#include "Removal.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <dirent.h>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::uint64_t blocksOf(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 ? static_cast<std::uint64_t>(status.st_blocks) * 512 : 0;
}

mode_t modeOf(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

int openDescriptors() {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/fd"))
    ++count;
  return count;
}

RemovalReport removeShown(const std::string& path) {
  return RemovalEngine().remove(path, FileIdentity::at(path));
}

class RemovalTest : public testing::Test {
 protected:
  TemporaryFolder folder;
};

TEST_F(RemovalTest, EveryKindOfItemGoesAndNothingBesideIt) {
  const std::string beside = folder.file("beside", "stays");
  const std::string target = folder.file("target/inner", "stays too");
  folder.file("tree/file", std::string(100000, 'x'));
  folder.file("tree/a/b/c/deep", "1");
  folder.folder("tree/empty");
  folder.link("tree/a/link to a folder", folder / "target");
  folder.link("tree/link to a file", beside);
  folder.link("tree/link to nowhere", "/nonexistent");
  folder.link("tree/link to itself", "link to itself");
  ASSERT_EQ(mkfifo((folder / "tree/fifo").c_str(), 0600), 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (folder / "tree/socket").copy(address.sun_path, sizeof address.sun_path - 1);
  const int socketFile = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(bind(socketFile, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  close(socketFile);

  const int before = openDescriptors();
  const RemovalReport report = removeShown(folder / "tree");
  EXPECT_TRUE(report.removed()) << report.reason;
  EXPECT_EQ(report.removedItems, 13U);
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_FALSE(exists(folder / "tree"));
  EXPECT_EQ(contentOf(beside), "stays");
  EXPECT_EQ(contentOf(target), "stays too");
}

TEST_F(RemovalTest, ALinkGoesItselfWhateverItLeadsTo) {
  folder.file("target/file", "stays");
  for (const std::string& link :
       {folder.link("to folder", "target"), folder.link("to file", "target/file")}) {
    EXPECT_TRUE(removeShown(link).removed());
    EXPECT_FALSE(exists(link));
  }
  EXPECT_EQ(contentOf(folder / "target/file"), "stays");
}

TEST_F(RemovalTest, NamesAreBytes) {
  const std::string names[] = {"line\nbreak",
                               "quote\"'`$(reboot)",
                               "\xff\xfe not text",
                               "-rf",
                               " ",
                               "back\\slash",
                               "\x1b[31mred",
                               "*",
                               std::string(255, 'n')};
  for (const std::string& name : names) {
    folder.file("tree/" + name + "/" + name, "x");
    EXPECT_TRUE(removeShown(folder / ("tree/" + name)).removed()) << name;
    EXPECT_FALSE(exists(folder / ("tree/" + name)));
  }
  EXPECT_TRUE(exists(folder / "tree"));
}

TEST_F(RemovalTest, ATreeDeeperThanAnyPathAndThanTheDescriptorsGoes) {
  constexpr int kDepth = 1500;
  const std::string name = "a folder in a folder";
  int at = open(folder.folder("deep").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int depth = 0; depth < kDepth; ++depth) {
    ASSERT_EQ(mkdirat(at, name.c_str(), 0700), 0);
    const int next = openat(at, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    // Now and then something beside the way down, so that each part has something to come back for.
    if (depth % 7 == 0) {
      close(openat(at, "z", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
      ASSERT_EQ(mkdirat(at, "aside", 0700), 0);
    }
    close(at);
    at = next;
  }
  close(at);
  const RemovalReport report = removeShown(folder / "deep");
  EXPECT_TRUE(report.removed()) << report.reason;
  EXPECT_EQ(report.removedItems, kDepth + 1U + 2U * ((kDepth + 6) / 7));
  EXPECT_FALSE(exists(folder / "deep"));
}

TEST_F(RemovalTest, AWideFolderGoesWhole) {
  constexpr int kFiles = 20000;
  const int wide = open(folder.folder("wide").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int i = 0; i < kFiles; ++i) {
    close(openat(wide, std::to_string(i).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  }
  close(wide);
  EXPECT_EQ(removeShown(folder / "wide").removedItems, kFiles + 1U);
  EXPECT_FALSE(exists(folder / "wide"));
}

TEST_F(RemovalTest, FreedIsWhatTheFileSystemGaveBack) {
  const std::string outside = folder.file("outside", std::string(50000, 'x'));
  folder.file("tree/single", std::string(30000, 'x'));
  folder.file("tree/a/twin", std::string(70000, 'x'));
  folder.sizedFile("tree/hole", 10 << 20);
  fs::create_hard_link(folder / "tree/a/twin", folder / "tree/other twin");
  fs::create_hard_link(outside, folder / "tree/shared");
  std::uint64_t expected = blocksOf(folder / "tree") + blocksOf(folder / "tree/a") +
                           blocksOf(folder / "tree/single") + blocksOf(folder / "tree/a/twin") +
                           blocksOf(folder / "tree/hole");
  EXPECT_GT(expected, 100000U);
  EXPECT_LT(expected, 1U << 20);
  EXPECT_EQ(removeShown(folder / "tree").freedBytes, expected);

  fs::create_hard_link(outside, folder / "second name");
  EXPECT_EQ(removeShown(folder / "second name").freedBytes, 0U);
  expected = blocksOf(outside);
  EXPECT_EQ(removeShown(outside).freedBytes, expected);
}

TEST_F(RemovalTest, AnItemThatIsNotWhatWasShownStays) {
  const std::string file = folder.file("file", "shown");
  const auto shownFile = *FileIdentity::at(file);
  struct Case {
    const char* what;
    std::function<void()> change;
  };
  const Case cases[] = {
      {"grown", [&] { std::ofstream(file, std::ios::app) << "more"; }},
      {"rewritten later",
       [&] {
         timespec times[] = {{100, 0}, {100, 1}};
         folder.file("file", "shown");
         utimensat(AT_FDCWD, file.c_str(), times, 0);
       }},
      {"another file",
       [&] {
         folder.file("new", "shown");
         fs::rename(folder / "new", file);
       }},
      {"a folder",
       [&] {
         fs::remove(file);
         folder.file("file/inner", "x");
       }},
      {"a link",
       [&] {
         fs::remove_all(file);
         folder.link("file", "elsewhere");
       }},
  };
  for (const Case& change : cases) {
    change.change();
    const RemovalReport report = RemovalEngine().remove(file, shownFile);
    EXPECT_EQ(report.outcome, RemovalOutcome::changed) << change.what;
    EXPECT_TRUE(exists(file)) << change.what;
  }

  folder.file("tree/inner", "x");
  const auto shownFolder = FileIdentity::at(folder / "tree");
  fs::rename(folder / "tree", folder / "moved");
  folder.file("tree/other", "x");
  EXPECT_EQ(RemovalEngine().remove(folder / "tree", shownFolder).outcome, RemovalOutcome::changed);
  EXPECT_TRUE(exists(folder / "tree/other"));
}

TEST_F(RemovalTest, WhatAFolderHoldsMayChangeAfterItWasShown) {
  const std::string tree = folder.folder("tree");
  const auto shown = FileIdentity::at(tree);
  folder.file("tree/new", "x");
  EXPECT_TRUE(RemovalEngine().remove(tree, shown).removed());
}

TEST_F(RemovalTest, PathsThatSayNoPlaceAreRefusedAndMissingOnesAreMissing) {
  LogCapture log;
  folder.file("tree/file", "x");
  const auto outcome = [&](const std::string& path) {
    return RemovalEngine().remove(path, std::nullopt).outcome;
  };
  EXPECT_EQ(outcome(""), RemovalOutcome::failed);
  EXPECT_EQ(outcome("tree"), RemovalOutcome::failed);
  EXPECT_EQ(outcome(folder / "tree/../tree"), RemovalOutcome::failed);
  EXPECT_EQ(outcome(folder / "tree/.."), RemovalOutcome::failed);
  EXPECT_EQ(outcome((folder / "tree") + std::string("\0x", 2)), RemovalOutcome::failed);
  EXPECT_EQ(outcome("/"), RemovalOutcome::protectedPath);
  EXPECT_EQ(outcome("//./"), RemovalOutcome::protectedPath);
  EXPECT_EQ(outcome(folder / "absent"), RemovalOutcome::missing);
  EXPECT_EQ(outcome(folder / "absent/below"), RemovalOutcome::missing);
  EXPECT_EQ(outcome(folder / "tree/file/below"), RemovalOutcome::missing);
  EXPECT_TRUE(exists(folder / "tree/file"));
  EXPECT_TRUE(log.has("Remove failed: " + (folder / "absent") + ": It is not there."));
  EXPECT_EQ(log.count("Remove failed: "), 10);
  EXPECT_EQ(outcome(folder.path() + "//tree/./"), RemovalOutcome::removed);
}

TEST_F(RemovalTest, APathThroughALinkIsRefused) {
  folder.file("target/file", "stays");
  folder.link("link", folder / "target");
  folder.link("target/here", ".");
  for (const char* path : {"link/file", "link/here/file", "target/here/file", "link/"}) {
    // The trailing slash names the link itself, which may go; it comes last.
    const auto report = RemovalEngine().remove(folder / path, std::nullopt);
    if (std::string(path) == "link/") {
      EXPECT_TRUE(report.removed());
    } else {
      EXPECT_EQ(report.outcome, RemovalOutcome::throughLink) << path;
    }
  }
  EXPECT_EQ(contentOf(folder / "target/file"), "stays");
}

TEST_F(RemovalTest, CancelEndsItBetweenTwoEntriesAndGivesModesBack) {
  folder.file("tree/locked/a/file", "x");
  folder.file("tree/locked/b/file", "x");
  chmod((folder / "tree/locked").c_str(), 0500);
  std::atomic<bool> cancel = false;
  RemovalCalls calls = RemovalCalls::system();
  int removed = 0;
  calls.unlinkat = [&](int at, const char* name, int flags) {
    const int result = RemovalCalls::system().unlinkat(at, name, flags);
    if (++removed == 1) cancel = true;
    return result;
  };
  const auto report = RemovalEngine(calls).remove(folder / "tree", std::nullopt, &cancel);
  EXPECT_EQ(report.outcome, RemovalOutcome::cancelled);
  EXPECT_EQ(report.removedItems, 1U);
  EXPECT_EQ(removed, 1);
  EXPECT_EQ(modeOf(folder / "tree/locked"), 0500U);

  EXPECT_EQ(RemovalEngine().remove(folder / "tree", std::nullopt, &cancel).removedItems, 0U);
}

TEST_F(RemovalTest, WhatAppearsWhileItRunsIsRemovedTooOrKeepsTheFolder) {
  folder.file("tree/file", "x");
  RemovalCalls calls = RemovalCalls::system();
  int appear = 1;
  calls.unlinkat = [&](int at, const char* name, int flags) {
    if (flags == AT_REMOVEDIR && appear-- > 0) folder.file("tree/late/file", "x");
    return RemovalCalls::system().unlinkat(at, name, flags);
  };
  EXPECT_TRUE(RemovalEngine(calls).remove(folder / "tree", std::nullopt).removed());

  folder.file("tree/file", "x");
  appear = 1000;
  const auto report = RemovalEngine(calls).remove(folder / "tree", std::nullopt);
  EXPECT_EQ(report.outcome, RemovalOutcome::failed);
  EXPECT_THAT(report.reason, HasSubstr("something was put into it"));
}

TEST_F(RemovalTest, ReadOnlyFoldersOfTheUsersOwnGo) {
  if (!isRoot()) GTEST_SKIP() << "because becoming another user needs root";
  chmod(folder.path().c_str(), 0777);
  const std::string tree = folder / "tree";
  EXPECT_EQ(asUser(kNobody,
                   [&] {
                     folder.file("tree/pkg/mod/file", "x");
                     folder.file("tree/closed/file", "x");
                     folder.file("tree/names only/file", "x");
                     folder.file("tree/write only/sub/file", "x");
                     chmod((tree + "/pkg/mod").c_str(), 0555);
                     chmod((tree + "/pkg").c_str(), 0555);
                     chmod((tree + "/closed").c_str(), 0);
                     chmod((tree + "/names only").c_str(), 0600);
                     chmod((tree + "/write only").c_str(), 0200);
                     chmod(tree.c_str(), 0);
                     const auto report = RemovalEngine().remove(tree, std::nullopt);
                     if (!report.removed()) std::fprintf(stderr, "%s\n", report.reason.c_str());
                     return report.removed() ? 0 : 1;
                   }),
            0);
  EXPECT_FALSE(exists(tree));
}

TEST_F(RemovalTest, WhatBelongsToOthersStaysTheRestGoesAndModesComeBack) {
  if (!isRoot()) GTEST_SKIP() << "because becoming another user needs root";
  chmod(folder.path().c_str(), 0777);
  const std::string tree = folder / "tree";
  ASSERT_EQ(asUser(kNobody,
                   [&] {
                     folder.file("tree/a/mine", "x");
                     folder.file("tree/b/mine", "x");
                     folder.folder("tree/c");
                     return 0;
                   }),
            0);
  folder.file("tree/c/root's/file", "x");
  ASSERT_EQ(chown((tree + "/c/root's").c_str(), 0, 0), 0);
  chmod((tree + "/c/root's").c_str(), 0755);
  chmod((tree + "/c").c_str(), 0500);
  EXPECT_EQ(asUser(kNobody,
                   [&] {
                     const auto report = RemovalEngine().remove(tree, std::nullopt);
                     return report.outcome == RemovalOutcome::notPermitted &&
                                    report.removedItems == 4 &&
                                    report.reason.find("root's") != std::string::npos
                                ? 0
                                : 1;
                   }),
            0);
  EXPECT_FALSE(exists(tree + "/a"));
  EXPECT_TRUE(exists(tree + "/c/root's/file"));
  EXPECT_EQ(modeOf(tree + "/c"), 0500U);
}

TEST_F(RemovalTest, AnImmutableFileStaysAndIsReported) {
  folder.file("tree/other", "x");
  const std::string fixed = folder.file("tree/fixed", "x");
  if (!setImmutable(fixed, true)) GTEST_SKIP() << "because nothing can be made immutable here";
  const auto report = removeShown(folder / "tree");
  EXPECT_EQ(report.outcome, RemovalOutcome::notPermitted);
  EXPECT_EQ(report.reason, "\"tree/fixed\" stays: you are not permitted to remove it.");
  EXPECT_EQ(report.removedItems, 1U);
  EXPECT_TRUE(exists(fixed));
  setImmutable(fixed, false);
}

TEST_F(RemovalTest, MountsAreNeverEntered) {
  const std::string tree = folder.folder("tree");
  folder.file("tree/file", "x");
  folder.folder("tree/deep/mount with a blank");
  folder.file("tree/deep/single", "x");
  folder.file("victim/file", "stays");
  const std::string mountPoint = tree + "/deep/mount with a blank";
  const int result = inMountNamespace([&] {
    const auto outcome = [](const std::string& path) {
      return RemovalEngine().remove(path, std::nullopt).outcome;
    };
    for (const bool bind : {true, false}) {
      const int mounted =
          bind ? mount((folder / "victim").c_str(), mountPoint.c_str(), nullptr, MS_BIND, nullptr)
               : mount("none", mountPoint.c_str(), "tmpfs", 0, nullptr);
      if (mounted != 0) return 1;
      if (outcome(tree) != RemovalOutcome::mountPoint) return 2;
      if (outcome(mountPoint) != RemovalOutcome::mountPoint) return 3;
      if (!exists(tree + "/file")) return 4;  // it was refused before anything went
      if (umount(mountPoint.c_str()) != 0) return 5;
    }
    const std::string single = tree + "/deep/single";
    if (mount((folder / "victim/file").c_str(), single.c_str(), nullptr, MS_BIND, nullptr) != 0) {
      return 6;
    }
    if (outcome(single) != RemovalOutcome::mountPoint) return 7;
    return umount(single.c_str()) == 0 ? 0 : 8;
  });
  if (result == -2) GTEST_SKIP() << "because mount name spaces need root";
  EXPECT_EQ(result, 0);
  EXPECT_EQ(contentOf(folder / "victim/file"), "stays");
}

TEST_F(RemovalTest, AMountThatComesWhileItRunsIsNotEnteredEither) {
  folder.file("tree/a/file", "x");
  folder.folder("tree/mount");
  folder.file("victim/file", "stays");
  const int result = inMountNamespace([&] {
    RemovalCalls calls = RemovalCalls::system();
    bool mounted = false;
    calls.getdents64 = [&](int at, void* buffer, std::size_t size) {
      if (!mounted) {
        mounted = mount((folder / "victim").c_str(), (folder / "tree/mount").c_str(), nullptr,
                        MS_BIND, nullptr) == 0;
      }
      return RemovalCalls::system().getdents64(at, buffer, size);
    };
    const auto report = RemovalEngine(calls).remove(folder / "tree", std::nullopt);
    if (!mounted) return 1;
    if (report.outcome != RemovalOutcome::mountPoint) return 2;
    return exists(folder / "tree/a") ? 3 : 0;
  });
  if (result == -2) GTEST_SKIP() << "because mount name spaces need root";
  EXPECT_EQ(result, 0);
  EXPECT_EQ(contentOf(folder / "victim/file"), "stays");
}

}  // namespace
}  // namespace brisko::test
