#include "Inventory.h"

#include "Failure.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include <strings.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace brisko::diskutil {
namespace {

bool sameText(const std::string& left, const std::string& right) {
  return strcasecmp(left.c_str(), right.c_str()) == 0;
}

void addSizes(Device& device) {
  device.totalBytes = device.block.size;
  const Mount* mount = device.mainMount();
  struct statvfs sizes;
  if (mount == nullptr || statvfs(mount->target.c_str(), &sizes) != 0) return;
  // Another mount may hide this one, and then the figures are not its. (btrfs gives the files of
  // each sub-volume a number of their own.)
  struct stat status;
  if (stat(mount->target.c_str(), &status) != 0) return;
  if (status.st_dev != mount->number && mount->type != "btrfs") return;
  device.owner = status.st_uid;
  device.group = status.st_gid;
  device.freeBytes = std::uint64_t{sizes.f_bavail} * sizes.f_frsize;
  const std::uint64_t spanned = std::uint64_t{sizes.f_blocks} * sizes.f_frsize;
  device.totalBytes = std::max(device.totalBytes, spanned);
}

Device deviceOf(const LinuxBlockDevice& block, std::size_t disk, const Mounts& mounts,
                const Inventory::Reader& reader) {
  Device device;
  device.block = block;
  device.disk = disk;
  device.signature = reader(block);
  device.mounts = mounts.of(block.number);
  device.isSwap =
      std::find(mounts.swaps.begin(), mounts.swaps.end(), block.number) != mounts.swaps.end();
  if (device.isMounted() && device.signature.type.empty()) {
    device.signature.type = device.mounts.back().type;
    device.signature.usage = "filesystem";
  }
  addSizes(device);
  return device;
}

std::size_t numberAt(const char*& at, const char* end) {
  std::size_t value = 0;
  const auto [rest, error] = std::from_chars(at, end, value);
  at = error == std::errc() ? rest : nullptr;
  return value;
}

}  // namespace

bool Device::isExtended() const {
  const std::string& type = signature.partitionType;
  return type == "0x5" || type == "0xf" || type == "0x85";
}

const Mount* Device::mainMount() const {
  const Mount* best = nullptr;
  for (const Mount& mount : mounts) {
    if (mount.target == "/") return &mount;
    if (best == nullptr || (best->part != "/" && mount.part == "/")) best = &mount;
  }
  return best;
}

Inventory Inventory::read(bool fresh) {
  return of(linuxDisks(), Mounts::read(),
            [fresh](const LinuxBlockDevice& device) { return signatureOf(device, fresh); });
}

Inventory Inventory::of(const std::vector<LinuxBlockDevice>& disks, Mounts mounts,
                        const Reader& reader) {
  Inventory inventory;
  inventory.mounts_ = std::move(mounts);
  for (const LinuxBlockDevice& block : disks) {
    const std::size_t index = inventory.disks_.size();
    // A virtual device that others are made of is but a layer between them and the drive.
    if (block.isVirtual && !block.isLoop && !block.holders.empty()) continue;
    Disk disk{deviceOf(block, index, inventory.mounts_, reader), {}};
    for (const LinuxBlockDevice& partition : block.partitions)
      disk.partitions.push_back(deviceOf(partition, index, inventory.mounts_, reader));
    inventory.disks_.push_back(std::move(disk));
  }
  return inventory;
}

std::vector<const Device*> Inventory::volumes(const Disk& disk) const {
  std::vector<const Device*> found;
  const Device& whole = disk.device;
  const bool isTable = whole.signature.usage.empty() && !whole.isMounted();
  if (whole.isMounted() || (disk.partitions.empty() && !isTable)) found.push_back(&whole);
  for (const Device& partition : disk.partitions)
    if (!partition.isExtended()) found.push_back(&partition);
  return found;
}

std::vector<const Device*> Inventory::all() const {
  std::vector<const Device*> devices;
  for (const Disk& disk : disks_) {
    devices.push_back(&disk.device);
    for (const Device& partition : disk.partitions)
      devices.push_back(&partition);
  }
  return devices;
}

const Device* Inventory::withNumber(dev_t number) const {
  for (const Device* device : all())
    if (device->block.number == number) return device;
  return nullptr;
}

const Device* Inventory::withIdentifier(const std::string& identifier) const {
  for (const Device* device : all())
    if (device->block.identifier == identifier) return device;
  return nullptr;
}

std::vector<const Device*> Inventory::withUuid(const std::string& uuid) const {
  std::vector<const Device*> devices;
  for (const Device* device : all())
    if (!uuid.empty() && sameText(device->signature.uuid, uuid)) devices.push_back(device);
  return devices;
}

const Device* Inventory::byPlace(const std::string& text) const {
  if (!text.starts_with("disk")) return nullptr;
  const char* at = text.data() + 4;
  const char* end = text.data() + text.size();
  const std::size_t index = numberAt(at, end);
  if (at == nullptr || index >= disks_.size()) return nullptr;
  const Disk& disk = disks_[index];
  if (at == end) return &disk.device;
  if (*at++ != 's') return nullptr;
  const auto partition = static_cast<int>(numberAt(at, end));
  for (const Device& device : disk.partitions)
    if (at == end && device.block.partition == partition) return &device;
  return nullptr;
}

const Device& Inventory::find(const std::string& text) const {
  struct stat status;
  if (text.starts_with('/') && stat(text.c_str(), &status) == 0 && S_ISBLK(status.st_mode)) {
    if (const Device* device = withNumber(status.st_rdev)) return *device;
  }
  const std::string name = text.starts_with("/dev/") ? text.substr(5) : text;
  if (const Device* device = withIdentifier(name)) return *device;
  if (const Device* device = byPlace(name)) return *device;
  if (text.starts_with('/')) {
    std::string folder = text;
    while (folder.size() > 1 && folder.back() == '/')
      folder.pop_back();
    // What was mounted last is what is seen there.
    const auto& mounts = mounts_.mounts;
    const auto mount = std::find_if(mounts.rbegin(), mounts.rend(),
                                    [&](const Mount& it) { return it.target == folder; });
    const Device* device = mount != mounts.rend() ? withNumber(mount->device) : nullptr;
    if (device != nullptr) return *device;
  }
  const std::vector<const Device*> same = withUuid(text);
  if (same.size() > 1)
    throw Failure(fmt::format("{} is on {} and on {}: say which", escapedForDisplay(text),
                              same[0]->block.identifier, same[1]->block.identifier));
  if (same.empty()) throw Failure("no disk or volume is called " + escapedForDisplay(text));
  return *same.front();
}

const Device& Inventory::findVolume(const std::string& text) const {
  const std::vector<const Device*> same = withUuid(text);
  // A file system over several devices is one volume; it is renamed where it is mounted.
  for (const Device* device : same)
    if (device->signature.type == "btrfs" && device->isMounted()) return *device;
  return same.size() == 1 ? *same.front() : find(text);
}

std::vector<std::string> Inventory::unreadable() const {
  std::vector<std::string> names;
  for (const Device* device : all())
    if (!device->signature.isKnown) names.push_back(device->block.identifier);
  return names;
}

}  // namespace brisko::diskutil
