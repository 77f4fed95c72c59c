#pragma once

#include "HostActivity.h"

#include <string>
#include <vector>

namespace brisko {

/// What the sensors below `classFolder` ("/sys/class") tell: those of hwmon, and of the thermal
/// zones where no hwmon sensor is a processor's. Readings outside -40 to 150 °C are those of a
/// sensor that is not connected and are left out. Sorted by kind, the hottest of a kind first.
std::vector<Temperature> linuxTemperatures(const std::string& classFolder);

}  // namespace brisko
