#pragma once

#include "InstalledApplications.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brisko {

/// An installed snap, as its own folders tell it.
struct SnapFacts {
  std::string version;
  std::string type;         ///< "app", or "base", "snapd" … for the system's own; "app" unsaid
  std::uint64_t bytes = 0;  ///< of its image; 0 unknown
  std::int64_t date = 0;    ///< when that was fetched, seconds since 1970
};

/// Where snapd puts the desktop entries of snaps, below `root`.
std::string snapExports(const std::string& root);

/// The snap of that name below `root`; nothing when it is not installed.
std::optional<SnapFacts> snapFacts(const std::string& root, const std::string& name);

/// What "snap remove" would do: that one, unless the system needs it.
UninstallPlan snapPlan(const std::string& root, const std::string& name);

}  // namespace brisko
