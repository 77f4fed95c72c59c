#include "EntryTable.h"
#include "ImageCheckBox.h"
#include "TaskManagerViewController.h"
#include "WindowFixture.h"

#include <QLabel>
#include <QStackedWidget>

namespace brisko::test {
namespace {

class TaskManagerPage : public WindowFixture {
 protected:
  TaskManagerModel& model() {
    return static_cast<TaskManagerViewController&>(*delegate->pages()[6]).model();
  }
  void run(int applications) {
    std::vector<LaunchedApplication> all;
    for (int number = 1; number <= applications; ++number) {
      LaunchedApplication made;
      made.name = "App " + std::to_string(number);
      made.processIdentifier = 4'000'000 + number;  // above what the kernel gives
      all.push_back(made);
    }
    workspace->setApplications(std::move(all));
  }
  void waitFor(std::size_t rows) {
    ASSERT_TRUE(waitUntil(
        [&] { return !model().isReading() && model().allApplications().size() == rows; }));
  }
  void open(int applications) {
    run(applications);
    launch();
    delegate->goToPage(6);
    waitFor(static_cast<std::size_t>(applications));
  }
  EntryTable* table() { return page(6)->findChild<EntryTable*>("listTableView"); }
  QWidget* part(const char* name) { return page(6)->findChild<QWidget*>(QLatin1String(name)); }
};

TEST_F(TaskManagerPage, TicksBySpaceAndHeaderAndDropsWhatIsClosed) {
  open(3);
  EXPECT_FALSE(part("mainButton")->isEnabled());
  table()->sortByColumn(1, Qt::DescendingOrder);
  table()->selectRow(0);
  table()->setFocus();
  QTest::keyClick(table(), Qt::Key_Space);
  EXPECT_TRUE(model().allApplications()[2].bIsSelected) << "the row in sight, not the one in store";
  EXPECT_EQ(table()->selectAllBox()->imageName(), "halfsel");
  EXPECT_TRUE(part("mainButton")->isEnabled());
  run(4);
  QTest::mouseClick(part("refButton"), Qt::LeftButton);
  waitFor(4);
  EXPECT_EQ(table()->currentIndex().siblingAtColumn(1).data(), "App 3") << "it keeps its place";
  QTest::mouseClick(part("mainButton"), Qt::LeftButton);
  EXPECT_EQ(table()->model()->rowCount(), 3);
  QTest::mouseClick(table()->selectAllBox(), Qt::LeftButton);
  EXPECT_EQ(model().selectedCount(), 3U);
  QTest::mouseClick(table()->selectAllBox(), Qt::LeftButton);
  EXPECT_EQ(model().selectedCount(), 0U);
}

TEST_F(TaskManagerPage, SaysWhenNothingRunsAndShowsTheUsage) {
  open(0);
  EXPECT_TRUE(waitUntil([&] { return !model().memoryUsage().text.empty(); }));
  auto* views = static_cast<QStackedWidget*>(part("listViews"));
  EXPECT_EQ(views->currentWidget()->objectName(), "emptyPage");
  EXPECT_TRUE(static_cast<QLabel*>(part("memoryLabel"))->text().endsWith(u'%'));
}

}  // namespace
}  // namespace brisko::test
