#include "Bus.h"

#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace brisko {
namespace {

constexpr std::uint64_t kLongestCall = 5'000'000;  // microseconds

}  // namespace

std::string BusError::text(int status) const {
  return error_.message != nullptr ? error_.message : std::strerror(-status);
}

BusPointer openBus(BusKind kind, std::string& reason) {
  if (!libsystemd.isThere()) {
    reason = "the library of the message bus cannot be loaded";
    return nullptr;
  }
  sd_bus* opened = nullptr;
  const bool isSystem = kind == BusKind::system;
  const int status = isSystem ? sd_bus_open_system(&opened) : sd_bus_open_user(&opened);
  if (status < 0) {
    reason = isSystem ? "there is no system bus" : "there is no session bus";
    return nullptr;
  }
  sd_bus_set_method_call_timeout(opened, kLongestCall);
  return BusPointer(opened);
}

}  // namespace brisko
