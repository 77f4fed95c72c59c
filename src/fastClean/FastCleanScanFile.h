#pragma once

#include "JunkEntries.h"
#include "JunkLocation.h"
#include "TCTreeNode.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace brisko {

inline constexpr int kJunkCategoryCount = 6;

class HostLocations;

/// The Junk Cleaner's scanner: finds the entries of the six categories and measures them.
///
/// `getAllList`, `prepareScan` and the setters belong to the main thread. The scan runs on one
/// background thread (its entries are measured by several). A category's node is filled before its
/// progress is reported and never touched by the scan afterwards, so a reader that looks at a node
/// only after its report needs no lock.
class FastCleanScanFile {
 public:
  using Nodes = std::vector<std::shared_ptr<TCTreeNode>>;

  /// Made on first use and never released.
  static FastCleanScanFile& shareInstall();

  FastCleanScanFile();
  ~FastCleanScanFile();
  FastCleanScanFile(const FastCleanScanFile&) = delete;
  FastCleanScanFile& operator=(const FastCleanScanFile&) = delete;

  // The category table's columns, in index order.
  static const std::array<std::string, kJunkCategoryCount>& getIcon();
  static const std::array<std::string, kJunkCategoryCount>& getName();
  static const std::array<std::string, kJunkCategoryCount>& subName();
  /// Whether a category's entries start selected: 0 to 2 do.
  static bool startsSelected(int category);

  /// Lets go of the previous scan's nodes and returns six new ones without entries. Reports of a
  /// scan that still runs on the previous nodes are dropped from here on.
  Nodes getAllList();

  /// Scans all categories on the calling thread, into the nodes of the last `getAllList`. Clears
  /// the stop request first. A second scan waits until the first has ended.
  void beginScan();

  /// `beginScan` in two steps, so that a stop that comes before the background has begun is not
  /// lost: the first on the main thread when the scan is started, the second in the background.
  void prepareScan();
  void runScan();

  /// Asks the scan to skip the categories that it has not begun. It still reports each of them.
  void setBeStop(bool stop);
  /// Ends measuring at the next entry as well; what was not measured is left out. For the
  /// terminal's interrupt, which must not wait for a large category.
  void abandonScan();

  /// Only these categories are looked at; the others stay empty, and are reported. For the
  /// terminal's list of categories. All six unless told.
  void setCategories(const std::array<bool, kJunkCategoryCount>& wanted);

  /// Called on the main queue after each category with its index. There is no operation to call
  /// with paths: one call per path would flood the main queue. Whoever shows progress asks
  /// `pathAtWork`, a few times a second.
  void setProgressSEL(std::function<void(int category)> report);

  /// The entry that was measured last, for a progress line. Usable from every thread.
  std::string pathAtWork() const;

  /// What could not be looked into, in the order found. Complete when the scan has ended.
  std::vector<SkippedPath> skipped() const;

  /// The locations of a category as the scan takes them: the defined ones, then the host's own.
  static std::vector<JunkLocation> locations(int category);
  static std::vector<JunkLocation> locations(int category, const HostLocations& host);

 private:
  struct Run;
  void scanCategory(Run& run, int category, const std::vector<JunkLocation>& places);

  void scanLocation(const Run& run, const JunkLocation& location, TCTreeNode& node, bool selected);

  std::function<void(int)> progressSEL_;
  std::atomic<bool> beStop_{false};
  std::array<bool, kJunkCategoryCount> wanted_;
  Nodes allType_;
  std::shared_ptr<Run> run_;       ///< the last one prepared; main thread
  std::mutex scanning_;            ///< one scan at a time
  mutable std::mutex mutex_;       ///< guards what follows
  std::shared_ptr<Run> prepared_;  ///< waits for the background to begin
  std::string pathAtWork_;
  std::vector<SkippedPath> skipped_;
};

}  // namespace brisko
