#include "FileDescriptor.h"
#include "HostTools.h"
#include "ProgramFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kTick = 100;  // ms between two questions whether to go on
constexpr std::chrono::seconds kGrace{2};

/// This process's environment with the private folder first in PATH.
class ToolEnvironment {
 public:
  ToolEnvironment() {
    const char* inherited = ::getenv("PATH");
    std::string path = inherited != nullptr ? inherited : "/usr/bin:/bin";
    if (const std::string folder = HostTools::folder(); !folder.empty()) {
      path = folder + ":" + path;
    }
    // Disk and process tools are installed for the administrator, whose folders an ordinary user's
    // search path leaves out.
    texts_.push_back("PATH=" + path + ":/usr/sbin:/sbin");
    for (char** entry = environ; *entry != nullptr; ++entry) {
      const std::string text = *entry;
      if (!text.starts_with("PATH=")) {
        texts_.push_back(text);
      }
    }
    for (std::string& text : texts_) {
      pointers_.push_back(text.data());
    }
    pointers_.push_back(nullptr);
  }
  char** pointers() { return pointers_.data(); }
  std::string searchPath() const { return texts_.front().substr(sizeof "PATH=" - 1); }

 private:
  std::vector<std::string> texts_;
  std::vector<char*> pointers_;
};

/// posix_spawnp looks a name up in the caller's own path, which lacks the private folder.
std::string located(const std::string& name, const std::string& searchPath) {
  if (name.find('/') != std::string::npos) {
    return name;
  }
  std::size_t begin = 0;
  while (begin <= searchPath.size()) {
    const std::size_t end = std::min(searchPath.find(':', begin), searchPath.size());
    const std::string candidate = searchPath.substr(begin, end - begin) + "/" + name;
    if (candidate.front() == '/' && candidate.size() > name.size() + 1 &&
        ::access(candidate.c_str(), X_OK) == 0) {
      return candidate;
    }
    begin = end + 1;
  }
  return name;
}

int statusOf(int waitStatus) {
  return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 128 + WTERMSIG(waitStatus);
}

/// Starts the program with an empty input and the given ends as output and errors (-1: nowhere).
pid_t start(const std::vector<std::string>& arguments, int output, int errors) {
  ToolEnvironment environment;
  std::vector<std::string> words = arguments;
  std::vector<char*> pointers;
  for (std::string& word : words) {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  const std::array<int, 2> ends = {output, errors};
  for (int stream = 0; stream < 2; ++stream) {
    if (ends[stream] < 0) {
      posix_spawn_file_actions_addopen(&files, STDOUT_FILENO + stream, "/dev/null", O_WRONLY, 0);
    } else {
      posix_spawn_file_actions_adddup2(&files, ends[stream], STDOUT_FILENO + stream);
    }
  }
  // A tool must not inherit signals that the terminal's commands block or ignore for themselves.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigset_t defaults;
  sigemptyset(&none);
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGPIPE);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

  pid_t child = -1;
  const std::string program = located(words.front(), environment.searchPath());
  const int failure = ::posix_spawn(&child, program.c_str(), &files, &attributes, pointers.data(),
                                    environment.pointers());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  return failure == 0 ? child : -1;
}

int waitFor(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) {
      return -1;
    }
  }
  return statusOf(status);
}

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) == 0) {
      read = FileDescriptor(ends[0]);
      written = FileDescriptor(ends[1]);
    }
  }
  bool isOpen() const { return static_cast<bool>(read); }

  FileDescriptor read;
  FileDescriptor written;
};

/// The reading end of one of a program's streams.
struct Stream {
  FileDescriptor descriptor;
  std::string* text;

  bool isOpen() const { return static_cast<bool>(descriptor); }
  void read(std::size_t limit) {
    std::array<char, 65536> buffer;
    const ssize_t got = ::read(descriptor.get(), buffer.data(), buffer.size());
    if (got > 0) {
      const std::size_t room = limit - std::min(limit, text->size());
      text->append(buffer.data(), std::min<std::size_t>(room, static_cast<std::size_t>(got)));
    } else if (got == 0 || (errno != EINTR && errno != EAGAIN)) {
      descriptor.reset();
    }
  }
};

/// Ends a program that is no longer wanted: politely first, then for good.
class Ending {
 public:
  explicit Ending(pid_t child) : child_(child) {}
  void advance() {
    if (!asked_) {
      asked_ = true;
      since_ = Clock::now();
      ::kill(child_, SIGTERM);
    } else if (Clock::now() - since_ > kGrace) {
      ::kill(child_, SIGKILL);
    }
  }
  bool isForced() const { return asked_ && Clock::now() - since_ > kGrace; }

 private:
  pid_t child_;
  bool asked_ = false;
  Clock::time_point since_;
};

void collect(pid_t child, std::array<Stream, 2>& streams, std::size_t limit,
             const std::function<bool()>& cancelled) {
  Ending ending(child);
  while (streams[0].isOpen() || streams[1].isOpen()) {
    std::array<pollfd, 2> waiting{};
    for (std::size_t index = 0; index < streams.size(); ++index) {
      waiting[index] = {streams[index].descriptor.get(), POLLIN, 0};
    }
    ::poll(waiting.data(), waiting.size(), cancelled ? kTick : -1);
    for (std::size_t index = 0; index < streams.size(); ++index) {
      if (waiting[index].revents != 0) {
        streams[index].read(limit);
      }
    }
    if (cancelled && cancelled()) {
      ending.advance();
      if (ending.isForced()) {
        return;  // a grandchild may hold the streams open for ever
      }
    }
  }
}

}  // namespace

std::string HostTools::folder() {
  const char* replaced = ::getenv("BRISKO_TOOLS");
  return replaced != nullptr && *replaced != '\0' ? replaced : ProgramFiles::tools();
}

std::string HostTools::path(const std::string& absolutePath) {
  if (::access(absolutePath.c_str(), X_OK) == 0) {
    return absolutePath;
  }
  return folder() + absolutePath.substr(absolutePath.rfind('/'));
}

std::string HostTools::quoted(const std::string& text) {
  std::string word = "'";
  for (const char character : text) {
    if (character == '\'') {
      word += "'\\''";
    } else {
      word += character;
    }
  }
  return word + "'";
}

int HostTools::shell(const std::string& command) {
  const pid_t child = start({"/bin/sh", "-c", command}, -1, -1);
  return child < 0 ? -1 : waitFor(child);
}

HostTools::Outcome HostTools::run(const std::vector<std::string>& arguments, std::size_t limit,
                                  const std::function<bool()>& cancelled) {
  Outcome outcome;
  Pipe output;
  Pipe errors;
  if (arguments.empty() || !output.isOpen() || !errors.isOpen()) {
    return outcome;
  }
  const pid_t child = start(arguments, output.written.get(), errors.written.get());
  if (child < 0) {
    return outcome;
  }
  output.written.reset();  // else reading never meets an end
  errors.written.reset();
  std::array<Stream, 2> streams = {Stream{std::move(output.read), &outcome.output},
                                   Stream{std::move(errors.read), &outcome.errors}};
  collect(child, streams, limit, cancelled);
  outcome.status = waitFor(child);
  return outcome;
}

}  // namespace brisko
