#include "CommUti.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace brisko {
namespace {

TEST(CommUti, SizesAreShownInDecimalUnitsToTheDigit) {
  const struct {
    std::uint64_t bytes;
    const char* diskSize;
    const char* volSpace;
  } kCases[] = {
      {0, "0 byte", "0.00 KB"},
      {1, "1 byte", "0.00 KB"},
      {999, "999 byte", "1.00 KB"},
      {1000, "1.00 KB", "1.00 KB"},
      {1005, "1.00 KB", "1.00 KB"},  // 1.005 lies just below
      {999'990, "999.99 KB", "999.99 KB"},
      {999'999, "1000.00 KB", "1000.00 KB"},
      {1'000'000, "1.00 MB", "1.00 MB"},
      {999'999'999, "1000.00 MB", "1000.00 MB"},
      {1'000'000'000, "1.00 GB", "1.00 GB"},
      {999'999'999'999, "1000.00 GB", "1000.00 GB"},
      {1'000'000'000'000, "1.00 TB", "1000.00 GB"},
      {1'500'000'000'000, "1.50 TB", "1500.00 GB"},
      // About seven digits survive the narrowing: the exact quotient ends in ".67".
      {999'999'670'000'000, "1000.00 TB", "999999.62 GB"},
      {12'345'678'912'345'678U, "12345.68 TB", "12345678.00 GB"},
      {UINT64_MAX, "18446744.00 TB", "18446743552.00 GB"},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(CommUti::longlongDiskSize(row.bytes), row.diskSize) << row.bytes;
    EXPECT_EQ(CommUti::longlongConvertVolSpace(row.bytes), row.diskSize) << row.bytes;
    EXPECT_EQ(CommUti::convertVolSpace(row.bytes), row.volSpace) << row.bytes;
  }
}

TEST(CommUti, ShownSizesAreReadBackInSinglePrecision) {
  const struct {
    const char* text;
    std::uint64_t bytes;
  } kCases[] = {
      {"", 0},
      {"KB", 0},
      {" KB", 0},
      {"0.00 KB", 0},
      {"1.00 KB", 1000},
      {"1.50 GB", 1'500'000'000},
      {"2.00 TB", 1'999'999'991'808},
      {"1.00 TB", 999'999'995'904},
      {"0.29 MB", 290'000},  // 289,999 were it computed in double precision
      {"16.78 MB", 16'780'000},
      {"999 byte", 0},
      {"12 bytes", 0},
      {"1.50 gb", 0},
      {"1.50 PB", 0},
      {"-5.90 KB", static_cast<std::uint64_t>(-5)},  // not multiplied
      {"-1.00 MB", static_cast<std::uint64_t>(-1'000'000)},
      {"nan GB", 0},
      {"inf GB", 0},
      {"0x10 KB", 0},
      {"99999999999 TB", UINT64_MAX},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(CommUti::volSpaceFromString(row.text), row.bytes) << row.text;
  }
}

TEST(CommUti, VersionIsDecodedFromThePackedNumberUntilItOutgrowsIt) {
  const struct {
    SystemVersion::Selectors selectors;
    long error;
    std::uint32_t major, minor, bugFix;
    int number;
  } kCases[] = {
      {{0x1039, 77, 77, 77}, 0, 10, 3, 9, 1003},   {{0x103F, 77, 77, 77}, 0, 10, 3, 15, 1003},
      {{0x1040, 10, 4, 0}, 0, 10, 4, 0, 1004},     {{0x0922, 77, 77, 77}, 0, 9, 2, 2, 902},
      {{0x1090, 10, 15, 7}, 0, 10, 15, 7, 1015},   {{0x1120, 11, 2, 3}, 0, 11, 2, 3, 1102},
      {{0x1120, 11, 2, 3}, -5551, 10, 0, 0, 1000},
  };
  for (const auto& row : kCases) {
    test::TestHost host;
    host.version().selectors = row.selectors;
    host.version().error = row.error;
    std::uint32_t major = 0, minor = 0, bugFix = 0;
    CommUti::getSystemVersionMajor(&major, &minor, &bugFix);
    EXPECT_EQ(major, row.major);
    EXPECT_EQ(minor, row.minor);
    EXPECT_EQ(bugFix, row.bugFix);
    EXPECT_EQ(CommUti::getMinorVersion(), static_cast<int>(row.minor));
    EXPECT_EQ(CommUti::getSystemVersion(), row.number);
    const std::string logged = row.error != 0 ? "Unable to obtain system version: -5551"
                                              : "verSion----------" + std::to_string(row.number);
    EXPECT_TRUE(host.logged(logged)) << logged;
  }
}

TEST(CommUti, SearchLocationsStandInTheirOrderBelowTheRoot) {
  test::TestHost host("/R");
  EXPECT_EQ(CommUti::applicationPaths(),
            (std::vector<std::string>{"/R/Users/anna/Applications", "/R/Applications",
                                      "/R/Network/Applications", "/R/Developer/Applications"}));
  EXPECT_EQ(CommUti::widgetPaths(),
            (std::vector<std::string>{"/R/Users/anna/Library/Widgets", "/R/Library/Widgets"}));
  EXPECT_EQ(CommUti::preferencePanePaths(),
            (std::vector<std::string>{"/R/Users/anna/Library/PreferencePanes",
                                      "/R/Library/PreferencePanes"}));
  const auto plugins = CommUti::pluginPaths();
  ASSERT_EQ(plugins.size(), 22U);
  EXPECT_EQ(plugins[0], "/R/Users/anna/Library/Address Book Plug-Ins");
  EXPECT_EQ(plugins[9], "/R/Users/anna/Library/Safari");
  EXPECT_EQ(plugins[15], "/R/Library/Screen Savers");
  EXPECT_EQ(plugins[20], "/R/Users/anna/Library/Input Methods");
  EXPECT_EQ(plugins[21], "/R/Library/Input Methods");
}

TEST(CommUti, OnlyTheFirstOccurrenceStandsOut) {
  test::TestHost host;
  const auto text = CommUti::setStringFontWithMainStr("5 of 5 files", "#111111", "5", "#ff0000");
  EXPECT_EQ(text.runs, (std::vector<AttributedText::Run>{{"5", "#ff0000", 18, true},
                                                         {" of 5 files", "#111111", 14, false}}));
  EXPECT_EQ(text.plain(), "5 of 5 files");
  const auto plain = CommUti::setStringFontWithMainStr("files", "#111111", "9", "#ff0000");
  EXPECT_EQ(plain.runs, (std::vector<AttributedText::Run>{{"files", "#111111", 14, false}}));
  EXPECT_TRUE(host.logged("Failed _2"));
}

}  // namespace
}  // namespace brisko
