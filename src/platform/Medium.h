#pragma once

#include <string>

namespace brisko {

/// What is known of the device that holds a path.
enum class Medium {
  solidState,
  rotating,
  noDevice,    ///< no device of this machine, such as a network or memory file system
  noParent,    ///< none of the devices above it tells what it is
  unreadable,  ///< the device registry cannot be read
};

Medium mediumOf(const std::string& path);

}  // namespace brisko
