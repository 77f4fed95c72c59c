// The eraser from outside: the real program on real files, and what is left of them.

#include "DeepFolders.h"
#include "HostTools.h"
#include "Machine.h"
#include "PassWriter.h"
#include "RegularFile.h"
#include "TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <thread>
#include <tuple>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

HostTools::Outcome srm(std::vector<std::string> arguments,
                       const std::function<bool()>& cancelled = nullptr) {
  arguments.insert(arguments.begin(), buildTree() + "/libexec/brisko/srm");
  return HostTools::run(arguments, std::size_t{1} << 20, cancelled);
}

std::string repeated(const std::string& text, std::size_t size) {
  std::string all;
  while (all.size() < size)
    all += text;
  all.resize(size);
  return all;
}

/// The content of a file of megabytes, read at once.
std::string largeContentOf(const std::string& path) {
  int error = 0;
  return readFile(path, std::size_t{64} << 20, error).value_or("");
}

// Passes.

TEST(Passes, EachSchemeMakesItsNumberAndZeroesComeLast) {
  using srm::Scheme;
  const std::tuple<Scheme, std::size_t, std::size_t> cases[] = {
      {Scheme::simple, 1, 2}, {Scheme::doe, 3, 3}, {Scheme::dod, 7, 8}, {Scheme::gutmann, 35, 36}};
  for (const auto& [scheme, plain, zeroed] : cases) {
    EXPECT_EQ(srm::passesOf(scheme, false).size(), plain);
    const auto passes = srm::passesOf(scheme, true);
    EXPECT_EQ(passes.size(), zeroed);
    EXPECT_EQ(passes.back().description(), "0x00 0x00 0x00");
  }
}

TEST(Passes, CoverTheRangesToTheByteAndNothingElse) {
  TemporaryFolder folder;
  // More than one write of either kind, and no multiple of any.
  constexpr std::uint64_t kSize = (13U << 20) + 3 * 4096;
  const std::string path = folder.file("f", std::string(kSize, 'k'));
  const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
  const std::vector<srm::Range> ranges = {{4096, 8192}, {3 * 4096, kSize - 4096}};
  const auto never = [] { return false; };
  ASSERT_EQ(srm::PassWriter(file, kSize, never).write({false, {1, 2, 3}}, ranges), 0);
  std::string text = largeContentOf(path);
  ASSERT_EQ(text.size(), kSize);
  std::string expected(kSize, 'k');
  for (const srm::Range& range : ranges)
    expected.replace(range.begin, range.size(), repeated("\1\2\3", range.size()));
  EXPECT_TRUE(text == expected);
  ASSERT_EQ(srm::PassWriter(file, kSize, never).write({}, ranges), 0);
  text = largeContentOf(path);
  EXPECT_EQ(text.substr(0, 4096), std::string(4096, 'k'));
  std::array<std::uint64_t, 256> counts{};
  for (const char byte : text.substr(ranges[1].begin, ranges[1].size()))
    ++counts[static_cast<unsigned char>(byte)];
  // Each byte about equally often: five standard deviations.
  const double mean = static_cast<double>(ranges[1].size()) / 256;
  for (const std::uint64_t count : counts)
    EXPECT_NEAR(static_cast<double>(count), mean, 5 * std::sqrt(mean));
  EXPECT_NE(text.substr(3 * 4096, 4096), text.substr(4 * 4096, 4096));
  close(file);
}

// Raw blocks.

bool command(const std::string& text) {
  return HostTools::shell(text + " >/dev/null 2>&1") == 0;
}

/// Fills a file system on a loop device, erases, and looks for the old content in its image.
/// 0: none is left. 1: some is. 2: nothing was there to begin with. 3: the eraser failed. 4: no
/// such file system here.
int leftOnDisk(const TemporaryFolder& folder, const std::string& make) {
  const std::string memory = folder.folder("memory");
  const std::string point = folder.folder("mnt");
  if (mount("none", memory.c_str(), "tmpfs", 0, nullptr) != 0) return 4;
  const std::string image = folder.sizedFile("memory/image", std::size_t{48} << 20);
  if (!command(make + " " + image) || !command("mount -o loop " + image + " " + point)) return 4;
  const std::string secret = "what nobody shall read ever again. ";
  const auto write = [&](const std::string& name, std::size_t size) {
    fs::create_directories(fs::path(point + "/" + name).parent_path());
    std::ofstream(point + "/" + name, std::ios::binary) << repeated(secret, size);
  };
  write("large", 9'000'001);
  write("tree/small", 700);
  write("tree/deeper/other", 100'000);
  write("cut", 4096);
  write("holes", 300'000);
  command("sync -f " + point);
  // What was behind the new end stays in the last block.
  if (truncate((point + "/cut").c_str(), 10) != 0) return 3;
  if (truncate((point + "/holes").c_str(), 5'000'000) != 0) return 3;
  setxattr((point + "/cut").c_str(), "user.note", repeated(secret, 1500).data(), 1500, 0);
  command("sync -f " + point);
  const bool wasThere = largeContentOf(image).find(secret) != std::string::npos;
  const std::string p = point + "/";
  const auto erased = srm({"-fsvrz", p + "large", p + "tree", p + "cut", p + "holes"});
  const bool isEmpty =
      !exists(p + "large") && !exists(p + "tree") && !exists(p + "cut") && !exists(p + "holes");
  command("umount " + point);
  if (erased.status != 0 || !isEmpty) return 3;
  if (!wasThere) return 2;
  return largeContentOf(image).find(secret) == std::string::npos ? 0 : 1;
}

class RawBlocks : public testing::TestWithParam<const char*> {};

TEST_P(RawBlocks, HoldNothingOfWhatWasErased) {
  if (!isRoot()) GTEST_SKIP() << "because only root can mount";
  TemporaryFolder folder;
  const int result = inMountNamespace([&] { return leftOnDisk(folder, GetParam()); });
  if (result == -2 || result == 4) GTEST_SKIP() << "because no loop device can be mounted here";
  EXPECT_EQ(result, 0);
}

// Without a journal, which keeps old blocks of attributes for a while and is nobody's to overwrite.
INSTANTIATE_TEST_SUITE_P(Ext4AndFat, RawBlocks,
                         testing::Values("mkfs.ext4 -q -F -b 4096 -O ^has_journal",
                                         "mkfs.vfat -s 8"));

TEST(Notes, SayOnceWhyOldBlocksMayStay) {
  if (!isRoot()) GTEST_SKIP() << "because only root can mount";
  TemporaryFolder folder;
  folder.file("lower/one", "text");
  folder.file("lower/two", "text");
  for (const char* name : {"upper", "work", "mnt"})
    folder.folder(name);
  const int result = inMountNamespace([&] {
    const std::string options = "lowerdir=" + (folder / "lower") +
                                ",upperdir=" + (folder / "upper") + ",workdir=" + (folder / "work");
    const std::string point = folder / "mnt";
    if (mount("overlay", point.c_str(), "overlay", 0, options.c_str()) != 0) return 9;
    const auto outcome = srm({"-fs", point + "/one", point + "/two"});
    const std::string note = "srm: note: The file system overlay writes changes to new blocks";
    const std::size_t at = outcome.errors.find(note);
    return outcome.status == 0 && at != std::string::npos &&
                   outcome.errors.find(note, at + 1) == std::string::npos &&
                   contentOf(folder / "lower/one") == "text"
               ? 0
               : 1;
  });
  if (result == -2 || result == 9) GTEST_SKIP() << "because nothing can be mounted here";
  EXPECT_EQ(result, 0);
}

// What must not go.

TEST(Srm, RefusesProtectedPlacesMountsAndFoldersWithoutBeingAsked) {
  TemporaryFolder folder;
  folder.file("tree/a");
  for (const std::string path : {"/", "/etc", "/home", "/usr/bin/env"}) {
    const auto refused = srm({"-fszr", path});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors, HasSubstr("srm: " + path + ": "));
    EXPECT_TRUE(exists(path));
  }
  EXPECT_EQ(srm({"-s", folder / "tree"}).status, 1) << "-r was not given";
  EXPECT_TRUE(exists(folder / "tree/a"));
  EXPECT_EQ(srm({"-s", folder / "gone"}).status, 1);
  EXPECT_EQ(srm({"-fs", folder / "gone"}).status, 0);
  for (const char* wrong : {"-fsQ", "--names=0", ""}) {
    EXPECT_EQ(srm({"-fsr", wrong, folder / "tree"}).status, 2) << "\"" << wrong << '"';
    EXPECT_TRUE(exists(folder / "tree/a"));
  }
  if (!isRoot()) return;
  const int result = inMountNamespace([&] {
    const std::string mounted = folder.folder("tree/mounted");
    folder.file("elsewhere/kept", "kept");
    if (mount((folder / "elsewhere").c_str(), mounted.c_str(), nullptr, MS_BIND, nullptr) != 0)
      return 2;
    const bool isRefused = srm({"-fsr", folder / "tree"}).status == 1 &&
                           srm({"-fsr", mounted}).status == 1 &&
                           contentOf(folder / "elsewhere/kept") == "kept";
    umount(mounted.c_str());
    return isRefused ? 0 : 1;
  });
  EXPECT_TRUE(result == 0 || result == -2) << result;
}

TEST(Srm, RemovesALinkAndWhatIsNoFileWithoutTouchingAnythingElse) {
  TemporaryFolder folder;
  const std::string kept = folder.file("kept", "kept");
  folder.link("tree/link", kept);
  folder.link("tree/dangling", "/nowhere");
  folder.link("tree/folder", folder.path());
  ASSERT_EQ(mkfifo((folder / "tree/fifo").c_str(), 0600), 0);
  const auto outcome = srm({"-fsr", folder / "tree"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_FALSE(exists(folder / "tree"));
  EXPECT_EQ(contentOf(kept), "kept");
}

TEST(Srm, ASparseFileOfTerabytesTakesNoTimeAndNoRoom) {
  TemporaryFolder folder;
  const std::string path = folder.file("sparse", "begin");
  if (truncate(path.c_str(), off_t{1} << 40) != 0) GTEST_SKIP() << "because no such file fits here";
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(srm({"-fsz", path}).status, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
  EXPECT_FALSE(exists(path));
}

TEST(Srm, TreesOfAnyDepthGo) {
  TemporaryFolder folder;
  folder.folder("deep");
  const DeepFolders deep(folder / "deep", 200, [](int level) {
    close(openat(level, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  });
  const auto outcome = srm({"-fsr", folder / "deep"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_FALSE(exists(folder / "deep"));
}

// What cannot be erased stays whole in name and place.

void expectStays(const HostTools::Outcome& outcome, const std::string& path,
                 const std::string& reason) {
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors, HasSubstr(reason));
  EXPECT_TRUE(exists(path)) << "under its own name";
}

TEST(Srm, BusyImmutableAndFailingFilesStayWithTheReason) {
  TemporaryFolder folder;
  const std::string path = folder.file("file", repeated("text ", 50'000));
  {
    std::ofstream writer(path, std::ios::app);
    expectStays(srm({"-fs", path}), path, "another program has it open for writing");
  }
  const int limited = inChild([&] {
    const rlimit limit{8192, 8192};
    setrlimit(RLIMIT_FSIZE, &limit);
    const auto outcome = srm({"-fs", path});
    return outcome.status == 1 && outcome.errors.find("File too large") != std::string::npos &&
                   fs::file_size(path) == 50'000
               ? 0
               : 1;
  });
  EXPECT_EQ(limited, 0);
  if (isRoot() && setImmutable(path, true)) {
    expectStays(srm({"-fs", path}), path, "it is immutable");
    setImmutable(path, false);
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST(Srm, ReadOnlyFilesNeedForceAndKeepTheirModeWhenTheyStay) {
  if (!isRoot()) GTEST_SKIP() << "because only root can become a user without rights";
  TemporaryFolder folder;
  chmod(folder.path().c_str(), 0777);
  const std::string path = folder.file("file", "text");
  ASSERT_EQ(chown(path.c_str(), kNobody, kNobody), 0);
  chmod(path.c_str(), 0400);
  EXPECT_EQ(asUser(kNobody, [&] { return srm({"-s", path}).status; }), 1);
  struct stat status;
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0400U);
  EXPECT_EQ(asUser(kNobody, [&] { return srm({"-fs", path}).status; }), 0);
  EXPECT_FALSE(exists(path));
  // It runs, and cannot be written: its mode, which was lifted for the try, is put back.
  const std::string program = folder / "program";
  fs::copy("/bin/sleep", program);
  ASSERT_EQ(chown(program.c_str(), kNobody, kNobody), 0);
  chmod(program.c_str(), 0555);
  pid_t running = 0;
  char* const words[] = {const_cast<char*>("sleep"), const_cast<char*>("30"), nullptr};
  ASSERT_EQ(posix_spawn(&running, program.c_str(), nullptr, nullptr, words, environ), 0);
  EXPECT_EQ(asUser(kNobody, [&] { return srm({"-fs", program}).status; }), 1);
  kill(running, SIGKILL);
  waitpid(running, nullptr, 0);
  ASSERT_EQ(stat(program.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0555U);
  const std::string foreign = folder.file("foreign", "text");
  EXPECT_EQ(asUser(kNobody, [&] { return srm({"-fs", foreign}).status; }), 1);
  EXPECT_EQ(contentOf(foreign), "text");
}

TEST(Srm, AFullDiskIsNoHindranceBecauseNothingNewIsWritten) {
  if (!isRoot()) GTEST_SKIP() << "because only root can mount";
  TemporaryFolder folder;
  const std::string point = folder.folder("mnt");
  const int result = inMountNamespace([&] {
    if (mount("none", point.c_str(), "tmpfs", 0, "size=1m") != 0) return 9;
    std::ofstream(point + "/full") << repeated("x", 4'000'000);
    std::ofstream(point + "/none") << "no room for this";
    const auto outcome = srm({"-fsz", point + "/full"});
    return outcome.status == 0 && !exists(point + "/full") ? 0 : 1;
  });
  if (result == -2 || result == 9) GTEST_SKIP() << "because nothing can be mounted here";
  EXPECT_EQ(result, 0);
}

TEST(Srm, AGrowingFileComesToAnEnd) {
  TemporaryFolder folder;
  const std::string path = folder.file("log", repeated("line\n", 3'000'000));
  std::atomic<bool> stop = false;
  std::thread writer([&] {
    while (!stop) {
      const int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
      if (file < 0) continue;
      EXPECT_GE(write(file, std::string(20'000, 'n').data(), 20'000), 0);
      close(file);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  });
  const auto outcome = srm({"-fEz", path});
  stop = true;
  writer.join();
  EXPECT_EQ(outcome.status == 0, !exists(path)) << outcome.errors;
  EXPECT_EQ(outcome.status != 0, outcome.errors.find(path) != std::string::npos);
}

TEST(Srm, InterruptedItLeavesTheFileUnderItsNameAndSaysHowFarItCame) {
  TemporaryFolder folder;
  const std::string path = folder.file("file", std::string(64U << 20, 'x'));
  const std::string next = folder.file("next", "untouched");
  const auto begin = std::chrono::steady_clock::now();
  const auto outcome = srm({"-fv", path, next}, [&] {
    return std::chrono::steady_clock::now() - begin > std::chrono::milliseconds(300);
  });
  EXPECT_EQ(outcome.status, 130);
  EXPECT_THAT(outcome.errors, HasSubstr("stopped in pass"));
  EXPECT_THAT(outcome.errors, HasSubstr(next + ": stopped: not touched"));
  EXPECT_GE(fs::file_size(path), 64U << 20);
  EXPECT_EQ(contentOf(next), "untouched");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 2) << "no other name";
}

TEST(Srm, CannotBeLedOutOfTheTreeByWhoSwapsItsFolders) {
  TemporaryFolder folder;
  for (int i = 0; i < 40; ++i)
    folder.file(fmt::format("outside/kept{}", i), "kept");
  for (int round = 0; round < 6; ++round) {
    for (int i = 0; i < 40; ++i)
      folder.file(fmt::format("tree/sub/kept{}", i), "goes");
    folder.link("trap", folder / "outside");
    std::atomic<bool> stop = false;
    std::thread adversary([&] {
      while (!stop) {
        renameat2(AT_FDCWD, (folder / "tree/sub").c_str(), AT_FDCWD, (folder / "trap").c_str(),
                  RENAME_EXCHANGE);
      }
    });
    srm({"-fsr", folder / "tree"});
    stop = true;
    adversary.join();
    for (int i = 0; i < 40; ++i)
      ASSERT_EQ(contentOf(folder / fmt::format("outside/kept{}", i)), "kept");
    fs::remove_all(folder / "tree");
    fs::remove_all(folder / "trap");
  }
}

}  // namespace
}  // namespace brisko::test
