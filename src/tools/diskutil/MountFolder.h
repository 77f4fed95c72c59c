#pragma once

#include <string>

namespace brisko::diskutil {

/// The folder in which a volume is to be mounted again after its name has changed. Volumes of people
/// are mounted in a folder of their own name below /media or /run/media: such a folder is made anew
/// and the old one taken away when that is empty; any other folder stays.
class MountFolder {
 public:
  /// True for a folder that is named after the volume.
  static bool isNamedAfterVolume(const std::string& folder);

  /// `old` is where it was mounted, `name` what it is called now.
  MountFolder(const std::string& old, const std::string& name);
  /// Takes a new folder away again unless `keep` was called.
  ~MountFolder();
  MountFolder(const MountFolder&) = delete;
  MountFolder& operator=(const MountFolder&) = delete;

  const std::string& path() const { return path_; }
  void keep();

 private:
  std::string old_;
  std::string path_;
  bool isNew_ = false;
};

}  // namespace brisko::diskutil
