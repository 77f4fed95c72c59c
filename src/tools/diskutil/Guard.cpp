#include "Guard.h"

#include "Failure.h"
#include "FileSystems.h"
#include "RegularFile.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include <libmount/libmount.h>

namespace brisko::diskutil {
namespace {

// A mounted file system over several devices names one of them as mounted; the others are just as
// much in use.
bool isMemberOfMounted(const Signature& signature) {
  std::error_code error;
  const std::filesystem::path folder = "/sys/fs/btrfs/" + signature.uuid + "/devices";
  return signature.type == "btrfs" && !signature.uuid.empty() &&
         signature.uuid.find('/') == std::string::npos && std::filesystem::exists(folder, error);
}

void refuseInUseItself(const Inventory& inventory, const Device& device,
                       const std::vector<const Device*>& together) {
  const std::string& name = device.block.identifier;
  if (device.isSwap) throw Failure(name + " is in use as swap space");
  for (const Mount& mount : device.mounts) {
    if (isOfRunningSystem(mount.target)) {
      throw Failure(fmt::format("{} holds the running system (it is mounted at {})", name,
                                escapedForDisplay(mount.target)));
    }
    for (const Mount& inner : inventory.mounts().within(mount)) {
      const bool goesToo = std::any_of(together.begin(), together.end(), [&](const Device* other) {
        return inner.device != 0 && other->block.number == inner.device;
      });
      if (goesToo) continue;
      throw Failure(fmt::format("something else is mounted inside {}, at {}", name,
                                escapedForDisplay(inner.target)));
    }
  }
  if (!device.block.holders.empty())
    throw Failure(fmt::format("{} is in use by {}", name, device.block.holders.front()));
  if (isMemberOfMounted(device.signature) && !device.isMounted())
    throw Failure(name + " is in use by a mounted file system over several devices");
}

}  // namespace

void refuseInUse(const Inventory& inventory, const Device& device) {
  std::vector<const Device*> together = {&device};
  if (device.isWhole()) {
    for (const Device& partition : inventory.diskOf(device).partitions)
      together.push_back(&partition);
  }
  for (const Device* each : together)
    refuseInUseItself(inventory, *each, together);
}

void refuseUnlessVolume(const Inventory& inventory, const Device& device) {
  const std::string& name = device.block.identifier;
  const Signature& signature = device.signature;
  if (device.isWhole() && !inventory.diskOf(device).partitions.empty())
    throw Failure(name + " is a whole disk with partitions; say one of its volumes");
  if (device.isWhole() && !signature.tableType.empty() && signature.usage.empty())
    throw Failure(name + " is a whole disk with a partition table, not a volume");
  if (!signature.isKnown) throw Failure(name + " cannot be looked into");
  if (device.isExtended()) throw Failure(name + " is a partition that holds others, not a volume");
  if (device.block.isOptical) throw Failure(name + " is an optical disc");
  if (device.block.isReadOnly) throw Failure(name + " cannot be written: it is read-only");
  if (signature.usage == "raid" || signature.type == "zfs_member")
    throw Failure(fmt::format("{} is part of a larger volume ({})", name,
                              escapedForDisplay(namesOf(signature).name)));
  const bool isShared = signature.type == "btrfs" && inventory.withUuid(signature.uuid).size() > 1;
  if (isShared) throw Failure(name + " shares one file system with other devices");
}

void refuseNamedInStart(const Device& device, const StartTags& tags) {
  const std::string& id = device.block.identifier;
  const std::unique_ptr<libmnt_table, void (*)(libmnt_table*)> table(
      mnt_new_table_from_file("/etc/fstab"), [](libmnt_table* it) { mnt_unref_table(it); });
  int error = 0;
  const std::string line = readFile("/proc/cmdline", 65536, error).value_or("");
  for (const auto& [tag, value] : tags) {
    if (value.empty()) continue;
    libmnt_fs* entry =
        table ? mnt_table_find_tag(table.get(), tag, value.c_str(), MNT_ITER_FORWARD) : nullptr;
    // What is mounted by hand only stops no start.
    if (entry != nullptr && mnt_fs_get_option(entry, "noauto", nullptr, nullptr) != 0)
      throw Failure(fmt::format("/etc/fstab finds {} by its {}; change that first", id, tag));
    if (line.find(fmt::format("root={}={}", tag, value)) != std::string::npos)
      throw Failure(fmt::format("the machine starts from {} by its {}", id, tag));
  }
}

}  // namespace brisko::diskutil
