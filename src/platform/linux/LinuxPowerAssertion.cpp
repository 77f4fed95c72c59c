#include "LinuxPowerAssertion.h"

#include "SystemLog.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>

namespace brisko {
namespace {

constexpr const char* kWho = "Brisko";

constexpr BusObject kLoginManager = {"org.freedesktop.login1", "/org/freedesktop/login1",
                                     "org.freedesktop.login1.Manager"};
constexpr BusObject kScreenSaver = {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                                    "org.freedesktop.ScreenSaver"};
// What keeps a desktop's own power manager from acting where that does not ask the screen saver.
constexpr BusObject kPowerManagement = {"org.freedesktop.PowerManagement",
                                        "/org/freedesktop/PowerManagement/Inhibit",
                                        "org.freedesktop.PowerManagement.Inhibit"};

FileDescriptor lockIdle(const std::string& name, std::string& reason) {
  const BusPointer bus = openBus(BusKind::system, reason);
  if (!bus) return {};
  const BusMessage answer = callBus(bus.get(), kLoginManager, "Inhibit", reason, "ssss", "idle",
                                    kWho, name.c_str(), "block");
  int lock = -1;
  if (!answer || sd_bus_message_read(answer.get(), "h", &lock) < 0) return {};
  // The message owns the descriptor that came with it.
  FileDescriptor kept(::fcntl(lock, F_DUPFD_CLOEXEC, 3));
  if (!kept) reason = std::strerror(errno);
  return kept;
}

// The connection that the session's inhibitors end with; null when nobody took one.
BusPointer inhibitSession(bool keepsDisplay, const std::string& name, std::string& reason) {
  BusPointer bus = openBus(BusKind::session, reason);
  if (!bus) return nullptr;
  bool isHeld = false;
  std::string ignored;
  if (keepsDisplay) {
    isHeld =
        callBus(bus.get(), kScreenSaver, "Inhibit", reason, "ss", kWho, name.c_str()) != nullptr;
  }
  if (callBus(bus.get(), kPowerManagement, "Inhibit", keepsDisplay ? ignored : reason, "ss", kWho,
              name.c_str()))
    isHeld = true;
  return isHeld ? std::move(bus) : nullptr;
}

}  // namespace

PowerAssertion::Creation LinuxPowerAssertion::create(std::string_view type, int level,
                                                     const std::string& name) {
  if (type != kNoDisplaySleep && type != kNoIdleSleep)
    return {kNoIdentifier, fmt::format("there is no assertion \"{}\"", type)};
  Held held;
  if (level == kLevelOn) {
    std::string machine;
    std::string session;
    held.lock = lockIdle(name, machine);
    held.session = inhibitSession(type == kNoDisplaySleep, name, session);
    if (!held.lock) SystemLog::line("The login manager gives no lock: {}", machine);
    if (!held.session) SystemLog::line("The session's screen saver is not held: {}", session);
    if (!held.lock && !held.session) {
      return {kNoIdentifier, fmt::format("neither the login manager ({}) nor the screen saver ({}) "
                                         "lets a program keep the machine awake",
                                         machine, session)};
    }
  }
  const std::lock_guard lock(mutex_);
  held_.emplace(++last_, std::move(held));
  return {last_, ""};
}

bool LinuxPowerAssertion::release(Identifier identifier) {
  Held held;  // let go after the lock
  const std::lock_guard lock(mutex_);
  const auto found = held_.find(identifier);
  if (found == held_.end()) return false;
  held = std::move(found->second);
  held_.erase(found);
  return true;
}

bool LinuxPowerAssertion::updateSystemActivity() {
  std::string reason;
  const BusPointer bus = openBus(BusKind::session, reason);
  return bus && callBus(bus.get(), kScreenSaver, "SimulateUserActivity", reason, "") != nullptr;
}

}  // namespace brisko
