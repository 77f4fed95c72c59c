#include "Machine.h"

#include <cstdio>

#include <fcntl.h>
#include <grp.h>
#include <linux/capability.h>
#include <linux/fs.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

constexpr int kNotAllowed = 254;

}  // namespace

std::string buildTree() {
  return BRISKO_TEST_BUILD_TREE;
}

bool isRoot() {
  return geteuid() == 0;
}

int inChild(const std::function<int()>& work) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const int result = work();
    std::fflush(nullptr);
    _exit(result);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

int inMountNamespace(const std::function<int()>& work) {
  const int result = inChild([&] {
    if (unshare(CLONE_NEWNS) != 0 ||
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
      return kNotAllowed;
    }
    return work();
  });
  return result == kNotAllowed ? -2 : result;
}

int asUser(uid_t uid, const std::function<int()>& work) {
  return inChild([&] {
    if (setgroups(0, nullptr) != 0 || setresgid(uid, uid, uid) != 0 ||
        setresuid(uid, uid, uid) != 0) {
      return kNotAllowed;
    }
    return work();
  });
}

void BoundByModes::set(bool passesOver) {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[2] = {};
  if (syscall(SYS_capget, &header, data) != 0) return;
  constexpr std::uint32_t kRights = 1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH;
  data[0].effective &= ~kRights;
  if (passesOver) data[0].effective |= data[0].permitted & kRights;
  syscall(SYS_capset, &header, data);
}

bool setImmutable(const std::string& path, bool immutable) {
  const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return false;
  int flags = 0;
  bool done = ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
  flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
  done = done && ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
  close(file);
  return done;
}

}  // namespace brisko::test
