#include "LocalServer.h"
#include "PropertyList.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "VersionCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace brisko::test {
namespace {

using State = VersionResult::State;

PropertyList description(PropertyList build) {
  PropertyList remote;
  remote.set("VersionCheck", std::move(build));
  remote.set("Version", "2.5");
  remote.set("1", "Faster");
  remote.set("2", "Safer");
  return remote;
}

TEST(VersionComparison, OnlyAHigherBuildIsANewVersion) {
  TestHost host;
  const std::int64_t local = VersionCheck::localBuild();
  ASSERT_GT(local, 0);
  const auto state = [](const PropertyList& remote) {
    return VersionCheck::whatIsNewVersionDiff(remote).state;
  };
  EXPECT_EQ(state(description(local)), State::noUpdate);
  EXPECT_EQ(state(description(local + 1)), State::newVersion);
  EXPECT_EQ(state(description(std::to_string(local + 1))), State::newVersion);
  EXPECT_EQ(state(description("newest")), State::noUpdate);
  EXPECT_EQ(state(description(PropertyList::Array{local + 1})), State::noUpdate);
  EXPECT_EQ(state(description({})), State::noUpdate);
  EXPECT_EQ(state({}), State::noUpdate);
}

TEST(VersionComparison, NotesComeInTheOrderOfTheirNumbers) {
  TestHost host;
  PropertyList remote = description(1000);
  for (int number = 3; number <= 11; ++number) {
    remote.set(std::to_string(number), "Note " + std::to_string(number));
  }
  const VersionResult result = VersionCheck::whatIsNewVersionDiff(remote);
  ASSERT_EQ(result.notes.size(), 11U);
  EXPECT_EQ(result.noteText(0), "1.Faster");
  EXPECT_EQ(result.noteText(1), "2.Safer");
  EXPECT_EQ(result.noteText(9), "10.Note 10");
  EXPECT_EQ(result.titleText(), "Brisko 2.5 has been released.");
  EXPECT_EQ(result.versionText(), "New features of Version 2.5:");
}

/// A check whose two addresses lie on servers of this machine.
VersionResult checkWith(const std::string& home, const std::string& ini, int* logged = nullptr) {
  TemporaryFolder resources;
  resources.file("StringMessage.plist", linkTable(home, ini));
  TestHost host;
  const Environment folder("BRISKO_RESOURCES", resources.path().c_str());
  VersionResult result = VersionCheck::getVersionChange();
  if (logged != nullptr) {
    const auto lines = host.log();
    *logged = static_cast<int>(std::count_if(lines.begin(), lines.end(), [](const auto& line) {
      return line.starts_with("Couldn't read version description: ");
    }));
  }
  return result;
}

TEST(VersionFetch, ReadsTheDescriptionFromItsAddress) {
  const LocalServer home(answerWith("hello"));
  const LocalServer newer(answerWith(description(1000).xml()));
  const VersionResult result = checkWith(home.address(), newer.address());
  EXPECT_EQ(result.state, State::newVersion);
  EXPECT_EQ(result.version, "2.5");
  EXPECT_EQ(result.notes.size(), 2U);
  EXPECT_EQ(checkWith("http://127.0.0.1:1/", newer.address()).state, State::noNetwork);
}

TEST(VersionFetch, WhatIsNoDescriptionIsNoUpdateAndLogged) {
  const LocalServer home(answerWith("hello"));
  const std::string whole = description(1000).xml();
  const std::string tooLong = whole + std::string(VersionCheck::kLargestDescription, ' ');
  std::string deep;
  for (int level = 0; level < 600; ++level)
    deep += "<array>";
  const std::string answers[] = {answerWith("<html>not here</html>"),
                                 answerWith(tooLong),
                                 answerWith("<plist>" + deep),
                                 answerWith(whole.substr(0, whole.size() / 2)),
                                 answerWith("<plist><array/></plist>"),
                                 "HTTP/1.0 404 Not Found\r\n\r\n" + whole,
                                 "HTTP/1.0 302 Found\r\nLocation: file:///etc/hostname\r\n\r\n"};
  for (const std::string& answer : answers) {
    const LocalServer ini(answer);
    int logged = 0;
    const VersionResult result = checkWith(home.address(), ini.address(), &logged);
    EXPECT_EQ(result.state, State::noUpdate) << answer.substr(0, 80);
    EXPECT_FALSE(result.trouble.empty()) << answer.substr(0, 80);
    EXPECT_EQ(logged, 1);
  }
}

TEST(VersionFetch, OnlyThisMachineMayAnswerWithoutEncryption) {
  const LocalServer home(answerWith("hello"));
  const VersionResult result = checkWith(home.address(), "http://192.0.2.1/brisko.plist");
  EXPECT_EQ(result.state, State::noUpdate);
  EXPECT_NE(result.trouble.find("rotocol"), std::string::npos) << result.trouble;
}

}  // namespace
}  // namespace brisko::test
