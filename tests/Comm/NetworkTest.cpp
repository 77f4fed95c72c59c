#include "CommUti.h"
#include "LocalServer.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace brisko {
namespace {

bool reaches(const std::string& home) {
  test::TemporaryFolder resources;
  resources.file("StringMessage.plist",
                 "<plist><dict><key>en</key><dict><key>HomeURL</key><string>" + home +
                     "</string></dict></dict></plist>");
  test::TestHost host;
  const test::Environment folder("BRISKO_RESOURCES", resources.path().c_str());
  return CommUti::isCanBeUseNetWork();
}

TEST(Network, IsThereWhenTheHomePageGivesAnyData) {
  const test::LocalServer answering("HTTP/1.0 200 OK\r\nContent-Length: 2\r\n\r\nhi");
  EXPECT_TRUE(reaches(answering.address()));
  const test::LocalServer empty("HTTP/1.0 200 OK\r\nContent-Length: 0\r\n\r\n");
  EXPECT_FALSE(reaches(empty.address()));
  EXPECT_FALSE(reaches("http://127.0.0.1:1/"));
  EXPECT_FALSE(reaches("file:///etc/hostname")) << "only the web counts";
}

TEST(Network, AServerThatSaysNothingIsGivenUpAfterFiveSeconds) {
  const test::LocalServer silent("");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(reaches(silent.address()));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(4900));
}

}  // namespace
}  // namespace brisko
