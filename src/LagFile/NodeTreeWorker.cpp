#include "NodeTreeWorker.h"

#include "Dispatch.h"

#include <algorithm>
#include <cerrno>
#include <thread>
#include <utility>

namespace brisko {
namespace {

constexpr std::size_t kBatch = 40;
// Folders that one worker holds open; those above are closed and opened again on the way up.
constexpr std::size_t kOpenLevels = 12;
constexpr std::size_t kMaximumWorkers = 8;
// A tree of fewer entries is read before another thread has woken.
constexpr std::size_t kEntriesWorthHelp = 2000;
// Stands for "in the chosen folder itself".
constexpr std::uint32_t kNoTop = UINT32_MAX;

ReadState stateOf(int error) {
  switch (error) {
    case 0:
      return ReadState::finished;
    case EXDEV:
      return ReadState::mounted;
    case EACCES:
    case EPERM:
      return ReadState::denied;
    default:
      return ReadState::error;
  }
}

}  // namespace

NodeTreeWorker::NodeTreeWorker(std::shared_ptr<NodeTreeWalk> walk, bool mayCallHelp)
    : walk_(std::move(walk)),
      queue_(walk_->queue_),
      arena_(walk_->arena()),
      mayCallHelp_(mayCallHelp) {}

void NodeTreeWorker::run() {
  WalkTask task;
  while (queue_.take(task)) {
    if (!walk_->isStopped()) walk(task);
    task = {};
    queue_.finish();
  }
}

bool NodeTreeWorker::goesOn() {
  walk_->progress_.isPause();
  return !walk_->isStopped();
}

std::uint32_t NodeTreeWorker::topOf(const Level& level, const FileNode* child) {
  return level.top == kNoTop ? child->place : level.top;
}

void NodeTreeWorker::walk(WalkTask& task) {
  const std::uint32_t top = task.node->holder == nullptr ? kNoTop : task.top;
  if (!task.entries.empty()) {
    lookAt(*task.folder, task.node, task.entries, top);
    if (top != kNoTop) leave(top);
    return;
  }
  if (levels_.empty()) levels_.emplace_back();
  depth_ = 1;
  levels_[0] = {std::move(task.folder), task.node, top, std::move(task.subfolders), 0};
  if (task.isWhole) top == kNoTop ? readChosenFolder() : readFolder();
  while (depth_ > 0 && goesOn()) {
    if (queue_.isWanted()) giveSubfolders();
    Level& level = levels_[depth_ - 1];
    if (level.isDone()) {
      ascend();
      continue;
    }
    descend(level.subfolders[level.next++]);
  }
  for (Level& level : levels_)
    level.folder.reset();
}

// The entries of the batch as nodes; folders among them are noted as still to be read.
std::span<FileNode> NodeTreeWorker::made(Level& level, std::uint32_t& place) {
  const std::span<FileNode> entries = arena_.nodes(batch_.items.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    CatalogItem& item = batch_.items[i];
    if (item.kind == FileKind::unknown) level.folder->information({&item, 1});
    FileNode& entry = entries[i];
    entry.name = arena_.name(item.name);
    entry.kind = item.kind;
    entry.inode = item.inode;
    entry.holder = level.node;
    entry.place = place++;
    if (item.kind != FileKind::directory) continue;
    entry.folder = arena_.folder();
    entry.folder->depth = level.node->folder->depth + 1;
    level.subfolders.push_back(&entry);
  }
  seen_ += entries.size();
  if (mayCallHelp_ && seen_ > kEntriesWorthHelp) callHelp();
  return entries;
}

// Looks at the entries, or lets another worker do it. Entries with folders among them are not given
// away: the folders may be gone into as soon as this returns.
void NodeTreeWorker::deal(Level& level, std::span<FileNode> entries, bool hasFolders) {
  if (entries.size() < kBatch || hasFolders || !queue_.isWanted()) {
    lookAt(*level.folder, level.node, entries, level.top);
    return;
  }
  if (level.top != kNoTop) ++walk_->outstanding_[level.top];
  queue_.give({level.folder, level.node, level.top, false, {}, entries});
}

// Reads the deepest level's folder.
void NodeTreeWorker::readFolder() {
  Level& level = levels_[depth_ - 1];
  walk_->atWork_.store(level.node, std::memory_order_release);  // its name is read elsewhere
  std::uint32_t place = 0;
  while (goesOn() && level.folder->read(batch_, kBatch)) {
    const std::size_t before = level.subfolders.size();
    const std::span<FileNode> entries = made(level, place);
    const std::size_t folders = level.subfolders.size() - before;
    walk_->outstanding_[level.top] += static_cast<std::uint32_t>(folders);
    deal(level, entries, folders > 0);
  }
  if (!walk_->isStopped()) {
    walk_->publish(level.node, stateOf(level.folder->error()), level.folder->error());
    leave(level.top);
  }
}

// All names first: how many there are is what the progress is counted by.
void NodeTreeWorker::readChosenFolder() {
  Level& level = levels_[0];
  std::vector<std::pair<std::span<FileNode>, bool>> listing;
  std::uint32_t place = 0;
  while (goesOn() && level.folder->read(batch_, kBatch)) {
    const std::size_t before = level.subfolders.size();
    const std::span<FileNode> entries = made(level, place);
    listing.emplace_back(entries, level.subfolders.size() > before);
  }
  walk_->outstanding_ = std::make_unique<std::atomic<std::uint32_t>[]>(place);
  for (const FileNode* child : level.subfolders)
    walk_->outstanding_[child->place] = 1;
  walk_->total_ = place;
  for (const auto& [entries, hasFolders] : listing) {
    if (!goesOn()) return;
    deal(level, entries, hasFolders);
  }
  if (walk_->isStopped()) return;
  walk_->publish(level.node, stateOf(level.folder->error()), level.folder->error());
}

void NodeTreeWorker::lookAt(Catalog::Folder& folder, FileNode* node, std::span<FileNode> entries,
                            std::uint32_t top) {
  items_.assign(entries.size(), {});
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!goesOn()) return;
    items_[i].name = entries[i].name;
  }
  folder.information(items_);
  std::uint32_t files = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    take(entries[i], items_[i]);
    if (entries[i].folder == nullptr) ++files;
  }
  if (top == kNoTop) walk_->handled_ += files;
  walk_->publish(node, entries);
}

void NodeTreeWorker::take(FileNode& entry, const CatalogItem& item) {
  if (!item.hasInformation) return;
  // What has become something else since it was listed fits no removal any more.
  if (item.kind != entry.kind) {
    entry.kind = FileKind::unknown;
    return;
  }
  entry.isLooked = true;
  entry.inode = item.inode;
  entry.modificationSeconds = item.modificationSeconds;
  entry.modificationNanoseconds = static_cast<std::uint32_t>(item.modificationNanoseconds);
  if (entry.folder != nullptr) {
    entry.folder->device = item.device;
  } else if (!item.isMountPoint) {
    entry.size = item.dataSize;
  }
}

void NodeTreeWorker::descend(FileNode* child) {
  const std::uint32_t top = topOf(levels_[depth_ - 1], child);
  int error = 0;
  std::shared_ptr<Catalog::Folder> folder = levels_[depth_ - 1].folder->open(child->name, error);
  if (!folder) {
    walk_->publish(child, stateOf(error), error);
    leave(top);
    return;
  }
  if (depth_ > kOpenLevels) levels_[depth_ - kOpenLevels].folder.reset();
  if (levels_.size() == depth_) levels_.emplace_back();
  Level& level = levels_[depth_++];
  level.folder = std::move(folder);
  level.node = child;
  level.top = top;
  level.subfolders.clear();
  level.next = 0;
  readFolder();
}

void NodeTreeWorker::ascend() {
  const std::shared_ptr<Catalog::Folder> left = std::move(levels_[--depth_].folder);
  if (depth_ == 0 || levels_[depth_ - 1].folder) return;
  Level& level = levels_[depth_ - 1];
  int error = 0;
  level.folder = left->openParent(level.node->folder->device, level.node->inode, error);
  if (!level.folder) findWayBack();
}

// The folder that was left is not where it was any more. Goes down again by names from the lowest
// folder that is still open, as far as the way is the same one.
void NodeTreeWorker::findWayBack() {
  std::size_t at = depth_ - 1;
  while (!levels_[at].folder)
    --at;  // the first level is never closed
  while (at + 1 < depth_) {
    Level& below = levels_[at + 1];
    int error = 0;
    std::shared_ptr<Catalog::Folder> folder = levels_[at].folder->open(below.node->name, error);
    const CatalogItem self = folder ? folder->self() : CatalogItem();
    if (!folder || self.device != below.node->folder->device || self.inode != below.node->inode) {
      break;
    }
    below.folder = std::move(folder);
    if (at > 0) levels_[at].folder.reset();
    ++at;
  }
  for (; depth_ > at + 1; --depth_)
    abandon(levels_[depth_ - 1]);
}

void NodeTreeWorker::abandon(const Level& level) {
  for (std::size_t i = level.next; i < level.subfolders.size(); ++i) {
    walk_->publish(level.subfolders[i], ReadState::error, ENOENT);
    leave(topOf(level, level.subfolders[i]));
  }
}

// Half of what is left in the highest open folder: the largest parts, so that few are given.
void NodeTreeWorker::giveSubfolders() {
  for (std::size_t i = 0; i < depth_; ++i) {
    Level& level = levels_[i];
    if (!level.folder || level.isDone()) continue;
    const std::size_t left = level.subfolders.size() - level.next;
    // A last one is kept only by who has nothing else to go on with.
    if (left == 1 && i + 1 == depth_) continue;
    const auto from = level.subfolders.end() - static_cast<std::ptrdiff_t>((left + 1) / 2);
    WalkTask task{level.folder, level.node, level.top, false, {from, level.subfolders.end()}, {}};
    level.subfolders.erase(from, level.subfolders.end());
    return queue_.give(std::move(task));
  }
}

void NodeTreeWorker::callHelp() {
  mayCallHelp_ = false;
  const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
  for (std::size_t i = 1; i < std::min(processors, kMaximumWorkers); ++i) {
    Dispatch::global([walk = walk_] { NodeTreeWorker(walk, false).run(); });
  }
}

void NodeTreeWorker::leave(std::uint32_t top) {
  if (top != kNoTop && --walk_->outstanding_[top] == 0) ++walk_->handled_;
}

}  // namespace brisko
