#include "EraseWalk.h"

#include "ExtendedAttributes.h"
#include "FileErasure.h"
#include "PathResolution.h"
#include "Removal.h"
#include "RemovalCalls.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace brisko::srm {
namespace {

constexpr std::size_t kMaximumOpen = 32;
constexpr std::size_t kBufferSize = 64 * 1024;
// A file system may leave names out of a listing from which others were removed meanwhile, and
// other programs may add some. A folder that is not empty after its last name is listed again, this
// often.
constexpr int kMaximumReadings = 4;

struct DirectoryEntry {  // the kernel's linux_dirent64
  std::uint64_t inode;
  std::int64_t offset;
  unsigned short length;
  unsigned char type;
  char name[1];
};

const RemovalCalls& calls() {
  return RemovalCalls::system();
}

bool isMountRoot(const struct statx& facts) {
  return (facts.stx_attributes & facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
}

// A path as the other parts take it: absolute, without a slash at its end. It stays relative, and
// is refused for that, when the working folder is gone.
std::string absolute(std::string path) {
  if (!path.starts_with('/')) {
    const std::unique_ptr<char, decltype(&std::free)> here(::get_current_dir_name(), &std::free);
    if (!here) return path;
    path = std::string(here.get()) + "/" + path;
  }
  while (path.size() > 1 && path.ends_with('/'))
    path.pop_back();
  return path;
}

// What was done to the names in a folder reaches the medium. The folder may be closed to reading,
// and then everything of its file system is flushed.
void flushFolder(int folder) {
  const FileDescriptor open(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!open || ::fsync(open.get()) != 0) ::sync();
}

}  // namespace

void EraseWalk::erase() {
  const ParentFolder parent = openParent(calls(), absolute(path_));
  if (const auto no = RemovalEngine().refusal(parent)) return keep(path_, no->reason);
  if (parent.error != 0) {
    const bool isMissing = parent.error == ENOENT || parent.error == ENOTDIR;
    if (!isMissing || !run_.options().force) keep(path_, parent.reason);
    return;
  }
  struct statx facts;
  if (factsOf(calls(), parent.folder.get(), parent.name.c_str(), facts) != 0) {
    if (errno != ENOENT || !run_.options().force) keep(path_, wordsFor(errno));
    return;
  }
  if (!S_ISDIR(facts.stx_mode)) {
    eraseEntry(parent.folder.get(), parent.name, path_);
  } else if (!run_.options().recursive) {
    keep(path_, "it is a folder, and -r was not given");
  } else {
    eraseFolder(parent.folder.get(), parent.name);
  }
  flushFolder(parent.folder.get());
}

void EraseWalk::keep(const std::string& path, const std::string& reason) {
  if (!stack_.empty()) stack_.back().keepsSomething = true;
  run_.fail(path, reason);
}

std::string EraseWalk::pathOf(const std::string& name) const {
  std::string path = path_;
  for (std::size_t i = 1; i < stack_.size(); ++i)
    path.append("/").append(stack_[i].name);
  return name.empty() ? path : path + "/" + name;
}

void EraseWalk::eraseEntry(int folder, const std::string& name, const std::string& path) {
  struct statx facts;
  if (factsOf(calls(), folder, name.c_str(), facts) != 0) {
    if (errno != ENOENT) keep(path, wordsFor(errno));
    return;
  }
  if (isMountRoot(facts)) return keep(path, wordsFor(EXDEV));
  if (S_ISDIR(facts.stx_mode)) {
    if (stack_.empty()) return keep(path, wordsFor(ELOOP));
    stack_.back().waiting.push_back(name);
  } else if (S_ISREG(facts.stx_mode)) {
    if (const auto reason = FileErasure(run_, folder, name, path).erase(facts)) {
      keep(path, *reason);
    } else {
      run_.count();
    }
  } else if (calls().unlinkat(folder, name.c_str(), 0) != 0) {
    keep(path, wordsFor(errno));
  } else {
    run_.count();
    run_.tell(path, "removed");
  }
}

void EraseWalk::eraseFolder(int parent, const std::string& name) {
  parent_ = parent;
  buffer_.resize(kBufferSize);
  if (!push(parent, name)) return keep(path_, wordsFor(errno));
  work();
}

bool EraseWalk::push(int parent, const std::string& name) {
  FileDescriptor folder(openWith(calls(), parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW,
                                 kNoLinksNoMounts));
  struct statx facts;
  if (!folder || factsOf(calls(), folder.get(), "", facts) != 0) return false;
  if (stack_.empty()) {
    deviceMajor_ = facts.stx_dev_major;
    deviceMinor_ = facts.stx_dev_minor;
  } else if (facts.stx_dev_major != deviceMajor_ || facts.stx_dev_minor != deviceMinor_) {
    errno = EXDEV;
    return false;
  }
  Level level;
  level.name = name;
  level.folder = std::move(folder);
  level.inode = facts.stx_ino;
  stack_.push_back(std::move(level));
  if (stack_.size() - firstOpen_ > kMaximumOpen) stack_[firstOpen_++].folder.reset();
  return true;
}

void EraseWalk::work() {
  while (!stack_.empty() && !EraserRun::isStopped()) {
    Level& level = stack_.back();
    if (!level.isRead) {
      readSome();
    } else if (!level.waiting.empty()) {
      const std::string name = std::move(level.waiting.back());
      level.waiting.pop_back();
      if (!push(level.folder.get(), name) && errno != ENOENT) keep(pathOf(name), wordsFor(errno));
    } else {
      leave();
    }
  }
  if (stack_.empty()) return;
  run_.fail(pathOf({}), "stopped: what is still in it was not touched");
  stack_.clear();
}

void EraseWalk::readSome() {
  Level& level = stack_.back();
  const ssize_t got = calls().getdents64(level.folder.get(), buffer_.data(), buffer_.size());
  if (got <= 0) {
    level.isRead = true;
    if (got < 0) keep(pathOf({}), wordsFor(errno));
    return;
  }
  for (ssize_t at = 0; at < got && !EraserRun::isStopped();) {
    const auto* entry = reinterpret_cast<const DirectoryEntry*>(buffer_.data() + at);
    const std::string name = buffer_.data() + at + offsetof(DirectoryEntry, name);
    at += entry->length;
    if (name == "." || name == "..") continue;
    eraseEntry(level.folder.get(), name, pathOf(name));
  }
}

// The folder at work has been emptied, as far as that could be.
void EraseWalk::leave() {
  if (!reopenParent()) {
    keep(pathOf({}), "it was moved while it was being erased");
    stack_.clear();
    return;
  }
  Level& level = stack_.back();
  const std::string path = pathOf({});
  const int parent = stack_.size() == 1 ? parent_ : stack_[stack_.size() - 2].folder.get();
  bool stays = level.keepsSomething;
  if (stays) {
    flushFolder(level.folder.get());
  } else {
    eraseExtendedAttributes(level.folder.get());
    stays = calls().unlinkat(parent, level.name.c_str(), AT_REMOVEDIR) != 0;
    const int error = errno;
    if (stays && (error == ENOTEMPTY || error == EEXIST) && readAgain(level)) return;
    if (stays) run_.fail(path, wordsFor(error));
  }
  stack_.pop_back();
  if (stays && !stack_.empty()) stack_.back().keepsSomething = true;
  if (stays) return;
  run_.count();
  run_.tell(path, "removed");
}

bool EraseWalk::readAgain(Level& level) {
  if (++level.readings >= kMaximumReadings || calls().rewind(level.folder.get()) != 0) return false;
  level.isRead = false;
  return true;
}

// The parent of the folder at work, opened anew when it was closed for the sake of depth. It must
// then be the very one that it was.
bool EraseWalk::reopenParent() {
  if (stack_.size() < 2 || stack_[stack_.size() - 2].folder) return true;
  Level& parent = stack_[stack_.size() - 2];
  FileDescriptor folder(openWith(calls(), stack_.back().folder.get(), "..", O_RDONLY | O_DIRECTORY,
                                 kNoLinksNoMounts));
  struct statx facts;
  if (!folder || factsOf(calls(), folder.get(), "", facts) != 0 || facts.stx_ino != parent.inode ||
      facts.stx_dev_major != deviceMajor_ || facts.stx_dev_minor != deviceMinor_) {
    return false;
  }
  parent.folder = std::move(folder);
  firstOpen_ = stack_.size() - 2;
  return true;
}

}  // namespace brisko::srm
