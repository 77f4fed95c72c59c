#pragma once

#include "FileFilter.h"
#include "NodeTreeWalk.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace brisko {

/// Told when a batch of entries is in the tree.
class NodeTreeOperatorDelegate {
 public:
  virtual ~NodeTreeOperatorDelegate() = default;
  /// Sizes in the chosen folder have changed, and with them its order.
  virtual void doRootArrSort() = 0;
};

/// Fills folders with their entries and keeps sizes and order right. Belongs to the main thread;
/// the reading itself is done by the workers of a `NodeTreeWalk`.
///
/// The order is that of inserting entry by entry and sorting after each (`standsBefore`), but
/// nothing is moved until somebody looks: a batch marks the folders whose order changed, and each
/// of them is sorted once, when it is asked for. Sizes go up from the deepest folder of a batch, so
/// that each folder above is touched once for a batch.
class NodeTreeOperator {
 public:
  explicit NodeTreeOperator(NodeTreeOperatorDelegate* opDelegate) : opDelegate_(opDelegate) {}
  ~NodeTreeOperator();
  NodeTreeOperator(const NodeTreeOperator&) = delete;
  NodeTreeOperator& operator=(const NodeTreeOperator&) = delete;

  /// Logical size of the item's data, bytes; 0 when it cannot be looked at.
  static std::uint64_t getOneFileSizeWithPath(const std::string& path);

  /// Reads the folder at `path` in the background. `arrived` is called on the main thread whenever
  /// `takeEntries` has something to do, and a last time when `isOver`. False when it is no folder
  /// that can be opened, with errno's value in `error`.
  bool getFileSizeWithPat(const std::string& path, std::function<void()> arrived, int& error);

  /// Puts what was read since the last time into the tree.
  void takeEntries();

  /// Ends the reading soon. What was read stays.
  void stopScan();
  bool isOver() const { return isOver_; }
  /// The reading was stopped, and is over: folders that it did not come to say so from now on.
  void markStopped();

  /// Appends entries to a folder; its order is stale from then on.
  void fileInsertFatherWithRootArr(FileNode& father, std::span<FileNode> entries);

  /// Adds to the size of a folder, and marks its father's order as stale; `settleSizes` carries it
  /// further up.
  void sortFatherSizeWithRootFileNode(FileNode& node, std::uint64_t bytes, std::uint64_t files,
                                      std::uint64_t matching);
  void settleSizes();

  /// Takes what went out of all sizes and counts above it. It leaves no list.
  void takeOut(const FileNode& node);

  /// Puts the folder's entries in order, if they are not.
  static void rootArrSortWithRootArr(FolderContent& folder);
  /// The same for all folders, by all processors.
  void sortAll();

  /// Shows other files. Costs one look at every entry, shared by all processors.
  void setFilter(const FileFilter& filter);
  const FileFilter& filter() const { return filter_; }

  FileNode* root() const { return walk_ ? walk_->root() : nullptr; }
  const NodeTreeWalk* walk() const { return walk_.get(); }
  /// All folders that are in the tree or were, the chosen one first.
  const std::vector<FileNode*>& folders() const { return folders_; }
  std::uint64_t entries() const { return entries_; }
  /// Folders that could not be read, in the order in which that was found out.
  const std::vector<FileNode*>& unread() const { return unread_; }

 private:
  struct Wake;

  void touch(FileNode& folder);
  template <typename Work>
  void forEachFolder(Work work);

  NodeTreeOperatorDelegate* opDelegate_;
  std::shared_ptr<NodeTreeWalk> walk_;
  std::shared_ptr<Wake> wake_;  ///< how the background calls back; taken away when this goes
  bool isOver_ = false;
  FileFilter filter_;
  std::vector<FileNode*> folders_;
  std::vector<FileNode*> unread_;
  std::uint64_t entries_ = 0;
  std::vector<std::vector<FileNode*>> touched_;  ///< by depth
};

}  // namespace brisko
