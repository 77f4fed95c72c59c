#pragma once

#include "FileNode.h"

#include <cstdint>

namespace brisko {

/// Which files are shown. A folder is shown while a shown file is anywhere in it; without a filter
/// one that has no file at all, too.
struct FileFilter {
  std::uint64_t minSize = 0;                ///< bytes
  std::int64_t modifiedBefore = INT64_MAX;  ///< seconds since 1970: this or earlier

  bool isActive() const { return minSize > 0 || modifiedBefore != INT64_MAX; }
  bool matches(const FileNode& file) const {
    return file.size >= minSize && file.modificationSeconds <= modifiedBefore;
  }

  /// Files of at least `minSize` bytes, not changed for `days` days (0: of any age).
  static FileFilter of(std::uint64_t minSize, std::uint32_t days);

  friend bool operator==(const FileFilter&, const FileFilter&) = default;
};

/// Whether the entry is shown with the filter that its tree was last counted with.
inline bool isShown(const FileNode& node) {
  if (node.folder == nullptr) return node.matches;
  return node.folder->matching > 0 || (node.folder->files == 0 && !node.folder->isFiltered);
}

/// Whether the filter hides something of what is in the folder.
inline bool isCut(const FileNode& node) {
  return node.folder != nullptr && node.folder->matching < node.folder->files;
}

}  // namespace brisko
