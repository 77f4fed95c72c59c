#include "PathResolution.h"

#include <fmt/format.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <deque>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr int kMaximumLinks = 40;
constexpr std::size_t kDeepestLink = 1;  // names above it: "/home/user" may be one, no deeper

// Opens names below the root, as many at a time as one call takes: the path to an item may be
// longer than PATH_MAX.
FileDescriptor openFolder(const RemovalCalls& calls, const std::vector<std::string>& names) {
  FileDescriptor folder(openWith(calls, AT_FDCWD, "/", O_PATH | O_DIRECTORY, kNoLinks));
  std::size_t next = 0;
  while (folder && next < names.size()) {
    std::string piece;
    while (next < names.size() && piece.size() + names[next].size() + 2 < PATH_MAX) {
      if (!piece.empty()) piece += '/';
      piece += names[next++];
    }
    if (piece.empty()) {
      errno = ENAMETOOLONG;
      return {};
    }
    folder.reset(openWith(calls, folder.get(), piece.c_str(), O_PATH | O_DIRECTORY, kNoLinks));
  }
  return folder;
}

// A folder of the system: root's, open to everybody, written by nobody else.
bool isSystemFolder(const struct stat& status) {
  return status.st_uid == 0 && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0 &&
         (status.st_mode & S_IXOTH) != 0;
}

// Follows the links of the system that lie on a path, one name at a time and by descriptor.
class SystemLinks {
 public:
  explicit SystemLinks(std::vector<std::string> names) : waiting_(names.begin(), names.end()) {}

  // The names that the path really consists of. False with errno: ELOOP when a link may not be
  // followed, which `link` then names.
  bool follow(std::vector<std::string>& names, std::string& link) {
    if (!toRoot()) return false;
    while (!waiting_.empty()) {
      const std::string name = std::move(waiting_.front());
      waiting_.pop_front();
      if (name.empty() || name == ".") continue;
      if (!step(name)) {
        const int error = errno;
        link = joinPath(names_, names_.size()) + "/" + name;
        errno = error;
        return false;
      }
    }
    names = std::move(names_);
    return true;
  }

 private:
  bool toRoot() {
    names_.clear();
    folder_.reset(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    return static_cast<bool>(folder_);
  }

  bool step(const std::string& name) {
    FileDescriptor next(::openat(folder_.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status;
    if (!next || ::fstat(next.get(), &status) != 0) return false;
    if (S_ISLNK(status.st_mode)) return followLink(next, status);
    if (name == "..") {
      if (!names_.empty()) names_.pop_back();
    } else {
      names_.push_back(name);
    }
    folder_ = std::move(next);
    return true;
  }

  bool followLink(const FileDescriptor& link, const struct stat& status) {
    struct stat folder;
    char target[PATH_MAX];
    if (::fstat(folder_.get(), &folder) != 0) return false;
    const bool isSystemLink =
        status.st_uid == 0 && names_.size() <= kDeepestLink && isSystemFolder(folder);
    if (!isSystemLink || ++followed_ > kMaximumLinks) {
      errno = ELOOP;
      return false;
    }
    const ssize_t length = ::readlinkat(link.get(), "", target, sizeof target);
    if (length < 0) return false;
    if (length == sizeof target) {
      errno = ENAMETOOLONG;
      return false;
    }
    queueTarget({target, static_cast<std::size_t>(length)});
    return target[0] != '/' || toRoot();
  }

  void queueTarget(std::string_view target) {
    std::vector<std::string> names;
    while (!target.empty()) {
      const std::size_t end = std::min(target.find('/'), target.size());
      names.emplace_back(target.substr(0, end));
      target.remove_prefix(std::min(end + 1, target.size()));
    }
    waiting_.insert(waiting_.begin(), names.begin(), names.end());
  }

  std::deque<std::string> waiting_;
  std::vector<std::string> names_;
  FileDescriptor folder_;
  int followed_ = 0;
};

ParentFolder failure(int error, std::string reason, bool throughLink = false) {
  ParentFolder failed;
  failed.error = error;
  failed.reason = std::move(reason);
  failed.throughLink = throughLink;
  return failed;
}

}  // namespace

bool splitPath(std::string_view path, std::vector<std::string>& names) {
  names.clear();
  if (path.empty() || path.front() != '/' || path.find('\0') != std::string_view::npos)
    return false;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view name = path.substr(0, end);
    if (name == "..") return false;
    if (!name.empty() && name != ".") names.emplace_back(name);
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return true;
}

std::string joinPath(const std::vector<std::string>& names, std::size_t count) {
  std::string path;
  for (std::size_t i = 0; i < count; ++i)
    path.append("/").append(names[i]);
  return path;
}

ParentFolder openParent(const RemovalCalls& calls, const std::string& path, bool systemLinks) {
  std::vector<std::string> names;
  if (!splitPath(path, names)) {
    return failure(EINVAL, "The path is not absolute, or has \"..\" in it.");
  }
  ParentFolder parent;
  if (!names.empty()) {
    parent.name = std::move(names.back());
    names.pop_back();
  }
  parent.folder = openFolder(calls, names);
  // The kernel answers ENOTDIR, not ELOOP, when a folder was asked for and the last name is a link.
  if (!parent.folder && systemLinks && (errno == ELOOP || errno == ENOTDIR)) {
    std::string link;
    if (!SystemLinks(names).follow(names, link)) {
      const int error = errno;
      if (error == ELOOP) {
        return failure(error, fmt::format("\"{}\" is a link, and links are not followed.", link),
                       true);
      }
      return failure(error, fmt::format("\"{}\": {}.", link, std::strerror(error)));
    }
    parent.folder = openFolder(calls, names);
  }
  if (!parent.folder) {
    const int error = errno;
    if (error == ELOOP) {
      return failure(error, "A folder on the way is a link, and links are not followed.", true);
    }
    return failure(
        error, fmt::format("The folder that it is in cannot be opened: {}.", std::strerror(error)));
  }
  parent.path = joinPath(names, names.size());
  return parent;
}

}  // namespace brisko
