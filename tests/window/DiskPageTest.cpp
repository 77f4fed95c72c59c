#include "APFSScanWindowController.h"
#include "DiskOutline.h"
#include "DiskTreeModel.h"
#include "DiskViewController.h"
#include "MadeDiskHost.h"
#include "NTFSWindowController.h"
#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <gmock/gmock.h>

using namespace brisko;
using namespace brisko::test;
using testing::Contains;

namespace {

class DiskPage : public WindowFixture {
 protected:
  DiskPage() {
    auto stick = MadeDisks::volume("Stick", 4'000'000'000);
    stick["Ejectable"] = true;
    disks.setDetails("sda1", MadeDisks::volume("System\nOne", 90'000'000'000));
    disks.setDetails("sdb1", stick);
    disks.addDisk("sda", MadeDisks::disk("Inner", 100'000'000'000), {"sda1"});
    root.folder("Volumes/Stick");
    MountedVolume volume;
    volume.root = root / "Volumes/Stick";
    volume.fileSystemName = "exfat";
    workspace->volumes.push_back(volume);
  }
  ~DiskPage() override { delegate.reset(); }

  void addStick() {
    auto drive = MadeDisks::disk("Stick Drive", 8'000'000'000);
    drive["Ejectable"] = true;
    drive["VirtualOrPhysical"] = "Virtual";
    disks.addDisk("sdb", drive, {"sdb1"});
  }
  DiskViewController& disk() { return static_cast<DiskViewController&>(*delegate->pages()[5]); }
  void openPage() {
    launch();
    click("cell5");
    ASSERT_TRUE(settled());
  }
  bool settled() {
    return waitUntil([this] { return !disk().model().isScan() && disk().isCanClick(); });
  }
  template <typename Widget = QWidget>
  Widget* part(const char* name) {
    return page(5)->findChild<Widget*>(QLatin1String(name));
  }
  DiskOutline* outline() { return part<DiskOutline>("outline"); }
  QString text(const char* name) { return part<QLabel>(name)->text(); }
  void press(const char* name) { QTest::mouseClick(part(name), Qt::LeftButton); }
  QModelIndex row(int disk, int volume = -1) {
    const QModelIndex index = outline()->model()->index(disk, 0);
    return volume < 0 ? index : outline()->model()->index(volume, 0, index);
  }
  void select(const QModelIndex& index) {
    QTest::mouseClick(outline()->viewport(), Qt::LeftButton, {},
                      outline()->visualRect(index).center());
  }
  /// Acts on the next modal panel when it comes up. It runs a loop of its own, so nobody else can
  /// wait for it.
  static void onPanel(std::function<void(QWidget*)> act) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act = std::move(act)] {
      QWidget* panel = QApplication::activeModalWidget();
      if (panel == nullptr) return;
      const auto now = act;
      delete poll;
      now(panel);
    });
    poll->start(10);
  }

  MadeDiskHost made{root.folder("disks")};
  MadeDisks& disks = made.disks;
};

TEST_F(DiskPage, theFirstDiskIsShownAndTheKeysLeadThroughTheTree) {
  addStick();
  const auto drive = made.smart->add("sda");
  drive->nvme = true;
  drive->health = {38, 12'000, 44};
  openPage();
  QAbstractItemModelTester tester(outline()->model(),
                                  QAbstractItemModelTester::FailureReportingMode::Warning);
  EXPECT_EQ(text("titleLabel"), "Inner");
  EXPECT_EQ(text("caption0"), "Location:");
  EXPECT_EQ(text("value1"), "SATA");
  EXPECT_FALSE(part("freeValue")->isVisible());
  EXPECT_FALSE(part("renameButton")->isVisible());
  EXPECT_FALSE(part("ejectButton")->isVisible());
  ASSERT_TRUE(waitUntil([this] { return part("temperature")->isVisible(); }));
  EXPECT_EQ(text("temperature"), "38 °C");
  EXPECT_EQ(text("powerOnHours"), "12,000");
  outline()->setFocus();
  QTest::keyClick(outline(), Qt::Key_Down);
  EXPECT_EQ(text("titleLabel"), "System\\nOne") << "one line, whatever is in it";
  EXPECT_TRUE(part("freeValue")->isVisible());
  EXPECT_FALSE(part("healthView")->isVisible());
  QTest::keyClick(outline(), Qt::Key_Down);
  EXPECT_EQ(text("titleLabel"), "Stick Drive");
  EXPECT_TRUE(part("healthExplanation")->isVisible());
  QTest::keyClick(outline(), Qt::Key_Left);
  EXPECT_FALSE(outline()->isExpanded(row(1)));
}

TEST_F(DiskPage, volumesComeAndGoWhileThePageIsShown) {
  openPage();
  EXPECT_EQ(outline()->model()->rowCount(), 1);
  select(row(0, 0));
  addStick();
  workspace->mount(MountedVolume());
  ASSERT_TRUE(settled());
  EXPECT_EQ(outline()->model()->rowCount(), 2);
  EXPECT_TRUE(outline()->isExpanded(row(1)));
  EXPECT_EQ(text("titleLabel"), "System\\nOne") << "still the chosen one";
}

TEST_F(DiskPage, aVolumeIsRenamedInPlace) {
  addStick();
  openPage();
  select(row(1, 0));
  press("renameButton");
  auto* field = part<QLineEdit>("renameField");
  EXPECT_TRUE(field->isVisible());
  EXPECT_FALSE(part("titleLabel")->isVisible());
  workspace->mount(MountedVolume());
  ASSERT_TRUE(settled());
  EXPECT_TRUE(field->isVisible()) << "a mount somewhere does not take it away";
  field->setText(QString(150, QLatin1Char('x')));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_TRUE(part("renameErrorLabel")->isVisible());
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_TRUE(part("titleLabel")->isVisible());
  press("renameButton");
  field->setText("Other");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_FALSE(disk().isCanClick());
  click("cell0");
  EXPECT_EQ(shownPage(), 5);
  ASSERT_TRUE(settled());
  EXPECT_EQ(text("titleLabel"), "Other");
  EXPECT_EQ(row(1, 0).data().toString(), "Other");
  EXPECT_THAT(disks.calls(), Contains("<rename><1234-ABCD><Other>"));
}

TEST_F(DiskPage, theEjectButtonOfARowSelectsAndEjectsIt) {
  addStick();
  openPage();
  disks.setAction("eject", "echo 'it is in use' >&2; exit 1");
  QString told;
  onPanel([&](QWidget* panel) {
    told = panel->findChild<QLabel*>("messageText")->text();
    QTest::mouseClick(panel->findChild<QWidget*>("answer0"), Qt::LeftButton);
  });
  select(row(1, 0));
  QTest::keyClick(outline(), Qt::Key_Space);
  EXPECT_TRUE(disk().isCanClick()) << "only its button and its key eject";
  select(row(1, 0).siblingAtColumn(DiskTreeModel::Eject));
  ASSERT_TRUE(waitUntil([&] { return !told.isEmpty(); }));
  EXPECT_EQ(told, "it is in use");
  EXPECT_EQ(text("titleLabel"), "Stick");
  EXPECT_THAT(disks.calls(), Contains("<eject></dev/sdb1>"));
  ASSERT_TRUE(settled());
}

TEST_F(DiskPage, aFormatIsAskedForDoneAndReported) {
  addStick();
  openPage();
  select(row(0, 0));
  EXPECT_FALSE(part("formatButton")->isVisible()) << "the system's own volume";
  select(row(1, 0));
  onPanel([this](QWidget* panel) {
    EXPECT_EQ(panel->findChild<QLabel*>("nameLabel")->text(), "Format 'Stick'?");
    auto* name = panel->findChild<QLineEdit*>("nameTextFiled");
    ASSERT_TRUE(waitUntil([&] { return !name->isReadOnly(); }));
    auto* type = panel->findChild<QLabel*>("typeLabel");
    EXPECT_EQ(type->text(), "ExFAT");
    QTest::mouseClick(panel->findChild<QWidget*>("typeSelectBut"), Qt::LeftButton);
    auto* menu = panel->findChild<QWidget*>("formatTypeMenu");
    ASSERT_NE(menu, nullptr);
    QTest::mouseClick(menu->findChild<QWidget*>("formatType1"), Qt::LeftButton);
    EXPECT_EQ(type->text(), "MS-DOS FAT32");
    name->setText(QString());
    QTest::mouseClick(panel->findChild<QWidget*>("okButton"), Qt::LeftButton);
    EXPECT_TRUE(panel->findChild<QWidget*>("formatView")->isVisible());
    QTest::keyClick(panel, Qt::Key_Escape);
    EXPECT_TRUE(panel->isVisible()) << "it cannot be walked away from";
    EXPECT_FALSE(disk().isCanClick());
  });
  press("formatButton");
  EXPECT_THAT(disks.calls(), Contains("<eraseVolume><MS-DOS FAT32><NEW></dev/sdb1>"));
  EXPECT_TRUE(disk().isCanClick());
  QString title;
  onPanel([&](QWidget* panel) {
    title = panel->findChild<QLabel*>("titleLabel")->text();
    QTest::mouseClick(panel->findChild<QWidget*>("closeButton"), Qt::LeftButton);
  });
  ASSERT_TRUE(waitUntil([&] { return !title.isEmpty(); }));
  EXPECT_EQ(title, "Format completed");
  ASSERT_TRUE(settled());
}

TEST_F(DiskPage, withoutDisksThePageSaysSo) {
  std::filesystem::remove(disks.listingFile());
  openPage();
  EXPECT_TRUE(part("nothingView")->isVisible());
  EXPECT_FALSE(part("outline")->isVisible());
}

TEST(NoticeWindows, aQuitFadesTheProtectedFilesNoticeOutFirst) {
  APFSScanWindowController notice;
  notice.show();
  QEvent first(QEvent::Quit);
  QCoreApplication::sendEvent(qApp, &first);
  EXPECT_FALSE(first.isAccepted());
  EXPECT_TRUE(notice.isVisible());
  EXPECT_TRUE(notice.applicationShouldTerminate()) << "the second request is granted";
  ASSERT_TRUE(waitUntil([&] { return !notice.isVisible(); }));
  EXPECT_EQ(notice.alphaValue(), 0);
}

TEST(NoticeWindows, theLinkOpensAPageAndTheButtonCloses) {
  TestHost host;
  auto made = std::make_unique<FakeWorkspace>();
  FakeWorkspace* workspace = made.get();
  Host::current().workspace = std::move(made);
  NTFSWindowController notice;
  notice.show();
  QTest::mouseClick(notice.findChild<QWidget*>("linkButton"), Qt::LeftButton);
  EXPECT_EQ(workspace->opened.size(), 1U);
  EXPECT_TRUE(notice.isVisible());
  QTest::mouseClick(notice.yesButton, Qt::LeftButton);
  EXPECT_FALSE(notice.isVisible());
  APFSScanWindowController other;
  EXPECT_TRUE(other.openLink());
}

}  // namespace
