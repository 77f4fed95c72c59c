#include "WindowLaunch.h"

#include "Host.h"
#include "OnDemandLibrary.h"
#include "ProgramFiles.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>
#include <xcb/xcb.h>

namespace brisko {
namespace {

constinit OnDemandLibrary libxcb{"libxcb.so.1"};
BRISKO_ON_DEMAND(libxcb, xcb_connect);
BRISKO_ON_DEMAND(libxcb, xcb_connection_has_error);
BRISKO_ON_DEMAND(libxcb, xcb_disconnect);

bool isSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

// A variable that outlived its server (a closed remote session) must not end the program: the
// toolkit would abort where the terminal can still answer.
bool xServerAnswers() {
  if (!libxcb.isThere()) return false;
  xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
  const bool answers = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return answers;
}

}  // namespace

bool displayIsAvailable() {
  for (const char* name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY"}) {
    if (isSet(name)) return true;
  }
  return isSet("DISPLAY") && xServerAnswers();
}

int launchWindow(int, char** argv) {
  std::string program = ProgramFiles::tools() + "/brisko-window";
  const std::string root = Host::current().folders->root();
  setenv("BRISKO_ROOT", root.c_str(), 1);
  ::execv(program.c_str(), argv);
  fmt::print(stderr, "brisko: {}: {}\n", program, std::strerror(errno));
  return 1;
}

}  // namespace brisko
