#include "ImageView.h"
#include "LeftCellView.h"
#include "LeftViewCtl.h"
#include "LogCapture.h"
#include "ModuleTable.h"
#include "StatusBarView.h"
#include "TitleBar.h"
#include "ViewMan.h"
#include "WindowFixture.h"

#include <QAction>
#include <QLabel>
#include <QTimer>

using namespace brisko;
using namespace brisko::test;

namespace {

class Shell : public WindowFixture {};

/// A page whose work must not be left.
struct BusyPage : PageController {
  BusyPage() : PageController(77) {}
  bool isCanClick() const override { return !busy; }
  bool busy = true;
};

TEST_F(Shell, OpensOnSystemStatusWithTenPagesInTableOrder) {
  launch();
  const auto& pages = ViewMan::returnViewMan().viewObjs();
  ASSERT_EQ(pages.size(), 10U);
  for (int index = 0; index < 10; ++index) {
    EXPECT_EQ(pages[static_cast<std::size_t>(index)]->getViewID(), index);
    EXPECT_EQ(page(index)->pos(), index == 0 ? QPoint(230, 0) : QPoint(1000, 1000)) << index;
    EXPECT_EQ(page(index)->size(), QSize(860, 678)) << index;
  }
  EXPECT_EQ(shownPage(), 0);
  EXPECT_EQ(delegate->createViewWith(10), nullptr);
  EXPECT_EQ(delegate->createViewWith(-1), nullptr);
  ViewMan::returnViewMan().addView(nullptr);
  EXPECT_EQ(pages.size(), 10U);
}

TEST_F(Shell, CellClickShowsItsPageAndMarksTheCell) {
  launch();
  for (int index : {1, 9, 9, 4, 0}) {
    const QByteArray cell = "cell" + QByteArray::number(index);
    click(cell.constData());
    EXPECT_EQ(shownPage(), index);
    for (const Module& module : moduleTable()) {
      const QByteArray name = "cell" + QByteArray::number(module.index);
      auto* view = find<LeftCellView>(name.constData());
      const bool isSelected = module.index == index;
      EXPECT_EQ(view->isChecked(), isSelected);
      EXPECT_EQ(view->findChild<QWidget*>("selectBgImageView")->isHidden(), !isSelected);
      EXPECT_EQ(view->findChild<ImageView*>("iconImageView")->imageName(),
                isSelected ? module.selectedIcon : module.icon);
    }
  }
}

TEST_F(Shell, CellsFollowEachOtherAndTheirHeadings) {
  launch();
  const auto top = [this](const char* name) { return find(name)->y(); };
  for (int index = 1; index < 10; ++index) {
    const QByteArray name = "cell" + QByteArray::number(index);
    const QByteArray before = "cell" + QByteArray::number(index - 1);
    EXPECT_EQ(find(name.constData())->size(), QSize(230, 42));
    const char* heading = index == 1   ? "cleanupView"
                          : index == 5 ? "viewTools"
                          : index == 8 ? "privacyView"
                                       : nullptr;
    const int expected =
        heading != nullptr ? top(heading) + 42 + 7 : top(before.constData()) + 42 + 1;
    EXPECT_EQ(top(name.constData()), expected) << index;
    EXPECT_LT(top(before.constData()) + 42, top(name.constData())) << index;
  }
}

TEST_F(Shell, SidebarAndPagesAreReachedByKeyboard) {
  launch();
  find("cell0")->setFocus();
  QTest::keyClick(find("cell0"), Qt::Key_Down);
  QTest::keyClick(find("cell1"), Qt::Key_Down);
  EXPECT_TRUE(find("cell2")->hasFocus());
  EXPECT_EQ(shownPage(), 0);
  QTest::keyClick(find("cell2"), Qt::Key_Space);
  EXPECT_EQ(shownPage(), 2);
  find("cell0")->setFocus();
  QTest::keyClick(find("cell0"), Qt::Key_Up);
  EXPECT_TRUE(find("cell0")->hasFocus());
  QTest::keyClick(delegate->window(), Qt::Key_7, Qt::ControlModifier);
  EXPECT_EQ(shownPage(), 7);
}

TEST_F(Shell, StatusCardLeadsToItsPageAndSelectsTheCell) {
  launch();
  click("moduleCard6");
  EXPECT_EQ(shownPage(), 6);
  EXPECT_TRUE(find<LeftCellView>("cell6")->isChecked());
}

TEST_F(Shell, BusyPageLocksEveryWayToAnotherPage) {
  launch();
  click("cell1");
  BusyPage busy;
  ViewMan::returnViewMan().addView(&busy);
  click("cell3");
  click("cell1");
  QTest::keyClick(find("cell4"), Qt::Key_Return);
  QTest::keyClick(delegate->window(), Qt::Key_5, Qt::ControlModifier);
  find<LeftCellView>("cell6")->click();  // as an assistive tool presses it
  EXPECT_EQ(shownPage(), 1);
  EXPECT_TRUE(find<LeftCellView>("cell1")->isChecked());
  EXPECT_FALSE(find<LeftCellView>("cell6")->isChecked());
  busy.busy = false;
  click("cell3");
  EXPECT_EQ(shownPage(), 3);
}

TEST_F(Shell, CloseHidesTheWindowAndReopenTogglesIt) {
  launch();
  EXPECT_FALSE(delegate->isOpen());
  EXPECT_TRUE(delegate->applicationShouldHandleReopen(true));
  EXPECT_TRUE(delegate->window()->isVisible()) << "the first reopen brings it to the front";
  click("closeButton");
  EXPECT_FALSE(delegate->window()->isVisible());
  EXPECT_FALSE(delegate->isOpen());
  EXPECT_TRUE(delegate->applicationShouldHandleReopen(false));
  EXPECT_TRUE(delegate->window()->isVisible());
  EXPECT_TRUE(delegate->applicationShouldHandleReopen(true));
  EXPECT_FALSE(delegate->window()->isVisible());
  delegate->showMainWindow();
  EXPECT_TRUE(delegate->isOpen());
  delegate->window()->close();  // the desktop's own way
  EXPECT_FALSE(delegate->window()->isVisible());
  EXPECT_FALSE(delegate->isOpen());
}

TEST_F(Shell, QuittingWaitsForTheWorkOfABusyPage) {
  launch();
  BusyPage page;
  ViewMan::returnViewMan().addView(&page);
  QTimer::singleShot(0, delegate.get(), &AppDelegate::terminate);
  bool wasHiddenMeanwhile = false;
  QTimer::singleShot(250, [&] {
    wasHiddenMeanwhile = !delegate->window()->isVisible();
    page.busy = false;
  });
  QApplication::exec();
  EXPECT_FALSE(page.busy);
  EXPECT_TRUE(wasHiddenMeanwhile);
}

TEST_F(Shell, PageKeepsItsStateWhileTheWindowIsResizedAndHidden) {
  launch();
  delegate->window()->resize(1300, 800);
  QCoreApplication::processEvents();
  click("cell5");
  EXPECT_EQ(page(5)->geometry(), QRect(230, 0, 1300 - 230, 800 - 22));
  EXPECT_EQ(find("titleLabel")->width(), 1300);
}

TEST_F(Shell, TitleBarIsLowBeforeSystemVersion1016) {
  host.version().selectors = {0x10f0, 10, 15, 0};
  launch();
  EXPECT_EQ(find("titleBarView")->height(), 22);
  EXPECT_EQ(find("closeButton")->y(), 4);
  EXPECT_EQ(find<QLabel>("titleLabel")->text(), "Brisko ");
  delegate.reset();
  host.version().selectors = {0x1100, 11, 0, 0};
  launch();
  EXPECT_EQ(find("titleBarView")->height(), TitleBar::kDefaultHeight);
}

TEST_F(Shell, MenuBarIconFollowsTheAppearanceName) {
  launch();
  const auto icon = [this] { return delegate->statusBarView()->tabBarIconImage(); };
  for (const auto& [name, expected] :
       {std::pair{"NSAppearanceNameVibrantDARK", "logo_dark"}, std::pair{"Aqua", "logo_light"},
        std::pair{"dark", "logo_dark"}, std::pair{"", "logo_light"}}) {
    delegate->observeValueForKeyPath("button.effectiveAppearance", name);
    EXPECT_EQ(icon(), expected) << name;
  }
  delegate->observeValueForKeyPath("button.title", "dark");
  EXPECT_EQ(icon(), "logo_light");
}

TEST_F(Shell, DarkModeNoticeReadsTheGlobalPreference) {
  launch();
  const LogCapture log;
  const auto iconFor = [this](PropertyList style) {
    PropertyList domain;
    domain.set("AppleInterfaceStyle", std::move(style));
    Host::current().preferences->setPersistentDomain(Preferences::kGlobalDomain, domain);
    delegate->darkModeChanged();
    return delegate->statusBarView()->tabBarIconImage();
  };
  EXPECT_EQ(iconFor("DaRK"), "logo_dark");
  EXPECT_EQ(iconFor("darker"), "logo_light");
  EXPECT_EQ(iconFor(true), "logo_light");
  EXPECT_EQ(iconFor({}), "logo_light");
  EXPECT_EQ(log.count("Dark mode changed"), 4);
  EXPECT_EQ(log.count("--"), 4);
}

TEST_F(Shell, MenuOpensTheAddressesOfTheLinkTable) {
  launch();
  for (const char* action : {"onlineHelp", "supportCenterAction", "recoveryMenuItmeAction",
                             "eraserMenuItemAction", "startMenuDriveMenuItemAction"}) {
    const auto before = workspace->opened.size();
    find<QAction>(action)->trigger();
    ASSERT_EQ(workspace->opened.size(), before + 1) << action;
    EXPECT_TRUE(workspace->opened.back().starts_with("https://")) << action;
  }
}

TEST_F(Shell, VolumesFollowMountAndUnmount) {
  MountedVolume volume;
  volume.name = "<b>Trip\n1</b>";
  volume.root = "/media/anna/trip";
  volume.totalBytes = 1000;
  volume.freeBytes = 250;
  launch();
  EXPECT_EQ(delegate->window()->findChild<QWidget*>("volume0"), nullptr);
  workspace->mount(volume);
  ASSERT_TRUE(waitUntil([&] { return delegate->window()->findChild<QWidget*>("volume0"); }));
  auto* row = find("volume0");
  auto* name = row->findChild<QLabel*>("volumeName");
  EXPECT_EQ(name->text(), "<b>Trip\\n1</b>");
  EXPECT_EQ(name->textFormat(), Qt::PlainText);
  EXPECT_EQ(row->findChild<QLabel*>("volumeFigures")->text(), "0.25 KB free of 1.00 KB");
  workspace->volumes.clear();
  for (const auto& [token, observer] : workspace->observers)
    observer(volume, false);
  EXPECT_TRUE(waitUntil([&] { return !delegate->window()->findChild<QWidget*>("volume0"); }));
}

}  // namespace
