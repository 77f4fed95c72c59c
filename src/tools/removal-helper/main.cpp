// brisko-removal-helper: removes single paths and packages as root, for the one program that
// started it through polkit or sudo, as long as that runs. It takes no arguments; its standard
// input and output are the two directions of one socket.

#include "RemovalService.h"

#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The user who asked, as polkit or sudo say it; without either, whoever started this. Nothing when
// what they say is no number.
std::optional<uid_t> invokingUser() {
  for (const char* name : {"PKEXEC_UID", "SUDO_UID"}) {
    const char* text = std::getenv(name);
    if (text == nullptr) continue;
    uid_t uid = 0;
    const char* end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, uid);
    if (error != std::errc() || rest != end) return std::nullopt;
    return uid;
  }
  return getuid();
}

// Both directions must be one socket that the user who asked, or root, has made.
bool isClient(int client, uid_t uid) {
  ucred peer;
  socklen_t size = sizeof peer;
  struct stat in;
  struct stat out;
  return fstat(STDIN_FILENO, &in) == 0 && fstat(STDOUT_FILENO, &out) == 0 && S_ISSOCK(in.st_mode) &&
         in.st_ino == out.st_ino && in.st_dev == out.st_dev &&
         getsockopt(client, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         (peer.uid == uid || peer.uid == 0);
}

void shutOut() {
  clearenv();
  setenv("PATH", "/usr/bin:/bin", 1);
  setenv("LC_ALL", "C", 1);
  umask(077);
  close_range(STDERR_FILENO + 1, ~0U, 0);
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  prctl(PR_SET_DUMPABLE, 0);
  // Stopping is said by the end of the input; a key pressed on the terminal is the program's
  // affair.
  for (const int number : {SIGINT, SIGQUIT, SIGHUP, SIGPIPE})
    std::signal(number, SIG_IGN);
  std::signal(SIGCHLD, SIG_DFL);
  sigset_t all;
  sigemptyset(&all);
  sigprocmask(SIG_SETMASK, &all, nullptr);
}

}  // namespace

int main(int argc, char**) {
  const auto uid = invokingUser();
  if (argc != 1 || geteuid() != 0 || !uid || !isClient(STDIN_FILENO, *uid)) {
    std::fputs("brisko-removal-helper is started by brisko and does nothing by itself.\n", stderr);
    return 1;
  }
  shutOut();
  if (setresgid(0, 0, 0) != 0 || setresuid(0, 0, 0) != 0 || chdir("/") != 0) return 1;
  return brisko::helper::RemovalService(STDIN_FILENO, *uid).run();
}
