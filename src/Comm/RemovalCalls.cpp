#include "RemovalCalls.h"

#include <cerrno>
#include <string>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brisko {

const RemovalCalls& RemovalCalls::system() {
  static const RemovalCalls calls = [] {
    RemovalCalls made;
    made.openat2 = [](int folder, const char* path, const open_how& how) {
      return static_cast<int>(::syscall(SYS_openat2, folder, path, &how, sizeof how));
    };
    made.statx = [](int folder, const char* path, int flags, unsigned mask, struct statx& facts) {
      return ::statx(folder, path, flags, mask, &facts);
    };
    made.getdents64 = [](int folder, void* buffer, std::size_t size) {
      return static_cast<ssize_t>(::syscall(SYS_getdents64, folder, buffer, size));
    };
    made.rewind = [](int folder) { return ::lseek(folder, 0, SEEK_SET); };
    made.unlinkat = [](int folder, const char* name, int flags) {
      return ::unlinkat(folder, name, flags);
    };
    made.chmod = [](int descriptor, mode_t mode) {
      if (::fchmod(descriptor, mode) == 0) return 0;
      if (errno != EBADF) return -1;
      // fchmod refuses a descriptor opened with O_PATH; its entry in /proc leads to the same inode,
      // whatever its name has become.
      return ::chmod(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), mode);
    };
    return made;
  }();
  return calls;
}

int openWith(const RemovalCalls& calls, int folder, const char* path, std::uint64_t flags,
             std::uint64_t resolve) {
  open_how how{};
  how.flags = flags | O_CLOEXEC;
  how.resolve = resolve;
  constexpr int kTries = 16;
  int opened = -1;
  for (int tries = 0; tries < kTries; ++tries) {
    opened = calls.openat2(folder, path, how);
    if (opened >= 0 || (errno != EINTR && errno != EAGAIN)) break;
  }
  return opened;
}

int factsOf(const RemovalCalls& calls, int folder, const char* path, struct statx& facts) {
  const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (*path == '\0' ? AT_EMPTY_PATH : 0);
  return calls.statx(folder, path, flags, STATX_BASIC_STATS, facts);
}

}  // namespace brisko
