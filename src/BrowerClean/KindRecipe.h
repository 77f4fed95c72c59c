#pragma once

#include "BrowerObj.h"
#include "ToGetDB.h"

#include <string>
#include <vector>

namespace brisko {

/// What a kind of data of one family consists of, what its right column shows, and what erases it.
struct KindRecipe {
  enum class Pick {
    nothing,
    path,            ///< the path itself
    sessionEntries,  ///< entries of the path whose names contain "Session"
    profileFiles,    ///< `files` in the profile
    profileCaches,   ///< entries of the profile whose names contain "cache"
    safariCaches,
    safariHistory,
    safariDownloads,
    safariStorage,
  };
  enum class Shows { nothing, bytes, rows, downloads, entries };
  enum class After { bytes, items, unchanged };  ///< "0 byte", "0 Item", what was shown before

  Pick pick = Pick::nothing;
  Shows shows = Shows::nothing;
  After after = After::bytes;
  std::vector<std::string> files;
  ToGetDB::Counter count = nullptr;
  ToGetDB::Runner remove = nullptr;  ///< of the database; null when the file goes

  static KindRecipe of(BrowserFamily family, const std::string& kind);
};

}  // namespace brisko
