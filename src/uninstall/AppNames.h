#pragma once

#include <string>
#include <string_view>

namespace brisko {

/// Names as applications and their files carry them. Bytes that are not UTF-8 stay as they are.

/// All letters of every script in lower case, one by one.
std::string lowerCased(std::string_view text);
std::string withoutBlanks(std::string_view text);

/// What people call the bundle at `path`: its last component, of an application without ".app".
std::string bundleDisplayName(const std::string& path);

}  // namespace brisko
