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

namespace brisko {

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
