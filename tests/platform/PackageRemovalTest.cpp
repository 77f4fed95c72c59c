// Packages made for this test, installed on the machine and removed through the service. Nothing
// else of the machine is touched: they depend on each other only, and own two files of their own.

#include "AptTool.h"
#include "HostTools.h"
#include "LinuxAuthorization.h"
#include "LinuxInstalledApplications.h"
#include "Machine.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace brisko {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = InstalledApplication::Kind;

constexpr const char* kApplication = "zz-trial-application";
constexpr const char* kDependent = "zz-trial-dependent";
constexpr const char* kEssential = "zz-trial-essential";

class PackageRemovalTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!test::isRoot()) GTEST_SKIP() << "because only root may install packages";
    if (::access("/usr/bin/apt-get", X_OK) != 0 || ::access("/usr/bin/dpkg-deb", X_OK) != 0) {
      GTEST_SKIP() << "because this system has no Debian packages";
    }
    make(kApplication, "");
    const std::string why = install({kApplication});
    if (!why.empty()) GTEST_SKIP() << "because no package can be installed here: " << why;
    host_ = Host::install(makeHost({}));
  }
  void TearDown() override {
    if (host_) Host::install(std::move(host_));
    for (const char* name : {kEssential, kDependent, kApplication}) {
      if (isInstalled(name)) run({"dpkg", "--purge", "--force-remove-essential", name});
      EXPECT_FALSE(isInstalled(name)) << name;
    }
  }

  static HostTools::Outcome run(const std::vector<std::string>& words) {
    return HostTools::run(words);
  }
  static bool isInstalled(const std::string& name) {
    return run({"dpkg-query", "-W", "-f=${db:Status-Status}", name}).output == "installed";
  }
  void make(const std::string& name, const std::string& fields) {
    folder.file(name + "/DEBIAN/control", "Package: " + name +
                                              "\nVersion: 1.2-3\nArchitecture: all\n"
                                              "Maintainer: Nobody <nobody@example.org>\n"
                                              "Installed-Size: 12\n" +
                                              fields + "Description: made for a test\n");
    folder.file(name + "/usr/share/applications/" + name + ".desktop",
                "[Desktop Entry]\nType=Application\nName=Trial\nExec=true\n");
    run({"dpkg-deb", "--root-owner-group", "-b", folder / name, folder / name + ".deb"});
  }
  std::string install(const std::vector<std::string>& names) {
    std::vector<std::string> words = {"dpkg", "-i"};
    for (const std::string& name : names)
      words.push_back(folder / name + ".deb");
    const HostTools::Outcome outcome = run(words);
    return outcome.status == 0 ? "" : outcome.errors.substr(0, 200);
  }
  static InstalledApplications& service() { return *Host::current().installedApplications; }
  static InstalledApplication listed(const std::string& id) {
    for (const InstalledApplication& application : service().list()) {
      if (application.desktopID == id) return application;
    }
    return {};
  }

  test::TemporaryFolder folder;
  std::unique_ptr<Host> host_;
};

TEST_F(PackageRemovalTest, APackageIsListedPlannedAndRemovedWithNothingBesides) {
  const InstalledApplication application = listed(kApplication);
  ASSERT_EQ(application.packageName, kApplication);
  EXPECT_EQ(application.kind, Kind::package);
  EXPECT_EQ(application.version, "1.2-3");
  EXPECT_EQ(application.bytes, 12U * 1024);
  const auto others = run({"dpkg-query", "-W"}).output;
  const UninstallPlan plan = service().plan(application);
  ASSERT_EQ(plan.refusal, "");
  EXPECT_THAT(plan.removes, ElementsAre(kApplication));
  EXPECT_THAT(plan.alsoRemoves, IsEmpty());
  EXPECT_TRUE(isInstalled(kApplication)) << "a plan changes nothing";

  std::vector<double> steps;
  EXPECT_EQ(service().remove(application, plan, [&](double part) { steps.push_back(part); }), "");
  EXPECT_FALSE(isInstalled(kApplication));
  ASSERT_FALSE(steps.empty());
  EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
  EXPECT_LE(steps.back(), 1);
  EXPECT_EQ(others.size() - run({"dpkg-query", "-W"}).output.size(),
            std::string(kApplication).size() + sizeof "\t1.2-3\n" - 1)
      << "nothing else went";
  EXPECT_THAT(service().remove(application, plan, nullptr), HasSubstr("not installed any more"));
}

TEST_F(PackageRemovalTest, WhatWasShownMustStillBeWhatGoes) {
  const InstalledApplication application = listed(kApplication);
  const UninstallPlan before = service().plan(application);
  make(kDependent, std::string("Depends: ") + kApplication + "\n");
  ASSERT_EQ(install({kDependent}), "");
  EXPECT_THAT(service().remove(application, before, nullptr), HasSubstr("Something else"));
  EXPECT_NE(AptTool::remove({kApplication}, nullptr), "") << "the helper's own look";
  EXPECT_TRUE(isInstalled(kApplication));

  const UninstallPlan now = service().plan(application);
  EXPECT_THAT(now.alsoRemoves, ElementsAre(kDependent));
  EXPECT_EQ(now.bytes, 24U * 1024);
  EXPECT_EQ(service().remove(application, now, nullptr), "");
  EXPECT_FALSE(isInstalled(kApplication));
  EXPECT_FALSE(isInstalled(kDependent));
}

TEST_F(PackageRemovalTest, AnEssentialOrHeldPackageStays) {
  make(kEssential, std::string("Essential: yes\nDepends: ") + kApplication + "\n");
  ASSERT_EQ(install({kEssential}), "");
  const InstalledApplication application = listed(kApplication);
  const UninstallPlan plan = service().plan(application);
  EXPECT_NE(plan.refusal, "");
  EXPECT_NE(service().remove(application, plan, nullptr), "");
  EXPECT_NE(AptTool::remove({kApplication, kEssential}, nullptr), "");
  EXPECT_TRUE(isInstalled(kApplication));
  run({"dpkg", "--purge", "--force-remove-essential", kEssential});

  ASSERT_EQ(run({"apt-mark", "hold", kApplication}).status, 0);
  const UninstallPlan held = service().plan(application);
  run({"apt-mark", "unhold", kApplication});
  EXPECT_NE(held.refusal, "");
}

TEST_F(PackageRemovalTest, NothingIsRemovedWhileAnotherPackageManagerWorks) {
  // In another process: a process does not see its own locks.
  const int status = test::inChild([] {
    const int file = ::open("/var/lib/dpkg/lock-frontend", O_RDWR | O_CLOEXEC);
    struct flock lock {};
    lock.l_type = F_WRLCK;
    if (file < 0 || ::fcntl(file, F_SETLK, &lock) != 0) return 2;
    return test::inChild([] {
      return AptTool::remove({kApplication}, nullptr).find("Another program") == 0 ? 0 : 1;
    });
  });
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(isInstalled(kApplication));
}

}  // namespace
}  // namespace brisko
