#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

namespace brisko::test {

/// A user of the machine without any right, and what else tests need of a machine.
inline constexpr uid_t kNobody = 65534;

bool isRoot();

/// The folder that this build writes to, absolute. Kept here alone, so that no other test source
/// depends on where the checkout lies.
std::string buildTree();

/// Runs `work` in a child process and returns what it returned (0 to 255), or -1 when it crashed.
/// The child ends without cleaning up after the parent's objects.
int inChild(const std::function<int()>& work);

/// The same in a mount name space of its own, where mounts are not seen by others. -2 when the
/// machine does not allow that.
int inMountNamespace(const std::function<int()>& work);

/// The same as the user `uid` without further groups.
int asUser(uid_t uid, const std::function<int()>& work);

/// As long as it lives, this thread and those it starts are bound by files' modes, root or not.
class BoundByModes {
 public:
  BoundByModes() { set(false); }
  ~BoundByModes() { set(true); }
  BoundByModes(const BoundByModes&) = delete;
  BoundByModes& operator=(const BoundByModes&) = delete;

 private:
  static void set(bool passesOver);
};

/// Sets or clears the immutable attribute. False when the file system has none.
bool setImmutable(const std::string& path, bool immutable);

}  // namespace brisko::test
