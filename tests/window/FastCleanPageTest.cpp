#include "EntryTable.h"
#include "FastCleanViewController.h"
#include "ImageCheckBox.h"
#include "RingButton.h"
#include "WindowFixture.h"

#include <QLabel>
#include <QTimer>

#include <filesystem>

using namespace brisko;
using namespace brisko::test;

namespace {

class JunkPage : public WindowFixture {
 protected:
  void openPage() {
    launch();
    click("cell1");
  }
  FastCleanViewController& junk() {
    return static_cast<FastCleanViewController&>(*delegate->pages()[1]);
  }
  QWidget* part(const char* name) { return page(1)->findChild<QWidget*>(QLatin1String(name)); }
  QWidget* row(int category, const char* name) {
    const QByteArray view = "fastTypeView" + QByteArray::number(category);
    return part(view.constData())->findChild<QWidget*>(QLatin1String(name));
  }
  QString text(const char* name) {
    return page(1)->findChild<QLabel*>(QLatin1String(name))->text();
  }
  std::string box(int category) {
    return static_cast<ImageCheckBox*>(row(category, "checkBox"))->imageName();
  }
  void press(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  void scan() {
    press(part("mainButton"));
    ASSERT_TRUE(waitUntil([this] { return junk().model().indexPage() == 2; }));
  }
  /// Presses Clean and answers the question; gives back its title.
  QString clean(const char* answer) {
    QString title;
    QTimer::singleShot(0, [&title, answer] {
      QWidget* panel = QApplication::activeModalWidget();
      title = panel->findChild<QLabel*>("messageTitle")->text();
      QTest::mouseClick(panel->findChild<QWidget*>(QLatin1String(answer)), Qt::LeftButton);
    });
    press(part("mainButton"));
    return title;
  }
  std::string cache(const char* name) { return root / "Users/anna/Library/Caches/" + name; }

  void fill() {
    root.sizedFile("Users/anna/Library/Caches/big/data", 5'000'000);
    root.sizedFile("Users/anna/Library/Caches/a\nb", 1'000'000);
    root.sizedFile("Users/anna/.Trash/old", 2'000'000);
    root.folder("Users/anna/Library/Safari");
  }
};

TEST_F(JunkPage, ScanShowsWhatWasFound) {
  fill();
  openPage();
  EXPECT_TRUE(part("mainView")->isVisible());
  scan();
  EXPECT_TRUE(part("detailView")->isVisible());
  EXPECT_EQ(text("totalSizeLabel"), "8.00 MB Junk files found.");
  EXPECT_EQ(box(0), "sel");
  EXPECT_EQ(box(1), "disable");
  EXPECT_EQ(box(4), "unsel");
  EXPECT_TRUE(row(4, "detailButton")->isVisible());
  EXPECT_FALSE(row(1, "detailButton")->isVisible());
  EXPECT_FALSE(row(0, "loadingView")->isVisible());
  auto* button = static_cast<RingButton*>(part("mainButton"));
  EXPECT_EQ(button->text(), "Clean");
  EXPECT_EQ(button->detail(), "2 items\n6.00 MB") << "what it is about to remove";
  press(row(4, "checkBox"));
  EXPECT_EQ(box(4), "sel");
  EXPECT_EQ(button->detail(), "3 items\n8.00 MB");
  press(row(4, "checkBox"));
  press(row(0, "checkBox"));
  EXPECT_FALSE(button->isEnabled());
  EXPECT_EQ(button->detail(), "");
}

TEST_F(JunkPage, DetailListIsDrivenByKeys) {
  fill();
  openPage();
  scan();
  press(row(0, "detailButton"));
  EXPECT_TRUE(part("subDetailView")->isVisible());
  EXPECT_FALSE(part("mainButton")->isVisible());
  auto* table = page(1)->findChild<EntryTable*>();
  EXPECT_EQ(table->model()->rowCount(), 2);
  EXPECT_EQ(table->model()->index(0, 1).data().toString(), "a\\nb");
  EXPECT_EQ(text("selectFileLabel"), "Selected 2 item(s), size: 6.00 MB");
  QTest::keyClick(table, Qt::Key_Space);
  EXPECT_EQ(table->selectAllBox()->imageName(), "halfsel");
  EXPECT_EQ(text("selectFileLabel"), "Selected 1 item(s), size: 5.00 MB");
  press(table->selectAllBox());
  EXPECT_EQ(table->selectAllBox()->imageName(), "sel");
  press(table->selectAllBox());
  EXPECT_EQ(text("selectFileLabel"), "Selected 0 item(s), size: 0 byte");
  QTest::keyClick(table, Qt::Key_Down);
  QTest::keyClick(table, Qt::Key_Space);
  press(part("backToDetailButton"));
  EXPECT_EQ(box(0), "halfsel");
  EXPECT_TRUE(part("mainButton")->isVisible());
}

TEST_F(JunkPage, NothingGoesWithoutTheConfirmation) {
  fill();
  openPage();
  scan();
  EXPECT_EQ(clean("answer0"), "Remove 2 items (6.00 MB)?");
  EXPECT_EQ(junk().model().indexPage(), 2);
  EXPECT_TRUE(exists(cache("big/data")));
}

TEST_F(JunkPage, CleaningLocksThePagesAndEndsWithWhatWasFreed) {
  fill();
  openPage();
  scan();
  root.sizedFile("Users/anna/Library/Caches/a\nb", 1'000'001);  // not what was shown any more
  clean("answer1");
  EXPECT_FALSE(junk().isCanClick());
  EXPECT_EQ(delegate->window()->focusWidget()->objectName(), page(1)->objectName())
      << "not on to the next control";
  click("cell0");
  EXPECT_EQ(shownPage(), 1);
  EXPECT_FALSE(part("backHomeButton")->isEnabled());
  ASSERT_TRUE(waitUntil([this] { return junk().isCanClick(); }));
  EXPECT_TRUE(part("cleanEndView")->isVisible());
  EXPECT_EQ(text("cleanValueLabel"), "5.00 MB");
  EXPECT_FALSE(exists(cache("big")));
  EXPECT_TRUE(exists(cache("a\nb")));
  EXPECT_TRUE(exists(root / "Users/anna/.Trash/old"));
  EXPECT_EQ(static_cast<QAbstractButton*>(part("failuresButton"))->text(),
            "1 item could not be removed");
  click("cell0");
  EXPECT_EQ(shownPage(), 0);
}

TEST_F(JunkPage, EmptySystemHasNothingToClean) {
  root.folder("Users/anna/Library/Safari");
  openPage();
  scan();
  EXPECT_TRUE(part("nothingView")->isVisible());
  EXPECT_FALSE(part("mainButton")->isEnabled());
  press(part("backHomeButton"));
  EXPECT_TRUE(part("mainView")->isVisible());
  EXPECT_TRUE(part("mainButton")->isEnabled());
}

TEST_F(JunkPage, AccessWindowComesBeforeTheScanAndTheScanStartsAnyway) {
  fill();
  host.version().selectors = {0x10e0, 10, 14, 0};
  std::filesystem::remove(root / "Users/anna/Library/Safari");
  openPage();
  bool asked = false;
  QTimer::singleShot(50, [&] {
    QWidget* window = QApplication::activeModalWidget();
    ASSERT_NE(window, nullptr);
    asked = window->objectName() == "FullDiskAccessViewController";
    QTest::mouseClick(window->findChild<QWidget*>("openSetViewButton"), Qt::LeftButton);
    EXPECT_TRUE(window->isVisible()) << "it stays open beside the settings";
    QTest::mouseClick(window->findChild<QWidget*>("closeButton"), Qt::LeftButton);
  });
  scan();
  EXPECT_TRUE(asked);
  ASSERT_EQ(workspace->opened.size(), 1U);
  EXPECT_EQ(workspace->opened[0],
            "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles");
}

}  // namespace
