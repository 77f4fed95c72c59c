#pragma once

#include "DesktopEntry.h"
#include "FlatpakApplications.h"
#include "InstalledApplications.h"

#include <string>
#include <vector>

namespace brisko {

class HostFolders;

/// The applications that these entries stand for, each with its package manager's facts; entries
/// that belong to none are left out. By name.
std::vector<InstalledApplication> listedApplications(
    std::vector<DesktopEntry> entries, const HostFolders& folders,
    const std::vector<FlatpakInstallation>& flatpaks);

}  // namespace brisko
