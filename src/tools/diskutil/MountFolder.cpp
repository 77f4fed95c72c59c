#include "MountFolder.h"

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::diskutil {
namespace {

namespace fs = std::filesystem;

bool isFolderOfVolumes(const fs::path& folder) {
  const fs::path above = folder.parent_path();
  return folder == "/media" || above == "/media" || above == "/run/media";
}

}  // namespace

bool MountFolder::isNamedAfterVolume(const std::string& folder) {
  return isFolderOfVolumes(fs::path(folder).parent_path());
}

MountFolder::MountFolder(const std::string& old, const std::string& name) : old_(old), path_(old) {
  const fs::path parent = fs::path(old).parent_path();
  std::string wanted = name;
  std::replace(wanted.begin(), wanted.end(), '/', '_');
  if (!isFolderOfVolumes(parent) || wanted.empty() || wanted == "." || wanted == "..") return;
  const std::string folder = (parent / wanted).string();
  if (folder == old) return;
  // A folder that is there already belongs to someone.
  struct stat above;
  if (lstat(parent.c_str(), &above) != 0 || !S_ISDIR(above.st_mode)) return;
  if (mkdir(folder.c_str(), 0755) != 0) return;
  path_ = folder;
  isNew_ = true;
}

MountFolder::~MountFolder() {
  if (isNew_) rmdir(path_.c_str());
}

void MountFolder::keep() {
  if (!isNew_) return;
  isNew_ = false;
  rmdir(old_.c_str());
}

}  // namespace brisko::diskutil
