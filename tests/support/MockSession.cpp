#include "MockSession.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace brisko::test {
namespace {

constexpr const char* kDaemon = "/usr/bin/dbus-daemon";
constexpr const char* kNames[] = {"org.freedesktop.login1", "org.freedesktop.ScreenSaver"};

std::string configuration(const std::string& folder) {
  return "<busconfig><listen>unix:path=" + folder +
         "/bus</listen><auth>EXTERNAL</auth><policy context=\"default\">"
         "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
         "<allow own=\"*\"/><allow user=\"*\"/>"
         "</policy></busconfig>";
}

pid_t startDaemon(const std::string& configurationFile) {
  std::string option = "--config-file=" + configurationFile;
  char program[] = "dbus-daemon";
  char stay[] = "--nofork";
  std::array<char*, 4> arguments = {program, option.data(), stay, nullptr};
  pid_t child = -1;
  return ::posix_spawn(&child, kDaemon, nullptr, nullptr, arguments.data(), environ) == 0 ? child
                                                                                          : -1;
}

}  // namespace

bool MockSession::isPossible() {
  return ::access(kDaemon, X_OK) == 0;
}

MockSession::MockSession(bool hasServices) {
  daemon_ = startDaemon(folder_.file("bus.conf", configuration(folder_.path())));
  address_ = "unix:path=" + folder_ / "bus";
  for (int wait = 0; wait < 500 && !exists(folder_ / "bus"); ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  if (!hasServices) return;
  sd_bus_new(&bus_);
  sd_bus_set_address(bus_, address_.c_str());
  sd_bus_set_bus_client(bus_, 1);
  int status = sd_bus_start(bus_);
  for (int wait = 0; wait < 200 && status < 0; ++wait) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    status = sd_bus_start(bus_);
  }
  for (const char* name : kNames)
    status = std::min(status, sd_bus_request_name(bus_, name, 0));
  EXPECT_GE(status, 0) << "the mock is not on its bus";
  const auto handler = reinterpret_cast<sd_bus_message_handler_t>(&MockSession::handle);
  sd_bus_add_filter(bus_, nullptr, handler, this);
  sd_bus_add_match(bus_, nullptr, "type='signal',member='NameOwnerChanged'", handler, this);
  thread_ = std::thread([this] { serve(); });
}

MockSession::~MockSession() {
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  if (thread_.joinable()) thread_.join();
  sd_bus_flush_close_unref(bus_);
  for (const int each : pipes_)
    ::close(each);
  if (daemon_ > 0) {
    ::kill(daemon_, SIGTERM);
    ::waitpid(daemon_, nullptr, 0);
  }
}

void MockSession::serve() {
  constexpr std::uint64_t kLongest = 20'000;  // microseconds
  for (;;) {
    {
      const std::lock_guard lock(mutex_);
      if (isOver_) return;
    }
    while (sd_bus_process(bus_, nullptr) > 0) {
    }
    sd_bus_wait(bus_, kLongest);
  }
}

int MockSession::handle(sd_bus_message* message, void* self, void*) {
  return static_cast<MockSession*>(self)->answer(message);
}

int MockSession::answer(sd_bus_message* message) {
  const std::lock_guard lock(mutex_);
  if (sd_bus_message_is_signal(message, nullptr, "NameOwnerChanged") > 0) {
    const char* name = "";
    const char* before = "";
    const char* now = "";
    sd_bus_message_read(message, "sss", &name, &before, &now);
    sd_bus_message_rewind(message, 1);
    if (*now == '\0') std::erase_if(savers_, [&](const auto& each) { return each.second == name; });
    return 0;
  }
  std::uint8_t type = 0;
  sd_bus_message_get_type(message, &type);
  if (type != SD_BUS_MESSAGE_METHOD_CALL) return 0;
  const std::string member = sd_bus_message_get_member(message);
  if (member == "Inhibit") return answerInhibit(message);
  calls_.push_back(member);
  if (member == "SetActive") return sd_bus_reply_method_return(message, "b", 1);
  if (member == "SimulateUserActivity") return sd_bus_reply_method_return(message, "");
  return 0;
}

int MockSession::answerInhibit(sd_bus_message* message) {
  const bool isLoginManager = sd_bus_message_has_signature(message, "ssss") > 0;
  std::string call = "Inhibit";
  for (int i = 0; i < (isLoginManager ? 4 : 2); ++i) {
    const char* text = "";
    sd_bus_message_read(message, "s", &text);
    call += std::string(" ") + text;
  }
  calls_.push_back(call);
  if (!isLoginManager) {
    static unsigned cookie = 0;
    savers_[++cookie] = sd_bus_message_get_sender(message);
    return sd_bus_reply_method_return(message, "u", cookie);
  }
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return -errno;
  pipes_.push_back(ends[0]);
  const int status = sd_bus_reply_method_return(message, "h", ends[1]);
  ::close(ends[1]);
  return status;
}

int MockSession::locks() {
  const std::lock_guard lock(mutex_);
  int held = 0;
  for (const int each : pipes_) {
    pollfd state{each, POLLIN, 0};
    ::poll(&state, 1, 0);
    if ((state.revents & POLLHUP) == 0) ++held;
  }
  return held;
}

int MockSession::savers() {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(savers_.size());
}

bool MockSession::holds(int locksWanted, int saversWanted) {
  for (int wait = 0; wait < 500; ++wait) {
    if (locks() == locksWanted && savers() == saversWanted) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

std::vector<std::string> MockSession::calls() {
  const std::lock_guard lock(mutex_);
  return calls_;
}

}  // namespace brisko::test
