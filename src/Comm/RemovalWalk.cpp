#include "RemovalWalk.h"

#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr std::size_t kMaximumOpen = 32;
constexpr std::size_t kBufferSize = 64 * 1024;
constexpr std::uint64_t kBlock = 512;  // the unit of stx_blocks, whatever the file system's own
// A file system may leave names out of a listing from which others were removed meanwhile, and
// other programs may add some. A folder that is not empty after its last name is listed again, this
// often.
constexpr int kMaximumReadings = 4;
constexpr mode_t kOwner = S_IRWXU;

struct DirectoryEntry {  // the kernel's linux_dirent64
  std::uint64_t inode;
  std::int64_t offset;
  unsigned short length;
  unsigned char type;
  char name[1];
};

RemovalOutcome outcomeOf(int error) {
  switch (error) {
    case ENOENT:
      return RemovalOutcome::missing;
    case EACCES:
    case EPERM:
      return RemovalOutcome::notPermitted;
    case EXDEV:
      return RemovalOutcome::mountPoint;
    case ELOOP:
      return RemovalOutcome::throughLink;
    default:
      return RemovalOutcome::failed;
  }
}

std::string wordsFor(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
      return "you are not permitted to remove it";
    case EROFS:
      return "the disk is read-only";
    case EBUSY:
      return "it is in use by the system";
    case EXDEV:
      return "another file system is mounted there";
    case ENOTEMPTY:
    case EEXIST:
      return "something was put into it meanwhile";
    case ENOENT:
      return "it is not there";
    case EIO:
      return "the disk reports an error";
    default:
      return std::strerror(error);
  }
}

bool isFolder(const struct statx& facts) {
  return S_ISDIR(facts.stx_mode);
}

// A path for people: the middle of a very long one is left out.
std::string shortened(const std::string& path) {
  constexpr std::size_t kShown = 400;
  if (path.size() <= kShown) return path;
  return path.substr(0, kShown / 2) + "…" + path.substr(path.size() - kShown / 2);
}

bool isMountRoot(const struct statx& facts) {
  return (facts.stx_attributes & facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
}

}  // namespace

RemovalReport reportOfError(const std::string& path, int error) {
  RemovalReport report;
  report.outcome = outcomeOf(error);
  if (error == ENOENT) {
    report.reason = "It is not there.";
    return report;
  }
  report.reason =
      fmt::format("\"{}\" stays: {}.", escapedForDisplay(shortened(path)), wordsFor(error));
  return report;
}

RemovalReport RemovalWalk::removeItem(int parent, const std::string& name,
                                      const struct statx& facts) {
  RemovalReport report;
  if (isMountRoot(facts)) return reportOfError(name, EXDEV);
  if (calls_.unlinkat(parent, name.c_str(), 0) != 0) return reportOfError(name, errno);
  report.outcome = RemovalOutcome::removed;
  report.removedItems = 1;
  if (facts.stx_nlink <= 1) report.freedBytes = facts.stx_blocks * kBlock;
  return report;
}

RemovalReport RemovalWalk::removeFolder(int parent, const std::string& name, FileDescriptor folder,
                                        const struct statx& facts) {
  parent_ = parent;
  deviceMajor_ = facts.stx_dev_major;
  deviceMinor_ = facts.stx_dev_minor;
  buffer_.resize(kBufferSize);
  push(name, std::move(folder), facts);
  run();
  if (!somethingStays_) {
    report_.outcome = RemovalOutcome::removed;
    report_.reason.clear();
  }
  return std::move(report_);
}

void RemovalWalk::push(std::string name, FileDescriptor folder, const struct statx& facts) {
  Level level;
  level.name = std::move(name);
  level.folder = std::move(folder);
  level.inode = facts.stx_ino;
  level.bytes = facts.stx_blocks * kBlock;
  level.mode = facts.stx_mode & 07777;
  level.owner = facts.stx_uid;
  level.modeChanged = std::exchange(madeReadable_, false);
  stack_.push_back(std::move(level));
  if (stack_.size() - firstOpen_ > kMaximumOpen) stack_[firstOpen_++].folder.reset();
}

void RemovalWalk::run() {
  while (!stack_.empty()) {
    if (isCancelled()) {
      somethingStays_ = false;  // that the user stopped is what counts, whatever came before
      keep({}, RemovalOutcome::cancelled, "you stopped");
      abandon();
      return;
    }
    // A folder is read to its end before the first of its folders is entered: it may be closed
    // while those are at work, and its place in the listing would be lost.
    Level& level = stack_.back();
    if (!level.readToEnd) {
      readSome();
    } else if (!level.waiting.empty()) {
      enter(takeWaiting(level));
    } else {
      leave();
    }
  }
}

std::string RemovalWalk::takeWaiting(Level& level) {
  const auto end = level.waiting.end() - 1;
  const auto begin = std::find(std::make_reverse_iterator(end), level.waiting.rend(), '\0').base();
  std::string name(begin, end);
  level.waiting.erase(begin, level.waiting.end());
  return name;
}

void RemovalWalk::readSome() {
  Level& level = stack_.back();
  const ssize_t got = calls_.getdents64(level.folder.get(), buffer_.data(), buffer_.size());
  if (got <= 0) {
    level.readToEnd = true;
    if (got < 0) keep({}, errno);
    return;
  }
  for (ssize_t at = 0; at < got;) {
    if (isCancelled()) return;
    const auto* entry = reinterpret_cast<const DirectoryEntry*>(buffer_.data() + at);
    const char* name = buffer_.data() + at + offsetof(DirectoryEntry, name);
    at += entry->length;
    if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) continue;
    if (entry->type == DT_DIR) {
      level.waiting.insert(level.waiting.end(), name, name + std::strlen(name) + 1);
    } else {
      removeEntry(name, false);
    }
  }
}

void RemovalWalk::removeEntry(const char* name, bool wasFolder) {
  Level& level = stack_.back();
  struct statx facts;
  if (factsOf(calls_, level.folder.get(), name, facts) != 0 &&
      (errno != EACCES || !makeWritable(level) ||
       factsOf(calls_, level.folder.get(), name, facts) != 0)) {
    if (errno != ENOENT) keep(name, errno);
    return;
  }
  if (isMountRoot(facts)) {
    keep(name, EXDEV);
  } else if (!isFolder(facts)) {
    unlinkEntry(name, facts, wasFolder);
  } else if (wasFolder) {
    // Somebody exchanges it for something else and back. It is not worth a race.
    keep(name, RemovalOutcome::changed, "it was exchanged while it was being removed");
  } else {
    level.waiting.insert(level.waiting.end(), name, name + std::strlen(name) + 1);
  }
}

void RemovalWalk::unlinkEntry(const char* name, const struct statx& facts, bool wasFolder) {
  Level& level = stack_.back();
  int failed = calls_.unlinkat(level.folder.get(), name, 0);
  if (failed != 0 && (errno == EACCES || errno == EPERM) && makeWritable(level)) {
    failed = calls_.unlinkat(level.folder.get(), name, 0);
  }
  if (failed == 0) {
    ++report_.removedItems;
    if (facts.stx_nlink <= 1) report_.freedBytes += facts.stx_blocks * kBlock;
  } else if (errno == EISDIR && !wasFolder) {
    level.waiting.insert(level.waiting.end(), name, name + std::strlen(name) + 1);
  } else if (errno != ENOENT) {
    keep(name, errno);
  }
}

void RemovalWalk::enter(const std::string& name) {
  struct statx facts;
  Level& level = stack_.back();
  FileDescriptor folder = openFolder(level.folder.get(), name, facts);
  if (!folder && errno == EACCES && makeWritable(level)) {
    folder = openFolder(level.folder.get(), name, facts);
  }
  if (!folder) {
    if (errno == ENOTDIR || errno == ELOOP) {
      removeEntry(name.c_str(), true);
    } else if (errno != ENOENT) {
      keep(name, errno);
    }
    return;
  }
  // Another device without a mount is a subvolume of its own: as little part of the tree as a
  // mount.
  if (facts.stx_dev_major != deviceMajor_ || facts.stx_dev_minor != deviceMinor_) {
    keep(name, EXDEV);
    return;
  }
  push(name, std::move(folder), facts);
}

FileDescriptor RemovalWalk::openFolder(int parent, const std::string& name, struct statx& facts) {
  madeReadable_ = false;
  FileDescriptor folder(openWith(calls_, parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW,
                                 kNoLinksNoMounts));
  if (!folder && errno == EACCES) return openUnreadable(parent, name.c_str(), facts);
  if (folder && factsOf(calls_, folder.get(), "", facts) != 0) {
    const int error = errno;
    folder.reset();
    errno = error;
  }
  return folder;
}

void RemovalWalk::restoreMode(const FileDescriptor& folder, const struct statx& facts) {
  if (std::exchange(madeReadable_, false)) calls_.chmod(folder.get(), facts.stx_mode & 07777);
}

// A folder of the user's own that its mode keeps the user out of. It is changed and opened through
// one descriptor, so that its name may lead elsewhere meanwhile without harm.
FileDescriptor RemovalWalk::openUnreadable(int parent, const char* name, struct statx& facts) {
  const FileDescriptor closed(
      openWith(calls_, parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW, kNoLinksNoMounts));
  if (!closed || factsOf(calls_, closed.get(), "", facts) != 0) return {};
  if (facts.stx_uid != ::geteuid()) {
    errno = EACCES;
    return {};
  }
  const mode_t mode = facts.stx_mode & 07777;
  if (calls_.chmod(closed.get(), mode | kOwner) != 0) return {};
  FileDescriptor folder(
      openWith(calls_, closed.get(), ".", O_RDONLY | O_DIRECTORY, kNoLinksNoMounts));
  madeReadable_ = static_cast<bool>(folder);
  if (!folder) {
    const int error = errno;
    calls_.chmod(closed.get(), mode);
    errno = error;
  }
  return folder;
}

bool RemovalWalk::makeWritable(Level& level) {
  const int error = errno;
  const bool helps = !level.modeChanged && level.owner == ::geteuid() &&
                     (level.mode & kOwner) != kOwner &&
                     calls_.chmod(level.folder.get(), level.mode | kOwner) == 0;
  if (helps) level.modeChanged = true;
  errno = error;
  return helps;
}

void RemovalWalk::leave() {
  if (!reopenParent()) {
    keep({}, RemovalOutcome::changed, "it was moved while it was being removed");
    abandon();
    return;
  }
  Level& level = stack_.back();
  if (!level.keepsSomething && !removeEmptied()) return;  // it is listed again
  if (level.keepsSomething) {
    if (level.modeChanged) calls_.chmod(level.folder.get(), level.mode);
    if (stack_.size() > 1) stack_[stack_.size() - 2].keepsSomething = true;
  }
  stack_.pop_back();
}

// Removes the emptied folder at work. False when it is not empty and shall be listed again.
bool RemovalWalk::removeEmptied() {
  Level& level = stack_.back();
  const bool top = stack_.size() == 1;
  const int parent = top ? parent_ : stack_[stack_.size() - 2].folder.get();
  int failed = calls_.unlinkat(parent, level.name.c_str(), AT_REMOVEDIR);
  if (failed != 0 && !top && (errno == EACCES || errno == EPERM) &&
      makeWritable(stack_[stack_.size() - 2])) {
    failed = calls_.unlinkat(parent, level.name.c_str(), AT_REMOVEDIR);
  }
  if (failed == 0) {
    ++report_.removedItems;
    report_.freedBytes += level.bytes;
    return true;
  }
  const int error = errno;
  if ((error == ENOTEMPTY || error == EEXIST) && level.readings < kMaximumReadings &&
      calls_.rewind(level.folder.get()) == 0) {
    ++level.readings;
    level.readToEnd = false;
    return false;
  }
  if (error == ENOTDIR || error == ENOENT) {
    // Its name leads to something else by now. In the tree that is found by listing its parent
    // again.
    if (top) keep({}, RemovalOutcome::changed, "it was exchanged while it was being removed");
    return true;
  }
  keep({}, error);
  return true;
}

// Opens the parent of the folder at work again when it was closed for the sake of depth.
bool RemovalWalk::reopenParent() {
  if (stack_.size() < 2 || stack_[stack_.size() - 2].folder) return true;
  Level& parent = stack_[stack_.size() - 2];
  FileDescriptor folder(
      openWith(calls_, stack_.back().folder.get(), "..", O_RDONLY | O_DIRECTORY, kNoLinksNoMounts));
  struct statx facts;
  if (!folder || factsOf(calls_, folder.get(), "", facts) != 0) return false;
  if (facts.stx_ino != parent.inode || facts.stx_dev_major != deviceMajor_ ||
      facts.stx_dev_minor != deviceMinor_) {
    return false;
  }
  parent.folder = std::move(folder);
  firstOpen_ = stack_.size() - 2;
  return true;
}

// Ends the walk where it is. Modes that were changed for its sake go back where the folder is at
// hand.
void RemovalWalk::abandon() {
  somethingStays_ = true;
  while (!stack_.empty()) {
    const bool hasParent = reopenParent();
    Level& level = stack_.back();
    if (level.modeChanged) calls_.chmod(level.folder.get(), level.mode);
    stack_.pop_back();
    if (!hasParent) break;
  }
  stack_.clear();
}

void RemovalWalk::keep(std::string_view name, int error) {
  keep(name, outcomeOf(error), wordsFor(error));
}

void RemovalWalk::keep(std::string_view name, RemovalOutcome outcome, const std::string& why) {
  stack_.back().keepsSomething = true;
  if (somethingStays_) return;
  somethingStays_ = true;
  std::string path;
  for (const Level& level : stack_)
    path.append(path.empty() ? "" : "/").append(level.name);
  if (!name.empty()) path.append("/").append(name);
  report_.outcome = outcome;
  report_.reason = fmt::format("\"{}\" stays: {}.", escapedForDisplay(shortened(path)), why);
}

}  // namespace brisko
