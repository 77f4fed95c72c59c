// The window's program. brisko starts it, with the root that it has checked and with --verbose when
// it was told so itself.

#include "Dispatch.h"
#include "Host.h"
#include "SystemLog.h"
#include "Window.h"

#include <cstdlib>
#include <string_view>

int main(int argc, char** argv) {
  const char* root = std::getenv("BRISKO_ROOT");
  brisko::Dispatch::attachMainThread();
  brisko::Host::install(brisko::makeHost({root != nullptr ? root : ""}));
  brisko::SystemLog::setEchoToStandardError(argc > 1 && std::string_view(argv[1]) == "--verbose");
  return brisko::runWindow(argc, argv);
}
