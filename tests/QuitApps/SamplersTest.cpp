#include "FakeStatistics.h"
#include "Host.h"
#include "SSCpuMonitor.h"
#include "SSMemoryMonitor.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

using namespace brisko;
using namespace brisko::test;

namespace {

class CpuMonitor : public testing::Test {
 protected:
  CpuLoad firstCore() { return monitor.monitorCPU().value().at(0); }

  FakeStatistics host;
  SSCpuMonitor monitor{host};
};

TEST_F(CpuMonitor, LoadIsTheShareOfTheTicksSinceThePreviousCall) {
  host.ticks = {{{100, 200, 300, 400}, {1, 2, 3, 4}}};
  ASSERT_EQ(monitor.getNumCPUs(), 2);
  host.ticks = {{{110, 205, 380, 405}, {1, 2, 3, 4}}};
  const auto loads = monitor.monitorCPU().value();
  ASSERT_EQ(loads.size(), 2U);
  EXPECT_DOUBLE_EQ(loads[0].user, 0.15) << "nice time counts as user time";
  EXPECT_DOUBLE_EQ(loads[0].system, 0.05);
  EXPECT_EQ(loads[1].user + loads[1].system, 0) << "no tick at all";
  EXPECT_EQ(firstCore().user, 0) << "measured from the call before, not the first";
}

TEST_F(CpuMonitor, CountersThatWrappedRoundGiveTheSmallDifference) {
  constexpr std::uint32_t kLast = 0xFFFFFFFFU;
  host.ticks = {{{kLast, kLast - 9, kLast - 69, kLast - 4}}};
  monitor.getNumCPUs();
  host.ticks = {{{14, 0, 0, 0}}};  // 15, 10, 70 and 5 on
  const CpuLoad load = firstCore();
  EXPECT_DOUBLE_EQ(load.user, 0.2);
  EXPECT_DOUBLE_EQ(load.system, 0.1);
  // Half of all there are of each: their sum does not fit into 32 bits.
  host.ticks = {{{14, 0x80000000U, 0x80000000U, 0}}};
  EXPECT_DOUBLE_EQ(firstCore().system, 0.5);
}

TEST_F(CpuMonitor, RefusalAndAnotherNumberOfCoresAreSurvived) {
  EXPECT_EQ(monitor.getNumCPUs(), 0);
  EXPECT_FALSE(monitor.monitorCPU());
  host.ticks = {{{10, 10, 10, 10}}};
  EXPECT_EQ(firstCore().user, 0) << "nothing to measure from";
  host.ticks.reset();
  EXPECT_FALSE(monitor.monitorCPU());
  host.ticks = {{{20, 10, 40, 10}}};
  EXPECT_DOUBLE_EQ(firstCore().user, 0.25) << "the measured time went on";
  host.ticks = {{{21, 10, 40, 10}, {500, 500, 500, 500}}};
  EXPECT_EQ(monitor.monitorCPU().value().at(1).user, 0);
}

TEST(SSMemoryMonitor, RecordIsTheCountersTimesThePage) {
  FakeStatistics host;
  host.values = {{"hw.pagesize", std::uint64_t{16384}},
                 {"hw.physmem", std::uint64_t{1}},
                 {"hw.memsize", std::uint64_t{8} << 30U}};
  host.memory = VirtualMemoryStatistics{.free = 1000,
                                        .active = 4'000'000'000U,
                                        .inactive = 2000,
                                        .wired = 300,
                                        .pageIns = 7,
                                        .pageOuts = 8,
                                        .faults = 9};
  SSMemoryMonitor monitor(host);
  const SSMemoryInfo info = monitor.usagePercent();
  EXPECT_EQ(info.totalMemory, std::uint64_t{8} << 30U);
  EXPECT_EQ(info.freeMemory, 16'384'000U);
  EXPECT_EQ(info.activeMemory, 65'536'000'000'000U) << "64-bit from the start";
  EXPECT_EQ(info.inactiveMemory, 32'768'000U);
  EXPECT_EQ(info.wiredMemory, 4'915'200U);
  EXPECT_EQ(info.usedMomory, (std::uint64_t{8} << 30U) - 49'152'000U);
  EXPECT_EQ(info.pageIn, 114'688U);
  EXPECT_EQ(info.pageOut, 131'072U);
  EXPECT_EQ(info.virtualMemory, 147'456U);
}

TEST(SSMemoryMonitor, FailuresKeepThePreviousValuesAndTellTheLastError) {
  const TestHost log;
  FakeStatistics host;
  host.values = {{"hw.physmem", std::uint64_t{1}}, {"hw.memsize", std::uint64_t{1} << 20U}};
  host.memory = VirtualMemoryStatistics{.free = 3};
  SSMemoryMonitor monitor(host);
  EXPECT_EQ(monitor.getMemoryInfo(), ENOENT);
  EXPECT_EQ(monitor.usagePercent().freeMemory, 3U * 4096) << "the page until one is told";
  EXPECT_FALSE(log.logged("host_statistics failed"));
  host.values = {{"hw.pagesize", std::uint64_t{8192}}, {"hw.physmem", std::uint64_t{1}}};
  host.memory.reset();
  EXPECT_EQ(monitor.getMemoryInfo(), ENOENT);
  EXPECT_TRUE(log.logged("host_statistics failed"));
  const SSMemoryInfo info = monitor.usagePercent();
  EXPECT_EQ(info.totalMemory, 1U << 20U);
  EXPECT_EQ(info.freeMemory, 3U * 8192);
}

TEST(SSMemoryInfo, SizesAsText) {
  const std::pair<std::int64_t, const char*> cases[] = {{0, "0.00 KB"},
                                                        {1, "0.00 KB"},
                                                        {1536, "1.50 KB"},
                                                        {1048575, "1024.00 KB"},
                                                        {1048576, "1.00 MB"},
                                                        {1073741823, "1024.00 MB"},
                                                        {1073741824, "1.00 GB"},
                                                        {-1, "17179869184.00 GB"},
                                                        {6'871'947'673, "6.40 GB"}};
  for (const auto& [bytes, text] : cases)
    EXPECT_EQ(SSMemoryInfo::covertMemory(bytes), text) << bytes;
}

// The machine's own figures, held against what its kernel says at the same time.
TEST(Samplers, AgreeWithThisMachine) {
  std::ifstream memInfo("/proc/meminfo");
  std::string name;
  std::uint64_t kibibytes = 0;
  memInfo >> name >> kibibytes;
  ASSERT_EQ(name, "MemTotal:");
  const SSMemoryInfo info = SSMemoryMonitor().usagePercent();
  EXPECT_EQ(info.totalMemory, kibibytes * 1024);
  EXPECT_LE(info.freeMemory + info.activeMemory + info.inactiveMemory + info.wiredMemory,
            info.totalMemory);
  EXPECT_GT(info.activeMemory, 1U << 20U) << "this program alone";
  EXPECT_GT(info.virtualMemory, 0U);

  SSCpuMonitor processor;
  const int cores = processor.getNumCPUs();
  const auto loads = processor.monitorCPU().value();
  EXPECT_EQ(loads.size(), static_cast<std::size_t>(cores));
  for (const CpuLoad& load : loads)
    EXPECT_LE(load.user + load.system, 1 + 1e-12);
}

}  // namespace
