// Renders the window's states into pictures: Screenshots FOLDER [PAGE], under any platform. PAGE is
// "junk", "duplicates" or "apps"; without it all are rendered.

#include "APFSScanWindowController.h"
#include "AppDelegate.h"
#include "BriskoStyle.h"
#include "DemoFigures.h"
#include "DemoRoot.h"
#include "DemoDisks.h"
#include "AMRelatedFilesWindowController.h"
#include "AppDelegate.h"
#include "BriskoStyle.h"
#include "DemoApplications.h"
#include "DemoDuplicates.h"
#include "DemoRoot.h"
#include "DiskOutline.h"
#include "DiskViewController.h"
#include "Dispatch.h"
#include "DuplicateOutline.h"
#include "DuplicateTreeModel.h"
#include "DuplicateViewController.h"
#include "FakeWorkspace.h"
#include "FastCleanViewController.h"
#include "FileShareController.h"
#include "FullDiskAccessViewController.h"
#include "Host.h"
#include "MainQueuePump.h"
#include "MainWindow.h"
#include "MyNSApplication.h"
#include "Pictures.h"
#include "NTFSWindowController.h"
#include "PageController.h"
#include "RelatedFilesTree.h"
#include "RingButton.h"
#include "SegmentBar.h"
#include "ShredProgressWindowController.h"
#include "StatusBarView.h"
#include "StatusPanel.h"
#include "TCPreferenceWindowController.h"
#include "Theme.h"
#include "TitleBar.h"
#include "UnlinkGuard.h"
#include "UninstallViewController.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QLocale>
#include <QToolButton>
#include <QTimer>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <utility>

using namespace brisko;

namespace {

constexpr void (*kTakers[])(AppDelegate&, test::DemoRoot&) = {
    test::takeStatusPictures,
    test::takeShellPictures,
    test::takeJunkPictures,
    test::takeDuplicatePictures,
    test::takeStartupItemsPictures,
    test::takeUpdatePictures,
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

void settle(int milliseconds = 60) {
  QElapsedTimer timer;
  timer.start();
  do {
    QApplication::processEvents(QEventLoop::AllEvents, 10);
    Dispatch::waitForBackground();
  } while (timer.elapsed() < milliseconds);
}

// As it is at this moment: nothing that waits in the queues is let through.
void saveNow(QWidget* widget, const char* name) {
  QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  QPixmap picture(widget->size() * 1);
  picture.fill(Qt::transparent);
  widget->render(&picture, {}, {}, QWidget::DrawWindowBackground | QWidget::DrawChildren);
  const QString path = QStringLiteral("%1/%2-%3.png")
                           .arg(folder, QLatin1String(name), Theme::shared().appearanceName());
  if (!picture.save(path)) std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
}

void save(QWidget* widget, const char* name) {
  settle();
  saveNow(widget, name);
}

void click(QWidget* page, const char* name) {
  page->findChild<QAbstractButton*>(QLatin1String(name))->click();
}

// Answers the message that comes up next, after taking its picture (null: none).
void answerNext(const char* picture, const char* answer) {
  auto* poll = new QTimer(qApp);
  QObject::connect(poll, &QTimer::timeout, [poll, picture, answer] {
    QWidget* panel = QApplication::activeModalWidget();
    if (panel == nullptr) return;
    delete poll;
    if (picture != nullptr) save(panel, picture);
    click(panel, answer);
  });
  poll->start(50);
}

// Presses the button and answers the message that comes up, after taking its picture.
void clickAndAnswer(QWidget* page, const char* button, const char* picture, const char* answer) {
  QTimer::singleShot(150, [picture, answer] {
    QWidget* panel = QApplication::activeModalWidget();
    save(panel, picture);
    click(panel, answer);
  });
  click(page, button);
}

bool scanIsDone(FastCleanViewController& junk) {
  return junk.model().indexPage() == 2;
}

void takeJunkPictures(AppDelegate& delegate, test::DemoRoot& root) {
  auto& junk = static_cast<FastCleanViewController&>(*delegate.pages()[1]);
  QWidget* page = junk.getView();
  delegate.goToPage(1);
  save(delegate.window(), "junk-start");
  click(page, "mainButton");
  // The scan itself ends sooner than anybody could look; its reports are let through one by one.
  Dispatch::waitForBackground();
  for (int report = 0; report < 3; ++report)
    Dispatch::runPendingFor(std::chrono::microseconds(0));
  page->findChild<RingButton*>()->finishMovement();
  saveNow(delegate.window(), "junk-scanning");
  while (!scanIsDone(junk))
    settle(5);
  save(delegate.window(), "junk-scanned");
  click(page->findChild<QWidget*>(QStringLiteral("fastTypeView0")), "detailButton");
  junk.model().selectListButton(2);
  junk.model().selectListButton(5);
  save(delegate.window(), "junk-details");
  click(page, "backToDetailButton");
  save(delegate.window(), "junk-partly-selected");
  root.changeOneFile();
  clickAndAnswer(page, "mainButton", "junk-confirm", "answer1");
  saveNow(delegate.window(), "junk-cleaning");
  while (!junk.isCanClick())
    settle(5);
  save(delegate.window(), "junk-cleaned");
  clickAndAnswer(page, "failuresButton", "junk-not-removed", "answer0");
  root.clear();
  click(page, "mainButton");
  while (!scanIsDone(junk))
    settle(5);
  save(delegate.window(), "junk-nothing-found");
  click(page, "backHomeButton");
}

void showResults(DuplicateViewController& duplicates) {
  Dispatch::waitForBackground();
  while (duplicates.model().isSearching() || !duplicates.model().bSearchFinished())
    settle(20);
}

// Both at once: the program's progress never goes back, so only its first search shows all of it.
void takeSearchPictures(AppDelegate& delegate, DuplicateViewController& duplicates) {
  DuplicateModel& model = duplicates.model();
  static bool isTaken = false;
  if (std::exchange(isTaken, true)) return;
  QElapsedTimer timer;
  timer.start();
  // The end of the search waits in the main queue meanwhile.
  while (model.progress() < 0.4F && timer.elapsed() < 2000)
    model.getPathForSreachDuplicate();
  model.getPathForSreachDuplicate();
  duplicates.getView()->findChild<RingButton*>()->finishMovement();
  for (auto appearance : {Theme::Appearance::dark, Theme::Appearance::light}) {
    Theme::shared().setAppearance(appearance);
    saveNow(delegate.window(), "duplicates-searching");
  }
}

void removeTicked(DuplicateViewController& duplicates) {
  duplicates.model().doRemoveDuplicateAction();
  while (!duplicates.isCanClick())
    settle(20);
}

void takeDuplicatePictures(AppDelegate& delegate, test::DemoRoot& root) {
  auto& duplicates = static_cast<DuplicateViewController&>(*delegate.pages()[3]);
  QWidget* page = duplicates.getView();
  DuplicateModel& model = duplicates.model();
  const std::string pictures = root.path() + "/Users/anna/Holiday";
  test::makeDemoDuplicates(pictures);
  delegate.goToPage(3);
  save(delegate.window(), "duplicates-start");
  duplicates.viewDragAction(pictures);
  takeSearchPictures(delegate, duplicates);
  showResults(duplicates);
  auto* outline = page->findChild<DuplicateOutline*>();
  QAbstractItemModel& rows = *outline->model();
  model.didClickTableColumn(DuplicateColumn::FileSize);
  model.didClickTableColumn(DuplicateColumn::FileSize);
  for (int row = 0; row < 3; ++row)
    model.toggle(*static_cast<DuplicateTreeModel&>(rows).node(rows.index(row, 0)));
  // The hard links, and the three pictures.
  for (int row : {3, 4})
    outline->expand(rows.index(row, 0));
  outline->setCurrentIndex(rows.index(0, 0, rows.index(4, 0)));
  save(delegate.window(), "duplicates-found");
  model.loadValueForSegment(1);
  outline->expand(rows.index(1, 0));
  outline->setCurrentIndex(rows.index(0, 0, rows.index(1, 0)));
  save(delegate.window(), "duplicates-documents");
  model.loadValueForSegment(3);
  save(delegate.window(), "duplicates-none-of-type");
  model.loadValueForSegment(0);
  clickAndAnswer(page, "removeButton", "duplicates-confirm", "answer1");
  saveNow(delegate.window(), "duplicates-removing");
  while (!duplicates.isCanClick())
    settle(20);
  model.setAllSelectOrNoSelect(true);
  answerNext("duplicates-not-removed", "answer0");  // the hard links
  removeTicked(duplicates);
  test::makeDemoDuplicates(pictures);
  QFile::remove(QString::fromStdString(pictures + "/Phone/track.gpx"));
  duplicates.viewDragAction(pictures);
  showResults(duplicates);
  model.setAllSelectOrNoSelect(true);
  removeTicked(duplicates);
  save(delegate.window(), "duplicates-removed");
  duplicates.viewDragAction(pictures);
  showResults(duplicates);
  save(delegate.window(), "duplicates-nothing-found");
  click(page, "nothingButton");
}

void waitForDisks(DiskViewController& disks) {
  while (disks.model().isScan() || !disks.isCanClick() ||
         disks.model().health().state() == DiskHealth::State::reading)
    settle(20);
}

void takeDiskPictures(AppDelegate& delegate) {
  auto& disks = static_cast<DiskViewController&>(*delegate.pages()[5]);
  QWidget* page = disks.getView();
  delegate.goToPage(5);
  disks.getDiskInfo();
  waitForDisks(disks);
  auto* outline = page->findChild<DiskOutline*>();
  const QAbstractItemModel& rows = *outline->model();
  outline->setCurrentIndex(rows.index(0, 0));
  waitForDisks(disks);
  save(delegate.window(), "disk-manager");
  outline->setCurrentIndex(rows.index(0, 0, rows.index(1, 0)));
  save(delegate.window(), "disk-volume");
  click(page, "renameButton");
  save(delegate.window(), "disk-rename");
  click(page, "renameCancelButton");
  QTimer::singleShot(150, [] {
    QWidget* panel = QApplication::activeModalWidget();
    save(panel, "disk-format");
    click(panel, "okButton");
    saveNow(panel, "disk-formatting");
  });
  click(page, "formatButton");
  answerNext("disk-formatted", "closeButton");
  settle(1500);
  waitForDisks(disks);
  outline->setCurrentIndex(rows.index(2, 0));
  waitForDisks(disks);
  save(delegate.window(), "disk-no-health");
  NTFSWindowController ntfs(delegate.window());
  ntfs.show();
  save(&ntfs, "notice-ntfs");
  ntfs.hide();
  APFSScanWindowController protectedFiles(delegate.window());
  protectedFiles.show();
  save(&protectedFiles, "notice-protected");
  protectedFiles.hide();
}

void takePictures(AppDelegate& delegate, test::DemoRoot& root, const test::DemoDisks& demoDisks) {
// Things to erase, one of them with a second name elsewhere.
void makePapers(const std::string& papers) {
  namespace fs = std::filesystem;
  fs::remove_all(papers);
  for (const char* name : {"Old contracts/2019/Lease.pdf", "Old contracts/2019/Bank.pdf",
                           "Old contracts/Letters.odt", "Payroll 2021.ods", "Passport scan.png",
                           "Tax return \"draft\n2\".pdf", "Shared list.txt"}) {
    const fs::path path = papers + "/" + name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary)
        << std::string(180'000 + 7'000 * path.string().size(), 'x');
  }
  std::ofstream(papers + "/Disk image.iso", std::ios::binary) << std::string(96'000'000, 'x');
  fs::create_hard_link(papers + "/Shared list.txt", papers + "/Another name.txt");
}

void waitForRun(FileShareController& shredder) {
  while (!shredder.isCanClick())
    settle(20);
}

// Takes the picture of the run's end and closes its window.
void closeRun(FileShareController& shredder, const char* picture, const char* button) {
  waitForRun(shredder);
  save(shredder.progressWindow(), picture);
  click(shredder.progressWindow(), button);
  settle();
}

void takeShredderPictures(AppDelegate& delegate, test::DemoRoot& root) {
  auto& shredder = static_cast<FileShareController&>(*delegate.pages()[9]);
  QWidget* page = shredder.getView();
  const std::string papers = root.path() + "/Users/anna/Papers";
  const auto add = [&](std::vector<std::string> names) {
    for (std::string& name : names)
      name = papers + "/" + name;
    shredder.viewDragAction(names);
  };
  makePapers(papers);
  delegate.goToPage(9);
  save(delegate.window(), "shredder-start");
  add({"Old contracts", "Payroll 2021.ods", "Passport scan.png", "Tax return \"draft\n2\".pdf"});
  shredder.model().toggle(2);
  save(delegate.window(), "shredder-list");
  answerNext("shredder-confirm", "answer1");
  click(page, "eraseButton");
  while (shredder.progressWindow() == nullptr)
    settle(5);
  closeRun(shredder, "shredder-erased", "successButton");
  save(delegate.window(), "shredder-outcome");
  answerNext("shredder-not-added", "answer0");
  shredder.viewDragAction({"/etc"});
  click(page, "emptyListButton");
  add({"Passport scan.png", "Shared list.txt", "Disk image.iso"});
  shredder.model().setEraserTimes(35);
  shredder.model().toggle(2);
  answerNext(nullptr, "answer1");
  click(page, "eraseButton");
  while (shredder.progressWindow() == nullptr)
    settle(5);
  closeRun(shredder, "shredder-failed", "failButton");
  save(delegate.window(), "shredder-not-all-erased");
  shredder.model().setAllSelectOrNoSelect(true);
  answerNext(nullptr, "answer1");
  click(page, "eraseButton");
  while (shredder.progressWindow() == nullptr)
    QApplication::processEvents(QEventLoop::AllEvents, 10);
  saveNow(shredder.progressWindow(), "shredder-erasing");
  click(shredder.progressWindow(), "cancelButton");
  closeRun(shredder, "shredder-cancelled", "failButton");
  shredder.model().setEraserTimes(1);
  shredder.model().emptyListButtonAction();
}

void takePictures(AppDelegate& delegate, test::DemoRoot& root) {
// Acts on the next modal window of this name, once.
void onWindow(const char* name, std::function<bool(QWidget*)> act) {
  auto* poll = new QTimer(qApp);
  QObject::connect(poll, &QTimer::timeout, [poll, name, act] {
    QWidget* panel = QApplication::activeModalWidget();
    if (panel == nullptr || panel->objectName() != QLatin1String(name)) return;
    // Taking a picture lets events through.
    poll->stop();
    if (!act(panel)) return poll->start();
    poll->deleteLater();
  });
  poll->start(20);
}

void takeRemovalPictures(UninstallViewController& apps) {
  onWindow("AMRelatedFilesWindowController", [&apps](QWidget* panel) {
    if (!apps.relatedFilesWinController()->model().isComplete()) return false;
    auto* outline = panel->findChild<RelatedFilesOutline*>();
    outline->expandAll();
    outline->setCurrentIndex(outline->model()->index(2, 0, outline->model()->index(0, 0)));
    save(panel, "apps-review");
    outline->scrollToBottom();
    save(panel, "apps-review-package");
    click(panel, "uninstallButton");
    return true;
  });
  onWindow("UninstallProgressWindowController", [&apps](QWidget* panel) {
    const RelatedFilesModel& model = apps.relatedFilesWinController()->model();
    static bool isTaken = false;
    if (!model.isEnded()) {
      if (!isTaken && model.deleteCount() > 0) saveNow(panel, "apps-removing");
      isTaken = model.deleteCount() > 0;
      return false;
    }
    isTaken = false;
    save(panel, "apps-removed");
    click(panel, "okButton");
    return true;
  });
  apps.uninstallAppButtonAction();
  while (!apps.isCanClick())
    QApplication::processEvents(QEventLoop::AllEvents, 10);
}

void takeAppPictures(AppDelegate& delegate, test::DemoRoot& root) {
  auto& apps = static_cast<UninstallViewController&>(*delegate.pages()[2]);
  UninstallModel& model = apps.model();
  test::makeDemoApplications(root.path());
  delegate.goToPage(2);
  apps.refButtonAction();
  while (model.isBusy() || !model.isMeasured())
    settle(20);
  const auto tick = [&](const char* name) {
    for (std::size_t row = 0; row < model.showListArr().size(); ++row) {
      if (model.showListArr()[row]->name == name) model.selectUninstallApp(row);
    }
  };
  while (!model.isSort())
    model.didClickTableColumn(UninstallColumn::appname);
  model.didClickTableColumn(UninstallColumn::appname);
  tick("Aurora Editor");
  tick("Sketchbook");
  save(delegate.window(), "apps-list");
  auto* field = apps.getView()->findChild<QLineEdit*>();
  const auto search = [&](const char* text) {
    field->setText(QLatin1String(text));
    Q_EMIT field->textEdited(field->text());
  };
  search("aurora");
  save(delegate.window(), "apps-search");
  search("harbour");
  save(delegate.window(), "apps-nothing-found");
  apps.closeSearchButton();
  takeRemovalPictures(apps);
}

void takePictures(AppDelegate& delegate, test::DemoRoot& root, const QByteArray& page) {
  if (page == "junk") return takeJunkPictures(delegate, root);
  if (page == "duplicates") return takeDuplicatePictures(delegate, root);
  if (page == "apps") return takeAppPictures(delegate, root);
  delegate.goToPage(0);
  save(delegate.window(), "system-status");
  demoDisks.mount();
  takeDiskPictures(delegate);
  takeJunkPictures(delegate, root);
  takeDuplicatePictures(delegate, root);
  takeShredderPictures(delegate, root);
  takeAppPictures(delegate, root);
  TCPreferenceWindowController about(delegate.window());
  about.show();
  save(&about, "about");
  about.hide();
  FullDiskAccessViewController access(delegate.window());
  access.show();
  save(&access, "full-disk-access");
  access.hide();
  StatusPanel panel;
  panel.popUp(QRect(1000, 0, 20, 20));
  save(&panel, "menu-bar-panel");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s FOLDER [PAGE]\n", argv[0]);
    return 2;
  }
  const QString folder = QFile::decodeName(argv[1]);
  QDir().mkpath(folder);
  test::setPictureFolder(folder);
  test::DemoRoot root;
  test::UnlinkGuard::allow(root.path());
  Host::install(makeHost({root.path()}));
  auto workspace = std::make_unique<test::FakeWorkspace>();
  using Place = MountedVolume::Place;
  workspace->volumes = {volume("System", "/", Place::fixed, 512'000'000'000, 181'400'000'000),
                        volume("Photos", "/media/anna/Photos", Place::externalBus,
                               2'000'000'000'000, 131'000'000'000)};
  Host::current().workspace = std::move(workspace);
  const test::DemoDisks disks(root.path());
  Host::current().installedApplications = std::make_unique<test::DemoInstalledApplications>();
  test::installDemoFigures(Host::current());
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
    for (const auto take : kTakers)
      take(delegate, root);
    takePictures(delegate, root, disks);
    takePictures(delegate, root, argv[2]);
  }
  return 0;
}
