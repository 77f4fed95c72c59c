#include "FileObj.h"

#include "Catalog.h"
#include "Host.h"
#include "NSFileManager.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr std::size_t kMaximumOpen = 32;

std::string extensionOf(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? std::string() : name.substr(dot + 1);
}

std::string iconOf(const FileObj& item, FileKind kind) {
  Workspace* workspace = Host::current().workspace.get();
  if (item.isDir && !isAppBundle(item)) return "folder";
  return workspace != nullptr ? workspace->iconNameOfKind(item.url, kind) : "text-x-generic";
}

// Where `path` leads, with the links of its folder followed and its last name taken as it is.
std::string located(const std::string& path) {
  std::string bare = path;
  while (bare.size() > 1 && bare.back() == '/')
    bare.pop_back();
  if (bare == "/") return bare;
  const std::size_t slash = bare.rfind('/');
  const std::string name = slash == std::string::npos ? bare : bare.substr(slash + 1);
  std::string folder = slash == std::string::npos ? "." : bare.substr(0, slash + 1);
  if (name == "." || name == "..") folder = bare;
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(folder.c_str(), nullptr),
                                                         &std::free);
  if (!real) return {};
  const std::string found = real.get();
  if (name == "." || name == "..") return found;
  return found == "/" ? found + name : found + "/" + name;
}

void fill(FileObj& item, const CatalogItem& facts) {
  item.isDir = facts.kind == FileKind::directory;
  item.size = item.isDir ? 0 : static_cast<std::int64_t>(facts.dataSize);
  item.type = item.isDir ? "Folder" : extensionOf(item.name);
  item.links = item.isDir ? 1 : facts.links;
  item.icon = iconOf(item, facts.kind);
  FileIdentity identity;
  identity.device = facts.device;
  identity.inode = facts.inode;
  identity.kind = facts.kind;
  if (facts.kind == FileKind::regular) {
    identity.size = facts.dataSize;
    identity.modificationSeconds = facts.modificationSeconds;
    identity.modificationNanoseconds = facts.modificationNanoseconds;
  }
  item.identity = identity;
}

/// Goes through a tree, contents first, and appends what it meets.
class Expansion {
 public:
  Expansion(const FileObj& top, FileObjs& arr, const std::atomic<bool>* cancel)
      : top_(top), arr_(arr), cancel_(cancel) {}

  bool run() {
    int error = 0;
    auto folder = Host::current().catalog->open(top_.url, error);
    if (!folder) return true;  // found out again when the folder's own turn comes
    device_ = folder->self().device;
    push(nullptr, std::move(folder));
    while (!stack_.empty()) {
      if (cancel_ != nullptr && cancel_->load(std::memory_order_relaxed)) return false;
      step();
    }
    return true;
  }

 private:
  struct Level {
    std::shared_ptr<FileObj> item;            ///< null for the top, which is not appended
    std::unique_ptr<Catalog::Folder> folder;  ///< closed while it lies deep below the top
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    FileObjs entries;
    std::size_t next = 0;
  };

  const std::string& pathOf(const Level& level) const {
    return level.item ? level.item->url : top_.url;
  }

  void push(std::shared_ptr<FileObj> item, std::unique_ptr<Catalog::Folder> folder) {
    Level level;
    level.item = std::move(item);
    level.device = folder->self().device;
    level.inode = folder->self().inode;
    level.folder = std::move(folder);
    read(level);
    stack_.push_back(std::move(level));
    if (stack_.size() - firstOpen_ > kMaximumOpen) stack_[firstOpen_++].folder.reset();
  }

  void read(Level& level) {
    CatalogBatch batch;
    while (level.folder->read(batch, 0)) {
      level.folder->information(batch.items);
      for (const CatalogItem& facts : batch.items) {
        if (!facts.hasInformation) continue;  // it went meanwhile
        auto item = std::make_shared<FileObj>();
        item->name = facts.name;
        item->url = pathOf(level) + "/" + item->name;
        item->isSSD = top_.isSSD;
        fill(*item, facts);
        level.entries.push_back(std::move(item));
      }
    }
    if (level.folder->error() != 0 && level.item) {
      level.item->reason =
          std::string("it cannot be read: ") + std::strerror(level.folder->error());
    }
  }

  void step() {
    Level& level = stack_.back();
    if (level.next == level.entries.size()) {
      if (level.item) arr_.push_back(level.item);
      // A folder that has been moved is still known by its path: it is looked at again before
      // anything happens to it. Only going on inside its parent needs the parent open.
      if (stack_.size() > 1) reopenParent();
      stack_.pop_back();
      return;
    }
    const std::shared_ptr<FileObj> item = level.entries[level.next++];
    if (!item->isDir) {
      arr_.push_back(item);
      return;
    }
    int error = EXDEV;
    std::unique_ptr<Catalog::Folder> folder;
    if (item->identity->device == device_ && level.folder) {
      folder = level.folder->open(item->name, error);
    }
    if (folder) return push(item, std::move(folder));
    item->reason = error == EXDEV ? "another file system is mounted there"
                                  : std::string("it cannot be read: ") + std::strerror(error);
    arr_.push_back(item);
  }

  void reopenParent() {
    Level& parent = stack_[stack_.size() - 2];
    if (parent.folder || !stack_.back().folder) return;
    int error = 0;
    parent.folder = stack_.back().folder->openParent(parent.device, parent.inode, error);
    firstOpen_ = stack_.size() - 2;
  }

  const FileObj& top_;
  FileObjs& arr_;
  const std::atomic<bool>* cancel_;
  std::uint64_t device_ = 0;
  std::vector<Level> stack_;
  std::size_t firstOpen_ = 0;
};

}  // namespace

void FileObj::setIsSSD() {
  isSSD = NSFileManager::isSolidState(url);
}

bool isAppBundle(const FileObj& item) {
  return extensionOf(item.name) == "app";
}

bool isBelow(const std::string& path, const std::string& folder) {
  return path.starts_with(folder) && path.size() > folder.size() && path[folder.size()] == '/';
}

std::shared_ptr<FileObj> buildFileObj(const std::string& path, int& error) {
  auto item = std::make_shared<FileObj>();
  item->url = located(path);
  error = item->url.empty() ? errno : 0;
  if (error != 0) return nullptr;
  const CatalogItem facts = Host::current().catalog->information(item->url);
  if (!facts.hasInformation) {
    struct stat status;
    error = ::lstat(item->url.c_str(), &status) != 0 ? errno : ENOENT;
    return nullptr;
  }
  item->name = item->url.substr(item->url.rfind('/') + 1);
  fill(*item, facts);
  item->setIsSSD();
  return item;
}

bool eumeAllArrWithFileObj(const FileObj& folder, FileObjs& arr, const std::atomic<bool>* cancel) {
  return Expansion(folder, arr, cancel).run();
}

}  // namespace brisko
