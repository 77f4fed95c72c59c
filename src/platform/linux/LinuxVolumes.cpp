#include "LinuxVolumes.h"

#include "LibMount.h"
#include "LinuxDrive.h"
#include "SystemLog.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string_view>

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

struct TableDeleter {
  void operator()(libmnt_table* table) const { mnt_unref_table(table); }
};
struct IteratorDeleter {
  void operator()(libmnt_iter* iterator) const { mnt_free_iter(iterator); }
};

std::string text(const char* value) {
  return value == nullptr ? std::string() : value;
}

// Mounts that hold no files of people though their file system is a real one: boot loaders' own
// partitions, and the read-only images of packaged applications.
bool holdsNoFilesOfPeople(std::string_view root, std::string_view type) {
  for (std::string_view boot : {"/boot", "/efi"}) {
    if (root == boot || (root.starts_with(boot) && root[boot.size()] == '/')) return true;
  }
  return type == "squashfs" || type == "erofs" || type == "fuse.portal" ||
         type == "fuse.gvfsd-fuse" || type == "fuse.snapfuse";
}

// The folder of the device in sysfs, of the whole disk for a partition; empty when there is none.
std::string wholeDiskFolder(dev_t device) {
  std::error_code error;
  const fs::path link =
      "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device));
  fs::path folder = fs::canonical(link, error);
  if (error) return {};
  if (fs::exists(folder / "partition", error)) folder = folder.parent_path();
  return folder.string();
}

bool flagIsSet(const std::string& file) {
  std::ifstream stream(file);
  int value = 0;
  return stream >> value && value != 0;
}

bool isOnExternalBus(std::string_view sysfsFolder) {
  for (std::string_view bus : {"/usb", "/firewire", "/thunderbolt"}) {
    if (sysfsFolder.find(bus) != std::string_view::npos) return true;
  }
  return false;
}

bool isOptical(std::string_view sysfsFolder, std::string_view type) {
  return type == "iso9660" || sysfsFolder.find("/block/sr") != std::string_view::npos;
}

// The label as udev has put it into the names below /dev/disk/by-label.
std::string labelOf(const std::string& device) {
  std::error_code error;
  const fs::path wanted = fs::canonical(device, error);
  if (error) return {};
  for (fs::directory_iterator each("/dev/disk/by-label", error), end; !error && each != end;
       each.increment(error)) {
    std::error_code broken;
    if (fs::canonical(each->path(), broken) == wanted) return udevDecoded(each->path().filename());
  }
  return {};
}

// Drivers outside of the kernel all go by one name there; the device manager may know more.
std::string fileSystemOf(libmnt_fs* mount) {
  const std::string type = text(mnt_fs_get_fstype(mount));
  if (type != "fuseblk") return type;
  const dev_t device = mnt_fs_get_devno(mount);
  const std::string known = udevProperty(
      "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device)),
      "ID_FS_TYPE");
  return known.empty() ? type : known;
}

std::string nameOf(const MountedVolume& volume) {
  std::string label = volume.device.starts_with("/dev/") ? labelOf(volume.device) : std::string();
  if (!label.empty()) return label;
  if (volume.root == "/") return "System";
  return fs::path(volume.root).filename();
}

void addPlace(MountedVolume& volume, dev_t device, bool isNetwork) {
  const std::string folder = wholeDiskFolder(device);
  if (isNetwork) {
    volume.place = MountedVolume::Place::network;
  } else if (isOptical(folder, volume.fileSystemName)) {
    volume.place = MountedVolume::Place::optical;
  } else if (isOnExternalBus(folder)) {
    volume.place = MountedVolume::Place::externalBus;
  } else if (!folder.empty() && flagIsSet(folder + "/removable")) {
    volume.place = MountedVolume::Place::removable;
  }
  volume.isEjectable = volume.root != "/" && volume.place != MountedVolume::Place::fixed;
}

void addSizes(MountedVolume& volume) {
  struct statvfs sizes;
  if (statvfs(volume.root.c_str(), &sizes) != 0) return;
  volume.totalBytes = std::uint64_t{sizes.f_blocks} * sizes.f_frsize;
  volume.freeBytes = std::uint64_t{sizes.f_bavail} * sizes.f_frsize;
  volume.isReadOnly = (sizes.f_flag & ST_RDONLY) != 0;
}

// A mount that shows only a part of its file system (a bind mount) shows nothing of its own, except
// where sub-volumes make that the ordinary way of mounting.
bool showsAPartOnly(libmnt_fs* mount) {
  const std::string type = text(mnt_fs_get_fstype(mount));
  const std::string part = text(mnt_fs_get_root(mount));
  return part != "/" && type != "btrfs";
}

// In a changed root ("/" of a container or a rescue system) no mount stands for "/"; the volume is
// there all the same.
MountedVolume rootWithoutMount() {
  MountedVolume volume;
  volume.root = "/";
  struct stat status;
  if (stat("/", &status) == 0) addPlace(volume, status.st_dev, false);
  addSizes(volume);
  volume.name = nameOf(volume);
  return volume;
}

}  // namespace

std::vector<MountedVolume> linuxMountedVolumes(const std::string& mountInfo) {
  std::vector<MountedVolume> volumes;
  std::unique_ptr<libmnt_table, TableDeleter> table;
  std::unique_ptr<libmnt_iter, IteratorDeleter> iterator;
  if (libmount.isThere()) {
    table.reset(mnt_new_table_from_file(mountInfo.c_str()));
    iterator.reset(mnt_new_iter(MNT_ITER_FORWARD));
  }
  if (!table || !iterator) {
    SystemLog::line("Could not read the mount table: {}", mountInfo);
    return volumes;
  }
  std::set<std::string> seen;
  libmnt_fs* mount = nullptr;
  while (mnt_table_next_fs(table.get(), iterator.get(), &mount) == 0) {
    MountedVolume volume;
    volume.root = text(mnt_fs_get_target(mount));
    volume.device = text(mnt_fs_get_source(mount));
    volume.fileSystemName = fileSystemOf(mount);
    const bool isRoot = volume.root == "/";
    if (!isRoot && (mnt_fs_is_pseudofs(mount) || showsAPartOnly(mount) ||
                    holdsNoFilesOfPeople(volume.root, volume.fileSystemName))) {
      continue;
    }
    // Something mounted later on the same folder hides this one.
    if (mnt_table_find_target(table.get(), volume.root.c_str(), MNT_ITER_BACKWARD) != mount)
      continue;
    if (!seen.insert(volume.device.empty() ? volume.root : volume.device).second) continue;
    const bool isNetwork = mnt_fs_is_netfs(mount) != 0 || volume.fileSystemName == "fuse.sshfs" ||
                           volume.fileSystemName == "fuse.rclone";
    addPlace(volume, mnt_fs_get_devno(mount), isNetwork);
    addSizes(volume);
    volume.name = nameOf(volume);
    if (isRoot) {
      volumes.insert(volumes.begin(), std::move(volume));
    } else {
      volumes.push_back(std::move(volume));
    }
  }
  if (volumes.empty() || volumes.front().root != "/") {
    volumes.insert(volumes.begin(), rootWithoutMount());
  }
  return volumes;
}

}  // namespace brisko
