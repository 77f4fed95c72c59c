#include "Controller.h"
#include "DropArea.h"
#include "EntryTable.h"
#include "FilePreview.h"
#include "ImageCheckBox.h"
#include "LagFileViewController.h"
#include "LargeFileKinds.h"
#include "LargeOutline.h"
#include "LargeTreeModel.h"
#include "Progress.h"
#include "RingButton.h"
#include "Theme.h"
#include "TreemapView.h"
#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

#include <filesystem>

#include <sys/stat.h>
#include <utime.h>

using namespace brisko;
using namespace brisko::test;

namespace {

class LargePage : public WindowFixture {
 protected:
  void openPage() {
    launch();
    click("cell4");
  }
  LagFileViewController& large() {
    return static_cast<LagFileViewController&>(*delegate->pages()[4]);
  }
  Controller& controller() { return large().list().controller(); }
  template <typename Widget = QWidget>
  Widget* part(const char* name) {
    auto* found = page(4)->findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  QString text(const char* name) { return part<QLabel>(name)->text(); }
  RingButton* ring() { return part<RingButton>("mainButton"); }
  void press(const char* name) { QTest::mouseClick(part(name), Qt::LeftButton); }
  LargeOutline* outline() { return part<LargeOutline>("outline"); }
  LargeTreeModel& rows() { return static_cast<LargeTreeModel&>(*outline()->model()); }
  TreemapView* map() { return part<TreemapView>("treemap"); }

  void fill() {
    root.sizedFile("files/films/a.mp4", 3'000'000);
    root.sizedFile("files/films/b.mp4", 2'000'000);
    root.sizedFile("files/notes.txt", 900'000);
    root.sizedFile("files/old/c.zip", 1'500'000);
    const utimbuf times{1'500'000'000, 1'500'000'000};
    ::utime((root / "files/old/c.zip").c_str(), &times);
  }
  void scan(const std::string& path) {
    large().list().setFolderChooser([path] { return path; });
    QTest::mouseClick(ring(), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([this] {
      return large().indePage() != LagFileViewController::Page::scanning &&
             !controller().isScanning();
    }));
  }
  QModelIndex row(const char* name, const QModelIndex& parent = {}) {
    for (int i = 0; i < rows().rowCount(parent); ++i) {
      const QModelIndex at = rows().index(i, 0, parent);
      if (at.siblingAtColumn(LargeTreeModel::Name).data().toString() == QLatin1String(name)) {
        return at;
      }
    }
    ADD_FAILURE() << "no row " << name;
    return {};
  }
  QString cell(const QModelIndex& row, int column) {
    return row.siblingAtColumn(column).data().toString();
  }
  void clickBox(const QModelIndex& row) {
    outline()->scrollTo(row);
    QTest::mouseClick(outline()->viewport(), Qt::LeftButton, {},
                      outline()->visualRect(row.siblingAtColumn(0)).center());
  }
  QString remove(const char* answer) {
    QString asked;
    QTimer::singleShot(0, [&asked, answer] {
      QWidget* panel = QApplication::activeModalWidget();
      ASSERT_NE(panel, nullptr);
      asked = panel->findChild<QLabel*>("messageTitle")->text();
      QTest::mouseClick(panel->findChild<QWidget*>(QLatin1String(answer)), Qt::LeftButton);
    });
    QTest::mouseClick(ring(), Qt::LeftButton);
    return asked;
  }
  void choose(const char* button, const char* entry) {
    for (QAction* action : part<QPushButton>(button)->menu()->actions()) {
      if (action->text() == QLatin1String(entry)) return action->trigger();
    }
    ADD_FAILURE() << entry;
  }
};

TEST_F(LargePage, RoundButtonGoesFromAddToRemoveWhichWaitsForATick) {
  fill();
  openPage();
  EXPECT_EQ(ring()->text(), "Add");
  EXPECT_TRUE(ring()->isEnabled());
  scan(root / "files");
  EXPECT_EQ(ring()->text(), "Remove");
  EXPECT_FALSE(ring()->isEnabled());
  EXPECT_EQ(text("selectionLabel"), "Selected: 0 items");
  ASSERT_EQ(rows().rowCount(), 3);
  EXPECT_EQ(cell(rows().index(0, 0), LargeTreeModel::Name), "films");
  EXPECT_EQ(cell(rows().index(0, 0), LargeTreeModel::Size), "5.00 MB");
  EXPECT_EQ(cell(rows().index(1, 0), LargeTreeModel::Name), "old");
  EXPECT_EQ(cell(rows().index(2, 0), LargeTreeModel::Path),
            QString::fromStdString(root / "files/notes.txt"));
  outline()->setCurrentIndex(rows().index(2, 0));
  QTest::keyClick(outline(), Qt::Key_Space);
  EXPECT_TRUE(ring()->isEnabled());
  EXPECT_EQ(text("selectionLabel"), "Selected: 1 item, 900.00 KB");
  press("backButton");
  EXPECT_EQ(ring()->text(), "Add");
  EXPECT_TRUE(part("dropArea")->isVisible());
  // Again: the page must not wait for a notice that comes once in a run.
  scan(root / "files");
  EXPECT_EQ(ring()->text(), "Remove");
}

TEST_F(LargePage, WhatHasNothingToShowStaysAtTheStartAndSaysWhy) {
  root.folder("empty");
  root.file("plain");
  openPage();
  scan(root / "empty");
  EXPECT_EQ(large().indePage(), LagFileViewController::Page::choose);
  EXPECT_EQ(text("noticeLabel"), "“empty” is empty.");
  scan(root / "missing");
  EXPECT_EQ(text("noticeLabel"), "“missing” cannot be shown. No such file or directory");
  scan(root / "plain");
  EXPECT_EQ(text("noticeLabel"), "“plain” cannot be shown. It is not a folder.");
}

TEST_F(LargePage, PauseHoldsTheScanAndStopShowsWhatWasFound) {
  for (int i = 0; i < 40; ++i)
    root.file("files/d" + std::to_string(i) + "/f", "x");
  openPage();
  Progress::shareInit().isContinue();  // held at the first entry
  large().list().setFolderChooser([this] { return root / "files"; });
  QTest::mouseClick(ring(), Qt::LeftButton);
  QTest::qWait(150);
  EXPECT_EQ(ring()->text(), "Stop");
  EXPECT_EQ(ring()->look(), RingButton::Look::working);
  EXPECT_FALSE(part("backButton")->isEnabled());
  EXPECT_TRUE(text("selectionLabel").startsWith("Paused."));
  press("pauseButton");
  EXPECT_FALSE(Progress::shareInit().getProgress());
  press("pauseButton");
  EXPECT_EQ(part<QPushButton>("pauseButton")->text(), "Continue");
  QTest::mouseClick(ring(), Qt::LeftButton);
  EXPECT_EQ(ring()->text(), "Remove");
  EXPECT_FALSE(Progress::shareInit().getProgress()) << "stopping lets it go on to its end";
  EXPECT_TRUE(waitUntil([this] { return !controller().isScanning(); }));
}

TEST_F(LargePage, MapAndOutlineFollowEachOther) {
  fill();
  openPage();
  scan(root / "files");
  const FileNode* film = nullptr;
  QPointF at;
  for (const TreemapTile& tile : map()->tiles()) {
    if (tile.node == nullptr || tile.node->_name() != "b.mp4") continue;
    film = tile.node;
    at = TreemapView::drawnRect(tile).center();
  }
  ASSERT_NE(film, nullptr);
  QTest::mouseClick(map(), Qt::LeftButton, {}, at.toPoint());
  EXPECT_EQ(rows().node(outline()->currentIndex()), film);
  EXPECT_TRUE(outline()->isExpanded(row("films")));
  EXPECT_EQ(part<FilePreview>("preview")->path(), root / "files/films/b.mp4");
  outline()->setCurrentIndex(row("old"));
  EXPECT_EQ(map()->current()->_name(), "old");
  map()->setFocus();
  QTest::keyClick(map(), Qt::Key_Left);
  EXPECT_NE(map()->current()->_name(), "old");
  EXPECT_EQ(rows().node(outline()->currentIndex()), map()->current());
}

TEST_F(LargePage, RemovalAsksFirstAndTheEndOfAllOfItIsTheStart) {
  fill();
  openPage();
  scan(root / "files");
  const QAbstractItemModelTester tester(&rows(),
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  outline()->expand(row("films"));
  clickBox(row("a.mp4", row("films")));
  EXPECT_EQ(row("films").data(ImageNameRole).toString(), "halfsel");
  EXPECT_EQ(remove("answer0"), "Remove 1 item (3.00 MB)?");
  EXPECT_TRUE(exists(root / "files/films/a.mp4"));
  remove("answer1");
  EXPECT_FALSE(large().isCanClick());
  EXPECT_TRUE(waitUntil([this] { return large().isCanClick(); }));
  EXPECT_FALSE(exists(root / "files/films/a.mp4"));
  EXPECT_EQ(cell(row("films"), LargeTreeModel::Size), "2.00 MB");
  EXPECT_EQ(row("films").data(ImageNameRole).toString(), "unsel");
  EXPECT_EQ(large().indePage(), LagFileViewController::Page::results);
  QTest::mouseClick(outline()->selectAllBox(), Qt::LeftButton);
  EXPECT_EQ(outline()->selectAllBox()->imageName(), "sel");
  EXPECT_EQ(remove("answer1"), "Remove 3 items (4.40 MB)?");
  EXPECT_TRUE(waitUntil([this] { return large().isCanClick(); }));
  EXPECT_EQ(large().indePage(), LagFileViewController::Page::choose);
  EXPECT_TRUE(text("noticeLabel").startsWith("Everything is gone: 3 items removed"));
}

TEST_F(LargePage, FiltersNarrowTheListAndSayWhenNothingIsLeft) {
  fill();
  openPage();
  scan(root / "files");
  choose("ageFilterButton", "Older than 1 year");
  EXPECT_EQ(part<QPushButton>("ageFilterButton")->text(), "Older than 1 year");
  ASSERT_EQ(rows().rowCount(), 1);
  EXPECT_EQ(cell(rows().index(0, 0), LargeTreeModel::Name), "old");
  choose("sizeFilterButton", "Over 1 GB");
  EXPECT_TRUE(part("emptyView")->isVisible());
  EXPECT_FALSE(outline()->isVisible());
  choose("sizeFilterButton", "Any size");
  choose("ageFilterButton", "Any age");
  EXPECT_EQ(rows().rowCount(), 3);
}

TEST_F(LargePage, ProtectedEntriesCarryALockThatNoTickOpens) {
  fill();
  root.sizedFile("etc/conf", 10);
  openPage();
  scan(root.path());
  const QModelIndex locked = row("etc");
  EXPECT_NE(locked.data(LockRole).toString(), "");
  EXPECT_EQ(locked.data(Qt::AccessibleTextRole).toString(), "locked");
  clickBox(locked);
  EXPECT_EQ(locked.data(ImageNameRole).toString(), "unsel");
  EXPECT_FALSE(ring()->isEnabled());
}

TEST_F(LargePage, ALongFolderShowsItsLargestAndMoreOnDemand) {
  for (int i = 0; i < 450; ++i)
    root.sizedFile("files/in/" + std::to_string(i), static_cast<std::size_t>(1000 + i));
  openPage();
  scan(root / "files");
  const QModelIndex in = row("in");
  outline()->expand(in);
  ASSERT_EQ(rows().rowCount(in), static_cast<int>(LargeTreeModel::kFirstRows) + 1);
  EXPECT_EQ(cell(rows().index(0, 0, in), LargeTreeModel::Name), "449");
  const QModelIndex more = rows().index(static_cast<int>(LargeTreeModel::kFirstRows), 0, in);
  EXPECT_EQ(cell(more, LargeTreeModel::Name), "250 smaller items");
  outline()->setCurrentIndex(more);
  QTest::keyClick(outline(), Qt::Key_Return);
  EXPECT_EQ(rows().rowCount(in), 450);
  // Opened, a file is shown by its program.
  QTest::keyClick(outline(), Qt::Key_Return);
  const QModelIndex first = rows().index(0, LargeTreeModel::Name, in);
  outline()->scrollTo(first);
  QTest::mouseDClick(outline()->viewport(), Qt::LeftButton, {},
                     outline()->visualRect(first).center());
  EXPECT_EQ(workspace->opened, (std::vector<std::string>{"file://" + (root / "files/in/249"),
                                                         "file://" + (root / "files/in/449")}));
}

TEST(LargeSizes, ColoursChangeAtTheirExactSizes) {
  Theme::shared().setAppearance(Theme::Appearance::light);
  const QColor green(85, 215, 135);
  EXPECT_EQ(sizeColor(999'999), QColor(Qt::black));
  EXPECT_EQ(sizeColor(1'000'000), green);
  EXPECT_EQ(sizeColor(999'999'999), green);
  EXPECT_NE(sizeColor(1'000'000'000), green);
  EXPECT_EQ(sizeColor(1'000'000'000), sizeColor(999'999'999'999));
  EXPECT_EQ(sizeColor(1'000'000'000'000), QColor(Qt::red));
}

}  // namespace
