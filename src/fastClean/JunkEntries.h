#pragma once

#include "Catalog.h"
#include "FileIdentity.h"
#include "JunkLocation.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// A location or folder that the scan could not look into, and why, in one line for people.
struct SkippedPath {
  std::string path;
  std::string reason;
};

/// One entry of a location: found by name, then measured.
struct JunkEntry {
  std::string path;
  std::string name;

  // Filled by `measure`.
  std::optional<FileIdentity> identity;
  std::uint64_t bytes = 0;  ///< logical, of the whole tree
  std::string icon;
  bool isLeftOut = false;  ///< gone meanwhile, a mount, or more than a cache
  std::string problem;     ///< why `bytes` is not the whole truth; "" when it is
};

/// The entries of one location that its filters let through, in the file system's order.
///
/// Holds the location's folder open: entries are looked at relative to it, so that what was listed
/// and what is measured cannot be led apart.
class JunkEntries {
 public:
  /// Lists. A location that is missing or a plain file is empty; of a link, and of what cannot be
  /// read, `skipped` gets the reason.
  JunkEntries(const JunkLocation& location, std::vector<SkippedPath>& skipped);

  std::vector<JunkEntry>& entries() { return entries_; }

  /// Fills in one entry; several threads may do that, each for another. A set `cancel` ends it.
  void measure(JunkEntry& entry, const std::atomic<bool>& cancel) const;

 private:
  void measureTree(JunkEntry& entry, const std::atomic<bool>& cancel) const;
  bool keepsMoreThanCache(const JunkEntry& entry) const;

  const JunkLocation& location_;
  std::unique_ptr<Catalog::Folder> folder_;
  std::vector<JunkEntry> entries_;
};

}  // namespace brisko
