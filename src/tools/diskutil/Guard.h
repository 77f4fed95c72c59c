#pragma once

#include "Inventory.h"

#include <string>
#include <utility>
#include <vector>

namespace brisko::diskutil {

/// What must be true before the first byte is written or the first volume is unmounted. All throw
/// Failure, with the reason, and change nothing.

/// Nothing on the device may be needed by the running system or belong to something larger; nothing
/// foreign may be mounted inside it. A partition stands for itself, a whole disk for all on it.
void refuseInUse(const Inventory& inventory, const Device& device);

/// The device must be one volume that can be written anew: no disk with partitions, no container of
/// partitions, nothing read-only, no part of a RAID, volume group or file system over several
/// devices.
void refuseUnlessVolume(const Inventory& inventory, const Device& device);

/// The start of the system must not look for this volume by one of these, which it is to lose:
/// "LABEL" or "UUID", with what the volume has. Empty ones do not count.
using StartTags = std::vector<std::pair<const char*, std::string>>;
void refuseNamedInStart(const Device& device, const StartTags& tags);

}  // namespace brisko::diskutil
