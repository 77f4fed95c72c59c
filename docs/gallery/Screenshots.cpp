// Renders the window's states into pictures: Screenshots FOLDER [MODULE], under any platform.

#include "AppDelegate.h"
#include "BriskoStyle.h"
#include "DemoApplications.h"
#include "DemoDisks.h"
#include "DemoFigures.h"
#include "DemoRoot.h"
#include "FakeWorkspace.h"
#include "Host.h"
#include "MainQueuePump.h"
#include "MainWindow.h"
#include "MyNSApplication.h"
#include "Pictures.h"
#include "Theme.h"
#include "TitleBar.h"

#include <QDir>
#include <QFile>
#include <QLocale>

#include <cstdio>
#include <cstring>

using namespace brisko;

namespace {

struct Taker {
  const char* module;
  void (*take)(AppDelegate&, test::DemoRoot&);
};

constexpr Taker kTakers[] = {
    {"status", test::takeStatusPictures},      {"junk", test::takeJunkPictures},
    {"apps", test::takeApplicationPictures},   {"duplicates", test::takeDuplicatePictures},
    {"large", test::takeLargePictures},        {"disks", test::takeDiskPictures},
    {"memory", test::takeTaskManagerPictures}, {"startup", test::takeStartupItemsPictures},
    {"shredder", test::takeShredderPictures},  {"internet", test::takeInternetPictures},
    {"update", test::takeUpdatePictures},      {"shell", test::takeShellPictures},
};

MountedVolume volume(const char* name, const char* root, MountedVolume::Place place,
                     std::uint64_t total, std::uint64_t free) {
  MountedVolume made;
  made.name = name;
  made.root = root;
  made.place = place;
  made.totalBytes = total;
  made.freeBytes = free;
  return made;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s FOLDER [MODULE]\n", argv[0]);
    return 2;
  }
  const QString folder = QFile::decodeName(argv[1]);
  QDir().mkpath(folder);
  test::setPictureFolder(folder);
  test::DemoRoot root;
  Host::install(makeHost({root.path()}));
  auto workspace = std::make_unique<test::FakeWorkspace>();
  using Place = MountedVolume::Place;
  workspace->volumes = {volume("System", "/", Place::fixed, 512'000'000'000, 181'400'000'000),
                        volume("Photos", "/media/anna/Photos", Place::externalBus,
                               2'000'000'000'000, 131'000'000'000)};
  Host::current().workspace = std::move(workspace);
  Host::current().installedApplications = std::make_unique<test::DemoInstalledApplications>();
  test::installDemoFigures(Host::current());
  const test::DemoDisks disks(root.path());
  // Dates are in the pictures.
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
  MyNSApplication application(argc, argv);
  MainQueuePump pump;
  QApplication::setStyle(new BriskoStyle);
  Theme::shared().followDesktop();
  AppDelegate delegate;
  delegate.applicationDidFinishLaunching();
  delegate.window()->show();
  // As on a desktop with a tray, which this platform has not: the window needs no button for it.
  QAbstractButton* panelButton = delegate.window()->titleBarView()->panelButton();
  while (panelButton->isHidden())
    test::settle(50);
  panelButton->hide();
  for (auto appearance : {Theme::Appearance::light, Theme::Appearance::dark}) {
    Theme::shared().setAppearance(appearance);
    root.fill();
    for (const Taker& taker : kTakers) {
      if (argc < 3 || std::strcmp(argv[2], taker.module) == 0) taker.take(delegate, root);
    }
  }
  return 0;
}
