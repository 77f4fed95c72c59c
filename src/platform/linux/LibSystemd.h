#pragma once

#include "OnDemandLibrary.h"

#include <systemd/sd-bus.h>

namespace brisko {

/// The library of the message bus.
inline constinit OnDemandLibrary libsystemd{"libsystemd.so.0"};

BRISKO_ON_DEMAND(libsystemd, sd_bus_call_method);
BRISKO_ON_DEMAND(libsystemd, sd_bus_error_free);
BRISKO_ON_DEMAND(libsystemd, sd_bus_flush_close_unref);
BRISKO_ON_DEMAND(libsystemd, sd_bus_get_property_trivial);
BRISKO_ON_DEMAND(libsystemd, sd_bus_message_read);
BRISKO_ON_DEMAND(libsystemd, sd_bus_message_unref);
BRISKO_ON_DEMAND(libsystemd, sd_bus_open_system);
BRISKO_ON_DEMAND(libsystemd, sd_bus_open_user);
BRISKO_ON_DEMAND(libsystemd, sd_bus_set_method_call_timeout);

}  // namespace brisko
