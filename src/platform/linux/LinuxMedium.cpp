#include "LibMount.h"
#include "Medium.h"
#include "RegularFile.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

std::string registryEntry(dev_t device) {
  return fmt::format("/sys/dev/block/{}:{}", major(device), minor(device));
}

// File systems over several devices give their files a number that no device has; the mount table
// names one of the devices.
dev_t deviceOfMount(dev_t number) {
  if (!libmount.isThere()) return 0;
  const std::unique_ptr<libmnt_table, void (*)(libmnt_table*)> table(
      mnt_new_table_from_file("/proc/self/mountinfo"), [](libmnt_table* t) { mnt_unref_table(t); });
  if (!table) return 0;
  libmnt_fs* mount = mnt_table_find_devno(table.get(), number, MNT_ITER_BACKWARD);
  const char* source = mount != nullptr ? mnt_fs_get_srcpath(mount) : nullptr;
  struct stat status;
  if (source == nullptr || stat(source, &status) != 0 || !S_ISBLK(status.st_mode)) return 0;
  return status.st_rdev;
}

}  // namespace

Medium mediumOf(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0) return Medium::noDevice;
  std::error_code error;
  dev_t device = status.st_dev;
  if (!fs::exists(registryEntry(device), error)) device = deviceOfMount(device);
  if (device == 0) return Medium::noDevice;
  fs::path entry = fs::canonical(registryEntry(device), error);
  if (error) return Medium::unreadable;
  // A partition knows nothing of this; the disk above it does.
  for (; entry.has_relative_path() && entry.filename() != "devices"; entry = entry.parent_path()) {
    int reason = 0;
    const auto rotational = readFile((entry / "queue/rotational").string(), 64, reason);
    if (rotational) return rotational->starts_with('0') ? Medium::solidState : Medium::rotating;
    if (reason != ENOENT && reason != ENOTDIR) return Medium::unreadable;
  }
  return Medium::noParent;
}

}  // namespace brisko
