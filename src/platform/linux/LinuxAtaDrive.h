#pragma once

#include "FileDescriptor.h"
#include "SmartDevice.h"

#include <optional>
#include <span>

namespace brisko {

/// Which ATA registers a drive's answer left, as far as commands of the health kind use them.
struct AtaRegisters {
  std::uint8_t error = 0;
  std::uint8_t count = 0;
  std::uint8_t lbaMid = 0;
  std::uint8_t lbaHigh = 0;
  std::uint8_t status = 0;
};

/// Reads the registers out of the sense data that a SCSI layer returns for a passed-through
/// command. Nothing when it holds none.
std::optional<AtaRegisters> ataRegisters(std::span<const std::uint8_t> sense);

/// An ATA drive, spoken to through the SCSI layer's pass-through (SG_IO).
class LinuxAtaDrive : public SmartInterface {
 public:
  explicit LinuxAtaDrive(FileDescriptor device) : device_(std::move(device)) {}

  bool hasHealthLog() const override { return false; }
  int enable() override;
  int readData(SmartSector& sector) override;
  int readThresholds(SmartSector& sector) override;
  int readHealth(SmartHealth& health) override;

  /// The answer to IDENTIFY DEVICE, 256 little-endian words. 0 or an errno.
  int readIdentify(SmartSector& sector);

  /// Whether the drive itself foresees its failure. 0 or an errno; EAGAIN for a drive that sleeps,
  /// which is not woken up for it.
  int readVerdict(bool& failing);

 private:
  FileDescriptor device_;
};

}  // namespace brisko
