#pragma once

#include "FSRef.h"

#include <atomic>
#include <cstdint>
#include <string>

/// Additions to the platform's file manager. All are reentrant and may be called from any thread.
namespace brisko::NSFileManager {

/// Bytes of what `path` names: a link's own size, never its target's; a folder's whole tree; 0 when
/// nothing can be read. Blocks while a tree is walked: not for the main thread. `cancel` ends that
/// early, with what was counted until then.
std::uint64_t fileSize(const std::string& path, const std::atomic<bool>* cancel = nullptr);

/// Sum of the logical sizes of data and resource forks below a folder, or of the item itself; 0
/// when it cannot be looked at or is not the referenced item any more. Links are not followed and
/// mounts not crossed.
std::uint64_t fastFolderSizeAtFSRef(const FSRef& reference,
                                    const std::atomic<bool>* cancel = nullptr);

/// Whether `path` itself is a symbolic link.
bool isFileSymbolicLink(const std::string& path);

/// The reference for `path`, a link being itself. On failure "Failed to create FSRef." is logged
/// and the reference is unfilled.
FSRef convertStringToFSRef(const std::string& path);

/// What a new folder is made with.
struct FolderAttributes {
  unsigned posixPermissions = 0777;  ///< less the process's mask
};

/// Makes the last component when nothing is at the path. Missing parents are not made; then, as on
/// every other failure, nothing happens. Always true.
bool createDirectoryAtPathWithIntermediateDirectories(const std::string& path,
                                                      const FolderAttributes& attributes = {});

/// Whether the device that holds `path` has no moving parts. False, with a log line, when that
/// cannot be found out.
bool isSolidState(const std::string& path);

}  // namespace brisko::NSFileManager
