#pragma once

#include "FileIdentity.h"
#include "Removal.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace brisko {

/// A copy as it was found.
struct DuplicateCopy {
  std::string path;
  FileIdentity identity;
  std::uint64_t size = 0;  ///< bytes; a bundle's is the sum of its files'
  bool isBundle = false;
  bool isGone = false;  ///< was removed meanwhile
};

struct DuplicateRemoval {
  RemovalReport report;
  bool wasTried = false;  ///< the removal service was asked; false when it was safer not to
};

/// Whether `other` is there at this moment and holds the same bytes as `copy`, both still being
/// what was found. Files are compared byte by byte on open descriptors, bundles file by file: each
/// file and link of `copy` has a partner of its own in `other`. Never true for one item under two
/// names. When it is not so, `reason` says why in a few words for people. Blocks; any thread.
bool isStillCopyOf(const DuplicateCopy& copy, const DuplicateCopy& other,
                   const std::atomic<bool>& stop, std::string& reason);

/// Removes `copy` through the shared removal service, but only while another one of `group`, of
/// which it is a member, still is a copy of it. They are looked at in their order. Not the main
/// thread.
DuplicateRemoval removeDuplicate(const DuplicateCopy& copy, const std::vector<DuplicateCopy>& group,
                                 const std::atomic<bool>& stop);

}  // namespace brisko
