#include "Machine.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class DuplicatesCommandLine : public testing::Test {
 protected:
  DuplicatesCommandLine() {
    folder.file("a.txt", "some text");
    folder.file("sub/b.txt", "some text");
    folder.file("sub/c\xff.txt", "some text");
    folder.file("one.jpg", "a longer picture");
    folder.file(".hidden/two.JPG", "a longer picture");
    folder.file("alone", "nothing is like it");
  }

  Outcome duplicates(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "duplicates");
    return Program().run(arguments);
  }
  std::size_t files() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path()))
      count += entry.is_regular_file() ? 1 : 0;
    return count;
  }

  TemporaryFolder folder;
};

TEST_F(DuplicatesCommandLine, JsonNamesGroupsWithTheirExactBytes) {
  const Outcome outcome = duplicates({folder.path(), "--json"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  const json document = outcome.json();
  ASSERT_EQ(document["groups"].size(), 2U);
  EXPECT_TRUE(document["skipped"].empty());
  std::set<std::string> names;
  bool hasBytes = false;
  for (const json& group : document["groups"]) {
    std::uint64_t sum = 0;
    for (const json& child : group["children"]) {
      names.insert(child["name"]);
      sum += child["fileSize"].get<std::uint64_t>();
      EXPECT_EQ(child["ModificationDate"].get<std::string>().size(), 20U);
      EXPECT_EQ(child["hardLink"], false);
      hasBytes = hasBytes || child.contains("nameBytes");
    }
    EXPECT_EQ(group["fileSize"], sum);
    EXPECT_EQ(group["fileType"], group["children"].size() == 3 ? 1 : 5);
  }
  EXPECT_EQ(names.size(), 5U);
  EXPECT_TRUE(names.count(folder / "sub/c\xEF\xBF\xBD.txt"));
  EXPECT_TRUE(hasBytes);
}

TEST_F(DuplicatesCommandLine, TypeHiddenAndSizeNarrowWhatIsFound) {
  const auto groups = [&](std::vector<std::string> arguments) {
    arguments.push_back("--json");
    arguments.push_back(folder.path());
    return duplicates(arguments).json()["groups"].size();
  };
  EXPECT_EQ(groups({"--type", "pictures"}), 1U);
  EXPECT_EQ(groups({"--type", "1"}), 1U);
  EXPECT_EQ(groups({"--type", "2"}), 0U);
  EXPECT_EQ(groups({"--no-hidden"}), 1U);
  EXPECT_EQ(groups({"--min-size", "9"}), 2U);
  EXPECT_EQ(groups({"--min-size", "10"}), 1U);
  EXPECT_EQ(groups({"--min-size", "1KB"}), 0U);
}

TEST_F(DuplicatesCommandLine, RemoveKeepsTheLastOfEachGroupAndADryRunEverything) {
  const json dry = duplicates({"--remove", "--dry-run", "--json", folder.path()}).json();
  EXPECT_EQ(files(), 6U);
  EXPECT_EQ(dry["wouldRemove"].size(), 3U);
  const Outcome unasked = duplicates({"--remove", folder.path()});
  EXPECT_EQ(unasked.status, 2);
  EXPECT_EQ(unasked.errorLines(), 1U);
  EXPECT_EQ(files(), 6U);

  const Outcome outcome = duplicates({"--remove", "--yes", "--json", folder.path()});
  EXPECT_EQ(outcome.status, 0);
  const json document = outcome.json();
  EXPECT_EQ(document["removed"], dry["wouldRemove"]);
  EXPECT_TRUE(document["failed"].empty());
  EXPECT_GT(document["freedBytes"], 0);
  EXPECT_EQ(files(), 3U);
  for (const json& group : document["groups"]) {
    const json& kept = group["children"].back();
    EXPECT_TRUE(kept.contains("nameBytes") || exists(kept["name"]));
  }
  EXPECT_THAT(duplicates({folder.path()}).output, HasSubstr("0 files in "));
}

TEST_F(DuplicatesCommandLine, ACopyThatMustStayIsAFailureWithItsReason) {
  TemporaryFolder linked;
  const std::string one = linked.file("one", "a file with two names");
  ASSERT_EQ(link(one.c_str(), (linked / "two").c_str()), 0);
  const Outcome outcome = duplicates({"--remove", "--yes", "--json", linked.path()});
  EXPECT_EQ(outcome.status, 1);
  const json document = outcome.json();
  EXPECT_EQ(document["groups"][0]["children"][0]["hardLink"], true);
  EXPECT_EQ(document["failed"][0]["reason"], "the other copy is the same item under another name");
  EXPECT_EQ(document["freedBytes"], 0);
  EXPECT_TRUE(exists(one));
}

TEST_F(DuplicatesCommandLine, WrongUsageIsOneLineAndTouchesNothing) {
  const std::vector<std::vector<std::string>> cases = {
      {},
      {folder / "missing"},
      {folder / "a.txt"},
      {"--type", "7", folder.path()},
      {"--type", "Pics", folder.path()},
      {"--min-size", "big", folder.path()},
  };
  for (const auto& arguments : cases) {
    const Outcome outcome = duplicates(arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
    EXPECT_EQ(outcome.output, "");
  }
}

TEST_F(DuplicatesCommandLine, UnreadableFoldersAreSkippedAndAnUnreadableRootIsWrongUsage) {
  if (!isRoot()) GTEST_SKIP() << "because only root can become a user without rights";
  chmod(folder.path().c_str(), 0755);
  folder.folder("sub/locked");
  chmod((folder / "sub/locked").c_str(), 0);
  const Outcome outcome = Program().user(kNobody).run({"duplicates", "--json", folder.path()});
  EXPECT_EQ(outcome.status, 0);
  const json document = outcome.json();
  ASSERT_EQ(document["skipped"].size(), 1U);
  EXPECT_EQ(document["skipped"][0]["path"], folder / "sub/locked");
  const Outcome locked = Program().user(kNobody).run({"duplicates", folder / "sub/locked"});
  EXPECT_EQ(locked.status, 2);
  EXPECT_EQ(locked.errorLines(), 1U);
}

TEST_F(DuplicatesCommandLine, InterruptedItTellsWhatItFoundAndEnds130) {
  TemporaryFolder large;
  for (int i = 0; i < 8; ++i)
    large.sizedFile(fmt::format("f{}", i), std::size_t{4} << 30);
  large.file("x", "12345");
  large.file("y", "12345");
  const Outcome outcome = Program()
                              .whenItSpeaks([](pid_t process) { kill(process, SIGINT); })
                              .run({"duplicates", "--verbose", "--json", large.path()});
  EXPECT_EQ(outcome.status, 130);
  EXPECT_TRUE(outcome.json().contains("groups"));
}

}  // namespace
}  // namespace brisko::test
