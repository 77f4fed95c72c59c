#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

namespace brisko {

/// One main queue and one pool of background workers.
///
/// Blocks on the main queue run one after the other, in the order they came, on the main thread:
/// the thread that first called `attachMainThread`. Who runs them differs by face: the window asks
/// to be woken and calls `runPending` from its event loop; the terminal waits in `runUntil`; a test
/// steps the queue by hand with `runPending`.
///
/// Blocks on the pool run in any order. The pool starts a thread when a block finds none idle, up
/// to a fixed number well above the processors, because a scan may wait for blocks of its own.
class Dispatch {
 public:
  using Block = std::function<void()>;

  /// Queues `block` for the main thread and returns at once.
  static void mainAsync(Block block);

  /// Runs `block` on the main thread and returns when it has run. On the main thread itself it runs
  /// at once, before anything queued.
  static void mainSync(const Block& block);

  /// Queues `block` for a background worker and returns at once.
  static void global(Block block);

  /// Calls `block(0)` … `block(count - 1)`, each once, on the caller and on idle workers, and
  /// returns when all have ended. The caller always takes part, so it never waits for a busy pool.
  static void apply(std::size_t count, const std::function<void(std::size_t)>& block);

  /// Makes the calling thread the main thread.
  static void attachMainThread();
  static bool isMainThread();

  /// Called (from any thread) whenever the main queue goes from empty to not empty. One owner.
  static void setWake(Block wake);

  /// Runs what is on the main queue now, and nothing that is queued meanwhile; returns how many
  /// blocks ran.
  static std::size_t runPending();

  /// Runs main-queue blocks, one at a time, until the queue is empty or `budget` is used up
  /// (checked after each block, so at least one runs). True when blocks are left. For an event loop
  /// that has input and frames to see to between two slices; a block may run such a loop itself.
  static bool runPendingFor(std::chrono::microseconds budget);

  /// Runs main-queue blocks until `done` answers true, which is asked after each block and at least
  /// every `poll`.
  static void runUntil(const std::function<bool()>& done,
                       std::chrono::milliseconds poll = std::chrono::milliseconds(50));

  /// Waits until no background block is queued or running. Blocks queued by those are waited for
  /// too.
  static void waitForBackground();
};

}  // namespace brisko
