#pragma once

#include <string>

#include <sys/types.h>

namespace brisko::helper {

struct RmResult {
  bool started = false;
  bool clientLeft = false;  ///< the program went away meanwhile, and rm was stopped
  int exitStatus = 0;       ///< 0: everything is gone
  std::string output;       ///< at most 128 bytes of what it printed
};

/// Runs "/bin/rm" "-rf" "--" "./NAME" with the working folder set to the descriptor `folder`, as
/// the user `uid` with that user's groups (0: as root), with an environment of its own and no
/// shell. Where rm knows it, "--one-file-system" is given too.
///
/// Meanwhile it watches `client`: when that stream ends or says anything, rm is killed.
RmResult runRm(int folder, const std::string& name, uid_t uid, int client);

}  // namespace brisko::helper
