#include "DeletablePermission.h"

#include "PathResolution.h"
#include "Removal.h"
#include "SystemLog.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr int kFailed = -1;

// Whether this user may take the item's name out of its folder, and for a folder what is in it.
bool isDeletable(const ParentFolder& parent, const struct statx& item) {
  struct statx folder;
  if (factsOf(RemovalCalls::system(), parent.folder.get(), "", folder) == kFailed) return false;
  if (::faccessat(parent.folder.get(), ".", W_OK | X_OK, AT_EACCESS) != 0) return false;
  const uid_t user = ::geteuid();
  const bool isSticky = (folder.stx_mode & S_ISVTX) != 0;
  if (isSticky && user != 0 && item.stx_uid != user && folder.stx_uid != user) return false;
  return !S_ISDIR(item.stx_mode) ||
         ::faccessat(parent.folder.get(), parent.name.c_str(), R_OK | W_OK | X_OK, AT_EACCESS) == 0;
}

}  // namespace

DeletablePermission::DeletablePermission(const std::string& path,
                                         const std::optional<FileIdentity>& shown) {
  const RemovalCalls& calls = RemovalCalls::system();
  const ParentFolder parent = openParent(calls, path);
  if (parent.error != 0) return;
  FileDescriptor item(openWith(calls, parent.folder.get(), parent.name.c_str(), O_PATH | O_NOFOLLOW,
                               kNoMagicLinksNoMounts));
  struct statx facts;
  if (!item || factsOf(calls, item.get(), "", facts) == kFailed) return;
  if (S_ISLNK(facts.stx_mode) || (shown && !isShownItem(facts, *shown))) return;
  if (isDeletable(parent, facts)) return;
  const mode_t mode = facts.stx_mode & 07777;
  if (calls.chmod(item.get(), mode | S_IRWXU) != 0) {
    SystemLog::line("Set deletable attributed failed: {}", std::strerror(errno));
    return;
  }
  modeBefore_ = mode;
  item_ = std::move(item);
}

DeletablePermission::~DeletablePermission() {
  struct stat status;
  if (!modeBefore_ || ::fstat(item_.get(), &status) != 0 || status.st_nlink == 0) return;
  RemovalCalls::system().chmod(item_.get(), *modeBefore_);
}

}  // namespace brisko
