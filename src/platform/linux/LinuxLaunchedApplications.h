#pragma once

#include "DesktopEntry.h"
#include "Workspace.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// The applications of the calling user, one row each, by the process that was there first, in the
/// order of the process numbers. Reads `proc` ("/proc").
///
/// An application is what the session has put into a unit of its own, what runs the program of one
/// of `entries`, or the window of this program itself. One without a displayed entry has no name.
std::vector<LaunchedApplication> linuxLaunchedApplications(
    const std::string& proc = "/proc", const std::vector<DesktopEntry>& entries = {});

/// When the process at `folder` ("/proc/1") began, in clock ticks since the machine started; 0 when
/// it cannot be read or has ended and waits to be noticed.
std::uint64_t linuxProcessBeginning(const std::string& folder);

/// The desktop-entry id in the name of an application's unit, as the desktop-environment rules of
/// the service manager build it: "app[-LAUNCHER]-ID-RANDOM.scope",
/// "app[-LAUNCHER]-ID@RANDOM.service" or "app-ID.service", with special characters of the id
/// escaped; or in that of a snap's scope. Empty for any other unit.
std::string applicationIdOfUnit(std::string_view unit);

}  // namespace brisko
