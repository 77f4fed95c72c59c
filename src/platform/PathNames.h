#pragma once

#include <string>
#include <string_view>

namespace brisko {

// Paths as texts; nothing is looked up.

/// The last name of a path; all of it when there is no "/".
inline std::string lastName(std::string_view path) {
  return std::string(path.substr(path.rfind('/') + 1));
}

/// Whether an absolute path leads to something in `folder`, to any depth, and not to the folder.
inline bool isBelow(std::string_view path, std::string_view folder) {
  return path.size() > folder.size() + 1 && path.starts_with(folder) && path[folder.size()] == '/';
}

}  // namespace brisko
