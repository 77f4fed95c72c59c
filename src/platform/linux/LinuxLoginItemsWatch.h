#pragma once

#include "DescriptorWatch.h"
#include "LoginItems.h"
#include "ObserverList.h"

#include <mutex>
#include <string>
#include <vector>

namespace brisko {

/// Tells when something in a few folders changes, those that do not exist yet included. Changes
/// that come together are told once.
class LinuxLoginItemsWatch {
 public:
  explicit LinuxLoginItemsWatch(std::vector<std::string> folders) : folders_(std::move(folders)) {}

  int observe(LoginItems::Observer observer);
  void stopObserving(int token);

 private:
  void start();
  void watchFolders(int notifier) const;

  std::vector<std::string> folders_;
  std::mutex running_;  ///< held while the thread is started or ended
  ObserverList<LoginItems::Observer> observers_;
  DescriptorWatch watch_;  ///< last: it ends before what it uses goes
};

}  // namespace brisko
