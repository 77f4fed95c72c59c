#include "LinuxLoginItemsWatch.h"

#include "Dispatch.h"
#include "SystemLog.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>

namespace brisko {
namespace {

constexpr int kTogether = 100;  // milliseconds in which further changes are waited for
constexpr std::uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                   IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;

/// `folder`, or the nearest folder above it that is there.
std::string existing(const std::string& folder) {
  std::filesystem::path path = folder;
  std::error_code error;
  while (path.has_relative_path() && !std::filesystem::is_directory(path, error)) {
    path = path.parent_path();
  }
  return path;
}

void drain(int notifier) {
  char events[4096];
  while (read(notifier, events, sizeof events) > 0) {
  }
}

}  // namespace

LinuxLoginItemsWatch::~LinuxLoginItemsWatch() {
  stop();
}

int LinuxLoginItemsWatch::observe(LoginItems::Observer observer) {
  int token = 0;
  bool isFirst = false;
  {
    std::lock_guard lock(observers_->mutex);
    isFirst = observers_->byToken.empty();
    token = nextToken_++;
    observers_->byToken.emplace(token, std::move(observer));
  }
  if (isFirst) start();
  return token;
}

void LinuxLoginItemsWatch::stopObserving(int token) {
  {
    std::lock_guard lock(observers_->mutex);
    if (observers_->byToken.erase(token) == 0 || !observers_->byToken.empty()) return;
  }
  stop();
}

void LinuxLoginItemsWatch::start() {
  FileDescriptor notifier(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  stop_.reset(eventfd(0, EFD_CLOEXEC));
  if (!notifier || !stop_) {
    SystemLog::line("Login items cannot be watched: {}", std::strerror(errno));
    return;
  }
  watchFolders(notifier.get());
  thread_ = std::thread(
      [this, ended = stop_.get(), held = std::move(notifier)] { watch(held.get(), ended); });
}

void LinuxLoginItemsWatch::stop() {
  if (!thread_.joinable()) return;
  eventfd_write(stop_.get(), 1);
  thread_.join();
  stop_.reset();
}

// Adding a folder that is watched already changes nothing.
void LinuxLoginItemsWatch::watchFolders(int notifier) const {
  for (const std::string& folder : folders_) {
    inotify_add_watch(notifier, existing(folder).c_str(), kChanges | IN_ONLYDIR);
  }
}

void LinuxLoginItemsWatch::watch(int notifier, int ended) {
  for (;;) {
    pollfd waits[] = {{notifier, POLLIN, 0}, {ended, POLLIN, 0}};
    if (poll(waits, 2, -1) < 0) continue;
    if (waits[1].revents != 0) return;
    pollfd end = {ended, POLLIN, 0};
    if (poll(&end, 1, kTogether) > 0) return;
    drain(notifier);
    watchFolders(notifier);
    Dispatch::mainAsync([observers = observers_] { tell(observers); });
  }
}

void LinuxLoginItemsWatch::tell(const std::shared_ptr<Observers>& observers) {
  std::map<int, LoginItems::Observer> told;
  {
    std::lock_guard lock(observers->mutex);
    told = observers->byToken;
  }
  for (const auto& [token, observer] : told) {
    {
      // One that was taken off by another of them must not be called any more.
      std::lock_guard lock(observers->mutex);
      if (!observers->byToken.contains(token)) continue;
    }
    observer();
  }
}

}  // namespace brisko
