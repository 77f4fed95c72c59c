#pragma once

#include "Authorization.h"
#include "FileIdentity.h"
#include "Removal.h"

#include <atomic>
#include <optional>
#include <string>

namespace brisko {

/// The shared removal service: makes an item deletable, removes it as the user, and only when that
/// fails removes it with administrator rights, which are asked for at most once per run.
///
/// What is refused as protected, as a mount, as changed since it was shown or as lying behind a
/// link, and what is not there, never reaches the privileged step: no prompt is shown for it.
///
/// It has no lock: removals do not overlap, because a page that removes is busy and a terminal does
/// one thing at a time.
class ZkAuthorization {
 public:
  static ZkAuthorization& shareZkAuthorization();

  ZkAuthorization() = default;
  ~ZkAuthorization();
  ZkAuthorization(const ZkAuthorization&) = delete;
  ZkAuthorization& operator=(const ZkAuthorization&) = delete;

  /// Makes sure that the administrator right is held; prompts when it is not. False when it was not
  /// given, after "Error Creating Initial Authorization: %d", "Copy Rights failed: %d" or
  /// "Make ExternalForm failed: %d"; the next call prompts again.
  bool allocAuthorization();
  /// Gives the right back. Always true; a failure is logged as "Free Rights failed: %d".
  bool freeAuthorization();
  /// A handle for one privileged call, to be freed by the caller; 0 when the right is not held or
  /// cannot be had back ("Creat Ret failed: %d"). "Copy Rights failed: %d" and "Get Rights failed:
  /// %d" are logged, and the handle is given all the same.
  Authorization::Reference getAuthorizationRet();

  /// Removes the file or tree at `path`. True when nothing is there any more.
  bool synFastRemovePath(const std::string& path);
  /// The same for an item that was shown: it goes only while it is still what was shown. Says what
  /// happened and how much the file system gave back. A refused or closed prompt is
  /// `RemovalOutcome::cancelled`. With `cancel` the ordinary removal can be stopped.
  RemovalReport synFastRemovePath(const std::string& path, const std::optional<FileIdentity>& shown,
                                  const std::atomic<bool>* cancel = nullptr);

  /// Removes with administrator rights only. False without a prompt for what is refused in any
  /// case, and for a path whose bytes do not fit into max(its characters, 260) - 1, where
  /// characters are UTF-16 units. True when the tool printed nothing.
  static bool removeItemAtPath(const std::string& path);

  /// Installs a privileged helper job; `error` gets the status of a failure. True when the right is
  /// held already. Logs "Failed to create AuthorizationRef. Error code: %d".
  bool blessHelperWithLabel(const std::string& label, int* error);

  bool isValidAuth() const { return isValidAuth_; }

 private:
  RemovalReport removePrivileged(const std::string& path, const std::optional<FileIdentity>& shown);
  RemovalReport runTool(const std::string& path, const std::optional<FileIdentity>& shown);

  Authorization::Reference authorizationRef_ = 0;
  bool isValidAuth_ = false;
  Authorization::ExternalForm authForm_{};
  int lastStatus_ = 0;  ///< of the last attempt to obtain the right
};

}  // namespace brisko
