#pragma once

#include <cstddef>
#include <string_view>

namespace brisko {

/// The length in bytes (1 to 4) of the character that `text` begins with; 0 when its first bytes
/// are no well-formed UTF-8 (over-long forms, surrogates and values above U+10FFFF are not) or it
/// is empty.
std::size_t utf8SequenceLength(std::string_view text);

}  // namespace brisko
