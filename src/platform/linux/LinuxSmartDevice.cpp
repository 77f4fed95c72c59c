#include "LinuxSmartDevice.h"

#include "FileDescriptor.h"
#include "LinuxAtaDrive.h"
#include "LinuxDrive.h"
#include "LinuxNvmeDrive.h"
#include "RegularFile.h"

#include <fmt/format.h>

#include <cerrno>
#include <charconv>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kSmartFeature = 32;
// The page in which SCSI drives carry an ATA drive's identity begins it here.
constexpr std::size_t kIdentityOffset = 60;
constexpr std::size_t kFeatureSetByte = 164;  // word 82

bool isNvme(const std::string& name) {
  return name.starts_with("nvme");
}

/// The feature bits of an ATA drive, from whatever tells them without a question to the drive;
/// nothing when this is none.
std::optional<std::uint32_t> ataFeatures(const std::string& folder) {
  int error = 0;
  const std::string identity = readFile(folder + "/device/vpd_pg89", 4096, error).value_or("");
  if (identity.size() > kIdentityOffset + kFeatureSetByte) {
    const bool smart = (identity[kIdentityOffset + kFeatureSetByte] & 1) != 0;
    return smart ? kSmartFeature : 0;
  }
  if (udevProperty(folder, "ID_ATA") == "1")
    return udevProperty(folder, "ID_ATA_FEATURE_SET_SMART") == "1" ? kSmartFeature : 0;
  // Nobody has asked it yet; nearly all can, and one that cannot refuses later.
  if (sysfsText(folder + "/device/vendor") == "ATA") return kSmartFeature;
  return std::nullopt;
}

FileDescriptor openNode(const std::string& folder, int& error) {
  const LinuxNode node = linuxNodeOf(folder);
  FileDescriptor device(::open(node.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
  struct stat status;
  if (!device) {
    error = errno == ENOENT || errno == ENXIO ? ENODEV : errno;
  } else if (fstat(device.get(), &status) != 0 || !S_ISBLK(status.st_mode) ||
             status.st_rdev != node.number) {
    error = ENODEV;
    device.reset();
  }
  return device;
}

/// A USB bridge says nothing of the drive behind it; that must be asked.
bool passesCommandsOn(const std::string& folder) {
  int error = 0;
  FileDescriptor device = openNode(folder, error);
  if (!device) return false;
  SmartSector sector;
  return LinuxAtaDrive(std::move(device)).readIdentify(sector) == 0;
}

}  // namespace

LinuxSmartDevice::LinuxSmartDevice(std::string sysfs) : sysfs_(std::move(sysfs)) {}

std::vector<LinuxBlockDevice> LinuxSmartDevice::physicalDisks() const {
  std::vector<LinuxBlockDevice> disks = linuxDisks(sysfs_);
  std::erase_if(disks, [](const auto& disk) { return disk.isVirtual || disk.isOptical; });
  return disks;
}

SmartNode LinuxSmartDevice::describe(const std::string& folder) const {
  SmartNode node;
  node.path = folder;
  std::error_code error;
  const LinuxNode device = linuxNodeOf(folder);
  if (device.number == 0) return node;
  node.name = device.path.substr(sizeof "/dev/" - 1);
  if (fs::exists(folder + "/partition", error)) return node;
  LinuxBlockDevice disk;
  disk.identifier = node.name;
  disk.folder = folder;
  describeDrive(disk);
  if (isNvme(node.name)) {
    node.hasSmartCapable = true;
  } else if (const auto features = ataFeatures(folder)) {
    node.isATABlockStorageDevice = true;
    node.ataFeatures = *features;
  } else if (node.name.starts_with("sd") && disk.bus == "USB") {
    node.hasSmartCapable = passesCommandsOn(folder);
  }
  return node;
}

std::optional<SmartNode> LinuxSmartDevice::nodeWithName(const std::string& name) {
  std::string entry = name;
  for (char& character : entry)
    if (character == '/') character = '!';
  std::error_code error;
  const fs::path folder = fs::canonical(sysfs_ + "/class/block/" + entry, error);
  if (!error && !entry.empty() && entry.front() != '.') return describe(folder.string());
  if (!name.starts_with("disk")) return std::nullopt;
  std::size_t index = 0;
  const char* end = name.data() + name.size();
  const auto [rest, failure] = std::from_chars(name.data() + 4, end, index);
  const std::vector<LinuxBlockDevice> disks = physicalDisks();
  if (failure != std::errc() || rest != end || index >= disks.size()) return std::nullopt;
  return describe(disks[index].folder);
}

std::optional<SmartNode> LinuxSmartDevice::nodeAtPath(const std::string& path) {
  std::error_code error;
  if (path.starts_with("/dev/")) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || !S_ISBLK(status.st_mode))
      return nodeWithName(path.substr(sizeof "/dev/" - 1));
    const fs::path folder = fs::canonical(
        fmt::format("{}/dev/block/{}:{}", sysfs_, major(status.st_rdev), minor(status.st_rdev)),
        error);
    return error ? std::nullopt : std::optional(describe(folder.string()));
  }
  const fs::path folder = fs::canonical(path, error);
  if (error || !folder.string().starts_with(sysfs_ + "/devices/")) return std::nullopt;
  return describe(folder.string());
}

std::optional<SmartNode> LinuxSmartDevice::parent(const SmartNode& node) {
  const std::string above = fs::path(node.path).parent_path().string();
  if (!above.starts_with(sysfs_ + "/devices/")) return std::nullopt;
  return nodeAtPath(above);
}

std::unique_ptr<SmartInterface> LinuxSmartDevice::open(const SmartNode& node, int& error) {
  error = 0;
  FileDescriptor device = openNode(node.path, error);
  if (!device) return nullptr;
  if (isNvme(node.name)) return std::make_unique<LinuxNvmeDrive>(std::move(device));
  return std::make_unique<LinuxAtaDrive>(std::move(device));
}

}  // namespace brisko
