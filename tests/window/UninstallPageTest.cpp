#include "AMRelatedFilesWindowController.h"
#include "EntryTable.h"
#include "FakeInstalledApplications.h"
#include "ImageCheckBox.h"
#include "MadeApplications.h"
#include "RelatedFilesTree.h"
#include "SegmentBar.h"
#include "UnInstallProgressView.h"
#include "UninstallProgressWindowController.h"
#include "UninstallTable.h"
#include "UninstallTableModel.h"
#include "UninstallViewController.h"
#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using namespace brisko;
using namespace brisko::test;

namespace {

class UninstallPage : public WindowFixture {
 protected:
  UninstallPage() {
    Host::current().installedApplications = std::make_unique<FakeInstalledApplications>();
  }
  void openPage() {
    launch();
    click("cell2");
    ASSERT_TRUE(waitUntil([this] { return !model().isBusy(); }));
  }
  UninstallViewController& uninstaller() {
    return static_cast<UninstallViewController&>(*delegate->pages()[2]);
  }
  UninstallModel& model() { return uninstaller().model(); }
  template <typename Widget = QWidget>
  Widget* part(const char* name) {
    auto* found = page(2)->findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void press(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  UninstallTable* table() { return part<UninstallTable>("listViewTabel"); }
  QModelIndex cell(const QString& name, UninstallColumn column) {
    for (int row = 0; row < table()->model()->rowCount(); ++row) {
      const QModelIndex at = table()->model()->index(row, static_cast<int>(column));
      if (at.siblingAtColumn(1).data().toString() == name) return at;
    }
    ADD_FAILURE() << qPrintable(name);
    return {};
  }
  void clickCell(const QModelIndex& index) {
    table()->scrollTo(index);
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, table()->visualRect(index).center());
  }
  /// Once a modal window of this name is up, and its part of the work done, acts on it.
  void onWindow(const char* name, std::function<void(QWidget*)> act) {
    auto* poll = new QTimer(page(2));
    QObject::connect(poll, &QTimer::timeout, [=, this] {
      QWidget* panel = QApplication::activeModalWidget();
      if (panel == nullptr || panel->objectName() != QLatin1String(name)) return;
      const RelatedFilesModel& review = uninstaller().relatedFilesWinController()->model();
      if (!review.isComplete() || (review.isRemoving() && !review.isEnded())) return;
      poll->deleteLater();
      poll->stop();
      act(panel);
    });
    poll->start(2);
  }
};

TEST_F(UninstallPage, ListIsTickedByMouseAndKeysAndSearched) {
  makeFortyBundles(root.path());
  openPage();
  QAbstractItemModelTester tester(table()->model());
  auto* types = part<SegmentBar>("typeSegment");
  EXPECT_EQ(types->segments()[0].detail, "30 applications");
  EXPECT_EQ(types->segments()[2].detail, "6 plug-ins");
  EXPECT_EQ(table()->model()->headerData(1, Qt::Horizontal).toString(), "   Applications(30)");
  EXPECT_EQ(part<QLabel>("selectCountLabel")->text(), "Total: 30 Items");
  EXPECT_FALSE(part("uninstallButton")->isEnabled());
  clickCell(cell("Notes", UninstallColumn::CheckBox));
  EXPECT_EQ(cell("Notes", UninstallColumn::CheckBox).data(ImageNameRole).toString(), "sel");
  QTest::keyClick(table(), Qt::Key_Down);
  QTest::keyClick(table(), Qt::Key_Space);
  EXPECT_EQ(part<QLabel>("selectCountLabel")->text(), "Selected: 2 Items");
  EXPECT_EQ(part<ImageCheckBox>("selectAllBut")->imageName(), "halfsel");
  EXPECT_TRUE(part("uninstallButton")->isEnabled());
  auto* field = part<QLineEdit>("searchTextFiled");
  EXPECT_FALSE(part("closeSearchButton")->isVisible());
  QTest::keyClicks(field, "notes");
  EXPECT_EQ(table()->model()->rowCount(), 2);
  EXPECT_TRUE(part("closeSearchButton")->isVisible());
  QTest::keyClicks(field, "xyz");
  EXPECT_TRUE(part("emptyView")->isVisible());
  EXPECT_EQ(table()->model()->headerData(1, Qt::Horizontal).toString(), "   Applications(0)");
  EXPECT_TRUE(table()->horizontalHeader()->isVisible());
  press(part("closeSearchButton"));
  EXPECT_EQ(field->text(), "");
  EXPECT_FALSE(part("closeSearchButton")->isVisible());
  EXPECT_EQ(table()->model()->rowCount(), 30);
  press(part("selectAllBut"));
  EXPECT_EQ(part<QLabel>("selectCountLabel")->text(), "Selected: 30 Items");
  EXPECT_TRUE(waitUntil([this] {
    return cell("Test App", UninstallColumn::Size).data().toString() == "2.00 MB";
  })) << "also when the row was never in sight";
  QTest::keyClick(types, Qt::Key_Right);
  EXPECT_EQ(table()->model()->headerData(1, Qt::Horizontal).toString(), "   Items(4)");
  EXPECT_FALSE(part("uninstallButton")->isEnabled());
}

TEST_F(UninstallPage, CancelledReviewChangesNothing) {
  makeFortyBundles(root.path());
  openPage();
  onWindow("AMRelatedFilesWindowController",
           [](QWidget* panel) { QTest::keyClick(panel, Qt::Key_Escape); });
  clickCell(cell("Test App", UninstallColumn::uninstall));
  EXPECT_TRUE(uninstaller().isCanClick());
  QTest::qWait(550);
  EXPECT_TRUE(exists(root / "Applications/Test App.app"));
  EXPECT_EQ(table()->model()->rowCount(), 30);
}

TEST_F(UninstallPage, TrashButtonReviewsRemovesAndTellsTheEnd) {
  makeFortyBundles(root.path());
  openPage();
  clickCell(cell("Notes", UninstallColumn::CheckBox));
  onWindow("AMRelatedFilesWindowController", [](QWidget* panel) {
    auto* outline = panel->findChild<RelatedFilesOutline*>("outlineView");
    QAbstractItemModel* tree = outline->model();
    QAbstractItemModelTester tester(tree);
    const QModelIndex group = tree->index(0, 0);
    EXPECT_TRUE(outline->isExpanded(group));
    EXPECT_EQ(tree->rowCount(group), 7);
    // The installer that was downloaded stays.
    QModelIndex kept;
    for (int row = 0; row < 7; ++row) {
      const QModelIndex entry = tree->index(row, 1, group);
      if (entry.data().toString() == "Test App Installer.dmg") kept = entry.siblingAtColumn(0);
    }
    outline->setCurrentIndex(kept);
    QTest::keyClick(outline, Qt::Key_Space);
    EXPECT_EQ(group.data(ImageNameRole).toString(), "halfsel");
    auto* remove = panel->findChild<QPushButton*>("uninstallButton");
    EXPECT_TRUE(remove->text().startsWith("Remove 6 Items ("));
    QTest::mouseClick(remove, Qt::LeftButton);
  });
  bool wasBusy = false;
  onWindow("UninstallProgressWindowController", [&](QWidget* panel) {
    wasBusy = true;
    EXPECT_TRUE(panel->findChild<QLabel*>("messageLabel")->text().endsWith("MB MB disk space."));
    EXPECT_FALSE(panel->findChild<QWidget*>("failuresButton")->isVisible());
    EXPECT_EQ(panel->findChild<UnInstallProgressView*>()->value(), 100);
    QTest::mouseClick(panel->findChild<QWidget*>("okButton"), Qt::LeftButton);
  });
  clickCell(cell("Test App", UninstallColumn::uninstall));
  EXPECT_FALSE(uninstaller().isCanClick()) << "from the confirmation on";
  ASSERT_TRUE(waitUntil([&] { return wasBusy && uninstaller().isCanClick(); }));
  EXPECT_EQ(table()->model()->rowCount(), 29);
  EXPECT_EQ(part<QLabel>("selectCountLabel")->text(), "Selected: 1 Items");
  EXPECT_TRUE(table()->currentIndex().isValid()) << "keys go on from where they were";
  const auto* outline =
      uninstaller().relatedFilesWinController()->findChild<RelatedFilesOutline*>("outlineView");
  EXPECT_EQ(outline->model()->rowCount(), 0) << "a hidden view asks for its rows, too";
  EXPECT_FALSE(exists(root / "Applications/Test App.app"));
  EXPECT_TRUE(exists(root / "Users/anna/Downloads/Test App Installer.dmg"));
}

TEST_F(UninstallPage, NothingInstalledSaysSoAndProgressClosesOnlyAtItsEnd) {
  openPage();
  EXPECT_TRUE(part("emptyView")->isVisible());
  EXPECT_FALSE(part("loadingView")->isVisible());
  EXPECT_EQ(part<QLabel>("selectCountLabel")->text(), "Total: 0 Item");
  UninstallProgressWindowController window(page(2));
  window.show();
  auto* bar = window.findChild<UnInstallProgressView*>();
  EXPECT_EQ(bar->value(), 10);
  window.changeProgressValue(0, "/a/b");
  EXPECT_EQ(bar->filledWidth(), 0);
  window.reject();
  EXPECT_TRUE(window.isVisible());
  window.changeLabel("Done");
  window.showFailures({{"/a/b", "No."}, {"/a/c", "No."}});
  window.changeProgressValue(100, "/a/c");
  EXPECT_TRUE(window.findChild<QWidget*>("endView")->isVisible());
  EXPECT_FALSE(window.findChild<QWidget*>("progressView")->isVisible());
  EXPECT_EQ(window.findChild<QPushButton*>("failuresButton")->text(),
            "2 items could not be removed");
  window.okButtonAction();
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
