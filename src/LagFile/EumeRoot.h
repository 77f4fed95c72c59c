#pragma once

#include "NodeTreeOperator.h"

#include <cstdint>
#include <memory>
#include <string>

namespace brisko {

/// Told of a scan, on the main thread.
class EumeDelegate {
 public:
  virtual ~EumeDelegate() = default;
  /// The notice of a complete scan. It comes only while the number of top-level entries handled
  /// since the program began happens to be that of this folder; so as a rule once in a run.
  virtual void endScan() {}
  /// Entries came into the tree, or sizes in it have grown.
  virtual void treeGrew() {}
  /// The scan is over, complete or stopped.
  virtual void scanIsOver() {}
};

/// One scan of one folder: what is directly in it, how many entries that are, and how many of them
/// are through. Belongs to the main thread.
class EumeRoot : private NodeTreeOperatorDelegate {
 public:
  explicit EumeRoot(EumeDelegate* eumeDelegate);
  ~EumeRoot() override;

  /// Scans in the background. `path` should be absolute and free of links. A file makes a tree of
  /// one entry, with no end notice; what cannot be opened makes none, with `error` set.
  void eumeAllRootFileNodeWithRootArr(const std::string& path);

  /// What is directly in the folder, largest first.
  const std::vector<FileNode*>& rootArr();

  /// Share of the top-level entries that are through, 0 to 100; 0 while their number is not known.
  float getProgress() const;
  std::uint32_t total() const;
  std::uint32_t handled() const;

  /// Keeps the scan waiting, or lets it go on; it takes effect at the next entry.
  void pauseScan();
  bool isPaused() const;
  /// Ends the scan soon; what was found stays.
  void stopScan();

  bool isScanning() const { return isScanning_; }
  bool isStopped() const { return isStopped_; }
  int error() const { return error_; }  ///< errno's value when the folder could not be opened
  std::string pathAtWork() const;

  NodeTreeOperator& nodeTreeOperator() { return *operator_; }
  FileNode* root() { return root_; }

 private:
  void getRootNodeListWithPath(const std::string& path);
  void doRootArrSort() override;
  void insertFileInRootArrWithFile(const std::string& path);
  void entriesArrived();
  void topLevelIsOver();

  EumeDelegate* eumeDelegate_;
  std::unique_ptr<NodeTreeOperator> operator_;
  FileNode* root_ = nullptr;
  NodeArena single_;  ///< holds the entry when a file was given
  bool isScanning_ = false;
  bool isStopped_ = false;
  int error_ = 0;
};

}  // namespace brisko
