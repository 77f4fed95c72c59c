#pragma once

#include "InstalledApplications.h"

#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// Whose rules read and clean a browser's data.
enum class BrowserFamily { chrome, firefox, opera, safari };

/// One kind of data that a browser offers.
struct KindRule {
  std::string name;
  std::vector<std::string> locations;  ///< path templates; a bundle's kind has exactly one
  std::string holds;                   ///< a folder counts only when it has an entry of this name
  std::vector<std::string> files;      ///< names in a profile, in place of the family's own
};

/// One browser of the tables, as one way of installing it lays its data out.
struct BrowserRule {
  std::string key;
  BrowserFamily family = BrowserFamily::chrome;
  std::vector<std::string> desktopEntries;  ///< id patterns; none for bundles
  InstalledApplication::Kind installation = InstalledApplication::Kind::package;
  std::vector<KindRule> kinds;
  std::vector<std::string> locks;  ///< path templates of what a running browser holds

  bool hasDesktopEntry(std::string_view id) const;
};

/// The tables of what browsers keep: EraserHistory.plist for browsers that are bundles, in the
/// order "Safari", "Google Chrome", "Firefox", "Opera", and EraserHistoryLinux.plist for those with
/// a desktop entry. Read afresh. A table that is broken, or holds what is not understood, gives no
/// rules and one log line.
std::vector<BrowserRule> bundleBrowserRules();
std::vector<BrowserRule> desktopBrowserRules();

}  // namespace brisko
