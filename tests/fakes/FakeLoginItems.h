#pragma once

#include "LoginItems.h"

#include <algorithm>
#include <map>
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
    entries.push_back({identifier, isHidden});
    if (!target.empty()) targets[identifier] = target;
  }
  std::vector<std::string> identifiers() const {
    std::vector<std::string> all;
    for (const LoginItem& entry : entries)
      all.push_back(entry.identifier);
    return all;
  }

  int snapshot(std::vector<LoginItem>& items) override {
    ++snapshots;
    if (status == noErr) items = entries;
    return status;
  }
  std::optional<std::string> resolve(const LoginItem& item) override {
    const auto found = targets.find(item.identifier);
    return found == targets.end() ? std::nullopt : std::optional(found->second);
  }
  int insertLast(const std::string& path, bool isHidden) override {
    if (status == noErr) add("added:" + path, path, isHidden);
    return status;
  }
  int setHidden(const LoginItem& item, bool isHidden) override {
    for (LoginItem& entry : entries) {
      if (entry.identifier == item.identifier && status == noErr) entry.isHidden = isHidden;
    }
    return status;
  }
  int remove(const LoginItem& item) override {
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
};

}  // namespace brisko::test
