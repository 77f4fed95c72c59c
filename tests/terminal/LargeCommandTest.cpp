#include "Machine.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <utime.h>

namespace brisko::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class LargeCommandLine : public testing::Test {
 protected:
  LargeCommandLine() {
    folder.sizedFile("films/a.mp4", 3'000'000);
    folder.sizedFile("films/old/b.mp4", 2'000'000);
    folder.sizedFile("notes.txt", 700);
    folder.sizedFile("odd\xff", 20);
    const utimbuf times{1'500'000'000, 1'500'000'000};
    ::utime((folder / "films/old/b.mp4").c_str(), &times);
  }

  Outcome large(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "large");
    return Program().run(arguments);
  }
  static std::vector<std::string> names(const json& node) {
    std::vector<std::string> names;
    for (const json& child : node["children"])
      names.push_back(child["name"]);
    return names;
  }

  TemporaryFolder folder;
};

TEST_F(LargeCommandLine, JsonIsATreeInOrderWithExactSizes) {
  const Outcome outcome = large({folder.path(), "--depth", "0", "--json"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  const json document = outcome.json();
  EXPECT_EQ(document["path"], folder.path());
  EXPECT_EQ(document["size"], "5.00 MB");
  EXPECT_EQ(document["bytes"], 5'000'720);
  EXPECT_EQ(names(document), (std::vector<std::string>{"films", "notes.txt", "odd\xEF\xBF\xBD"}));
  const json& films = document["children"][0];
  EXPECT_EQ(films["isDirectory"], true);
  EXPECT_EQ(films["bytes"], 5'000'000);
  EXPECT_EQ(names(films), (std::vector<std::string>{"a.mp4", "old"}));
  const json& film = films["children"][1]["children"][0];
  EXPECT_EQ(film["path"], folder / "films/old/b.mp4");
  EXPECT_EQ(film["size"], "2.00 MB");
  EXPECT_EQ(film["modifyTime"], "2017-07-14T02:40:00Z");
  EXPECT_EQ(film["children"], json::array());
  EXPECT_TRUE(document["children"][2].contains("nameBytes"));
}

TEST_F(LargeCommandLine, DepthTopAndFiltersNarrowTheList) {
  EXPECT_TRUE(names(large({folder.path(), "--json"}).json()["children"][0]).empty());
  EXPECT_EQ(names(large({folder.path(), "--top", "1", "--json"}).json()).size(), 1U);
  const json old = large({folder.path(), "--older-than", "365", "--json"}).json();
  EXPECT_EQ(names(old), std::vector<std::string>{"films"});
  EXPECT_EQ(names(old["children"][0]), std::vector<std::string>{"old"}) << "all levels";
  EXPECT_EQ(names(large({folder.path(), "--min-size", "1KB", "--json"}).json()),
            std::vector<std::string>{"films"});
  folder.folder("empty");
  EXPECT_TRUE(names(large({folder.path(), "--min-size", "1GB", "--json"}).json()).empty());
  EXPECT_THAT(large({folder.path()}).output, HasSubstr("films/\n"));
}

TEST_F(LargeCommandLine, OnlyListedPathsAreRemoved) {
  const auto refused = [&](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {folder.path(), "--yes"});
    const Outcome outcome = large(arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
  };
  refused({"--remove", folder / "films/a.mp4", "--"});  // below the levels that are listed
  refused({"--remove", folder / "notes.txt", "--remove", folder / "no such", "--"});
  refused({"--remove", folder / "films/../notes.txt", "--"});
  refused({"--remove", folder / "notes.txt", "--min-size", "1MB", "--"});
  refused({"--remove", folder / "films", "--older-than", "365", "--"});  // a new file is in it
  refused({"--remove", folder.path(), "--"});
  refused({"--remove", "/etc/passwd", "--"});
  const Outcome unasked = large({folder.path(), "--remove", folder / "notes.txt"});
  EXPECT_EQ(unasked.status, 2);
  EXPECT_TRUE(exists(folder / "films/a.mp4") && exists(folder / "notes.txt"));
  folder.file("made/too", "x");

  const json dry =
      large({folder.path(), "--dry-run", "--json", "--remove", folder / "notes.txt"}).json();
  EXPECT_EQ(dry["wouldRemove"], json::array({folder / "notes.txt"}));
  EXPECT_TRUE(exists(folder / "notes.txt"));
  // What lies in another one that goes is not removed by itself.
  const Outcome outcome =
      large({folder.path(), "--yes", "--json", "--depth", "0", "--remove", folder / "films/a.mp4",
             folder / "made/too", folder / "notes.txt", folder / "made"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.json()["removed"],
            json::array({folder / "films/a.mp4", folder / "notes.txt", folder / "made"}));
  EXPECT_EQ(outcome.json()["failed"], json::array());
  EXPECT_FALSE(exists(folder / "notes.txt"));
  EXPECT_FALSE(exists(folder / "films/a.mp4"));
  EXPECT_TRUE(exists(folder / "films/old/b.mp4")) << "nothing but what was named";
}

TEST_F(LargeCommandLine, BadInputIsOneLineAndWrongUsage) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {folder / "missing"},
                                                    {folder / "notes.txt"},
                                                    {folder.path(), "--depth", "-1"},
                                                    {folder.path(), "--older-than", "soon"},
                                                    {folder.path(), "--min-size", "big"},
                                                    {folder.path(), "--top", "x"}}) {
    const Outcome outcome = large(arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
  }
}

TEST_F(LargeCommandLine, FoldersThatCannotBeReadAreNamed) {
  if (!isRoot()) GTEST_SKIP() << "needs root to look as another user";
  folder.file("closed/file", "x");
  ::chmod((folder / "closed").c_str(), 0700);
  ::chmod(folder.path().c_str(), 0755);
  const Outcome outcome = Program().user(kNobody).run({"large", folder.path(), "--json"});
  EXPECT_EQ(outcome.status, 0);
  const json document = outcome.json();
  ASSERT_EQ(document["skipped"].size(), 1U);
  EXPECT_EQ(document["skipped"][0]["reason"], "Permission denied");
  for (const json& child : document["children"]) {
    if (child["name"] != "closed") continue;
    EXPECT_EQ(child["bytes"], 0);
    EXPECT_EQ(child["reason"], "Permission denied");
  }
}

}  // namespace
}  // namespace brisko::test
