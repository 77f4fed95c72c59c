#include "LinuxAuthorization.h"

#include "ProgramFiles.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr const char* kAdministrator = "system.privilege.admin";
constexpr const char* kPolkit = "/usr/bin/pkexec";
constexpr const char* kSudo = "/usr/bin/sudo";
constexpr const char* kSystemBus = "/run/dbus/system_bus_socket";
constexpr const char* kPrompt =
    "Brisko needs the administrator's right to remove this. Password for %p: ";
constexpr int kDismissed = 126;  // how pkexec ends when its prompt was closed

bool isThere(const char* path, int mode) {
  return ::access(path, mode) == 0;
}

bool hasTerminalNow() {
  return static_cast<bool>(FileDescriptor(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)));
}

// How the process ended. One that does not end although nobody speaks to it any more is told to,
// and then left to itself: it may be root's.
int waitFor(pid_t process) {
  constexpr int kTries = 200;
  constexpr useconds_t kPause = 20'000;  // microseconds
  int status = 0;
  for (int i = 0; i < kTries; ++i) {
    const pid_t ended = ::waitpid(process, &status, WNOHANG);
    if (ended == process) return status;
    if (ended < 0 && errno != EINTR) break;
    if (i == kTries / 2) ::kill(process, SIGTERM);
    ::usleep(i == 0 ? 1000 : kPause);
  }
  return 0;
}

}  // namespace

LaunchFacts LaunchFacts::now() {
  LaunchFacts facts;
  facts.isRoot = ::geteuid() == 0;
  facts.hasPolkit = isThere(kPolkit, X_OK) && isThere(kSystemBus, F_OK);
  facts.hasSudo = isThere(kSudo, X_OK);
  facts.hasAskPass = std::getenv("SUDO_ASKPASS") != nullptr;
  facts.hasTerminal = hasTerminalNow();
  return facts;
}

std::vector<std::string> launchCommand(const LaunchFacts& facts, const std::string& helper) {
  if (facts.isRoot) return {helper};
  if (facts.hasPolkit) return {kPolkit, helper};
  if (!facts.hasSudo) return {};
  if (facts.hasAskPass) return {kSudo, "-A", "-p", kPrompt, "--", helper};
  if (facts.hasTerminal) return {kSudo, "-p", kPrompt, "--", helper};
  return {kSudo, "-n", "--", helper};
}

pid_t launch(const std::vector<std::string>& command, int socket) {
  if (command.empty() || ::access(command.back().c_str(), F_OK) != 0) return -1;
  // Between fork and exec nothing may allocate: other threads may hold the heap's lock.
  std::vector<char*> arguments;
  for (const std::string& word : command)
    arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t process = ::fork();
  if (process != 0) return process;
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
  if (::dup2(socket, STDIN_FILENO) >= 0 && ::dup2(socket, STDOUT_FILENO) >= 0) {
    ::execv(arguments[0], arguments.data());
  }
  ::_exit(127);
}

std::string removalHelperPath() {
  const std::string tools = ProgramFiles::tools();
  return tools.empty() ? tools : tools + "/brisko-removal-helper";
}

LinuxAuthorization::~LinuxAuthorization() {
  stopHelper();
}

int LinuxAuthorization::create(Reference& reference) {
  const std::lock_guard lock(mutex_);
  reference = ++last_;
  references_[reference] = false;
  return 0;
}

int LinuxAuthorization::copyRights(Reference reference, const std::string& right, unsigned flags) {
  const std::lock_guard lock(mutex_);
  const auto found = references_.find(reference);
  if (found == references_.end()) return kInvalid;
  if (right != kAdministrator) return kDenied;
  if (!helperAnswers()) {
    if ((flags & interactionAllowed) == 0 || (flags & extendRights) == 0) return kDenied;
    const int status = startHelper();
    if (status != 0) return status;
  }
  found->second = true;
  return 0;
}

int LinuxAuthorization::makeExternalForm(Reference reference, ExternalForm& form) {
  const std::lock_guard lock(mutex_);
  const auto found = references_.find(reference);
  if (found == references_.end() || !found->second || !socket_) return kInvalid;
  form = token_;
  return 0;
}

int LinuxAuthorization::createFromExternalForm(const ExternalForm& form, Reference& reference) {
  reference = 0;
  const std::lock_guard lock(mutex_);
  if (!socket_ || !helper::isSame(form, token_)) return kInvalid;
  reference = ++last_;
  references_[reference] = false;
  return 0;
}

int LinuxAuthorization::rightDefinition(const std::string& right) {
  return right == kAdministrator ? 0 : kDenied;
}

int LinuxAuthorization::execute(Reference reference, const std::string& tool,
                                const std::vector<std::string>& arguments,
                                const std::optional<FileIdentity>& shown, Result& result) {
  const std::lock_guard lock(mutex_);
  result = {};
  const auto found = references_.find(reference);
  if (found == references_.end() || !found->second) return kInvalid;
  if (tool != "/bin/rm" || arguments.size() != 2 || arguments[0] != "-rf") return kDenied;
  if (!socket_) return kToolFailed;

  helper::Message request;
  request.type = helper::Type::remove;
  request.token = token_;
  request.shown = shown;
  request.path = arguments[1];
  return ask(request, nullptr, result);
}

int LinuxAuthorization::removePackages(Reference reference,
                                       const std::vector<std::string>& packages,
                                       const std::function<void(double)>& progress,
                                       Result& result) {
  const std::lock_guard lock(mutex_);
  result = {};
  const auto found = references_.find(reference);
  if (found == references_.end() || !found->second) return kInvalid;
  if (!socket_) return kToolFailed;
  helper::Message request;
  request.type = helper::Type::removePackages;
  request.token = token_;
  request.packages = packages;
  return ask(request, progress, result);
}

int LinuxAuthorization::ask(const helper::Message& request,
                            const std::function<void(double)>& progress, Result& result) {
  if (helper::encode(request).empty()) return kDenied;
  const auto next = [this] { return helper::receive(socket_.get()); };
  auto reply = helper::send(socket_.get(), request) ? next() : std::nullopt;
  const bool hasSteps = request.type == helper::Type::removePackages;
  while (hasSteps && reply && reply->type == helper::Type::progress) {
    if (progress) progress(reply->permille / 1000.0);
    reply = next();
  }
  const bool isReply =
      reply && (reply->type == helper::Type::done || reply->type == helper::Type::denied);
  if (!isReply) {
    stopHelper();
    return kToolFailed;
  }
  result.output = reply->output;
  result.freedBytes = reply->freedBytes;
  return reply->type == helper::Type::done ? 0 : kDenied;
}

int LinuxAuthorization::free(Reference reference) {
  const std::lock_guard lock(mutex_);
  if (references_.erase(reference) == 0) return kInvalid;
  const bool isHeld = std::any_of(references_.begin(), references_.end(),
                                  [](const auto& entry) { return entry.second; });
  if (!isHeld) stopHelper();
  return 0;
}

// There is no service manager that would take a job from a program.
bool LinuxAuthorization::bless(Reference, const std::string&) {
  return false;
}

bool LinuxAuthorization::helperAnswers() {
  if (!socket_) return false;
  helper::Message ping;
  ping.type = helper::Type::ping;
  ping.token = token_;
  const auto reply =
      helper::send(socket_.get(), ping) ? helper::receive(socket_.get()) : std::nullopt;
  if (reply && reply->type == helper::Type::done) return true;
  stopHelper();
  return false;
}

int LinuxAuthorization::startHelper() {
  int pair[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0) return kToolFailed;
  socket_.reset(pair[0]);
  FileDescriptor other(pair[1]);
  process_ = launcher_
                 ? launcher_(other.get())
                 : launch(launchCommand(LaunchFacts::now(), removalHelperPath()), other.get());
  other.reset();
  if (process_ < 0) {
    socket_.reset();
    return kToolFailed;
  }
  const auto hello = helper::receive(socket_.get());
  if (hello && hello->type == helper::Type::hello) {
    token_ = hello->token;
    return 0;
  }
  const bool isGarbage = hello.has_value();
  stopHelper();
  if (isGarbage || !WIFEXITED(exitStatus_)) return kToolFailed;
  return WEXITSTATUS(exitStatus_) == kDismissed ? kCancelled : kDenied;
}

void LinuxAuthorization::stopHelper() {
  // At the end of its input the helper ends, and with it whatever runs for it.
  socket_.reset();
  token_ = {};
  for (auto& [reference, holdsRight] : references_)
    holdsRight = false;
  if (process_ > 0) exitStatus_ = waitFor(process_);
  process_ = -1;
}

}  // namespace brisko
