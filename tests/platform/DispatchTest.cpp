#include "Dispatch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace brisko {
namespace {

TEST(Dispatch, MainQueueKeepsItsOrderAndLeavesWhatIsQueuedMeanwhile) {
  std::vector<int> order;
  Dispatch::mainAsync([&] {
    order.push_back(1);
    Dispatch::mainAsync([&] { order.push_back(3); });
  });
  Dispatch::mainAsync([&] { order.push_back(2); });
  EXPECT_EQ(Dispatch::runPending(), 2U);
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
  Dispatch::runPending();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(Dispatch, MainSyncFromAWorkerWaitsAndOnTheMainThreadRunsAtOnce) {
  bool ranAtOnce = false;
  Dispatch::mainSync([&] { ranAtOnce = Dispatch::isMainThread(); });
  EXPECT_TRUE(ranAtOnce);

  std::atomic<bool> ended = false;
  bool onMain = false;
  Dispatch::global([&] {
    Dispatch::mainSync([&] { onMain = Dispatch::isMainThread(); });
    ended = true;
  });
  Dispatch::runUntil([&] { return ended.load(); });
  EXPECT_TRUE(onMain);
}

TEST(Dispatch, WakeIsAskedForOncePerFilling) {
  std::atomic<int> wakes = 0;
  Dispatch::setWake([&] { ++wakes; });
  Dispatch::mainAsync([] {});
  Dispatch::mainAsync([] {});
  EXPECT_EQ(wakes, 1);
  Dispatch::runPending();
  Dispatch::mainAsync([] {});
  EXPECT_EQ(wakes, 2);
  Dispatch::runPending();
  Dispatch::setWake({});
}

TEST(Dispatch, ApplyRunsEachIndexOnceEvenFromAllWorkersAtATime) {
  std::atomic<int> total = 0;
  std::atomic<int> ended = 0;
  constexpr int kOuter = 40;  // more than the pool has threads
  for (int i = 0; i < kOuter; ++i) {
    Dispatch::global([&] {
      std::vector<std::atomic<int>> hits(100);
      Dispatch::apply(hits.size(), [&](std::size_t index) { ++hits[index]; });
      for (auto& hit : hits)
        total += hit == 1 ? 1 : -1000;
      ++ended;
    });
  }
  Dispatch::waitForBackground();
  EXPECT_EQ(ended, kOuter);
  EXPECT_EQ(total, kOuter * 100);
}

}  // namespace
}  // namespace brisko
