#pragma once

#include <array>
#include <optional>
#include <string>

#include "Authorization.h"
#include "FileIdentity.h"
#include "Removal.h"

namespace brisko {

/// The shared removal service: makes an item deletable, removes it as the user, and only when that
/// fails removes it with administrator rights, which are asked for at most once per run.
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

  /// Makes sure that the administrator right is held; prompts when it is not. False, with a log line,
  /// when it was not given; the next call prompts again.
  bool allocAuthorization();
  /// Gives the right back. Always true.
  bool freeAuthorization();
  /// A handle for one privileged call, to be freed by the caller; 0 when the right is not held.
  Authorization::Reference getAuthorizationRet();

  /// Removes the file or tree at `path`. True when it is gone.
  bool synFastRemovePath(const std::string& path);
  /// The same for an item that was shown: it goes only while it is still what was shown. Says what
  /// happened and how much the file system gave back.
  RemovalReport synFastRemovePath(const std::string& path, const std::optional<FileIdentity>& shown);

  /// Removes with administrator rights only. False without a prompt for a path whose bytes do not fit
  /// into max(its characters, 260) - 1.
  static bool removeItemAtPath(const std::string& path);

  /// Installs a privileged helper job; `error` gets the status of a failure. True when the right is
  /// held already.
  bool blessHelperWithLabel(const std::string& label, int* error);

  bool isValidAuth() const { return isValidAuth_; }

 private:
  Authorization::Reference authorizationRef_ = 0;
  bool isValidAuth_ = false;
  Authorization::ExternalForm authForm_{};
};

}  // namespace brisko
