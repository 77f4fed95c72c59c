#pragma once

#include "Workspace.h"

#include <string>
#include <vector>

namespace brisko {

/// What `Workspace::mountedVolumes` promises, from the mount table at `mountInfo`. Sizes come from
/// the mounted file systems, labels from udev, the kind of device from sysfs. A volume that does
/// not answer has sizes of 0. An unreadable table gives no volumes and one log line.
std::vector<MountedVolume> linuxMountedVolumes(
    const std::string& mountInfo = "/proc/self/mountinfo");

}  // namespace brisko
