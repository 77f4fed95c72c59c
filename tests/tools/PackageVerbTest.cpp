// The removal helper's verb for packages: the real program, asked through its socket and through
// the service that a user's process has.

#include "FileDescriptor.h"
#include "HelperProtocol.h"
#include "LinuxAuthorization.h"
#include "Machine.h"
#include "RootLauncher.h"
#include "TestHost.h"
#include "TrialPackages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/wait.h>

namespace brisko::test {
namespace {

using helper::Message;
using helper::Type;
using testing::HasSubstr;

Message requestFor(std::vector<std::string> packages) {
  Message request;
  request.type = Type::removePackages;
  request.packages = std::move(packages);
  return request;
}

TEST(PackageMessageTest, OnlyNamesOfPackagesAreCarried) {
  const std::vector<std::string> names = {"libc6:i386", "g++", "vim"};
  const std::string bytes = helper::encode(requestFor(names));
  const auto read = helper::decode(std::string_view(bytes).substr(4));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->packages, names);
  for (std::size_t cut = 1; cut < bytes.size() - 4; ++cut) {
    const auto part = helper::decode(std::string_view(bytes).substr(4, cut));
    EXPECT_TRUE(!part || part->packages.size() < names.size()) << cut;
  }
  for (const char* name : {"", "-y", "a b", "../x.deb", "Vim", "a*", "a\n"}) {
    EXPECT_EQ(helper::encode(requestFor({"vim", name})), "") << name;
    // As an attacker would write it.
    std::string forged = "A" + std::string(32, '\0') + "vim" + '\0' + name + '\0';
    EXPECT_FALSE(helper::decode(forged)) << name;
  }
  EXPECT_EQ(helper::encode(requestFor({})), "");
  EXPECT_FALSE(helper::decode("A" + std::string(32, '\0'))) << "no package at all";
  EXPECT_FALSE(helper::decode(std::string("G\xff\xff", 3))) << "more than the whole";
}

using PackageVerbTest = WithTrialPackage;

TEST_F(PackageVerbTest, TheHelperMakesItsOwnPlan) {
  int pair[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair), 0);
  FileDescriptor socket(pair[0]);
  const pid_t process = launch({builtHelper()}, pair[1]);
  close(pair[1]);
  const auto hello = helper::receive(socket.get());
  ASSERT_TRUE(hello);
  const auto denial = [&](std::vector<std::string> names) {
    Message request = requestFor(std::move(names));
    request.token = hello->token;
    EXPECT_TRUE(helper::send(socket.get(), request));
    const auto reply = helper::receive(socket.get());
    return reply && reply->type == Type::denied ? reply->output : "not denied";
  };
  ASSERT_EQ(packages.install("dependent", "Depends: " + application + "\n"), "");
  EXPECT_THAT(denial({application}), HasSubstr("Something else"));
  EXPECT_THAT(denial({"zz-trial-none"}), HasSubstr("not installed"));
  // The second name goes with no package: should the first refusal fail, this one still holds.
  EXPECT_THAT(denial({"dpkg", "zz-trial-none"}), HasSubstr("does not work without"));
  EXPECT_TRUE(TrialPackages::isInstalled("application"));

  // Whoever has not got the token is not talked to.
  Message request = requestFor({application, TrialPackages::full("dependent")});
  EXPECT_TRUE(helper::send(socket.get(), request));
  EXPECT_FALSE(helper::receive(socket.get()));
  socket.reset();
  waitpid(process, nullptr, 0);
  EXPECT_TRUE(TrialPackages::isInstalled("application"));
}

TEST_F(PackageVerbTest, AUserRemovesAPackageWithTheAdministratorsRight) {
  const RootLauncher launcher(kNobody);
  const int status = asUser(kNobody, [&] {
    auto host = makeHost({});
    host->authorization = std::make_unique<LinuxAuthorization>(launcher.launcher());
    const auto before = Host::install(std::move(host));
    InstalledApplications& service = *Host::current().installedApplications;
    for (const InstalledApplication& found : service.list()) {
      if (found.desktopID != application) continue;
      const UninstallPlan plan = service.plan(found);
      double last = 0;
      const std::string why = service.remove(found, plan, [&](double part) { last = part; });
      if (!why.empty()) std::fprintf(stderr, "%s %s\n", plan.refusal.c_str(), why.c_str());
      return why.empty() && last > 0 ? 0 : 1;
    }
    return 2;
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(launcher.starts(), 1);
  EXPECT_FALSE(TrialPackages::isInstalled("application"));
}

}  // namespace
}  // namespace brisko::test
