#pragma once

#include "LinuxBlockDevices.h"
#include "SmartDevice.h"

#include <string>

namespace brisko {

/// The device registry is sysfs: a node's path is its folder there. Capable are the whole disks:
/// ATA drives (behind a USB bridge too, when that passes commands on) and NVMe name spaces.
class LinuxSmartDevice : public SmartDevice {
 public:
  /// `sysfs` is where that is mounted, free of links.
  explicit LinuxSmartDevice(std::string sysfs = "/sys");

  std::optional<SmartNode> nodeWithName(const std::string& name) override;
  std::optional<SmartNode> nodeAtPath(const std::string& path) override;
  std::optional<SmartNode> parent(const SmartNode& node) override;
  std::unique_ptr<SmartInterface> open(const SmartNode& node, int& error) override;

 private:
  std::vector<LinuxBlockDevice> physicalDisks() const;
  SmartNode describe(const std::string& folder) const;

  std::string sysfs_;
};

}  // namespace brisko
