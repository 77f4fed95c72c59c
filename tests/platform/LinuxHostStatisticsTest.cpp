#include "LinuxCounters.h"
#include "LinuxHostActivity.h"
#include "LinuxHostStatistics.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

using namespace brisko;
using namespace brisko::test;

namespace {

using testing::ElementsAre;

std::string text(HostStatistics& host, const char* name) {
  NamedValue value;
  return host.namedValue(name, value) == 0 ? std::get<std::string>(value) : "none";
}

std::uint64_t number(HostStatistics& host, const char* name) {
  NamedValue value;
  return host.namedValue(name, value) == 0 ? std::get<std::uint64_t>(value) : 0;
}

TEST(LinuxHostStatistics, TicksOfEachCoreGoOnWhateverTheKernelDoes) {
  TemporaryFolder root;
  LinuxHostStatistics host(root.path());
  EXPECT_FALSE(host.processorTicks()) << "no such file";
  root.file("proc/stat",
            "cpu  1 2 3 4 5 6 7 8 9 10\n"
            "cpu0 4294967300 20 30 400 5 6 7 8 9 10\n"
            "cpu2 1 2 3 4\n"
            "cpu10 1 2\n"
            "intr 5 5 5\n");
  const ProcessorTicks first{4, 30 + 6 + 7 + 8, 400 + 5, 20};
  EXPECT_THAT(*host.processorTicks(), ElementsAre(first, ProcessorTicks{1, 3, 4, 2}));
  // Core 2 was switched off, and the time that core 0 waited for a disk went back.
  root.file("proc/stat", "cpu0 4294967301 20 30 400 3 6 7 8 9 10\n");
  EXPECT_THAT(*host.processorTicks(),
              ElementsAre(ProcessorTicks{5, 51, 405, 20}, ProcessorTicks{1, 3, 4, 2}));
  EXPECT_EQ(number(host, "hw.ncpu"), 1U);
}

// Recorded on a machine with 24 GB.
constexpr const char* kMemInfo =
    "MemTotal:       24731708 kB\nMemFree:        14589808 kB\nMemAvailable:   23178440 kB\n"
    "Buffers:          139248 kB\nCached:          8044056 kB\nSwapCached:            0 kB\n"
    "AnonPages:        955824 kB\nShmem:              8856 kB\nSReclaimable:     739924 kB\n";
constexpr const char* kVmStat =
    "nr_free_pages 796220\npgpgin 1165249\npgpgout 8515196\npgactivate 915474\n"
    "pgfault 4294967296\npgmajfault 852\npglazyfreed 3\npgreuse 1805491\n";

TEST(LinuxHostStatistics, FifteenCountersFromTheKernelsTables) {
  VirtualMemoryStatistics counters;
  ASSERT_TRUE(virtualMemoryFrom(kMemInfo, kVmStat, 4096, counters));
  VirtualMemoryStatistics expected;
  expected.free = 14589808 / 4;
  expected.inactive = (23178440 - 14589808) / 4;
  expected.active = (955824 + 8856) / 4;
  expected.wired = (24731708 - 23178440 - 955824 - 8856) / 4;
  expected.reactivations = 915474;
  expected.pageIns = 1165249 / 4;
  expected.pageOuts = 8515196 / 4;
  expected.faults = 0;  // wrapped round
  expected.copyOnWriteFaults = 1805491;
  expected.purges = 3;
  EXPECT_EQ(counters, expected);
}

TEST(LinuxHostStatistics, MemoryTablesThatAreCutOrContradictThemselves) {
  VirtualMemoryStatistics counters;
  counters.free = 77;
  EXPECT_FALSE(virtualMemoryFrom("", "", 4096, counters));
  EXPECT_FALSE(virtualMemoryFrom("MemTotal: 100 kB\nMemFre", "", 4096, counters));
  EXPECT_FALSE(virtualMemoryFrom("MemTotal: x kB\nMemFree: 8 kB\n", "", 4096, counters));
  EXPECT_EQ(counters.free, 77U);
  // An old kernel, without what is available; programs that seem to hold more than there is.
  ASSERT_TRUE(
      virtualMemoryFrom("MemTotal: 100 kB\nMemFree: 20 kB\nCached: 30 kB\nShmem: 10 kB\n"
                        "AnonPages: 900 kB\n",
                        "pgfault", 4096, counters));
  EXPECT_EQ(counters.inactive, 5U);
  EXPECT_EQ(counters.active, 15U);
  EXPECT_EQ(counters.wired, 0U);
  ASSERT_TRUE(virtualMemoryFrom("MemTotal: 100 kB\nMemFree: 20 kB\nMemAvailable: 400 kB\n", "",
                                4096, counters));
  EXPECT_EQ(counters.inactive, 20U);
  ASSERT_TRUE(virtualMemoryFrom("MemTotal: 100 kB\nMemFree: 20 kB\nMemAvailable: 12 kB\n", "", 4096,
                                counters));
  EXPECT_EQ(counters.inactive, 0U);
}

TEST(LinuxHostStatistics, IdentityFromTheFirmwareWithoutItsFillers) {
  TemporaryFolder root;
  LinuxHostStatistics host(root.path());
  EXPECT_EQ(text(host, "hw.model"), "none");
  EXPECT_FALSE(host.platformProperty("IOPlatformSerialNumber"));
  EXPECT_FALSE(host.platformProperty("colour"));
  EXPECT_EQ(host.productName(), "");
  EXPECT_EQ(number(host, "hw.memsize"), 0U);
  NamedValue value = std::uint64_t{5};
  EXPECT_EQ(host.namedValue("hw.nonsense", value), ENOENT);
  EXPECT_EQ(std::get<std::uint64_t>(value), 5U);

  root.file("sys/class/dmi/id/board_name", "B550\n");
  root.file("sys/class/dmi/id/product_name", "To be filled by O.E.M.\n");
  EXPECT_EQ(text(host, "hw.model"), "B550");
  root.file("sys/firmware/devicetree/base/model", std::string("Raspberry Pi 4 Model B\0", 23));
  EXPECT_EQ(text(host, "hw.model"), "Raspberry Pi 4 Model B");
  root.file("sys/class/dmi/id/product_name", "MacBookPro15,1\n");
  EXPECT_EQ(text(host, "hw.model"), "MacBookPro15,1");
  root.file("sys/class/dmi/id/sys_vendor", "LENOVO\n");
  root.file("sys/class/dmi/id/product_name", "20XW0026GE\n");
  root.file("sys/class/dmi/id/product_version", "ThinkPad X1 Carbon Gen 9\n");
  root.file("sys/class/dmi/id/product_serial", "PF3ABCDE  \n");
  EXPECT_EQ(text(host, "hw.model"), "ThinkPad X1 Carbon Gen 9");
  EXPECT_EQ(host.platformProperty("IOPlatformSerialNumber"), "PF3ABCDE");

  root.file("proc/cpuinfo",
            "processor\t: 0\nmodel name\t: Some(R) CPU @ 2.10GHz\ncpu MHz\t\t: 2100.500\n"
            "flags\t\t: fpu hypervisor lahf_lm\n\nprocessor\t: 1\nmodel name\t: Other\n");
  EXPECT_EQ(text(host, "machdep.cpu.brand_string"), "Some(R) CPU @ 2.10GHz");
  EXPECT_EQ(number(host, "hw.cpufrequency"), 2'100'500'000U);
  EXPECT_EQ(number(host, "kern.hv_vmm_present"), 1U);
  root.file("sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "4800000\n");
  EXPECT_EQ(number(host, "hw.cpufrequency"), 4'800'000'000U);
  root.file("etc/os-release", "NAME=Debian\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n");
  EXPECT_EQ(host.productName(), "Debian GNU/Linux 12 (bookworm)");
}

TEST(LinuxHostActivity, CountsEachByteOnce) {
  TemporaryFolder root;
  LinuxHostActivity host(root.path());
  EXPECT_TRUE(host.disks().empty());
  EXPECT_TRUE(host.networkInterfaces().empty());
  EXPECT_FALSE(host.upTimeSeconds());
  root.file("proc/diskstats",
            " 8 0 sda 100 0 2000 5 50 0 1000 5 0 5 10 0 0 0 0 0 0\n"
            " 8 1 sda1 100 0 2000 5 50 0 1000 5 0 5 10\n"
            " 253 0 dm-0 100 0 2000 5 50 0 1000 5 0 5 10\n"
            " 7 0 loop0 1 0 8 0\n");
  root.folder("sys/block/sda/device");
  root.folder("sys/block/dm-0");
  EXPECT_THAT(host.disks(), ElementsAre(TransferCounters{"sda", 1'024'000, 512'000, true}));

  root.file("proc/net/dev",
            "Inter-|   Receive      |  Transmit\n face |bytes packets |bytes\n"
            "    lo: 9 1 0 0 0 0 0 0 9 1 0 0 0 0 0 0\n"
            "  eth0:87395800 3079 0 0 0 0 0 0 157602 2046 0 0 0 0 0 0\n"
            "  tun0: 5 1 0 0 0 0 0 0 6 1 0 0 0 0 0 0\n"
            " wlan0: 7 1\n");
  root.file("sys/class/net/tun0/operstate", "unknown\n");
  root.file("sys/class/net/eth0/operstate", "down\n");
  EXPECT_THAT(host.networkInterfaces(),
              ElementsAre(TransferCounters{"eth0", 87'395'800, 157'602, false},
                          TransferCounters{"tun0", 5, 6, true}))
      << "a container has no device";
  root.folder("sys/class/net/eth0/device");
  EXPECT_THAT(host.networkInterfaces(),
              ElementsAre(TransferCounters{"eth0", 87'395'800, 157'602, false}));
  root.file("proc/uptime", "1409.87 1141.44\n");
  EXPECT_EQ(host.upTimeSeconds(), 1409U);
}

TEST(LinuxHostActivity, SensorsByKindTheHottestFirst) {
  TemporaryFolder root;
  LinuxHostActivity host(root.path());
  EXPECT_TRUE(host.temperatures().empty());
  const auto told = [&host] {
    std::vector<std::string> all;
    for (const Temperature& each : host.temperatures())
      all.push_back(each.name + " " + std::to_string(static_cast<int>(each.kind)) + " " +
                    std::to_string(each.celsius));
    return all;
  };
  root.file("sys/class/thermal/thermal_zone0/temp", "61000\n");
  root.file("sys/class/thermal/thermal_zone0/type", "cpu-thermal\n");
  root.file("sys/class/hwmon/hwmon1/name", "nvme\n");
  root.file("sys/class/hwmon/hwmon1/temp1_input", "41850\n");
  root.file("sys/class/hwmon/hwmon1/temp1_label", "Composite\n");
  root.file("sys/class/hwmon/hwmon1/device/model", "Fast Drive 1TB   \n");
  EXPECT_THAT(told(), ElementsAre("cpu-thermal 0 61.000000", "Fast Drive 1TB 1 41.850000"));
  root.file("sys/class/hwmon/hwmon0/name", "coretemp\n");
  root.file("sys/class/hwmon/hwmon0/temp1_input", "54000\n");
  root.file("sys/class/hwmon/hwmon0/temp1_label", "Package id 0\n");
  root.file("sys/class/hwmon/hwmon0/temp2_input", "55000\n");
  root.file("sys/class/hwmon/hwmon0/temp3_input", "-128000\n");
  root.file("sys/class/hwmon/hwmon0/temp4_input", "broken\n");
  EXPECT_THAT(told(), ElementsAre("coretemp 0 55.000000", "Package id 0 0 54.000000",
                                  "Fast Drive 1TB 1 41.850000"));
}

}  // namespace
