#pragma once

#include "FileIdentity.h"

#include <string>
#include <vector>

namespace brisko {

/// A folder whose direct entries are junk, all of them or those that its filters let through.
struct JunkLocation {
  std::string path;
  std::vector<std::string> include;  ///< name patterns; empty takes every name
  std::vector<std::string> exclude;  ///< name patterns that are never taken
  std::vector<FileKind> kinds;       ///< empty takes every kind
  /// An entry that holds something of such a name, itself or one folder down, is left out whole: it
  /// keeps more than a cache.
  std::vector<std::string> keepIfContains;
  /// Paths that belong to other locations: an entry that is one of them or holds one is left out.
  std::vector<std::string> claimed;

  bool hasFilters() const { return !(include.empty() && exclude.empty() && kinds.empty()); }
  /// Whether an entry of this name and kind is taken.
  bool takes(const std::string& name, FileKind kind) const;
};

/// Whether `name` matches a shell pattern ("*", "?", "[…]"); a leading dot is nothing special.
bool nameMatches(const std::string& pattern, const std::string& name);

}  // namespace brisko
