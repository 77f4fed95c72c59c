#include "EntryTable.h"
#include "FileShareController.h"
#include "ImageCheckBox.h"
#include "ItemChooser.h"
#include "Machine.h"
#include "NTFSWindowController.h"
#include "SegmentBar.h"
#include "ShredProgressWindowController.h"
#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QDropEvent>
#include <QLabel>
#include <QListView>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QUrl>

#include <unistd.h>

using namespace brisko;
using namespace brisko::test;

namespace {

class ShredPage : public WindowFixture {
 protected:
  ShredPage() : tools("BRISKO_TOOLS", (buildTree() + "/libexec/brisko").c_str()) {}

  void openPage() {
    launch();
    click("cell9");
  }
  FileShareController& shredder() {
    return static_cast<FileShareController&>(*delegate->pages()[9]);
  }
  QWidget* part(const char* name) { return page(9)->findChild<QWidget*>(QLatin1String(name)); }
  EntryTable* table() { return page(9)->findChild<EntryTable*>(); }
  QString cell(int row, int column) {
    return table()->model()->index(row, column).data().toString();
  }
  QString text(const char* name) {
    return page(9)->findChild<QLabel*>(QLatin1String(name))->text();
  }
  void press(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  void drop(const char* area, const std::vector<std::string>& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string& path : paths)
      urls << QUrl::fromLocalFile(QString::fromStdString(path));
    data.setUrls(urls);
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(part(area), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(part(area), &event);
  }
  void answerPanel(const char* answer, QString& title) {
    QWidget* panel = QApplication::activeModalWidget();
    if (panel == nullptr || panel->findChild<QLabel*>("messageTitle") == nullptr) return;
    title = panel->findChild<QLabel*>("messageTitle")->text();
    press(panel->findChild<QWidget*>(QLatin1String(answer)));
  }
  /// Presses Erase and answers the question; gives back its title.
  QString eraseAndAnswer(const char* answer) {
    QString title;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
      if (title.isEmpty()) answerPanel(answer, title);
    });
    poll.start(5);
    press(part("eraseButton"));
    EXPECT_TRUE(waitUntil([&] { return !title.isEmpty() && !shredder().model().isPlanning(); }));
    return title;
  }
  template <typename Widget = QWidget>
  Widget* progressPart(const char* name) {
    return shredder().progressWindow()->findChild<Widget*>(QLatin1String(name));
  }

  Environment tools;
};

TEST_F(ShredPage, DroppedItemsAreListedTickedAndTakenOutByKeys) {
  openPage();
  EXPECT_TRUE(part("dropView")->isVisible());
  QAbstractItemModelTester tester(table()->model());
  drop("dropArea", {root.file("a\nb", "12345"), root.folder("folder")});
  EXPECT_TRUE(part("listView")->isVisible());
  ASSERT_EQ(table()->model()->rowCount(), 2);
  EXPECT_EQ(cell(0, 1), "a\\nb");
  EXPECT_EQ(cell(1, 2), "Folder");
  EXPECT_EQ(text("summaryLabel"), "2 items ticked, 5 byte and what is in the folders");
  table()->setFocus();
  table()->setCurrentIndex(table()->model()->index(0, 1));
  QTest::keyClick(table(), Qt::Key_Space);
  EXPECT_EQ(table()->selectAllBox()->imageName(), "halfsel");
  EXPECT_EQ(static_cast<QPushButton*>(part("eraseButton"))->text(), "Erase 1 Item");
  drop("listArea", {root.file("c", "1")});
  EXPECT_EQ(table()->model()->rowCount(), 3);
  table()->setCurrentIndex(table()->model()->index(0, 1));
  QTest::keyClick(table(), Qt::Key_Delete);
  EXPECT_EQ(cell(0, 1), "folder");
  press(table()->selectAllBox());
  EXPECT_FALSE(part("eraseButton")->isEnabled());
  press(part("emptyListButton"));
  EXPECT_TRUE(part("dropView")->isVisible());
  EXPECT_TRUE(exists(root / "a\nb"));
}

TEST_F(ShredPage, ItemsOnNtfsBringTheNotice) {
  openPage();
  MountedVolume volume;
  volume.root = root.folder("ntfs");
  volume.fileSystemName = "ntfs3";
  workspace->volumes.push_back(volume);
  int shown = 0;
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    auto* notice = qobject_cast<NTFSWindowController*>(QApplication::activeModalWidget());
    if (notice != nullptr && ++shown == 1) press(notice->yesButton);
  });
  poll.start(5);
  drop("dropArea", {root.file("plain", "1")});
  Dispatch::waitForBackground();
  QTest::qWait(20);
  EXPECT_EQ(shown, 0);
  drop("listArea", {root.file("ntfs/one", "1")});
  EXPECT_TRUE(waitUntil([&] { return shown == 1; }));
}

TEST_F(ShredPage, NothingGoesWithoutTheConfirmation) {
  openPage();
  shredder().setItemChooser([&] {
    return std::vector<std::string>{root.file("tree/a", "12345"), root.folder("tree")};
  });
  press(part("selectFileButton"));
  EXPECT_EQ(eraseAndAnswer("answer0"), "Erase 2 items (5 byte) beyond recovery?");
  EXPECT_TRUE(exists(root / "tree/a"));
  EXPECT_EQ(shredder().progressWindow(), nullptr);
  EXPECT_TRUE(shredder().isCanClick());
}

TEST_F(ShredPage, ARunEndsWithWhatEachItemCameTo) {
  openPage();
  const std::string linked = root.file("linked", "text");
  ASSERT_EQ(link(linked.c_str(), (root / "other").c_str()), 0);
  drop("dropArea", {root.file("goes", "text"), linked, root.file("stays", "text")});
  shredder().model().toggle(2);
  eraseAndAnswer("answer1");
  ASSERT_NE(shredder().progressWindow(), nullptr);
  EXPECT_TRUE(shredder().progressWindow()->isModal());
  ASSERT_TRUE(waitUntil([&] { return progressPart("failView")->isVisible(); }));
  EXPECT_EQ(progressPart<QLabel>("failedNodeLable")->text(), "Some items could not be erased.");
  press(progressPart("failButton"));
  EXPECT_TRUE(waitUntil([&] { return shredder().progressWindow() == nullptr; }));
  ASSERT_EQ(table()->model()->rowCount(), 3);
  EXPECT_EQ(cell(0, 3), "Erased");
  EXPECT_EQ(cell(1, 3), "Failed: it has 1 other name (a hard link)");
  EXPECT_EQ(cell(2, 1), "stays");
  EXPECT_EQ(text("summaryLabel"), "1 item erased, 1 failed");
  EXPECT_EQ(table()->selectAllBox()->imageName(), "unsel");
  EXPECT_EQ(static_cast<QPushButton*>(part("addButton"))->text(), "Add");
  EXPECT_FALSE(exists(root / "goes"));
}

TEST_F(ShredPage, EscapeCancelsARunAndClosesOnlyItsEnd) {
  openPage();
  shredder().model().setEraserTimes(35);
  drop("dropArea", {root.file("large", std::string(96U << 20, 'x'))});
  eraseAndAnswer("answer1");
  EXPECT_FALSE(shredder().isCanClick());
  EXPECT_EQ(progressPart<QProgressBar>("bar")->value(), 30);
  click("cell1");
  EXPECT_EQ(shownPage(), 9) << "the page is busy";
  QTest::keyClick(shredder().progressWindow(), Qt::Key_Escape);
  EXPECT_TRUE(shredder().progressWindow()->isVisible());
  ASSERT_TRUE(waitUntil([&] { return progressPart("failView")->isVisible(); }));
  EXPECT_EQ(progressPart<QLabel>("failedNodeLable")->text(),
            "The operation was canceled by the user.");
  QTest::keyClick(shredder().progressWindow(), Qt::Key_Escape);
  EXPECT_TRUE(waitUntil([&] { return shredder().progressWindow() == nullptr; }));
  EXPECT_TRUE(exists(root / "large"));
  EXPECT_TRUE(cell(0, 3).startsWith("Failed: stopped"));
}

TEST_F(ShredPage, ThePassesAreAPreference) {
  openPage();
  drop("dropArea", {root.file("a", "1")});
  auto* times = page(9)->findChild<SegmentBar*>();
  EXPECT_EQ(times->current(), 0);
  QTest::mouseClick(times, Qt::LeftButton, {}, times->segmentRect(2).center());
  EXPECT_EQ(shredder().model().eraserTimes(), 7);
  EXPECT_EQ(text("timesLabel"), kEraserChoices[2].sentence);
  times->setFocus();
  QTest::keyClick(times, Qt::Key_Right);
  EXPECT_EQ(shredder().model().eraserTimes(), 35);
}

TEST_F(ShredPage, TheChooserTakesFilesAndFoldersAlike) {
  root.file("pick/file", "1");
  root.folder("pick/folder");
  root.file("pick/.hidden", "1");
  ItemChooser chooser({});
  EXPECT_EQ(chooser.directory().path(), "/");
  chooser.setDirectory(QString::fromStdString(root / "pick"));
  QTimer::singleShot(300, &chooser, [&] {
    auto* view = chooser.findChild<QListView*>("listView");
    QAbstractItemView* shown =
        view->isVisible() ? view : chooser.findChild<QAbstractItemView*>("treeView");
    EXPECT_EQ(shown->model()->rowCount(shown->rootIndex()), 2) << "nothing hidden";
    shown->selectAll();
    QTest::mouseClick(chooser.findChild<QWidget*>("addButton"), Qt::LeftButton);
  });
  auto paths = chooser.choose();
  std::sort(paths.begin(), paths.end());
  EXPECT_EQ(paths, (std::vector<std::string>{root / "pick/file", root / "pick/folder"}));
}

TEST_F(ShredPage, ProtectedPlacesAreNotAdded) {
  openPage();
  QString title;
  QTimer::singleShot(0, [&] { answerPanel("answer0", title); });
  drop("dropArea", {"/etc"});
  EXPECT_EQ(title, "1 item was not added");
  EXPECT_TRUE(part("dropView")->isVisible());
}

}  // namespace
