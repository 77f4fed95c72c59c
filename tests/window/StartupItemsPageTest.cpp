#include "FakeLoginItems.h"
#include "ItemChooser.h"
#include "LoginItemsTable.h"
#include "MessagePanel.h"
#include "StartupItemsViewController.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QStackedWidget>
#include <QTimer>

namespace brisko::test {
namespace {

class StartupItemsPage : public WindowFixture {
 protected:
  StartupItemsPage() {
    auto made = std::make_unique<FakeLoginItems>();
    store = made.get();
    Host::current().loginItems = std::move(made);
  }

  void showPage() {
    delegate->goToPage(7);
    EXPECT_TRUE(waitUntil([&] { return model().isRead() && !model().isScan(); }));
  }
  StartupItemsModel& model() {
    return static_cast<StartupItemsViewController&>(*delegate->pages()[7]).model();
  }
  QStackedWidget* views() { return page(7)->findChild<QStackedWidget*>("listViews"); }
  LoginItemsTable* table() { return find<LoginItemsTable>("listTableView"); }
  void clickCell(int row, int column) {
    const QRect cell = table()->visualRect(table()->model()->index(row, column));
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
  }
  bool settle() {
    return waitUntil([&] { return !model().isScan(); });
  }

  FakeLoginItems* store = nullptr;
};

TEST_F(StartupItemsPage, HidesAndRemovesByClickAndKey) {
  launch();
  for (const char* name : {"/a", "/b", "/c"})
    store->add(name, name);
  showPage();
  ASSERT_EQ(table()->model()->rowCount(), 3);
  clickCell(1, LoginItemsTableModel::hide);
  ASSERT_TRUE(settle());
  EXPECT_TRUE(store->entries[1].isHidden);
  EXPECT_EQ(table()->currentIndex().row(), 1) << "the row stays highlighted while it is read anew";
  QTest::keyClick(table(), Qt::Key_Space);
  ASSERT_TRUE(settle());
  EXPECT_FALSE(store->entries[1].isHidden);
  clickCell(2, LoginItemsTableModel::remove);
  ASSERT_TRUE(settle());
  EXPECT_EQ(table()->currentIndex().row(), 1) << "the row that is left in its place";
  table()->selectRow(0);
  QTest::keyClick(table(), Qt::Key_Delete);
  QTest::keyClick(table(), Qt::Key_Delete);  // on a row that is being read anew
  ASSERT_TRUE(settle());
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), true);
  QCoreApplication::sendEvent(table(), &held);
  ASSERT_TRUE(settle());
  EXPECT_EQ(store->identifiers(), std::vector<std::string>{"/b"});
}

TEST_F(StartupItemsPage, AFolderCanBeAdded) {
  launch();
  showPage();
  const std::string folder = root.folder("pick/folder");
  QTimer::singleShot(0, [&] {
    auto* panel = delegate->window()->findChild<ItemChooser*>("addPanel");
    ASSERT_NE(panel, nullptr);
    panel->setViewMode(QFileDialog::List);
    panel->setDirectory(QString::fromStdString(root / "pick"));
    auto* view = panel->findChild<QAbstractItemView*>("listView");
    ASSERT_TRUE(waitUntil([&] { return view->model()->rowCount(view->rootIndex()) == 1; }));
    view->setCurrentIndex(view->model()->index(0, 0, view->rootIndex()));
    QTest::mouseClick(panel->findChild<QWidget*>("addButton"), Qt::LeftButton);
  });
  click("addBut");
  EXPECT_EQ(store->identifiers(), std::vector<std::string>{"added:" + folder});
}

TEST_F(StartupItemsPage, AsksBeforeAnotherEntryThanTheShownOneIsChanged) {
  launch();
  store->add("gone", "");
  store->add("/a", "/a");
  showPage();
  const auto answer = [](const char* button) {
    QTimer::singleShot(50, [button] {
      QWidget* panel = QApplication::activeModalWidget();
      ASSERT_NE(panel, nullptr);
      QTest::mouseClick(panel->findChild<QWidget*>(QLatin1String(button)), Qt::LeftButton);
    });
  };
  answer("answer0");
  clickCell(0, LoginItemsTableModel::remove);
  EXPECT_EQ(store->entries.size(), 2U);
  answer("answer1");
  clickCell(0, LoginItemsTableModel::remove);
  ASSERT_TRUE(settle());
  EXPECT_EQ(store->identifiers(), std::vector<std::string>{"/a"});
}

TEST_F(StartupItemsPage, SaysThatNothingOpensAndFollowsChangesByOthers) {
  launch();
  showPage();
  EXPECT_EQ(views()->currentWidget()->objectName(), "emptyPage");
  store->add("/late", "/late");
  store->observer();
  EXPECT_TRUE(waitUntil([&] { return table()->model()->rowCount() == 1; }));
  EXPECT_EQ(views()->currentWidget()->objectName(), "tablePage");
}

TEST_F(StartupItemsPage, TheProgramIntroducesItselfOncePerUser) {
  setIntroduced({});
  launch();
  EXPECT_EQ(workspace->opened, std::vector<std::string>{"https://brisko.example/welcome"});
  ASSERT_EQ(store->entries.size(), 1U);
  EXPECT_FALSE(store->entries[0].isHidden);
  delegate.reset();
  store->entries.clear();
  launch();
  EXPECT_EQ(workspace->opened.size(), 1U);
  EXPECT_TRUE(store->entries.empty());
}

}  // namespace
}  // namespace brisko::test
