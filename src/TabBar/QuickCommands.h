#pragma once

#include "QuickActions.h"

#include <string>
#include <vector>

namespace brisko {

/// The programs that the quick switches run.
class QuickCommands {
 public:
  struct Answer {
    std::string output;  ///< without blanks and line breaks at its ends
    std::string errors;

    /// What `tool` said on standard error, as "TOOL: REASON", of why it cannot do it here; empty
    /// when it said nothing of that kind.
    std::string reason(const std::string& tool) const;
  };

  /// Gives `command` to "/bin/bash -c" and waits.
  static Answer bash(const std::string& command);
  /// Starts a program without a shell and waits.
  static Answer run(const std::vector<std::string>& arguments);

  /// The state that was meant, or off with the reason.
  static SwitchState meant(bool isOn, std::string reason);
};

}  // namespace brisko
