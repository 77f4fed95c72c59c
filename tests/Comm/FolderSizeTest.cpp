#include "DeepFolders.h"
#include "Dispatch.h"
#include "FolderSize.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <thread>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

class FolderSizeTest : public testing::Test {
 protected:
  FolderSize measure(const std::string& path, const std::atomic<bool>* cancel = nullptr) {
    int error = 0;
    const auto folder = host_.host().catalog->open(path, error);
    EXPECT_TRUE(folder) << error;
    return folder ? folderSize(*folder, cancel) : FolderSize();
  }

  // The same by plain means.
  static FolderSize plain(const std::string& path) {
    FolderSize size;
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
      struct stat status;
      lstat(entry.path().c_str(), &status);
      if (S_ISDIR(status.st_mode)) {
        ++size.folders;
      } else {
        ++size.files;
        size.dataSize += static_cast<std::uint64_t>(status.st_size);
      }
    }
    return size;
  }

  test::TestHost host_;
  test::TemporaryFolder folder_;
};

TEST_F(FolderSizeTest, RandomTreesSumAsAPlainWalkSums) {
  std::mt19937 random(3);
  for (const int items : {0, 1, 50, 6000}) {
    const std::string root = folder_.folder("tree " + std::to_string(items));
    std::vector<std::string> folders = {root};
    for (int i = 0; i < items; ++i) {
      const std::string path = folders[random() % folders.size()] + "/" + std::to_string(i);
      switch (random() % 6) {
        case 0:
          mkdir(path.c_str(), 0755);
          folders.push_back(path);
          break;
        case 1:
          fs::create_symlink(root, path);
          break;
        default: {
          const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
          ASSERT_EQ(ftruncate(file, random() % 5'000'000'000), 0);
          close(file);
        }
      }
    }
    const FolderSize expected = plain(root);
    const FolderSize found = measure(root);
    EXPECT_EQ(found.dataSize, expected.dataSize);
    EXPECT_EQ(found.files, expected.files);
    EXPECT_EQ(found.folders, expected.folders);
    EXPECT_EQ(found.skippedFolders, 0U);
    EXPECT_EQ(found.resourceSize, 0U);
  }
}

TEST_F(FolderSizeTest, AWideFolderIsSharedAndCountedOnce) {
  const int folder = open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int i = 0; i < 20'000; ++i) {
    const int file =
        openat(folder, std::to_string(i).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_EQ(ftruncate(file, i), 0);
    close(file);
  }
  close(folder);
  for (int round = 0; round < 5; ++round) {
    const FolderSize found = measure(folder_.path());
    EXPECT_EQ(found.dataSize, 19'999ULL * 20'000 / 2);
    EXPECT_EQ(found.files, 20'000U);
  }
}

TEST_F(FolderSizeTest, DepthCostsNoDescriptors) {
  constexpr int kDepth = 3000;
  const test::DeepFolders deep(folder_.path(), kDepth, [](int descriptor) {
    mkdirat(descriptor, "side", 0755);  // still to be walked on the way up, or not, as it comes
    const int made = openat(descriptor, "side/file", O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_EQ(ftruncate(made, 7), 0);
    close(made);
  });
  rlimit before;
  getrlimit(RLIMIT_NOFILE, &before);
  const auto opened = fs::directory_iterator("/proc/self/fd");
  const auto inUse = static_cast<rlim_t>(std::distance(begin(opened), end(opened)));
  const rlimit lowered{inUse + 128, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &lowered), 0);
  const FolderSize found = measure(folder_.path());
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(found.dataSize, 7U * kDepth);
  EXPECT_EQ(found.folders, 2U * kDepth);
  EXPECT_EQ(found.skippedFolders, 0U);
}

// The host's catalog, with a moment to step in: before the folder of one name is opened.
class InterruptedFolder : public Catalog::Folder {
 public:
  InterruptedFolder(std::unique_ptr<Folder> folder, std::string name, std::function<void()> act)
      : folder_(std::move(folder)), name_(std::move(name)), act_(std::move(act)) {}

  bool read(CatalogBatch& batch, std::size_t maximum) override {
    return folder_->read(batch, maximum);
  }
  void information(std::span<CatalogItem> items) override { folder_->information(items); }
  std::unique_ptr<Folder> open(std::string_view name, int& error) override {
    if (name == name_) act_();
    return wrapped(folder_->open(name, error));
  }
  std::unique_ptr<Folder> openParent(std::uint64_t device, std::uint64_t inode,
                                     int& error) override {
    return wrapped(folder_->openParent(device, inode, error));
  }
  int error() const override { return folder_->error(); }
  CatalogItem self() const override { return folder_->self(); }

 private:
  std::unique_ptr<Folder> wrapped(std::unique_ptr<Folder> folder) const {
    if (!folder) return nullptr;
    return std::make_unique<InterruptedFolder>(std::move(folder), name_, act_);
  }

  std::unique_ptr<Folder> folder_;
  std::string name_;
  std::function<void()> act_;
};

class MovedFolderTest : public FolderSizeTest {
 protected:
  static constexpr int kDepth = 40;

  // …/0/1/2/…/39, and beside each of them five folders with a file of one byte.
  void SetUp() override {
    std::string path = folder_ / "tree";
    for (int i = 0; i < kDepth; ++i) {
      paths_.push_back(path);
      for (const char* name : {"a", "b", "c", "x", "y"}) {
        fs::create_directories(path + "/" + name);
        std::ofstream(path + "/" + name + "/file") << "1";
      }
      path += "/" + std::to_string(i);
    }
    fs::create_directory(path);
  }

  FolderSize measureWith(const std::function<void()>& act) {
    int error = 0;
    bool done = false;
    InterruptedFolder folder(host_.host().catalog->open(paths_[0], error),
                             std::to_string(kDepth - 1), [&] {
                               if (!std::exchange(done, true)) act();
                             });
    const FolderSize size = folderSize(folder);
    EXPECT_TRUE(done);
    return size;
  }

  std::vector<std::string> paths_;  // of the chain's folders
};

TEST_F(MovedFolderTest, AWalkGoesOnAboveAFolderThatWasMovedAway) {
  const FolderSize size = measureWith([&] { fs::rename(paths_[20], folder_ / "elsewhere"); });
  EXPECT_EQ(size.dataSize, 5U * kDepth);
  EXPECT_EQ(size.skippedFolders, 0U);
}

TEST_F(MovedFolderTest, WhatCannotBeReachedAnyMoreIsSkippedAndSaid) {
  const FolderSize size = measureWith([&] {
    fs::rename(paths_[20], folder_ / "elsewhere");
    fs::rename(paths_[10], folder_ / "also");
    fs::create_directory(paths_[10]);  // another folder under the name
  });
  EXPECT_EQ(size.dataSize + size.skippedFolders, 5U * kDepth);
  EXPECT_GT(size.skippedFolders, 0U);
  EXPECT_LE(size.skippedFolders, 50U);
}

TEST_F(FolderSizeTest, WhatIsNoFileOrFolderNeitherWaitsNorCounts) {
  folder_.file("file", "12345");
  ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  folder_.link("loop", ".");
  folder_.link("self", "self");
  const FolderSize size = measure(folder_.path());
  EXPECT_EQ(size.dataSize, 5U + 1 + 4);
  EXPECT_EQ(size.files, 4U);
  EXPECT_EQ(size.folders, 0U);
}

TEST_F(FolderSizeTest, MountsAreNotCrossed) {
  if (geteuid() != 0) GTEST_SKIP() << "because mounting takes an administrator";
  folder_.file("inner/file", "123");
  folder_.file("bound", "1234567");
  const std::string mounted = folder_.folder("inner/mounted");
  bool canMount = false;
  // The mounts are the thread's own and go with it.
  std::thread([&] {
    canMount = unshare(CLONE_NEWNS) == 0 &&
               mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount("none", mounted.c_str(), "tmpfs", 0, nullptr) == 0;
    if (!canMount) return;
    std::ofstream(mounted + "/other") << "not ours";
    const FolderSize size = measure(folder_ / "inner");
    EXPECT_EQ(size.dataSize, 3U);
    EXPECT_EQ(size.skippedFolders, 1U);
    EXPECT_EQ(measure(mounted).dataSize, 8U);  // asked for itself, it is walked
    umount(mounted.c_str());
    // A folder of the same file system that is mounted there is another mount all the same.
    const std::string source = folder_.path() + "/source";
    fs::create_directory(source);
    std::ofstream(source + "/again") << "12";
    ASSERT_EQ(mount(source.c_str(), mounted.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(measure(folder_ / "inner").dataSize, 3U);
    umount(mounted.c_str());
  }).join();
  if (!canMount) GTEST_SKIP() << "because this machine does not let mounts be made";
}

TEST_F(FolderSizeTest, UnreadableFoldersAreSkippedAndTheRestCounts) {
  folder_.file("open/file", "123");
  folder_.file("closed/file", "12345");
  chmod((folder_ / "closed").c_str(), 0000);
  chmod(folder_.path().c_str(), 0755);
  std::thread([&] {
    // By the system call, so that only this thread becomes somebody else.
    ASSERT_TRUE(geteuid() != 0 || syscall(SYS_setresuid, -1, 65534, -1) == 0);
    const FolderSize size = measure(folder_.path());
    EXPECT_EQ(size.dataSize, 3U);
    EXPECT_EQ(size.skippedFolders, 1U);
  }).join();
  chmod((folder_ / "closed").c_str(), 0755);
}

TEST_F(FolderSizeTest, CancellingEndsTheWalkOfAllWorkers) {
  for (int i = 0; i < 400; ++i) {
    for (int j = 0; j < 20; ++j)
      folder_.file(std::to_string(i) + "/" + std::to_string(j), "1");
  }
  std::atomic<bool> cancel = true;
  EXPECT_TRUE(measure(folder_.path(), &cancel).isCancelled);
  for (int round = 0; round < 20; ++round) {
    cancel = false;
    std::thread canceller([&] {
      std::this_thread::sleep_for(std::chrono::microseconds(200 * round));
      cancel = true;
    });
    const FolderSize size = measure(folder_.path(), &cancel);
    canceller.join();
    EXPECT_LE(size.dataSize, 8000U);
    EXPECT_TRUE(size.isCancelled || size.dataSize == 8000U);
  }
  Dispatch::waitForBackground();
}

TEST_F(FolderSizeTest, TreesThatChangeUnderTheWalkNeitherEndNorHangIt) {
  for (int i = 0; i < 200; ++i) {
    for (int j = 0; j < 20; ++j) {
      folder_.file(
          "tree/" + std::to_string(i % 5) + "/" + std::to_string(i) + "/" + std::to_string(j), "1");
    }
  }
  std::atomic<bool> stop = false;
  std::thread disturber([&] {
    std::error_code ignored;
    for (int i = 0; !stop; i = (i + 1) % 200) {
      const std::string name = "tree/" + std::to_string(i % 5) + "/" + std::to_string(i);
      fs::rename(folder_ / name, folder_ / "away", ignored);
      fs::remove(folder_ / ("away/" + std::to_string(i % 20)), ignored);
      fs::rename(folder_ / "away", folder_ / name, ignored);
    }
  });
  for (int round = 0; round < 50; ++round) {
    const FolderSize size = measure(folder_ / "tree");
    EXPECT_LE(size.dataSize, 4000U);
    EXPECT_GT(size.dataSize, 0U);
  }
  stop = true;
  disturber.join();
}

TEST_F(FolderSizeTest, ManyWalksAtATimeShareTheWorkers) {
  for (int i = 0; i < 300; ++i) {
    for (int j = 0; j < 10; ++j)
      folder_.file(std::to_string(i) + "/" + std::to_string(j), "123");
  }
  std::atomic<int> right = 0;
  Dispatch::apply(40, [&](std::size_t) {
    if (measure(folder_.path()).dataSize == 9000) ++right;
  });
  EXPECT_EQ(right, 40);
}

}  // namespace
}  // namespace brisko
