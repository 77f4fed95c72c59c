#pragma once

#include <cstdint>
#include <string>

namespace brisko {

/// A reference to a file or folder: its path, and which item the path named when it was made.
/// Whoever uses it looks again, so a reference never leads to another item that took the place.
struct FSRef {
  std::string path;  ///< empty while unfilled
  std::uint64_t device = 0;
  std::uint64_t inode = 0;

  bool isFilled() const { return !path.empty(); }
};

}  // namespace brisko
