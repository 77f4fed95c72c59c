#pragma once

#include "DesktopEntry.h"

#include <string>
#include <vector>

namespace brisko {

class HostFolders;

/// The folders that hold desktop entries, the one that takes precedence first: the user's own, the
/// system's ones (XDG_DATA_DIRS; below a root the usual ones), and those into which Flatpak and
/// snapd export.
std::vector<std::string> applicationFolders(const HostFolders& folders);

/// The locale in which the user wants names, from the environment.
std::string messageLocale();

/// The applications in these folders and below. Of two with one id the first holds and knows of the
/// others; hidden ones are included, because they hide those too. Files that are no application,
/// cannot be read or are above 1 MiB are passed over. By id.
std::vector<DesktopEntry> readDesktopEntries(const std::vector<std::string>& folders,
                                             const std::string& locale);

}  // namespace brisko
