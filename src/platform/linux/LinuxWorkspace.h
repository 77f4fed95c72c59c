#pragma once

#include "DesktopEntry.h"
#include "LinuxVolumeWatch.h"
#include "Workspace.h"

#include <chrono>
#include <mutex>
#include <vector>

namespace brisko {

class LinuxWorkspace : public Workspace {
 public:
  std::vector<LaunchedApplication> launchedApplications() override;
  std::uint64_t processBeginning(int processIdentifier) override;
  std::vector<MountedVolume> mountedVolumes() override;
  int observeVolumes(Observer observer) override;
  void stopObserving(int token) override;
  std::string iconName(const std::string& path) override;
  std::string displayName(const std::string& path) override;
  std::string iconNameOfKind(const std::string& path, FileKind kind) override;
  bool openAddress(const std::string& address) override;
  bool reveal(const std::string& path) override;

 private:
  LinuxVolumeWatch watch_;
  std::mutex entriesMutex_;
  std::vector<DesktopEntry> entries_;
  std::chrono::steady_clock::time_point entriesRead_;
};

}  // namespace brisko
