#pragma once

#include "DesktopEntry.h"

#include <string>
#include <vector>

namespace brisko {

class HostFolders;

/// The files of a program that no package manager knows and that the user has put into a folder of
/// the user's own (or into /opt, where that is writable for the user): the program's item, then its
/// desktop entry. Empty when the entry starts something else, or something that is not there.
///
/// The item is the program's folder, or the file alone where the folder is not plainly the
/// program's own: the home, one where people keep many things, one with another name, a working
/// copy of a version control.
std::vector<std::string> userProgramFiles(const DesktopEntry& entry, const HostFolders& folders);

/// Without the program that an entry wants to be there (TryExec) it is not to be shown. Looked for
/// below the root.
bool hasTryExec(const DesktopEntry& entry, const HostFolders& folders);

}  // namespace brisko
