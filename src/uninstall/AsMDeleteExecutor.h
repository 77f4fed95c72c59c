#pragma once

#include "AMAppItem.h"
#include "Authorization.h"
#include "Removal.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace brisko {

/// The uninstaller's worker: removes entries one after the other, as the user first, then with
/// administrator rights, which it asks for at most once while it holds them.
///
/// Every removal goes through the removal engine and its rules. What those refuse, or what is not
/// the item any more that was shown, never reaches the privileged step. An entry whose path is gone
/// does: it takes the right, and then counts as removed, as the tool would have it.
///
/// What belongs to an application of the host stays when the application itself could not go. A
/// package that an earlier entry's removal took along counts as removed with it, and so does what
/// belongs to several of them.
///
/// To be made by `make`: the work holds on to it.
class AsMDeleteExecutor : public std::enable_shared_from_this<AsMDeleteExecutor> {
 public:
  /// Told of each entry, on the worker's thread.
  class Delegate {
   public:
    virtual ~Delegate() = default;
    virtual void deleteRelatedFile(const AppItem& item, const RemovalReport& report) = 0;
    virtual void deleteRelatedFileFail(const AppItem& item, const RemovalReport& report) = 0;
    /// A package manager's progress, 0 to 1.
    virtual void packageProgressed(const AppItem& /*item*/, double /*part*/) {}
    /// All entries were handled, or it was stopped.
    virtual void deleteEnded() = 0;
  };

  static std::shared_ptr<AsMDeleteExecutor> make(std::shared_ptr<Delegate> delegate);
  ~AsMDeleteExecutor();

  /// Removes these in their order, in the background.
  void executeDelete(AppItems items);
  /// Ends it: a tree in the middle, which then keeps the rest; a package manager's work never.
  void stop() { stop_ = true; }

  /// Removes one entry and tells the delegate. Logs "Alloc authorization failed!!!" and
  /// "Clean file by authorization failed: %@".
  bool removeTrahFile(const AppItem& item);

  /// Makes sure that the administrator's right is held. On failure "Error Creating Initial
  /// Authorization: %d", "Copy Rights Unsuccessful: %d" or "Make ExternalForm Unsuccessful: %d" is
  /// logged, and the next call asks again.
  bool allocAuthorization();
  /// A handle for one privileged call, to be freed by the caller; 0 when the right is not held.
  /// Logs "Creat authorization failed: %d", "Copy authorization failed: %d" and
  /// "Get authoriztion failed: %d", and gives the handle all the same.
  Authorization::Reference authorizationRef();
  /// Removes what is at the path with the right that is held, while it is the item that was
  /// `shown`. Removed too when nothing is there any more.
  RemovalReport authDeleteAtPath(const std::string& path, const std::optional<FileIdentity>& shown);
  /// Gives the right back; "Free authorization failed: %d" is logged.
  void freeAuthorization();

 private:
  explicit AsMDeleteExecutor(std::shared_ptr<Delegate> delegate) : delegate_(std::move(delegate)) {}

  bool removePackage(const AppItem& item);
  bool removeFile(const AppItem& item);
  RemovalReport removedAs(const AMAppItem& item) const;
  bool tell(const AppItem& item, const RemovalReport& report);

  std::shared_ptr<Delegate> delegate_;
  AppItems trashFiles_;
  std::set<const InstalledApplication*> staying_;  ///< of the host's, those that could not go
  std::set<std::string> goneFiles_;  ///< paths of what belonged to the host's applications
  std::map<std::string, std::uint64_t> gonePackages_;  ///< by key, with the bytes counted for each
  std::atomic<bool> stop_ = false;
  Authorization::Reference authorizationRef_ = 0;
  bool isValidAuth_ = false;
  Authorization::ExternalForm authForm_{};
};

}  // namespace brisko
