#pragma once

#include "ExecCommand.h"
#include "PropertyList.h"

#include <cstdint>
#include <string>

namespace brisko {

/// What the disk tool knows of disks and volumes, and what it can do to them.
class DiskAndVolumeInfo {
 public:
  /// The listing of all disks; null when it cannot be read. How the tool ended goes into `end`
  /// where that is given, here and below.
  static PropertyList getAllDiskAndVolumes(DiskCommandEnd* end = nullptr);
  /// The details of a device ("/dev/disk0"); null for a null argument and an answer that cannot be
  /// read. A name that does not fit into the command ends the process: see `detailsOf`.
  static PropertyList ZKGetDiskInfo(const char* device, DiskCommandEnd* end = nullptr);
  /// The same, with the device unquoted in the command.
  static PropertyList GetMainDiskInfo(const char* device);
  /// The details of a device that a listing told of. One bad row of it must not end the process: a
  /// name that does not fit is logged and gives null.
  static PropertyList detailsOf(const std::string& device, DiskCommandEnd* end = nullptr);

  /// False for an empty name. Else true whenever the tool was started, whatever came of it; "Error"
  /// is logged when it was not. A name that does not fit into the command ends the process: see
  /// DiskCommandText::fittingForRename.
  static bool renameDiskWithGuid(const std::string& uuid, const std::string& newName,
                                 DiskCommandEnd* end = nullptr);
  /// The same rules, for the identifier of a disk or volume that is to be ejected.
  static bool ejcDiskWithGuid(const std::string& identifier, DiskCommandEnd* end = nullptr);
  /// Ejects the volume that `getVolumeRefNumWith` gave this number. False when that failed.
  static bool ejcDiskWithGuidNum(std::int16_t volRefNumber);

  /// The reference number of the mounted volume that holds `path`; 0 when none does. Logs where the
  /// volume's files come from, or "An error occurred: %i" when that is not known.
  static std::int16_t getVolumeRefNumWith(const std::string& path);
};

}  // namespace brisko
