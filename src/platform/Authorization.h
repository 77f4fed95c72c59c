#pragma once

#include "FileIdentity.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// The administrator's right: asked for once, kept by a helper, used for one closed set of
/// commands.
///
/// Statuses are 0 for success and otherwise a number of the host, fit for the log.
class Authorization {
 public:
  /// A handle; 0 is none.
  using Reference = std::uint64_t;
  /// From which a new handle to the same right can be made.
  using ExternalForm = std::array<std::byte, 32>;

  enum Flags : unsigned {
    interactionAllowed = 1U,
    extendRights = 2U,
    preAuthorize = 16U,
  };

  static constexpr int kCancelled = -60006;  ///< the user refused or closed the prompt
  static constexpr int kDenied = -60005;     ///< the right was not given, or the command is refused
  static constexpr int kInvalid = -60002;    ///< no such handle or form
  static constexpr int kToolFailed = -60031;  ///< the helper could not be started or has gone

  virtual ~Authorization() = default;

  /// Makes a handle that holds no right yet.
  virtual int create(Reference& reference) = 0;

  /// Obtains `right` for the handle; may show the system's prompt when interaction is allowed.
  /// Blocks until the user has answered.
  virtual int copyRights(Reference reference, const std::string& right, unsigned flags) = 0;

  virtual int makeExternalForm(Reference reference, ExternalForm& form) = 0;
  virtual int createFromExternalForm(const ExternalForm& form, Reference& reference) = 0;

  /// Whether the host's rights database knows `right`.
  virtual int rightDefinition(const std::string& right) = 0;

  /// What a privileged command did.
  struct Result {
    std::string output;            ///< at most 128 bytes of what it printed: errors only
    std::uint64_t freedBytes = 0;  ///< what the file system gave back, as far as that can be told
  };

  /// Runs `tool` with `arguments` as administrator on a handle that holds the right, and waits for
  /// its end. The host takes only the one command that the program has use for ("/bin/rm" "-rf" and
  /// one absolute, normalised path without links on the way) and checks on the privileged side
  /// again that the path may go, with `shown` also that device, inode and kind are those.
  virtual int execute(Reference reference, const std::string& tool,
                      const std::vector<std::string>& arguments,
                      const std::optional<FileIdentity>& shown, Result& result) = 0;

  /// Removes `packages` with the system's package manager as administrator, on a handle that holds
  /// the right: the first one, with which exactly the others must go. The privileged side makes the
  /// plan itself and does nothing when it is another or holds what must stay. `progress` gets
  /// values from 0 to 1 on the calling thread. What went wrong is in `result.output`; hosts without
  /// a package manager deny.
  virtual int removePackages(Reference /*reference*/, const std::vector<std::string>& /*packages*/,
                             const std::function<void(double)>& /*progress*/, Result& /*result*/) {
    return kDenied;
  }

  /// Gives the handle back. With the last handle of a right the right itself ends.
  virtual int free(Reference reference) = 0;

  /// Installs a privileged helper job under `label`. True when it is installed.
  virtual bool bless(Reference reference, const std::string& label) = 0;
};

}  // namespace brisko
