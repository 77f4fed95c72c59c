#pragma once

#include "FileIdentity.h"

#include <atomic>
#include <functional>
#include <string>

namespace brisko {

/// An entry of a tree, with its own attributes: a link is itself.
struct ListedEntry {
  std::string path;
  std::uint64_t size = 0;  ///< own size in bytes, a folder's too
  FileIdentity identity;
};

/// Visits everything below a folder in the file system's own order, each folder's contents before
/// the folder itself, on one thread. Links are visited, not followed; the folder itself may be one.
struct ListingWalk {
  /// Answers whether to go on.
  std::function<bool(const ListedEntry&)> visit;
  /// Told of a folder that cannot be listed or an entry that cannot be looked at, with errno's
  /// value. Answers whether to go on without it; a folder left out is not visited.
  std::function<bool(const std::string& path, int error)> unreadable;

  /// True when the end was reached and nobody asked to stop.
  bool run(const std::string& path, const std::atomic<bool>& stop) const;
};

}  // namespace brisko
