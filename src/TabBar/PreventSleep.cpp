#include "PreventSleep.h"

#include "CommUti.h"
#include "Host.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <ctime>
#include <memory>
#include <mutex>
#include <thread>

namespace brisko {
namespace {

/// The last version without power assertions.
constexpr int kLastWithTimer = 1007;

/// Well below the shortest idle time that a system can be set to, one minute.
constexpr std::chrono::seconds kInterval{30};

/// Calls back at once and then again and again, on a thread of its own.
class ActivityTimer {
 public:
  ActivityTimer() : thread_([this] { run(); }) {}
  ~ActivityTimer() {
    {
      const std::lock_guard lock(mutex_);
      isOver_ = true;
    }
    changed_.notify_all();
    thread_.join();
  }
  ActivityTimer(const ActivityTimer&) = delete;
  ActivityTimer& operator=(const ActivityTimer&) = delete;

 private:
  void run() {
    std::unique_lock lock(mutex_);
    while (!isOver_) {
      lock.unlock();
      MyTimerCallback();
      lock.lock();
      changed_.wait_for(lock, kInterval, [this] { return isOver_; });
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isOver_ = false;
  std::thread thread_;
};

std::mutex mutex;
PowerAssertion::Identifier assertion = PowerAssertion::kNoIdentifier;
std::unique_ptr<ActivityTimer> timer;

}  // namespace

std::string PreventSleep() {
  const std::lock_guard lock(mutex);
  if (assertion != PowerAssertion::kNoIdentifier || timer) return {};
  if (CommUti::getSystemVersion() <= kLastWithTimer) {
    timer = std::make_unique<ActivityTimer>();
    return {};
  }
  const auto made = Host::current().powerAssertion->create(
      PowerAssertion::kNoDisplaySleep, PowerAssertion::kLevelOn, "The machine is to stay awake");
  assertion = made.identifier;
  return made.reason;
}

void ReleasePreventObj() {
  const std::lock_guard lock(mutex);
  timer.reset();
  if (assertion != PowerAssertion::kNoIdentifier)
    Host::current().powerAssertion->release(assertion);
  assertion = PowerAssertion::kNoIdentifier;
}

bool isSleepPrevented() {
  const std::lock_guard lock(mutex);
  return assertion != PowerAssertion::kNoIdentifier || timer != nullptr;
}

void MyTimerCallback() {
  Host::current().powerAssertion->updateSystemActivity();
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  std::printf("%02d:%02d:%02d ", parts.tm_hour, parts.tm_min, parts.tm_sec);
  std::fflush(stdout);
}

}  // namespace brisko
