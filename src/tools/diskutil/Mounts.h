#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace brisko::diskutil {

/// One mount, as this process sees it.
struct Mount {
  int id = 0;
  int parentId = 0;
  dev_t device = 0;  ///< the block device it shows; 0 for none
  dev_t number = 0;  ///< what its files give as their device
  std::string target;
  std::string type;
  std::string options;  ///< those of the mount and of the file system, as mount takes them
  std::string part;     ///< the folder of the file system that it shows; "/" for all of it
  bool isReadOnly = false;
};

struct Mounts {
  std::vector<Mount> mounts;  ///< in mount order
  std::vector<dev_t> swaps;   ///< devices in use as swap space

  /// Throws Failure when the kernel's table cannot be read: then nothing may be taken for unused.
  static Mounts read();

  std::vector<Mount> of(dev_t device) const;
  /// The mounts on folders of `mount`, at any depth.
  std::vector<Mount> within(const Mount& mount) const;
};

/// True for a folder that the running system needs: "/" and what is mounted for it.
bool isOfRunningSystem(const std::string& target);

}  // namespace brisko::diskutil
