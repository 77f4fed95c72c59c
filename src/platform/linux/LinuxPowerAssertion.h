#pragma once

#include "Bus.h"
#include "FileDescriptor.h"
#include "PowerAssertion.h"

#include <map>
#include <mutex>

namespace brisko {

/// Locks of the login manager against going to sleep when idle, and of the session's screen saver.
///
/// The login manager's lock is an open descriptor and the screen saver's ends with the connection
/// it was asked for on, so that both go with the process. Where only one of the two is to be had,
/// that one is held: each keeps an idle machine awake.
class LinuxPowerAssertion : public PowerAssertion {
 public:
  Creation create(std::string_view type, int level, const std::string& name) override;
  bool release(Identifier identifier) override;
  bool updateSystemActivity() override;

 private:
  struct Held {
    FileDescriptor lock;  ///< the login manager's
    BusPointer session;   ///< the screen saver's, while it is held
  };

  std::mutex mutex_;
  std::map<Identifier, Held> held_;
  Identifier last_ = kNoIdentifier;
};

}  // namespace brisko
