#pragma once

#include "BrowerObj.h"

#include <atomic>
#include <string>

namespace brisko {

/// Finds the installed browsers and fills their kinds. For background threads: it walks folders,
/// reads databases and starts the package managers' tools.
class BrowserSearch {
 public:
  /// A set `stop` ends it early, with what was found until then.
  explicit BrowserSearch(const std::atomic<bool>& stop);

  /// Browsers in the application folders, in their order, then those with desktop entries, in the
  /// table's order.
  Browsers run();

  /// Appends a browser for each bundle in the folder and below whose display name contains one of
  /// the four names. Links are not followed.
  void applicationsInPath(const std::string& path);

 private:
  void addBundle(const std::string& path);
  void addDesktopBrowsers();
  void getSubArrWithKey(const std::shared_ptr<BrowerObj>& browser);

  const std::atomic<bool>& stop_;
  std::vector<BrowserRule> bundleRules_;
  std::vector<BrowserRule> desktopRules_;
  Browsers browsers_;
};

}  // namespace brisko
