#pragma once

#include <string>

namespace brisko::test {

/// Stands between every test program and the calls that take names away: unlink, unlinkat, rmdir,
/// remove and the renames. One that reaches outside the folders allowed here ends the program with
/// a line that says what was about to go. The folder that counts is the one that the call would
/// really work in, links resolved.
///
/// What a child process does after exec is not seen.
class UnlinkGuard {
 public:
  /// Allows what lies below `folder`. The build tree and every TemporaryFolder are allowed already.
  static void allow(const std::string& folder);
  static void disallow(const std::string& folder);
};

}  // namespace brisko::test
