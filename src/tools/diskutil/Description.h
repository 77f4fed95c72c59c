#pragma once

#include "Inventory.h"
#include "PropertyList.h"

#include <string>

namespace brisko::diskutil {

/// Names and judgements that people see of a device, on top of what was read of it.

/// The model; for a disk without one its bus and identifier. Of several fixed disks of one model all
/// but the first carry their identifier too: lists tell disks apart by this name.
std::string mediaName(const Inventory& inventory, const Device& device);
/// The label; without one "EFI" for the partition that firmware starts from, else the size.
std::string volumeName(const Device& device);
/// Where it is mounted; empty when it is not.
std::string mountPoint(const Device& device);
/// Whether it can be taken away: removable or external, and not what the system runs from.
bool isEjectable(const Inventory& inventory, const Device& device);
/// "Verified", "Failing" or "Not Supported"; empty when that cannot be found out (mostly for want of
/// permission). Asks the drive.
std::string smartStatus(const Inventory& inventory, const Device& device);

/// The property lists, as they are printed.
PropertyList listing(const Inventory& inventory);
PropertyList information(const Inventory& inventory, const Device& device);

}  // namespace brisko::diskutil
