#pragma once

#include "CommUti.h"
#include "FastCleanScanFile.h"
#include "Removal.h"
#include "TCTreeNode.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace brisko {

/// What one category's row shows (the row view `FastTypeView`).
struct FastTypeRow {
  std::string icon;
  std::string title;
  std::string subTitle;
  std::string size;           ///< "" until the category is scanned
  bool sizeIsDimmed = false;  ///< nothing was found
  bool loadingShown = false;
  bool checkBoxShown = false;
  bool checkBoxEnabled = false;
  std::string checkBoxImage;  ///< "sel", "unsel", "halfsel" or "disable"
  bool detailButtonShown = false;
  bool detailButtonEnabled = true;
  bool bSelect = false;
};

/// The round main button.
struct FastCleanButton {
  std::string title = "Scan";  ///< "Scan", "Stop", "Clean" or "..."
  bool enabled = true;
  bool shown = true;
  bool scanningLook = false;  ///< the ring turns
  double percentage = 0;      ///< 0 to about 1
};

enum class FastCleanView : int { start, detail, subDetail, cleanEnd };

/// An entry that cleaning would remove or did remove.
struct FastCleanItem {
  int category = 0;
  std::shared_ptr<TCTreeNode> entry;
};

/// An entry that stayed, and why.
struct FastCleanFailure {
  std::string path;
  std::string reason;
};

/// Told of changes, always on the main thread. Each call says what to look at again.
class FastCleanModelListener {
 public:
  virtual ~FastCleanModelListener() = default;
  virtual void pageChanged() {}  ///< view, main button, back button, busy
  virtual void rowChanged(int /*category*/) {}
  virtual void sizeLineChanged() {}
  virtual void detailListChanged() {}  ///< entries, selection label, select-all box
  /// The path being removed, at most every 50 ms.
  virtual void cleaningProgressed(const std::string& /*path*/) {}
};

/// The Junk Cleaner's page without its widgets: every state, text, image name and rule that both
/// faces show. Belongs to the main thread; scan and removal run in the background and come back
/// through the main queue.
class FastCleanModel {
 public:
  FastCleanModel();
  ~FastCleanModel();
  FastCleanModel(const FastCleanModel&) = delete;
  FastCleanModel& operator=(const FastCleanModel&) = delete;

  /// One listener at a time; it must outlive the model or be taken off with null.
  void setListener(FastCleanModelListener* listener);

  /// Shows the full-disk-access window and returns when it was closed. Called before a scan when
  /// the access is missing and the system protects folders by it. The scan starts in every case.
  void setFullDiskAccessQuestion(std::function<void()> ask);
  /// 0 the probe folder does not exist, 1 it cannot be listed, 2 it can.
  static int getAuthorizationStatus();
  /// What that was when the last scan began.
  int authorizationStatus() const { return authorizationStatus_; }

  // State.

  int indexPage() const { return indexPage_; }  ///< 0 start, 1 scanning, 2 scanned
  FastCleanView view() const { return view_; }
  bool isCanClick() const { return isCanClick_; }  ///< false while cleaning
  const FastCleanButton& mainButton() const { return mainButton_; }
  bool backHomeButtonEnabled() const { return backHomeEnabled_; }
  const std::array<FastTypeRow, kJunkCategoryCount>& rows() const { return rows_; }
  /// The category nodes; one of them is complete once its row has a size.
  const FastCleanScanFile::Nodes& allTypeArr() const { return allTypeArr_; }

  std::int64_t totalSize() const { return totalSize_; }
  /// "%@ Junk files found." with its size part set off, or "Cleaning junk files, please wait...".
  AttributedText totalSizeLabel() const;
  /// The end screen's figure.
  std::string cleanValueLabel() const;
  bool completedLabelShown() const { return completedShown_; }
  /// The path at work, for the line below the ring; asked a few times a second.
  std::string pathLabel() const;

  // Start view and rows.

  void buttonAction();  ///< the main button: starts, stops or cleans, by `indexPage`
  void beginScanFile();
  void stopButtonAction();
  void backHomeButtonAction();  ///< a scan that still runs is stopped and its reports dropped
  void checkBoxButtonAction(int category);
  void detailButtonAction(int category);
  /// Ticks all entries of a category, as the terminal does for one that is named.
  void selectCategory(int category);

  // The detail list of one category.

  const std::shared_ptr<TCTreeNode>& selectTreeNode() const { return selectTreeNode_; }
  std::string subDetailTitleLabel() const;
  std::string selectFileLabel() const;                      ///< "Selected %d item(s), size: %@"
  int aSelectAllState() const { return aSelectAllState_; }  ///< 0 none, 1 all, 2 some
  std::string selectAllImage() const;                       ///< "unsel", "sel" or "halfsel"
  std::size_t numberOfRows() const;
  /// Toggles the entry at `row` of the shown category.
  void selectListButton(std::size_t row);
  void setAllSelectOrNoSelect();
  void backToDetailButtonAction();

  // Cleaning.

  /// What cleaning would remove now, in its order: the dry run and the real run share it.
  std::vector<FastCleanItem> plan() const;
  /// Sum of the plan's sizes as shown; what a confirmation names.
  std::uint64_t planSize() const;
  /// Removes the plan in the background. The page is busy until it ended.
  void beginCleanFile();
  /// Ends cleaning after the entry at work; what is left stays listed.
  void stopCleaning();

  std::uint64_t cleanTotalSize() const { return cleanTotalSize_; }  ///< sum of sizes as shown
  std::uint64_t freedBytes() const { return freedBytes_; }  ///< what the file system gave back
  const std::vector<std::string>& removedPaths() const { return removedPaths_; }
  const std::vector<FastCleanFailure>& failures() const { return failures_; }
  bool cleaningWasStopped() const { return cleaningWasStopped_; }

  // Rules over nodes, shared by both faces.

  /// "disable", "sel", "halfsel" or "unsel".
  static std::string boxImage(const TCTreeNode& category);
  static bool isAnySelected(const FastCleanScanFile::Nodes& categories);
  /// Sum of the sizes as shown of every selected entry.
  static std::uint64_t selectedTotal(const FastCleanScanFile::Nodes& categories);
  /// Selects all entries when not all are, else none. Without entries nothing changes.
  static void toggleCategory(TCTreeNode& category);

 private:
  /// What background blocks hold of the model: as long as `model` is set, on the main thread, it
  /// lives.
  struct Lifetime {
    FastCleanModel* model = nullptr;
  };
  /// One cleaning, shared with its background block.
  struct Cleaning {
    std::vector<FastCleanItem> items;    ///< fixed before the background begins
    std::vector<RemovalReport> reports;  ///< one per item that was tried; read when it has ended
    std::atomic<bool> stop{false};
    std::mutex mutex;
    std::string pathAtWork;  ///< guarded by `mutex`
  };

  static void removeItems(Cleaning& cleaning, const std::weak_ptr<Lifetime>& lifetime);
  void addDetailView();
  void getProgress(int category);
  void scanEnded();
  void rederiveBoxImages();
  void refreshSelection();
  void changeCleanButtonEnabled();
  void setAllSelectBut();
  void takeResults(const Cleaning& cleaning);
  void cleanEnd(const Cleaning& cleaning);
  void showCleanEnd();
  void tell(void (FastCleanModelListener::*what)());
  void tellRow(int category);
  void tellRows();

  FastCleanModelListener* listener_ = nullptr;
  std::function<void()> askFullDiskAccess_;
  std::shared_ptr<Lifetime> lifetime_;  ///< background results find out by it that the page is gone

  int authorizationStatus_ = 0;
  int indexPage_ = 0;
  FastCleanView view_ = FastCleanView::start;
  bool isCanClick_ = true;
  bool backHomeEnabled_ = true;
  bool completedShown_ = false;
  bool rowsMade_ = false;
  std::shared_ptr<Cleaning> cleaning_;  ///< set while cleaning
  FastCleanButton mainButton_;
  std::array<FastTypeRow, kJunkCategoryCount> rows_;
  FastCleanScanFile::Nodes allTypeArr_;
  std::shared_ptr<TCTreeNode> selectTreeNode_;
  int aSelectAllState_ = 1;
  std::int64_t totalSize_ = 0;
  std::uint64_t cleanTotalSize_ = 0;
  std::uint64_t freedBytes_ = 0;
  std::vector<std::string> removedPaths_;
  std::vector<FastCleanFailure> failures_;
  bool cleaningWasStopped_ = false;
};

}  // namespace brisko
