#include "Mounts.h"

#include "Failure.h"
#include "LinuxBlockDevices.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <string_view>

#include <fmt/format.h>
#include <libmount/libmount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace brisko::diskutil {
namespace {

using Table = std::unique_ptr<libmnt_table, void (*)(libmnt_table*)>;
using Iterator = std::unique_ptr<libmnt_iter, void (*)(libmnt_iter*)>;

std::string text(const char* value) {
  return value != nullptr ? value : "";
}

dev_t deviceAt(const std::string& path) {
  struct stat status;
  const bool isDevice = path.starts_with('/') && stat(path.c_str(), &status) == 0 &&
                        S_ISBLK(status.st_mode);
  return isDevice ? status.st_rdev : 0;
}

// File systems over several devices, and those of programs, have a number that no device has; the
// table names the device.
dev_t deviceOf(libmnt_fs* entry) {
  const dev_t number = mnt_fs_get_devno(entry);
  std::error_code error;
  if (std::filesystem::exists(
          fmt::format("/sys/dev/block/{}:{}", major(number), minor(number)), error)) {
    return number;
  }
  return deviceAt(text(mnt_fs_get_srcpath(entry)));
}

Mount mountOf(libmnt_fs* entry) {
  Mount mount;
  mount.id = mnt_fs_get_id(entry);
  mount.parentId = mnt_fs_get_parent_id(entry);
  mount.device = deviceOf(entry);
  mount.number = mnt_fs_get_devno(entry);
  mount.target = text(mnt_fs_get_target(entry));
  mount.type = text(mnt_fs_get_fstype(entry));
  mount.options = text(mnt_fs_get_options(entry));
  mount.part = text(mnt_fs_get_root(entry));
  mount.isReadOnly = mnt_fs_match_options(entry, "ro") == 1;
  return mount;
}

// In a changed root no mount stands for "/"; the device is in use for it all the same.
void addRootOfThisProcess(std::vector<Mount>& mounts) {
  const dev_t device = linuxRootDevice();
  const bool isThere = std::any_of(mounts.begin(), mounts.end(),
                                   [](const Mount& mount) { return mount.target == "/"; });
  if (isThere || device == 0) return;
  Mount root;
  root.device = device;
  root.number = device;
  root.target = "/";
  root.part = "/";
  mounts.insert(mounts.begin(), root);
}

}  // namespace

Mounts Mounts::read() {
  Mounts all;
  const Table table(mnt_new_table_from_file("/proc/self/mountinfo"),
                    [](libmnt_table* it) { mnt_unref_table(it); });
  const Iterator iterator(mnt_new_iter(MNT_ITER_FORWARD), mnt_free_iter);
  if (!table || !iterator) throw Failure("the table of mounts cannot be read");
  libmnt_fs* entry = nullptr;
  while (mnt_table_next_fs(table.get(), iterator.get(), &entry) == 0)
    all.mounts.push_back(mountOf(entry));
  addRootOfThisProcess(all.mounts);

  const Table swaps(mnt_new_table(), [](libmnt_table* it) { mnt_unref_table(it); });
  // A kernel without swap has no such file.
  if (!swaps || mnt_table_parse_swaps(swaps.get(), nullptr) != 0) return all;
  mnt_reset_iter(iterator.get(), MNT_ITER_FORWARD);
  while (mnt_table_next_fs(swaps.get(), iterator.get(), &entry) == 0) {
    if (const dev_t device = deviceAt(text(mnt_fs_get_srcpath(entry)))) all.swaps.push_back(device);
  }
  return all;
}

std::vector<Mount> Mounts::of(dev_t device) const {
  std::vector<Mount> found;
  std::copy_if(mounts.begin(), mounts.end(), std::back_inserter(found), [&](const Mount& mount) {
    return device != 0 && mount.device == device;
  });
  return found;
}

std::vector<Mount> Mounts::within(const Mount& mount) const {
  std::vector<Mount> found;
  std::vector<int> above = {mount.id};
  // A mount comes after the one it is on, except after moves; so go round until nothing is new.
  for (std::size_t known = 0; known != above.size();) {
    known = above.size();
    for (const Mount& other : mounts) {
      const auto has = [&](int id) {
        return std::find(above.begin(), above.end(), id) != above.end();
      };
      if (other.id == other.parentId || !has(other.parentId) || has(other.id)) continue;
      above.push_back(other.id);
      found.push_back(other);
    }
  }
  return found;
}

bool isOfRunningSystem(const std::string& target) {
  constexpr std::array<std::string_view, 18> kFolders = {
      "/",    "/bin", "/boot", "/efi",  "/etc", "/gnu", "/home", "/lib", "/lib64",
      "/nix", "/opt", "/root", "/sbin", "/srv", "/tmp", "/usr",  "/var", "/run"};
  if (std::find(kFolders.begin(), kFolders.end(), target) != kFolders.end()) return true;
  for (std::string_view part : {"/boot/", "/efi/", "/usr/", "/var/", "/nix/", "/gnu/"}) {
    if (target.starts_with(part)) return true;
  }
  // Someone's home.
  return target.starts_with("/home/") && target.find('/', 6) == std::string::npos;
}

}  // namespace brisko::diskutil
