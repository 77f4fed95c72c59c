#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// What went in and out of a disk or network interface since it appeared, in bytes.
struct TransferCounters {
  std::string name;       ///< "sda", "eth0" …
  std::uint64_t in = 0;   ///< read from the disk, received from the network
  std::uint64_t out = 0;  ///< written to the disk, sent to the network
  bool isUp = true;       ///< an interface that is connected; true for every disk

  friend bool operator==(const TransferCounters&, const TransferCounters&) = default;
};

struct Temperature {
  enum class Kind { processor, drive, other };

  std::string name;  ///< the sensor's label, else what it sits on
  Kind kind = Kind::other;
  double celsius = 0;
};

/// What the machine does and how it fares, beyond what its kernel counters tell. Reads afresh at
/// each call; usable from every thread.
class HostActivity {
 public:
  virtual ~HostActivity() = default;

  /// Whole disks with a device of their own: no partitions, no volumes made of other disks, so that
  /// nothing counts twice. Empty when that is not told.
  virtual std::vector<TransferCounters> disks() = 0;

  /// The machine's network devices; where it has none (in a container), every interface but the
  /// loop-back one. Tunnels and bridges of a machine are left out: their traffic is the devices'.
  virtual std::vector<TransferCounters> networkInterfaces() = 0;

  /// All sensors that answer, the hottest of a kind first.
  virtual std::vector<Temperature> temperatures() = 0;

  /// Seconds since the machine started; nothing when that is not told.
  virtual std::optional<std::uint64_t> upTimeSeconds() = 0;
};

}  // namespace brisko
