#pragma once

#include "CurrentPath.h"
#include "algorithm.h"
#include "fileAttrbItem.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// One application bundle.
struct AppAttrbItem {
  algorithm::FileArray AllFileInDirectory;  ///< every file in it, links too, in listing order
  std::uint64_t DirectorySize = 0;          ///< sum of their sizes, bytes
  std::string DirectoryPathName;            ///< absolute
  std::string DirectoryName;                ///< last path component
  FileIdentity identity;                    ///< which folder the path named when it was listed
};

using AppGroup = std::vector<std::shared_ptr<AppAttrbItem>>;

/// Compares application bundles as whole units. Two are the same when they hold as many files of
/// the same total size, and the files pair up one to one by size, first-kilobyte digest and
/// whole digest; names play no part. The first-kilobyte digests of a bundle are those of one fresh
/// `algorithm` that reads its files in listing order. A file that cannot be read pairs with none.
///
/// One object serves one comparison, which runs on the calling thread and on helpers of its own.
class FindDuplicateApp {
 public:
  using OutArray = std::vector<AppGroup>;

  /// Appends the groups to `out`: in the order of their first members, each with its later members
  /// in order and then the first. Bundles that cannot be listed are left out. Always true; a stop
  /// ends it with no further group.
  bool FindAppInArray(const std::vector<std::string>& paths, OutArray& out);

  // The steps, for single bundles. Many are compared by sorting them into classes instead, which
  // comes to the same groups.

  /// Lists the files of the bundles at `paths`; those that cannot be listed are left out. Always
  /// true.
  bool InitInputAppDirectory(const std::vector<std::string>& paths);
  /// Appends those of `array` that have the item's size, in their order. Always true.
  static bool getSameSizeDirInArray(const AppGroup& array, const AppAttrbItem& item, AppGroup& out);
  /// Whether the files of both pair up one to one. Fills in digests; what cannot be read pairs with
  /// nothing.
  static bool CompareDir(AppAttrbItem& item, AppAttrbItem& other);
  /// Appends the copies of `item` among `array`, in their order, and then `item` itself. False,
  /// with nothing appended, when it has none.
  static bool getDuplicateAppDirInArray(const AppGroup& array,
                                        const std::shared_ptr<AppAttrbItem>& item, AppGroup& out);

  /// Percentage of the bundles that are still to be examined: it counts down to 0.
  std::uint32_t m_Progress() const { return progress_; }
  void setStopSearch(bool stop) { stop_ = stop; }
  std::string m_CurrentSearchFile() const { return currentSearchFile_.get(); }

  /// Fills `item` with every file below the bundle. False when a folder in it cannot be listed.
  static bool getAllFilePathName(const std::string& path, AppAttrbItem& item,
                                 const std::atomic<bool>& stop);

 private:
  struct Bundle {
    std::shared_ptr<AppAttrbItem> item;
    bool isComparable = true;  ///< no file of it failed
  };

  void splitByFiles(std::vector<std::vector<Bundle*>>& classes, bool byWhole);
  void digestHeads(const std::vector<std::vector<Bundle*>>& classes);
  void digestWhole(const std::vector<std::vector<Bundle*>>& classes);
  void examined(std::size_t count);

  std::vector<Bundle> m_AllAppItem;
  std::uint64_t m_AppCount = 0;
  std::uint64_t remaining_ = 0;
  std::atomic<std::uint32_t> progress_ = 0;
  std::atomic<bool> stop_ = false;
  CurrentPath currentSearchFile_;
};

}  // namespace brisko
