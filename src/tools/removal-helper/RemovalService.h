#pragma once

#include "HelperProtocol.h"
#include "ProtectedPaths.h"

#include <memory>
#include <optional>
#include <string>

#include <sys/stat.h>
#include <sys/types.h>

namespace brisko {
struct ParentFolder;
}

namespace brisko::helper {

/// The privileged side: answers the requests of one program, one after the other.
///
/// It trusts nothing that it is told. Each path must be absolute, in its normal form and free of
/// links; protected places and mounts are refused by the built-in table for the user who asked;
/// where the program says which item it means, it must be that one. Packages are removed only when
/// the package manager, asked here again, would remove exactly those, and none that must stay.
class RemovalService {
 public:
  /// `client` is the stream, `uid` the user on whose behalf the program runs.
  RemovalService(int client, uid_t uid) : client_(client), uid_(uid) {}

  /// Until the stream ends. The exit status for the process.
  int run();

 private:
  Message answer(const Message& request);
  Message remove(const Message& request);
  Message removePackages(const Message& request);
  std::optional<std::string> objection(const Message& request, const ParentFolder& parent);
  Message runTool(const Message& request, const ParentFolder& parent);

  int client_;
  uid_t uid_;
  Token token_{};
  bool clientLeft_ = false;
};

}  // namespace brisko::helper
