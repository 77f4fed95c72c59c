#pragma once

#include "Workspace.h"

#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// The applications of the calling user that the session manager has put into scopes or services of
/// their own ("app-…"), one row each, by the lowest process number. Reads `proc` ("/proc").
std::vector<LaunchedApplication> linuxLaunchedApplications(const std::string& proc = "/proc");

/// The desktop-entry id in the name of an application's unit, as the desktop-environment rules of
/// the service manager build it: "app[-LAUNCHER]-ID-RANDOM.scope",
/// "app[-LAUNCHER]-ID@RANDOM.service" or "app-ID.service", with special characters of the id
/// escaped. Empty for any other unit.
std::string applicationIdOfUnit(std::string_view unit);

}  // namespace brisko
