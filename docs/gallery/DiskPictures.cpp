#include "APFSScanWindowController.h"
#include "AppDelegate.h"
#include "DemoDisks.h"
#include "DemoRoot.h"
#include "DiskOutline.h"
#include "DiskViewController.h"
#include "MainWindow.h"
#include "NTFSWindowController.h"
#include "PageController.h"
#include "Pictures.h"

#include <QApplication>
#include <QTimer>

namespace brisko::test {
namespace {

void waitForDisks(DiskViewController& disks) {
  while (disks.model().isScan() || !disks.isCanClick() ||
         disks.model().health().state() == DiskHealth::State::reading)
    settle(20);
}

}  // namespace

void takeDiskPictures(AppDelegate& delegate, DemoRoot& root) {
  mountDemoDisks(root.path());
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

}  // namespace brisko::test
