#include "LiveBlock.h"
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>

namespace brisko::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

TEST(StatusCommand, documentHasTheRecordsFieldNames) {
  const Outcome outcome = Program().run({"status", "--json"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  const auto document = outcome.json();
  const auto& memory = document["memory"];
  EXPECT_EQ(memory["usedMomory"].get<std::uint64_t>(),
            memory["totalMemory"].get<std::uint64_t>() - memory["freeMemory"].get<std::uint64_t>() -
                memory["inactiveMemory"].get<std::uint64_t>());
  EXPECT_EQ(std::to_string(document["processor"]["cores"].size()),
            document["machine"]["sysProcessorCount"].get<std::string>());
  EXPECT_TRUE(document["volumes"][0]["bIsDefaultVol"].get<bool>());
  EXPECT_GT(document["upTimeSeconds"].get<std::uint64_t>(), 0U);
  for (const char* key : {"disk", "network", "temperatures"})
    EXPECT_TRUE(document.contains(key)) << key;
}

TEST(StatusCommand, watchingAsOneDocumentIsRefused) {
  const Outcome outcome = Program().run({"status", "--watch", "--json"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errorLines(), 1U);
}

TEST(StatusCommand, watchingEndsCleanlyWhenInterrupted) {
  const Outcome terminal = Program()
                               .terminal()
                               .whenItSpeaks([](pid_t child) { kill(child, SIGINT); })
                               .run({"status", "--watch"});
  EXPECT_EQ(terminal.status, 130);
  EXPECT_THAT(terminal.output, HasSubstr("Memory"));
  EXPECT_THAT(terminal.output, EndsWith("\r\033[K"));
  // Two blocks into a pipe whose reader then goes away.
  const std::string command = std::string("LC_ALL=C.UTF-8 ") + BRISKO_PROGRAM +
                              " status --watch 2>/dev/null | grep -m 2 -c '^Memory  .*used of'";
  std::FILE* pipe = popen(command.c_str(), "r");
  char counted[16] = {};
  EXPECT_NE(std::fgets(counted, sizeof counted, pipe), nullptr);
  pclose(pipe);
  EXPECT_STREQ(counted, "2\n");
}

TEST(StatusCommand, linesAreCutByWhatIsSeenOfThem) {
  EXPECT_EQ(LiveBlock::cut("abc", 3), "abc");
  EXPECT_EQ(LiveBlock::cut("abcd", 3), "abc");
  EXPECT_EQ(LiveBlock::cut("\033[1m█░x\033[0m y", 3), "\033[1m█░x\033[0m");
  EXPECT_EQ(LiveBlock::cut("\033[1m█░xyz\033[0m", 2), "\033[1m█░\033[0m");
}

}  // namespace
}  // namespace brisko::test
