#pragma once

#include "FileDescriptor.h"
#include "FileIdentity.h"

#include <optional>
#include <string>

#include <sys/types.h>

namespace brisko {

struct ParentFolder;

/// Makes an item deletable by its owner, and takes that back at the end of its life for as long as
/// the item has a name left: it may have stayed after all, or be a file with further names.
///
/// The owner's bits are all that decide whether the owner may delete, so only they are set: a
/// private item is at no moment open to others. What is changed is the item itself by its
/// descriptor, never what a link leads to. An item that is not the one that was shown is left
/// alone.
class DeletablePermission {
 public:
  /// Does nothing for what this user may delete as it is. When the change fails, logs
  /// "Set deletable attributed failed: %@" with the error.
  DeletablePermission(const std::string& path, const std::optional<FileIdentity>& shown);
  ~DeletablePermission();
  DeletablePermission(const DeletablePermission&) = delete;
  DeletablePermission& operator=(const DeletablePermission&) = delete;

 private:
  FileDescriptor item_;
  std::optional<mode_t> modeBefore_;
};

}  // namespace brisko
