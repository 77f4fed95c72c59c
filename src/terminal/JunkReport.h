#pragma once

#include "FastCleanModel.h"
#include "Json.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// What "brisko junk" has to tell, as it stood when the scan had ended; what a cleaning did is
/// added.
struct JunkReport {
  struct Category {
    int index = 0;
    std::string title;
    std::string subTitle;
    std::string size;
    std::uint64_t bytes = 0;
    std::string boxImage;
    std::vector<std::shared_ptr<TCTreeNode>> entries;  ///< not changed any more

    std::size_t selectedCount() const;
  };

  std::vector<Category> categories;
  std::string total;
  std::uint64_t totalBytes = 0;
  int fullDiskAccess = 0;
  std::vector<SkippedPath> skipped;
  std::size_t planCount = 0;  ///< how many entries cleaning would remove
  std::string planSize;
  bool wasInterrupted = false;

  bool isDryRun = false;
  bool wasCleaned = false;  ///< the rest says what happened
  std::vector<std::string> removed;
  std::vector<FastCleanFailure> failed;
  std::string freed;
  std::uint64_t freedBytes = 0;

  /// Takes over what the model shows of the categories `wanted`.
  void takeScan(const FastCleanModel& model, const std::array<bool, kJunkCategoryCount>& wanted);
  void takeCleaning(const FastCleanModel& model);

  /// The JSON document, one line per entry.
  std::string document() const;
  /// The categories as a table; with `entries`, each with its entries below it, all of them or
  /// those that are ticked.
  enum class Entries { none, selected, all };
  std::string overview(Entries entries) const;
  std::string outcome() const;  ///< what cleaning did
};

}  // namespace brisko
