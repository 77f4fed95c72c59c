#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include <unistd.h>

namespace brisko::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class ShredCommandLine : public testing::Test {
 protected:
  Outcome shred(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "shred");
    return Program().run(arguments);
  }
  TemporaryFolder folder;
};

TEST_F(ShredCommandLine, ErasesWhatItIsGivenAndSaysSo) {
  folder.file("tree/a", "text");
  folder.file("tree/b\xff", "text");
  folder.file("outside", "kept");
  folder.link("tree/link", folder / "outside");
  const std::string odd = folder.file("-odd\nname", "text");
  const json dry = shred({"--dry-run", "--json", folder / "tree"}).json();
  EXPECT_EQ(dry["items"].size(), 4U);
  EXPECT_EQ(dry["items"].back()["url"], folder / "tree");
  EXPECT_FALSE(dry["items"][0].contains("failStr"));
  EXPECT_TRUE(exists(folder / "tree/a"));
  EXPECT_EQ(shred({folder / "tree"}).status, 2) << "nobody can be asked";
  EXPECT_TRUE(exists(folder / "tree/a"));

  const Outcome outcome = shred({"--yes", "--json", "--times", "3", folder / "tree", odd});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_EQ(outcome.json()["items"],
            json::parse(R"([{"url": ")" + (folder / "tree") + R"(", "failStr": "Erased",
                            "reason": ""},
                           {"url": ")" +
                        (folder / "-odd\\nname") + R"(", "failStr": "Erased", "reason": ""}])"));
  EXPECT_TRUE(outcome.json()["notes"].is_array());
  EXPECT_FALSE(exists(folder / "tree"));
  EXPECT_EQ(contentOf(folder / "outside"), "kept");
}

TEST_F(ShredCommandLine, WhatStaysIsAFailureWithItsReason) {
  const std::string one = folder.file("one", "text");
  ASSERT_EQ(link(one.c_str(), (folder / "two").c_str()), 0);
  const Outcome refused = shred({"--yes", "--json", one, "/etc"});
  EXPECT_EQ(refused.status, 1);
  const json items = refused.json()["items"];
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[0]["failStr"], "Failed");
  EXPECT_EQ(items[0]["reason"], "it has 1 other name (a hard link)");
  EXPECT_EQ(items[1]["failStr"], "Failed");
  EXPECT_THAT(items[1]["reason"].get<std::string>(), HasSubstr("protected"));
  EXPECT_EQ(contentOf(folder / "two"), "text");
  EXPECT_THAT(shred({"--yes", one}).output, HasSubstr("Failed " + one));
  EXPECT_EQ(shred({"--yes", "--all-names", one}).status, 0);
  EXPECT_EQ(contentOf(folder / "two"), "");
}

TEST_F(ShredCommandLine, WrongUsageIsOneLineAndTouchesNothing) {
  const std::string file = folder.file("file", "text");
  const std::vector<std::vector<std::string>> cases = {
      {"--yes"},
      {"--yes", file, folder / "missing"},
      {"--yes", "--times", "5", file},
      {"--yes", "--times", "many", file},
      {"--yes", ""},
  };
  for (const auto& arguments : cases) {
    const Outcome outcome = shred(arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
    EXPECT_EQ(outcome.output, "");
  }
  EXPECT_EQ(contentOf(file), "text");
}

TEST_F(ShredCommandLine, OnATerminalItAsksFirst) {
  const std::string file = folder.file("file", "text");
  const Outcome no = Program().terminal().input("n\n").run({"shred", file});
  EXPECT_EQ(no.status, 1);
  EXPECT_THAT(no.output, HasSubstr("Erase 1 item (4 byte"));
  EXPECT_EQ(contentOf(file), "text");
  EXPECT_EQ(Program().terminal().input("yes\n").run({"shred", file}).status, 0);
  EXPECT_FALSE(exists(file));
}

TEST_F(ShredCommandLine, InterruptedItTellsWhatWasDoneAndEnds130) {
  const std::string first = folder.file("first", "text");
  const std::string large = folder.file("large", std::string(64U << 20, 'x'));
  const std::string rest = folder.file("rest", "untouched");
  // The second line of the log is the large file's turn.
  const Outcome outcome =
      Program()
          .whenItSpeaks([&](pid_t process) {
            for (int i = 0; i < 500 && exists(first); ++i)
              usleep(10'000);
            kill(process, SIGINT);
          })
          .run({"shred", "--yes", "--json", "--verbose", "--times", "35", first, large, rest});
  EXPECT_EQ(outcome.status, 130);
  const json items = outcome.json()["items"];
  ASSERT_EQ(items.size(), 3U);
  EXPECT_EQ(items[0]["failStr"], "Erased");
  EXPECT_EQ(items[1]["failStr"], "Failed");
  EXPECT_THAT(items[1]["reason"].get<std::string>(), HasSubstr("stopped"));
  EXPECT_EQ(items[2]["reason"], "stopped before its turn came");
  EXPECT_EQ(contentOf(rest), "untouched");
  std::size_t left = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
    left += entry.path() == large || entry.path() == rest ? 1 : 100;
  EXPECT_EQ(left, 2U) << "under their own names";
}

}  // namespace
}  // namespace brisko::test
