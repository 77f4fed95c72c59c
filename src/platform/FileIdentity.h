#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct stat;

namespace brisko {

enum class FileKind : std::uint8_t {
  regular,
  directory,
  symbolicLink,
  fifo,
  socket,
  characterDevice,
  blockDevice,
  unknown,
};

/// Which item a path named at the moment it was shown to the user.
///
/// Before anything is removed the path is looked at again and must still name the same item: same
/// device, inode and kind, and for a regular file the same size and modification time. A folder's
/// own times are left out because its content is what the user asked to remove.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  FileKind kind = FileKind::unknown;
  std::uint64_t size = 0;                    ///< bytes; regular files only, else 0
  std::int64_t modificationSeconds = 0;      ///< since 1970, UTC; regular files only, else 0
  std::int64_t modificationNanoseconds = 0;  ///< 0 to 999,999,999; regular files only, else 0

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;

  static FileIdentity of(const struct stat& status);

  /// The identity of what `path` names, a link being itself; nothing when it cannot be looked at.
  static std::optional<FileIdentity> at(const std::string& path);
};

FileKind fileKind(std::uint32_t mode);

}  // namespace brisko
