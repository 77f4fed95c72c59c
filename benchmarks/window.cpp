// Opens the window as the program does and ends with its first frame: brisko-window [--empty]. With
// --empty it is a widget window with nothing on it, for what the toolkit alone costs.

#include "AppDelegate.h"
#include "BriskoStyle.h"
#include "MainQueuePump.h"
#include "MainWindow.h"
#include "MyNSApplication.h"
#include "Theme.h"

#include <cstdlib>
#include <cstring>

#include <unistd.h>

using namespace brisko;

namespace {

/// Ends the process once the window has painted itself. Without tearing anything down: what counts
/// is the way to the first frame.
struct FirstFrame : QObject {
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::Paint || isPending) return false;
    isPending = true;
    QMetaObject::invokeMethod(
        this, [] { ::_exit(0); }, Qt::QueuedConnection);
    return false;
  }
  bool isPending = false;
};

}  // namespace

int main(int argc, char** argv) {
  MyNSApplication application(argc, argv);
  FirstFrame firstFrame;
  if (argc > 1 && std::strcmp(argv[1], "--empty") == 0) {
    QWidget window;
    window.resize(1090, 700);
    window.installEventFilter(&firstFrame);
    window.show();
    return QApplication::exec();
  }
  const MainQueuePump pump;
  QApplication::setStyle(new BriskoStyle);
  Theme::shared().followDesktop();
  AppDelegate delegate;
  delegate.applicationDidFinishLaunching();
  delegate.window()->installEventFilter(&firstFrame);
  delegate.window()->show();
  return QApplication::exec();
}
