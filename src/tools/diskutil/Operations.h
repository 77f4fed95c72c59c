#pragma once

#include "Inventory.h"

#include <string>

namespace brisko::diskutil {

/// What an operation did, as lines for people.
struct Report {
  std::string done;     ///< for standard output
  std::string warning;  ///< for standard error; empty when all went well
};

/// Gives a volume a name. `volume` is its UUID or anything that `Inventory::find` takes. Everything
/// is checked before the first change; a volume that had to be unmounted is mounted again, also
/// after a failure. All of these throw Failure.
Report rename(const std::string& volume, const std::string& name);

/// Makes a new file system: `type` is a word of `formatNamed`. What was mounted is mounted again.
Report eraseVolume(const std::string& type, const std::string& name, const std::string& node);

/// The same with the type and name that the volume has.
Report reformat(const std::string& node);

/// Unmounts all volumes of the disk that `node` is or is on, and takes the disk off. When one cannot
/// be unmounted, the others are mounted again and the disk stays.
Report eject(const std::string& node);

}  // namespace brisko::diskutil
