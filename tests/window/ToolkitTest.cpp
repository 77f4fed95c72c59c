#include "Dispatch.h"
#include "EntryTable.h"
#include "FastCleanTableModel.h"
#include "ImageCheckBox.h"
#include "MessagePanel.h"
#include "RingButton.h"
#include "UsageBar.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

using namespace brisko;

namespace {

TEST(MainQueue, LongQueueLeavesTurnsToTheEventLoop) {
  int blocks = 0;
  for (int i = 0; i < 100; ++i) {
    Dispatch::mainAsync([&blocks] {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      ++blocks;
    });
  }
  // How many blocks had run whenever the timer got its turn.
  std::vector<int> turns;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { turns.push_back(blocks); });
  timer.start(1);
  while (blocks < 100)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  ASSERT_GE(turns.size(), 5U);
  for (std::size_t i = 1; i < turns.size(); ++i)
    EXPECT_LE(turns[i] - turns[i - 1], 9);
}

TEST(MainQueue, GoesOnInsideAModalLoopThatABlockRuns) {
  bool behind = false;
  Dispatch::mainAsync([&behind] {
    QEventLoop modal;
    QTimer::singleShot(5000, &modal, &QEventLoop::quit);
    Dispatch::mainAsync([&] { modal.quit(); });
    modal.exec();
    EXPECT_TRUE(behind);
  });
  Dispatch::mainAsync([&behind] { behind = true; });
  QElapsedTimer timer;
  timer.start();
  while (!behind)
    QCoreApplication::processEvents();
  EXPECT_LT(timer.elapsed(), 4000);
}

TEST(RingButton, IsPressedByKeysAndInsideItsDiscOnly) {
  RingButton button;
  button.setText("Scan");
  button.resize(button.sizeHint());
  QSignalSpy clicks(&button, &QAbstractButton::clicked);
  QTest::mouseClick(&button, Qt::LeftButton, {}, button.rect().center());
  QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_EQ(clicks.count(), 1);
  for (Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
    QTest::keyClick(&button, key);
  EXPECT_EQ(clicks.count(), 4);
  button.setEnabled(false);
  QTest::keyClick(&button, Qt::Key_Return);
  EXPECT_EQ(clicks.count(), 4);
  button.setLook(RingButton::Look::working);
  button.setPercentage(0.501);
  EXPECT_EQ(button.accessibleDescription(), "50 %");
  button.setPercentage(1.002);
  EXPECT_EQ(button.percentage(), 1);
}

TEST(UsageBar, TakesNonsenseAsEmpty) {
  UsageBar bar;
  for (double value : {std::nan(""), -3.0}) {
    bar.setFraction(value);
    EXPECT_EQ(bar.fraction(), 0);
  }
  bar.setFraction(7);
  EXPECT_EQ(bar.fraction(), 1);
}

std::shared_ptr<TCTreeNode> category(std::initializer_list<std::pair<const char*, int>> entries) {
  auto made = std::make_shared<TCTreeNode>();
  for (const auto& [name, bytes] : entries) {
    auto entry = std::make_shared<TCTreeNode>();
    entry->title = name;
    entry->logicalBytes = static_cast<std::uint64_t>(bytes);
    entry->size = std::to_string(bytes);
    made->detailChildren.push_back(std::move(entry));
  }
  return made;
}

class Table : public testing::Test {
 protected:
  Table() : tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal) {
    proxy.setSourceModel(&model);
    proxy.setSortRole(SortRole);
    table.setEntries(&proxy, FastCleanTableModel::name);
    table.horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    table.setSortingEnabled(true);
    table.resize(600, 400);
    table.show();
    QObject::connect(&table, &EntryTable::toggleRequested, [this](const QModelIndex& index) {
      TCTreeNode& entry =
          *model.category()->detailChildren[std::size_t(proxy.mapToSource(index).row())];
      entry.selectState = entry.selectState == 1 ? 0 : 1;
      model.selectionChanged();
    });
  }
  std::string shownOrder() {
    std::string order;
    for (int row = 0; row < proxy.rowCount(); ++row) {
      order += proxy.index(row, 1).data().toString().toStdString();
    }
    return order;
  }
  QPoint cell(int row, int column) { return table.visualRect(proxy.index(row, column)).center(); }

  FastCleanTableModel model;
  QAbstractItemModelTester tester;
  QSortFilterProxyModel proxy;
  EntryTable table;
};

TEST_F(Table, HeaderSortsByNumberNotByText) {
  model.reloadData(category({{"c", 9}, {"a", 1000}, {"b", 20}}));
  EXPECT_EQ(shownOrder(), "cab") << "unsorted until asked";
  QHeaderView* header = table.horizontalHeader();
  const int x = header->sectionViewportPosition(FastCleanTableModel::size) + 30;
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, header->height() / 2));
  EXPECT_EQ(shownOrder(), "cba");
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, header->height() / 2));
  EXPECT_EQ(shownOrder(), "abc");
}

TEST_F(Table, KeysAndClicksToggleTheSelectedRow) {
  model.reloadData(category({{"a", 1}, {"b", 2}, {"c", 3}}));
  const auto states = [this] {
    std::string all;
    for (const auto& entry : model.category()->detailChildren) {
      all += std::to_string(entry->selectState);
    }
    return all;
  };
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, cell(1, 0));
  EXPECT_EQ(states(), "101");
  EXPECT_EQ(table.currentIndex().row(), 1);
  QTest::keyClick(&table, Qt::Key_Down);
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_EQ(states(), "100");
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, cell(0, 1));
  EXPECT_EQ(states(), "100") << "a click on the name only highlights";
  QTest::mousePress(table.viewport(), Qt::LeftButton, {}, cell(0, 0));
  QTest::mouseRelease(table.viewport(), Qt::LeftButton, {}, cell(2, 0));
  EXPECT_EQ(states(), "100") << "the press ended elsewhere";
  EXPECT_EQ(proxy.index(1, 0).data(ImageNameRole).toString(), "unsel");
}

TEST_F(Table, HostileNamesAreOneLineOfPlainText) {
  model.reloadData(category({{"<b>x</b>\n\x1b[31m\xff", 1}}));
  EXPECT_EQ(proxy.index(0, 1).data().toString(), "<b>x</b>\\n\\x1B[31m\\xFF");
  model.category()->detailChildren[0]->path = "/tmp/<img src=x>";
  EXPECT_FALSE(proxy.index(0, 1).data(Qt::ToolTipRole).toString().contains("<img"));
  model.reloadData(nullptr);
  EXPECT_EQ(proxy.rowCount(), 0);
}

TEST(MessagePanel, OnlyADeliberateAnswerDestroys) {
  constexpr int kRemove = 1;
  constexpr int kEscape = 7;
  MessagePanel::Content content;
  content.title = "<h1>Remove?</h1>";
  content.details = {"<b>a</b>"};
  content.answers = {{"Cancel", MessagePanel::Answer::Style::plain, 0},
                     {"Remove", MessagePanel::Answer::Style::danger, kRemove}};
  content.escapeValue = kEscape;
  const auto answer = [&content](const std::function<void(QWidget*)>& act) {
    QTimer::singleShot(0, [&act] { act(QApplication::activeModalWidget()); });
    return MessagePanel::run(content, nullptr);
  };
  EXPECT_EQ(answer([](QWidget* panel) { QTest::keyClick(panel, Qt::Key_Escape); }), kEscape);
  EXPECT_EQ(answer([](QWidget* panel) {
              QTest::mouseClick(panel->findChild<QWidget*>("closeButton"), Qt::LeftButton);
            }),
            kEscape);
  EXPECT_EQ(answer([](QWidget* panel) {
              EXPECT_EQ(panel->findChild<QLabel*>("messageTitle")->textFormat(), Qt::PlainText);
              EXPECT_EQ(panel->findChild<QPlainTextEdit*>()->toPlainText(), "<b>a</b>");
              QTest::keyClick(panel, Qt::Key_Return);
              QTest::mouseClick(panel->findChild<QWidget*>("answer0"), Qt::LeftButton);
            }),
            0);
  EXPECT_EQ(answer([](QWidget* panel) {
              QTest::mouseClick(panel->findChild<QWidget*>("answer1"), Qt::LeftButton);
            }),
            kRemove);
}

}  // namespace
