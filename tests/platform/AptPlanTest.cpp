#include "AptPlan.h"
#include "AptTool.h"
#include "DpkgDatabase.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisko {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kHead =
    "Reading package lists...\nBuilding dependency tree...\nReading state information...\n";

std::string counts(int removed) {
  return "0 upgraded, 0 newly installed, " + std::to_string(removed) +
         " to remove and 122 not upgraded.\n";
}

TEST(AptPlan, AnAnswerOfRemovalsOnlyIsUnderstood) {
  const AptSimulation found = parseAptSimulation(
      std::string(kHead) +
          "The following packages were automatically installed and are no longer required:\n"
          "  libc++1-14 vim-runtime\n  xxd\nUse 'apt autoremove' to remove them.\n"
          "The following packages will be REMOVED:\n  vim vim-gui\n" +
          counts(2) +
          "Remv vim-gui [2:9.0.1378-2+deb12u2] [vim:amd64 ]\nRemv vim [2:9.0.1378-2+deb12u2] []\n",
      0);
  EXPECT_EQ(found.problem, "");
  EXPECT_THAT(found.removes, ElementsAre("vim", "vim-gui"));
  EXPECT_THAT(found.leavesUnused, ElementsAre("libc++1-14", "vim-runtime", "xxd"));
}

TEST(AptPlan, WhateverIsMoreThanARemovalIsAProblem) {
  const std::string remv = "Remv mawk [1.3.4-3.1]\n";
  const std::pair<std::string, const char*> cases[] = {
      {"1 upgraded, 1 newly installed, 1 to remove and 121 not upgraded.\n"
       "Inst base-files [12.4] (12.5 Debian:12 [amd64])\n" +
           remv,
       "more than remove"},
      {counts(1) + remv + "Inst original-awk (2022 Debian:12 [amd64])\n", "original-awk"},
      {counts(1) + "Conf half (1 Debian:12 [amd64])\n" + remv, "half"},
      {counts(1) + "Purg mawk [1]\n", "purge"},
      {"The following held packages will be changed:\n  mawk\n" + counts(1) + remv, "held"},
      {counts(1) + "1 not fully installed or removed.\n" + remv, "half installed"},
      {counts(2) + remv, "add up"},
      {remv, "how much"},
      {counts(1) + "Remv ../x [1]\n", "not understood"},
      {counts(1) + "Remv mawk\n", "not understood"},
      {"0 upgraded, 0 newly installed, 0 reinstalled, 1 to remove and 2 not upgraded.\n" + remv,
       "more than remove"},
      {"", "how much"}};
  for (const auto& [output, problem] : cases) {
    EXPECT_THAT(parseAptSimulation(kHead + output, 0).problem, HasSubstr(problem)) << output;
  }
  EXPECT_EQ(
      parseAptSimulation(std::string(kHead) + "E: Held broken packages.\nE: More.\n", 100).problem,
      "Held broken packages.");
  EXPECT_NE(parseAptSimulation(kHead + counts(1) + remv, 100).problem, "");
}

TEST(AptPlan, WhatTheSystemNeedsIsRefusedWhereverItStandsInTheList) {
  test::TemporaryFolder folder;
  std::string status;
  for (const char* name : {"dpkg", "tool", "libtool", "systemd-sysv", "brisko", "brisko-data",
                           "linux-image-6.1.0-18-amd64", "linux-image-6.1.0-17-amd64"}) {
    status += std::string("Package: ") + name +
              "\nStatus: install ok installed\nInstalled-Size: 10\nArchitecture: amd64\n\n";
  }
  const std::pair<const char*, const char*> marked[] = {{"base", "Essential: yes"},
                                                        {"guarded", "Protected: yes"},
                                                        {"older", "Important: yes"},
                                                        {"must", "Priority: required"}};
  for (const auto& [name, mark] : marked) {
    status += std::string("Package: ") + name + "\n" + mark +
              "\nStatus: install ok installed\nArchitecture: all\n\n";
  }
  folder.file("status", status);
  const DpkgDatabase database(folder.path());
  const auto plan = [&](std::vector<std::string> removes) {
    AptSimulation simulation;
    simulation.removes = std::move(removes);
    return aptPlan("tool", simulation, database, "6.1.0-18-amd64");
  };
  const UninstallPlan good = plan({"libtool", "linux-image-6.1.0-17-amd64", "tool"});
  EXPECT_EQ(good.refusal, "");
  EXPECT_THAT(good.removes, ElementsAre("tool"));
  EXPECT_THAT(good.alsoRemoves, ElementsAre("libtool", "linux-image-6.1.0-17-amd64"));
  EXPECT_EQ(good.bytes, 30U * 1024);
  for (const char* name : {"base", "guarded", "older", "must", "systemd-sysv", "brisko",
                           "brisko-data", "linux-image-6.1.0-18-amd64", "unknown"}) {
    EXPECT_NE(plan({name, "tool"}).refusal, "") << name;
  }
  AptSimulation broken =
      parseAptSimulation(std::string(kHead) +
                             "The following packages have unmet dependencies:\n"
                             " libtool : Depends: tool but it is not going to be installed\n"
                             " base : PreDepends: tool but it is not going to be installed\n"
                             "        Depends: awk\nE: Error, Resolve generated breaks\n",
                         100);
  EXPECT_THAT(aptPlan("tool", broken, database, "").refusal, HasSubstr("base, without which"));
  EXPECT_NE(plan({"libtool"}).refusal, "") << "the package itself is not among them";
}

TEST(AptPlan, NoOptionPatternOrPathPassesForAPackagesName) {
  for (const char* name : {"g++", "libc6:i386", "0ad", "libstdc++-12-dev", "a2"})
    EXPECT_TRUE(isPackageName(name)) << name;
  for (const char* name : {"", "a", "-y", "--purge", "Vim", "a b", "a\nb", "../x", "/x.deb", "a*",
                           "a:", ":a", "a:-x", "a:b:c", "a;b", "a=1", "a/stable", "^task"})
    EXPECT_FALSE(isPackageName(name)) << name;
  EXPECT_FALSE(isPackageName(std::string(500, 'a')));
}

TEST(AptPlan, ProgressIsReadFromWholeLinesOnly) {
  EXPECT_LT(aptProgress(""), 0);
  EXPECT_LT(aptProgress("pmstatus:vim:50.0:Removing"), 0) << "the line is still being written";
  EXPECT_DOUBLE_EQ(aptProgress("pmstatus:libc6:i386:12.5:Removing: 3: x\npmstatus:v:9"), 0.125);
  EXPECT_DOUBLE_EQ(aptProgress("pmstatus:a:20:x\ndlstatus:1:99:y\npmerror:a:80:z\n"), 0.2);
  EXPECT_LT(aptProgress("pmstatus:a:nan:x\npmstatus:a:1e9:x\n"), 0);
}

}  // namespace
}  // namespace brisko
