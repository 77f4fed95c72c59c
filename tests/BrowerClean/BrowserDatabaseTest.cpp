#include "BrowserProfiles.h"
#include "LogCapture.h"
#include "Machine.h"
#include "ToGetDB.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

const ToGetDB& databases() {
  return ToGetDB::returnToGetDB();
}

struct BrowserDatabaseTest : testing::Test {
  std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const auto& entry : fs::directory_iterator(folder.path()))
      all.push_back(entry.path().filename());
    std::sort(all.begin(), all.end());
    return all;
  }
  TemporaryFolder folder;
  LogCapture log;
};

TEST_F(BrowserDatabaseTest, ErasedRowsAreNotLeftInTheFileAndTheRestIsInOrder) {
  const std::string path = folder / "History";
  makeHistory(path, 400);
  ASSERT_THAT(contentOf(path), HasSubstr(kSecret));
  const auto before = fs::file_size(path);
  EXPECT_EQ(integrityOf(path), "ok");
  EXPECT_EQ(databases().getGoogleHistoryItems(path).rows, 400);
  EXPECT_EQ(databases().toDeleteHistoryWith(path), "");
  EXPECT_EQ(databases().getGoogleHistoryItems(path).rows, 0);
  EXPECT_EQ(integrityOf(path), "ok");
  EXPECT_THAT(contentOf(path), Not(HasSubstr(kSecret)));
  EXPECT_LT(fs::file_size(path), before / 2) << "not compacted";
  EXPECT_EQ(rowsIn(path, "visits"), 400) << "another table was emptied";
  EXPECT_EQ(databases().operaDeleteHistoryWith(path), "");
  EXPECT_EQ(rowsIn(path, "visits"), 0);
  EXPECT_EQ(rowsIn(path, "downloads"), 400);
  EXPECT_EQ(rowsIn(path, "meta"), 1);
  EXPECT_EQ(names(), std::vector<std::string>{"History"});
}

// A program that crashed leaves the log behind, with rows that the file has not got yet.
TEST_F(BrowserDatabaseTest, AWriteAheadLogIsHonouredAndGoesWithTheRows) {
  const std::string source = folder.folder("source") + "/places.sqlite";
  const std::string path = folder / "places.sqlite";
  makePlaces(source, 50);
  {
    OtherConnection open(source);
    open.run("INSERT INTO moz_historyvisits VALUES(1000, 0, 1, 1, 1, 0)");
    open.run(std::string("INSERT INTO moz_annos VALUES(1000, 1, 1, '") + kSecret + "')");
    fs::copy_file(source, path);
    fs::copy_file(source + "-wal", path + "-wal");
  }
  fs::remove_all(folder / "source");
  ASSERT_THAT(contentOf(path + "-wal"), HasSubstr(kSecret));
  EXPECT_EQ(databases().getFirefoxHistoryItems(path).rows, 51);
  EXPECT_EQ(databases().firefoxDeleteDownloadWith(path), "");
  EXPECT_EQ(databases().getFirefoxDownloadItmes(path).rows, 0);
  EXPECT_EQ(databases().getFirefoxHistoryItems(path).rows, 51);
  EXPECT_EQ(rowsIn(path, "moz_bookmarks"), 1);
  EXPECT_EQ(integrityOf(path), "ok");
  EXPECT_THAT(contentOf(path), Not(HasSubstr(kSecret)));
  EXPECT_EQ(names(), std::vector<std::string>{"places.sqlite"}) << "the log holds erased rows";
}

TEST_F(BrowserDatabaseTest, CountingLeavesNothingBesideAndTakesTheNameAsItStands) {
  const std::string name = "a?mode=rw&x#y%41 'b\".sqlite";
  makePlaces(folder / name, 3);
  ASSERT_EQ(names(), std::vector<std::string>{name});
  const std::string before = contentOf(folder / name);
  EXPECT_EQ(databases().getFirefoxPasswordItems(folder / name).rows, 3);
  EXPECT_EQ(names(), std::vector<std::string>{name});
  EXPECT_EQ(contentOf(folder / name), before);
  EXPECT_EQ(databases().firefoxDeletePasswordWith(folder / name), "");
  EXPECT_EQ(rowsIn(folder / name, "moz_keywords"), 0);
}

TEST_F(BrowserDatabaseTest, ALockedDatabaseKeepsEverything) {
  const std::string path = folder / "History";
  makeHistory(path, 5);
  OtherConnection browser(path);
  browser.run("BEGIN EXCLUSIVE");
  EXPECT_EQ(databases().toDeleteDownloadWith(path), "it is in use by another program");
  EXPECT_TRUE(log.has("delete time error: "));
  EXPECT_TRUE(log.has("delete base error: "));
  browser.run("ROLLBACK");
  EXPECT_EQ(rowsIn(path, "downloads"), 5);
  EXPECT_EQ(databases().toDeleteDownloadWith(path), "");
  EXPECT_EQ(rowsIn(path, "downloads_url_chains"), 0);
}

TEST_F(BrowserDatabaseTest, ASchemaWithoutOneOfTheTablesKeepsEverything) {
  const std::string path = folder / "History";
  makeHistory(path, 5);
  OtherConnection(path).run("DROP TABLE downloads_url_chains");
  EXPECT_THAT(databases().toDeleteDownloadWith(path), HasSubstr("downloads_url_chains"));
  EXPECT_FALSE(log.has("delete time error: "));
  EXPECT_TRUE(log.has("delete base error: "));
  EXPECT_EQ(rowsIn(path, "downloads"), 5);
  EXPECT_THAT(databases().getGooglePasswordItems(path).reason, HasSubstr("logins"));
}

TEST_F(BrowserDatabaseTest, WhatIsNoDatabaseOfTheUsersIsReportedAndLeftAlone) {
  const std::string good = folder.folder("elsewhere") + "/History";
  makeHistory(good, 200);
  const std::string content = contentOf(good);
  const std::string path = folder / "History";
  struct Case {
    const char* what;
    std::function<void()> make;
    const char* reason;
  };
  const Case cases[] = {
      {"cut", [&] { folder.file("History", content.substr(0, content.size() / 2)); }, "damaged"},
      {"scrambled",
       [&] {
         std::string bytes = content;
         for (std::size_t i = 5000; i < bytes.size(); i += 7)
           bytes[i] = static_cast<char>(bytes[i] ^ 0x5a);
         folder.file("History", bytes);
       },
       "damaged"},
      {"encrypted", [&] { folder.file("History", std::string(8192, '\x7e')); }, "encrypted"},
      {"empty", [&] { folder.file("History"); }, "empty"},
      {"folder", [&] { folder.folder("History"); }, "folder"},
      {"link", [&] { folder.link("History", good); }, "link"},
      {"FIFO", [&] { EXPECT_EQ(mkfifo(path.c_str(), 0600), 0); }, "regular"},
      {"link beside",
       [&] {
         folder.file("History", content);
         folder.link("History-wal", good);
       },
       "History-wal"},
      {"someone else's",
       [&] {
         folder.file("History", content);
         EXPECT_TRUE(!isRoot() || chown(path.c_str(), kNobody, kNobody) == 0);
       },
       isRoot() ? "another user" : ""},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.what);
    if (*one.reason == '\0') continue;
    one.make();
    const bool isFile = fs::is_regular_file(fs::symlink_status(path));
    const std::string before = isFile ? contentOf(path) : "";
    const int lines = log.count("打开数据库失败！") + log.count("delete time error: ");
    EXPECT_THAT(databases().toDeleteHistoryWith(path), HasSubstr(one.reason));
    EXPECT_GT(log.count("打开数据库失败！") + log.count("delete time error: "), lines);
    databases().getOperaDownloadItems(path);
    EXPECT_TRUE(!isFile || contentOf(path) == before);
    EXPECT_TRUE(contentOf(good) == content);
    EXPECT_FALSE(exists(path + "-journal") || exists(path + "-shm"));
    fs::remove(path + "-wal");
    fs::remove_all(path);
  }
  EXPECT_EQ(databases().toDeleteHistoryWith(path), "") << "nothing there is nothing to erase";
  EXPECT_FALSE(exists(path)) << "a database was made";
}

}  // namespace
}  // namespace brisko::test
