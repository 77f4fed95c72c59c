#include "CommUti.h"
#include "Dispatch.h"
#include "FakeInstalledApplications.h"
#include "MadeApplications.h"
#include "RelatedAppFilesScanner.h"
#include "RelatedFilesModel.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "UninstallModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include <sys/stat.h>

namespace brisko::test {
namespace {

class AppList : public testing::Test {
 protected:
  AppList() : host(root.path()) {
    Dispatch::attachMainThread();
    auto made = std::make_unique<FakeInstalledApplications>();
    installed = made.get();
    Host::current().installedApplications = std::move(made);
  }
  ~AppList() override { Dispatch::waitForBackground(); }

  void scan() {
    model.begimScanFile();
    finish();
  }
  void finish() {
    Dispatch::runUntil([&] { return !model.isBusy(); });
  }
  void measure() {
    model.measureAll();
    Dispatch::runUntil([&] { return model.isMeasured(); });
  }
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const AppItem& item : model.showListArr())
      all.push_back(item->name);
    return all;
  }
  std::size_t rowOf(const std::string& name) const {
    const auto all = names();
    const auto found = std::find(all.begin(), all.end(), name);
    EXPECT_NE(found, all.end()) << name;
    return static_cast<std::size_t>(found - all.begin());
  }
  const AMAppItem& item(const std::string& name) const {
    return *model.showListArr().at(rowOf(name));
  }
  /// The row's trash button and everything after it.
  void remove(std::size_t row) {
    removal.setAllRelaltedFiles(model.oneAppRemove(row), model.everything());
    Dispatch::runUntil([&] { return removal.isComplete(); });
    removal.doRemove();
    Dispatch::runUntil([&] { return !removal.isRemoving(); });
    model.completeCleanRelatedFiles(removal);
  }

  TemporaryFolder root;
  TestHost host;
  FakeInstalledApplications* installed = nullptr;
  UninstallModel model;
  RelatedFilesModel removal;
};

TEST_F(AppList, FortyBundlesAreFoundAtAnyDepthAndTheSystemsOwnApplicationsAreNot) {
  makeFortyBundles(root.path());
  scan();
  EXPECT_EQ(model.allApplications().size(), 30U);
  EXPECT_EQ(model.widgetsArr().size(), 4U) << "widgets are never hidden as the system's";
  EXPECT_EQ(model.pluginsArr().size(), 6U);
  EXPECT_EQ(item("Tool 15").path, root / "Applications/Suite/Inner/Tool 15.app");
  const auto all = names();
  for (const char* hidden : {"Mail", "Helper", "file"})
    EXPECT_THAT(all, testing::Not(testing::Contains(hidden)));
  const AMAppItem& app = item("Test App");
  EXPECT_EQ(app.bundleID, "com.example.testapp");
  EXPECT_EQ(app.bundleVersion, "3.1");
  EXPECT_EQ(app.size, "0KB");
  EXPECT_EQ(app.isSystemAppStr, "NO");
  EXPECT_FALSE(app.bIsGetSize);
  EXPECT_EQ(item("Binary").bundleVersion, "2.5");
  for (const char* mute : {"Bare", "Broken", "Huge"}) {
    EXPECT_EQ(item(mute).bundleID, "") << mute;
    EXPECT_EQ(item(mute).bundleVersion, "") << mute;
  }
  model.segmentClickAction(1);
  EXPECT_EQ(model.headerTitle(), "   Items(4)");
  const auto system = std::find_if(model.widgetsArr().begin(), model.widgetsArr().end(),
                                   [](const AppItem& one) { return one->isSystemApp; });
  ASSERT_NE(system, model.widgetsArr().end());
  EXPECT_EQ((*system)->isSystemAppStr, "YES");
  EXPECT_EQ((*system)->name, "System.wdgt") << "only applications lose their extension";
}

TEST_F(AppList, LinkedBundleIsItselfAndLoopsAndPipesHoldNothingUp) {
  makeBundle(root.path(), {"elsewhere/Real.app", "com.example.real", "4", "Real", ""});
  root.folder("Applications");
  root.link("Applications/Linked.app", root / "elsewhere/Real.app");
  root.link("Applications/Dangling.app", root / "nowhere");
  root.link("Applications/loop", root / "Applications");
  root.folder("Applications/Pipe.app/Contents");
  ASSERT_EQ(::mkfifo((root / "Applications/Pipe.app/Contents/Info.plist").c_str(), 0600), 0);
  scan();
  EXPECT_THAT(names(), testing::UnorderedElementsAre("Linked", "Pipe"));
  EXPECT_EQ(item("Linked").bundleID, "com.example.real");
  ASSERT_TRUE(item("Linked").identity);
  EXPECT_EQ(item("Linked").identity->kind, FileKind::symbolicLink);
}

TEST_F(AppList, SizesComeWhenTheyAreAskedForAndSortLargestFirst) {
  makeFortyBundles(root.path());
  scan();
  EXPECT_EQ(model.sizeText(rowOf("Notes")), "0KB");
  EXPECT_TRUE(item("Notes").bIsGetSize);
  Dispatch::runUntil([&] { return model.isMeasured(); });
  EXPECT_EQ(item("Notes").size, RelatedAppFilesScanner::getFileSizeItem(item("Notes").path));
  model.didClickTableColumn(UninstallColumn::Size);
  EXPECT_EQ(names().front(), "Notes") << "all others count as zero";
  measure();
  model.didClickTableColumn(UninstallColumn::version);
  EXPECT_EQ(model.aTableColumn(), UninstallColumn::Size) << "only two columns sort";
  model.didClickTableColumn(UninstallColumn::Size);
  EXPECT_STREQ(model.indicator(), "NSAscendingSortIndicator");
  EXPECT_EQ(names().back(), "Huge");
  model.didClickTableColumn(UninstallColumn::appname);
  EXPECT_STREQ(model.indicator(), "NSDescendingSortIndicator");
  const auto sorted = names();
  EXPECT_TRUE(std::is_sorted(sorted.rbegin(), sorted.rend()));
}

TEST_F(AppList, SearchHidesRowsButKeepsTheirTicks) {
  makeFortyBundles(root.path());
  makeBundle(root.path(), {"Applications/Übung.app", "com.example.uebung", "1", "Übung", ""});
  scan();
  EXPECT_EQ(model.selectCountLabel(), "Total: 31 Items");
  model.selectUninstallApp(rowOf("Test App"));
  model.controlTextDidChange("NOTES");
  EXPECT_THAT(names(), testing::UnorderedElementsAre("Notes", "Notes Pro"));
  EXPECT_EQ(model.headerTitle(), "   Applications(2)");
  EXPECT_EQ(model.selectCountLabel(), "Selected: 1 Items");
  EXPECT_STREQ(model.selectAllImage(), "halfsel");
  model.selectUninstallApp(0);
  EXPECT_STREQ(model.selectAllImage(), "sel") << "as many ticked as shown";
  model.selectAllButtonAction();
  EXPECT_TRUE(model.ticked().empty()) << "hidden ones too";
  EXPECT_FALSE(model.uninstallButtonEnabled());
  model.selectAllButtonAction();
  EXPECT_EQ(model.ticked(), model.showListArr());
  model.controlTextDidChange("üb");
  EXPECT_THAT(names(), testing::ElementsAre("Übung"));
  model.selectAllButtonAction();
  model.selectAllButtonAction();
  EXPECT_EQ(model.selectCountLabel(), "Total: 1 Item");
  model.controlTextDidChange("no such name");
  EXPECT_EQ(model.headerTitle(), "   Applications(0)");
  model.closeSearchButton();
  EXPECT_EQ(model.showListArr().size(), 31U);
}

TEST_F(AppList, TicksBelongToTheirTypeAndNothingIsTickedWhileScanning) {
  makeFortyBundles(root.path());
  model.begimScanFile();
  model.selectAllButtonAction();
  model.segmentClickAction(2);
  EXPECT_EQ(model.appsType(), 0);
  finish();
  EXPECT_TRUE(model.ticked().empty());
  model.selectUninstallApp(0);
  model.segmentClickAction(2);
  EXPECT_TRUE(model.ticked().empty());
  model.selectUninstallApp(0);
  model.selectUninstallApp(1);
  model.refButtonAction();
  EXPECT_TRUE(model.showListArr().empty());
  finish();
  EXPECT_EQ(model.showListArr().size(), 6U);
  EXPECT_TRUE(model.uninsatllPlugetsArr().empty());
  EXPECT_EQ(model.uninsatllAppArr().size(), 1U) << "another type is not searched again";
}

TEST_F(AppList, HostApplicationsFollowAndLeaveWithTheirPackageAndWhatItTook) {
  makeBundle(root.path(), {"Applications/Notes.app", "com.example.notes", "1.0", "Notes", ""});
  const auto add = [this](const std::string& id, const std::string& package) {
    InstalledApplication application;
    application.kind = InstalledApplication::Kind::package;
    application.desktopID = application.name = id;
    application.packageName = package;
    application.bytes = 5'000'000;
    installed->applications.push_back(application);
  };
  add("writer", "office");
  add("calc", "office");
  add("fonts", "office-fonts");
  installed->plans["writer"].alsoRemoves = {"office-fonts"};
  scan();
  ASSERT_THAT(names(), testing::ElementsAre("Notes", "writer", "calc", "fonts"));
  EXPECT_EQ(item("calc").size, "5.00 MB");
  EXPECT_EQ(item("calc").bundleID, "calc");
  installed->failures["writer"] = "The lock is taken.";
  remove(1);
  EXPECT_EQ(model.showListArr().size(), 4U) << "its package is still there";
  installed->failures.clear();
  remove(1);
  EXPECT_THAT(names(), testing::ElementsAre("Notes"));
}

TEST_F(AppList, WhatWasChosenLeavesWhateverTheListHasComeToMeanwhile) {
  makeFortyBundles(root.path());
  scan();
  model.selectUninstallApp(rowOf("Notes"));
  model.controlTextDidChange("test");
  ASSERT_EQ(model.showListArr().size(), 1U);
  EXPECT_EQ(model.oneAppRemove(0).front()->name, "Test App");
  model.closeSearchButton();
  model.didClickTableColumn(UninstallColumn::appname);
  model.completeCleanRelatedFiles(removal);
  EXPECT_EQ(model.showListArr().size(), 29U);
  EXPECT_THAT(names(), testing::Not(testing::Contains("Test App")));
  EXPECT_EQ(model.ticked().size(), 1U) << "a row's own button leaves the others ticked";
  EXPECT_EQ(model.uninstallAppButtonAction().size(), 1U);
  model.controlTextDidChange("tool");
  model.selectAllButtonAction();
  model.segmentClickAction(1);
  model.completeCleanRelatedFiles(removal);
  EXPECT_EQ(model.allApplications().size(), 28U);
  EXPECT_EQ(model.widgetsArr().size(), 4U);
  EXPECT_TRUE(model.uninsatllAppArr().empty());
  EXPECT_EQ(model.searchText(), "tool") << "it stays in the field";
}

TEST_F(AppList, ManyComeInBatchesAndNotOneByOne) {
  for (int i = 0; i < 400; ++i) {
    const std::string name = "App " + std::to_string(i);
    makeBundle(root.path(),
               {"Applications/" + name + ".app", "com.example." + name, "1", name, ""});
  }
  struct Batches : UninstallModelListener {
    int added = 0;
    void rowsAdded(std::size_t) override { ++added; }
  } batches;
  model.setListener(&batches);
  scan();
  model.setListener(nullptr);
  EXPECT_EQ(model.showListArr().size(), 400U);
  EXPECT_LT(batches.added, 100);
}

}  // namespace
}  // namespace brisko::test
