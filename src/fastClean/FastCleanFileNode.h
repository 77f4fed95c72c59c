#pragma once

#include "Removal.h"
#include "TCTreeNode.h"

#include <atomic>
#include <string>

namespace brisko {

class ZkAuthorization;

/// Removes what the Junk Cleaner found, through the shared removal service. For one background
/// thread at a time.
class FastCleanFileNode {
 public:
  static FastCleanFileNode& shareInstall();

  /// Removes the file or tree at `path`. True when it is gone.
  bool removeFile(const std::string& path);

  /// The same for an entry that was shown: it goes only while it is still the item that was
  /// scanned. With an entry of an XDG trash its .trashinfo record goes too.
  /// A set `cancel` ends it between two files of a tree.
  RemovalReport removeFile(const TCTreeNode& entry, const std::atomic<bool>* cancel = nullptr);

 private:
  ZkAuthorization& removalService();

  ZkAuthorization* service_ = nullptr;  ///< fetched on first use
};

/// The record that belongs to an entry of an XDG trash ("…/info/NAME.trashinfo" for
/// "…/files/NAME"); empty when `path` is not laid out like one or has no record that is a plain
/// file.
std::string trashInfoPath(const std::string& path);

}  // namespace brisko
