#pragma once

#include "Authorization.h"
#include "FileIdentity.h"
#include "Removal.h"

#include <optional>
#include <string>

namespace brisko {

/// Where the administrator's tool is to work for a path, or what ends the matter before it is run.
struct PrivilegedPlace {
  std::string path;  ///< absolute, the system's own links on the way resolved
  std::optional<RemovalReport> end;
};

/// Looks where `path` leads. What is refused in any case, what is not there, and a path whose bytes
/// do not fit into max(its characters, 260) - 1 (characters are UTF-16 units) ends here.
PrivilegedPlace privilegedPlace(const std::string& path);

/// Runs "/bin/rm" "-rf" on `path` with a handle that holds the administrator's right. Removed when
/// the tool printed nothing. `toolHasGone` is set when the helper does not answer any more, so that
/// the right has to be obtained anew. The handle stays the caller's.
RemovalReport runPrivilegedTool(Authorization::Reference reference, const std::string& path,
                                const std::optional<FileIdentity>& shown, bool& toolHasGone);

}  // namespace brisko
