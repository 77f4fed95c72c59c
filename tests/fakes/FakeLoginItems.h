#pragma once

#include "LoginItems.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace brisko::test {

/// A store that the test writes down: entries, and what they resolve to.
struct FakeLoginItems : LoginItems {
  std::vector<LoginItem> entries;
  std::map<std::string, std::string> targets;  ///< by identifier; none for an unresolvable entry
  int status = noErr;                          ///< what every operation answers
  int snapshots = 0;
  Observer observer;

  void add(const std::string& identifier, const std::string& target, bool isHidden = false) {
    const std::lock_guard lock(mutex_);
    entries.push_back({identifier, isHidden});
    if (!target.empty()) targets[identifier] = target;
  }
  std::vector<std::string> identifiers() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> all;
    for (const LoginItem& entry : entries)
      all.push_back(entry.identifier);
    return all;
  }

  int snapshot(std::vector<LoginItem>& items) override {
    const std::lock_guard lock(mutex_);
    ++snapshots;
    if (status == noErr) items = entries;
    return status;
  }
  std::optional<std::string> resolve(const LoginItem& item) override {
    const std::lock_guard lock(mutex_);
    const auto found = targets.find(item.identifier);
    return found == targets.end() ? std::nullopt : std::optional(found->second);
  }
  int insertLast(const std::string& path, bool isHidden) override {
    const std::lock_guard lock(mutex_);
    if (status == noErr) add("added:" + path, path, isHidden);
    return status;
  }
  int setHidden(const LoginItem& item, bool isHidden) override {
    const std::lock_guard lock(mutex_);
    for (LoginItem& entry : entries) {
      if (entry.identifier == item.identifier && status == noErr) entry.isHidden = isHidden;
    }
    return status;
  }
  int remove(const LoginItem& item) override {
    const std::lock_guard lock(mutex_);
    if (status == noErr) {
      std::erase_if(entries, [&](const auto& e) { return e.identifier == item.identifier; });
    }
    return status;
  }
  std::vector<SwitchedLoginItem> switchedItems() override { return {}; }
  int setSwitched(const SwitchedLoginItem&, bool) override { return status; }
  int observe(Observer each) override {
    observer = std::move(each);
    return 1;
  }
  void stopObserving(int) override { observer = nullptr; }

 private:
  mutable std::recursive_mutex mutex_;  ///< a model reads in the background what a test writes
};

}  // namespace brisko::test
