#include "LinuxNvmeDrive.h"

#include <cerrno>
#include <limits>

#include <linux/nvme_ioctl.h>
#include <sys/ioctl.h>

namespace brisko {
namespace {

constexpr std::uint8_t kGetLogPage = 0x02;
constexpr std::uint32_t kHealthLog = 0x02;
constexpr std::uint32_t kEveryNameSpace = 0xFFFFFFFF;
constexpr std::uint32_t kTimeout = 20000;  // ms

// Places in the page.
constexpr std::size_t kWarning = 0;
constexpr std::size_t kTemperature = 1;  // two bytes, kelvins
constexpr std::size_t kPowerCycles = 112;
constexpr std::size_t kPowerOnHours = 128;
constexpr std::int32_t kZeroCelsius = 273;

std::uint64_t counter(const SmartSector& page, std::size_t at) {
  std::uint64_t value = 0;
  for (std::size_t byte = 0; byte < 8; ++byte) {
    value |= std::uint64_t{page[at + byte]} << (8 * byte);
    if (page[at + 8 + byte] != 0) return std::numeric_limits<std::uint64_t>::max();
  }
  return value;
}

int notOfThisKind(SmartSector& sector) {
  sector.fill(0);
  return ENOTSUP;
}

}  // namespace

SmartHealth healthOfLogPage(const SmartSector& page) {
  SmartHealth health;
  const std::int32_t kelvins = page[kTemperature] | page[kTemperature + 1] << 8;
  if (kelvins != 0) health.temperature = kelvins - kZeroCelsius;
  health.powerOnHours = counter(page, kPowerOnHours);
  health.powerCycles = counter(page, kPowerCycles);
  return health;
}

int LinuxNvmeDrive::readLogPage(SmartSector& page) {
  page.fill(0);
  nvme_admin_cmd command{};
  command.opcode = kGetLogPage;
  command.nsid = kEveryNameSpace;
  command.addr = reinterpret_cast<std::uintptr_t>(page.data());
  command.data_len = page.size();
  command.cdw10 = kHealthLog | (page.size() / 4 - 1) << 16;
  command.timeout_ms = kTimeout;
  const int status = ioctl(device_.get(), NVME_IOCTL_ADMIN_CMD, &command);
  if (status == 0) return 0;
  const int error = status > 0 ? EIO : errno == ENOTTY || errno == EINVAL ? ENOTSUP : errno;
  page.fill(0);
  return error;
}

int LinuxNvmeDrive::readData(SmartSector& sector) {
  return notOfThisKind(sector);
}

int LinuxNvmeDrive::readThresholds(SmartSector& sector) {
  return notOfThisKind(sector);
}

int LinuxNvmeDrive::readHealth(SmartHealth& health) {
  SmartSector page;
  const int error = readLogPage(page);
  health = error == 0 ? healthOfLogPage(page) : SmartHealth{};
  return error;
}

int LinuxNvmeDrive::readVerdict(bool& failing) {
  SmartSector page;
  const int error = readLogPage(page);
  failing = error == 0 && page[kWarning] != 0;
  return error;
}

}  // namespace brisko
