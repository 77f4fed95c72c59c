#include "Host.h"
#include "LinuxAuthorization.h"
#include "LogCapture.h"
#include "Machine.h"
#include "RootLauncher.h"
#include "TemporaryFolder.h"
#include "ZkAuthorization.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(LaunchCommandTest, EachMachineIsAskedInItsOwnWayAndNoneIsLeftHanging) {
  LaunchFacts facts;
  const auto first = [&] {
    const auto command = launchCommand(facts, "/libexec/helper");
    return command.size() < 2 ? command
                              : std::vector<std::string>{command[0], command[1], command.back()};
  };
  EXPECT_THAT(first(), IsEmpty());
  facts.hasSudo = true;
  EXPECT_THAT(first(), ElementsAre("/usr/bin/sudo", "-n", "/libexec/helper"));
  facts.hasTerminal = true;
  EXPECT_THAT(first(), ElementsAre("/usr/bin/sudo", "-p", "/libexec/helper"));
  facts.hasAskPass = true;
  EXPECT_THAT(first(), ElementsAre("/usr/bin/sudo", "-A", "/libexec/helper"));
  facts.hasPolkit = true;
  EXPECT_THAT(launchCommand(facts, "/libexec/helper"),
              ElementsAre("/usr/bin/pkexec", "/libexec/helper"));
  facts.isRoot = true;
  EXPECT_THAT(launchCommand(facts, "/libexec/helper"), ElementsAre("/libexec/helper"));
}

TEST(LaunchCommandTest, TheEnvironmentDoesNotSayWhatIsStartedAsRoot) {
  const std::string before = removalHelperPath();
  setenv("BRISKO_TOOLS", "/tmp", 1);
  EXPECT_EQ(removalHelperPath(), before);
  unsetenv("BRISKO_TOOLS");
  EXPECT_TRUE(before.starts_with(buildTree())) << before;
}

class LinuxAuthorizationTest : public testing::Test {
 protected:
  static int obtain(LinuxAuthorization& authorization, Authorization::Reference& reference) {
    authorization.create(reference);
    return authorization.copyRights(reference, "system.privilege.admin", 19);
  }
  // Puts a service with the real helper in place, and is nobody while `work` runs.
  int asNobody(const std::function<int(ZkAuthorization&)>& work) {
    return asUser(kNobody, [&] {
      auto host = makeHost({});
      host->authorization = std::make_unique<LinuxAuthorization>(launcher.launcher());
      const auto before = Host::install(std::move(host));
      ZkAuthorization service;
      return work(service);
    });
  }
  void SetUp() override {
    if (!isRoot()) GTEST_SKIP() << "because becoming another user needs root";
    chmod(folder.path().c_str(), 0755);
  }

  TemporaryFolder folder;
  RootLauncher launcher{kNobody};
};

TEST_F(LinuxAuthorizationTest, AUserRemovesRootsFilesWithOneHelperForTheRun) {
  folder.file("root's/a", std::string(50000, 'x'));
  folder.file("root's/tree/b/c");
  folder.file("stays");
  EXPECT_EQ(asNobody([&](ZkAuthorization& service) {
              const auto first = service.synFastRemovePath(folder / "root's/a",
                                                           FileIdentity::at(folder / "root's/a"));
              if (!first.removed() || first.freedBytes < 50000) return 1;
              if (!service.synFastRemovePath(folder / "root's/tree")) return 2;
              if (!service.synFastRemovePath(folder / "absent")) return 4;
              return 0;
            }),
            0);
  EXPECT_EQ(launcher.starts(), 1);
  EXPECT_FALSE(exists(folder / "root's/a"));
  EXPECT_FALSE(exists(folder / "root's/tree"));
  EXPECT_TRUE(exists(folder / "stays"));
}

TEST_F(LinuxAuthorizationTest, WhatRootCannotRemoveEitherIsReportedWithRmsWords) {
  const std::string fixed = folder.file("tree/fixed");
  if (!setImmutable(fixed, true)) GTEST_SKIP() << "because nothing can be made immutable here";
  EXPECT_EQ(asNobody([&](ZkAuthorization& service) {
              const auto report = service.synFastRemovePath(folder / "tree", std::nullopt);
              return report.outcome == RemovalOutcome::failed &&
                             report.reason.starts_with("/bin/rm: cannot")
                         ? 0
                         : 1;
            }),
            0);
  EXPECT_TRUE(exists(fixed));
  setImmutable(fixed, false);
}

TEST_F(LinuxAuthorizationTest, AHelperThatDiesCostsOneRemovalAndTheNextOneStartsAnother) {
  for (const char* name : {"dir/a", "dir/b", "dir/c"})
    folder.file(name);
  EXPECT_EQ(asNobody([&](ZkAuthorization& service) {
              if (!service.synFastRemovePath(folder / "dir/a")) return 1;
              service.freeAuthorization();
              return service.synFastRemovePath(folder / "dir/b") && service.isValidAuth() ? 0 : 2;
            }),
            0);
  EXPECT_EQ(launcher.starts(), 2);

  // One whose helper says something else than expected, or nothing.
  const auto talks = [](const std::string& bytes) {
    return [bytes](int socket) -> pid_t {
      return ::write(socket, bytes.data(), bytes.size()) < 0 ? -1 : 0;
    };
  };
  helper::Message hello;
  hello.type = helper::Type::hello;
  Authorization::Reference reference = 0;
  for (const std::string& bytes :
       {std::string(), std::string("garbage that is long"), std::string("\xff\xff\xff\xff"),
        std::string("\x01\0\0\0D", 5)}) {
    LinuxAuthorization authorization(talks(bytes));
    EXPECT_NE(obtain(authorization, reference), 0);
    Authorization::ExternalForm form{};
    EXPECT_NE(authorization.makeExternalForm(reference, form), 0);
  }
  LinuxAuthorization authorization(talks(helper::encode(hello)));
  ASSERT_EQ(obtain(authorization, reference), 0);
  Authorization::Result result;
  EXPECT_EQ(authorization.execute(reference, "/bin/rm", {"-rf", folder / "dir/c"}, {}, result),
            Authorization::kToolFailed);
  EXPECT_TRUE(exists(folder / "dir/c"));
}

TEST_F(LinuxAuthorizationTest, OnlyTheOneCommandAndOnlyWithTheRight) {
  const std::string file = folder.file("file");
  LinuxAuthorization authorization([](int socket) { return launch({builtHelper()}, socket); });
  Authorization::Result result;
  Authorization::Reference reference = 0;
  authorization.create(reference);
  const auto run = [&](const std::string& tool, std::vector<std::string> arguments) {
    return authorization.execute(reference, tool, arguments, {}, result);
  };
  EXPECT_EQ(run("/bin/rm", {"-rf", file}), Authorization::kInvalid);
  EXPECT_EQ(authorization.copyRights(reference, "system.privilege.admin", 0),
            Authorization::kDenied);
  EXPECT_EQ(authorization.copyRights(reference, "other.right", 19), Authorization::kDenied);
  ASSERT_EQ(authorization.copyRights(reference, "system.privilege.admin", 19), 0);
  EXPECT_EQ(run("/bin/sh", {"-c", "true"}), Authorization::kDenied);
  EXPECT_EQ(run("/bin/rm", {"-r", file}), Authorization::kDenied);
  EXPECT_EQ(run("/bin/rm", {"-rf", file, file}), Authorization::kDenied);
  EXPECT_TRUE(exists(file));

  Authorization::ExternalForm form{};
  Authorization::Reference second = 0;
  EXPECT_EQ(authorization.createFromExternalForm(form, second), Authorization::kInvalid);
  ASSERT_EQ(authorization.makeExternalForm(reference, form), 0);
  ASSERT_EQ(authorization.createFromExternalForm(form, second), 0);
  EXPECT_EQ(authorization.free(second), 0);
  EXPECT_EQ(run("/bin/rm", {"-rf", file}), 0);
  EXPECT_FALSE(exists(file));
  EXPECT_EQ(authorization.free(reference), 0);
  EXPECT_EQ(authorization.free(reference), Authorization::kInvalid);
}

TEST_F(LinuxAuthorizationTest, ACancelledPromptIsToldFromARefusedOne) {
  const auto ends = [&](const char* status) {
    const std::string script =
        folder.file(std::string("ends") + status, std::string("#!/bin/sh\nexit ") + status + "\n");
    chmod(script.c_str(), 0755);
    LinuxAuthorization authorization([script](int socket) { return launch({script}, socket); });
    Authorization::Reference reference = 0;
    return obtain(authorization, reference);
  };
  EXPECT_EQ(ends("126"), Authorization::kCancelled);
  EXPECT_EQ(ends("127"), Authorization::kDenied);
  EXPECT_EQ(ends("1"), Authorization::kDenied);
  LinuxAuthorization none([](int socket) { return launch({"/nonexistent"}, socket); });
  Authorization::Reference reference = 0;
  EXPECT_EQ(obtain(none, reference), Authorization::kToolFailed);
}

// The real way, without anybody to answer: it must come back, and refused.
TEST_F(LinuxAuthorizationTest, WithoutAnybodyToAskSudoAndPolkitRefuseAtOnce) {
  for (const bool polkit : {false, true}) {
    LaunchFacts facts;
    facts.hasPolkit = polkit;
    facts.hasSudo = true;
    const auto command = launchCommand(facts, builtHelper());
    if (access(command[0].c_str(), X_OK) != 0) GTEST_SKIP() << "because there is no " << command[0];
    EXPECT_EQ(asUser(kNobody,
                     [&] {
                       setsid();  // no terminal
                       LinuxAuthorization authorization(
                           [&](int socket) { return launch(command, socket); });
                       Authorization::Reference reference = 0;
                       return obtain(authorization, reference) == 0 ? 1 : 0;
                     }),
              0);
  }
}

// Through the real sudo, which lets root become root without a question.
TEST_F(LinuxAuthorizationTest, TheHelperWorksThroughSudo) {
  if (access("/usr/bin/sudo", X_OK) != 0) GTEST_SKIP() << "because there is no sudo";
  const std::string file = folder.file("file");
  LaunchFacts facts;
  facts.hasSudo = true;
  const auto command = launchCommand(facts, builtHelper());
  LinuxAuthorization authorization([&](int socket) { return launch(command, socket); });
  Authorization::Reference reference = 0;
  if (obtain(authorization, reference) != 0) {
    GTEST_SKIP() << "because this machine's sudo does not let root through";
  }
  Authorization::Result result;
  EXPECT_EQ(authorization.execute(reference, "/bin/rm", {"-rf", file}, {}, result), 0);
  EXPECT_FALSE(exists(file));
}

}  // namespace
}  // namespace brisko::test
