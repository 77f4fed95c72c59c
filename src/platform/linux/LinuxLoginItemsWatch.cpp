#include "LinuxLoginItemsWatch.h"

#include "SystemLog.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include <poll.h>
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

int LinuxLoginItemsWatch::observe(LoginItems::Observer observer) {
  const std::lock_guard lock(running_);
  const bool isFirst = observers_.isEmpty();
  const int token = observers_.add(std::move(observer));
  if (isFirst) start();
  return token;
}

void LinuxLoginItemsWatch::stopObserving(int token) {
  const std::lock_guard lock(running_);
  if (observers_.remove(token) && observers_.isEmpty()) watch_.stop();
}

void LinuxLoginItemsWatch::start() {
  FileDescriptor notifier(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  if (notifier) watchFolders(notifier.get());
  const auto changed = [this](int watched) {
    drain(watched);
    watchFolders(watched);
    observers_.tell();
  };
  if (!watch_.start(std::move(notifier), POLLIN, kTogether, changed))
    SystemLog::line("Login items cannot be watched: {}", std::strerror(errno));
}

// Adding a folder that is watched already changes nothing.
void LinuxLoginItemsWatch::watchFolders(int notifier) const {
  for (const std::string& folder : folders_) {
    inotify_add_watch(notifier, existing(folder).c_str(), kChanges | IN_ONLYDIR);
  }
}

}  // namespace brisko
