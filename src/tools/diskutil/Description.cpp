#include "Description.h"

#include "CommUti.h"
#include "FileSystems.h"
#include "LinuxAtaDrive.h"
#include "LinuxNvmeDrive.h"
#include "LinuxSmartDevice.h"
#include "Utf8.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

#include <fmt/format.h>

namespace brisko::diskutil {
namespace {

/// Text as an XML document can hold it: what is not UTF-8, and the control characters that XML does
/// not know, become replacement characters.
std::string forXml(std::string_view text) {
  std::string clean;
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
    const auto byte = static_cast<unsigned char>(text.front());
    const bool isControl = byte < 0x20 && byte != '\t' && byte != '\n';
    const bool isNoCharacter =
        length == 3 && (text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF"));
    if (length == 0 || isControl || isNoCharacter) {
      clean += "\xEF\xBF\xBD";
    } else {
      clean.append(text.substr(0, length));
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return clean;
}

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string ownMediaName(const LinuxBlockDevice& disk) {
  if (!isBlank(disk.model)) return disk.model;
  const std::string noun = disk.bus == "Disk Image" ? " " : " Disk ";
  return disk.bus + noun + disk.identifier;
}

bool comesOff(const LinuxBlockDevice& block) {
  return block.isRemovable || block.isExternal;
}

/// An identifier that a command line can carry as one bare word.
bool isPlainUuid(std::string_view uuid) {
  return !uuid.empty() && uuid.size() <= 64 &&
         std::all_of(uuid.begin(), uuid.end(), [](unsigned char character) {
           return std::isalnum(character) != 0 || character == '-';
         });
}

std::string content(const Device& device) {
  if (!device.isWhole()) return contentOfPartition(device.signature.partitionType);
  return contentOfTable(device.signature.tableType);
}

PropertyList::Dictionary entryOf(const Device& device) {
  return {{"DeviceIdentifier", forXml(device.block.identifier)},
          {"Content", content(device)},
          {"Size", device.block.size}};
}

PropertyList partitionEntry(const Device& device) {
  PropertyList::Dictionary entry = entryOf(device);
  entry["VolumeName"] = forXml(volumeName(device));
  if (device.isMounted()) entry["MountPoint"] = forXml(mountPoint(device));
  return entry;
}

void addVolume(PropertyList& list, const Device& device) {
  const Signature& signature = device.signature;
  const FileSystemNames names = namesOf(signature);
  if (!names.name.empty()) {
    list.set("FilesystemName", forXml(names.name));
    list.set("FilesystemUserVisibleName", forXml(names.visible));
    list.set("FilesystemType", forXml(signature.type));
  }
  list.set("GlobalPermissionsEnabled", names.keepsOwners);
  list.set("VolumeName", forXml(volumeName(device)));
  if (isPlainUuid(signature.uuid)) list.set("VolumeUUID", signature.uuid);
  const Mount* mount = device.mainMount();
  list.set("WritableVolume", mount != nullptr && !mount->isReadOnly && !device.block.isReadOnly);
}

}  // namespace

std::string mediaName(const Inventory& inventory, const Device& device) {
  const Disk& disk = inventory.diskOf(device);
  const std::string name = ownMediaName(disk.device.block);
  if (comesOff(disk.device.block)) return name;
  for (const Disk& other : inventory.disks()) {
    if (&other == &disk) break;
    if (ownMediaName(other.device.block) == name)
      return fmt::format("{} ({})", name, disk.device.block.identifier);
  }
  return name;
}

std::string volumeName(const Device& device) {
  if (!isBlank(device.signature.label)) return device.signature.label;
  if (isBootPartition(device.signature.partitionType)) return "EFI";
  return CommUti::longlongDiskSize(device.block.size) + " Volume";
}

std::string mountPoint(const Device& device) {
  const Mount* mount = device.mainMount();
  return mount != nullptr ? mount->target : "";
}

bool isEjectable(const Inventory& inventory, const Device& device) {
  const Disk& disk = inventory.diskOf(device);
  const auto holdsSystem = [](const Device& each) {
    return std::any_of(each.mounts.begin(), each.mounts.end(),
                       [](const Mount& mount) { return isOfRunningSystem(mount.target); });
  };
  return comesOff(disk.device.block) && !holdsSystem(disk.device) &&
         std::none_of(disk.partitions.begin(), disk.partitions.end(), holdsSystem);
}

std::string smartStatus(const Inventory& inventory, const Device& device) {
  const LinuxBlockDevice& disk = inventory.diskOf(device).device.block;
  if (disk.isVirtual || disk.isOptical) return "Not Supported";
  LinuxSmartDevice registry;
  const auto node = registry.nodeAtPath(disk.folder);
  const bool isAta = node && (node->ataFeatures & 32U) != 0;
  if (!node || (!isAta && !node->hasSmartCapable)) return "Not Supported";
  int error = 0;
  const auto drive = registry.open(*node, error);
  bool failing = false;
  if (auto* ata = dynamic_cast<LinuxAtaDrive*>(drive.get())) {
    error = ata->readVerdict(failing);
  } else if (auto* nvme = dynamic_cast<LinuxNvmeDrive*>(drive.get())) {
    error = nvme->readVerdict(failing);
  }
  if (error == ENOTSUP || error == EIO) return "Not Supported";
  if (error != 0) return {};
  return failing ? "Failing" : "Verified";
}

PropertyList listing(const Inventory& inventory) {
  PropertyList::Array identifiers;
  PropertyList::Array wholes;
  PropertyList::Array mounted;
  PropertyList::Array entries;
  for (const Disk& disk : inventory.disks()) {
    PropertyList::Dictionary entry = entryOf(disk.device);
    PropertyList::Array partitions;
    identifiers.emplace_back(entry["DeviceIdentifier"]);
    wholes.emplace_back(entry["DeviceIdentifier"]);
    for (const Device* volume : inventory.volumes(disk)) {
      PropertyList partition = partitionEntry(*volume);
      if (!volume->isWhole()) identifiers.emplace_back(partition["DeviceIdentifier"]);
      if (volume->isMounted()) mounted.emplace_back(partition["VolumeName"]);
      partitions.push_back(std::move(partition));
    }
    entry["Partitions"] = std::move(partitions);
    entries.emplace_back(std::move(entry));
  }
  PropertyList list;
  list.set("AllDisks", std::move(identifiers));
  list.set("WholeDisks", std::move(wholes));
  list.set("VolumesFromDisks", std::move(mounted));
  list.set("AllDisksAndPartitions", std::move(entries));
  return list;
}

PropertyList information(const Inventory& inventory, const Device& device) {
  const Disk& disk = inventory.diskOf(device);
  const LinuxBlockDevice& drive = disk.device.block;
  const std::vector<const Device*> volumes = inventory.volumes(disk);
  PropertyList list;
  list.set("BusProtocol", drive.bus);
  list.set("Content", content(device));
  list.set("DeviceIdentifier", forXml(device.block.identifier));
  list.set("DeviceNode", forXml(device.block.node()));
  list.set("Ejectable", isEjectable(inventory, device));
  list.set("FreeSpace", device.freeBytes);
  list.set("Internal", !drive.isExternal && !drive.isVirtual);
  list.set("MediaName", forXml(mediaName(inventory, device)));
  list.set("MountPoint", forXml(mountPoint(device)));
  list.set("ParentWholeDisk", forXml(drive.identifier));
  list.set("RemovableMedia", drive.isRemovable);
  const std::string status = smartStatus(inventory, device);
  if (!status.empty()) list.set("SMARTStatus", status);
  list.set("Size", device.block.size);
  list.set("SolidState", !drive.isRotational && !drive.isOptical);
  list.set("TotalSize", device.totalBytes);
  list.set("VirtualOrPhysical", drive.isVirtual ? "Virtual" : "Physical");
  list.set("WholeDisk", device.isWhole());
  list.set("Writable", !device.block.isReadOnly);
  const bool isVolume = std::find(volumes.begin(), volumes.end(), &device) != volumes.end();
  if (isVolume) {
    addVolume(list, device);
  } else {
    list.set("VolumeName", "");
  }
  return list;
}

}  // namespace brisko::diskutil
