#pragma once

#include "LinuxBlockDevices.h"
#include "Mounts.h"
#include "Signature.h"

#include <functional>
#include <string>
#include <vector>

namespace brisko::diskutil {

/// A disk or partition with what is on it and how it is in use.
struct Device {
  LinuxBlockDevice block;
  Signature signature;
  std::vector<Mount> mounts;
  bool isSwap = false;
  std::uint64_t totalBytes = 0;  ///< the device's; the file system's where that spans several
  std::uint64_t freeBytes = 0;   ///< free to everyone; 0 when not mounted
  uid_t owner = 0;               ///< of the top folder, while mounted
  gid_t group = 0;
  std::size_t disk = 0;          ///< index in Inventory::disks of the disk it is on

  bool isWhole() const { return block.partition == 0; }
  bool isMounted() const { return !mounts.empty(); }
  /// A DOS table's partition that only holds others.
  bool isExtended() const;
  /// The mount that shows most of it to people; null when it has none.
  const Mount* mainMount() const;
};

struct Disk {
  Device device;
  std::vector<Device> partitions;
};

/// The machine's disks at one moment.
class Inventory {
 public:
  using Reader = std::function<Signature(const LinuxBlockDevice&)>;

  /// Reads the machine. `fresh` looks at the devices themselves instead of the device manager's
  /// database: what is about to be written must be known as it is.
  static Inventory read(bool fresh = false);
  /// The same of other devices.
  static Inventory of(const std::vector<LinuxBlockDevice>& disks, Mounts mounts,
                      const Reader& reader);

  const std::vector<Disk>& disks() const { return disks_; }
  const Mounts& mounts() const { return mounts_; }

  /// What counts as the disk's volumes: a file system straight on it, and its partitions.
  std::vector<const Device*> volumes(const Disk& disk) const;
  const Disk& diskOf(const Device& device) const { return disks_[device.disk]; }

  /// The device that `text` names: "sda1", "/dev/sda1" (links are followed), "disk0" and "disk0s1"
  /// for the first disk of the list and its partition 1, a folder where it is mounted, or the UUID
  /// of its file system. Throws Failure when there is none, or more than one.
  const Device& find(const std::string& text) const;
  /// Only by the UUID, else as `find` does.
  const Device& findVolume(const std::string& text) const;

  const Device* withNumber(dev_t number) const;
  const Device* withIdentifier(const std::string& identifier) const;
  std::vector<const Device*> withUuid(const std::string& uuid) const;

  /// Devices that could not be looked into, for want of permission.
  std::vector<std::string> unreadable() const;

 private:
  const Device* byPlace(const std::string& text) const;
  std::vector<const Device*> all() const;

  std::vector<Disk> disks_;
  Mounts mounts_;
};

}  // namespace brisko::diskutil
