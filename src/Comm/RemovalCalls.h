#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace brisko {

/// The system calls that a removal is made of. Each answers as the call itself does: -1 and errno
/// on failure. Tests put a failing one in place of any of them.
struct RemovalCalls {
  std::function<int(int folder, const char* path, const open_how& how)> openat2;
  std::function<int(int folder, const char* path, int flags, unsigned mask, struct statx& facts)>
      statx;
  std::function<ssize_t(int folder, void* buffer, std::size_t size)> getdents64;
  std::function<off_t(int folder)> rewind;
  std::function<int(int folder, const char* name, int flags)> unlinkat;
  /// Changes the mode of what the descriptor stands for, which may have been opened with O_PATH.
  std::function<int(int descriptor, mode_t mode)> chmod;

  /// The kernel's own.
  static const RemovalCalls& system();
};

/// What no step of a removal ever passes: links of any kind.
inline constexpr std::uint64_t kNoLinks = RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
/// For opening an item that may be a link itself.
inline constexpr std::uint64_t kNoMagicLinksNoMounts = RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV;
/// Inside of the item to be removed, mounts neither.
inline constexpr std::uint64_t kNoLinksNoMounts = kNoLinks | RESOLVE_NO_XDEV;

/// `openat2`, begun again when a signal or a rename elsewhere came in between.
int openWith(const RemovalCalls& calls, int folder, const char* path, std::uint64_t flags,
             std::uint64_t resolve);

/// What statx says of `path` itself (links are not followed, nothing is mounted by looking). An
/// empty path is the descriptor's own item.
int factsOf(const RemovalCalls& calls, int folder, const char* path, struct statx& facts);

}  // namespace brisko
