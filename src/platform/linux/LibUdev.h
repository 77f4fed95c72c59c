#pragma once

#include "OnDemandLibrary.h"

#include <libudev.h>

namespace brisko {

/// The library of the device manager's database.
inline constinit OnDemandLibrary libudev{"libudev.so.1"};

BRISKO_ON_DEMAND(libudev, udev_device_get_property_value);
BRISKO_ON_DEMAND(libudev, udev_device_new_from_syspath);
BRISKO_ON_DEMAND(libudev, udev_device_unref);
BRISKO_ON_DEMAND(libudev, udev_new);
BRISKO_ON_DEMAND(libudev, udev_unref);

}  // namespace brisko
