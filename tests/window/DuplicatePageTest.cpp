#include "DropArea.h"
#include "DuplicateOutline.h"
#include "DuplicatePreview.h"
#include "DuplicateTreeModel.h"
#include "DuplicateViewController.h"
#include "EntryTable.h"
#include "ImageCheckBox.h"
#include "Machine.h"
#include "NSNotificationCenter.h"
#include "PreviewContent.h"
#include "SegmentBar.h"
#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QDropEvent>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTimer>
#include <QUrl>

#include <filesystem>

#include <sys/stat.h>

using namespace brisko;
using namespace brisko::test;

namespace {

class DuplicatePage : public WindowFixture {
 protected:
  void openPage() {
    launch();
    click("cell3");
  }
  DuplicateViewController& duplicates() {
    return static_cast<DuplicateViewController&>(*delegate->pages()[3]);
  }
  DuplicateModel& model() { return duplicates().model(); }
  template <typename Widget = QWidget>
  Widget* part(const char* name) {
    auto* found = page(3)->findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  QString text(const char* name) { return part<QLabel>(name)->text(); }
  QString title(const char* name) { return part<QAbstractButton>(name)->text(); }
  void press(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  void press(const char* name) { press(part(name)); }
  DuplicateOutline* outline() { return part<DuplicateOutline>("outline"); }
  QAbstractItemModel* rows() { return outline()->model(); }

  // Three documents, two pictures, two hard links.
  void fill() {
    for (const char* name : {"a.txt", "b.TXT", "c.txt"})
      root.file("files/" + std::string(name), std::string(4000, 't'));
    for (const char* name : {"p.JPG", "q.JPG"})
      root.file("files/" + std::string(name), std::string(90'000, 'p'));
    std::filesystem::create_hard_link(root.file("files/x.bin", std::string(700, 'x')),
                                      root / "files/y.bin");
  }
  void search() {
    duplicates().setFolderChooser([this] { return root / "files"; });
    press("chooseButton");
    ASSERT_TRUE(part("progressView")->isVisible());
    ASSERT_TRUE(waitUntil([this] { return !part("progressView")->isVisible(); }));
  }
  /// The group with this copy; which copy it is called by is up to the folder's order.
  QModelIndex group(const char* name) {
    for (int row = 0; row < rows()->rowCount(); ++row) {
      const QModelIndex at = rows()->index(row, 0);
      for (int i = 0; i < rows()->rowCount(at); ++i) {
        const QString path =
            copy(at, i).siblingAtColumn(DuplicateTreeModel::NameColumn).data().toString();
        if (path.endsWith(QLatin1Char('/') + QLatin1String(name))) return at;
      }
    }
    ADD_FAILURE() << "no group with " << name;
    return {};
  }
  static QModelIndex copy(const QModelIndex& group, int row) {
    return group.model()->index(row, 0, group);
  }
  QString image(const QModelIndex& index) { return index.data(ImageNameRole).toString(); }
  void clickBox(const QModelIndex& index) {
    outline()->setExpanded(index.parent(), true);
    outline()->scrollTo(index);
    QTest::mouseClick(outline()->viewport(), Qt::LeftButton, {},
                      outline()->visualRect(index.siblingAtColumn(0)).center());
  }
  void clickHeader(int section) {
    QHeaderView* header = outline()->header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      {header->sectionViewportPosition(section) + 20, header->height() / 2});
  }
  /// Does something that asks, and answers; gives back what was asked.
  QString answering(const char* answer, const std::function<void()>& act) {
    QString asked;
    QTimer::singleShot(0, [&asked, answer] {
      QWidget* panel = QApplication::activeModalWidget();
      ASSERT_NE(panel, nullptr);
      asked = panel->findChild<QLabel*>("messageTitle")->text();
      QTest::mouseClick(panel->findChild<QWidget*>(QLatin1String(answer)), Qt::LeftButton);
    });
    act();
    return asked;
  }
  QString remove(const char* answer) {
    return answering(answer, [this] { press("removeButton"); });
  }
};

TEST_F(DuplicatePage, ResultsAreSharedOutByTypeAndTheFirstGroupIsOpen) {
  fill();
  openPage();
  int notices = 0;
  auto& center = NSNotificationCenter::defaultCenter();
  const int token =
      center.addObserver("changeViewActionForDuplicate", [&](const auto&) { ++notices; });
  EXPECT_TRUE(part("firstView")->isVisible());
  search();
  EXPECT_TRUE(part("detailView")->isVisible());
  center.removeObserver(token);
  EXPECT_EQ(notices, 1);
  EXPECT_EQ(rows()->rowCount(), 3);
  EXPECT_TRUE(outline()->isExpanded(rows()->index(0, 0)));
  EXPECT_EQ(text("summaryLabel"), "7 files in files, selected 0 file in All.");
  EXPECT_FALSE(part("removeButton")->isEnabled());
  auto* bar = part<SegmentBar>("segments");
  ASSERT_EQ(bar->segments().size(), 7U);
  EXPECT_EQ(bar->segments()[1].title, "Documents");
  EXPECT_EQ(bar->segments()[1].detail, "12.00 KB");
  EXPECT_EQ(bar->segments()[5].detail, "180.00 KB");
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->segmentRect(5).center());
  EXPECT_EQ(rows()->rowCount(), 1);
  QTest::keyClick(bar, Qt::Key_Left);
  EXPECT_EQ(bar->current(), 4);
  EXPECT_TRUE(part("noResultView")->isVisible());
  EXPECT_FALSE(outline()->isVisible());
  QTest::keyClick(bar, Qt::Key_Home);
  EXPECT_TRUE(outline()->isVisible());
  EXPECT_EQ(rows()->rowCount(), 3);
}

TEST_F(DuplicatePage, GroupBoxKeepsOneCopyAndTheLastOneIsAskedFor) {
  fill();
  openPage();
  search();
  const QModelIndex documents = group("a.txt");
  clickBox(documents);
  EXPECT_EQ(image(documents), "halfsel");
  EXPECT_EQ(documents.siblingAtColumn(DuplicateTreeModel::allSelectNum).data().toString(), "2/3");
  EXPECT_EQ(title("removeButton"), "Remove 2 Files (8.00 KB)");
  EXPECT_EQ(outline()->selectAllBox()->imageName(), "halfsel");
  const QModelIndex kept = copy(documents, 2);
  EXPECT_TRUE(kept.siblingAtColumn(DuplicateTreeModel::NameColumn).data(KeptRole).toBool());
  const QString question = "Are you sure you want to delete all the duplicate files?";
  EXPECT_EQ(answering("answer0", [&] { clickBox(kept); }), question);
  EXPECT_EQ(image(kept), "unsel");
  outline()->setCurrentIndex(kept);
  EXPECT_EQ(answering("answer1", [&] { QTest::keyClick(outline(), Qt::Key_Space); }), question);
  EXPECT_EQ(image(kept), "sel");
  EXPECT_EQ(image(documents), "sel");
  press(outline()->selectAllBox());
  EXPECT_EQ(image(documents), "unsel");
  press(outline()->selectAllBox());
  EXPECT_EQ(text("summaryLabel"), "7 files in files, selected 4 files in All.");
}

TEST_F(DuplicatePage, HeaderSortsTheTreeBothWaysAndMarksTheColumn) {
  fill();
  openPage();
  search();
  QHeaderView* header = outline()->header();
  clickHeader(DuplicateTreeModel::FileSize);
  EXPECT_EQ(header->sortIndicatorSection(), DuplicateTreeModel::FileSize);
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
  const auto sizeAt = [this](int row) {
    return rows()->index(row, DuplicateTreeModel::FileSize).data().toString();
  };
  EXPECT_EQ(sizeAt(2), "180.00 KB");
  clickHeader(DuplicateTreeModel::FileSize);
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
  EXPECT_EQ(sizeAt(0), "180.00 KB");
  clickHeader(DuplicateTreeModel::allSelectNum);
  EXPECT_EQ(header->sortIndicatorSection(), DuplicateTreeModel::FileSize);
  EXPECT_EQ(sizeAt(0), "180.00 KB") << "that column sorts nothing";

  header->setFocus();
  QTest::keyClick(header, Qt::Key_Right);
  QTest::keyClick(header, Qt::Key_Space);
  EXPECT_EQ(header->sortIndicatorSection(), DuplicateTreeModel::FileSize) << "past the mute column";
  EXPECT_EQ(sizeAt(2), "180.00 KB");
}

TEST_F(DuplicatePage, OpenGroupsStayOpenWhenSortedOrFiltered) {
  fill();
  openPage();
  search();
  outline()->collapseAll();
  outline()->expand(group("p.JPG"));
  outline()->setCurrentIndex(copy(group("p.JPG"), 1));
  const QString current = outline()->currentIndex().siblingAtColumn(1).data().toString();
  for (const int column : {DuplicateTreeModel::FileSize, DuplicateTreeModel::NameColumn}) {
    clickHeader(column);
    EXPECT_EQ(outline()->currentIndex().siblingAtColumn(1).data().toString(), current);
    for (const char* name : {"a.txt", "p.JPG", "x.bin"})
      EXPECT_EQ(outline()->isExpanded(group(name)), std::string(name) == "p.JPG") << name;
  }
  for (const int segment : {1, 5, 0}) {
    duplicates().segmentSelect(segment);
    if (segment == 1) {
      EXPECT_FALSE(outline()->isExpanded(group("a.txt")));
      continue;
    }
    EXPECT_TRUE(outline()->isExpanded(group("p.JPG"))) << segment;
  }
}

TEST_F(DuplicatePage, RemovalWaitsForTheConfirmationAndLocksThePages) {
  fill();
  openPage();
  search();
  const QAbstractItemModelTester tester(rows(),
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  outline()->expandAll();
  clickBox(group("a.txt"));
  clickBox(group("p.JPG"));
  EXPECT_EQ(remove("answer0"), "Remove 3 files (98.00 KB)?");
  EXPECT_TRUE(duplicates().isCanClick());
  EXPECT_TRUE(exists(root / "files/a.txt"));
  remove("answer1");
  EXPECT_FALSE(duplicates().isCanClick());
  clickBox(group("x.bin"));
  EXPECT_EQ(model().selectedCount(), 3U) << "what was confirmed is what goes";
  click("cell0");
  EXPECT_EQ(shownPage(), 3);
  EXPECT_TRUE(part("stopRemoveButton")->isVisible());
  ASSERT_TRUE(waitUntil([this] { return duplicates().isCanClick(); }));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(root / "files"), {}), 4);
  EXPECT_EQ(rows()->rowCount(), 1) << "groups with one copy left are none";
  EXPECT_TRUE(outline()->isExpanded(rows()->index(0, 0)));
  EXPECT_EQ(text("summaryLabel"), "2 files in files, selected 0 file in All.");
  EXPECT_FALSE(part("stopRemoveButton")->isVisible());
}

TEST_F(DuplicatePage, StoppingBeforeTheRemovalBeginsLeavesEverything) {
  fill();
  openPage();
  search();
  clickBox(group("a.txt"));
  remove("answer1");
  press("stopRemoveButton");
  EXPECT_TRUE(duplicates().isCanClick());
  QTest::qWait(600);
  EXPECT_TRUE(exists(root / "files/a.txt"));
  EXPECT_EQ(title("removeButton"), "Remove 2 Files (8.00 KB)");
}

TEST_F(DuplicatePage, ChangedCopyStaysTickedAndIsListedWithTheReason) {
  fill();
  openPage();
  search();
  const QModelIndex documents = group("a.txt");
  const std::string changed =
      static_cast<const DuplicateTreeModel*>(rows())->node(copy(documents, 0))->nodeData.name();
  clickBox(documents);
  root.file("files/" + changed.substr(changed.rfind('/') + 1), "other");
  remove("answer1");
  QString warning;
  QString details;
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    QWidget* panel = QApplication::activeModalWidget();
    if (panel == nullptr) return;
    poll.stop();
    warning = panel->findChild<QLabel*>("messageTitle")->text();
    details = panel->findChild<QPlainTextEdit*>("messageDetails")->toPlainText();
    QTest::mouseClick(panel->findChild<QWidget*>("answer0"), Qt::LeftButton);
  });
  poll.start(5);
  ASSERT_TRUE(waitUntil([&] { return !warning.isEmpty(); }));
  EXPECT_EQ(warning, "Some files were left alone, because it was not safe to remove them");
  EXPECT_TRUE(details.startsWith(QString::fromStdString(changed))) << details.toStdString();
  EXPECT_TRUE(exists(changed));
  EXPECT_EQ(model().selectedCount(), 1U);
}

TEST_F(DuplicatePage, RemovingEverythingEndsWithWhatWasFreed) {
  for (const char* name : {"a", "b", "c"})
    root.file("files/" + std::string(name), std::string(1'048'576, 'z'));
  openPage();
  search();
  press(outline()->selectAllBox());
  remove("answer1");
  ASSERT_TRUE(waitUntil([this] { return part("endView")->isVisible(); }));
  EXPECT_EQ(text("endValueLabel"), "2.10 MB");
  press("endButton");
  EXPECT_TRUE(part("firstView")->isVisible());
  EXPECT_TRUE(part("chooseButton")->isEnabled());
}

TEST_F(DuplicatePage, FolderWithoutDuplicatesSaysSo) {
  root.file("files/only", "one");
  openPage();
  search();
  EXPECT_TRUE(part("nothingView")->isVisible());
  press("nothingButton");
  EXPECT_TRUE(part("firstView")->isVisible());
}

TEST_F(DuplicatePage, FoldersLeftOutAreToldAboveTheResults) {
  fill();
  openPage();
  search();
  EXPECT_TRUE(part("skippedButton")->isHidden());
  const std::string locked = root / "files/locked";
  std::filesystem::create_directory(locked);
  std::filesystem::permissions(locked, std::filesystem::perms::none);
  press("backHomeButton");
  {
    const test::BoundByModes bound;
    search();
  }
  EXPECT_EQ(title("skippedButton"), "1 Folder Left Out");
  EXPECT_EQ(answering("answer0", [this] { press("skippedButton"); }),
            "1 folder in it could not be read.");
  press("backHomeButton");
  {
    const test::BoundByModes bound;
    duplicates().viewDragAction(locked);
    ASSERT_TRUE(waitUntil([this] { return part("nothingView")->isVisible(); }));
  }
  EXPECT_EQ(part("nothingIntro")->findChild<QLabel*>("nameLabel")->text(),
            "“locked” could not be read");
  std::filesystem::permissions(locked, std::filesystem::perms::owner_all);
}

TEST_F(DuplicatePage, StoppedSearchGoesBackToTheStart) {
  fill();
  openPage();
  duplicates().setFolderChooser([this] { return root / "files"; });
  press("chooseButton");
  press("stopScanButton");
  EXPECT_FALSE(part("stopScanButton")->isEnabled());
  ASSERT_TRUE(waitUntil([this] { return part("firstView")->isVisible(); }));
  QTest::qWait(50);
  EXPECT_TRUE(part("firstView")->isVisible());
  search();
  EXPECT_TRUE(part("detailView")->isVisible());
}

TEST_F(DuplicatePage, OnlyADroppedFolderStartsASearch) {
  fill();
  const std::string odd = root.folder("files/odd \xff,%41\n");
  openPage();
  const auto drop = [this](const std::string& path) {
    QMimeData data;
    data.setUrls(
        {QUrl::fromEncoded("file://" + QByteArray::fromStdString(path).toPercentEncoding("/"))});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(part("dropArea"), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(part("dropArea"), &event);
  };
  drop(root / "files/a.txt");
  drop(root / "files/missing");
  EXPECT_FALSE(model().isSearching());
  drop(odd);
  EXPECT_TRUE(model().isSearching());
  EXPECT_EQ(model().searchPath(), odd);
}

TEST_F(DuplicatePage, ChooserTakesFoldersOnlyAndSaysWhatItIsFor) {
  openPage();
  QTimer::singleShot(100, [] {
    auto* chooser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(chooser, nullptr);
    EXPECT_EQ(chooser->windowTitle(), "Choose a path to search");
    EXPECT_EQ(chooser->labelText(QFileDialog::Accept), "Choose");
    EXPECT_EQ(chooser->fileMode(), QFileDialog::Directory);
    chooser->reject();
  });
  press("chooseButton");
  EXPECT_TRUE(part("firstView")->isVisible());
}

TEST_F(DuplicatePage, PreviewShowsPicturesAndTextsAndRevealsTheCopy) {
  QImage picture(600, 300, QImage::Format_RGB32);
  picture.fill(Qt::darkCyan);
  root.folder("files");
  for (const char* name : {"files/one.png", "files/two.png"})
    ASSERT_TRUE(picture.save(QString::fromStdString(root / name)));
  for (const char* name : {"files/one.txt", "files/two.txt"})
    root.file(name, "first\tline\r\nsecond \x1b[31mline\n");
  openPage();
  search();
  outline()->setCurrentIndex(group("one.png"));
  auto* shown = part<QLabel>("previewPicture");
  ASSERT_TRUE(waitUntil([&] { return shown->isVisible(); }));
  EXPECT_EQ(shown->pixmap().deviceIndependentSize().width(), 184);
  outline()->setCurrentIndex(group("one.txt"));
  auto* lines = part<QPlainTextEdit>("previewText");
  ASSERT_TRUE(waitUntil([&] { return lines->isVisible(); }));
  EXPECT_TRUE(lines->toPlainText().startsWith("first    line\nsecond "));
  EXPECT_FALSE(lines->toPlainText().contains(QChar(0x1b)));
  press("revealButton");
  ASSERT_EQ(workspace->revealed.size(), 1U);
  EXPECT_EQ(workspace->revealed[0], part<DuplicatePreview>("preview")->path());
}

TEST(PreviewTest, NothingButTheRegularFileThatWasListedIsOpened) {
  TemporaryFolder folder;
  const std::string path = folder.file("text", "hello");
  struct stat status;
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  const QSize room(100, 100);
  EXPECT_EQ(previewContent(path, status.st_dev, status.st_ino, room).text, "hello");
  EXPECT_TRUE(previewContent(path, status.st_dev, status.st_ino + 1, room).isEmpty());
  EXPECT_TRUE(
      previewContent(folder.link("link", path), status.st_dev, status.st_ino, room).isEmpty());
  const std::string fifo = folder / "fifo";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  ASSERT_EQ(::stat(fifo.c_str(), &status), 0);
  EXPECT_TRUE(previewContent(fifo, status.st_dev, status.st_ino, room).isEmpty());
}

TEST(PreviewTest, BytesThatAreNoTextShowNothing) {
  EXPECT_EQ(previewText("caf\xc3\xa9 \xe2\x82"), QString::fromUtf8("caf\xc3\xa9 "));
  EXPECT_EQ(previewText(std::string_view("a\0b", 3)), "");
  EXPECT_EQ(previewText("\xff\xfe and more"), "");
}

// Rows are made up, because a search for so many takes longer than what is looked at here.
TEST(DuplicateOutlineTest, HundredThousandGroupsAreShownAndThinnedOutWithoutAHitch) {
  constexpr int kGroups = 100'000;
  auto made = std::make_unique<DuplicateTree>();
  for (int i = 0; i < kGroups; ++i) {
    const std::string name = "file" + std::to_string(i) + ".txt";
    SimpleTreeNode::Children copies;
    for (const char* parent : {"/one/", "/two/"})
      copies.push_back(made->make(SimpleNodeData::leafDataWithName(made->keep(parent + name))));
    made->root().insertChild(
        made->make(SimpleNodeData::groupDataWithName(made->keep(name)), copies), i);
  }
  DuplicateResult result;
  result.constructSubtrees(std::move(made));
  const SimpleTreeNode& root = *result.root(0);
  DuplicateOutline outline;
  outline.resize(600, 500);
  outline.show();
  // The thread's own time, whatever else the machine does. Each step is what one turn of the event
  // loop has to do; painting is another.
  const auto milliseconds = [] {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
  };
  const auto record = [&](const char* step, const auto& work) {
    const double before = milliseconds();
    work();
    const double took = milliseconds() - before;
    RecordProperty(step, std::to_string(took));
    EXPECT_LT(took, 500) << step << ", far above what it takes";
    outline.grab();
  };
  QAbstractItemModel& rows = *outline.model();
  record("shown_ms", [&] { outline.showTree(&root, 0); });
  record("laid_out_ms", [&] { outline.doItemsLayout(); });
  outline.expand(rows.index(0, 0));
  record("scrolled_ms", [&] { outline.scrollToBottom(); });
  const QPersistentModelIndex last(rows.index(kGroups - 1, 0));
  outline.setCurrentIndex(last);
  std::vector<SimpleTreeNode*> gone;
  for (std::size_t i = 7; i < kGroups; i += 10) {
    gone.push_back(root.children[i]);
    gone.back()->nodeData.isGone = true;
  }
  record("thinned_ms", [&] {
    outline.nodesWillMove();
    result.dropGone(gone);
    outline.nodesHaveMoved();
  });
  record("thinned_laid_out_ms", [&] { outline.doItemsLayout(); });
  EXPECT_EQ(last.row(), kGroups * 9 / 10 - 1) << "the highlighted row is the same one still";
  EXPECT_TRUE(outline.isExpanded(rows.index(0, 0)));
  auto order = result.sorted(SortKey::name, true);
  record("sorted_ms", [&] {
    outline.nodesWillMove();
    result.take(order);
    outline.nodesHaveMoved();
  });
  record("sorted_laid_out_ms", [&] { outline.doItemsLayout(); });
  EXPECT_EQ(outline.currentNode()->nodeData.name(), "file99999.txt");
  EXPECT_EQ(last.row(), 0) << "sorting takes the highlighted row along";
  EXPECT_EQ(outline.currentIndex(), QModelIndex(last));
}

}  // namespace
