#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace brisko::srm {

/// What one overwriting of a file writes: random bytes, or three bytes over and over.
struct Pass {
  bool isRandom = true;
  std::array<std::uint8_t, 3> pattern{};  ///< of a pass that is not random

  /// "random", or the pattern as "0x92 0x49 0x24".
  std::string description() const;
};

enum class Scheme {
  simple,   ///< one random pass
  doe,      ///< three: two random ones and zeroes
  dod,      ///< seven: character, complement and random twice, a random one between
  gutmann,  ///< thirty-five: patterns for old encodings between four random ones each
};

/// The passes in order. With `zero` one of zeroes comes last, unless the scheme ends with it.
std::vector<Pass> passesOf(Scheme scheme, bool zero);

}  // namespace brisko::srm
