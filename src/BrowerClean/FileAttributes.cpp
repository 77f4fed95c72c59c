#include "FileAttributes.h"

#include "FileDescriptor.h"
#include "PathResolution.h"
#include "Removal.h"

#include <fcntl.h>
#include <sys/stat.h>

#ifdef __linux__
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

namespace brisko {

void clearImmutable(const std::string& path, const std::optional<FileIdentity>& shown) {
#ifdef __linux__
  const RemovalCalls& calls = RemovalCalls::system();
  const ParentFolder parent = openParent(calls, path);
  struct statx facts;
  constexpr unsigned kMask = STATX_BASIC_STATS;
  if (parent.error != 0 ||
      ::statx(parent.folder.get(), parent.name.c_str(), AT_SYMLINK_NOFOLLOW, kMask, &facts) != 0) {
    return;
  }
  if ((facts.stx_attributes & STATX_ATTR_IMMUTABLE) == 0) return;
  if (!S_ISREG(facts.stx_mode) && !S_ISDIR(facts.stx_mode)) return;
  if (shown && !isShownItem(facts, *shown)) return;
  const FileDescriptor item(openat(parent.folder.get(), parent.name.c_str(),
                                   O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  int flags = 0;
  if (!item || ioctl(item.get(), FS_IOC_GETFLAGS, &flags) != 0) return;
  flags &= ~FS_IMMUTABLE_FL;
  ioctl(item.get(), FS_IOC_SETFLAGS, &flags);
#else
  static_cast<void>(path);
  static_cast<void>(shown);
#endif
}

}  // namespace brisko
