#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

namespace brisko {

/// A disk or a partition as the kernel knows it.
struct LinuxBlockDevice {
  std::string identifier;  ///< what follows "/dev/": "sda1", "nvme0n1p2", "cciss/c0d0"
  std::string folder;      ///< in sysfs, free of links
  dev_t number = 0;
  std::uint64_t size = 0;  ///< bytes
  int partition = 0;       ///< its number; 0 for a whole disk
  bool isReadOnly = false;

  // What follows describes the drive; a partition has the values of its disk.
  std::string bus;  ///< for people: "SATA", "USB", "PCI-Express", "Disk Image" …
  std::string model;
  bool isRotational = false;
  bool isRemovable = false;  ///< the medium comes out, or the image comes off
  bool isExternal = false;   ///< can be unplugged as a whole
  bool isVirtual = false;    ///< made of other devices or of a file
  bool isLoop = false;
  bool isOptical = false;
  std::string backingFile;  ///< of a loop device

  std::vector<std::string> holders;  ///< identifiers of virtual devices that are made of this one
  std::vector<std::string> slaves;   ///< of the devices that this virtual one is made of
  std::vector<LinuxBlockDevice> partitions;  ///< by number

  std::string node() const { return "/dev/" + identifier; }
};

/// The device that the file system at "/" is on; 0 when it is on none.
dev_t linuxRootDevice();

/// The disks of the machine: drives first, the one that carries `rootDevice` foremost, the others by
/// name; then virtual disks; then attached loop devices. Left out are drives without a medium,
/// detached loops, memory disks, paths that a multipath drive hides, and the images of packaged
/// applications. `sysfs` is where that is mounted. Nothing is opened but optical drives (for the
/// question whether a disc is in).
std::vector<LinuxBlockDevice> linuxDisks(const std::string& sysfs = "/sys",
                                         dev_t rootDevice = linuxRootDevice());

}  // namespace brisko
