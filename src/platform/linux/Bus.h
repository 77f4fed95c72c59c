#pragma once

#include "LibSystemd.h"

#include <memory>
#include <string>

namespace brisko {

/// A connection to a message bus of its own, closed with what was sent still delivered. One thread
/// at a time.
struct BusCloser {
  void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
using BusPointer = std::unique_ptr<sd_bus, BusCloser>;

struct BusMessageReleaser {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageReleaser>;

/// What a call came back with when it failed.
class BusError {
 public:
  BusError() = default;
  ~BusError() { sd_bus_error_free(&error_); }
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;

  sd_bus_error* get() { return &error_; }
  /// In words; `status` is what the call returned.
  std::string text(int status) const;

 private:
  sd_bus_error error_ = SD_BUS_ERROR_NULL;
};

enum class BusKind { system, session };

/// Connects; a call through it waits at most five seconds. Null, with the reason, when there is no
/// such bus. No bus is started for it.
BusPointer openBus(BusKind kind, std::string& reason);

/// The one object of a service that a call goes to.
struct BusObject {
  const char* service;
  const char* path;
  const char* interface;
};

/// Calls `method` of `object`, whose arguments are told as sd-bus does. The answer, or null with
/// the reason.
template <typename... Arguments>
BusMessage callBus(sd_bus* bus, const BusObject& object, const char* method, std::string& reason,
                   const char* types, Arguments... arguments) {
  BusError error;
  sd_bus_message* answer = nullptr;
  const int status = sd_bus_call_method(bus, object.service, object.path, object.interface, method,
                                        error.get(), &answer, types, arguments...);
  if (status < 0) reason = error.text(status);
  return BusMessage(status < 0 ? nullptr : answer);
}

}  // namespace brisko
