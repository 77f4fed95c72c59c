#include "Dispatch.h"
#include "LinuxVolumeWatch.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <sys/mount.h>
#include <unistd.h>

namespace brisko {
namespace {

using Notice = std::pair<std::string, bool>;

void waitFor(const std::vector<Notice>& notices, std::size_t count) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  Dispatch::runUntil(
      [&] { return notices.size() >= count || std::chrono::steady_clock::now() > end; });
}

// A real file system in a file of the test's own, on a loop device that goes with the mount.
class LoopMount {
 public:
  explicit LoopMount(const test::TemporaryFolder& folder) : point_(folder.folder("volume")) {
    const std::string image = folder.sizedFile("image", 8 << 20);
    made_ = run("mkfs.ext4 -q -F '" + image + "'") &&
            run("mount -o loop '" + image + "' '" + point_ + "'");
  }
  ~LoopMount() { unmount(); }
  LoopMount(const LoopMount&) = delete;
  LoopMount& operator=(const LoopMount&) = delete;

  bool isMade() const { return made_; }
  const std::string& point() const { return point_; }
  void unmount() {
    if (std::exchange(made_, false)) umount2(point_.c_str(), MNT_DETACH);
  }

 private:
  static bool run(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
  }
  std::string point_;
  bool made_ = false;
};

TEST(LinuxVolumeWatch, MountAndUnmountOfARealVolumeAreTold) {
  test::TemporaryFolder folder;
  std::vector<Notice> notices;
  LinuxVolumeWatch watch;
  const int token = watch.observe([&](const MountedVolume& volume, bool mounted) {
    if (volume.root.starts_with(folder.path())) notices.emplace_back(volume.root, mounted);
  });
  LoopMount mount(folder);
  if (!mount.isMade()) GTEST_SKIP() << "because this machine cannot mount a loop device";
  waitFor(notices, 1);
  mount.unmount();
  waitFor(notices, 2);
  EXPECT_EQ(notices, (std::vector<Notice>{{mount.point(), true}, {mount.point(), false}}));
  watch.stopObserving(token);
}

TEST(LinuxVolumeWatch, AnObserverThatWasTakenOutIsNotCalledAnyMore) {
  test::TemporaryFolder folder;
  LinuxVolumeWatch watch;
  int staying = 0;
  int leaving = 0;
  const int first = watch.observe([&](const MountedVolume&, bool) { ++leaving; });
  const int second = watch.observe([&](const MountedVolume&, bool) { ++staying; });
  watch.stopObserving(first);
  LoopMount mount(folder);
  if (!mount.isMade()) GTEST_SKIP() << "because this machine cannot mount a loop device";
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  Dispatch::runUntil([&] { return staying > 0 || std::chrono::steady_clock::now() > end; });
  EXPECT_GT(staying, 0);
  EXPECT_EQ(leaving, 0);
  watch.stopObserving(second);
}

}  // namespace
}  // namespace brisko
