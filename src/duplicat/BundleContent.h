#pragma once

#include "DuplicateCopies.h"
#include "FileIdentity.h"

#include <atomic>
#include <string>
#include <vector>

namespace brisko {

/// Whether two different regular files hold the same bytes now and both are still the given items,
/// before the comparison and after it. No link is followed. When not, `reason` says why.
bool sameBytes(const std::string& path, const FileIdentity& identity, const std::string& other,
               const FileIdentity& otherIdentity, const std::atomic<bool>& stop,
               std::string& reason);

/// What a bundle holds at this moment: every file and link in it.
class BundleContent {
 public:
  /// Whether the two bundles hold the same now: as many files and links of the same total size as
  /// were found, each with a partner of its own with the same bytes in the other bundle. When not,
  /// `reason` says why.
  static bool pairsUp(const DuplicateCopy& bundle, const DuplicateCopy& other,
                      const std::atomic<bool>& stop, std::string& reason);

 private:
  struct Entry {
    std::string path;
    std::string below;     // the path in the bundle
    std::string linkText;  // of links
    FileIdentity identity;
    bool isTaken = false;
  };

  bool list(const DuplicateCopy& bundle, const std::atomic<bool>& stop);
  /// Finds a partner for `entry` among those not taken and takes it.
  bool takePartner(const Entry& entry, const std::atomic<bool>& stop);

  std::vector<Entry> entries_;  ///< ordered by their paths in the bundle
};

}  // namespace brisko
