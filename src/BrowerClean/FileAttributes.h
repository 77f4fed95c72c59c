#pragma once

#include "FileIdentity.h"

#include <optional>
#include <string>

namespace brisko {

/// Clears the immutable attribute of the item at `path` when it is set, it is still the one that
/// was shown and this user may. Never opens anything but regular files and folders.
void clearImmutable(const std::string& path, const std::optional<FileIdentity>& shown);

}  // namespace brisko
