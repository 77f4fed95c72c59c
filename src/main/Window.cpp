#include "Window.h"

#include "AppDelegate.h"
#include "BriskoStyle.h"
#include "Host.h"
#include "InstanceGuard.h"
#include "MainQueuePump.h"
#include "MainWindow.h"
#include "MyNSApplication.h"
#include "Theme.h"

#include <fmt/format.h>

#include <cstdlib>

#include <xcb/xcb.h>

namespace brisko {
namespace {

bool isSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

// A variable that outlived its server (a closed remote session) must not end the program: the
// toolkit would abort where the terminal can still answer.
bool xServerAnswers() {
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

int runWindow(int argc, char** argv) {
  MyNSApplication application(argc, argv);
  InstanceGuard guard(Host::current().folders->root());
  switch (guard.claim()) {
    case InstanceGuard::Role::second:
      return 0;
    case InstanceGuard::Role::failed:
      fmt::print(stderr, "brisko: another Brisko runs and does not answer\n");
      return 1;
    case InstanceGuard::Role::first:
      break;
  }
  MainQueuePump pump;
  QApplication::setStyle(new BriskoStyle);
  Theme::shared().followDesktop();
  AppDelegate delegate;
  delegate.applicationDidFinishLaunching();
  QObject::connect(&guard, &InstanceGuard::raiseRequested, &delegate, &AppDelegate::showMainWindow);
  // Ordered to the front without being marked open: the first reopen then brings it to the front
  // rather than hiding it.
  delegate.window()->show();
  return QApplication::exec();
}

}  // namespace brisko
