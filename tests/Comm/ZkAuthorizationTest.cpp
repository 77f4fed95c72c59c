#include "FakeAuthorization.h"
#include "Host.h"
#include "Machine.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "ZkAuthorization.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

mode_t modeOf(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

// An item that root itself cannot remove by the ordinary way, so that the privileged one is tried.
class ZkAuthorizationTest : public testing::Test {
 protected:
  void SetUp() override {
    auto made = std::make_unique<FakeAuthorization>();
    fake = made.get();
    host.host().authorization = std::move(made);
    stubborn = folder.file("stubborn", "x");
    if (!setImmutable(stubborn, true)) GTEST_SKIP() << "because nothing can be made immutable here";
    fake->tool = [](const std::string& path) {
      setImmutable(path, false);
      fs::remove_all(path);
    };
  }
  void TearDown() override {
    if (exists(stubborn)) setImmutable(stubborn, false);
    ZkAuthorization::shareZkAuthorization().freeAuthorization();
  }
  std::string stubbornAgain() {
    folder.file("stubborn", "x");
    setImmutable(stubborn, true);
    return stubborn;
  }

  TemporaryFolder folder;
  TestHost host;
  FakeAuthorization* fake = nullptr;
  std::string stubborn;
};

TEST_F(ZkAuthorizationTest, TheRightIsAskedForOncePerRunAndEachCallHasAHandleOfItsOwn) {
  {
    ZkAuthorization service;
    EXPECT_TRUE(service.synFastRemovePath(folder.file("plain")));
    EXPECT_EQ(fake->prompts, 0);
    EXPECT_FALSE(service.isValidAuth());

    const auto shown = FileIdentity::at(stubborn);
    EXPECT_TRUE(service.synFastRemovePath(stubborn));
    EXPECT_TRUE(service.isValidAuth());
    EXPECT_THAT(fake->commands, ElementsAre(ElementsAre("/bin/rm", "-rf", stubborn)));
    EXPECT_THAT(fake->shown, ElementsAre(shown));
    EXPECT_TRUE(service.synFastRemovePath(stubbornAgain()));
    EXPECT_EQ(fake->prompts, 1);
    EXPECT_THAT(fake->flags, ElementsAre(19U, 3U, 3U));
    EXPECT_THAT(fake->rights, testing::Each(std::string("system.privilege.admin")));
    EXPECT_EQ(fake->open.size(), 1U);
  }
  EXPECT_THAT(fake->open, IsEmpty());
}

TEST_F(ZkAuthorizationTest, ARefusedPromptFailsThatRemovalAndTheNextAsksAgain) {
  ZkAuthorization service;
  fake->promptStatus = Authorization::kCancelled;
  const RemovalReport report = service.synFastRemovePath(stubborn, FileIdentity::at(stubborn));
  EXPECT_EQ(report.outcome, RemovalOutcome::cancelled);
  EXPECT_TRUE(host.logged("Copy Rights failed: -60006"));
  EXPECT_TRUE(exists(stubborn));
  EXPECT_THAT(fake->open, IsEmpty());

  fake->promptStatus = 0;
  EXPECT_TRUE(service.synFastRemovePath(stubborn));
  EXPECT_EQ(fake->prompts, 2);
}

TEST_F(ZkAuthorizationTest, EachStepThatFailsIsLoggedWithItsStatus) {
  struct Case {
    int FakeAuthorization::*status;
    const char* line;
    bool removed;
  };
  const Case cases[] = {
      {&FakeAuthorization::createStatus, "Error Creating Initial Authorization: -7", false},
      {&FakeAuthorization::promptStatus, "Copy Rights failed: -7", false},
      {&FakeAuthorization::externalFormStatus, "Make ExternalForm failed: -7", false},
      {&FakeAuthorization::rebuildStatus, "Creat Ret failed: -7", false},
      {&FakeAuthorization::rightsAgainStatus, "Copy Rights failed: -7", true},
      {&FakeAuthorization::definitionStatus, "Get Rights failed: -7", true},
      {&FakeAuthorization::executeStatus, nullptr, false},
      {&FakeAuthorization::freeStatus, nullptr, true},
  };
  const auto remove = fake->tool;
  for (const Case& step : cases) {
    ZkAuthorization service;
    fake->*step.status = -7;
    fake->tool = step.removed ? remove : nullptr;
    EXPECT_EQ(service.synFastRemovePath(stubborn), step.removed) << step.line;
    EXPECT_TRUE(step.line == nullptr || host.logged(step.line)) << step.line;
    if (step.status == &FakeAuthorization::freeStatus) {
      EXPECT_TRUE(service.freeAuthorization());
      EXPECT_TRUE(host.logged("Free Rights failed: -7"));
    }
    fake->*step.status = 0;
    if (!exists(stubborn)) stubbornAgain();
  }
}

TEST_F(ZkAuthorizationTest, WhatTheToolPrintsIsItsFailure) {
  ZkAuthorization service;
  fake->tool = nullptr;
  fake->output = "rm: cannot remove";
  const RemovalReport report = service.synFastRemovePath(stubborn, std::nullopt);
  EXPECT_EQ(report.outcome, RemovalOutcome::failed);
  EXPECT_EQ(report.reason, "rm: cannot remove");
}

TEST_F(ZkAuthorizationTest, AfterTheHelperDiedTheNextRemovalAsksAgain) {
  ZkAuthorization service;
  fake->executeStatus = Authorization::kToolFailed;
  fake->tool = nullptr;
  EXPECT_FALSE(service.synFastRemovePath(stubborn));
  EXPECT_FALSE(service.isValidAuth());
  EXPECT_FALSE(service.synFastRemovePath(stubborn));
  EXPECT_EQ(fake->prompts, 2);
}

TEST_F(ZkAuthorizationTest, WhatMayNotGoOrIsNotThereNeverPrompts) {
  ZkAuthorization service;
  const auto outcome = [&](const std::string& path, std::optional<FileIdentity> shown = {}) {
    return service.synFastRemovePath(path, shown).outcome;
  };
  FileIdentity other = *FileIdentity::at(stubborn);
  ++other.inode;
  folder.link("link", ".");
  EXPECT_EQ(outcome("/etc/passwd"), RemovalOutcome::protectedPath);
  EXPECT_EQ(outcome("/proc"), RemovalOutcome::protectedPath);
  EXPECT_EQ(outcome(stubborn, other), RemovalOutcome::changed);
  EXPECT_EQ(outcome(folder / "link/stubborn"), RemovalOutcome::throughLink);
  EXPECT_EQ(outcome(folder / "absent"), RemovalOutcome::missing);
  EXPECT_TRUE(service.synFastRemovePath(folder / "absent"));
  EXPECT_FALSE(ZkAuthorization::removeItemAtPath("/etc/passwd"));
  EXPECT_FALSE(ZkAuthorization::removeItemAtPath("relative"));
  EXPECT_TRUE(exists("/etc/passwd"));
  EXPECT_EQ(fake->prompts, 0);
}

TEST_F(ZkAuthorizationTest, APathThatOutgrowsTheBufferFailsWithoutAPrompt) {
  const auto longPath = [&](const std::string& letter, std::size_t bytes) {
    std::string path = folder.path();
    while (path.size() + 120 < bytes) {
      path += '/';
      for (int i = 0; i < 48; ++i)
        path += letter;
    }
    path += "/";
    while (path.size() + letter.size() <= bytes)
      path += letter;
    return path.append(bytes - path.size(), 'x');
  };
  // The limit is the larger of the characters and 260, less one.
  struct Case {
    std::string letter;
    std::size_t bytes;
    bool fits;
  };
  for (const Case& path : {Case{"a", 259, true}, Case{"a", 260, false}, Case{"a", 400, false},
                           Case{"\xc3\xa9", 259, true}, Case{"\xc3\xa9", 600, false}}) {
    const std::string file = longPath(path.letter, path.bytes);
    ASSERT_EQ(file.size(), path.bytes);
    fs::create_directories(fs::path(file).parent_path());
    folder.file(file.substr(folder.path().size() + 1));
    const int before = fake->prompts;
    EXPECT_EQ(ZkAuthorization::removeItemAtPath(file), path.fits) << path.bytes;
    EXPECT_EQ(exists(file), !path.fits);
    ZkAuthorization::shareZkAuthorization().freeAuthorization();
    EXPECT_EQ(fake->prompts - before, path.fits ? 1 : 0) << path.bytes;
  }
}

TEST_F(ZkAuthorizationTest, ABlessedJobNeedsNothingOnceTheRightIsHeld) {
  ZkAuthorization service;
  int error = 0;
  fake->promptStatus = -5;
  EXPECT_FALSE(service.blessHelperWithLabel("job", &error));
  EXPECT_EQ(error, -5);
  EXPECT_TRUE(host.logged("Failed to create AuthorizationRef. Error code: -5"));
  EXPECT_EQ(fake->rights.back(), "com.apple.ServiceManagement.blesshelper");
  fake->promptStatus = 0;
  EXPECT_FALSE(service.blessHelperWithLabel("job", &error));
  ASSERT_TRUE(service.allocAuthorization());
  EXPECT_TRUE(service.blessHelperWithLabel("job", nullptr));
}

TEST_F(ZkAuthorizationTest, AnItemMadeDeletableGetsItsModeBackWhenItStays) {
  if (!isRoot()) GTEST_SKIP() << "because becoming another user needs root";
  chmod(folder.path().c_str(), 0755);
  fake->promptStatus = Authorization::kCancelled;
  for (const char* name : {"mine", "target"}) {
    ASSERT_EQ(chown(folder.file(name).c_str(), kNobody, kNobody), 0);
    chmod((folder / name).c_str(), 0440);
  }
  ASSERT_EQ(lchown(folder.link("link", "target").c_str(), kNobody, kNobody), 0);
  chmod(folder.file("root's").c_str(), 0440);
  EXPECT_EQ(asUser(kNobody,
                   [&] {
                     ZkAuthorization service;
                     mode_t during = 0;
                     host.host();
                     const auto remove = [&](const char* name) {
                       return service.synFastRemovePath(folder / name);
                     };
                     SystemLog::setSink([&](std::string_view line) {
                       // The ordinary removal has just failed: the item is as it was made.
                       if (line.starts_with("Remove failed") && during == 0)
                         during = modeOf(folder / "mine");
                     });
                     if (remove("mine") || during != 0740) return 1;
                     bool logged = false;
                     SystemLog::setSink([&](std::string_view line) {
                       logged |= line == "Set deletable attributed failed: Operation not permitted";
                     });
                     if (remove("link") || logged) return 2;
                     if (remove("root's") || !logged) return 3;
                     SystemLog::setSink({});
                     return 0;
                   }),
            0);
  for (const char* name : {"mine", "target", "root's"}) {
    EXPECT_EQ(modeOf(folder / name), 0440U) << name;
  }
}

}  // namespace
}  // namespace brisko::test
