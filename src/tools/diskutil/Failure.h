#pragma once

#include <stdexcept>

namespace brisko::diskutil {

/// Why something asked for cannot be done: one line for people.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The command line makes no sense.
struct WrongUsage : Failure {
  using Failure::Failure;
};

}  // namespace brisko::diskutil
