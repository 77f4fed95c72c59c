#include "DiskOffers.h"

#include "DiskCommandText.h"
#include "Host.h"
#include "SystemLog.h"
#include "VolumeName.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>

#include <unistd.h>

namespace brisko {
namespace {

bool isOneName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// Drivers outside of the kernel all go by one name there; the inventory read the device itself.
std::string typeOf(const MountedVolume& volume, const DiskAndVolumeObj& node) {
  return volume.fileSystemName == "fuseblk" ? node.diskType : volume.fileSystemName;
}

std::string fileSystemType(const DiskAndVolumeObj& node, const std::string& place,
                           const std::vector<MountedVolume>& mounted) {
  const auto mountedAt = [&](const std::string& root) {
    return std::find_if(mounted.begin(), mounted.end(),
                        [&](const MountedVolume& volume) { return volume.root == root; });
  };
  // A place of the volume's name may be another volume's that has the same.
  auto found = mountedAt(node.diskMount);
  if (found == mounted.end()) found = mountedAt(place);
  if (found == mounted.end()) {
    SystemLog::line("Result:{} Volume: {}, Removable:{}, W:{}, Unmountable:{}, Desc:{}, type:{}", 0,
                    place, 0, 0, 0, "", "");
    return node.diskType;
  }
  const bool isRemovable = found->place == MountedVolume::Place::removable ||
                           found->place == MountedVolume::Place::externalBus ||
                           found->place == MountedVolume::Place::optical;
  const std::string type = typeOf(*found, node);
  SystemLog::line("Result:{} Volume: {}, Removable:{}, W:{}, Unmountable:{}, Desc:{}, type:{}", 1,
                  place, int{isRemovable}, int{!found->isReadOnly}, int{found->root != "/"},
                  node.diskEx, type);
  return type;
}

}  // namespace

std::optional<std::string> volumePlace(const DiskAndVolumeObj& node) {
  const std::string folder = Host::current().folders->volumes() + "/";
  const std::string& mount = node.diskMount;
  const auto exists = [](const std::string& path) { return ::access(path.c_str(), F_OK) == 0; };
  if (isOneName(node.volumeName) && exists(folder + node.volumeName)) {
    return folder + node.volumeName;
  }
  const bool liesThere = mount.starts_with(folder) && isOneName(mount.substr(folder.size()));
  if (liesThere && exists(mount)) return mount;
  return std::nullopt;
}

DiskOffers checkNTFS(const DiskAndVolumeObj& node, bool isSystemVolume,
                     const std::vector<MountedVolume>& mounted) {
  DiskOffers offers;
  offers.eject = node.bCanEject;
  if (node.isDisk) return offers;
  const auto place = volumePlace(node);
  if (!place) return offers;
  if (lowerCase(fileSystemType(node, *place, mounted)).find("ntfs") != std::string::npos) {
    offers.format = true;
    return offers;
  }
  offers.rename = true;
  offers.format = node.diskMount != "/" && node.diskType != "Disk Image" && !isSystemVolume;
  return offers;
}

std::string nameTooLong(std::size_t length, std::size_t fitting) {
  return fmt::format("The name is too long: it has {} characters, and {} fit.", length, fitting);
}

std::string renameRefusal(const DiskAndVolumeObj& volume, const std::string& name) {
  const std::string given = VolumeName::forType(name, volume.diskType);
  const std::string command = DiskCommandText::rename(volume.diskUUID, given);
  if (DiskCommandText::fits(command, DiskCommandText::kRenameRoom)) return "";
  return nameTooLong(VolumeName::characterCount(given),
                     DiskCommandText::fittingForRename(volume.diskUUID, given));
}

}  // namespace brisko
