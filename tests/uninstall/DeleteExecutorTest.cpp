#include "AsMDeleteExecutor.h"
#include "FakeAuthorization.h"
#include "Machine.h"
#include "RelatedAppFilesScanner.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace brisko::test {
namespace {

struct Told : AsMDeleteExecutor::Delegate {
  std::vector<std::string> removed;
  std::vector<std::string> failed;
  std::vector<std::string> reasons;
  void deleteRelatedFile(const AppItem& item, const RemovalReport&) override {
    removed.push_back(item->path);
  }
  void deleteRelatedFileFail(const AppItem& item, const RemovalReport& report) override {
    failed.push_back(item->path);
    reasons.push_back(report.reason);
  }
  void deleteEnded() override {}
};

class DeleteExecutor : public testing::Test {
 protected:
  DeleteExecutor() : host(root.path()) {
    auto made = std::make_unique<FakeAuthorization>();
    authorization = made.get();
    Host::current().authorization = std::move(made);
    told = std::make_shared<Told>();
    executor = AsMDeleteExecutor::make(told);
  }
  AppItem entry(const std::string& path) { return RelatedAppFilesScanner::constructItem(path, 0); }

  TemporaryFolder root;
  TestHost host;
  FakeAuthorization* authorization = nullptr;
  std::shared_ptr<Told> told;
  std::shared_ptr<AsMDeleteExecutor> executor;
};

TEST_F(DeleteExecutor, OrdinaryRemovalAsksForNothingAndALinkGoesWithoutItsTarget) {
  const std::string target = root.file("kept/file", "content");
  const AppItem link = entry(root.link("Linked.app", root / "kept"));
  EXPECT_TRUE(executor->removeTrahFile(link));
  EXPECT_FALSE(exists(link->path));
  EXPECT_TRUE(exists(target));
  const std::string closed = root.folder("closed/inner");
  std::filesystem::permissions(closed, std::filesystem::perms::none);
  EXPECT_TRUE(executor->removeTrahFile(entry(root / "closed")));
  const AppItem tree = entry(root / "kept");
  executor->stop();
  EXPECT_FALSE(executor->removeTrahFile(tree));
  EXPECT_EQ(told->reasons.back(), "You stopped.");
  EXPECT_TRUE(exists(target));
  EXPECT_EQ(authorization->prompts, 0);
}

TEST_F(DeleteExecutor, EntryListedTwiceTakesTheRightOnceAndCountsAgain) {
  const AppItem first = entry(root.file("twice"));
  const AppItem second = entry(first->path);
  EXPECT_TRUE(executor->removeTrahFile(first));
  EXPECT_TRUE(executor->removeTrahFile(second));
  EXPECT_TRUE(executor->removeTrahFile(second));
  EXPECT_EQ(told->removed.size(), 3U);
  EXPECT_EQ(authorization->prompts, 1);
  EXPECT_TRUE(authorization->commands.empty()) << "whatever comes there now was not shown";
  // A closed prompt fails it, and each later one asks anew.
  executor->freeAuthorization();
  EXPECT_TRUE(authorization->open.empty());
  authorization->promptStatus = Authorization::kCancelled;
  EXPECT_FALSE(executor->removeTrahFile(second));
  EXPECT_FALSE(executor->removeTrahFile(second));
  EXPECT_EQ(authorization->prompts, 3);
  EXPECT_TRUE(host.logged("Copy Rights Unsuccessful: -60006"));
  EXPECT_TRUE(host.logged("Alloc authorization failed!!!"));
}

TEST_F(DeleteExecutor, NothingThatWasNotShownOrIsProtectedReachesTheAdministrator) {
  const AppItem exchanged = entry(root.file("a", "one"));
  std::filesystem::remove(exchanged->path);
  root.file("b");
  root.file("a", "another one");
  EXPECT_FALSE(executor->removeTrahFile(exchanged));
  const std::string home = root.folder("Users/anna/Library/Preferences");
  EXPECT_FALSE(executor->removeTrahFile(entry(home)));
  root.link("way", root / "Users");
  EXPECT_FALSE(executor->removeTrahFile(entry(root / "way/anna")));
  const AppItem vanished = entry(root / "vanished");
  root.file("vanished");
  EXPECT_FALSE(executor->removeTrahFile(vanished)) << "it came after the review";
  EXPECT_TRUE(exists(root / "vanished"));
  EXPECT_EQ(told->failed.size(), 4U);
  EXPECT_EQ(authorization->prompts, 0);
}

TEST_F(DeleteExecutor, WhatTheUserMayNotRemoveGoesToTheTool) {
  if (!isRoot()) GTEST_SKIP() << "making a file that cannot be removed needs root";
  const AppItem fixed = entry(root.file("fixed"));
  if (!setImmutable(fixed->path, true)) GTEST_SKIP() << "the file system has no such attribute";
  authorization->output = "rm: cannot remove it";
  EXPECT_FALSE(executor->removeTrahFile(fixed));
  EXPECT_TRUE(host.logged("Clean file by authorization failed: " + fixed->path));
  authorization->output = "";
  authorization->tool = [](const std::string& path) {
    setImmutable(path, false);
    std::filesystem::remove(path);
  };
  EXPECT_TRUE(executor->removeTrahFile(fixed));
  EXPECT_EQ(authorization->commands.back(),
            (std::vector<std::string>{"/bin/rm", "-rf", fixed->path}));
  EXPECT_EQ(authorization->shown.back(), fixed->identity);
  EXPECT_EQ(authorization->prompts, 1);
  EXPECT_EQ(authorization->open.size(), 1U) << "each call gives its handle back";
}

}  // namespace
}  // namespace brisko::test
