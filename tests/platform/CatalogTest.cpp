#include "Catalog.h"
#include "Host.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <set>

#include <sys/stat.h>

namespace brisko {
namespace {

std::unique_ptr<Catalog::Folder> opened(const std::string& path) {
  int error = 0;
  auto folder = makeHost({})->catalog->open(path, error);
  EXPECT_TRUE(folder) << path << ": " << error;
  return folder;
}

TEST(Catalog, BatchesHoldAtMostWhatWasAskedForAndEveryEntryOnce) {
  test::TemporaryFolder folder;
  std::set<std::string> expected;
  for (int i = 0; i < 1500; ++i) {
    const std::string name = "file " + std::to_string(i);
    folder.file(name);
    expected.insert(name);
  }
  for (const std::size_t maximum :
       {std::size_t{0}, std::size_t{1}, std::size_t{40}, std::size_t{256}}) {
    std::set<std::string> found;
    CatalogBatch batch;
    const auto reader = opened(folder.path());
    std::size_t entries = 0;
    while (reader->read(batch, maximum)) {
      ASSERT_FALSE(batch.items.empty());
      ASSERT_LE(batch.items.size(), maximum > 0 ? maximum : expected.size());
      entries += batch.items.size();
      for (const CatalogItem& item : batch.items)
        found.emplace(item.name);
    }
    EXPECT_EQ(reader->error(), 0);
    EXPECT_EQ(entries, expected.size());
    EXPECT_EQ(found, expected);
  }
}

TEST(Catalog, FactsAreOfTheItemItselfAndMissingForWhatHasGone) {
  test::TemporaryFolder folder;
  folder.file("f\xFF\nile", "12345");
  folder.link("link", "/etc/passwd");
  folder.folder("folder");
  folder.file("gone");
  ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
  const auto reader = opened(folder.path());
  CatalogBatch batch;
  ASSERT_TRUE(reader->read(batch, 0));
  std::filesystem::remove(folder / "gone");
  reader->information(batch.items);
  ASSERT_EQ(batch.items.size(), 5U);
  for (const CatalogItem& item : batch.items) {
    SCOPED_TRACE(item.name);
    EXPECT_EQ(item.hasInformation, item.name != "gone");
    if (item.name == "f\xFF\nile") {
      EXPECT_EQ(item.kind, FileKind::regular);
      EXPECT_EQ(item.dataSize, 5U);
      EXPECT_GT(item.modificationSeconds, 1'600'000'000);
      EXPECT_EQ(item.links, 1U);
    } else if (item.name == "link") {
      EXPECT_EQ(item.kind, FileKind::symbolicLink);
      EXPECT_EQ(item.dataSize, std::string("/etc/passwd").size());
    } else if (item.name == "fifo") {
      EXPECT_EQ(item.kind, FileKind::fifo);
      EXPECT_EQ(item.dataSize, 0U);
    } else if (item.name == "folder") {
      EXPECT_EQ(item.kind, FileKind::directory);
      EXPECT_FALSE(item.isMountPoint);
    }
  }
}

TEST(Catalog, OnlyFoldersOpenAndNeverThroughALink) {
  test::TemporaryFolder folder;
  folder.folder("real/inner");
  folder.file("file");
  folder.link("link", "real");
  ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
  const auto catalog = makeHost({})->catalog.release();
  const std::unique_ptr<Catalog> owned(catalog);
  int error = 0;
  for (const char* name : {"file", "link", "fifo"}) {
    EXPECT_FALSE(catalog->open(folder / name, error)) << name;
    EXPECT_EQ(error, ENOTDIR) << name;
    EXPECT_FALSE(opened(folder.path())->open(name, error)) << name;
    EXPECT_NE(error, 0) << name;
  }
  EXPECT_FALSE(catalog->open(folder / "missing", error));
  EXPECT_EQ(error, ENOENT);
  EXPECT_FALSE(opened(folder / "real/inner")->open("..", error));
  EXPECT_TRUE(catalog->open(folder / "link/inner", error));
  EXPECT_EQ(catalog->information(folder / "link").kind, FileKind::symbolicLink);
  EXPECT_FALSE(catalog->information(folder / "missing").hasInformation);
  EXPECT_FALSE(catalog->information("").hasInformation);
}

TEST(Catalog, TheParentOpensOnlyWhileItIsTheSame) {
  test::TemporaryFolder folder;
  folder.folder("a/b");
  folder.folder("c");
  const CatalogItem parent = opened(folder / "a")->self();
  const auto child = opened(folder / "a/b");
  int error = 0;
  EXPECT_TRUE(child->openParent(parent.device, parent.inode, error));
  std::filesystem::rename(folder / "a/b", folder / "c/b");
  EXPECT_FALSE(child->openParent(parent.device, parent.inode, error));
  EXPECT_EQ(error, ESTALE);
}

}  // namespace
}  // namespace brisko
