#pragma once

#include "FileIdentity.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// A file or folder in a list of the shredder.
struct FileObj {
  std::string name;       ///< last path component
  std::string url;        ///< absolute path, its folder free of links
  std::int64_t size = 0;  ///< bytes; 0 for folders and for what holds nothing
  std::string icon;       ///< name in the icon-naming convention of desktops
  std::string type;       ///< the path extension, or "Folder"
  bool isDir = false;     ///< a link to a folder is none
  bool isSelect = true;   ///< ticked
  bool isSSD = false;     ///< it lies on a solid-state disk
  std::string failStr;    ///< the outcome; empty before

  std::string reason;  ///< one line for people why it failed; empty else
  /// What it was when it was added: nothing else is ever erased in its place.
  std::optional<FileIdentity> identity;
  std::uint32_t links = 1;  ///< names that the file has

  /// Finds out on what kind of disk it lies and fills in `isSSD`.
  void setIsSSD();
};

using FileObjs = std::vector<std::shared_ptr<FileObj>>;

/// The record of what is at `path`, relative paths being taken from the working folder. A path that
/// leads through links is given as where it really leads; a link itself is never followed. Null
/// when nothing is there, with errno's value in `error`.
std::shared_ptr<FileObj> buildFileObj(const std::string& path, int& error);

/// Appends all that the folder holds, each folder after its contents, in the order of the listings.
/// A folder that cannot be read is appended with the reason; one on another file system too. Links
/// are not followed. Depth costs no descriptors. False when `cancel` was set.
bool eumeAllArrWithFileObj(const FileObj& folder, FileObjs& arr,
                           const std::atomic<bool>* cancel = nullptr);

/// The item is a bundle, which is deleted as a whole: its name's extension is "app".
bool isAppBundle(const FileObj& item);

/// Whether `path` lies in `folder`, at any depth.
bool isBelow(const std::string& path, const std::string& folder);

}  // namespace brisko
