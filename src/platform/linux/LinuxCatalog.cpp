#include "LinuxCatalog.h"

#include "FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>

namespace brisko {
namespace {

constexpr std::size_t kBufferSize = 32 * 1024;
constexpr int kFolderFlags =
    O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOATIME;

// As the kernel lays an entry out.
struct DirectoryEntry {
  std::uint64_t inode;
  std::int64_t offset;
  std::uint16_t length;
  std::uint8_t type;
  char name[1];
};
constexpr std::size_t kNameOffset = 19;

FileKind kindOfType(std::uint8_t type) {
  switch (type) {
    case DT_REG:
      return FileKind::regular;
    case DT_DIR:
      return FileKind::directory;
    case DT_LNK:
      return FileKind::symbolicLink;
    case DT_FIFO:
      return FileKind::fifo;
    case DT_SOCK:
      return FileKind::socket;
    case DT_CHR:
      return FileKind::characterDevice;
    case DT_BLK:
      return FileKind::blockDevice;
    default:
      return FileKind::unknown;
  }
}

// Reading without leaving an access time is granted to the owner only; others read with one.
int openFolderAt(int folder, const char* name, std::uint64_t resolve) {
  open_how how{};
  how.flags = kFolderFlags;
  how.resolve = resolve;
  long descriptor = syscall(SYS_openat2, folder, name, &how, sizeof how);
  if (descriptor < 0 && errno == EPERM) {
    how.flags &= ~std::uint64_t{O_NOATIME};
    descriptor = syscall(SYS_openat2, folder, name, &how, sizeof how);
  }
  return static_cast<int>(descriptor);
}

void fill(CatalogItem& item, const struct statx& status) {
  item.kind = fileKind(status.stx_mode);
  item.inode = status.stx_ino;
  const bool hasContent = item.kind == FileKind::regular || item.kind == FileKind::symbolicLink;
  item.dataSize = hasContent ? status.stx_size : 0;
  item.allocatedSize = status.stx_blocks * 512;
  item.device = makedev(status.stx_dev_major, status.stx_dev_minor);
  item.links = status.stx_nlink;
  item.isMountPoint = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  item.modificationSeconds = status.stx_mtime.tv_sec;
  item.modificationNanoseconds = status.stx_mtime.tv_nsec;
  const bool hasCreation = (status.stx_mask & STATX_BTIME) != 0;
  item.creationSeconds = hasCreation ? status.stx_btime.tv_sec : 0;
  item.hasInformation = true;
}

bool lookUp(int folder, const char* name, int flags, CatalogItem& item) {
  struct statx status;
  constexpr int kFlags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
  if (statx(folder, name, kFlags | flags, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
    return false;
  }
  fill(item, status);
  return true;
}

class LinuxFolder : public Catalog::Folder {
 public:
  explicit LinuxFolder(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

  bool read(CatalogBatch& batch, std::size_t maximum) override;

  void information(std::span<CatalogItem> items) override {
    for (CatalogItem& item : items)
      lookUp(descriptor_.get(), item.name.data(), 0, item);
  }

  std::unique_ptr<Folder> open(std::string_view name, int& error) override {
    const std::string terminated(name);
    constexpr std::uint64_t kResolve =
        RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV;
    return made(openFolderAt(descriptor_.get(), terminated.c_str(), kResolve), error);
  }

  std::unique_ptr<Folder> openParent(std::uint64_t device, std::uint64_t inode,
                                     int& error) override {
    auto parent = made(openFolderAt(descriptor_.get(), "..", RESOLVE_NO_XDEV), error);
    if (!parent) return nullptr;
    const CatalogItem found = parent->self();
    if (found.device == device && found.inode == inode) return parent;
    error = ESTALE;
    return nullptr;
  }

  int error() const override { return error_; }

  CatalogItem self() const override {
    CatalogItem item;
    lookUp(descriptor_.get(), "", AT_EMPTY_PATH, item);
    return item;
  }

  static std::unique_ptr<Folder> made(int descriptor, int& error) {
    error = descriptor < 0 ? errno : 0;
    if (descriptor < 0) return nullptr;
    return std::make_unique<LinuxFolder>(FileDescriptor(descriptor));
  }

 private:
  std::size_t fillBuffer(std::vector<char>& names);

  FileDescriptor descriptor_;
  std::vector<char> left_;  ///< entries that were read but did not fit into the caller's batch
  int error_ = 0;
};

// How many bytes of entries `names` begins with; 0 at the end. It keeps its size from read to read,
// because growing it again would clear it each time.
std::size_t LinuxFolder::fillBuffer(std::vector<char>& names) {
  if (!left_.empty()) {
    names.swap(left_);
    left_.clear();
    return names.size();
  }
  if (names.size() < kBufferSize) names.resize(kBufferSize);
  const long count = syscall(SYS_getdents64, descriptor_.get(), names.data(), names.size());
  // A folder that was removed while it was open has ended.
  error_ = count < 0 && errno != ENOENT ? errno : 0;
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool LinuxFolder::read(CatalogBatch& batch, std::size_t maximum) {
  batch.items.clear();
  while (batch.items.empty()) {
    const std::size_t filled = fillBuffer(batch.names);
    if (filled == 0) return false;
    const char* const names = batch.names.data();
    std::size_t at = 0;
    while (at < filled && (maximum == 0 || batch.items.size() < maximum)) {
      const char* entry = names + at;
      DirectoryEntry fields;
      std::memcpy(&fields, entry, kNameOffset);
      at += fields.length;
      const std::string_view name = entry + kNameOffset;
      if (name == "." || name == "..") continue;
      CatalogItem& item = batch.items.emplace_back();
      item.name = name;
      item.kind = kindOfType(fields.type);
      item.inode = fields.inode;
    }
    if (at < filled) left_.assign(names + at, names + filled);
  }
  return true;
}

// Opens what stands before the last component, piece by piece where the path is longer than the
// kernel takes at once, and leaves that component in `last`.
FileDescriptor openHolder(const std::string& path, std::string& last, int& error) {
  FileDescriptor holder;
  int at = AT_FDCWD;
  std::string rest = path;
  while (rest.size() >= PATH_MAX) {
    const std::size_t cut = rest.rfind('/', PATH_MAX - 2);
    if (cut == std::string::npos || cut == 0) {
      error = ENAMETOOLONG;
      return {};
    }
    FileDescriptor next(openat(at, rest.substr(0, cut).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    error = next ? 0 : errno;
    if (!next) return {};
    holder = std::move(next);
    at = holder.get();
    rest.erase(0, rest.find_first_not_of('/', cut));
  }
  error = 0;
  last = rest;
  return holder;
}

}  // namespace

std::unique_ptr<Catalog::Folder> LinuxCatalog::open(const std::string& path, int& error) {
  std::string last;
  const FileDescriptor holder = openHolder(path, last, error);
  if (error != 0) return nullptr;
  auto folder =
      LinuxFolder::made(openFolderAt(holder ? holder.get() : AT_FDCWD, last.c_str(), 0), error);
  if (error == ELOOP) error = ENOTDIR;
  return folder;
}

CatalogItem LinuxCatalog::information(const std::string& path) {
  CatalogItem item;
  std::string last;
  int error = 0;
  const FileDescriptor holder = openHolder(path, last, error);
  if (error == 0 && !last.empty()) {
    lookUp(holder ? holder.get() : AT_FDCWD, last.c_str(), 0, item);
  }
  return item;
}

}  // namespace brisko
