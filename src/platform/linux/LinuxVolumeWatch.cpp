#include "LinuxVolumeWatch.h"

#include "LinuxVolumes.h"
#include "SystemLog.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <poll.h>

namespace brisko {
namespace {

bool contains(const std::vector<MountedVolume>& volumes, const MountedVolume& volume) {
  return std::any_of(volumes.begin(), volumes.end(), [&](const MountedVolume& other) {
    return other.root == volume.root && other.device == volume.device;
  });
}

}  // namespace

int LinuxVolumeWatch::observe(Workspace::Observer observer) {
  const std::lock_guard lock(running_);
  const bool isFirst = observers_.isEmpty();
  const int token = observers_.add(std::move(observer));
  if (isFirst) start();
  return token;
}

void LinuxVolumeWatch::stopObserving(int token) {
  const std::lock_guard lock(running_);
  if (observers_.remove(token) && observers_.isEmpty()) watch_.stop();
}

void LinuxVolumeWatch::start() {
  FileDescriptor table(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
  known_ = linuxMountedVolumes();
  if (!watch_.start(std::move(table), POLLPRI, 0, [this](int) { compare(); }))
    SystemLog::line("Volumes cannot be watched: {}", "/proc/self/mountinfo");
}

void LinuxVolumeWatch::compare() {
  std::vector<MountedVolume> now = linuxMountedVolumes();
  for (const MountedVolume& volume : known_) {
    if (!contains(now, volume)) observers_.tell(volume, false);
  }
  for (const MountedVolume& volume : now) {
    if (!contains(known_, volume)) observers_.tell(volume, true);
  }
  known_ = std::move(now);
}

}  // namespace brisko
