#pragma once

#include "Authorization.h"
#include "FileDescriptor.h"
#include "HelperProtocol.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace brisko {

/// What decides how the removal helper is started.
struct LaunchFacts {
  bool isRoot = false;     ///< this process has the right already
  bool hasPolkit = false;  ///< pkexec is installed and the system bus runs
  bool hasSudo = false;
  bool hasAskPass = false;   ///< a program that asks for passwords is set for sudo
  bool hasTerminal = false;  ///< there is a terminal to ask on

  static LaunchFacts now();
};

/// The command that starts `helper` as root; empty when nothing on this machine can. It never waits
/// for an answer that nobody can give.
std::vector<std::string> launchCommand(const LaunchFacts& facts, const std::string& helper);

/// Starts a command with the socket as its standard input and output; a `Launcher`'s answer.
pid_t launch(const std::vector<std::string>& command, int socket);

/// Where the helper is installed, beside the program that runs: found from the program's own file,
/// never from the environment, because it is started as root.
std::string removalHelperPath();

/// The administrator's right as a process: the removal helper, started once as root, which takes
/// requests until this process ends or gives the right back.
///
/// The external form is the token that the helper made for this conversation.
class LinuxAuthorization : public Authorization {
 public:
  /// Starts the helper on a socket. Its process, to be waited for; 0 when that is somebody else's
  /// to do; negative when it could not be started.
  using Launcher = std::function<pid_t(int socket)>;

  LinuxAuthorization() = default;
  /// Has the helper started by other means.
  explicit LinuxAuthorization(Launcher launcher) : launcher_(std::move(launcher)) {}
  ~LinuxAuthorization() override;

  int create(Reference& reference) override;
  int copyRights(Reference reference, const std::string& right, unsigned flags) override;
  int makeExternalForm(Reference reference, ExternalForm& form) override;
  int createFromExternalForm(const ExternalForm& form, Reference& reference) override;
  int rightDefinition(const std::string& right) override;
  int execute(Reference reference, const std::string& tool,
              const std::vector<std::string>& arguments, const std::optional<FileIdentity>& shown,
              Result& result) override;
  int removePackages(Reference reference, const std::vector<std::string>& packages,
                     const std::function<void(double)>& progress, Result& result) override;
  int free(Reference reference) override;
  bool bless(Reference reference, const std::string& label) override;

 private:
  int ask(const helper::Message& request, const std::function<void(double)>& progress,
          Result& result);
  int startHelper();
  void stopHelper();
  bool helperAnswers();

  std::mutex mutex_;
  Launcher launcher_;
  std::map<Reference, bool> references_;  // whether each holds the right
  Reference last_ = 0;
  FileDescriptor socket_;
  pid_t process_ = -1;
  int exitStatus_ = 0;
  helper::Token token_{};
};

}  // namespace brisko
