#pragma once

#include "LinuxLoginItemsWatch.h"
#include "LoginItems.h"

#include <mutex>
#include <string>
#include <vector>

namespace brisko {

class DesktopEntryText;
class HostFolders;
class Preferences;

/// Login items as autostart entries, by the rules that desktops share (freedesktop.org, "Desktop
/// Application Autostart"): files in the folder "autostart" of the user's
/// configuration, and the ones for everyone, which a file of the same name there overrides.
class LinuxLoginItems : public LoginItems {
 public:
  LinuxLoginItems(const HostFolders& folders, Preferences& preferences);

  int snapshot(std::vector<LoginItem>& items) override;
  std::optional<std::string> resolve(const LoginItem& item) override;
  int insertLast(const std::string& given, bool isHidden) override;
  int setHidden(const LoginItem& item, bool isHidden) override;
  int remove(const LoginItem& item) override;
  std::vector<SwitchedLoginItem> switchedItems() override;
  int setSwitched(const SwitchedLoginItem& item, bool isOn) override;
  int observe(Observer observer) override { return watch_.observe(std::move(observer)); }
  void stopObserving(int token) override { watch_.stopObserving(token); }

 private:
  std::string fileOf(const std::string& name) const { return folder_ + "/" + name; }
  std::string sharedFileOf(const std::string& name) const;
  std::vector<std::string> names() const;
  std::vector<std::string> keptOrder() const;
  void keepOrder(const std::vector<std::string>& names);
  std::string freeName(const std::string& path) const;
  int write(const std::string& name, const DesktopEntryText& entry);
  int removeFile(const std::string& name);

  std::string folder_;                      ///< the user's
  std::vector<std::string> sharedFolders_;  ///< the first one's entries hold
  Preferences& preferences_;
  std::mutex mutex_;
  LinuxLoginItemsWatch watch_;
};

}  // namespace brisko
