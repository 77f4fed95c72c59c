#pragma once

#include "DiskAndVolumeObj.h"
#include "Workspace.h"

#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// Which operations are offered for a node.
struct DiskOffers {
  bool rename = false;
  bool format = false;
  bool eject = false;
};

/// Decides by where the volume is mounted and what is on it; `mounted` is what was mounted when the
/// tree was built. Logs the volume's file-system information where it is mounted. `isSystemVolume`
/// says that the node is the first volume of the first disk.
DiskOffers checkNTFS(const DiskAndVolumeObj& node, bool isSystemVolume,
                     const std::vector<MountedVolume>& mounted);

/// Where in the folder of mounted volumes the volume is; nothing when it is not there. A system
/// need not name that place after the volume: it keeps its name when the volume gets another, and
/// has one of its own for a second volume of a name. So where no place has the volume's name, its
/// mount point counts when it lies directly in that folder.
std::optional<std::string> volumePlace(const DiskAndVolumeObj& node);

/// "" when the volume can be given the name, else how many characters of it fit into the command.
std::string renameRefusal(const DiskAndVolumeObj& volume, const std::string& name);

/// The sentence that refuses a name of `length` characters of which only `fitting` fit.
std::string nameTooLong(std::size_t length, std::size_t fitting);

}  // namespace brisko
