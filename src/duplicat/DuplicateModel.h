#pragma once

#include "DuplicateCopies.h"
#include "DuplicateFilesOpt.h"
#include "DuplicateResult.h"
#include "DuplicateTypes.h"
#include "SimpleTreeNode.h"
#include "ThreadWorker.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

enum class DuplicateView : int { first, progress, detail };
enum class DuplicateColumn : int { none, NameColumn, FileSize, ModifyDate };

/// A copy that stayed, and why.
struct DuplicateFailure {
  std::string path;
  std::string reason;
  bool wasTried = false;  ///< it was to be removed, and could not; else it was safer to leave it
};

/// Told of changes, always on the main thread. Each call says what to look at again.
class DuplicateModelListener {
 public:
  virtual ~DuplicateModelListener() = default;
  virtual void pageChanged() {}     ///< view, enabled controls, segments, sort mark
  virtual void treeReset() {}       ///< another tree is shown
  virtual void treeWillChange() {}  ///< groups or leaves are about to leave it, or to be sorted
  virtual void treeDidChange() {}   ///< they have, or are
  virtual void groupChanged(SimpleTreeNode* /*group*/) {}  ///< its ticks, or those of its leaves
  virtual void allTicksChanged() {}                        ///< ticks of any group
  virtual void countsChanged() {}                          ///< summary, sizes, tick-all box, Remove
  virtual void toProWithValue(float /*value*/) {}          ///< search progress, 0 to 1
  virtual void removalProgressed(const std::string& /*path*/, std::size_t /*done*/) {}
  virtual void removalEnded() {}  ///< after it: `removeWarning`
};

/// The duplicate page without its widgets: every state, text and rule that both faces show. Belongs
/// to the main thread; search and removal run in the background and come back through the main
/// queue.
///
/// Some steps follow after a while, which is the page's to wait: it polls
/// `getPathForSreachDuplicate` every 0.1 s of a search, calls `delayBtnChangeStateTime` 1 s after
/// `pageChanged` with a finished search, `returnToFirstView` 1.5 s after stopping, and
/// `doRemoveDuplicateAction` 0.5 s after the confirmation.
///
/// What takes longer than a frame with a hundred thousand groups is done in the background (making
/// the tree, sorting it, planning a removal), or in several turns (ticking all).
class DuplicateModel {
 public:
  DuplicateModel() = default;
  ~DuplicateModel();
  DuplicateModel(const DuplicateModel&) = delete;
  DuplicateModel& operator=(const DuplicateModel&) = delete;

  /// One listener at a time; it must outlive the model or be taken off with null.
  void setListener(DuplicateModelListener* listener) { listener_ = listener; }

  /// Asks before the last copy of a group is ticked: "Are you sure you want to delete all the
  /// duplicate files?", "OK" (true) or "Cancel". Without one the answer is no.
  void setDeleteAllQuestion(std::function<bool()> ask) { askDeleteAll_ = std::move(ask); }

  // Searching.

  /// Both flags true unless set.
  void setSearchOption(const DuplicateSearchOption& option) { option_ = option; }
  /// Files must be larger than this; 0 unless set.
  void setLimitSize(std::uint64_t bytes) { limitSize_ = bytes; }

  /// Searches `path` when it is an existing folder; false when not, or while busy.
  bool viewDragAction(const std::string& path);
  void searchBtnClicked(const std::string& path);
  /// Ends the search soon; what was found until then is shown when `delayBtnChangeStateTime` comes.
  void stopScanBtnClicked();
  void returnToFirstView();
  /// Takes the progress and the path at work from the running search.
  void getPathForSreachDuplicate();
  /// The last step of a finished search. Posts the notice "changeViewActionForDuplicate" when it is
  /// the first one of this page.
  void delayBtnChangeStateTime();
  /// A search has ended, and its last step is still to come.
  bool isFinishDue() const { return isFinishDue_; }

  bool isSearching() const { return twDuplicateSearch_ != nullptr; }
  bool bSearchFinished() const { return bSearchFinished_; }
  bool isStopScan() const { return isStopScan_; }
  const std::string& searchPath() const { return searchPath_; }
  const std::string& pathAtWork() const { return pathAtWork_; }
  const char* pathAtWorkImage() const { return pathAtWorkImage_; }
  float progress() const { return progress_; }  ///< 0 to 1, as last shown
  const std::vector<SkippedFolder>& skipped() const { return skipped_; }

  // What is shown.

  DuplicateView view() const { return view_; }
  bool isCanClick() const { return isCanClick_; }  ///< false while removing
  bool folderButtonEnabled() const { return isCanClick_ && !isSearching(); }
  bool removeButtonEnabled() const {
    return isCanClick_ && !isSearching() && !isTicking() && tickedLeaves_[0] > 0;
  }
  bool noResultShown() const { return leavesOfSegment(segment_) == 0; }

  /// The shown tree's root; null before the first result. Its groups have their copies as children.
  SimpleTreeNode* treeData() const { return treeOfSegment(segment_); }
  SimpleTreeNode* treeOfSegment(std::size_t segment) const { return result_->root(segment); }
  std::size_t remberWitchSelect() const { return segment_; }
  std::string titleOfSegment(std::size_t segment) const;
  std::uint64_t sizeOfSegment(std::size_t segment) const { return result_->size(segment); }
  std::size_t leavesOfSegment(std::size_t segment) const { return result_->leaves(segment); }
  /// Selects a type, 0 to 6.
  void loadValueForSegment(std::size_t segment);

  // Ticking. All of it is ignored while removing, and while all are being ticked.

  /// The checkbox of a leaf or of a group.
  void toggle(SimpleTreeNode& node);
  /// The tick-all box: on ticks all leaves but the last of each group shown, off unticks
  /// everything. With few leaves it has ended when this returns; with more it goes on in further
  /// turns of the main queue while `isTicking`.
  void setAllSelectOrNoSelect(bool on);
  bool isTicking() const { return ticking_ != nullptr; }
  /// "sel", "unsel", or "halfsel" for a group of which some leaves are ticked.
  static const char* boxImage(const SimpleNodeData& data);
  /// The same for the tick-all box.
  const char* allSelectImage() const;
  /// The ticked leaves in the order of ticking, which is that of their removal.
  SimpleTreeNode::Children allSelectNumArr() const {
    return treeOfSegment(0) == nullptr ? SimpleTreeNode::Children()
                                       : tickedLeaves(*treeOfSegment(0));
  }
  std::size_t selectedCount() const { return tickedLeaves_[0]; }
  std::uint64_t selectedSize() const { return tickedSize_; }  ///< bytes, as listed

  // Sorting.

  /// A click on a column header: sorts the tree, groups and in them leaves; again on the same
  /// column, the other way round. A small tree is sorted when this returns; of a large one the
  /// order is found in the background. Ignored while removing.
  void didClickTableColumn(DuplicateColumn column);
  bool isSorting() const { return sorting_ != nullptr; }
  DuplicateColumn lastColumn() const { return lastColumn_; }
  bool sortDescending() const { return sortDescending_; }

  // Counts.

  std::string filesText() const;     ///< "%lu files in %@"
  std::string selectedText() const;  ///< "selected %d files in All"
  std::string summary() const { return filesText() + ", " + selectedText() + "."; }

  // Removing.

  /// Removes the ticked leaves in the background; the page is busy until `removalEnded`.
  void doRemoveDuplicateAction();
  void stopRemoveBtnClicked();
  bool isRemoving() const { return twRemoveDupFiles_ != nullptr; }
  std::size_t removalTotal() const { return removalTotal_; }
  /// What is said when ticked leaves stayed: "Some files that require admin access can't be
  /// removed!" when the removal of one failed; another sentence when all of them were left alone
  /// because that was safer. Empty when none stayed.
  std::string removeWarning() const;
  const std::vector<std::string>& removedPaths() const { return removedPaths_; }
  const std::vector<DuplicateFailure>& failures() const { return failures_; }
  std::uint64_t freedBytes() const { return freedBytes_; }  ///< what the file system gave back

 private:
  struct Removal;
  struct Sorting;
  struct Ticking;
  using Tell = void (DuplicateModelListener::*)();

  void tell(Tell what);
  void tellGroup(SimpleTreeNode& group);
  void clearResult();
  void searchFinished(std::shared_ptr<DuplicateResult> result);
  void getPrograss(std::uint32_t percentage);

  void sort();
  void sortFinished();
  void takeFoundOrder();
  void endSorting();
  void waitForSorting();

  void setTick(SimpleTreeNode& leaf, bool ticked);
  static void recomputeGroup(SimpleTreeNode& group, std::size_t leaves);
  void setSelectState(SimpleTreeNode& leaf);
  void tickAllButLast(SimpleTreeNode& group);
  void untickGroup(SimpleTreeNode& group);
  void tickGroups(const SimpleTreeNode& root, bool on);
  void tickFurther();
  void endTicking();

  static void deleteDupFiles(const std::shared_ptr<Removal>& removal);
  void takeRemoved();
  void refreshOutlineView(SimpleTreeNode& leaf, std::size_t& leavesLeft);
  void deleteParentNode(SimpleTreeNode& group);
  void deleteFinished();

  DuplicateModelListener* listener_ = nullptr;
  std::function<bool()> askDeleteAll_;

  DuplicateSearchOption option_;
  std::uint64_t limitSize_ = 0;
  std::string searchPath_;
  std::shared_ptr<DuplicateFilesOpt> duplicateOpt_;
  std::unique_ptr<ThreadWorker> twDuplicateSearch_;
  float normalPro_ = 0;  ///< the creeping value, in percent
  float progress_ = 0;
  std::string pathAtWork_;
  const char* pathAtWorkImage_ = "ic_folder";
  std::vector<SkippedFolder> skipped_;
  bool bSearchFinished_ = false;
  bool isFinishDue_ = false;
  bool duplicateScaned_ = false;
  bool isStopScan_ = false;
  DuplicateView view_ = DuplicateView::first;

  std::shared_ptr<DuplicateResult> result_ = std::make_shared<DuplicateResult>();
  std::array<std::size_t, kDuplicateSegments> tickedLeaves_{};  ///< the first is the sum
  std::uint64_t tickedSize_ = 0;
  std::uint32_t nextTick_ = 1;
  std::shared_ptr<Ticking> ticking_;
  std::size_t segment_ = 0;
  DuplicateColumn lastColumn_ = DuplicateColumn::none;
  bool sortDescending_ = false;
  std::shared_ptr<Sorting> sorting_;

  bool isCanClick_ = true;
  std::shared_ptr<Removal> removal_;
  std::unique_ptr<ThreadWorker> twRemoveDupFiles_;
  std::size_t removalTotal_ = 0;
  bool isClickStopRemove_ = false;
  std::vector<std::string> removedPaths_;
  std::vector<DuplicateFailure> failures_;
  std::uint64_t freedBytes_ = 0;
};

}  // namespace brisko
