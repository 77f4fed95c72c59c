#include "LinuxVolumeWatch.h"

#include "Dispatch.h"
#include "LinuxVolumes.h"
#include "SystemLog.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>

namespace brisko {
namespace {

bool contains(const std::vector<MountedVolume>& volumes, const MountedVolume& volume) {
  return std::any_of(volumes.begin(), volumes.end(), [&](const MountedVolume& other) {
    return other.root == volume.root && other.device == volume.device;
  });
}

}  // namespace

LinuxVolumeWatch::~LinuxVolumeWatch() {
  stop();
}

int LinuxVolumeWatch::observe(Workspace::Observer observer) {
  int token = 0;
  bool first = false;
  {
    std::lock_guard lock(observers_->mutex);
    first = observers_->byToken.empty();
    token = nextToken_++;
    observers_->byToken.emplace(token, std::move(observer));
  }
  if (first) start();
  return token;
}

void LinuxVolumeWatch::stopObserving(int token) {
  {
    std::lock_guard lock(observers_->mutex);
    if (observers_->byToken.erase(token) == 0 || !observers_->byToken.empty()) return;
  }
  stop();
}

void LinuxVolumeWatch::start() {
  FileDescriptor table(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
  stop_.reset(eventfd(0, EFD_CLOEXEC));
  if (!table || !stop_) {
    SystemLog::line("Volumes cannot be watched: {}", "/proc/self/mountinfo");
    return;
  }
  known_ = linuxMountedVolumes();
  thread_ = std::thread(
      [this, ended = stop_.get(), held = std::move(table)] { watch(held.get(), ended); });
}

void LinuxVolumeWatch::stop() {
  if (!thread_.joinable()) return;
  eventfd_write(stop_.get(), 1);
  thread_.join();
  stop_.reset();
}

void LinuxVolumeWatch::watch(int table, int ended) {
  for (;;) {
    pollfd waits[] = {{table, POLLPRI, 0}, {ended, POLLIN, 0}};
    if (poll(waits, 2, -1) < 0) continue;
    if (waits[1].revents != 0) return;
    std::vector<MountedVolume> now = linuxMountedVolumes();
    for (const MountedVolume& volume : known_) {
      if (!contains(now, volume)) tell(volume, false);
    }
    for (const MountedVolume& volume : now) {
      if (!contains(known_, volume)) tell(volume, true);
    }
    known_ = std::move(now);
  }
}

void LinuxVolumeWatch::tell(const MountedVolume& volume, bool mounted) {
  std::lock_guard lock(observers_->mutex);
  for (const auto& [token, observer] : observers_->byToken) {
    Dispatch::mainAsync([shared = observers_, token = token, volume, mounted] {
      Workspace::Observer call;
      {
        std::lock_guard held(shared->mutex);
        const auto found = shared->byToken.find(token);
        if (found != shared->byToken.end()) call = found->second;
      }
      if (call) call(volume, mounted);
    });
  }
}

}  // namespace brisko
