#pragma once

namespace brisko {

/// The user's wish to stop, from the keyboard or from the system's request to end.
class Interruption {
 public:
  /// Catches interrupt, terminate and hang-up from now on. A second one ends the process at once.
  /// A reader that went away is an error of the next write, not the end of a removal half way.
  static void watch();

  static bool happened();
};

}  // namespace brisko
