#include "WatchMountUnmount.h"

#include "Host.h"
#include "NSNotificationCenter.h"

namespace brisko {

WatchMountUnmount::~WatchMountUnmount() {
  Host::current().workspace->stopObserving(token_);
}

void WatchMountUnmount::registerNotifications() {
  token_ =
      Host::current().workspace->observeVolumes([this](const MountedVolume& volume, bool mounted) {
        if (mounted) {
          mountedVolume(volume);
        } else {
          unmountedVolume(volume);
        }
      });
}

void WatchMountUnmount::mountedVolume(const MountedVolume& volume) {
  NSNotificationCenter::defaultCenter().postNotification({kMount, "", this, volume});
}

void WatchMountUnmount::unmountedVolume(const MountedVolume& volume) {
  NSNotificationCenter::defaultCenter().postNotification({kUnmount, "", this, volume});
}

}  // namespace brisko
