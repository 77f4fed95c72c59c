#pragma once

#include "Command.h"

#include <memory>
#include <vector>

namespace brisko {

/// All commands, in the order in which the help lists them.
std::vector<std::unique_ptr<Command>> makeCommands();

}  // namespace brisko
