#pragma once

#include "Preferences.h"

#include <map>
#include <mutex>
#include <string>

namespace brisko {

/// One property list per domain in FOLDER/DOMAIN.plist, read afresh each time so that what another
/// process wrote is seen. What was set here lies over that until it is written.
class LinuxPreferences : public Preferences {
 public:
  explicit LinuxPreferences(std::string folder);

  PropertyList value(const std::string& domain, const std::string& key) override;
  PropertyList persistentDomain(const std::string& domain) override;
  void setValue(const std::string& domain, const std::string& key, PropertyList value) override;
  void setPersistentDomain(const std::string& domain, PropertyList dictionary) override;
  bool synchronize() override;

 private:
  struct Changes {
    bool isReplaced = false;  ///< `values` is the whole domain, not what differs from the file
    PropertyList::Dictionary values;  ///< null takes a key out
  };

  PropertyList currentDomain(const std::string& domain) const;
  bool write(const std::string& domain) const;
  std::string file(const std::string& domain) const;

  std::string folder_;
  mutable std::mutex mutex_;
  std::map<std::string, Changes> changes_;
};

/// The language codes of the session's locale variables, most wanted first: "de_DE.UTF-8" gives
/// "de". "en" when they name none.
PropertyList languagesOfSession();

}  // namespace brisko
