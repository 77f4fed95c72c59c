#include "Dispatch.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace brisko {
namespace {

struct MainQueue {
  std::mutex mutex;
  std::condition_variable filled;
  std::deque<Dispatch::Block> blocks;
  Dispatch::Block wake;
  std::atomic<std::thread::id> thread{};
};

MainQueue& mainQueue() {
  // Never destroyed: workers may still post while the process ends.
  static auto* queue = new MainQueue;
  return *queue;
}

class WorkerPool {
 public:
  void add(Dispatch::Block block) {
    std::lock_guard lock(mutex_);
    blocks_.push_back(std::move(block));
    if (idle_ < blocks_.size() && threads_ < kMaximumThreads) {
      ++threads_;
      std::thread([this] { work(); }).detach();
    } else {
      filled_.notify_one();
    }
  }

  void waitUntilIdle() {
    std::unique_lock lock(mutex_);
    drained_.wait(lock, [this] { return blocks_.empty() && running_ == 0; });
  }

 private:
  static constexpr std::size_t kMaximumThreads = 24;
  static constexpr std::chrono::seconds kIdleLife{5};

  void work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      ++idle_;
      const bool filled = filled_.wait_for(lock, kIdleLife, [this] { return !blocks_.empty(); });
      --idle_;
      if (!filled) break;
      runFront(lock);
    }
    --threads_;
  }

  void runFront(std::unique_lock<std::mutex>& lock) {
    Dispatch::Block block = std::move(blocks_.front());
    blocks_.pop_front();
    ++running_;
    lock.unlock();
    block();
    block = nullptr;  // what it captured goes before the pool counts as idle
    lock.lock();
    if (--running_ == 0 && blocks_.empty()) drained_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable filled_;
  std::condition_variable drained_;
  std::deque<Dispatch::Block> blocks_;
  std::size_t threads_ = 0;
  std::size_t idle_ = 0;
  std::size_t running_ = 0;
};

WorkerPool& workerPool() {
  static auto* pool = new WorkerPool;
  return *pool;
}

// What the participants of one apply() share. Helpers that start after the last index was taken
// find nothing to do, so the caller waits only for indices in flight, never for a place in the
// pool.
struct Application {
  const std::function<void(std::size_t)>* block = nullptr;
  std::size_t count = 0;
  std::atomic<std::size_t> next{0};
  std::size_t ended = 0;
  std::mutex mutex;
  std::condition_variable finished;

  void takePart() {
    std::size_t done = 0;
    for (std::size_t i = next++; i < count; i = next++) {
      (*block)(i);
      ++done;
    }
    if (done == 0) return;
    std::lock_guard lock(mutex);
    ended += done;
    if (ended == count) finished.notify_all();
  }
};

}  // namespace

void Dispatch::mainAsync(Block block) {
  MainQueue& queue = mainQueue();
  Block wake;
  {
    std::lock_guard lock(queue.mutex);
    if (queue.blocks.empty()) wake = queue.wake;
    queue.blocks.push_back(std::move(block));
  }
  queue.filled.notify_all();
  if (wake) wake();
}

void Dispatch::mainSync(const Block& block) {
  if (isMainThread()) {
    block();
    return;
  }
  struct Meeting {
    std::mutex mutex;
    std::condition_variable ended;
    bool done = false;
  };
  auto meeting = std::make_shared<Meeting>();
  mainAsync([meeting, &block] {
    block();
    std::lock_guard lock(meeting->mutex);
    meeting->done = true;
    meeting->ended.notify_all();
  });
  std::unique_lock lock(meeting->mutex);
  meeting->ended.wait(lock, [&] { return meeting->done; });
}

void Dispatch::global(Block block) {
  workerPool().add(std::move(block));
}

void Dispatch::apply(std::size_t count, const std::function<void(std::size_t)>& block) {
  if (count == 0) return;
  auto work = std::make_shared<Application>();
  work->block = &block;
  work->count = count;
  const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
  const std::size_t helpers = std::min(count, processors) - 1;
  for (std::size_t i = 0; i < helpers; ++i) {
    global([work] { work->takePart(); });
  }
  work->takePart();
  std::unique_lock lock(work->mutex);
  work->finished.wait(lock, [&] { return work->ended == work->count; });
}

void Dispatch::attachMainThread() {
  mainQueue().thread = std::this_thread::get_id();
}

bool Dispatch::isMainThread() {
  return mainQueue().thread == std::this_thread::get_id();
}

void Dispatch::setWake(Block wake) {
  MainQueue& queue = mainQueue();
  std::lock_guard lock(queue.mutex);
  queue.wake = std::move(wake);
}

std::size_t Dispatch::runPending() {
  MainQueue& queue = mainQueue();
  std::deque<Block> now;
  {
    std::lock_guard lock(queue.mutex);
    now.swap(queue.blocks);
  }
  for (Block& block : now) {
    block();
    block = nullptr;
  }
  return now.size();
}

bool Dispatch::runPendingFor(std::chrono::microseconds budget) {
  MainQueue& queue = mainQueue();
  const auto end = std::chrono::steady_clock::now() + budget;
  for (;;) {
    Block block;
    {
      std::lock_guard lock(queue.mutex);
      if (queue.blocks.empty()) return false;
      block = std::move(queue.blocks.front());
      queue.blocks.pop_front();
    }
    block();
    block = nullptr;
    if (std::chrono::steady_clock::now() >= end) break;
  }
  std::lock_guard lock(queue.mutex);
  return !queue.blocks.empty();
}

void Dispatch::runUntil(const std::function<bool()>& done, std::chrono::milliseconds poll) {
  MainQueue& queue = mainQueue();
  while (!done()) {
    Block block;
    {
      std::unique_lock lock(queue.mutex);
      queue.filled.wait_for(lock, poll, [&] { return !queue.blocks.empty(); });
      if (queue.blocks.empty()) continue;
      block = std::move(queue.blocks.front());
      queue.blocks.pop_front();
    }
    block();
  }
}

void Dispatch::waitForBackground() {
  workerPool().waitUntilIdle();
}

}  // namespace brisko
