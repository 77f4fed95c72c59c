#include "LogCapture.h"
#include "SystemLog.h"

#include <gtest/gtest.h>

#include <thread>

namespace brisko {
namespace {

TEST(SystemLog, NothingThatANameHoldsBreaksTheLine) {
  const struct {
    std::string text;
    std::string shown;
  } kCases[] = {
      {"plain ä € 😀", "plain ä € 😀"},
      {"a\nb\tc\r", "a\\nb\\tc\\x0D"},
      {"\x1B[2J\x7F", "\\x1B[2J\\x7F"},
      {std::string("a\0b", 3), "a\\x00b"},
      {"back\\slash", "back\\slash"},
      {"\xC2\x9B"
       "31m",
       "\\xC2\\x9B31m"},                    // a control character of two bytes
      {"\xC0\xAF", "\\xC0\\xAF"},           // over-long
      {"\xED\xA0\x80", "\\xED\\xA0\\x80"},  // surrogate
      {"\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80"},
      {"cut \xE2\x82", "cut \\xE2\\x82"},
      {"\xC3(", "\\xC3("},
  };
  for (const auto& row : kCases) {
    test::LogCapture log;
    SystemLog::line("{}", row.text);
    EXPECT_EQ(log.lines(), std::vector<std::string>{row.shown});
  }
}

TEST(SystemLog, TextIsNeverAFormat) {
  test::LogCapture log;
  SystemLog::write("%n%s {} {0}");
  EXPECT_EQ(log.lines(), std::vector<std::string>{"%n%s {} {0}"});
}

TEST(SystemLog, EchoGoesToStandardErrorOnlyWhileAskedFor) {
  testing::internal::CaptureStderr();
  SystemLog::write("before");
  SystemLog::setEchoToStandardError(true);
  SystemLog::write("echoed\n");
  SystemLog::setEchoToStandardError(false);
  SystemLog::write("after");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "echoed\\n\n");
}

TEST(SystemLog, LinesOfManyThreadsArriveWholeAndNoneAfterTheSinkIsGone) {
  std::size_t count = 0;
  {
    test::LogCapture log;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([] {
        for (int j = 0; j < 250; ++j)
          SystemLog::line("line {}", j);
      });
    }
    for (std::thread& thread : threads)
      thread.join();
    count = log.lines().size();
  }
  SystemLog::write("to nobody");
  EXPECT_EQ(count, 1000U);
}

}  // namespace
}  // namespace brisko
