#include "UnlinkGuard.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brisko::test {
namespace {

struct Allowed {
  std::mutex mutex;
  std::vector<std::string> folders{BRISKO_TEST_BUILD_TREE};
};

Allowed& allowed() {
  static auto* folders = new Allowed;
  return *folders;
}

std::string readLink(int descriptor) {
  char path[PATH_MAX];
  const ssize_t length =
      readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), path, sizeof path);
  return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

// Where a folder's descriptor leads. The kernel tells no path longer than a page; of a deeper
// folder one a little above the first that has a path says as much.
std::string folderOf(int descriptor) {
  constexpr int kFewest = 8;  // so many names of full length have a path
  std::string path = readLink(descriptor);
  int at = path.empty() ? dup(descriptor) : -1;
  for (int levels = 512; path.empty() && levels >= kFewest;) {
    std::string climb;
    for (int i = 0; i < levels; ++i)
      climb += "../";
    const int above = openat(at, climb.c_str(), O_PATH | O_CLOEXEC);
    const std::string found = readLink(above);
    if (found.empty()) {
      close(at);
      at = above;
    } else {
      close(above);
      if (levels == kFewest) path = found;
      levels /= 2;
    }
  }
  if (at >= 0) close(at);
  return path;
}

std::string absolutePath(int folder, const char* path) {
  std::string full = path;
  if (folder != AT_FDCWD && full.find('/') == std::string::npos)
    return folderOf(folder) + "/" + full;
  if (*path != '/') {
    if (folder == AT_FDCWD) {
      char here[PATH_MAX];
      full = std::string(getcwd(here, sizeof here) != nullptr ? here : "") + "/" + full;
    } else {
      full = folderOf(folder) + "/" + full;
    }
  }
  while (full.size() > 1 && full.back() == '/')
    full.pop_back();
  const std::size_t slash = full.rfind('/');
  char real[PATH_MAX];
  const std::string parent = full.substr(0, slash);
  if (parent.size() < PATH_MAX && realpath(parent.c_str(), real) != nullptr) {
    full = real + full.substr(slash);
  }
  return full;
}

bool isAllowed(const std::string& path) {
  // The test framework's own, while it captures what a test prints.
  if (path.starts_with("/tmp/gtest_captured_stream")) return true;
  const std::lock_guard lock(allowed().mutex);
  return std::any_of(
      allowed().folders.begin(), allowed().folders.end(),
      [&](const std::string& folder) { return path == folder || path.starts_with(folder + "/"); });
}

void check(const char* call, int folder, const char* path) {
  const int error = errno;
  const std::string full = absolutePath(folder, path);
  if (!isAllowed(full)) {
    std::fprintf(stderr, "unlink guard: %s of \"%s\" is outside the test's own folders\n", call,
                 full.c_str());
    std::abort();
  }
  errno = error;
}

int answer(long result) {
  return static_cast<int>(result);
}

}  // namespace

void UnlinkGuard::allow(const std::string& folder) {
  const std::lock_guard lock(allowed().mutex);
  allowed().folders.push_back(folder);
}

void UnlinkGuard::disallow(const std::string& folder) {
  const std::lock_guard lock(allowed().mutex);
  std::erase(allowed().folders, folder);
}

}  // namespace brisko::test

// Defined in the program itself these come before the C library's and the sanitizers' own, for
// shared libraries too.
using brisko::test::answer;
using brisko::test::check;

extern "C" {

int unlink(const char* path) noexcept {
  check("unlink", AT_FDCWD, path);
  return answer(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

int unlinkat(int folder, const char* path, int flags) noexcept {
  check("unlinkat", folder, path);
  return answer(syscall(SYS_unlinkat, folder, path, flags));
}

int rmdir(const char* path) noexcept {
  check("rmdir", AT_FDCWD, path);
  return answer(syscall(SYS_unlinkat, AT_FDCWD, path, AT_REMOVEDIR));
}

int remove(const char* path) noexcept {
  check("remove", AT_FDCWD, path);
  const long result = syscall(SYS_unlinkat, AT_FDCWD, path, 0);
  if (result != 0 && (errno == EISDIR || errno == EPERM)) {
    return answer(syscall(SYS_unlinkat, AT_FDCWD, path, AT_REMOVEDIR));
  }
  return answer(result);
}

int renameat2(int from, const char* old, int to, const char* name, unsigned flags) noexcept {
  check("rename", from, old);
  check("rename", to, name);
  return answer(syscall(SYS_renameat2, from, old, to, name, flags));
}

int renameat(int from, const char* old, int to, const char* name) noexcept {
  return renameat2(from, old, to, name, 0);
}

int rename(const char* old, const char* name) noexcept {
  return renameat2(AT_FDCWD, old, AT_FDCWD, name, 0);
}

}  // extern "C"
