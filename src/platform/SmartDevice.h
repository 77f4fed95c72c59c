#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace brisko {

/// One sector of a drive's answer, byte for byte as the drive sent it.
using SmartSector = std::array<std::uint8_t, 512>;

/// What a drive without ATA sectors tells of its health, already in units.
struct SmartHealth {
  std::int32_t temperature = 0;  ///< degrees Celsius; 0 when the drive gives none
  std::uint64_t powerOnHours = 0;
  std::uint64_t powerCycles = 0;
};

/// One object of the host's device registry: a partition, a disk, the drive below it, its
/// controller.
struct SmartNode {
  std::string path;  ///< its place in the registry, as `SmartDevice::nodeAtPath` takes it
  std::string name;  ///< the kernel's device identifier ("sda"); empty above the disks
  bool hasSmartCapable = false;          ///< carries the property "SMART Capable"
  bool isATABlockStorageDevice = false;  ///< conforms to "IOATABlockStorageDevice"
  std::uint32_t ataFeatures = 0;         ///< "ATA Features"; the bit of value 32: S.M.A.R.T.
};

/// A drive opened for S.M.A.R.T. Every call but hasHealthLog returns 0 or an errno, EIO when the
/// drive itself refused, ENOTSUP for what drives of this kind do not have; what it fills is zeroed
/// on failure. A call can take some seconds while a drive wakes up.
class SmartInterface {
 public:
  virtual ~SmartInterface() = default;

  /// True for drives (NVMe) that answer `readHealth` and nothing of the rest but `enable`.
  virtual bool hasHealthLog() const = 0;

  /// Turns S.M.A.R.T. operations on.
  virtual int enable() = 0;
  virtual int readData(SmartSector& sector) = 0;
  virtual int readThresholds(SmartSector& sector) = 0;
  virtual int readHealth(SmartHealth& health) = 0;
};

/// The host's device registry, and the way to its drives' S.M.A.R.T.
class SmartDevice {
 public:
  virtual ~SmartDevice() = default;

  /// The object with this device identifier. "disk0", "disk1" … name the whole disks that a user
  /// would call a drive, by their place in the host's list, on hosts that call them otherwise.
  virtual std::optional<SmartNode> nodeWithName(const std::string& name) = 0;
  /// The object at a path of the registry, or of the device node ("/dev/sda1").
  virtual std::optional<SmartNode> nodeAtPath(const std::string& path) = 0;
  /// The object above `node`; nothing above the topmost.
  virtual std::optional<SmartNode> parent(const SmartNode& node) = 0;

  /// Opens a capable object. Null on failure, with `error` set: EACCES or EPERM when only the
  /// administrator may, ENODEV when it has gone.
  virtual std::unique_ptr<SmartInterface> open(const SmartNode& node, int& error) = 0;
};

}  // namespace brisko
