#include "FolderSize.h"

#include "Dispatch.h"
#include "FolderSizeQueue.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>
#include <utility>

namespace brisko {
namespace {

// Folders that one worker holds open; those above are closed and opened again on the way up.
constexpr std::size_t kOpenLevels = 12;
constexpr std::size_t kMaximumWorkers = 8;
// A tree of fewer entries is counted before another thread has woken.
constexpr std::uint64_t kEntriesWorthHelp = 2000;
constexpr std::size_t kFilesWorthGiving = 128;

// A folder on the way down, with what is still to be walked in it.
struct Level {
  std::shared_ptr<Catalog::Folder> folder;  // null while it is closed
  std::uint64_t device = 0;                 // set while it is closed
  std::uint64_t inode = 0;
  std::vector<char> names;  // subfolders, each name ended by a zero byte
  std::size_t next = 0;     // where the next one begins
  std::size_t current = 0;  // where the one below this level begins

  bool isDone() const { return next >= names.size(); }
  const char* nextName() {
    current = next;
    next += std::strlen(names.data() + next) + 1;
    return names.data() + current;
  }
  std::uint64_t left() const {
    return static_cast<std::uint64_t>(
        std::count(names.begin() + static_cast<std::ptrdiff_t>(next), names.end(), '\0'));
  }
};

bool needsInformation(const CatalogItem& item) {
  return item.kind == FileKind::regular || item.kind == FileKind::symbolicLink ||
         item.kind == FileKind::unknown;
}

class Worker {
 public:
  Worker(std::shared_ptr<FolderSizeQueue> queue, bool mayCallHelp)
      : queue_(std::move(queue)), mayCallHelp_(mayCallHelp) {}

  // Takes tasks until the walk has ended.
  void run() {
    FolderSizeTask task;
    while (queue_->take(task)) {
      size_ = {};
      walk(task);
      task = {};
      queue_->finish(size_);
    }
  }

 private:
  void walk(FolderSizeTask& task);
  void readFolder();
  void sortOut(CatalogBatch& batch, std::vector<char>& subfolders);
  void sum(Catalog::Folder& folder, std::span<CatalogItem> items);
  void descend(std::shared_ptr<Catalog::Folder> folder);
  void ascend();
  void findWayBack();
  void giveSubfolders();
  void callHelp();

  std::shared_ptr<FolderSizeQueue> queue_;
  bool mayCallHelp_;
  FolderSize size_;
  CatalogBatch batch_;
  std::vector<Level> levels_;  // kept, with their buffers, from folder to folder
  std::size_t depth_ = 0;      // how many of them are in use
};

void Worker::walk(FolderSizeTask& task) {
  sum(*task.folder, task.files.items);
  if (levels_.empty()) levels_.emplace_back();
  depth_ = 1;
  levels_[0].folder = std::move(task.folder);
  levels_[0].names = std::move(task.subfolders);
  levels_[0].next = 0;
  const bool isWhole = levels_[0].names.empty() && task.files.items.empty();
  if (isWhole) readFolder();
  while (depth_ > 0 && !queue_->isCancelled()) {
    if (queue_->isWanted()) giveSubfolders();
    Level& level = levels_[depth_ - 1];
    if (level.isDone()) {
      ascend();
      continue;
    }
    int error = 0;
    std::shared_ptr<Catalog::Folder> child = level.folder->open(level.nextName(), error);
    if (child) {
      descend(std::move(child));
    } else if (error != ENOENT) {
      ++size_.skippedFolders;
    }
  }
  size_.isCancelled = queue_->isCancelled();
  for (Level& level : levels_)
    level.folder.reset();
}

// Reads the deepest level's folder: sums its files and notes its subfolders.
void Worker::readFolder() {
  Level& level = levels_[depth_ - 1];
  level.names.clear();
  level.next = 0;
  while (!queue_->isCancelled() && level.folder->read(batch_, 0)) {
    const std::size_t before = batch_.items.size();
    sortOut(batch_, level.names);
    if (batch_.items.size() >= kFilesWorthGiving && batch_.items.size() == before &&
        queue_->isWanted()) {
      queue_->give({level.folder, {}, std::exchange(batch_, {})});
      continue;
    }
    sum(*level.folder, batch_.items);
    if (mayCallHelp_ && size_.files + size_.folders > kEntriesWorthHelp) callHelp();
  }
  if (level.folder->error() != 0) ++size_.skippedFolders;
}

// Leaves in the batch what has a size of its own, and the names of folders in `subfolders`.
void Worker::sortOut(CatalogBatch& batch, std::vector<char>& subfolders) {
  for (CatalogItem& item : batch.items) {
    if (item.kind == FileKind::unknown) levels_[depth_ - 1].folder->information({&item, 1});
    if (item.kind != FileKind::directory) continue;
    ++size_.folders;
    subfolders.insert(subfolders.end(), item.name.data(), item.name.data() + item.name.size() + 1);
  }
  std::erase_if(batch.items, [this](const CatalogItem& item) {
    if (item.kind == FileKind::directory) return true;
    ++size_.files;
    return !needsInformation(item);
  });
}

void Worker::sum(Catalog::Folder& folder, std::span<CatalogItem> items) {
  folder.information(items);
  for (const CatalogItem& item : items) {
    if (item.isMountPoint) continue;
    size_.dataSize += item.dataSize;
    size_.resourceSize += item.resourceSize;
  }
}

void Worker::descend(std::shared_ptr<Catalog::Folder> folder) {
  if (depth_ > kOpenLevels) {
    Level& above = levels_[depth_ - kOpenLevels];
    if (above.folder) {
      const CatalogItem self = above.folder->self();
      above.device = self.device;
      above.inode = self.inode;
      above.folder.reset();
    }
  }
  if (levels_.size() == depth_) levels_.emplace_back();
  levels_[depth_++].folder = std::move(folder);
  readFolder();
}

void Worker::ascend() {
  const std::shared_ptr<Catalog::Folder> left = std::move(levels_[--depth_].folder);
  if (depth_ == 0 || levels_[depth_ - 1].folder) return;
  Level& level = levels_[depth_ - 1];
  int error = 0;
  level.folder = left->openParent(level.device, level.inode, error);
  if (!level.folder) findWayBack();
}

// The folder that was left is not where it was any more. Goes down again by names from the lowest
// folder that is still open, as far as the way is the same one.
void Worker::findWayBack() {
  std::size_t at = depth_ - 1;
  while (!levels_[at].folder)
    --at;  // the first level is never closed
  while (at + 1 < depth_) {
    Level& below = levels_[at + 1];
    int error = 0;
    std::shared_ptr<Catalog::Folder> folder =
        levels_[at].folder->open(levels_[at].names.data() + levels_[at].current, error);
    const CatalogItem self = folder ? folder->self() : CatalogItem();
    if (!folder || self.device != below.device || self.inode != below.inode) break;
    below.folder = std::move(folder);
    if (at > 0) levels_[at].folder.reset();
    ++at;
  }
  for (; depth_ > at + 1; --depth_)
    size_.skippedFolders += levels_[depth_ - 1].left();
}

// Half of what is left in the highest open folder: the largest parts, so that few are given.
void Worker::giveSubfolders() {
  for (std::size_t i = 0; i < depth_; ++i) {
    Level& level = levels_[i];
    if (!level.folder || level.isDone()) continue;
    const std::size_t half = level.next + (level.names.size() - level.next) / 2;
    const auto middle = level.names.begin() + static_cast<std::ptrdiff_t>(half);
    auto from = std::find(middle, level.names.end(), '\0');
    if (from != level.names.end()) ++from;
    // A last one is kept only by who has nothing else to go on with.
    if (from == level.names.end()) {
      if (i + 1 == depth_) continue;
      from = level.names.begin() + static_cast<std::ptrdiff_t>(level.next);
    }
    FolderSizeTask task{level.folder, {from, level.names.end()}, {}};
    level.names.erase(from, level.names.end());
    return queue_->give(std::move(task));
  }
}

void Worker::callHelp() {
  mayCallHelp_ = false;
  const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
  for (std::size_t i = 1; i < std::min(processors, kMaximumWorkers); ++i) {
    Dispatch::global([queue = queue_] { Worker(queue, false).run(); });
  }
}

}  // namespace

FolderSize& FolderSize::operator+=(const FolderSize& other) {
  dataSize += other.dataSize;
  resourceSize += other.resourceSize;
  files += other.files;
  folders += other.folders;
  skippedFolders += other.skippedFolders;
  isCancelled = isCancelled || other.isCancelled;
  return *this;
}

FolderSize folderSize(Catalog::Folder& folder, const std::atomic<bool>* cancel) {
  auto queue = std::make_shared<FolderSizeQueue>(cancel);
  // Not owned: the walk has ended, and all have let go of it, before the caller's folder goes.
  queue->give({std::shared_ptr<Catalog::Folder>(std::shared_ptr<void>(), &folder), {}, {}});
  Worker(queue, true).run();
  return queue->sum();
}

}  // namespace brisko
