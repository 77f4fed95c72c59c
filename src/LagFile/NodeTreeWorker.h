#pragma once

#include "NodeTreeWalk.h"

#include <memory>
#include <span>
#include <vector>

namespace brisko {

/// One thread's part of a `NodeTreeWalk`: goes down the folders of its task, keeping at most a
/// dozen of them open, and gives away what another worker waits for.
class NodeTreeWorker {
 public:
  NodeTreeWorker(std::shared_ptr<NodeTreeWalk> walk, bool mayCallHelp);

  /// Takes tasks until the walk has ended.
  void run();

 private:
  // A folder on the way down, with what is still to be read in it.
  struct Level {
    std::shared_ptr<Catalog::Folder> folder;  // null while it is closed
    FileNode* node = nullptr;
    std::uint32_t top = 0;
    std::vector<FileNode*> subfolders;
    std::size_t next = 0;

    bool isDone() const { return next >= subfolders.size(); }
  };

  void walk(WalkTask& task);
  void readFolder();
  void readChosenFolder();
  std::span<FileNode> made(Level& level, std::uint32_t& place);
  void lookAt(Catalog::Folder& folder, FileNode* node, std::span<FileNode> entries,
              std::uint32_t top);
  void take(FileNode& entry, const CatalogItem& item);
  void deal(Level& level, std::span<FileNode> entries, bool hasFolders);
  void descend(FileNode* child);
  void ascend();
  void findWayBack();
  void giveSubfolders();
  void callHelp();
  void leave(std::uint32_t top);
  void abandon(const Level& level);
  bool goesOn();
  static std::uint32_t topOf(const Level& level, const FileNode* child);

  std::shared_ptr<NodeTreeWalk> walk_;
  WorkQueue<WalkTask>& queue_;
  NodeArena& arena_;
  bool mayCallHelp_;
  std::size_t seen_ = 0;
  CatalogBatch batch_;
  std::vector<CatalogItem> items_;
  std::vector<Level> levels_;
  std::size_t depth_ = 0;
};

}  // namespace brisko
