#pragma once

#include "BrowserRules.h"
#include "FileIdentity.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// An item of a browser's data as it was shown: what cleaning works on, and nothing else.
struct BrowserTarget {
  std::string path;
  std::optional<FileIdentity> shown;  ///< nothing when nothing was there
  bool isDatabase = false;            ///< its rows go, the file stays
};

/// A browser, or a kind of data below it.
struct BrowerObj {
  std::string iconImage;            ///< a browser's: icon-theme name or path; a kind's: image name
  std::weak_ptr<BrowerObj> parObj;  ///< a kind's browser
  std::string name;                 ///< display name, or the kind's name in the table
  std::vector<std::shared_ptr<BrowerObj>> chrArr;  ///< a browser's kinds
  std::string size;                                ///< a kind's right column
  std::string urlStr;                              ///< a kind's path template
  std::int32_t isSelect = 0;                       ///< 0 none, 1 all, 2 some (browsers only)

  // Beside the record.

  BrowserRule rule;       ///< a browser's row of the tables
  std::string desktopID;  ///< a browser's desktop entry; empty for a bundle
  BrowserFamily family = BrowserFamily::chrome;
  KindRule kindRule;
  bool isBundle = false;               ///< the paths are those of a bundle's table
  std::uint64_t bytes = 0;             ///< a kind's size, where it is one
  std::optional<std::int64_t> count;   ///< a kind's items, where they are counted
  std::vector<BrowserTarget> targets;  ///< as they were when they were shown
  std::vector<std::string> reasons;    ///< what of it cannot be read or was not cleaned, and why
};

using Browsers = std::vector<std::shared_ptr<BrowerObj>>;

}  // namespace brisko
