#include "NSNotificationCenter.h"

#include <utility>
#include <vector>

namespace brisko {

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  // Never destroyed: observers take themselves out until the very last.
  static auto* center = new NSNotificationCenter;
  return *center;
}

int NSNotificationCenter::addObserver(std::string name, Block block) {
  const std::lock_guard lock(mutex_);
  observers_.emplace(nextToken_, Entry{std::move(name), std::move(block)});
  return nextToken_++;
}

void NSNotificationCenter::removeObserver(int token) {
  const std::lock_guard lock(mutex_);
  observers_.erase(token);
}

void NSNotificationCenter::postNotification(const NSNotification& notification) {
  std::vector<int> tokens;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [token, entry] : observers_) {
      if (entry.name == notification.name) tokens.push_back(token);
    }
  }
  // One by one and without the lock, because an observer may add or remove observers.
  for (const int token : tokens) {
    Block block;
    {
      const std::lock_guard lock(mutex_);
      const auto found = observers_.find(token);
      if (found != observers_.end()) block = found->second.block;
    }
    if (block) block(notification);
  }
}

}  // namespace brisko
