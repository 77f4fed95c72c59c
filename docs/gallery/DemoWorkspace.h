#pragma once

#include "Workspace.h"

namespace brisko::test {

/// A session whose volumes are the ones that a test or a picture needs.
struct DemoWorkspace : Workspace {
  std::vector<MountedVolume> volumes;
  std::vector<std::string> opened;  ///< addresses that were asked for
  Observer observer;

  std::vector<LaunchedApplication> launchedApplications() override { return {}; }
  std::vector<MountedVolume> mountedVolumes() override { return volumes; }
  int observeVolumes(Observer given) override {
    observer = std::move(given);
    return 1;
  }
  void stopObserving(int) override {}
  std::string iconName(const std::string&) override { return "folder"; }
  bool openAddress(const std::string& address) override {
    opened.push_back(address);
    return true;
  }
};

inline MountedVolume demoVolume(const char* name, const char* root, MountedVolume::Place place,
                                std::uint64_t total, std::uint64_t free) {
  MountedVolume volume;
  volume.name = name;
  volume.root = root;
  volume.place = place;
  volume.totalBytes = total;
  volume.freeBytes = free;
  return volume;
}

}  // namespace brisko::test
