#include "CommUti.h"
#include "Dispatch.h"
#include "FakeAuthorization.h"
#include "FakeInstalledApplications.h"
#include "FakeWorkspace.h"
#include "MadeApplications.h"
#include "RelatedFilesModel.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace brisko::test {
namespace {

using testing::Contains;
using Role = AMAppItem::Role;

class Review : public testing::Test, public RelatedFilesModelListener {
 protected:
  Review() : host(root.path()) {
    Dispatch::attachMainThread();
    auto fakeWorkspace = std::make_unique<FakeWorkspace>();
    workspace = fakeWorkspace.get();
    Host::current().workspace = std::move(fakeWorkspace);
    auto fakeInstalled = std::make_unique<FakeInstalledApplications>();
    installed = fakeInstalled.get();
    Host::current().installedApplications = std::move(fakeInstalled);
    auto fakeAuthorization = std::make_unique<FakeAuthorization>();
    authorization = fakeAuthorization.get();
    Host::current().authorization = std::move(fakeAuthorization);
    model.setListener(this);
  }
  ~Review() override {
    model.setListener(nullptr);
    Dispatch::waitForBackground();
  }

  void progressChanged() override { values.push_back(model.progressValue()); }

  AppItem bundle(const MadeBundle& made) {
    return RelatedAppFilesScanner::constructItem(makeBundle(root.path(), made), 1);
  }
  static AppItem hostItem(const InstalledApplication& application) {
    auto item = std::make_shared<AMAppItem>();
    item->role = Role::package;
    item->name = application.name;
    item->bundleID = application.desktopID;
    item->path = application.path;
    item->host = std::make_shared<InstalledApplication>(application);
    return item;
  }
  static InstalledApplication package(const std::string& id, const std::string& name) {
    InstalledApplication application;
    application.kind = InstalledApplication::Kind::package;
    application.desktopID = id;
    application.name = name;
    application.packageName = id;
    application.path = "/usr/share/applications/" + id + ".desktop";
    application.keys = {id};
    return application;
  }
  void open(const AppItems& chosen, const AppItems& all) {
    model.setAllRelaltedFiles(chosen, all);
    EXPECT_FALSE(model.uninstallButtonEnabled());
    Dispatch::runUntil([&] { return model.isComplete() && model.isMeasured(); });
  }
  const AppItem& entry(const std::string& end) {
    for (const ReviewGroup& group : model.allRelaltedFiles()) {
      for (const AppItem& each : group.entries)
        if (each->path.ends_with(end)) return each;
    }
    ADD_FAILURE() << end;
    return model.allRelaltedFiles()[0].entries[0];
  }
  void remove() {
    model.doRemove();
    Dispatch::runUntil([&] { return !model.isRemoving(); });
  }

  TemporaryFolder root;
  TestHost host;
  FakeWorkspace* workspace = nullptr;
  FakeInstalledApplications* installed = nullptr;
  FakeAuthorization* authorization = nullptr;
  std::vector<int> values;
  RelatedFilesModel model;
};

TEST_F(Review, EverythingOfABundleStartsTickedAndBoxesFollow) {
  const AppItem app = bundle({"Applications/Foo.app", "com.example.foo", "1", "Foo", ""});
  const AppItem other = bundle({"Applications/Foo Bar.app", "com.example.bar", "1", "Foo Bar", ""});
  root.sizedFile("Users/anna/Library/Caches/foo", 3'000'000);
  root.sizedFile("Users/anna/Library/Caches/foobar.db", 2'000'000);
  workspace->applications = {{"", "Foo", app->path + "/Contents/MacOS/program", "", 7}};
  open({app, other}, {app, other});
  ASSERT_EQ(model.allRelaltedFiles()[0].entries.size(), 3U);
  EXPECT_EQ(model.selectDeletePath().size(), 5U);
  EXPECT_STREQ(model.boxImage(std::size_t{0}), "sel");
  EXPECT_EQ(entry("foobar.db")->sharedWith, "Foo Bar");
  EXPECT_EQ(entry("Caches/foo")->sharedWith, "");
  EXPECT_EQ(model.selectedCount(), 4U) << "one entry is listed in both groups";
  EXPECT_THAT(model.warnings(),
              testing::ElementsAre("Foo is running. It will be removed all the same."));
  std::uint64_t sum = 0;
  for (const AppItem& each : model.allRelaltedFiles()[0].entries)
    sum += CommUti::volSpaceFromString(each->size);
  EXPECT_EQ(model.sizeText(0), CommUti::convertVolSpace(sum));
  model.selectRemoveLanguage(entry("Caches/foo"));
  EXPECT_STREQ(model.boxImage(std::size_t{0}), "halfsel");
  model.selectRemoveLanguage(std::size_t{0});
  EXPECT_STREQ(model.boxImage(std::size_t{0}), "sel");
  model.selectRemoveLanguage(std::size_t{0});
  EXPECT_STREQ(model.boxImage(std::size_t{0}), "unsel");
  model.selectRemoveLanguage(std::size_t{1});
  EXPECT_FALSE(model.uninstallButtonEnabled());
  model.doRemove();
  EXPECT_FALSE(model.isRemoving());
}

TEST_F(Review, RemovalGoesInOrderWithItsCoarseProgressAndItsSentence) {
  const AppItem app = bundle({"Applications/Foo.app", "foo.bar", "1", "Foo", "", 1'000'000});
  const std::string kept = root.file("Users/anna/Library/Caches/other", "x");
  root.sizedFile("Users/anna/Library/Caches/foo.bar", 5'000'000);
  open({app}, {app});
  ASSERT_EQ(model.selectDeletePath().size(), 3U) << "the cache fits by name and by identifier";
  model.doRemove();
  EXPECT_EQ(model.progressValue(), 10);
  Dispatch::runUntil([&] { return !model.isRemoving(); });
  EXPECT_EQ(values, (std::vector<int>{0, 0, 100}));
  EXPECT_FALSE(exists(app->path));
  EXPECT_TRUE(exists(kept));
  EXPECT_EQ(authorization->prompts, 1) << "for the entry that is gone already";
  EXPECT_FALSE(model.isFail());
  EXPECT_EQ(model.totalSize(), 11'000'000U);
  EXPECT_EQ(model.messageLabel(),
            "Brisko has successfully removed the selected application(s) and all associated files. "
            "Free up 11.00 MB MB disk space.");
  EXPECT_LT(model.freedBytes(), 1'000'000U) << "sparse files give little back, and once";
  model.uninstallEnd();
  EXPECT_TRUE(model.allRelaltedFiles().empty());
}

TEST_F(Review, WhatStaysIsToldAndAddsNothing) {
  const AppItem app = bundle({"Applications/Foo.app", "com.example.foo", "1", "Foo", ""});
  root.sizedFile("Users/anna/Library/Caches/foo", 5'000'000);
  open({app}, {app});
  root.sizedFile("Users/anna/Library/Caches/foo", 5'000'001);
  model.selectRemoveLanguage(entry("Foo.app"));
  remove();
  EXPECT_TRUE(model.isFail());
  EXPECT_EQ(model.totalSize(), 0U);
  ASSERT_EQ(model.failures().size(), 1U);
  EXPECT_EQ(model.failures()[0].reason, "It is not the item that was shown any more.");
  EXPECT_EQ(values, (std::vector<int>{100}));
  EXPECT_TRUE(exists(app->path));
}

TEST_F(Review, HostApplicationShowsWhatGoesWithItAndWhatItSharesStartsUnticked) {
  const Environment config("XDG_CONFIG_HOME", (root / "config").c_str());
  for (const char* name : {"draw/a", "draw-extras/a", "drawing/a", "drawio/a", "Sketch Pad/a",
                           "fontconfig/a", "other/a"})
    root.file("config/" + std::string(name));
  const AppItem draw = hostItem(package("draw", "Sketch Pad"));
  const AppItem io = hostItem(package("drawio", "Diagrams"));
  UninstallPlan plan;
  plan.removes = {"draw"};
  plan.alsoRemoves = {"draw-plugins"};
  plan.bytes = 9'000'000;
  installed->plans["draw"] = plan;
  open({draw}, {draw, io});
  const ReviewGroup& group = model.allRelaltedFiles()[0];
  EXPECT_EQ(group.entries[0]->role, Role::package);
  EXPECT_EQ(group.entries[0]->size, "9.00 MB");
  EXPECT_EQ(group.entries[1]->role, Role::packageAlong);
  EXPECT_STREQ(model.boxImage(group.entries[1]), "sel");
  EXPECT_STREQ(model.boxImage(entry("config/draw")), "sel");
  EXPECT_STREQ(model.boxImage(entry("draw-extras")), "sel");
  EXPECT_STREQ(model.boxImage(entry("config/drawio")), "unsel");
  EXPECT_EQ(entry("config/drawio")->sharedWith, "Diagrams");
  EXPECT_STREQ(model.boxImage(entry("config/drawing")), "unsel") << "in the middle of a word";
  EXPECT_STREQ(model.boxImage(entry("Sketch Pad")), "unsel") << "by the shown name alone";
  EXPECT_EQ(group.entries.size(), 7U);
  model.selectRemoveLanguage(group.entries[0]);
  EXPECT_STREQ(model.boxImage(group.entries[1]), "unsel") << "it goes only with the package";
  model.selectRemoveLanguage(group.entries[1]);
  EXPECT_STREQ(model.boxImage(group.entries[1]), "unsel");
  model.selectRemoveLanguage(group.entries[0]);
  remove();
  EXPECT_THAT(installed->removed, Contains("draw"));
  EXPECT_TRUE(model.hasRemovedPackage(*draw));
  EXPECT_FALSE(exists(root / "config/draw"));
  EXPECT_TRUE(exists(root / "config/drawio"));
  EXPECT_TRUE(exists(root / "config/fontconfig"));
}

TEST_F(Review, WhatBelongsToAPackageStaysWhenThePackageDoes) {
  const Environment config("XDG_CONFIG_HOME", (root / "config").c_str());
  root.file("config/draw/a");
  const AppItem draw = hostItem(package("draw", "Draw"));
  installed->failures["draw"] = "Another program is installing software.";
  open({draw}, {draw});
  model.selectRemoveLanguage(entry("draw"));
  model.selectRemoveLanguage(entry("draw"));
  ASSERT_EQ(model.selectDeletePath().size(), 2U);
  remove();
  EXPECT_EQ(model.failures().size(), 2U) << "the package goes first, also when it was ticked last";
  EXPECT_FALSE(model.hasRemovedPackage(*draw));
  EXPECT_TRUE(exists(root / "config/draw/a"));
}

TEST_F(Review, RefusedPackageStaysWithItsSettingsUnlessTheUserSaysSo) {
  const Environment config("XDG_CONFIG_HOME", (root / "config").c_str());
  root.file("config/shell/a");
  const AppItem shell = hostItem(package("shell", "Shell"));
  installed->plans["shell"].refusal = "The system needs it.";
  open({shell}, {shell});
  EXPECT_STREQ(model.boxImage(entry("shell")), "disable");
  EXPECT_STREQ(model.boxImage(entry("config/shell")), "unsel");
  EXPECT_THAT(model.warnings(), testing::ElementsAre("Shell: The system needs it."));
  EXPECT_FALSE(model.uninstallButtonEnabled());
  model.selectRemoveLanguage(std::size_t{0});
  remove();
  EXPECT_FALSE(exists(root / "config/shell"));
  EXPECT_TRUE(installed->removed.empty());
}

TEST_F(Review, PackagesThatGoTogetherAreRemovedOnceInAnyOrder) {
  const AppItem base = hostItem(package("base", "Base"));
  const AppItem plugin = hostItem(package("plugin", "Plugin"));
  InstalledApplication further = package("viewer", "Viewer");
  further.packageName = "base";
  further.keys = {"base"};
  const AppItem viewer = hostItem(further);
  installed->plans["base"].alsoRemoves = {"plugin"};
  installed->plans["base"].bytes = 3'000'000;
  installed->plans["plugin"].bytes = 1'000'000;
  const Environment config("XDG_CONFIG_HOME", (root / "config").c_str());
  for (const AppItems& chosen : {AppItems{base, plugin, viewer}, AppItems{plugin, base, viewer}}) {
    installed->removed.clear();
    root.file("config/base");
    open(chosen, chosen);
    EXPECT_EQ(model.selectedBytes(), 3'000'000U);
    remove();
    EXPECT_TRUE(model.failures().empty());
    EXPECT_EQ(authorization->prompts, 0) << "not for the settings that both have";
    EXPECT_THAT(installed->removed, testing::UnorderedElementsAre("base", "plugin"));
    for (const AppItem& item : chosen)
      EXPECT_TRUE(model.hasRemovedPackage(*item)) << item->name;
    EXPECT_EQ(model.freedBytes(), 3'000'000U) << "what the one took along is in its figure";
  }
}

}  // namespace
}  // namespace brisko::test
