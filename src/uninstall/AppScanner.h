#pragma once

#include "AMAppItem.h"

#include <atomic>
#include <functional>
#include <string>

namespace brisko {

/// Finds what is installed below a folder, to any depth, in the file system's order. Bundles are
/// not entered. A bundle may be a link, and is then that link; a folder that is a link is not
/// searched: what lies behind it is another place's, and could not be removed by this path.
///
/// For background threads; ends early when `cancel` is set.
class AppScanner {
 public:
  using Sink = std::function<void(AppItem)>;

  explicit AppScanner(const std::atomic<bool>& cancel) : cancel_(cancel) {}

  /// Folders with the extension "app", less the system's own.
  void applicationsInPath(const std::string& path, const Sink& found) const;
  /// Entries with the extension "wdgt".
  void widgetsInPath(const std::string& path, const Sink& found) const;
  /// Entries with one of the extensions of plug-ins.
  void pluginsInPath(const std::string& path, const Sink& found) const;

  /// The scanner of a type: 0 applications, 1 widgets, 2 plug-ins.
  void search(int type, const std::string& path, const Sink& found) const;

  /// Whether what `path` names is listed as of this type, by its name and kind.
  static bool isItem(int type, const std::string& path);

 private:
  const std::atomic<bool>& cancel_;
};

/// Of a type, the folders that are searched, in their order.
std::vector<std::string> appSearchPaths(int type);

}  // namespace brisko
