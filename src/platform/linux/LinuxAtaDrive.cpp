#include "LinuxAtaDrive.h"

#include <array>
#include <cerrno>

#include <scsi/sg.h>
#include <sys/ioctl.h>

namespace brisko {
namespace {

constexpr std::uint8_t kPassThrough16 = 0x85;
constexpr std::uint8_t kNoData = 3 << 1;  // protocols, in their place of the second byte
constexpr std::uint8_t kDataIn = 4 << 1;
constexpr std::uint8_t kReturnRegisters = 0x20;
constexpr std::uint8_t kFromDevice = 0x08;
constexpr std::uint8_t kCountedBlocks = 0x04 | 0x02;

constexpr std::uint8_t kIdentifyDevice = 0xEC;
constexpr std::uint8_t kSmart = 0xB0;
constexpr std::uint8_t kSmartMid = 0x4F;  // every command of the set carries these two
constexpr std::uint8_t kSmartHigh = 0xC2;
constexpr std::uint8_t kReadData = 0xD0;
constexpr std::uint8_t kReadThresholds = 0xD1;
constexpr std::uint8_t kEnable = 0xD8;
constexpr std::uint8_t kReturnStatus = 0xDA;

constexpr unsigned kTimeout = 20000;  // ms; a sleeping drive spins up first
constexpr std::uint8_t kCheckCondition = 0x02;
constexpr std::uint8_t kNotPermitted = 0x05;
constexpr unsigned kDriverSense = 0x08;

struct Command {
  std::uint8_t command = kSmart;
  std::uint8_t feature = 0;
  std::uint8_t lbaLow = 0;
  bool wantsRegisters = false;
};

struct Answer {
  int error = 0;
  std::optional<AtaRegisters> registers;
};

/// One command; with `data` the drive sends one sector into it.
Answer send(int device, const Command& command, SmartSector* data) {
  std::array<std::uint8_t, 16> block{};
  std::array<std::uint8_t, 64> sense{};
  block[0] = kPassThrough16;
  block[1] = data != nullptr ? kDataIn : kNoData;
  block[2] = static_cast<std::uint8_t>((data != nullptr ? kFromDevice | kCountedBlocks : 0) |
                                       (command.wantsRegisters ? kReturnRegisters : 0));
  block[4] = command.feature;
  block[6] = data != nullptr ? 1 : 0;
  block[8] = command.lbaLow;
  if (command.command == kSmart) {
    block[10] = kSmartMid;
    block[12] = kSmartHigh;
  }
  block[14] = command.command;

  sg_io_hdr_t request{};
  request.interface_id = 'S';
  request.cmdp = block.data();
  request.cmd_len = block.size();
  request.sbp = sense.data();
  request.mx_sb_len = sense.size();
  request.timeout = kTimeout;
  request.dxfer_direction = data != nullptr ? SG_DXFER_FROM_DEV : SG_DXFER_NONE;
  if (data != nullptr) {
    data->fill(0);
    request.dxferp = data->data();
    request.dxfer_len = data->size();
  }

  Answer answer;
  if (ioctl(device, SG_IO, &request) != 0) {
    // Devices of other kinds do not know the call.
    answer.error = errno == ENOTTY || errno == EINVAL ? ENOTSUP : errno;
    return answer;
  }
  answer.registers = ataRegisters(std::span(sense).first(request.sb_len_wr));
  const bool failed = answer.registers && (answer.registers->status & 0x21) != 0;
  const bool refused = request.status == kCheckCondition &&
                       (!answer.registers || (sense[1] & 0x0F) == kNotPermitted);
  const bool lost = request.host_status != 0 || (request.driver_status & ~kDriverSense) != 0 ||
                    (request.status != 0 && request.status != kCheckCondition);
  const bool isShort = data != nullptr && request.resid > 0;
  if (failed || refused || lost || isShort) answer.error = EIO;
  if (answer.error != 0 && data != nullptr) data->fill(0);
  return answer;
}

}  // namespace

std::optional<AtaRegisters> ataRegisters(std::span<const std::uint8_t> sense) {
  constexpr std::size_t kHeader = 8;
  constexpr std::size_t kDescriptor = 14;
  if (sense.size() < kHeader) return std::nullopt;
  const std::uint8_t format = sense[0] & 0x7F;
  if (format == 0x70) {  // some bridges answer in the older form
    if (sense.size() < 12) return std::nullopt;
    return AtaRegisters{sense[3], sense[10], sense[11], sense[4]};
  }
  if (format != 0x72) return std::nullopt;
  for (std::size_t at = kHeader; at + 1 < sense.size(); at += 2U + sense[at + 1]) {
    if (sense[at] != 0x09 || at + kDescriptor > sense.size()) continue;
    return AtaRegisters{sense[at + 3], sense[at + 9], sense[at + 11], sense[at + 13]};
  }
  return std::nullopt;
}

int LinuxAtaDrive::enable() {
  return send(device_.get(), {.feature = kEnable}, nullptr).error;
}

int LinuxAtaDrive::readIdentify(SmartSector& sector) {
  return send(device_.get(), {.command = kIdentifyDevice}, &sector).error;
}

int LinuxAtaDrive::readData(SmartSector& sector) {
  return send(device_.get(), {.feature = kReadData}, &sector).error;
}

int LinuxAtaDrive::readThresholds(SmartSector& sector) {
  return send(device_.get(), {.feature = kReadThresholds, .lbaLow = 1}, &sector).error;
}

int LinuxAtaDrive::readHealth(SmartHealth& health) {
  health = {};
  return ENOTSUP;
}

int LinuxAtaDrive::readVerdict(bool& failing) {
  const Answer answer =
      send(device_.get(), {.feature = kReturnStatus, .wantsRegisters = true}, nullptr);
  if (answer.error != 0) return answer.error;
  if (!answer.registers) return EIO;
  // The drive turns the two values round when a threshold is passed.
  failing = answer.registers->lbaMid == 0xF4 && answer.registers->lbaHigh == 0x2C;
  const bool healthy =
      answer.registers->lbaMid == kSmartMid && answer.registers->lbaHigh == kSmartHigh;
  return failing || healthy ? 0 : EIO;
}

}  // namespace brisko
