#pragma once

#include "AMAppItem.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// One search for what is installed, in the background: the folders of each wanted type in turn,
/// and after those of the applications (type 0) the host's own applications.
///
/// Belongs to the main thread, which alone is told. Destroying it, also from within `ended`, ends
/// the search early and unheard.
class AppSearch {
 public:
  /// The folders of one type, in their order.
  struct Part {
    int type = 0;
    std::vector<std::string> folders;
  };
  /// Told of what was found of a type, in batches: one update per item would keep the window busy.
  using Found = std::function<void(int type, AppItems items)>;
  /// Told once, after everything that was found.
  using Ended = std::function<void()>;

  AppSearch(std::vector<Part> parts, Found found, Ended ended);
  ~AppSearch();
  AppSearch(const AppSearch&) = delete;
  AppSearch& operator=(const AppSearch&) = delete;

 private:
  struct Shared;

  std::shared_ptr<Shared> shared_;
};

}  // namespace brisko
