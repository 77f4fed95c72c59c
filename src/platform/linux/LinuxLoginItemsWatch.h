#pragma once

#include "FileDescriptor.h"
#include "LoginItems.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace brisko {

/// Tells when something in a few folders changes, those that do not exist yet included. Changes
/// that come together are told once.
class LinuxLoginItemsWatch {
 public:
  explicit LinuxLoginItemsWatch(std::vector<std::string> folders) : folders_(std::move(folders)) {}
  ~LinuxLoginItemsWatch();

  int observe(LoginItems::Observer observer);
  void stopObserving(int token);

 private:
  struct Observers {
    std::mutex mutex;
    std::map<int, LoginItems::Observer> byToken;
  };

  void start();
  void stop();
  void watchFolders(int notifier) const;
  void watch(int notifier, int ended);
  static void tell(const std::shared_ptr<Observers>& observers);

  std::vector<std::string> folders_;
  std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
  int nextToken_ = 1;
  FileDescriptor stop_;
  std::thread thread_;
};

}  // namespace brisko
