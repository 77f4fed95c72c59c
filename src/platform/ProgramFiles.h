#pragma once

#include <string>

namespace brisko {

/// Where the program's own files lie, found from the executable that runs, whichever of its own it
/// is. Empty when the system does not tell.
class ProgramFiles {
 public:
  /// The program that people start ("…/bin/brisko").
  static std::string program();
  /// The folder of what it starts itself ("…/libexec/brisko").
  static std::string tools();
};

}  // namespace brisko
