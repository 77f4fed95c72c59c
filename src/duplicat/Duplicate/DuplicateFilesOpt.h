#pragma once

#include "SimpleTreeNode.h"
#include "duplicateFind.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace brisko {

/// What a search looks at.
struct DuplicateSearchOption {
  bool searchesHiddenFiles = true;
  bool searchesSystemFolders = true;
};

/// The front of a search: starts it and turns its results into the tree of groups and copies. One
/// object serves one search. Progress, path at work and stop may be used from any thread.
class DuplicateFilesOpt {
 public:
  void setSearchOption(const DuplicateSearchOption& option) { option_ = option; }

  /// Runs the search and returns when it is over. Logs " -INFO:search Path:…  limitedsize:…"; a
  /// second call on the same object logs "error need reinit" and does nothing.
  void beginSearchAtPath(const std::string& path, std::uint64_t limitSize);

  std::uint32_t getProgress() const;  ///< 0 to 100
  void stopSearch();
  std::string getCurrentSearchFile();

  /// Makes the tree, bundle groups before file groups, out of what the search found, which it hands
  /// over with that. False, with `tree` as it was, without a search or when it found nothing. To be
  /// called once, after the search.
  ///
  /// The children of a group stand in the order in which its files were found, except that the
  /// first of the later ones comes last: it is the copy that is kept.
  bool getDuplicateFiles(std::unique_ptr<DuplicateTree>& tree);

  /// Folders that could not be read. To be asked after the search.
  std::vector<SkippedFolder> skipped() const;

 private:
  std::shared_ptr<duplicateFind> search() const;

  mutable std::mutex mutex_;  ///< guards the three below
  std::shared_ptr<duplicateFind> m_findDuplicate;
  std::string m_CurrentSearchPath;
  bool stopsAtOnce_ = false;  ///< a stop came before the search had begun
  DuplicateSearchOption option_;
};

}  // namespace brisko
