#pragma once

#include "LinuxAuthorization.h"

#include <string>

#include <sys/types.h>

namespace brisko::test {

/// Stands in for polkit and sudo: a process that stays root and starts the real removal helper for
/// a test that has become another user.
class RootLauncher {
 public:
  explicit RootLauncher(uid_t user);
  ~RootLauncher();
  RootLauncher(const RootLauncher&) = delete;
  RootLauncher& operator=(const RootLauncher&) = delete;

  LinuxAuthorization::Launcher launcher() const;
  int starts() const;  ///< how often a helper was started

 private:
  int socket_ = -1;
  pid_t process_ = -1;
  int* starts_ = nullptr;
};

std::string builtHelper();

}  // namespace brisko::test
