#include "ChartCard.h"
#include "CoreGrid.h"
#include "FactRow.h"
#include "NSNotificationCenter.h"
#include "PanelMeter.h"
#include "StatusBarView.h"
#include "StatusFeed.h"
#include "StatusPanel.h"
#include "SystemStartViewController.h"
#include "WindowFixture.h"

#include <QLabel>
#include <QWindow>

#include <cmath>

using namespace brisko;
using namespace brisko::test;

namespace {

class StatusPage : public WindowFixture {
 protected:
  StatusFeed& feed() {
    return static_cast<SystemStartViewController&>(*delegate->pages()[0]).feed();
  }
};

// What it costs while nobody looks is nothing: not even a timer runs.
TEST_F(StatusPage, LooksOnlyWhileItIsSeen) {
  launch();
  const auto becomes = [this](bool isRunning) {
    return waitUntil([&] { return feed().isRunning() == isRunning; });
  };
  EXPECT_TRUE(becomes(true));
  click("cell1");
  EXPECT_TRUE(becomes(false)) << "another page";
  click("cell0");
  EXPECT_TRUE(becomes(true));
  delegate->window()->hide();
  EXPECT_TRUE(becomes(false)) << "the window is closed";
  delegate->window()->show();
  EXPECT_TRUE(becomes(true));
  delegate->window()->showMinimized();
  EXPECT_TRUE(becomes(false)) << "minimised";
  delegate->window()->showNormal();
  EXPECT_TRUE(becomes(true));
}

TEST_F(StatusPage, ShowsThisMachineAndMakesNothingUp) {
  launch();
  ASSERT_TRUE(waitUntil([this] { return !feed().history().isEmpty(); }));
  const SystemSample& now = feed().history().latest();
  auto* memory = find<ChartCard>("memoryCard");
  EXPECT_EQ(memory->value().toStdString(),
            SSMemoryInfo::covertMemory(static_cast<std::int64_t>(now.memory.usedMomory)));
  EXPECT_EQ(memory->parts().size(), 4U);
  EXPECT_TRUE(memory->accessibleDescription().contains(memory->value()));
  EXPECT_EQ(find("coreCard")->isVisible(), now.cores.size() > 1);
  EXPECT_FALSE(find<QLabel>("greetingLabel")->text().isEmpty());
  EXPECT_GE(find<FactRow>("factRow")->facts().size(), 3U);
  feed().take(SystemSample());  // of a machine that tells nothing
  EXPECT_EQ(find<ChartCard>("processorCard")->value(), "No information");
  EXPECT_TRUE(find<ChartCard>("processorCard")->parts().empty());
  EXPECT_EQ(memory->value(), "No information");
  EXPECT_EQ(find<ChartCard>("diskCard")->value(), "No disk");
  EXPECT_FALSE(find("coreCard")->isVisible());
}

TEST_F(StatusPage, PanelIsLiveWhileItIsOpen) {
  StatusPanel panel;
  EXPECT_FALSE(panel.feed().isRunning());
  panel.popUp(QRect(100, 0, 20, 20));
  EXPECT_TRUE(waitUntil([&] { return !panel.feed().history().isEmpty(); }));
  EXPECT_FALSE(panel.findChild<PanelMeter*>("memoryMeter")->value().isEmpty());
  SystemSample sample;
  sample.temperatures = {{"a", Temperature::Kind::drive, 41.4}};
  panel.feed().take(sample);
  const auto* temperatures = panel.findChild<QLabel*>("temperatures");
  EXPECT_EQ(temperatures->text(), "Drive 41 °C");
  panel.feed().take(SystemSample());
  EXPECT_EQ(temperatures->text(), "");
  NSNotificationCenter::defaultCenter().postNotification({"updateTemperature", "38", nullptr, {}});
  EXPECT_EQ(temperatures->text(), "Drive 38 °C") << "from the drive itself, without a sensor";
  EXPECT_EQ(panel.findChild<PanelMeter*>("processorMeter")->value(), "No information");
  panel.hide();
  EXPECT_TRUE(waitUntil([&] { return !panel.feed().isRunning(); }));
}

TEST_F(StatusPage, PanelStaysOnTheScreenHoweverManyVolumesThereAre) {
  workspace->volumes.assign(6, MountedVolume());
  StatusPanel panel;
  const QRect screen = panel.screen()->availableGeometry();
  const QRect anchor(400, screen.bottom() - 20, 20, 20);
  panel.popUp(anchor);
  auto* more = panel.findChild<QLabel*>("moreVolumes");
  ASSERT_TRUE(waitUntil([&] { return more->isVisible(); }));
  EXPECT_EQ(more->text(), "4 more volumes");
  EXPECT_TRUE(waitUntil([&] { return panel.geometry().bottom() < anchor.top(); }));
  EXPECT_TRUE(screen.contains(panel.geometry()));
}

TEST_F(StatusPage, PanelOpensFromTheWindowWhereThereIsNoTray) {
  launch();
  delegate->addMenuBar();
  QWidget* button = find("panelButton");
  // As the mouse does it, which presses the button again when its press has closed the panel.
  const auto clickButton = [&] {
    QWindow* window = delegate->window()->windowHandle();
    const QPoint place = button->mapTo(delegate->window(), button->rect().center());
    QTest::mousePress(window, Qt::LeftButton, {}, place);
    QCoreApplication::processEvents();
    QTest::mouseRelease(window, Qt::LeftButton, {}, place);
    QCoreApplication::processEvents();
  };
  clickButton();
  StatusPanel* panel = delegate->statusBarView()->panel();
  ASSERT_NE(panel, nullptr);
  EXPECT_TRUE(panel->isVisible());
  clickButton();
  EXPECT_FALSE(panel->isVisible()) << "the second click only closes it";
  clickButton();
  EXPECT_TRUE(panel->isVisible());
  panel->findChild<QAbstractButton*>("openMainWindowButton")->click();
  EXPECT_FALSE(panel->isVisible());
  EXPECT_TRUE(delegate->isOpen());
}

TEST(HistoryChart, ScaleFollowsWhatIsShownAndThePointerTellsIt) {
  HistoryChart chart;
  chart.resize(240, 100);
  chart.setSeries(HistoryChart::Kind::stack,
                  {{"low", Theme::Token::accent}, {"high", Theme::Token::success}});
  chart.setFormatter([](double value) { return QString::number(value); });
  chart.setMaximum(0, 10);
  EXPECT_EQ(chart.top(), 10);
  EXPECT_TRUE(chart.toldAt(200).isEmpty());
  chart.setValues(0, {7, std::nanf(""), 30});
  chart.setValues(1, {8, std::nanf(""), 25});
  EXPECT_EQ(chart.top(), 100) << "55 together, rounded up";
  EXPECT_EQ(chart.toldAt(239), (QStringList{"Now", "low  30", "high  25"}));
  EXPECT_TRUE(chart.toldAt(238).isEmpty()) << "a gap";
  EXPECT_EQ(chart.toldAt(236).first(), "2 s ago");
  const std::pair<double, double> rounded[] = {{1, 1},    {1.01, 2}, {0.2, 0.2},
                                               {5.1, 10}, {-3, 1},   {2.1e6, 5e6}};
  for (const auto& [value, expected] : rounded)
    EXPECT_DOUBLE_EQ(HistoryChart::roundedUp(value), expected) << value;
  EXPECT_EQ(HistoryChart::roundedUp(std::nan("")), 1);
  EXPECT_FALSE(chart.grab().isNull()) << "draws with gaps";
}

TEST(CoreGrid, EveryNumberOfCoresHasItsPlace) {
  for (const int width : {560, 748, 1600}) {
    for (int count = 1; count <= 256; ++count) {
      const CoreLayout layout = CoreLayout::of(count, width);
      ASSERT_GE(layout.rows * layout.columns, count);
      ASSERT_LT((layout.rows - 1) * layout.columns, count) << "no empty row";
      ASSERT_LE(layout.height(), 288) << count << " in " << width;
    }
  }
  EXPECT_TRUE(CoreLayout::of(16, 748).hasCurves);
  EXPECT_EQ(CoreLayout::of(16, 748).columns, 8);
  EXPECT_FALSE(CoreLayout::of(256, 748).hasFigures);
  CoreGrid grid;
  SystemHistory history;
  SystemSample sample;
  sample.cores.assign(256, {0.6, 0.4});
  history.add(sample);
  grid.resize(748, 10);
  grid.show(history);
  EXPECT_FALSE(grid.cellRect(255).intersects(grid.cellRect(254)));
  EXPECT_TRUE(QRect(QPoint(), grid.size()).contains(grid.cellRect(255)));
}

TEST(FactRow, LongTextsGiveWayToShortOnes) {
  EXPECT_EQ(FactRow::fairWidths({100, 300, 50}, 1000), (std::vector<int>{100, 300, 50}));
  EXPECT_EQ(FactRow::fairWidths({100, 900, 700, 50}, 650), (std::vector<int>{100, 250, 250, 50}));
  EXPECT_EQ(FactRow::fairWidths({}, 100), std::vector<int>());
}

}  // namespace
