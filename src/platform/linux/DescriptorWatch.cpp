#include "DescriptorWatch.h"

#include <utility>

#include <poll.h>
#include <sys/eventfd.h>

namespace brisko {
namespace {

/// Whether `ended` is told within `milliseconds`.
bool endsWithin(int ended, int milliseconds) {
  pollfd end = {ended, POLLIN, 0};
  return milliseconds > 0 && poll(&end, 1, milliseconds) > 0;
}

}  // namespace

bool DescriptorWatch::start(FileDescriptor watched, short events, int together, Ready ready) {
  if (!watched) return false;
  stop_.reset(eventfd(0, EFD_CLOEXEC));
  if (!stop_) return false;
  thread_ = std::thread(
      [ended = stop_.get(), held = std::move(watched), events, together, ready = std::move(ready)] {
        for (;;) {
          pollfd waits[] = {{held.get(), events, 0}, {ended, POLLIN, 0}};
          if (poll(waits, 2, -1) < 0) continue;
          if (waits[1].revents != 0 || endsWithin(ended, together)) return;
          ready(held.get());
        }
      });
  return true;
}

void DescriptorWatch::stop() {
  if (!thread_.joinable()) return;
  eventfd_write(stop_.get(), 1);
  thread_.join();
  stop_.reset();
}

}  // namespace brisko
