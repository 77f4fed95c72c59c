#pragma once

#include "Workspace.h"

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace brisko::test {

/// A session that the test writes down: volumes, applications, and what was asked to be opened.
struct FakeWorkspace : Workspace {
  std::vector<LaunchedApplication> applications;
  std::vector<MountedVolume> volumes;
  std::vector<std::string> opened;
  std::vector<std::string> revealed;
  bool opens = true;
  std::map<int, Observer> observers;

  /// Adds a volume and tells the observers, on the caller.
  void mount(const MountedVolume& volume) {
    volumes.push_back(volume);
    for (const auto& [token, observer] : observers)
      observer(volume, true);
  }

  std::map<std::string, std::string> names;  ///< by path
  std::set<int> ended;                       ///< processes that are gone though they are listed

  /// Writes to `applications` while a model may be reading them.
  void setApplications(std::vector<LaunchedApplication> now) {
    const std::lock_guard lock(applicationsMutex);
    applications = std::move(now);
  }
  std::mutex applicationsMutex;

  std::vector<LaunchedApplication> launchedApplications() override {
    const std::lock_guard lock(applicationsMutex);
    return applications;
  }
  std::uint64_t processBeginning(int process) override { return ended.contains(process) ? 0 : 1; }
  std::vector<MountedVolume> mountedVolumes() override { return volumes; }
  int observeVolumes(Observer observer) override {
    const int token = observers.empty() ? 1 : observers.rbegin()->first + 1;
    observers.emplace(token, std::move(observer));
    return token;
  }
  void stopObserving(int token) override { observers.erase(token); }
  std::string iconName(const std::string&) override { return "unknown"; }
  std::string displayName(const std::string& path) override {
    const auto found = names.find(path);
    return found == names.end() ? "" : found->second;
  }
  bool openAddress(const std::string& address) override {
    opened.push_back(address);
    return opens;
  }
  bool reveal(const std::string& path) override {
    revealed.push_back(path);
    return true;
  }
};

}  // namespace brisko::test
