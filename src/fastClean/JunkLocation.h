#pragma once

#include "FileIdentity.h"

#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// A folder whose direct entries are junk, all of them or those that its filters let through.
struct JunkLocation {
  std::string path;
  std::vector<std::string> include;  ///< name patterns; empty takes every name
  /// Name patterns that are never taken. In lower case; case does not count, because a rule that
  /// protects had better protect too much.
  std::vector<std::string> exclude;
  std::vector<FileKind> kinds;  ///< empty takes every kind
  /// An entry that holds something of such a name, itself or one folder down, is left out whole: it
  /// keeps more than a cache. Patterns in lower case; case does not count.
  std::vector<std::string> keepIfContains;
  /// Paths that belong to other locations: an entry that is one of them or holds one is left out.
  std::vector<std::string> claimed;

  /// Whether an entry of this name and kind is taken.
  bool takes(const std::string& name, FileKind kind) const;
};

/// Whether `name` matches a shell pattern ("*", "?", "[a-z]", "[!a-z]"). A leading dot is nothing
/// special. Bytes are compared, whatever the locale: a name that is not UTF-8 must not slip past a
/// rule that protects it.
bool nameMatches(std::string_view pattern, std::string_view name);

std::string lowerCase(std::string_view text);  ///< ASCII letters only
bool matchesAny(const std::vector<std::string>& patterns, std::string_view name);

}  // namespace brisko
