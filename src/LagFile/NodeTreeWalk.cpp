#include "NodeTreeWalk.h"

#include "Dispatch.h"
#include "NodeTreeWorker.h"

#include <utility>

namespace brisko {

NodeTreeWalk::NodeTreeWalk(const std::string& path, const CatalogItem& facts, Progress& progress)
    : progress_(progress), lastTold_(std::chrono::steady_clock::now()) {
  NodeArena& first = arena();
  root_ = first.nodes(1).data();
  root_->name = first.name(path);
  root_->kind = FileKind::directory;
  root_->inode = facts.inode;
  root_->modificationSeconds = facts.modificationSeconds;
  root_->isLooked = true;
  root_->folder = first.folder();
  root_->folder->device = facts.device;
}

NodeTreeWalk::~NodeTreeWalk() = default;

NodeArena& NodeTreeWalk::arena() {
  const std::lock_guard lock(mutex_);
  return *arenas_.emplace_back(std::make_unique<NodeArena>());
}

void NodeTreeWalk::run(std::shared_ptr<Catalog::Folder> folder, std::function<void()> arrived) {
  arrived_ = std::move(arrived);
  queue_.give({std::move(folder), root_, 0, true, {}, {}});
  NodeTreeWorker(shared_from_this(), true).run();
  // All workers are through with it: nothing is published any more.
  Dispatch::mainAsync(std::exchange(arrived_, nullptr));
}

void NodeTreeWalk::publish(FileNode* folder, std::span<FileNode> entries) {
  const std::lock_guard lock(mutex_);
  news_.entries.push_back({folder, entries});
  tell();
}

void NodeTreeWalk::publish(FileNode* folder, ReadState readState, int error) {
  const std::lock_guard lock(mutex_);
  news_.folders.push_back({folder, readState, error});
  tell();
}

// With the lock held.
void NodeTreeWalk::tell() {
  if (isTold_ || !arrived_) return;
  const auto now = std::chrono::steady_clock::now();
  if (now - lastTold_ < kInterval) return;
  lastTold_ = now;
  isTold_ = true;
  Dispatch::mainAsync(arrived_);
}

WalkNews NodeTreeWalk::takeNews() {
  const std::lock_guard lock(mutex_);
  isTold_ = false;
  return std::exchange(news_, {});
}

std::size_t NodeTreeWalk::footprint() const {
  std::size_t bytes = 0;
  for (const auto& arena : arenas_)
    bytes += arena->footprint();
  return bytes;
}

}  // namespace brisko
