#include "NodeTreeOperator.h"

#include "Dispatch.h"
#include "Host.h"

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

// What one step of sorting looks at, without going to the entry for it.
struct Ranked {
  std::uint64_t size;
  std::int64_t rank;
  FileNode* node;

  bool operator<(const Ranked& other) const {
    return size != other.size ? size > other.size : rank > other.rank;
  }
};

// Below it the plain comparison is as fast.
constexpr std::size_t kManyEntries = 64;
constexpr std::size_t kFoldersPerPart = 256;

}  // namespace

struct NodeTreeOperator::Wake {
  std::function<void()> arrived;
};

NodeTreeOperator::~NodeTreeOperator() {
  stopScan();
  if (wake_) wake_->arrived = nullptr;
}

std::uint64_t NodeTreeOperator::getOneFileSizeWithPath(const std::string& path) {
  return Host::current().catalog->information(path).dataSize;
}

bool NodeTreeOperator::getFileSizeWithPat(const std::string& path, std::function<void()> arrived,
                                          int& error) {
  std::shared_ptr<Catalog::Folder> folder = Host::current().catalog->open(path, error);
  if (!folder) return false;
  walk_ = std::make_shared<NodeTreeWalk>(path, folder->self(), Progress::shareInit());
  folders_ = {walk_->root()};
  wake_ = std::make_shared<Wake>();
  wake_->arrived = std::move(arrived);
  Dispatch::global([walk = walk_, wake = wake_, folder = std::move(folder), this]() mutable {
    walk->run(std::move(folder), [wake] {
      // A copy: what it does may end the scan and take it away.
      if (const auto call = wake->arrived) call();
    });
    Dispatch::mainAsync([wake, this] {
      if (!wake->arrived) return;
      isOver_ = true;
      const auto call = wake->arrived;
      call();
    });
  });
  return true;
}

void NodeTreeOperator::stopScan() {
  if (walk_) walk_->stop();
}

void NodeTreeOperator::markStopped() {
  for (FileNode* node : folders_) {
    ReadState& state = node->folder->readState;
    if (state == ReadState::queued || state == ReadState::reading) state = ReadState::stopped;
  }
}

void NodeTreeOperator::takeEntries() {
  if (!walk_) return;
  const WalkNews news = walk_->takeNews();
  for (const auto& [folder, entries] : news.entries)
    fileInsertFatherWithRootArr(*folder, entries);
  for (const auto& [folder, readState, error] : news.folders) {
    folder->folder->readState = readState;
    folder->folder->error = error;
    if (readState != ReadState::finished) unread_.push_back(folder);
  }
  if (news.entries.empty() && news.folders.empty()) return;
  settleSizes();
  if (opDelegate_ != nullptr) opDelegate_->doRootArrSort();
}

void NodeTreeOperator::fileInsertFatherWithRootArr(FileNode& father, std::span<FileNode> entries) {
  FolderContent& content = *father.folder;
  std::uint64_t bytes = 0;
  std::uint64_t files = 0;
  std::uint64_t matching = 0;
  const std::size_t needed = content.list.size() + entries.size();
  // A folder of a few entries, which most are, holds no more room than it fills.
  if (content.list.empty() || needed > content.list.capacity()) {
    content.list.reserve(content.list.empty() ? needed : std::max(needed, 2 * content.list.size()));
  }
  for (FileNode& entry : entries) {
    content.list.push_back(&entry);
    if (entry.folder != nullptr) {
      entry.folder->isFiltered = filter_.isActive();
      ++content.folders;
      folders_.push_back(&entry);
      continue;
    }
    entry.matches = filter_.matches(entry);
    bytes += entry.size;
    ++files;
    matching += entry.matches ? 1 : 0;
  }
  entries_ += entries.size();
  content.isOrdered = false;
  if (content.readState == ReadState::queued) content.readState = ReadState::reading;
  sortFatherSizeWithRootFileNode(father, bytes, files, matching);
}

void NodeTreeOperator::touch(FileNode& folder) {
  if (std::exchange(folder.folder->isTouched, true)) return;
  const std::size_t depth = folder.folder->depth;
  if (touched_.size() <= depth) touched_.resize(depth + 1);
  touched_[depth].push_back(&folder);
}

void NodeTreeOperator::sortFatherSizeWithRootFileNode(FileNode& node, std::uint64_t bytes,
                                                      std::uint64_t files, std::uint64_t matching) {
  node.folder->added += bytes;
  node.folder->files += files;
  node.folder->matching += matching;
  node.folder->addedFiles += files;
  node.folder->addedMatching += matching;
  touch(node);
}

void NodeTreeOperator::settleSizes() {
  for (std::size_t depth = touched_.size(); depth-- > 0;) {
    // The list above grows meanwhile, this one does not.
    for (FileNode* node : touched_[depth]) {
      FolderContent& content = *node->folder;
      content.isTouched = false;
      const std::uint64_t bytes = std::exchange(content.added, 0);
      const std::uint64_t files = std::exchange(content.addedFiles, 0);
      const std::uint64_t matching = std::exchange(content.addedMatching, 0);
      node->size += bytes;
      if (node->holder == nullptr) continue;
      if (bytes > 0) node->holder->folder->isOrdered = false;
      if (bytes > 0 || files > 0) {
        sortFatherSizeWithRootFileNode(*node->holder, bytes, files, matching);
      }
    }
    touched_[depth].clear();
  }
}

void NodeTreeOperator::takeOut(const FileNode& node) {
  const bool isFolder = node.folder != nullptr;
  const std::uint64_t files = isFolder ? node.folder->files : 1;
  const std::uint64_t matching = isFolder ? node.folder->matching : node.matches ? 1 : 0;
  for (FileNode* at = node.holder; at != nullptr; at = at->holder) {
    at->size -= std::min(at->size, node.size);
    at->folder->files -= std::min(at->folder->files, files);
    at->folder->matching -= std::min(at->folder->matching, matching);
    if (at->holder != nullptr) at->holder->folder->isOrdered = false;
  }
}

void NodeTreeOperator::rootArrSortWithRootArr(FolderContent& folder) {
  if (folder.isOrdered) return;
  folder.isOrdered = true;
  std::vector<FileNode*>& list = folder.list;
  if (list.size() < kManyEntries) {
    std::sort(list.begin(), list.end(), [](const FileNode* one, const FileNode* other) {
      return standsBefore(*one, *other);
    });
    return;
  }
  std::vector<Ranked> ranked;
  ranked.reserve(list.size());
  for (FileNode* node : list)
    ranked.push_back({node->size, rankOf(*node), node});
  std::sort(ranked.begin(), ranked.end());
  for (std::size_t i = 0; i < list.size(); ++i)
    list[i] = ranked[i].node;
}

template <typename Work>
void NodeTreeOperator::forEachFolder(Work work) {
  const std::size_t parts = (folders_.size() + kFoldersPerPart - 1) / kFoldersPerPart;
  Dispatch::apply(parts, [&](std::size_t part) {
    const std::size_t end = std::min(folders_.size(), (part + 1) * kFoldersPerPart);
    for (std::size_t i = part * kFoldersPerPart; i < end; ++i)
      work(*folders_[i]->folder);
  });
}

void NodeTreeOperator::sortAll() {
  forEachFolder([](FolderContent& folder) { rootArrSortWithRootArr(folder); });
}

void NodeTreeOperator::setFilter(const FileFilter& filter) {
  if (filter == filter_) return;
  filter_ = filter;
  // Each folder's own files first; then what is below it is added, the deepest first.
  forEachFolder([this](FolderContent& content) {
    content.isFiltered = filter_.isActive();
    content.matching = 0;
    for (FileNode* entry : content.list) {
      if (entry->folder != nullptr) continue;
      entry->matches = filter_.matches(*entry);
      content.matching += entry->matches ? 1 : 0;
    }
  });
  std::vector<std::vector<FileNode*>> byDepth;
  for (FileNode* node : folders_) {
    const std::size_t depth = node->folder->depth;
    if (byDepth.size() <= depth) byDepth.resize(depth + 1);
    if (!node->isGone) byDepth[depth].push_back(node);
  }
  for (std::size_t depth = byDepth.size(); depth-- > 1;) {
    for (const FileNode* node : byDepth[depth])
      node->holder->folder->matching += node->folder->matching;
  }
}

}  // namespace brisko
