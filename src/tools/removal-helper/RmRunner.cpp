#include "RmRunner.h"

#include "FileDescriptor.h"
#include "HelperProtocol.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::helper {
namespace {

constexpr const char* kRm = "/bin/rm";
constexpr int kNotStarted = 127;

struct Identity {
  uid_t uid = 0;
  gid_t gid = 0;
  std::vector<gid_t> groups;
};

// Nothing for a user that the database does not know: then nothing is run in that user's name.
std::optional<Identity> identityOf(uid_t uid) {
  Identity identity;
  if (uid == 0) return identity;
  std::vector<char> buffer(1 << 16);
  passwd entry;
  passwd* found = nullptr;
  if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
    return std::nullopt;
  }
  identity.uid = uid;
  identity.gid = found->pw_gid;
  int count = 0;
  getgrouplist(found->pw_name, found->pw_gid, nullptr, &count);
  identity.groups.resize(static_cast<std::size_t>(std::max(count, 0)));
  if (getgrouplist(found->pw_name, found->pw_gid, identity.groups.data(), &count) < 0) {
    return std::nullopt;
  }
  return identity;
}

// In the child. Ends the process when anything is not exactly as it should be.
[[noreturn]] void becomeRm(int folder, const Identity& identity, int output, pid_t parent,
                           char* const* arguments) {
  static char path[] = "PATH=/usr/bin:/bin";
  static char locale[] = "LC_ALL=C";
  char* const environment[] = {path, locale, nullptr};
  const int nothing = ::open("/dev/null", O_RDONLY);
  const bool ready = nothing >= 0 && ::fchdir(folder) == 0 && ::dup2(nothing, STDIN_FILENO) >= 0 &&
                     ::dup2(output, STDOUT_FILENO) >= 0 && ::dup2(output, STDERR_FILENO) >= 0 &&
                     ::close_range(STDERR_FILENO + 1, ~0U, 0) == 0 &&
                     ::setgroups(identity.groups.size(), identity.groups.data()) == 0 &&
                     ::setresgid(identity.gid, identity.gid, identity.gid) == 0 &&
                     ::setresuid(identity.uid, identity.uid, identity.uid) == 0 &&
                     // After the change of user, which would clear it.
                     ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && ::getppid() == parent;
  if (ready) ::execve(kRm, arguments, environment);
  ::_exit(kNotStarted);
}

struct Child {
  pid_t process = -1;
  FileDescriptor output;
};

Child start(int folder, const Identity& identity, std::vector<std::string> words) {
  Child child;
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return child;
  child.output.reset(ends[0]);
  const FileDescriptor writing(ends[1]);
  std::vector<char*> arguments;
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const pid_t parent = ::getpid();
  child.process = ::fork();
  if (child.process == 0) {
    becomeRm(folder, identity, writing.get(), parent, arguments.data());
  }
  return child;
}

// Reads until rm has closed its output. False when the client left before.
bool follow(const Child& child, int client, std::string& output) {
  pollfd watched[] = {{child.output.get(), POLLIN, 0}, {client, POLLIN | POLLRDHUP, 0}};
  for (;;) {
    if (::poll(watched, client >= 0 ? 2 : 1, -1) < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (client >= 0 && watched[1].revents != 0) return false;
    if (watched[0].revents == 0) continue;
    char buffer[512];
    const ssize_t got = ::read(child.output.get(), buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return true;
    const std::size_t room = kMaximumOutput - output.size();
    output.append(buffer, std::min(static_cast<std::size_t>(got), room));
  }
}

RmResult finish(const Child& child, int client) {
  RmResult result;
  if (child.process < 0) return result;
  result.clientLeft = !follow(child, client, result.output);
  if (result.clientLeft) ::kill(child.process, SIGKILL);
  int status = 0;
  while (::waitpid(child.process, &status, 0) < 0 && errno == EINTR) {
  }
  result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : kNotStarted;
  result.started = !(WIFEXITED(status) && WEXITSTATUS(status) == kNotStarted);
  return result;
}

// An rm that does not know the option complains about it before it looks at anything else.
bool knowsOneFileSystem() {
  static const bool knows = [] {
    const FileDescriptor root(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    return finish(start(root.get(), {}, {kRm, "-f", "--one-file-system"}), -1).exitStatus == 0;
  }();
  return knows;
}

}  // namespace

RmResult runRm(int folder, const std::string& name, uid_t uid, int client) {
  const auto identity = identityOf(uid);
  if (!identity) return {};
  std::vector<std::string> words{kRm, "-rf"};
  if (knowsOneFileSystem()) words.emplace_back("--one-file-system");
  words.emplace_back("--");
  words.push_back("./" + name);
  return finish(start(folder, *identity, std::move(words)), client);
}

}  // namespace brisko::helper
