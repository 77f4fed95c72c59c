#pragma once

#include <string>
#include <vector>

namespace brisko::diskutil {

/// Does what the words after the program's name ask. Writes to standard output; throws Failure, and
/// WrongUsage for words that make no sense.
void runCommand(std::vector<std::string> words);

}  // namespace brisko::diskutil
