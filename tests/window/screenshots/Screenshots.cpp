// Renders the window's states into pictures: Screenshots FOLDER, under any platform.

#include "AppDelegate.h"
#include "BriskoStyle.h"
#include "DemoWorkspace.h"
#include "Dispatch.h"
#include "Host.h"
#include "MainQueuePump.h"
#include "MainWindow.h"
#include "MyNSApplication.h"
#include "PageController.h"
#include "StatusBarView.h"
#include "StatusPanel.h"
#include "TCPreferenceWindowController.h"
#include "Theme.h"

#include <QDir>
#include <QElapsedTimer>

#include <cstdio>

using namespace brisko;

namespace {

QString folder;

void settle(int milliseconds = 60) {
  QElapsedTimer timer;
  timer.start();
  do {
    QApplication::processEvents(QEventLoop::AllEvents, 10);
    Dispatch::waitForBackground();
  } while (timer.elapsed() < milliseconds);
}

void save(QWidget* widget, const char* name) {
  settle();
  QPixmap picture(widget->size() * 1);
  picture.fill(Qt::transparent);
  widget->render(&picture, {}, {}, QWidget::DrawWindowBackground | QWidget::DrawChildren);
  const QString path = QStringLiteral("%1/%2-%3.png")
                           .arg(folder, QLatin1String(name), Theme::shared().appearanceName());
  if (!picture.save(path)) std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
}

void takePictures(AppDelegate& delegate) {
  delegate.goToPage(0);
  save(delegate.window(), "system-status");
  delegate.goToPage(1);
  save(delegate.window(), "junk-start");
  delegate.goToPage(5);
  save(delegate.window(), "disk-manager");
  TCPreferenceWindowController about(delegate.window());
  about.show();
  save(&about, "about");
  StatusPanel panel;
  panel.popUp(QRect(1000, 0, 20, 20));
  save(&panel, "menu-bar-panel");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  folder = QFile::decodeName(argv[1]);
  QDir().mkpath(folder);
  auto workspace = std::make_unique<test::DemoWorkspace>();
  using Place = MountedVolume::Place;
  workspace->volumes = {
      test::demoVolume("System", "/", Place::fixed, 512'000'000'000, 181'400'000'000),
      test::demoVolume("Photos", "/media/anna/Photos", Place::externalBus, 2'000'000'000'000,
                       131'000'000'000)};
  Host::current().workspace = std::move(workspace);
  MyNSApplication application(argc, argv);
  MainQueuePump pump;
  QApplication::setStyle(new BriskoStyle);
  Theme::shared().followDesktop();
  AppDelegate delegate;
  delegate.applicationDidFinishLaunching();
  delegate.window()->show();
  for (auto appearance : {Theme::Appearance::light, Theme::Appearance::dark}) {
    Theme::shared().setAppearance(appearance);
    takePictures(delegate);
  }
  return 0;
}
