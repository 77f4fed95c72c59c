#include "LinuxBlockDevices.h"

#include "FileDescriptor.h"
#include "LibMount.h"
#include "LinuxDrive.h"
#include "RegularFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <tuple>

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kSector = 512;  // sysfs counts in these whatever the drive's own are
// An empty floppy drive reports some KiB.
constexpr std::uint64_t kLeastMedium = std::uint64_t{64} << 10;
// What an optical drive without a disc reports.
constexpr std::uint64_t kNoDisc = std::uint64_t{0x1FFFFF} * kSector;

std::uint64_t number(const std::string& file) {
  const std::string text = sysfsText(file);
  std::uint64_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

/// sysfs writes a slash of a device's name as an exclamation mark.
std::string identifierOf(std::string name) {
  std::replace(name.begin(), name.end(), '!', '/');
  return name;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    names.push_back(identifierOf(entry->path().filename().string()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// True for what no one would call a disk, by name.
bool isNoDisk(std::string_view name) {
  for (std::string_view prefix : {"ram", "zram", "mtdblock", "nullb"}) {
    if (name.starts_with(prefix)) return true;
  }
  // The boot areas of soldered flash memory stand beside it as disks of their own.
  return name.starts_with("mmcblk") && (name.find("boot") != std::string_view::npos ||
                                        name.find("rpmb") != std::string_view::npos);
}

bool hasDisc(const LinuxBlockDevice& device) {
  const FileDescriptor drive(open(device.node().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!drive) return device.size != kNoDisc;
  const int status = ioctl(drive.get(), CDROM_DRIVE_STATUS, CDSL_CURRENT);
  return status == CDS_DISC_OK || (status < 0 && device.size != kNoDisc);
}

bool isPackagedApplication(const LinuxBlockDevice& device) {
  return device.backingFile.starts_with("/var/lib/snapd/");
}

LinuxBlockDevice partitionOf(const LinuxBlockDevice& disk, const std::string& folder) {
  LinuxBlockDevice partition = disk;
  partition.partitions.clear();
  partition.slaves.clear();
  partition.folder = folder;
  partition.identifier = identifierOf(fs::path(folder).filename().string());
  partition.number = linuxNodeOf(folder).number;
  partition.size = number(folder + "/size") * kSector;
  partition.partition = static_cast<int>(number(folder + "/partition"));
  partition.isReadOnly = disk.isReadOnly || number(folder + "/ro") != 0;
  partition.holders = namesIn(folder + "/holders");
  return partition;
}

std::vector<LinuxBlockDevice> partitionsOf(const LinuxBlockDevice& disk) {
  std::vector<LinuxBlockDevice> partitions;
  std::error_code error;
  for (fs::directory_iterator entry(disk.folder, error);
       !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code none;
    if (!fs::exists(entry->path() / "partition", none)) continue;
    partitions.push_back(partitionOf(disk, entry->path().string()));
  }
  std::sort(partitions.begin(), partitions.end(),
            [](const auto& left, const auto& right) { return left.partition < right.partition; });
  return partitions;
}

std::optional<LinuxBlockDevice> diskAt(const std::string& link) {
  std::error_code error;
  const fs::path folder = fs::canonical(link, error);
  if (error) return std::nullopt;  // it was unplugged since the folder was read
  LinuxBlockDevice disk;
  disk.folder = folder.string();
  disk.identifier = identifierOf(folder.filename().string());
  disk.number = linuxNodeOf(disk.folder).number;
  disk.size = number(disk.folder + "/size") * kSector;
  disk.isReadOnly = number(disk.folder + "/ro") != 0;
  disk.isRotational = number(disk.folder + "/queue/rotational") != 0;
  disk.holders = namesIn(disk.folder + "/holders");
  disk.slaves = namesIn(disk.folder + "/slaves");
  if (isNoDisk(disk.identifier) || disk.size < kLeastMedium ||
      number(disk.folder + "/hidden") != 0) {
    return std::nullopt;
  }
  describeDrive(disk);
  if (disk.isLoop && disk.backingFile.empty()) return std::nullopt;
  if ((disk.isOptical && !hasDisc(disk)) || isPackagedApplication(disk)) return std::nullopt;
  disk.partitions = partitionsOf(disk);
  return disk;
}

bool carries(const std::vector<LinuxBlockDevice>& all, const LinuxBlockDevice& disk, dev_t device,
             int depth = 0) {
  // A cycle is impossible in the kernel, but the folder is read while it changes.
  if (device == 0 || depth > 16) return false;
  if (disk.number == device) return true;
  std::set<std::string> holders(disk.holders.begin(), disk.holders.end());
  for (const LinuxBlockDevice& partition : disk.partitions) {
    if (partition.number == device) return true;
    holders.insert(partition.holders.begin(), partition.holders.end());
  }
  return std::any_of(all.begin(), all.end(), [&](const LinuxBlockDevice& other) {
    return holders.contains(other.identifier) && carries(all, other, device, depth + 1);
  });
}

/// "sdb" before "sdaa", "nvme2" before "nvme10".
std::tuple<std::string, std::size_t, std::uint64_t, std::string> sortKey(const std::string& name) {
  const std::size_t digit = std::min(name.find_first_of("0123456789"), name.size());
  std::uint64_t value = 0;
  std::from_chars(name.data() + digit, name.data() + name.size(), value);
  return {name.substr(0, std::min<std::size_t>(digit, 2)), digit, value, name};
}

}  // namespace

dev_t linuxRootDevice() {
  struct stat status;
  if (stat("/", &status) != 0) return 0;
  std::error_code error;
  const std::string entry =
      fmt::format("/sys/dev/block/{}:{}", major(status.st_dev), minor(status.st_dev));
  if (fs::exists(entry, error)) return status.st_dev;
  // File systems over several devices have a number that no device has.
  if (!libmount.isThere()) return 0;
  const std::unique_ptr<libmnt_table, void (*)(libmnt_table*)> table(
      mnt_new_table_from_file("/proc/self/mountinfo"), [](libmnt_table* t) { mnt_unref_table(t); });
  libmnt_fs* root = table ? mnt_table_find_target(table.get(), "/", MNT_ITER_BACKWARD) : nullptr;
  const char* source = root != nullptr ? mnt_fs_get_srcpath(root) : nullptr;
  if (source == nullptr || stat(source, &status) != 0 || !S_ISBLK(status.st_mode)) return 0;
  return status.st_rdev;
}

std::vector<LinuxBlockDevice> linuxDisks(const std::string& sysfs, dev_t rootDevice) {
  std::vector<LinuxBlockDevice> disks;
  std::error_code error;
  for (fs::directory_iterator entry(sysfs + "/block", error);
       !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (auto disk = diskAt(entry->path().string())) disks.push_back(std::move(*disk));
  }
  using Rank = std::tuple<int, bool, decltype(sortKey(""))>;
  std::vector<std::pair<Rank, std::size_t>> order;
  for (std::size_t index = 0; index < disks.size(); ++index) {
    const LinuxBlockDevice& disk = disks[index];
    const int kind = disk.isLoop ? 3 : disk.isVirtual ? 2 : disk.isOptical ? 1 : 0;
    order.push_back({{kind, !carries(disks, disk, rootDevice), sortKey(disk.identifier)}, index});
  }
  std::sort(order.begin(), order.end());
  std::vector<LinuxBlockDevice> sorted;
  for (const auto& [rank, index] : order)
    sorted.push_back(std::move(disks[index]));
  return sorted;
}

}  // namespace brisko
