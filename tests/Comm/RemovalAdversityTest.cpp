// Removals while things go wrong: system calls that fail, and somebody who exchanges folders
// meanwhile.

#include "FileDescriptor.h"
#include "Machine.h"
#include "Removal.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;

int openDescriptors() {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/fd"))
    ++count;
  return count;
}

class RemovalAdversityTest : public testing::Test {
 protected:
  void makeTree() const {
    folder.file("tree/a/one", "1");
    folder.file("tree/a/b/two", "2");
    folder.file("tree/three", "3");
    folder.link("tree/link", "../beside");
    folder.file("beside/stays", "x");
  }
  TemporaryFolder folder;
};

// The calls of the kernel, of which the `at`th fails with `error`; it counts them all.
struct Failing {
  RemovalCalls calls = RemovalCalls::system();
  int count = 0;
  int at = -1;
  int error = 0;

  bool fails() {
    if (count++ != at) return false;
    errno = error;
    return true;
  }
};

struct Call {
  const char* name;
  std::function<void(Failing&)> inject;
  std::vector<int> errors;
};

const Call kCalls[] = {
    {"openat2",
     [](Failing& f) {
       f.calls.openat2 = [&f](int at, const char* path, const open_how& how) {
         return f.fails() ? -1 : RemovalCalls::system().openat2(at, path, how);
       };
     },
     {EACCES, EMFILE, ENOSYS, ELOOP, EXDEV, EIO, ENOENT, ENOTDIR, ENOMEM}},
    {"statx",
     [](Failing& f) {
       f.calls.statx = [&f](int at, const char* path, int flags, unsigned mask,
                            struct statx& facts) {
         return f.fails() ? -1 : RemovalCalls::system().statx(at, path, flags, mask, facts);
       };
     },
     {EACCES, EIO, ENOENT, ENOSYS}},
    {"getdents64",
     [](Failing& f) {
       f.calls.getdents64 = [&f](int at, void* buffer, std::size_t size) {
         return f.fails() ? -1 : RemovalCalls::system().getdents64(at, buffer, size);
       };
     },
     {EIO, ENOENT, ENOMEM}},
    {"unlinkat",
     [](Failing& f) {
       f.calls.unlinkat = [&f](int at, const char* name, int flags) {
         return f.fails() ? -1 : RemovalCalls::system().unlinkat(at, name, flags);
       };
     },
     {EACCES, EPERM, EBUSY, EIO, EISDIR, ENOENT, ENOTEMPTY, EROFS, ENOTDIR}},
};

// Whichever call fails in whichever place: what is outside stays, nothing is claimed that did not
// happen, no descriptor is lost, and the next attempt without a failure finishes the work.
TEST_F(RemovalAdversityTest, EverySystemCallMayFailInEveryPlace) {
  for (const Call& call : kCalls) {
    for (const int error : call.errors) {
      for (int at = 0;; ++at) {
        SCOPED_TRACE(std::string(call.name) + " fails with " + std::to_string(error) + " at " +
                     std::to_string(at));
        makeTree();
        Failing failing;
        failing.at = at;
        failing.error = error;
        call.inject(failing);
        const auto shown = FileIdentity::at(folder / "tree");
        const int descriptors = openDescriptors();
        const auto report = RemovalEngine(failing.calls).remove(folder / "tree", shown);
        ASSERT_EQ(openDescriptors(), descriptors);
        ASSERT_TRUE(exists(folder / "beside/stays"));
        ASSERT_EQ(report.removed(), !exists(folder / "tree")) << report.reason;
        ASSERT_EQ(report.reason.empty(), report.removed());
        if (!report.removed()) {
          const auto again = RemovalEngine().remove(folder / "tree", shown);
          ASSERT_TRUE(again.removed()) << again.reason;
        }
        if (failing.count <= at) break;
      }
    }
  }
}

// The chance for a fault is in the moment between two calls, so the swaps come from the calls
// themselves: before each of them the folder at work is exchanged for a link to what must survive.
TEST_F(RemovalAdversityTest, ASwapBeforeAnyCallLeadsNowhere) {
  for (const char* swapped : {"tree", "tree/a", "tree/a/b"}) {
    for (int at = 0;; ++at) {
      SCOPED_TRACE(std::string(swapped) + " swapped before call " + std::to_string(at));
      makeTree();
      folder.file("victim/b/two", "must survive");
      folder.file("victim/one", "must survive");
      int count = 0;
      const auto swap = [&] {
        if (count++ != at) return;
        std::error_code none;
        fs::rename(folder / swapped, folder / "taken away", none);
        fs::create_directory_symlink(folder / "victim", folder / swapped, none);
      };
      RemovalCalls calls = RemovalCalls::system();
      calls.openat2 = [&](int folderAt, const char* path, const open_how& how) {
        swap();
        return RemovalCalls::system().openat2(folderAt, path, how);
      };
      calls.unlinkat = [&](int folderAt, const char* name, int flags) {
        swap();
        return RemovalCalls::system().unlinkat(folderAt, name, flags);
      };
      calls.getdents64 = [&](int folderAt, void* buffer, std::size_t size) {
        swap();
        return RemovalCalls::system().getdents64(folderAt, buffer, size);
      };
      RemovalEngine(calls).remove(folder / "tree", FileIdentity::at(folder / "tree"));
      ASSERT_EQ(contentOf(folder / "victim/one"), "must survive");
      ASSERT_EQ(contentOf(folder / "victim/b/two"), "must survive");
      std::error_code error;
      fs::remove_all(folder / "tree", error);
      fs::remove_all(folder / "taken away", error);
      if (count <= at) break;
    }
  }
}

TEST_F(RemovalAdversityTest, AnAdversaryWhoSwapsFoldersForLinksGetsNothing) {
  constexpr int kRounds = 300;
  const std::string victim = folder.folder("victim");
  const auto makeVictim = [&] {
    for (const char* name : {"a/one", "b/two", "c/three", "one", "two"}) {
      folder.file(std::string("victim/") + name, name);
    }
  };
  makeVictim();
  std::atomic<bool> stop = false;
  std::atomic<long> swaps = 0;
  std::thread adversary([&] {
    // Raw calls, past the guard and the C++ file library: the more swaps in a round, the better the
    // chance. Everything happens in the test's own folder.
    const int home = open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    const auto exchange = [&](int at, const char* name) {
      return ::syscall(SYS_renameat2, home, "link", at, name, RENAME_EXCHANGE) == 0;
    };
    for (std::size_t i = 0; !stop; ++i) {
      struct stat status;
      if (lstat((folder / "link").c_str(), &status) == 0 && !S_ISLNK(status.st_mode)) {
        const std::string aside = "aside" + std::to_string(i);
        ::syscall(SYS_renameat2, home, "link", home, aside.c_str(), 0);
      }
      if (symlinkat(victim.c_str(), home, "link") != 0 && errno != EEXIST) continue;
      // The folder itself, one in it, or one in that; never by way of its own links.
      FileDescriptor at(dup(home));
      const char* const names[] = {"tree", "a", "b"};
      for (std::size_t depth = 0; depth < i % 3; ++depth) {
        at.reset(openat(at.get(), names[depth], O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
      }
      if (!exchange(at.get(), names[i % 3])) continue;
      ++swaps;
      if (i % 2 == 0) std::this_thread::yield();
      exchange(at.get(), names[i % 3]);
    }
    close(home);
  });
  // Rounds count in which there was something to remove and the adversary had its say.
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(40);
  int removed = 0;
  int rounds = 0;
  while ((rounds < kRounds || swaps < kRounds) && std::chrono::steady_clock::now() < end) {
    for (const char* name : {"a/one", "a/b/two", "a/b/c/three", "a/b/c/d/four", "two"}) {
      std::error_code error;
      const std::string file = folder / (std::string("tree/") + name);
      fs::create_directories(fs::path(file).parent_path(), error);
      close(open(file.c_str(), O_CREAT | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0600));
    }
    const auto shown = FileIdentity::at(folder / "tree");
    if (!shown) continue;
    if (shown->kind != FileKind::directory) {
      ::syscall(SYS_unlink, (folder / "tree").c_str());
      continue;
    }
    ++rounds;
    removed += RemovalEngine().remove(folder / "tree", shown).removed() ? 1 : 0;
  }
  stop = true;
  adversary.join();
  for (const char* name : {"a/one", "b/two", "c/three", "one", "two"}) {
    EXPECT_EQ(contentOf(victim + "/" + name), name);
  }
  // A machine that is busy with other things may not get through all of them.
  EXPECT_GE(rounds, kRounds / 6);
  EXPECT_GE(swaps, kRounds / 6) << "the adversary was not there";
  RecordProperty("removed", removed);
}

// What lies deeper than the folders that are kept open is reached again through "..": a folder that
// was moved out of the tree meanwhile must not take the walk along.
TEST_F(RemovalAdversityTest, ADeepFolderMovedElsewhereDoesNotTakeTheWalkAlong) {
  std::string path = folder / "tree";
  std::string middle;
  for (int depth = 0; depth < 80; ++depth) {
    path += "/d";
    if (depth == 10) middle = path;
  }
  fs::create_directories(path);
  folder.file("elsewhere/precious", "must survive");
  RemovalCalls calls = RemovalCalls::system();
  bool moved = false;
  calls.unlinkat = [&](int at, const char* name, int flags) {
    if (!moved) {
      moved = true;
      fs::rename(middle, folder / "elsewhere/moved");
    }
    return RemovalCalls::system().unlinkat(at, name, flags);
  };
  const auto report = RemovalEngine(calls).remove(folder / "tree", std::nullopt);
  EXPECT_EQ(report.outcome, RemovalOutcome::changed) << report.reason;
  EXPECT_EQ(contentOf(folder / "elsewhere/precious"), "must survive");
}

TEST(UnlinkGuardTest, EndsTheProgramBeforeAnythingOutsideGoes) {
  TemporaryFolder folder;
  const std::string outside = "/tmp/brisko-guard-" + std::to_string(getpid());
  const std::string inside = folder.file("inside");
  folder.link("out", "/tmp");
  const std::string throughLink = folder / ("out/brisko-guard-" + std::to_string(getpid()));
  close(open(outside.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  const int tmp = open("/tmp", O_PATH | O_CLOEXEC);
  const std::string name = fs::path(outside).filename();
  EXPECT_DEATH(unlink(outside.c_str()), "outside the test's own folders");
  EXPECT_DEATH(unlinkat(tmp, name.c_str(), 0), "outside the test's own folders");
  EXPECT_DEATH(std::remove(throughLink.c_str()), "outside the test's own folders");
  EXPECT_DEATH(fs::remove_all(outside), "outside the test's own folders");
  EXPECT_DEATH(fs::rename(outside, inside), "outside the test's own folders");
  EXPECT_DEATH(std::rename(inside.c_str(), outside.c_str()), "outside the test's own folders");
  EXPECT_EQ(unlink(inside.c_str()), 0);
  EXPECT_TRUE(exists(outside));
  ::syscall(SYS_unlink, outside.c_str());
  close(tmp);
}

}  // namespace
}  // namespace brisko::test
