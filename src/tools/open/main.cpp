// Starts the screen saver, as "open -a ScreenSaverEngine.app" does on the system that this tool
// stands in for; anything else is refused in one line.

#include "Bus.h"
#include "HostTools.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace brisko;

constexpr BusObject kScreenSavers[] = {
    {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver"},
    {"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver"},
    {"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver", "org.cinnamon.ScreenSaver"},
    {"org.mate.ScreenSaver", "/org/mate/ScreenSaver", "org.mate.ScreenSaver"},
    {"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver", "org.xfce.ScreenSaver"},
};

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

bool activate(sd_bus* bus, const BusObject& screenSaver) {
  std::string reason;
  const BusMessage answer = callBus(bus, screenSaver, "SetActive", reason, "b", 1);
  if (answer) {
    int isActive = 1;
    // Some answer nothing, others whether they did.
    if (brisko::sd_bus_message_read(answer.get(), "b", &isActive) <= 0 || isActive != 0)
      return true;
  }
  // There are some that lock and know no other saver.
  return callBus(bus, screenSaver, "Lock", reason, "") != nullptr;
}

bool askSession() {
  std::string reason;
  const BusPointer bus = openBus(BusKind::session, reason);
  if (!bus) return false;
  for (const BusObject& screenSaver : kScreenSavers)
    if (activate(bus.get(), screenSaver)) return true;
  return false;
}

// The login manager only passes the wish on, and does not say whether anybody heard it: it comes
// after what is known to act.
bool startScreenSaver() {
  if (askSession()) return true;
  if (isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") &&
      HostTools::run({"xset", "s", "activate"}).status == 0)
    return true;
  return isSet("XDG_SESSION_ID") && HostTools::run({"loginctl", "lock-session"}).status == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view name = argc == 3 ? argv[2] : "";
  const bool isScreenSaver = name == "ScreenSaverEngine.app" || name == "ScreenSaverEngine";
  if (argc != 3 || std::string_view(argv[1]) != "-a" || !isScreenSaver) {
    std::fputs("open: only \"open -a ScreenSaverEngine.app\" is known on this system\n", stderr);
    return 1;
  }
  if (startScreenSaver()) return 0;
  std::fputs("open: this session has no screen saver that can be started\n", stderr);
  return 1;
}
