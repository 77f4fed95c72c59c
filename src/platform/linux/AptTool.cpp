#include "AptTool.h"

#include "AptPlan.h"
#include "DpkgDatabase.h"
#include "FileDescriptor.h"
#include "SystemLog.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <string_view>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr const char* kAptGet = "/usr/bin/apt-get";
constexpr const char* kFrontendLock = "/var/lib/dpkg/lock-frontend";
constexpr int kStatusDescriptor = 3;
constexpr std::size_t kMaximumOutput = 16u << 20;
constexpr useconds_t kTick = 50'000;  // µs between two looks at the progress

// Given to the dry run as to the real one, so that both come to the same: nothing is purged or
// removed on its own account, whatever the machine's settings say. Without lists of what could be
// installed nothing can be, and an answer takes a tenth of the time (0.1 s for 1.3 s); the caches
// made for that must not stay. The lock is this program's affair.
const std::vector<std::string> kOptions = {"-o", "APT::Get::AutomaticRemove=false",
                                           "-o", "APT::Get::Purge=false",
                                           "-o", "APT::Get::Show-User-Simulation-Note=false",
                                           "-o", "Dir::State::Lists=/nonexistent/",
                                           "-o", "Dir::Cache::pkgcache=",
                                           "-o", "Dir::Cache::srcpkgcache=",
                                           "-o", "Debug::NoLocking=true",
                                           "-o", "Dpkg::Use-Pty=false"};

struct Ended {
  int status = -1;  ///< -1: not started
  std::string output;
};

// Files rather than pipes: apt-get goes on to its end even when nobody is left to read.
FileDescriptor memoryFile(const char* name) {
  return FileDescriptor(::memfd_create(name, MFD_CLOEXEC));
}

std::string contentOf(const FileDescriptor& file) {
  struct stat status;
  if (::fstat(file.get(), &status) != 0) return "";
  std::string content(std::min(static_cast<std::size_t>(status.st_size), kMaximumOutput), '\0');
  const ssize_t got = ::pread(file.get(), content.data(), content.size(), 0);
  content.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  return content;
}

pid_t start(std::vector<std::string> words, const FileDescriptor& output,
            const FileDescriptor& status) {
  std::vector<char*> arguments;
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  // Without "DPKG_FRONTEND_LOCKED" dpkg would want the lock that is held for it.
  static char path[] = "PATH=/usr/sbin:/usr/bin:/sbin:/bin";
  static char locale[] = "LC_ALL=C";
  static char frontend[] = "DEBIAN_FRONTEND=noninteractive";
  static char home[] = "HOME=/";
  static char locked[] = "DPKG_FRONTEND_LOCKED=true";
  char* const environment[] = {path, locale, frontend, home, locked, nullptr};

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&files, output.get(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&files, output.get(), STDERR_FILENO);
  posix_spawn_file_actions_adddup2(&files, status.get(), kStatusDescriptor);
  posix_spawn_file_actions_addchdir_np(&files, "/");
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigset_t all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes,
                           POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
  pid_t child = -1;
  const int error =
      ::posix_spawn(&child, kAptGet, &files, &attributes, arguments.data(), environment);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  return error == 0 ? child : -1;
}

Ended run(const std::vector<std::string>& arguments,
          const std::function<void(double)>& progress = nullptr) {
  Ended ended;
  const FileDescriptor output = memoryFile("apt-output");
  // Not the number that it is to have in the child: a descriptor copied onto itself stays closed
  // there.
  const FileDescriptor made = memoryFile("apt-status");
  const FileDescriptor status(::fcntl(made.get(), F_DUPFD_CLOEXEC, kStatusDescriptor + 1));
  if (!output || !status) return ended;
  std::vector<std::string> words{kAptGet};
  words.insert(words.end(), kOptions.begin(), kOptions.end());
  words.insert(words.end(), arguments.begin(), arguments.end());
  const pid_t child = start(std::move(words), output, status);
  if (child < 0) return ended;
  int result = 0;
  double told = 0;
  for (;;) {
    const pid_t got = ::waitpid(child, &result, progress ? WNOHANG : 0);
    if (got < 0 && errno != EINTR) return ended;
    // After the end too: a small package is gone sooner than the first look.
    const double now = progress ? aptProgress(contentOf(status)) : told;
    if (now > told) progress(told = now);
    if (got == child) break;
    if (progress) ::usleep(kTick);
  }
  ended.status = WIFEXITED(result) ? WEXITSTATUS(result) : 128 + WTERMSIG(result);
  ended.output = contentOf(output);
  return ended;
}

// dpkg's and apt-get's own lock, taken as they take it. Whoever only looks something up has it for
// a moment.
FileDescriptor takeLock() {
  constexpr int kTries = 40;
  FileDescriptor file(::open(kFrontendLock, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0640));
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  for (int i = 0; file && ::fcntl(file.get(), F_SETLK, &lock) != 0; ++i) {
    if (i == kTries) return FileDescriptor();
    ::usleep(kTick);
  }
  return file;
}

// What apt-get calls no longer required before anything was removed is not left by that.
void dropUnusedBefore(std::vector<std::string>& packages) {
  if (packages.empty()) return;
  const Ended ended = run({"-s", "remove"});
  const std::vector<std::string> before =
      parseAptSimulation(ended.output, ended.status).leavesUnused;
  std::erase_if(packages, [&](const std::string& name) {
    return std::find(before.begin(), before.end(), name) != before.end();
  });
}

std::string kernelRelease() {
  utsname name;
  return ::uname(&name) == 0 ? name.release : "";
}

// The first line in which apt-get or dpkg says what went wrong.
std::string complaintIn(std::string_view output) {
  for (const std::string_view mark : {"\ndpkg: error", "\nE: "}) {
    const std::size_t found = output.find(mark);
    if (found == std::string_view::npos) continue;
    const std::string_view line = output.substr(found + 1);
    return std::string(line.substr(0, line.find('\n')));
  }
  return "";
}

std::string removeLocked(const std::vector<std::string>& packages,
                         const std::function<void(double)>& progress) {
  const UninstallPlan plan = AptTool::plan(packages.front());
  if (!plan.mayGo()) return plan.refusal;
  std::vector<std::string> others(packages.begin() + 1, packages.end());
  std::sort(others.begin(), others.end());
  if (others != plan.alsoRemoves) {
    return "Something else would be removed now than what was shown.";
  }
  std::vector<std::string> arguments = {
      "-y", "-o", "APT::Status-Fd=" + std::to_string(kStatusDescriptor), "remove", "--"};
  arguments.insert(arguments.end(), packages.begin(), packages.end());
  const Ended ended = run(arguments, progress);
  const DpkgDatabase database;
  const auto stays = std::find_if(packages.begin(), packages.end(), [&](const std::string& name) {
    return database.find(name) != nullptr;
  });
  if (ended.status == 0 && stays == packages.end()) return "";
  SystemLog::line("apt-get ended with status {}: {}", ended.status, ended.output);
  std::string why = complaintIn(ended.output);
  if (why.empty()) why = "apt-get ended with status " + std::to_string(ended.status) + ".";
  return why;
}

}  // namespace

double aptProgress(std::string_view status) {
  // "pmstatus:PACKAGE:PERCENT:TEXT"; a package's name may hold a colon, in front of its
  // architecture.
  status = status.substr(0, status.rfind('\n') + 1);
  double last = -1;
  while (!status.empty()) {
    const std::size_t end = status.find('\n');
    std::string_view line = status.substr(0, end);
    status.remove_prefix(end + 1);
    if (!line.starts_with("pmstatus:")) continue;
    for (std::size_t colon = line.find(':'); colon != std::string_view::npos;
         colon = line.find(':', colon + 1)) {
      double percent = 0;
      const std::string_view rest = line.substr(colon + 1);
      const auto [after, error] = std::from_chars(rest.data(), rest.data() + rest.size(), percent);
      const bool isField = error == std::errc() && after != rest.data() + rest.size() &&
                           *after == ':' && percent >= 0 && percent <= 100;
      if (!isField) continue;
      last = percent / 100;
      break;
    }
  }
  return last;
}

UninstallPlan AptTool::plan(const std::string& package) {
  const DpkgDatabase database;
  UninstallPlan refused;
  refused.removes = {package};
  refused.command = "apt-get remove " + package;
  const DpkgPackage* facts = isPackageName(package) ? database.find(package) : nullptr;
  if (facts == nullptr) {
    refused.refusal = package + " is not installed any more.";
    return refused;
  }
  if (facts->isEssential) {
    refused.refusal = "The system does not work without " + package + ".";
    return refused;
  }
  const Ended ended = run({"-s", "remove", "--", package});
  if (ended.status < 0) {
    refused.refusal = "apt-get could not be started.";
    return refused;
  }
  AptSimulation simulation = parseAptSimulation(ended.output, ended.status);
  dropUnusedBefore(simulation.leavesUnused);
  return aptPlan(package, simulation, database, kernelRelease());
}

std::string AptTool::remove(const std::vector<std::string>& packages,
                            const std::function<void(double)>& progress) {
  const bool areNames = std::all_of(packages.begin(), packages.end(), isPackageName);
  if (packages.empty() || !areNames) return "That is no name of a package.";
  const FileDescriptor lock = takeLock();
  if (!lock) return "Another program is installing or removing software.";
  return removeLocked(packages, progress);
}

}  // namespace brisko
