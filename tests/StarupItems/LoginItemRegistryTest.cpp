#include "FakeLoginItems.h"
#include "FileURL.h"
#include "NSFileManager.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "UKLoginItemRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace brisko::test {
namespace {

class LoginItemRegistry : public testing::Test {
 protected:
  LoginItemRegistry() {
    auto made = std::make_unique<FakeLoginItems>();
    store_ = made.get();
    Host::current().loginItems = std::move(made);
  }

  TestHost host_;
  FakeLoginItems* store_ = nullptr;
  TemporaryFolder folder_;
};

TEST_F(LoginItemRegistry, AddsFindsAndRemovesByAddressAndPath) {
  const std::string path = folder_.file("ü 100% #1.txt");
  EXPECT_EQ(pathOfFileURL(fileURL(path)), path);
  EXPECT_TRUE(UKLoginItemRegistry::addLoginItemWithPath(path, true));
  const auto items = UKLoginItemRegistry::allLoginItems();
  ASSERT_TRUE(items && items->size() == 1);
  EXPECT_EQ((*items)[0].URL, fileURL(path));
  EXPECT_TRUE((*items)[0].Hidden);
  EXPECT_EQ(UKLoginItemRegistry::indexForLoginItemWithPath(path), 0);
  EXPECT_EQ(UKLoginItemRegistry::indexForLoginItemWithPath("/other"), -1);
  EXPECT_FALSE(UKLoginItemRegistry::removeLoginItemWithPath("/other"));
  EXPECT_TRUE(UKLoginItemRegistry::removeLoginItemWithURL(fileURL(path)));
  EXPECT_TRUE(store_->entries.empty());
  EXPECT_FALSE(UKLoginItemRegistry::removeLoginItemAtIndex(0));
  EXPECT_TRUE(host_.logged("Couldn't remove login item error -50"));
}

TEST_F(LoginItemRegistry, WhatIsNotThereIsNotAdded) {
  EXPECT_FALSE(UKLoginItemRegistry::addLoginItemWithPath(folder_ / "missing", false));
  EXPECT_TRUE(host_.logged("Couldn't add login item error -43"));
  const std::string path = folder_.file("file");
  const FSRef reference = NSFileManager::convertStringToFSRef(path);
  std::filesystem::rename(path, folder_ / "moved");
  folder_.file("file");
  EXPECT_EQ(LIAEAddRefAtEnd(reference, false), LoginItems::fnfErr);
}

TEST_F(LoginItemRegistry, ListingIsTriedForAMinuteWhileTheStoreDoesNotAnswer) {
  std::chrono::milliseconds waited{0};
  const auto before =
      UKLoginItemRegistry::setWait([&](std::chrono::milliseconds time) { waited += time; });
  store_->status = LoginItems::errAETimeout;
  EXPECT_FALSE(UKLoginItemRegistry::allLoginItems());
  EXPECT_EQ(store_->snapshots, 61);
  EXPECT_EQ(waited, std::chrono::seconds(60));
  EXPECT_TRUE(host_.logged("Get login items error -1712 and timeout."));
  store_->status = LoginItems::memFulErr;
  EXPECT_FALSE(UKLoginItemRegistry::allLoginItems());
  EXPECT_TRUE(host_.logged("Couldn't list login items error -4960"));
  UKLoginItemRegistry::setWait(before);
}

}  // namespace
}  // namespace brisko::test
