#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brisko::diskutil {

/// Where the system has this program: in one of its own folders, the administrator's and writable by
/// no one else. Empty when it has none.
std::string programPath(std::string_view name);
/// The same; throws Failure, naming the package that would bring it.
std::string requireProgram(std::string_view name, std::string_view package);

/// Runs a program and waits. Throws Failure with the last line that it said when it fails.
void runProgram(const std::string& path, const std::vector<std::string>& arguments);

}  // namespace brisko::diskutil
