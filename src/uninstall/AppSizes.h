#pragma once

#include "AMAppItem.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace brisko {

/// Measures items in the background, each once, a few at a time, and writes their sizes on the main
/// thread, in batches. Belongs to the main thread; what is not measured when it goes never is.
class AppSizes {
 public:
  /// Told of items that have their size now.
  using Done = std::function<void(const AppItems& items)>;

  explicit AppSizes(Done done);
  ~AppSizes();
  AppSizes(const AppSizes&) = delete;
  AppSizes& operator=(const AppSizes&) = delete;

  /// Marks the item as asked for and has it measured; nothing for one that was asked for already.
  /// What is in sight goes first, the rest waits behind everything else.
  void ask(const AppItem& item, bool isInSight = true);

  /// How many were asked for and are not measured yet.
  std::size_t pending() const { return pending_; }

 private:
  struct Queue;
  void take();

  Done done_;
  std::shared_ptr<Queue> queue_;
  std::size_t pending_ = 0;
};

}  // namespace brisko
