#pragma once

#include "FileDescriptor.h"
#include "SmartDevice.h"

namespace brisko {

/// The values of a health log page. Temperatures of 0 K (not measured) read 0; counters above 64
/// bits stop at the largest value.
SmartHealth healthOfLogPage(const SmartSector& page);

/// An NVMe name space; the log is its drive's.
class LinuxNvmeDrive : public SmartInterface {
 public:
  explicit LinuxNvmeDrive(FileDescriptor device) : device_(std::move(device)) {}

  bool hasHealthLog() const override { return true; }
  int enable() override { return 0; }  // always on
  int readData(SmartSector& sector) override;
  int readThresholds(SmartSector& sector) override;
  int readHealth(SmartHealth& health) override;

  /// Whether the drive warns of anything critical. 0 or an errno.
  int readVerdict(bool& failing);

 private:
  int readLogPage(SmartSector& page);

  FileDescriptor device_;
};

}  // namespace brisko
