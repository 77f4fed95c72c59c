#pragma once

#include "AMAppItem.h"
#include "AppSizes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace brisko {

class AppSearch;
class RelatedFilesModel;

enum class UninstallColumn : int {
  CheckBox,
  appname,
  version,
  Size,
  system,
  bundleID,
  uninstall,
  none = -1,
};

/// Told of changes, always on the main thread.
class UninstallModelListener {
 public:
  virtual ~UninstallModelListener() = default;
  virtual void listReset() {}  ///< another list of rows
  /// Rows were appended; `first` is the first new one.
  virtual void rowsAdded(std::size_t /*first*/) {}
  virtual void ticksChanged() {}
  virtual void sizesChanged() {}
  virtual void pageChanged() {}  ///< counters, titles, buttons, sort mark
};

/// The list of what is installed, without its widgets: every state, text and rule that both faces
/// show. Belongs to the main thread; folders are searched and sizes measured in the background.
///
/// Searching the list and ticking cost one pass over the rows, sorting n log n.
class UninstallModel {
 public:
  static constexpr int kTypes = 3;  ///< 0 applications, 1 widgets, 2 plug-ins

  UninstallModel();
  ~UninstallModel();
  UninstallModel(const UninstallModel&) = delete;
  UninstallModel& operator=(const UninstallModel&) = delete;

  /// One listener at a time; it must outlive the model or be taken off with null.
  void setListener(UninstallModelListener* listener) { listener_ = listener; }

  // Finding what is installed.

  /// Looks up the folders and starts the initial scan.
  void begimScanFile();
  /// Searches the current type's folders again.
  void refButtonAction();
  bool isScan() const { return isScan_; }
  /// The initial scan or a refresh is at work; ticking, sorting and removing are refused meanwhile.
  bool isBusy() const { return search_ != nullptr; }

  // What is shown.

  std::int32_t appsType() const { return appsType_; }
  /// The type switch; ignored while it is disabled.
  void segmentClickAction(int type);
  /// Shows the rows whose names contain the text, in any case; all for "".
  void controlTextDidChange(const std::string& text);
  /// The clear-search button: all rows again.
  void closeSearchButton();
  const std::string& searchText() const { return searchText_; }

  const AppItems& showListArr() const { return showListArr_; }
  const AppItems& allApplications() const { return lists_[0]; }
  const AppItems& widgetsArr() const { return lists_[1]; }
  const AppItems& pluginsArr() const { return lists_[2]; }
  const AppItems& list(int type) const { return lists_[static_cast<std::size_t>(type)]; }
  /// Everything of all types, for finding out what is shared.
  AppItems everything() const;

  bool typeSegmentEnabled() const { return !isBusy(); }
  bool refButtonEnabled() const { return !isBusy(); }
  /// "   Applications(%d)" or "   Items(%d)".
  std::string headerTitle() const;
  /// "Selected: %d Items", or "Total: %d Items".
  std::string selectCountLabel() const;
  bool uninstallButtonEnabled() const;
  /// "sel", "halfsel" or "unsel".
  const char* selectAllImage() const;
  const char* boxImage(std::size_t row) const;

  /// The row's size as text; has it measured the first time.
  const std::string& sizeText(std::size_t row);
  /// Has everything of the current type measured, after what is in sight.
  void measureAll();
  bool isMeasured() const { return sizes_->pending() == 0; }

  // Ticking.

  void selectUninstallApp(std::size_t row);
  void selectAllButtonAction();
  /// The ticked items of the current type, in the order of ticking.
  const AppItems& ticked() const { return ticked_[type()]; }
  const AppItems& uninsatllAppArr() const { return ticked_[0]; }
  const AppItems& uninsatllWidgtsArr() const { return ticked_[1]; }
  const AppItems& uninsatllPlugetsArr() const { return ticked_[2]; }
  void clickRow(std::int32_t row) { selectRow_ = row; }
  std::int32_t selectRow() const { return selectRow_; }

  // Sorting.

  /// A click on a header; only Size and appname sort, the first time the largest or last first.
  void didClickTableColumn(UninstallColumn column);
  void sortBy(UninstallColumn column, bool ascending);
  bool isSort() const { return isSort_; }
  /// The marked column, and the mark: "NSAscendingSortIndicator" or "NSDescendingSortIndicator".
  UninstallColumn aTableColumn() const { return aTableColumn_; }
  const char* indicator() const { return indicator_; }

  // Removing.

  /// The "Uninstall" button: what is to be reviewed, in ticked order. Empty when refused.
  AppItems uninstallAppButtonAction();
  /// A row's trash button: the row alone.
  AppItems oneAppRemove(std::size_t row);
  /// A removal has ended: takes what it was started for out of its type's lists, whatever was
  /// ticked, sorted or filtered since. Applications of the host's package manager go exactly when
  /// `removal` has taken their package.
  void completeCleanRelatedFiles(const RelatedFilesModel& removal);

 private:
  using Tell = void (UninstallModelListener::*)();

  std::size_t type() const { return static_cast<std::size_t>(appsType_); }
  void tell(Tell what);
  void getApplications();
  void startSearch(const std::vector<int>& types);
  void take(int type, AppItems items);
  void searchEnded();
  void showAll();
  void clearTicks(std::size_t of);

  UninstallModelListener* listener_ = nullptr;
  std::array<std::vector<std::string>, kTypes> searchPaths_;
  std::array<AppItems, kTypes> lists_;
  std::array<AppItems, kTypes> ticked_;
  std::unordered_set<const AMAppItem*> isTicked_;  ///< of all types
  AppItems showListArr_;
  std::unique_ptr<AppSearch> search_;
  std::unique_ptr<AppSizes> sizes_;
  std::string searchText_;
  std::int32_t appsType_ = 0;
  std::int32_t selectRow_ = -1;
  bool isScan_ = false;
  bool isSort_ = false;
  bool isUninsatllOne_ = false;
  AppItems chosen_;  ///< of the removal that is under way
  std::size_t chosenType_ = 0;
  UninstallColumn aTableColumn_ = UninstallColumn::none;
  const char* indicator_ = "";
};

}  // namespace brisko
