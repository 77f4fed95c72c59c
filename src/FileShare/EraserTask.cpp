#include "EraserTask.h"

#include "HostTools.h"
#include "PathResolution.h"
#include "Removal.h"
#include "RemovalCalls.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <sstream>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr const char* kChanged = "it is not the item that was added any more";

const RemovalCalls& calls() {
  return RemovalCalls::system();
}

FileIdentity identityOf(const struct statx& facts) {
  FileIdentity identity;
  identity.device = makedev(facts.stx_dev_major, facts.stx_dev_minor);
  identity.inode = facts.stx_ino;
  identity.kind = fileKind(facts.stx_mode);
  if (identity.kind == FileKind::regular) {
    identity.size = facts.stx_size;
    identity.modificationSeconds = facts.stx_mtime.tv_sec;
    identity.modificationNanoseconds = facts.stx_mtime.tv_nsec;
  }
  return identity;
}

// Size and time may have changed since; another item at the same name is another item.
bool isSameItem(const struct statx& facts, const FileObj& item) {
  const FileIdentity met = identityOf(facts);
  return !item.identity || (met.inode == item.identity->inode &&
                            met.device == item.identity->device && met.kind == item.identity->kind);
}

bool isDeletable(const ParentFolder& parent) {
  return ::faccessat(parent.folder.get(), ".", W_OK | X_OK, AT_EACCESS) == 0;
}

bool checkPermissionsIn(const ParentFolder& parent) {
  const FileDescriptor file(openWith(calls(), parent.folder.get(), parent.name.c_str(),
                                     O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY,
                                     kNoLinksNoMounts));
  if (file || errno != EACCES) return true;
  const FileDescriptor item(openWith(calls(), parent.folder.get(), parent.name.c_str(),
                                     O_PATH | O_NOFOLLOW, kNoLinksNoMounts));
  return item && calls().chmod(item.get(), S_IRUSR | S_IWUSR) == 0;
}

/// The immutable attribute and the mode of a file, which have to give way to the tool. Put back
/// when the file stays.
class Protection {
 public:
  Protection(const ParentFolder& parent, const struct statx& facts)
      : mode_(facts.stx_mode & 07777) {
    if (!S_ISREG(facts.stx_mode)) return;
    file_.reset(openWith(calls(), parent.folder.get(), parent.name.c_str(), O_PATH | O_NOFOLLOW,
                         kNoLinksNoMounts));
    if ((facts.stx_attributes & STATX_ATTR_IMMUTABLE) == 0) return;
    readable_.reset(openWith(calls(), parent.folder.get(), parent.name.c_str(),
                             O_RDONLY | O_NOFOLLOW | O_NONBLOCK, kNoLinksNoMounts));
    wasImmutable_ = setImmutable(false);
  }
  ~Protection() {
    struct stat status;
    if (!file_ || ::fstat(file_.get(), &status) != 0 || status.st_nlink == 0) return;
    if ((status.st_mode & 07777) != mode_) calls().chmod(file_.get(), mode_);
    if (wasImmutable_) setImmutable(true);
  }
  Protection(const Protection&) = delete;
  Protection& operator=(const Protection&) = delete;

 private:
  bool setImmutable(bool immutable) const {
    unsigned flags = 0;
    if (::ioctl(readable_.get(), FS_IOC_GETFLAGS, &flags) != 0) return false;
    flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~static_cast<unsigned>(FS_IMMUTABLE_FL);
    return ::ioctl(readable_.get(), FS_IOC_SETFLAGS, &flags) == 0;
  }

  FileDescriptor file_;
  FileDescriptor readable_;
  mode_t mode_;
  bool wasImmutable_ = false;
};

EraserOutcome failure(std::string reason) {
  EraserOutcome outcome;
  outcome.reason = std::move(reason);
  return outcome;
}

EraserOutcome success() {
  EraserOutcome outcome;
  outcome.isSuccess = true;
  return outcome;
}

}  // namespace

bool checkPermissions(const std::string& path) {
  const ParentFolder parent = openParent(calls(), path);
  return parent.error != 0 || checkPermissionsIn(parent);
}

EraserOutcome EraserTask::erase(const std::atomic<bool>& terminated) {
  const ParentFolder parent = openParent(calls(), item_.url);
  if (const auto no = RemovalEngine().refusal(parent)) return failure(no->reason);
  if (parent.error == ENOENT || parent.error == ENOTDIR) return success();
  if (parent.error != 0) return failure(parent.reason);
  struct statx facts;
  if (factsOf(calls(), parent.folder.get(), parent.name.c_str(), facts) != 0) {
    return errno == ENOENT ? success() : failure(std::strerror(errno));
  }
  if (!isSameItem(facts, item_)) return failure(kChanged);

  const Protection protection(parent, facts);
  // Whether it may be done is decided without waiting for the tool; that has the last word on why.
  const bool isPermitted =
      isDeletable(parent) && (!S_ISREG(facts.stx_mode) || checkPermissionsIn(parent));
  std::vector<std::string> command = {HostTools::folder() + "/srm", options_};
  if (names_ == 0) command.push_back("--all-names");
  if (names_ > 1) command.push_back(fmt::format("--names={}", names_));
  command.push_back(item_.url);
  const HostTools::Outcome run =
      HostTools::run(command, std::size_t{1} << 20, [&] { return terminated.load(); });
  EraserOutcome outcome = outcomeOf(run.status, run.errors);
  if (!isPermitted && outcome.isSuccess &&
      factsOf(calls(), parent.folder.get(), parent.name.c_str(), facts) == 0) {
    return failure("you are not permitted to erase it");
  }
  return outcome;
}

EraserOutcome EraserTask::outcomeOf(int status, const std::string& errors) const {
  EraserOutcome outcome;
  const std::string own = "srm: " + escapedForDisplay(item_.url) + ": ";
  const std::string note = "srm: note: ";
  std::istringstream lines(errors);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(note)) {
      outcome.notes.push_back(line.substr(note.size()));
    } else if (outcome.reason.empty()) {
      outcome.reason = line.starts_with(own) ? line.substr(own.size()) : line;
    }
  }
  outcome.isSuccess = status == 0;
  if (status < 0) {
    outcome.reason = "the eraser cannot be started";
  } else if (!outcome.isSuccess && outcome.reason.empty()) {
    outcome.reason = fmt::format("the eraser ended with status {}", status);
  }
  return outcome;
}

EraserOutcome EraserTask::removeItem(const std::atomic<bool>& terminated) {
  const ParentFolder parent = openParent(calls(), item_.url);
  struct statx facts;
  std::optional<FileIdentity> met;
  if (parent.error == 0 && factsOf(calls(), parent.folder.get(), parent.name.c_str(), facts) == 0) {
    if (!isSameItem(facts, item_)) return failure(kChanged);
    met = identityOf(facts);
    if (met->size > 0) return erase(terminated);
  }
  const RemovalReport report = RemovalEngine().remove(item_.url, met);
  return report.gone() ? success() : failure(report.reason);
}

EraserOutcome EraserTask::removeFolder() const {
  const ParentFolder parent = openParent(calls(), item_.url);
  if (const auto no = RemovalEngine().refusal(parent)) return failure(no->reason);
  if (parent.error != 0) return failure(parent.reason);
  struct statx facts;
  if (factsOf(calls(), parent.folder.get(), parent.name.c_str(), facts) != 0) {
    return errno == ENOENT ? success() : failure(std::strerror(errno));
  }
  if (!isSameItem(facts, item_)) return failure(kChanged);
  // Never more than the folder itself: what was put into it meanwhile nobody asked to remove.
  if (calls().unlinkat(parent.folder.get(), parent.name.c_str(), AT_REMOVEDIR) == 0) {
    return success();
  }
  if (errno == ENOTEMPTY || errno == EEXIST) {
    return failure(item_.reason.empty() ? "something in it could not be erased" : item_.reason);
  }
  return failure(errno == EACCES || errno == EPERM ? "you are not permitted to remove it"
                                                   : std::strerror(errno));
}

}  // namespace brisko
