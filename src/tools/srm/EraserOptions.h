#pragma once

#include "PassScheme.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brisko::srm {

/// What the command line asks for.
struct EraserOptions {
  Scheme scheme = Scheme::gutmann;  ///< without -s, -E or -m
  bool zero = false;                ///< -z: a pass of zeroes last
  bool force = false;       ///< -f: a missing path is no failure, a write protection is lifted
  bool recursive = false;   ///< -r: folders with what they hold
  bool verbose = false;     ///< -v: says on standard output what it does
  std::uint64_t names = 1;  ///< --names: so many names a file may have
  std::vector<std::string> paths;
};

/// Reads the command line. On failure `problem` says why in one line; it is "" when help was asked
/// for, which has then been printed.
bool readOptions(int argc, char** argv, EraserOptions& options, std::string& problem);

}  // namespace brisko::srm
