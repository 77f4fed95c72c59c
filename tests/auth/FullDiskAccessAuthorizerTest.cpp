#include "FullDiskAccessAuthorizer.h"
#include "Machine.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace brisko::test {
namespace {

using Status = FullDiskAccessAuthorizer::Status;

TEST(FullDiskAccessAuthorizerTest, TheProbeFolderTellsTheStatusAndTheLogTheReason) {
  TemporaryFolder root;
  TestHost host(root.path());
  const std::string home = root / "Users/anna";
  const std::string probe = home + "/Library/Safari";
  FullDiskAccessAuthorizer& authorizer = FullDiskAccessAuthorizer::sharedInstance();

  EXPECT_EQ(authorizer.getAuthorization(), Status::notDetermined);
  EXPECT_TRUE(host.logged("isSandboxed : 0"));
  EXPECT_TRUE(host.logged("userHomePath : " + home + ", path : " + probe));
  EXPECT_TRUE(host.logged("paths : (null)"));

  root.file("Users/anna/Library/Safari/History.db");
  EXPECT_EQ(authorizer.getAuthorization(), Status::authorized);
  EXPECT_TRUE(host.logged("paths : (History.db)"));

  chmod(root.path().c_str(), 0755);
  chmod(probe.c_str(), 0);
  if (isRoot()) {
    EXPECT_EQ(asUser(kNobody, [&] { return static_cast<int>(authorizer.getAuthorization()); }), 1);
  }

  const Environment sandbox("APP_SANDBOX_CONTAINER_ID", "");
  authorizer.authorizationStatus();
  EXPECT_TRUE(host.logged("isSandboxed : 1"));
}

}  // namespace
}  // namespace brisko::test
