#include "AppDelegate.h"
#include "DemoRoot.h"
#include "Dispatch.h"
#include "LagFileViewController.h"
#include "LargeOutline.h"
#include "LargeTreeModel.h"
#include "MainWindow.h"
#include "PageController.h"
#include "Pictures.h"
#include "Progress.h"
#include "RingButton.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include <sys/stat.h>
#include <utime.h>

namespace fs = std::filesystem;

namespace brisko::test {
namespace {

struct DemoFile {
  const char* path;
  std::uintmax_t kilobytes;
  int days;  ///< before a day that is always the same
};

constexpr std::array<DemoFile, 30> kFiles = {{
    {"Virtual machines/debian.qcow2", 3'900'000, 40},
    {"Virtual machines/old test.qcow2", 1'450'000, 700},
    {"Films/Crossing the lake.mp4", 1'820'000, 20},
    {"Films/Ridge walk.mov", 940'000, 400},
    {"Films/Drafts/cut 1.mp4", 410'000, 410},
    {"Films/Drafts/cut 2.mp4", 405'000, 405},
    {"Films/Drafts/cut 3.mp4", 398'000, 402},
    {"Music/Live in Tromsø.flac", 612'000, 700},
    {"Music/Winter suite.flac", 233'000, 60},
    {"Music/Rehearsal.wav", 180'000, 61},
    {"Pictures/2023/DSC_0431.tif", 148'000, 800},
    {"Pictures/2023/DSC_0432.tif", 147'000, 800},
    {"Pictures/2023/DSC_0440.tif", 139'000, 799},
    {"Pictures/2024/DSC_1201.tif", 151'000, 300},
    {"Pictures/2024/DSC_1202.tif", 150'000, 300},
    {"Pictures/2024/DSC_1220.tif", 128'000, 299},
    {"Pictures/2024/panorama.png", 96'000, 298},
    {"Backups/laptop 2022.tar.gz", 940'000, 1200},
    {"Backups/laptop 2023.tar.gz", 870'000, 820},
    {"Backups/photos.zip", 530'000, 500},
    {"Documents/Thesis/thesis.pdf", 84'000, 30},
    {"Documents/Thesis/figures.pdf", 61'000, 31},
    {"Documents/Scans/contract.pdf", 22'000, 90},
    {"Documents/notes.txt", 12, 3},
    {"Projects/atlas/tiles.db", 760'000, 15},
    {"Projects/atlas/index.bin", 190'000, 15},
    {"Projects/atlas/src/main.cpp", 40, 2},
    {"Projects/birds/recordings.bin", 320'000, 200},
    {"desktop.iso", 690'000, 600},
    {"todo.txt", 2, 1},
}};

void makeDemoLarge(const std::string& folder) {
  constexpr time_t kToday = 1'795'000'000;
  fs::remove_all(folder);
  for (const DemoFile& file : kFiles) {
    const fs::path path = fs::path(folder) / file.path;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << "x";
    fs::resize_file(path, file.kilobytes * 1000);
    const utimbuf times{kToday - file.days * 86'400, kToday - file.days * 86'400};
    ::utime(path.c_str(), &times);
  }
}

QModelIndex row(const LargeOutline& outline, const char* name, const QModelIndex& parent = {}) {
  const QAbstractItemModel& rows = *outline.model();
  for (int i = 0; i < rows.rowCount(parent); ++i) {
    const QModelIndex at = rows.index(i, 0, parent);
    if (at.siblingAtColumn(LargeTreeModel::Name).data().toString() == QLatin1String(name))
      return at;
  }
  return {};
}

void scan(LagFileViewController& large, const std::string& folder) {
  large.list().showFolder(folder);
  while (large.list().controller().isScanning())
    settle(10);
  large.getView()->findChild<RingButton*>()->finishMovement();
}

void tick(LagFileViewController& large, const QModelIndex& at) {
  auto& rows = static_cast<LargeTreeModel&>(*large.getView()->findChild<LargeOutline*>()->model());
  if (FileNode* node = rows.node(at)) large.list().controller().toggle(*node);
}

// Held in the middle: with some entries found, and the rest still to come.
void takeScanningPicture(AppDelegate& delegate, LagFileViewController& large,
                         const std::string& folder) {
  large.list().showFolder(folder);
  Dispatch::waitForBackground();
  Controller& controller = large.list().controller();
  // What was read is let in; that the scan is over waits in the queue.
  controller.eumeRoot()->nodeTreeOperator().takeEntries();
  static_cast<LargeTreeModel*>(large.getView()->findChild<LargeOutline*>()->model())->refresh();
  // Twice, so that it goes on: what is known of the scan is shown anew.
  large.list().pauseButtonAction();
  large.list().pauseButtonAction();
  auto* ring = large.getView()->findChild<RingButton*>();
  ring->setLook(RingButton::Look::working);
  ring->setPercentage(0.64);
  ring->finishMovement();
  saveNow(delegate.window(), "large-scanning");
  while (controller.isScanning())
    settle(10);
}

void filter(QWidget* page, const char* button, int entry) {
  page->findChild<QPushButton*>(QLatin1String(button))->menu()->actions()[entry]->trigger();
}

}  // namespace

void takeLargePictures(AppDelegate& delegate, DemoRoot& root) {
  auto& large = static_cast<LagFileViewController&>(*delegate.pages()[4]);
  QWidget* page = large.getView();
  const std::string folder = root.path() + "/Users/anna/Archive";
  makeDemoLarge(folder);
  delegate.goToPage(4);
  save(delegate.window(), "large-start");
  takeScanningPicture(delegate, large, folder);
  auto* outline = page->findChild<LargeOutline*>();
  outline->expand(row(*outline, "Films"));
  outline->setCurrentIndex(row(*outline, "Crossing the lake.mp4", row(*outline, "Films")));
  save(delegate.window(), "large-found");
  tick(large, row(*outline, "Backups"));
  tick(large, row(*outline, "Drafts", row(*outline, "Films")));
  tick(large, row(*outline, "desktop.iso"));
  save(delegate.window(), "large-ticked");
  clickAndAnswer(page, "mainButton", "large-confirm", "answer0");
  large.list().deleteFileButtonAction();
  // The worker waits for the main thread, so that must not wait for the worker here.
  while (!large.isCanClick()) {
    QApplication::processEvents(QEventLoop::AllEvents, 10);
    QWidget* window = QApplication::activeModalWidget();
    if (window != nullptr && window->objectName() == QLatin1String("progressWindow")) {
      saveNow(window, "large-removing");
    }
  }
  save(delegate.window(), "large-removed");
  filter(page, "ageFilterButton", 3);
  outline->expandAll();
  save(delegate.window(), "large-old");
  filter(page, "sizeFilterButton", 4);
  filter(page, "ageFilterButton", 4);
  save(delegate.window(), "large-nothing-found");
  filter(page, "sizeFilterButton", 0);
  filter(page, "ageFilterButton", 0);
  fs::create_directories(root.path() + "/etc");
  click(page, "backButton");
  scan(large, root.path());
  save(delegate.window(), "large-locked");
  click(page, "backButton");
  large.list().showFolder(root.path() + "/missing");
  save(delegate.window(), "large-not-shown");
}

}  // namespace brisko::test
