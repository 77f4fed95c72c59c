#include "FastCleanModel.h"
#include "JunkTestHost.h"
#include "MadeImage.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisko::test {
namespace {

using testing::ElementsAre;

class JunkPage : public testing::Test {
 protected:
  void scan() {
    model.buttonAction();
    runUntilScanned();
  }
  void runUntilScanned() {
    Dispatch::runUntil([&] { return model.indexPage() == 2; });
  }
  std::vector<std::string> boxes() const {
    std::vector<std::string> images;
    for (const FastTypeRow& row : model.rows())
      images.push_back(row.checkBoxImage);
    return images;
  }
  std::string sizeLine() const { return model.totalSizeLabel().plain(); }

  TemporaryFolder folder;
  JunkTestHost host{folder.path()};
  FastCleanModel model;
};

TEST_F(JunkPage, goesFromScanToStopToClean) {
  MadeImage::build(folder.path());
  EXPECT_EQ(model.mainButton().title, "Scan");
  model.buttonAction();
  EXPECT_EQ(model.indexPage(), 1);
  EXPECT_EQ(model.mainButton().title, "Stop");
  EXPECT_EQ(model.view(), FastCleanView::detail);
  EXPECT_TRUE(model.isCanClick()) << "a scan does not make the page busy";
  EXPECT_EQ(model.rows()[0].size, "");
  EXPECT_FALSE(model.rows()[0].checkBoxShown);
  runUntilScanned();
  EXPECT_EQ(model.mainButton().title, "Clean");
  EXPECT_TRUE(model.mainButton().enabled);
  EXPECT_NEAR(model.mainButton().percentage, 1.002, 1e-9);
  EXPECT_THAT(boxes(), ElementsAre("sel", "sel", "sel", "unsel", "unsel", "unsel"));
  EXPECT_TRUE(model.rows()[3].checkBoxEnabled);
  EXPECT_TRUE(model.rows()[3].detailButtonShown);
}

TEST_F(JunkPage, theSizeLineCountsEverythingAfterAScanAndTheTickedAfterAClick) {
  MadeImage::build(folder.path());
  scan();
  EXPECT_EQ(sizeLine(), "16.27 GB Junk files found.");
  EXPECT_EQ(model.totalSizeLabel().runs.front().text, "16.27 GB");
  model.checkBoxButtonAction(3);
  EXPECT_THAT(boxes(), ElementsAre("sel", "sel", "sel", "sel", "unsel", "unsel"));
  EXPECT_EQ(sizeLine(), "5.77 GB Junk files found.");
  model.checkBoxButtonAction(3);
  EXPECT_EQ(sizeLine(), "1.57 GB Junk files found.");
}

TEST_F(JunkPage, emptyCategoriesAreDisabledAndNothingCanBeCleaned) {
  scan();
  for (const FastTypeRow& row : model.rows()) {
    EXPECT_EQ(row.size, "0.00 KB");
    EXPECT_TRUE(row.sizeIsDimmed);
    EXPECT_EQ(row.checkBoxImage, "disable");
    EXPECT_FALSE(row.checkBoxEnabled);
    EXPECT_FALSE(row.detailButtonShown);
    EXPECT_FALSE(row.bSelect);
  }
  EXPECT_FALSE(model.mainButton().enabled);
  model.buttonAction();
  EXPECT_TRUE(model.isCanClick()) << "a disabled button does nothing";
}

TEST_F(JunkPage, aHalfTickedCategoryIsFilledByOneClickAndClearedByTheNext) {
  for (int i = 1; i <= 5; ++i) {
    folder.sizedFile("Library/Logs/" + std::to_string(i), static_cast<std::size_t>(i) * 1'000'000);
  }
  scan();
  model.detailButtonAction(0);
  EXPECT_FALSE(model.mainButton().shown);
  EXPECT_EQ(model.subDetailTitleLabel(), "System Junk");
  EXPECT_EQ(model.selectFileLabel(), "Selected 5 item(s), size: 15.00 MB");
  EXPECT_EQ(model.selectAllImage(), "sel");
  model.setAllSelectOrNoSelect();
  EXPECT_EQ(model.selectFileLabel(), "Selected 0 item(s), size: 0 byte");
  EXPECT_EQ(model.aSelectAllState(), 0);
  model.selectListButton(0);
  model.selectListButton(2);
  EXPECT_EQ(model.selectFileLabel(), "Selected 2 item(s), size: 4.00 MB");
  EXPECT_EQ(model.selectAllImage(), "halfsel");
  model.selectListButton(99);
  model.backToDetailButtonAction();
  EXPECT_EQ(model.selectTreeNode(), nullptr);
  EXPECT_TRUE(model.mainButton().shown);
  EXPECT_EQ(boxes()[0], "halfsel");
  EXPECT_EQ(sizeLine(), "4.00 MB Junk files found.");
  EXPECT_EQ(model.plan().size(), 2U);
  model.checkBoxButtonAction(0);
  EXPECT_EQ(boxes()[0], "sel");
  model.checkBoxButtonAction(0);
  EXPECT_EQ(boxes()[0], "unsel");
  EXPECT_FALSE(model.mainButton().enabled);
  EXPECT_TRUE(model.plan().empty());
}

TEST_F(JunkPage, selectAllFillsAHalfTickedListFirst) {
  folder.sizedFile("Library/Logs/a", 1'000'000);
  folder.sizedFile("Library/Logs/b", 1'000'000);
  scan();
  model.detailButtonAction(0);
  model.selectListButton(1);
  model.setAllSelectOrNoSelect();
  EXPECT_EQ(model.aSelectAllState(), 1);
  EXPECT_EQ(model.plan().size(), 2U);
  model.backToDetailButtonAction();
  model.detailButtonAction(3);
  model.setAllSelectOrNoSelect();
  EXPECT_EQ(model.aSelectAllState(), 0) << "a list without entries has nothing to tick";
}

// The figure is reset when the rows are first made and when a cleaning ends, and at no other time.
TEST_F(JunkPage, aSecondScanWithoutCleaningAddsToTheFigure) {
  folder.sizedFile("Library/Logs/a", 2'000'000);
  scan();
  EXPECT_EQ(sizeLine(), "2.00 MB Junk files found.");
  model.backHomeButtonAction();
  EXPECT_EQ(model.indexPage(), 0);
  EXPECT_EQ(model.view(), FastCleanView::start);
  EXPECT_EQ(model.mainButton().title, "Scan");
  EXPECT_TRUE(model.plan().empty()) << "what is not shown any more is not cleaned";
  scan();
  EXPECT_EQ(sizeLine(), "4.00 MB Junk files found.");
}

TEST_F(JunkPage, stopDisablesTheButtonAndStillReachesTheScannedState) {
  MadeImage::build(folder.path());
  model.buttonAction();
  model.buttonAction();
  EXPECT_FALSE(model.mainButton().enabled);
  runUntilScanned();
  EXPECT_EQ(model.mainButton().title, "Clean");
  for (const FastTypeRow& row : model.rows())
    EXPECT_NE(row.size, "") << "each is reported";
}

TEST_F(JunkPage, goingBackDuringAScanDropsIt) {
  MadeImage::build(folder.path());
  model.buttonAction();
  model.backHomeButtonAction();
  Dispatch::waitForBackground();
  Dispatch::runPending();
  EXPECT_EQ(model.indexPage(), 0);
  EXPECT_EQ(model.totalSize(), 0);
  scan();
  EXPECT_EQ(sizeLine(), "16.27 GB Junk files found.");
}

TEST_F(JunkPage, isGoneBeforeItsScanEnds) {
  MadeImage::build(folder.path());
  {
    FastCleanModel shortLived;
    shortLived.beginScanFile();
  }
  Dispatch::waitForBackground();
  EXPECT_GT(Dispatch::runPending(), 0U);
}

TEST_F(JunkPage, asksForFullDiskAccessBeforeEveryScanWhereTheSystemProtectsFolders) {
  int asked = 0;
  model.setFullDiskAccessQuestion([&] { ++asked; });
  scan();
  EXPECT_EQ(asked, 0) << "10.13 protects nothing";
  model.backHomeButtonAction();
  host.version().selectors = {0x1090, 10, 14, 0};
  scan();
  EXPECT_EQ(asked, 1);
  model.backHomeButtonAction();
  scan();
  EXPECT_EQ(asked, 2);
  model.backHomeButtonAction();
  folder.folder("Users/anna/Library/Safari");
  EXPECT_EQ(FastCleanModel::getAuthorizationStatus(), 2);
  scan();
  EXPECT_EQ(asked, 2) << "the access is there";
}

TEST_F(JunkPage, tellsItsListenerWhatChanged) {
  struct Counts : FastCleanModelListener {
    int pages = 0;
    int lines = 0;
    int lists = 0;
    std::vector<int> rows;
    void pageChanged() override { ++pages; }
    void rowChanged(int category) override { rows.push_back(category); }
    void sizeLineChanged() override { ++lines; }
    void detailListChanged() override { ++lists; }
  } counts;
  folder.sizedFile("Library/Logs/a", 2'000'000);
  model.setListener(&counts);
  scan();
  counts = {};
  model.checkBoxButtonAction(0);
  EXPECT_EQ(counts.pages, 1);
  EXPECT_EQ(counts.lines, 1);
  EXPECT_THAT(counts.rows, ElementsAre(0, 1, 2, 3, 4, 5));
  model.detailButtonAction(0);
  model.selectListButton(0);
  EXPECT_EQ(counts.lists, 2);
  model.setListener(nullptr);
}

}  // namespace
}  // namespace brisko::test
