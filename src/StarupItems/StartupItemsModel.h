#pragma once

#include "ASLoginStartItem.h"
#include "LoginItems.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// What the model tells, on the main thread.
class StartupItemsListener {
 public:
  virtual ~StartupItemsListener() = default;
  virtual void itemsChanged() = 0;
  /// Something asked for did not happen; `text` says what and why.
  virtual void changeFailed(const std::string& text) = 0;
};

/// The Startup Items Manager: the user's login items as rows, and what can be done to them. Main
/// thread only.
///
/// Rows leave out entries that do not resolve and repeated paths, yet a row's index is used as the
/// index of an entry. Where such an entry precedes a row, an operation on the row acts on another
/// login item; `entryFor` tells which, so that both faces can ask before they do it.
class StartupItemsModel {
 public:
  StartupItemsModel();
  ~StartupItemsModel();
  StartupItemsModel(const StartupItemsModel&) = delete;
  StartupItemsModel& operator=(const StartupItemsModel&) = delete;

  void setListener(StartupItemsListener* listener) { listener_ = listener; }

  /// Follows changes of the store from now on, and reads it.
  void getAllItmes();

  /// Empties the rows and reads them anew in the background; ignored while that goes on. Logs
  /// "----------------0" or "----------------1" for each entry.
  void updateLoginItemsList();

  /// Puts `path`, or what it leads to when it is a link, behind the other items.
  void addButtonAction(const std::string& path);
  // A row that is not there, as while the list is read, changes nothing.
  /// Removes the entry at the row's index.
  void removeButtonActoion(std::size_t row);
  /// Sets the hidden flag of the entry at the row's index to what the row's item is not.
  void setHideStar(std::size_t row);
  /// Lets something that others set up start or not.
  void setSwitched(std::size_t row, bool isOn);

  bool isScan() const { return isScan_; }
  /// Whether the rows have been read at least once.
  bool isRead() const { return isRead_; }
  const std::vector<ASLoginStartItem>& allItems() const { return allItems_; }
  const std::vector<SwitchedLoginItem>& switchedItems() const { return switchedItems_; }

  /// "sel" or "unsel".
  static const char* hideImage(const ASLoginStartItem& item);

  /// Where choosing something to add begins: the applications' folder, where there is one.
  static std::string startingFolder();

  /// What an operation on the row would really act on: the path that the entry at its index
  /// resolves to, or the entry's own identifier; empty without such an entry. Equal to the row's
  /// path but for the case told above.
  std::string entryFor(std::size_t row) const;

 private:
  struct Reading {
    std::vector<ASLoginStartItem> items;
    std::vector<SwitchedLoginItem> switched;
  };

  static Reading read();
  void take(Reading reading);
  void loginItemsListDidChange();
  void changeEntry(std::size_t row, const char* failure,
                   const std::function<int(const LoginItem&)>& change);
  /// Tells when `status` is none of success, and reads again either way.
  void finish(int status, const char* what);

  StartupItemsListener* listener_ = nullptr;
  std::vector<ASLoginStartItem> allItems_;
  std::vector<SwitchedLoginItem> switchedItems_;
  bool isScan_ = false;
  bool isRead_ = false;
  bool isStale_ = false;  ///< the store changed while it was read
  int token_ = 0;
  std::shared_ptr<int> life_ = std::make_shared<int>();  ///< gone when a late reading has no owner
};

/// A status of the store in words.
std::string loginItemsReason(int status);

}  // namespace brisko
