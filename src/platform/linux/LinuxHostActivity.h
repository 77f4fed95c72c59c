#pragma once

#include "HostActivity.h"

namespace brisko {

/// /proc/diskstats, /proc/net/dev, /proc/uptime and the sensors below /sys.
class LinuxHostActivity : public HostActivity {
 public:
  /// `root` stands for "/" where the files of the kernel are looked for; tests put their own there.
  explicit LinuxHostActivity(std::string root = "");

  std::vector<TransferCounters> disks() override;
  std::vector<TransferCounters> networkInterfaces() override;
  std::vector<Temperature> temperatures() override;
  std::optional<std::uint64_t> upTimeSeconds() override;

 private:
  std::string text(const std::string& path) const;
  bool exists(const std::string& path) const;

  std::string root_;
};

}  // namespace brisko
