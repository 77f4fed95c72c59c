#include "CommUti.h"
#include "Medium.h"
#include "NSFileManager.h"
#include "NSString.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>

namespace brisko {
namespace {

namespace fs = std::filesystem;

class NSFileManagerTest : public testing::Test {
 protected:
  test::TestHost host_;
  test::TemporaryFolder folder_;
};

TEST_F(NSFileManagerTest, SizesAreOfTheItemItself) {
  folder_.sizedFile("large/one", 5'000'000'000);
  folder_.file("large/deeper/two", "12");
  folder_.link("link", folder_ / "large");
  const std::uint64_t whole = 5'000'000'002;
  EXPECT_EQ(NSFileManager::fileSize(folder_ / "large"), whole);
  EXPECT_EQ(NSFileManager::fileSize(folder_ / "large/one"), 5'000'000'000U);
  EXPECT_EQ(NSFileManager::fileSize(folder_ / "link"), (folder_ / "large").size());
  EXPECT_EQ(CommUti::sizeOfFileRef(NSString::fsref(folder_ / "large")), whole);
  EXPECT_TRUE(NSFileManager::isFileSymbolicLink(folder_ / "link"));
  EXPECT_FALSE(NSFileManager::isFileSymbolicLink(folder_ / "large"));
  ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  EXPECT_EQ(NSFileManager::fileSize(folder_ / "fifo"), 0U);
  EXPECT_TRUE(host_.log().empty());
}

TEST_F(NSFileManagerTest, AMissingItemHasNoReferenceAndNoSize) {
  EXPECT_EQ(NSFileManager::fileSize(folder_ / "missing"), 0U);
  EXPECT_FALSE(NSString::fsref("").isFilled());
  EXPECT_EQ(host_.log(), (std::vector<std::string>(2, "Failed to create FSRef.")));
  EXPECT_EQ(CommUti::sizeOfFileRef({}), 0U);
}

TEST_F(NSFileManagerTest, AReferenceDoesNotLeadToWhatTookThePlace) {
  const std::string path =
      folder_.file("folder/file", "12345").substr(0, folder_.path().size() + 7);
  const FSRef reference = NSFileManager::convertStringToFSRef(path);
  EXPECT_EQ(NSFileManager::fastFolderSizeAtFSRef(reference), 5U);
  fs::rename(path, folder_ / "old");
  fs::create_directory(path);
  folder_.file("folder/other", "123");
  EXPECT_EQ(NSFileManager::fastFolderSizeAtFSRef(reference), 0U);
  fs::remove_all(path);
  fs::create_symlink(folder_ / "old", path);
  EXPECT_EQ(NSFileManager::fastFolderSizeAtFSRef(reference), 0U);
}

TEST_F(NSFileManagerTest, OnlyTheLastFolderIsMadeAndItIsAlwaysCalledASuccess) {
  EXPECT_TRUE(
      NSFileManager::createDirectoryAtPathWithIntermediateDirectories(folder_ / "a", {0700}));
  EXPECT_EQ(fs::status(folder_ / "a").permissions(), fs::perms::owner_all);
  EXPECT_TRUE(NSFileManager::createDirectoryAtPathWithIntermediateDirectories(folder_ / "b/c"));
  EXPECT_FALSE(test::exists(folder_ / "b"));
  folder_.file("file", "1");
  EXPECT_TRUE(NSFileManager::createDirectoryAtPathWithIntermediateDirectories(folder_ / "file"));
  EXPECT_EQ(test::contentOf(folder_ / "file"), "1");
}

TEST_F(NSFileManagerTest, SolidStateIsWhatTheDeviceSaysAndElseNo) {
  EXPECT_FALSE(NSFileManager::isSolidState("/proc"));
  EXPECT_FALSE(NSFileManager::isSolidState(folder_ / "missing"));
  EXPECT_EQ(host_.log(), std::vector<std::string>(2, "Could not find io classes of disk"));
  const Medium medium = mediumOf(folder_.path());
  if (medium != Medium::solidState && medium != Medium::rotating) {
    GTEST_SKIP() << "because the temporary folder is on no disk of this machine";
  }
  EXPECT_EQ(NSFileManager::isSolidState(folder_.path()), medium == Medium::solidState);
}

}  // namespace
}  // namespace brisko
