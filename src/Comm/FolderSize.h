#pragma once

#include "Catalog.h"

#include <atomic>
#include <cstdint>

namespace brisko {

/// What a tree holds. Sizes are logical: a file with several names counts at each of them.
struct FolderSize {
  std::uint64_t dataSize = 0;        ///< bytes in data forks of files, and in links' own texts
  std::uint64_t resourceSize = 0;    ///< bytes in resource forks
  std::uint64_t files = 0;           ///< all that is no folder
  std::uint64_t folders = 0;         ///< below the one that was asked for
  std::uint64_t skippedFolders = 0;  ///< unreadable, or another file system is mounted there
  bool isCancelled = false;          ///< what was counted until then

  std::uint64_t total() const { return dataSize + resourceSize; }
  FolderSize& operator+=(const FolderSize& other);
};

/// Sums the tree below `folder`: follows no link, crosses no mount, builds no path, opens nothing
/// but folders, works at any depth.
///
/// Blocks. The caller does the work itself and is joined by background workers once the tree turns
/// out to be a large one. At most 128 folders are open at a time, for all of them together. What
/// cannot be read, or vanishes meanwhile, is counted as far as it was seen.
FolderSize folderSize(Catalog::Folder& folder, const std::atomic<bool>* cancel = nullptr);

}  // namespace brisko
