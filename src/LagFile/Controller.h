#pragma once

#include "EumeRoot.h"
#include "Removal.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// An entry that could not be removed, and why.
struct LargeFileFailure {
  std::string path;
  std::string reason;
};

/// What ticking has chosen for removal.
struct LargeFileSelection {
  std::size_t count = 0;    ///< entries; a folder that goes as a whole is one
  std::uint64_t bytes = 0;  ///< as listed
};

/// Told of everything that the page shows, on the main thread.
class ControllerDelegate {
 public:
  virtual ~ControllerDelegate() = default;
  virtual void treeReset() {}       ///< another tree, or none; old entries are about to go
  virtual void treeGrew() {}        ///< entries came, sizes grew
  virtual void endScan() {}         ///< see EumeDelegate
  virtual void scanIsOver() {}      ///< complete or stopped
  virtual void reloadTree() {}      ///< ticks, or what the filter shows, changed
  virtual void treeWillChange() {}  ///< entries are about to leave
  virtual void treeDidChange() {}   ///< they have
  /// A removal's progress, 0 to 100, and the entry it is at.
  virtual void changeProgressWithPoint(int /*point*/, const std::string& /*path*/) {}
  virtual void removeEnd() {}  ///< after it: `removedPaths`, `failures`, `freedBytes`
};

/// The Large/Old File Cleaner without its widgets: the tree, its ticks and their removal. Belongs
/// to the main thread; scan and removal run in the background.
class Controller : private EumeDelegate {
 public:
  /// The one that the page works with.
  static Controller& getController();

  Controller() = default;
  ~Controller() override;
  Controller(const Controller&) = delete;
  Controller& operator=(const Controller&) = delete;

  /// One delegate at a time; it must outlive the controller or be taken off with null.
  void setDelegate(ControllerDelegate* delegate) { _aDelegate_ = delegate; }

  // Scanning.

  /// Scans `rootPath` anew; what was there goes. Ignored while removing.
  void eumeAllRootFileNodeWithRootArr(const std::string& rootPath);
  /// Ends the scan soon, also a paused one.
  void stopScan();
  /// Forgets the tree.
  void clear();
  bool isScanning() const { return eumeRoot_ && eumeRoot_->isScanning(); }
  EumeRoot* eumeRoot() const { return eumeRoot_.get(); }
  FileNode* root() const { return eumeRoot_ ? eumeRoot_->root() : nullptr; }
  const std::vector<FileNode*>& aRootArr() const;

  /// Shows only what the filter lets through. Unticks everything, because what is not seen must
  /// not be removed.
  void setFilter(const FileFilter& filter);
  const FileFilter& filter() const { return filter_; }

  // Ticking. All of it is ignored while scanning or removing.

  /// Ticks or unticks an entry with what follows from it below and above. Ignored for locked ones.
  void changeSelectWithNode(FileNode& node, bool select);
  void toggle(FileNode& node) { changeSelectWithNode(node, node.state != TickState::on); }
  /// Ticks or unticks all entries of the chosen folder.
  void selectAllFileNode(bool select);
  /// "sel", "unsel" or "halfsel" for the box of all entries.
  const char* changeSelectAllButtonState() const;
  static const char* boxImage(const FileNode& node);

  /// Why the entry cannot be ticked, in one line; empty when it can. Looks at the file system for
  /// entries that were not asked about before.
  std::string lockReason(const FileNode& node) const;

  /// The entries ticked by themselves, in the order of ticking.
  const std::vector<FileNode*>& selectNodeArr();
  /// What removing would take now.
  LargeFileSelection selection() const;
  /// "Selected: %d items"
  std::string selectedText() const;

  // Removing.

  /// Removes what is ticked, in the background. False when there is nothing to do.
  bool deleteFilesWithDic();
  /// Collects what is to be removed from `nodes`: ticked entries as a whole, and what is ticked in
  /// partly ticked ones.
  static void deleteFilesWithDic(const std::vector<FileNode*>& nodes,
                                 std::vector<FileNode*>& deleteArr);
  /// Removes exactly these, in this order. What goes is what was listed, or nothing.
  void removeSelectFilesWithDic(const std::vector<FileNode*>& deleteArr);
  void stopRemove();  ///< ends it after the entry at work, or within it
  bool isStopRemove() const { return isStopRemove_; }
  bool isRemoving() const { return removal_ != nullptr; }
  const std::vector<std::string>& removedPaths() const { return removedPaths_; }
  const std::vector<LargeFileFailure>& failures() const { return failures_; }
  std::uint64_t freedBytes() const { return freedBytes_; }  ///< what the file system gave back

  // Looking.

  /// Shows the entry in the file browser. Nothing for one without a path.
  static void openFileWithFileNode(const FileNode* node);
  /// Opens the entry in the program that is set for it. Nothing for one without a path.
  static void pereviewFileWithFileNode(const FileNode* node);

 private:
  struct Removal;
  using Tell = void (ControllerDelegate::*)();

  void tell(Tell what);
  void endScan() override { tell(&ControllerDelegate::endScan); }
  void treeGrew() override { tell(&ControllerDelegate::treeGrew); }
  void scanIsOver() override { tell(&ControllerDelegate::scanIsOver); }

  bool mayTick() const { return root() != nullptr && !isScanning() && !isRemoving(); }
  void setState(FileNode& node, TickState state);
  void setSelected(FileNode& node, bool selected);
  void changeChildrenFilNodeStateWithFileNode(FileNode& node, bool select);
  void changeFatherNodeSelectStateWithFileNode(FileNode& node);
  void untickAll();

  static void removeInBackground(const std::shared_ptr<Removal>& removal);
  void reportRemoval(Removal& removal, int point, const std::string& path);
  void takeRemoved(Removal& removal);
  void endRemoval();

  ControllerDelegate* _aDelegate_ = nullptr;
  std::unique_ptr<EumeRoot> eumeRoot_;
  FileFilter filter_;
  std::vector<FileNode*> selectNodeArr_;
  std::size_t staleSelected_ = 0;      ///< of those, how many were taken off again
  std::vector<FileNode*> everTicked_;  ///< so that all can be unticked without a walk

  bool isStopRemove_ = false;
  std::shared_ptr<Removal> removal_;
  std::vector<std::string> removedPaths_;
  std::vector<LargeFileFailure> failures_;
  std::uint64_t freedBytes_ = 0;
};

}  // namespace brisko
