#include "DuplicateCopies.h"

#include "BundleContent.h"
#include "SystemLog.h"
#include "ZkAuthorization.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace brisko {
namespace {

bool isOneItem(const FileIdentity& a, const FileIdentity& b) {
  return a.device == b.device && a.inode == b.inode;
}

DuplicateRemoval staying(const DuplicateCopy& copy, RemovalOutcome outcome, std::string reason) {
  SystemLog::line("Remove failed: {}: {}", copy.path, reason);
  DuplicateRemoval removal;
  removal.report.outcome = outcome;
  removal.report.reason = std::move(reason);
  return removal;
}

}  // namespace

bool isStillCopyOf(const DuplicateCopy& copy, const DuplicateCopy& other,
                   const std::atomic<bool>& stop, std::string& reason) {
  if (isOneItem(copy.identity, other.identity)) {
    reason = "the other copy is the same item under another name";
    return false;
  }
  if (copy.isBundle) return BundleContent::pairsUp(copy, other, stop, reason);
  return sameBytes(copy.path, copy.identity, other.path, other.identity, stop, reason);
}

DuplicateRemoval removeDuplicate(const DuplicateCopy& copy, const std::vector<DuplicateCopy>& group,
                                 const std::atomic<bool>& stop) {
  struct stat status;
  if (lstat(copy.path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) {
      return staying(copy, RemovalOutcome::missing, "it is not there any more");
    }
    return staying(copy, RemovalOutcome::failed, std::generic_category().message(errno));
  }
  if (S_ISLNK(status.st_mode)) {
    return staying(copy, RemovalOutcome::throughLink, "it is reached through a link");
  }
  if (FileIdentity::of(status) != copy.identity) {
    return staying(copy, RemovalOutcome::changed, "it has changed since it was found");
  }
  std::string reason = "no other copy is left";
  for (const DuplicateCopy& other : group) {
    if (stop) break;
    if (&other == &copy || other.isGone) continue;
    if (isStillCopyOf(copy, other, stop, reason)) {
      return {ZkAuthorization::shareZkAuthorization().synFastRemovePath(copy.path, copy.identity,
                                                                        &stop),
              true};
    }
  }
  if (stop) return staying(copy, RemovalOutcome::cancelled, "stopped");
  return staying(copy, RemovalOutcome::failed, std::move(reason));
}

}  // namespace brisko
