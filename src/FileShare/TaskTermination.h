#pragma once

#include <functional>

namespace brisko {

/// The notice that a child process has ended. It says nothing of which one: whoever observes it is
/// told of all that are posted here. Main thread only.
class TaskTermination {
 public:
  using Observer = std::function<void()>;

  /// Returns what `stopObserving` takes.
  static int observe(Observer observer);
  static void stopObserving(int token);
  static void post();
};

}  // namespace brisko
