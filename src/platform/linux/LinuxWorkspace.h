#pragma once

#include "LinuxVolumeWatch.h"
#include "Workspace.h"

namespace brisko {

class LinuxWorkspace : public Workspace {
 public:
  std::vector<LaunchedApplication> launchedApplications() override;
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
};

}  // namespace brisko
