#include "RootLauncher.h"

#include <csignal>
#include <cstdlib>
#include <cstring>

#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

union Control {
  cmsghdr header;
  char space[CMSG_SPACE(sizeof(int))];
};

bool sendDescriptor(int over, int descriptor) {
  char byte = 0;
  iovec content{&byte, 1};
  Control control{};
  msghdr message{};
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  message.msg_control = &control;
  message.msg_controllen = sizeof control;
  cmsghdr* header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof descriptor);
  std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
  return sendmsg(over, &message, MSG_NOSIGNAL) == 1;
}

int receiveDescriptor(int over) {
  char byte = 0;
  iovec content{&byte, 1};
  Control control{};
  msghdr message{};
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  message.msg_control = &control;
  message.msg_controllen = sizeof control;
  if (recvmsg(over, &message, 0) != 1) return -1;
  const cmsghdr* header = CMSG_FIRSTHDR(&message);
  int descriptor = -1;
  if (header != nullptr) std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
  return descriptor;
}

[[noreturn]] void serve(int socket, uid_t user, int* starts) {
  std::signal(SIGCHLD, SIG_IGN);
  const std::string helper = builtHelper();
  for (int client = 0; (client = receiveDescriptor(socket)) >= 0;) {
    ++*starts;
    if (fork() == 0) {
      std::signal(SIGCHLD, SIG_DFL);
      dup2(client, STDIN_FILENO);
      dup2(client, STDOUT_FILENO);
      setenv("SUDO_UID", std::to_string(user).c_str(), 1);
      execl(helper.c_str(), helper.c_str(), nullptr);
      _exit(127);
    }
    close(client);
  }
  _exit(0);
}

}  // namespace

std::string builtHelper() {
  return std::string(BRISKO_TEST_BUILD_TREE) + "/libexec/brisko/brisko-removal-helper";
}

RootLauncher::RootLauncher(uid_t user) {
  starts_ = static_cast<int*>(
      mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  int pair[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0) std::abort();
  socket_ = pair[0];
  process_ = fork();
  if (process_ == 0) {
    close(pair[0]);
    serve(pair[1], user, starts_);
  }
  close(pair[1]);
}

RootLauncher::~RootLauncher() {
  close(socket_);
  waitpid(process_, nullptr, 0);
  munmap(starts_, sizeof(int));
}

LinuxAuthorization::Launcher RootLauncher::launcher() const {
  return [socket = socket_](int client) { return sendDescriptor(socket, client) ? 0 : -1; };
}

int RootLauncher::starts() const {
  return *starts_;
}

}  // namespace brisko::test
