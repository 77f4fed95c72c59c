#pragma once

#include "LinuxBlockDevices.h"

#include <string>

namespace brisko::diskutil {

/// What is written on a device: a file system or the like, a partition table, and how the table
/// around it calls this partition. Texts are bytes as they stand there.
struct Signature {
  bool isKnown = false;  ///< false: neither the device manager nor the device itself could be asked
  std::string type;      ///< "ext4", "vfat", "swap", "crypto_LUKS" … as the kernel and libblkid say
  std::string version;   ///< "FAT32", "1.0" …
  std::string usage;     ///< "filesystem", "raid", "crypto", "other"
  std::string label;
  std::string uuid;
  std::string tableType;      ///< of the partition table on it: "gpt", "dos" …
  std::string partitionType;  ///< GUID in small letters, or "0x83"
};

/// Asks the device manager's database, which costs no access to the drive; where it has none
/// (containers, rescue systems), and whenever `fresh` is set, the device itself.
Signature signatureOf(const LinuxBlockDevice& device, bool fresh);

}  // namespace brisko::diskutil
