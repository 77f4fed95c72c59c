// Renders the window's states into pictures: Screenshots FOLDER, under any platform.

#include "AppDelegate.h"
#include "BriskoStyle.h"
#include "DemoDuplicates.h"
#include "DemoFigures.h"
#include "DemoRoot.h"
#include "Dispatch.h"
#include "DuplicateOutline.h"
#include "DuplicateTreeModel.h"
#include "DuplicateViewController.h"
#include "FakeWorkspace.h"
#include "FastCleanViewController.h"
#include "FullDiskAccessViewController.h"
#include "Host.h"
#include "MainQueuePump.h"
#include "MainWindow.h"
#include "MyNSApplication.h"
#include "PageController.h"
#include "RingButton.h"
#include "SegmentBar.h"
#include "StatusBarView.h"
#include "StatusFeed.h"
#include "StatusPanel.h"
#include "SystemStartViewController.h"
#include "TCPreferenceWindowController.h"
#include "Theme.h"

#include <QAbstractButton>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocale>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

#include <cstdio>
#include <utility>

using namespace brisko;

namespace {

QString folder;

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

// Answers the message that comes up next, after taking its picture.
void answerNext(const char* picture, const char* answer) {
  auto* poll = new QTimer(qApp);
  QObject::connect(poll, &QTimer::timeout, [poll, picture, answer] {
    QWidget* panel = QApplication::activeModalWidget();
    if (panel == nullptr) return;
    delete poll;
    save(panel, picture);
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

// Two minutes, that are over at once.
void fillHistory(StatusFeed& feed, int cores = 8) {
  settle();
  for (int second = 0; second < static_cast<int>(FigureHistory::kSeconds); ++second)
    feed.take(test::demoSample(second, cores));
}

void takeStatusPictures(AppDelegate& delegate) {
  auto& status = static_cast<SystemStartViewController&>(*delegate.pages()[0]);
  delegate.goToPage(0);
  fillHistory(status.feed());
  saveNow(delegate.window(), "system-status");
  auto* scrollArea = status.getView()->findChild<QScrollArea*>();
  scrollArea->verticalScrollBar()->setValue(scrollArea->verticalScrollBar()->maximum());
  saveNow(delegate.window(), "system-status-below");
  scrollArea->verticalScrollBar()->setValue(0);
  fillHistory(status.feed(), 128);
  saveNow(delegate.window(), "system-status-128-cores");
}

void takePictures(AppDelegate& delegate, test::DemoRoot& root) {
  takeStatusPictures(delegate);
  delegate.goToPage(5);
  save(delegate.window(), "disk-manager");
  takeJunkPictures(delegate, root);
  takeDuplicatePictures(delegate, root);
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
  fillHistory(panel.feed());
  saveNow(&panel, "menu-bar-panel");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  folder = QFile::decodeName(argv[1]);
  QDir().mkpath(folder);
  test::DemoRoot root;
  Host::install(makeHost({root.path()}));
  auto workspace = std::make_unique<test::FakeWorkspace>();
  using Place = MountedVolume::Place;
  workspace->volumes = {volume("System", "/", Place::fixed, 512'000'000'000, 181'400'000'000),
                        volume("Photos", "/media/anna/Photos", Place::externalBus,
                               2'000'000'000'000, 131'000'000'000)};
  Host::current().workspace = std::move(workspace);
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
  for (auto appearance : {Theme::Appearance::light, Theme::Appearance::dark}) {
    Theme::shared().setAppearance(appearance);
    root.fill();
    takePictures(delegate, root);
  }
  return 0;
}
