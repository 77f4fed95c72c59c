#include "Machine.h"
#include "MadeImage.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::set<std::string> treeOf(const std::string& root) {
  std::set<std::string> all;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    all.insert(entry.path().string() + " " +
               (entry.is_regular_file() ? std::to_string(entry.file_size()) : ""));
  }
  return all;
}

std::vector<std::string> keysOf(const std::string& text) {
  std::vector<std::string> keys;
  const auto parsed = nlohmann::ordered_json::parse(text);
  for (const auto& [key, value] : parsed.items())
    keys.push_back(key);
  return keys;
}

class JunkCommandLine : public testing::Test {
 protected:
  Outcome junk(std::vector<std::string> arguments) const {
    return junk(Program(), std::move(arguments));
  }
  Outcome junk(const Program& program, std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"junk", "--root", image.root});
    return program.run(arguments);
  }

  TemporaryFolder folder;
  MadeImage image = MadeImage::build(folder.path());
};

TEST_F(JunkCommandLine, theDocumentHasItsShape) {
  const Outcome outcome = junk({"--json"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(keysOf(outcome.output),
              ElementsAre("categories", "total", "totalBytes", "fullDiskAccess", "skipped"));
  const json document = outcome.json();
  ASSERT_EQ(document["categories"].size(), 6U);
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < 6; ++i) {
    const json& category = document["categories"][i];
    EXPECT_EQ(category["index"], i);
    EXPECT_EQ(category["boxImage"], i < 3 ? "sel" : "unsel");
    std::uint64_t bytes = 0;
    for (const json& entry : category["entries"]) {
      EXPECT_EQ(entry["selectState"], i < 3 ? 1 : 0);
      EXPECT_EQ(entry.size(), 5U);
      bytes += entry["bytes"].get<std::uint64_t>();
    }
    EXPECT_EQ(category["bytes"], bytes);
    sum += bytes;
  }
  EXPECT_EQ(document["totalBytes"], sum);
  EXPECT_EQ(document["total"], "16.27 GB");
  EXPECT_EQ(document["categories"][3]["title"], "iTunes Junk");
  EXPECT_EQ(document["categories"][3]["subTitle"],
            "Clean up iTunes caches, useless backups, junk files, etc.");
  EXPECT_EQ(document["categories"][3]["size"], "4.20 GB");
}

TEST_F(JunkCommandLine, theTableIsAlignedAndNamesWhatIsTicked) {
  const Outcome outcome = junk({});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.output, HasSubstr("  [x] 0 System Junk            1.12 GB  9 items\n"));
  EXPECT_THAT(outcome.output, HasSubstr("  [ ] 4 Trash Bin Junk         2.22 GB  4 items\n"));
  EXPECT_THAT(outcome.output, HasSubstr("16.27 GB Junk files found.\n"));
  EXPECT_THAT(outcome.output, Not(HasSubstr(image.home))) << "entries only with --details";
  EXPECT_THAT(junk({"--details"}).output,
              HasSubstr("      [ ]     1.90 GB  " + image.home + "/.Trash/old video.mov\n"));
}

TEST_F(JunkCommandLine, categoriesAreTakenByNumberAndByTitle) {
  for (const std::string name : {"4", "Trash Bin Junk", "trash bin junk"}) {
    const json document = junk({"--json", name}).json();
    ASSERT_EQ(document["categories"].size(), 1U);
    EXPECT_EQ(document["categories"][0]["index"], 4);
    EXPECT_EQ(document["categories"][0]["entries"][0]["selectState"], 0) << "looked at, not ticked";
    EXPECT_EQ(document["total"], "2.22 GB");
  }
  EXPECT_EQ(junk({"--json", "--", "5", "0"}).json()["categories"].size(), 2U);
}

TEST_F(JunkCommandLine, dryRunTellsWhatCleaningRemovesAndTouchesNothing) {
  const auto before = treeOf(image.root);
  const json dry = junk({"--json", "--clean", "--dry-run"}).json();
  EXPECT_EQ(treeOf(image.root), before);
  EXPECT_FALSE(dry.contains("removed"));
  EXPECT_THAT(junk({"--clean", "--dry-run"}).output,
              HasSubstr("Would remove 14 items, 1.57 GB.\n"));
  const Outcome real = junk({"--json", "--clean", "--yes"});
  EXPECT_EQ(real.status, 0);
  EXPECT_EQ(real.json()["removed"], dry["wouldRemove"]);
  EXPECT_EQ(dry["wouldRemove"].size(), 14U);
}

TEST_F(JunkCommandLine, cleanRemovesWhatStartsTickedAndNothingElse) {
  auto expected = treeOf(image.root);
  const json found = junk({"--json"}).json();
  const Outcome outcome = junk({"--json", "--clean", "--yes"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  const json document = outcome.json();
  EXPECT_EQ(document["categories"], found["categories"]) << "what was found, before cleaning";
  EXPECT_TRUE(document["failed"].empty());
  EXPECT_EQ(document["freed"], "1.57 GB");
  EXPECT_GT(document["freedBytes"], 0);
  for (const json& category : found["categories"]) {
    for (const json& entry : category["entries"]) {
      if (entry["selectState"] != 1) continue;
      const std::string path = entry["path"];
      std::erase_if(expected, [&](const std::string& item) {
        return item.starts_with(path + " ") || item.starts_with(path + "/");
      });
    }
  }
  EXPECT_EQ(treeOf(image.root), expected);
  EXPECT_TRUE(image.isIntact());
  const json again = junk({"--json", "--clean", "--yes"}).json();
  EXPECT_EQ(again["removed"], json::array());
  EXPECT_EQ(again["freed"], "0 byte");
}

TEST_F(JunkCommandLine, cleanOfNamedCategoriesTicksAllOfThoseOnly) {
  const Outcome outcome = junk({"--clean", "--yes", "5", "Trash Bin Junk"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.output, HasSubstr("Removed 8 items, "));
  EXPECT_FALSE(exists(image.home + "/.Trash/draft.txt"));
  EXPECT_FALSE(exists(image.home + "/Library/Developer/Xcode/Products/App.app"));
  EXPECT_TRUE(exists(image.root + "/Library/Caches/com.example.fonts"));
  EXPECT_TRUE(exists(image.home + "/Library/Application Support/MobileSync/Backup/00008030-1"));
  EXPECT_TRUE(image.isIntact());
}

TEST_F(JunkCommandLine, asksOnATerminalAndTakesOnlyYesForYes) {
  const auto before = treeOf(image.root);
  for (const std::string answer : {"n\n", "\n", "yo\n"}) {
    const Outcome refused = junk(Program().terminal().input(answer), {"--clean"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.output, HasSubstr("Remove 14 items, 1.57 GB? [y/N]"));
    EXPECT_THAT(refused.output, HasSubstr("com.example.browser")) << "shown before it is asked";
    EXPECT_EQ(treeOf(image.root), before);
  }
  const Outcome done = junk(Program().terminal().input("y\n"), {"--clean"});
  EXPECT_EQ(done.status, 0);
  EXPECT_FALSE(exists(image.root + "/Library/Caches/com.example.fonts"));
}

TEST_F(JunkCommandLine, coloursOnATerminalUnlessTheyAreUnwanted) {
  EXPECT_THAT(junk(Program().terminal(), {}).output, HasSubstr("\033[1m"));
  EXPECT_THAT(junk(Program().terminal().variable("NO_COLOR", "1"), {}).output,
              Not(HasSubstr("\033[1m")));
  EXPECT_THAT(junk({}).output, Not(HasSubstr("\033")));
}

TEST_F(JunkCommandLine, hostileNamesAreShownEscapedAndRemovedByTheirBytes) {
  const std::string hostile =
      folder.file("Users/anna/.Trash/quote'\"\n\033[31m\xFF$(reboot)", "text");
  const Outcome shown = junk({"--details", "4"});
  EXPECT_THAT(shown.output, HasSubstr("quote'\"\\n\\x1B[31m\\xFF$(reboot)\n"));
  const Outcome outcome = junk({"--json", "--clean", "--yes", "4"});
  EXPECT_EQ(outcome.status, 0);
  const json document = outcome.json();
  EXPECT_FALSE(exists(hostile));
  EXPECT_EQ(document["removed"].size(), document["removedBytes"].size());
  bool isFound = false;
  for (const json& entry : document["categories"][0]["entries"]) {
    isFound = isFound || entry.contains("pathBytes");
  }
  EXPECT_TRUE(isFound);
}

TEST_F(JunkCommandLine, whatCannotBeRemovedIsNamedWithItsReasonAndGivesStatusOne) {
  const std::string stubborn = image.home + "/.Trash/old video.mov";
  if (!setImmutable(stubborn, true)) GTEST_SKIP() << "because files cannot be made immutable here";
  const Outcome outcome = junk({"--json", "--clean", "--yes", "4"});
  const Outcome spoken = junk({"--clean", "--yes", "4"});
  setImmutable(stubborn, false);
  EXPECT_EQ(outcome.status, 1);
  const json document = outcome.json();
  ASSERT_EQ(document["failed"].size(), 1U);
  EXPECT_EQ(document["failed"][0]["path"], stubborn);
  EXPECT_NE(document["failed"][0]["reason"], "");
  EXPECT_EQ(document["removed"].size(), 3U);
  EXPECT_EQ(spoken.status, 1);
  EXPECT_THAT(spoken.output, HasSubstr("1 item could not be removed:\n  " + stubborn + ": "));
}

TEST_F(JunkCommandLine, whatCannotBeReadIsNamedAndIsNoFailure) {
  if (!isRoot()) GTEST_SKIP() << "because another user is needed who may not read";
  fs::permissions(image.root, fs::perms::all);
  fs::permissions(image.home + "/.Trash", fs::perms::none);
  fs::permissions(image.root + "/Library/Logs/DiagnosticReports", fs::perms::none);
  const Outcome outcome = junk(Program().user(kNobody), {"--json"});
  if (outcome.status == 127) GTEST_SKIP() << "because the program cannot be reached by others";
  EXPECT_EQ(outcome.status, 0);
  const json document = outcome.json();
  std::set<std::string> skipped;
  for (const json& place : document["skipped"])
    skipped.insert(place["path"]);
  EXPECT_TRUE(skipped.contains(image.home + "/.Trash"));
  EXPECT_TRUE(skipped.contains(image.root + "/Library/Logs/DiagnosticReports"));
  EXPECT_THAT(junk(Program().user(kNobody), {"--details"}).output,
              HasSubstr(image.home + "/.Trash: Permission denied\n"));
}

TEST_F(JunkCommandLine, anInterruptDuringCleaningReportsWhatWasDone) {
  const std::string trash = folder.folder("Users/anna/.Trash/many");
  fs::remove_all(trash);
  constexpr std::size_t kCount = 4000;
  for (std::size_t i = 0; i < kCount; ++i) {
    folder.file("Users/anna/.Trash/f" + std::to_string(i));
  }
  // The progress line of the removal is what it says first on a terminal after the question.
  const Outcome outcome = junk(Program().terminal().whenItSpeaks([&](pid_t process) {
    for (int i = 0; i < 10'000 && exists(image.home + "/.Trash/f0"); ++i)
      usleep(200);
    kill(process, SIGINT);
  }),
                               {"--clean", "--yes", "--json", "4"});
  EXPECT_EQ(outcome.status, 130);
  std::string text = outcome.output.substr(outcome.output.find("{\r\n"));
  const json document = json::parse(text.substr(0, text.rfind('}') + 1));
  std::size_t left = 0;
  for (std::size_t i = 0; i < kCount; ++i) {
    left += exists(image.home + "/.Trash/f" + std::to_string(i)) ? 1 : 0;
  }
  std::size_t removed = 0;
  for (const json& path : document["removed"]) {
    EXPECT_FALSE(exists(path));
    removed += path.get<std::string>().find("/.Trash/f") != std::string::npos ? 1 : 0;
  }
  EXPECT_EQ(removed + left, kCount) << "exactly what is gone is reported";
  EXPECT_EQ(document["interrupted"], true);
}

TEST(JunkCommandOnThisMachine, reportsValidJsonForAHomeOfItsOwn) {
  TemporaryFolder folder;
  folder.sizedFile(".cache/fontconfig/a", 5'000'000);
  folder.sizedFile(".cache/rclone/vfs/a", 5'000'000);
  folder.sizedFile(".local/share/Trash/files/old", 1'000'000);
  const Outcome outcome = Program().variable("HOME", folder.path()).run({"junk", "--json"});
  EXPECT_EQ(outcome.status, 0);
  const json document = outcome.json();
  std::set<std::string> paths;
  for (const json& category : document["categories"]) {
    for (const json& entry : category["entries"]) {
      EXPECT_TRUE(paths.insert(entry["path"]).second) << entry["path"] << " twice";
    }
  }
  EXPECT_TRUE(paths.contains(folder / ".cache/fontconfig"));
  EXPECT_TRUE(paths.contains(folder / ".local/share/Trash/files/old"));
  EXPECT_FALSE(paths.contains(folder / ".cache/rclone"));
}

}  // namespace
}  // namespace brisko::test
