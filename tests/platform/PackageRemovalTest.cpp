// Removal through the host's package managers: apt-get with packages made for the test, Flatpak
// with a stand-in for the tool.

#include "AptTool.h"
#include "HostTools.h"
#include "Machine.h"
#include "MadeApplications.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "TrialPackages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = InstalledApplication::Kind;

// The running system's service while it lives.
class RunningHost {
 public:
  RunningHost() : before_(Host::install(makeHost({}))) {}
  ~RunningHost() { Host::install(std::move(before_)); }
  RunningHost(const RunningHost&) = delete;
  RunningHost& operator=(const RunningHost&) = delete;

  static InstalledApplications& service() { return *Host::current().installedApplications; }
  static InstalledApplication listed(const std::string& id) {
    for (const InstalledApplication& application : service().list()) {
      if (application.desktopID == id) return application;
    }
    return {};
  }

 private:
  std::unique_ptr<Host> before_;
};

class PackageRemovalTest : public WithTrialPackage {
 protected:
  const std::string dependent = TrialPackages::full("dependent");
  RunningHost host;
  InstalledApplications& service = RunningHost::service();
};

TEST_F(PackageRemovalTest, ExactlyWhatWasShownGoes) {
  const InstalledApplication found = RunningHost::listed(application);
  ASSERT_EQ(found.packageName, application);
  EXPECT_EQ(found.kind, Kind::package);
  EXPECT_EQ(found.version, "1.2-3");
  EXPECT_EQ(found.bytes, 12U * 1024);
  const UninstallPlan alone = service.plan(found);
  ASSERT_EQ(alone.refusal, "");
  EXPECT_THAT(alone.removes, ElementsAre(application));
  EXPECT_THAT(alone.alsoRemoves, IsEmpty());
  EXPECT_THAT(alone.leavesUnused, IsEmpty()) << "what was of no use before is not its doing";

  ASSERT_EQ(packages.install("dependent", "Depends: " + application + "\n"), "");
  const std::string before = TrialPackages::all();
  EXPECT_THAT(service.remove(found, alone, nullptr), HasSubstr("Something else"));
  const UninstallPlan plan = service.plan(found);
  EXPECT_THAT(plan.alsoRemoves, ElementsAre(dependent));
  EXPECT_EQ(plan.bytes, 24U * 1024);
  EXPECT_EQ(TrialPackages::all(), before) << "neither a plan nor a refusal changes anything";

  std::vector<double> steps;
  EXPECT_EQ(service.remove(found, plan, [&](double part) { steps.push_back(part); }), "");
  ASSERT_FALSE(steps.empty());
  EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
  EXPECT_LE(steps.back(), 1);
  EXPECT_EQ(TrialPackages::all() + application + "\t1.2-3\n" + dependent + "\t1.2-3\n", before)
      << "those went, and nothing else";
  EXPECT_THAT(service.remove(found, plan, nullptr), HasSubstr("not installed any more"));
}

TEST_F(PackageRemovalTest, AnEssentialOrHeldPackageStays) {
  ASSERT_EQ(packages.install("essential", "Essential: yes\nDepends: " + application + "\n"), "");
  const InstalledApplication found = RunningHost::listed(application);
  EXPECT_THAT(AptTool::remove({application, TrialPackages::full("essential")}, nullptr),
              HasSubstr("without which the system does not work"));
  EXPECT_TRUE(TrialPackages::isInstalled("application"));
  packages.purge("essential");

  ASSERT_EQ(HostTools::run({"apt-mark", "hold", application}).status, 0);
  const std::string refusal = service.plan(found).refusal;
  HostTools::run({"apt-mark", "unhold", application});
  EXPECT_THAT(refusal, HasSubstr("held"));
}

TEST_F(PackageRemovalTest, NothingIsRemovedWhileAnotherPackageManagerWorks) {
  // In another process: a process does not see its own locks.
  const int status = inChild([this] {
    const int file = ::open("/var/lib/dpkg/lock-frontend", O_RDWR | O_CLOEXEC);
    struct flock lock {};
    lock.l_type = F_WRLCK;
    if (file < 0 || ::fcntl(file, F_SETLK, &lock) != 0) return 2;
    return inChild([this] {
      return AptTool::remove({application}, nullptr).starts_with("Another program") ? 0 : 1;
    });
  });
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(TrialPackages::isInstalled("application"));
}

TEST(FlatpakRemovalTest, TheToolIsToldExactlyWhatWasShownAndItsFailureIsSaid) {
  TemporaryFolder folder;
  const std::string id = "org.example.Trial";
  makeFlatpak(folder / "data/flatpak", id, "org.Base/x86_64/1");
  const auto tool = [&](const std::string& script) {
    chmod(folder
              .file("tools/flatpak",
                    "#!/bin/sh\nprintf '%s ' \"$@\" > " + (folder / "said") + "\n" + script + "\n")
              .c_str(),
          0755);
  };
  const Environment tools("BRISKO_TOOLS", (folder / "tools").c_str());
  const Environment data("XDG_DATA_HOME", (folder / "data").c_str());
  const RunningHost host;
  const LogCapture log;
  InstalledApplications& service = RunningHost::service();
  const InstalledApplication found = RunningHost::listed(id);
  ASSERT_EQ(found.kind, Kind::flatpak);
  EXPECT_TRUE(found.isForUser);
  const UninstallPlan plan = service.plan(found);
  ASSERT_EQ(plan.refusal, "");

  tool("echo Warning >&2; echo 'error: not allowed' >&2; exit 1");
  EXPECT_EQ(service.remove(found, plan, nullptr), "error: not allowed");
  tool("exit 0");
  EXPECT_THAT(service.remove(found, plan, nullptr), HasSubstr("still installed"));
  tool("mv " + (folder / "data/flatpak/app/" + id) + " " + (folder / "gone"));
  EXPECT_EQ(service.remove(found, plan, nullptr), "");
  EXPECT_EQ(contentOf(folder / "said"),
            "uninstall --user -y --noninteractive app/" + id + "/x86_64/stable ");
}

}  // namespace
}  // namespace brisko::test
