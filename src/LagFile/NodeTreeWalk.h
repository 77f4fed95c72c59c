#pragma once

#include "Catalog.h"
#include "FileNode.h"
#include "NodeArena.h"
#include "Progress.h"
#include "WorkQueue.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace brisko {

/// A part of a walk that one worker hands to another.
struct WalkTask {
  std::shared_ptr<Catalog::Folder> folder;
  FileNode* node = nullptr;           ///< the folder's entry
  std::uint32_t top = 0;              ///< below which entry of the chosen folder it lies
  bool isWhole = false;               ///< nothing of the folder was read yet
  std::vector<FileNode*> subfolders;  ///< folders in it to be read
  std::span<FileNode> entries;        ///< entries of it to be looked at
};

/// What the workers found since the last time: entries of folders, and how folders came out.
struct WalkNews {
  struct Entries {
    FileNode* folder;
    std::span<FileNode> entries;
  };
  struct Folder {
    FileNode* folder;
    ReadState readState;
    int error;
  };
  std::vector<Entries> entries;
  std::vector<Folder> folders;
};

/// Reads a whole tree with all processors and hands what it finds to the main thread.
///
/// It follows no link, crosses no mount and works at any depth. Folders are read in batches of 40
/// entries; the entries of one folder are numbered in the order of its listing, so that the order
/// in which people see them does not depend on which worker was faster. What was found goes to the
/// main queue at most every 100 ms, however much it is.
///
/// Shared by its workers and whoever shows the tree; entries live as long as it does.
class NodeTreeWalk : public std::enable_shared_from_this<NodeTreeWalk> {
 public:
  /// At least so long between two calls on the main queue.
  static constexpr std::chrono::milliseconds kInterval{100};

  /// `path` is the folder to read, absolute. `device` and `inode` are what it must be.
  NodeTreeWalk(const std::string& path, const CatalogItem& facts, Progress& progress);
  ~NodeTreeWalk();

  /// Reads it all; returns when everything was read or the walk was stopped. Blocks: not for the
  /// main thread. `arrived` is called on the main queue when there is news, and after the last.
  void run(std::shared_ptr<Catalog::Folder> folder, std::function<void()> arrived);

  void stop() { stop_ = true; }
  bool isStopped() const { return stop_.load(std::memory_order_relaxed); }

  /// Main thread: what came since the last time.
  WalkNews takeNews();

  FileNode* root() { return root_; }
  std::uint32_t total() const { return total_; }      ///< entries in the chosen folder
  std::uint32_t handled() const { return handled_; }  ///< those that are through, with all below
  /// The folder that is being read.
  const FileNode* folderAtWork() const { return atWork_.load(std::memory_order_acquire); }
  /// Bytes that the tree takes. Once it is complete.
  std::size_t footprint() const;

 private:
  friend class NodeTreeWorker;

  NodeArena& arena();
  void publish(FileNode* folder, std::span<FileNode> entries);
  void publish(FileNode* folder, ReadState readState, int error);
  void tell();

  Progress& progress_;
  FileNode* root_;
  std::atomic<bool> stop_ = false;
  std::atomic<std::uint32_t> total_ = 0;
  std::atomic<std::uint32_t> handled_ = 0;
  std::atomic<const FileNode*> atWork_ = nullptr;
  /// For each entry of the chosen folder: what of it is still to be read.
  std::unique_ptr<std::atomic<std::uint32_t>[]> outstanding_;
  WorkQueue<WalkTask> queue_;

  std::mutex mutex_;  ///< guards what follows
  std::vector<std::unique_ptr<NodeArena>> arenas_;
  WalkNews news_;
  bool isTold_ = false;
  std::chrono::steady_clock::time_point lastTold_;
  std::function<void()> arrived_;
};

}  // namespace brisko
