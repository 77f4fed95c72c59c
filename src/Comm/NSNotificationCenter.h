#pragma once

#include <any>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace brisko {

/// What is told about, by whom, and what goes with it.
struct NSNotification {
  std::string name;
  std::string object;            ///< a text that the notice is about; often empty
  const void* sender = nullptr;  ///< who posted it; only to be compared
  std::any userInfo;             ///< what the poster of this name puts in
};

/// Notices by name, inside this process. A post calls every observer of that name before it
/// returns, on the thread that posts; by custom that is the main thread.
class NSNotificationCenter {
 public:
  using Block = std::function<void(const NSNotification& notification)>;

  static NSNotificationCenter& defaultCenter();

  /// Calls `block` for each post of `name` from now on; the token ends that.
  int addObserver(std::string name, Block block);
  void removeObserver(int token);

  void postNotification(const NSNotification& notification);

 private:
  struct Entry {
    std::string name;
    Block block;
  };
  std::mutex mutex_;
  std::map<int, Entry> observers_;
  int nextToken_ = 1;
};

}  // namespace brisko
