#include "Dispatch.h"
#include "LinuxVolumeWatch.h"
#include "LoopDisk.h"
#include "ObserverList.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <sys/mount.h>

namespace brisko {
namespace {

using Notice = std::pair<std::string, bool>;

void waitFor(const std::vector<Notice>& notices, std::size_t count) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  Dispatch::runUntil(
      [&] { return notices.size() >= count || std::chrono::steady_clock::now() > end; });
}

TEST(LinuxVolumeWatch, MountAndUnmountOfARealVolumeAreTold) {
  test::TemporaryFolder folder;
  std::vector<Notice> notices;
  LinuxVolumeWatch watch;
  const int token = watch.observe([&](const MountedVolume& volume, bool mounted) {
    if (volume.root.starts_with(folder.path())) notices.emplace_back(volume.root, mounted);
  });
  const test::LoopDisk disk(folder / "image", 8);
  const std::string point = folder.folder("volume");
  if (!disk.isAttached() || !test::runs("mkfs.ext4 -q " + disk.node()) ||
      mount(disk.node().c_str(), point.c_str(), "ext4", 0, nullptr) != 0) {
    GTEST_SKIP() << "because this machine cannot mount a loop device";
  }
  waitFor(notices, 1);
  umount2(point.c_str(), MNT_DETACH);
  waitFor(notices, 2);
  EXPECT_EQ(notices, (std::vector<Notice>{{point, true}, {point, false}}));
  watch.stopObserving(token);
}

TEST(ObserverList, WhoeverWasTakenOutIsNotCalledAnyMore) {
  auto list = std::make_unique<ObserverList<std::function<void(int)>>>();
  std::vector<std::string> calls;
  const auto noting = [&](const char* who) {
    return [&calls, who](int what) { calls.push_back(who + std::to_string(what)); };
  };
  int second = 0;
  list->add([&](int) { list->remove(second); });
  second = list->add(noting("second "));
  const int third = list->add(noting("third "));
  list->tell(1);
  list->add(noting("late "));
  Dispatch::runPending();
  EXPECT_EQ(calls, std::vector<std::string>{"third 1"});
  EXPECT_TRUE(list->remove(third));
  EXPECT_FALSE(list->remove(third));
  list->tell(2);
  list.reset();
  Dispatch::runPending();
  EXPECT_EQ(calls.size(), 1U) << "nor does anyone once the list is gone";
}

}  // namespace
}  // namespace brisko
