#include "Program.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

struct Pipe {
  int read = -1;
  int write = -1;
};

Pipe makePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
  return {ends[0], ends[1]};
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> all;
  for (std::string& text : texts)
    all.push_back(text.data());
  all.push_back(nullptr);
  return all;
}

// Appends what there is; false at the end. A terminal whose program has ended says EIO.
bool take(int descriptor, std::string& into) {
  std::array<char, 65536> buffer{};
  const ssize_t count = read(descriptor, buffer.data(), buffer.size());
  if (count > 0) into.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EINTR);
}

}  // namespace

std::size_t Outcome::errorLines() const {
  return static_cast<std::size_t>(std::count(errors.begin(), errors.end(), '\n'));
}

Program& Program::variable(const std::string& name, const std::string& value) {
  std::erase_if(environment_, [&](const std::string& one) { return one.starts_with(name + "="); });
  environment_.push_back(name + "=" + value);
  return *this;
}

Program& Program::input(std::string text) {
  input_ = std::move(text);
  return *this;
}

Program& Program::user(uid_t uid) {
  user_ = uid;
  return *this;
}

Program& Program::terminal() {
  terminal_ = true;
  return *this;
}

Program& Program::whenItSpeaks(std::function<void(pid_t)> act) {
  act_ = std::move(act);
  return *this;
}

Outcome Program::run(const std::vector<std::string>& arguments) const {
  std::vector<std::string> words = {BRISKO_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> environment = environment_;
  auto argv = pointers(words);
  auto envp = pointers(environment);

  Pipe in;
  Pipe out;
  Pipe err = makePipe();
  if (terminal_) {
    winsize size{};
    size.ws_col = 80;
    if (openpty(&out.read, &out.write, nullptr, nullptr, &size) != 0) std::abort();
    fcntl(out.read, F_SETFD, FD_CLOEXEC);
    in.read = dup(out.write);
    in.write = dup(out.read);
    close(std::exchange(err.write, dup(out.write)));
  } else {
    in = makePipe();
    out = makePipe();
  }
  const pid_t child = fork();
  if (child == 0) {
    dup2(in.read, STDIN_FILENO);
    dup2(out.write, STDOUT_FILENO);
    dup2(err.write, STDERR_FILENO);
    if (user_ != static_cast<uid_t>(-1)) {
      if (setgroups(0, nullptr) != 0 || setgid(user_) != 0 || setuid(user_) != 0) _exit(126);
    }
    execve(argv[0], argv.data(), envp.data());
    _exit(127);
  }
  close(in.read);
  close(out.write);
  close(err.write);
  if (write(in.write, input_.data(), input_.size()) < 0) std::abort();
  if (!terminal_) close(std::exchange(in.write, -1));

  Outcome outcome;
  bool hasActed = !act_;
  std::array<pollfd, 2> waiting = {pollfd{out.read, POLLIN, 0}, pollfd{err.read, POLLIN, 0}};
  while (waiting[0].fd >= 0 || waiting[1].fd >= 0) {
    poll(waiting.data(), waiting.size(), -1);
    if (waiting[0].revents != 0 && !take(out.read, outcome.output)) waiting[0].fd = -1;
    if (waiting[1].revents != 0 && !take(err.read, outcome.errors)) waiting[1].fd = -1;
    for (pollfd& one : waiting)
      one.revents = 0;
    if (!hasActed && !(outcome.errors.empty() && (!terminal_ || outcome.output.empty()))) {
      hasActed = true;
      act_(child);
    }
  }
  for (const int descriptor : {in.write, out.read, err.read}) {
    if (descriptor >= 0) close(descriptor);
  }
  int status = 0;
  waitpid(child, &status, 0);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status);
  return outcome;
}

}  // namespace brisko::test
