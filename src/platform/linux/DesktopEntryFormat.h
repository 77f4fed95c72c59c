#pragma once

#include <string>
#include <string_view>

namespace brisko {

// What a line of a desktop entry is made of.

/// Without the blanks, tabs and carriage returns around it. A part of `text`.
std::string_view trimmedOfBlanks(std::string_view text);

/// A value with its escapes resolved. Those that the format does not know stay as they are.
std::string unescapedValue(std::string_view value);

/// A text as a value, so that `unescapedValue` gives it back.
std::string escapedValue(std::string_view text);

}  // namespace brisko
