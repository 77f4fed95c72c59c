#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// One of the user's login items, as the store of the host has it.
struct LoginItem {
  std::string identifier;  ///< what the store calls it
  bool isHidden = false;   ///< starts without a window in front, where it can
};

/// Something that others set up to start at login, and whether it does for this user.
struct SwitchedLoginItem {
  std::string identifier;
  std::string name;  ///< for people
  std::string path;  ///< the file that sets it up
  bool isOn = true;
  bool isForEveryone = true;  ///< of the system; else the user's own, switched off somewhere else
};

/// What opens when the user logs in. Usable from every thread; no operation waits for anybody.
///
/// Operations that change something return a status: 0, or one of the numbers below.
class LoginItems {
 public:
  enum Status : int {
    noErr = 0,
    dskFulErr = -34,
    ioErr = -36,
    fnfErr = -43,
    paramErr = -50,
    permErr = -54,
    errAETimeout = -1712,
    memFulErr = -4960,
  };
  using Observer = std::function<void()>;

  virtual ~LoginItems() = default;

  /// The items in their kept order, those that cannot be resolved included.
  virtual int snapshot(std::vector<LoginItem>& items) = 0;

  /// What the item opens; nothing when that is gone. An entry that cannot be understood is itself
  /// what it resolves to, so that it is seen.
  virtual std::optional<std::string> resolve(const LoginItem& item) = 0;

  /// Puts what lies at `path` behind all others. One that is there already goes there.
  virtual int insertLast(const std::string& path, bool isHidden) = 0;
  virtual int setHidden(const LoginItem& item, bool isHidden) = 0;
  virtual int remove(const LoginItem& item) = 0;

  /// What starts besides, by name.
  virtual std::vector<SwitchedLoginItem> switchedItems() = 0;
  /// Lets one of those start for this user, or not.
  virtual int setSwitched(const SwitchedLoginItem& item, bool isOn) = 0;

  /// Calls `observer` on the main queue after each change, by whomever, from now on.
  virtual int observe(Observer observer) = 0;
  virtual void stopObserving(int token) = 0;
};

}  // namespace brisko
