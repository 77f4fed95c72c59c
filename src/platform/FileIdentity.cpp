#include "FileIdentity.h"

#include <sys/stat.h>

namespace brisko {

FileKind fileKind(std::uint32_t mode) {
  switch (mode & S_IFMT) {
    case S_IFREG:
      return FileKind::regular;
    case S_IFDIR:
      return FileKind::directory;
    case S_IFLNK:
      return FileKind::symbolicLink;
    case S_IFIFO:
      return FileKind::fifo;
    case S_IFSOCK:
      return FileKind::socket;
    case S_IFCHR:
      return FileKind::characterDevice;
    case S_IFBLK:
      return FileKind::blockDevice;
    default:
      return FileKind::unknown;
  }
}

FileIdentity FileIdentity::of(const struct stat& status) {
  FileIdentity identity;
  identity.device = status.st_dev;
  identity.inode = status.st_ino;
  identity.kind = fileKind(status.st_mode);
  if (identity.kind == FileKind::regular) {
    identity.size = static_cast<std::uint64_t>(status.st_size);
    identity.modificationSeconds = status.st_mtim.tv_sec;
    identity.modificationNanoseconds = status.st_mtim.tv_nsec;
  }
  return identity;
}

std::optional<FileIdentity> FileIdentity::at(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0) return std::nullopt;
  return of(status);
}

}  // namespace brisko
