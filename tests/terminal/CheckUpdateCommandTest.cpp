#include "LocalServer.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace brisko::test {
namespace {

using testing::HasSubstr;

/// Resources whose links lead to servers of this machine.
struct Links {
  Links(const std::string& home, const std::string& ini) {
    folder.file("StringMessage.plist", linkTable(home, ini));
  }
  Program program() { return Program().variable("BRISKO_RESOURCES", folder.path()); }

  TemporaryFolder folder;
};

const std::string kDescription =
    "<plist><dict><key>VersionCheck</key><integer>1000</integer><key>Version</key>"
    "<string>2.5</string><key>1</key><string>New\033[31m look</string></dict></plist>";

TEST(CheckUpdateCommand, TellsAboutANewVersion) {
  const LocalServer home(answerWith("hi"));
  const LocalServer ini(answerWith(kDescription));
  Links links(home.address(), ini.address());
  const Outcome text = links.program().run({"check-update"});
  EXPECT_EQ(text.status, 0) << text.errors;
  EXPECT_THAT(text.output, HasSubstr("Brisko 2.5 has been released."));
  EXPECT_THAT(text.output, HasSubstr("1.New\\x1B[31m look"));
  const Outcome document = links.program().run({"check-update", "--json"});
  EXPECT_EQ(document.json()["state"], "newVersion");
  EXPECT_EQ(document.json()["version"], "2.5");
  EXPECT_EQ(document.json()["notes"].size(), 1U);
}

TEST(CheckUpdateCommand, WhatCannotBeFoundOutIsAFailure) {
  const LocalServer home(answerWith("hi"));
  const LocalServer broken(answerWith("<plist>"));
  Links unreachable("http://127.0.0.1:1/", "http://127.0.0.1:1/");
  const Outcome none = unreachable.program().run({"check-update", "--json"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.json()["state"], "noNetwork");
  Links unreadable(home.address(), broken.address());
  const Outcome noUpdate = unreadable.program().run({"check-update"});
  EXPECT_EQ(noUpdate.status, 1);
  EXPECT_EQ(noUpdate.errorLines(), 1U) << noUpdate.errors;
  EXPECT_THAT(noUpdate.output, HasSubstr("No newer version"));
}

}  // namespace
}  // namespace brisko::test
