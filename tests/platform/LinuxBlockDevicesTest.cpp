#include "LinuxAtaDrive.h"
#include "LinuxBlockDevices.h"
#include "LinuxNvmeDrive.h"
#include "LinuxSmartDevice.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include <sys/sysmacros.h>

namespace brisko {
namespace {

/// A made sysfs of drives that no machine of ours has all of.
class LinuxBlockDevicesTest : public testing::Test {
 protected:
  /// A whole disk at `place` below the devices' folder; returns its folder.
  std::string add(const std::string& place, const std::string& number, std::uint64_t sectors) {
    const std::string at = "sys/devices/" + place;
    const std::string name = std::filesystem::path(place).filename();
    folder.file(at + "/dev", number + "\n");
    folder.file(at + "/size", std::to_string(sectors) + "\n");
    folder.file(at + "/queue/rotational", "0\n");
    folder.link("sys/block/" + name, folder / at);
    folder.link("sys/class/block/" + name, folder / at);
    folder.link("sys/dev/block/" + number, folder / at);
    return at;
  }
  std::vector<LinuxBlockDevice> disks(dev_t root = 0) { return linuxDisks(sysfs(), root); }
  std::string sysfs() const { return folder / "sys"; }

  void addEveryKind() {
    const std::string ata = add("pci0/ata1/host0/target0/0:0:0:0/block/sdb", "8:16", 4096000);
    folder.file(ata + "/device/vendor", "ATA     \n");
    folder.file(ata + "/device/model", "Spinning 4000\n");
    folder.file(ata + "/queue/rotational", "1\n");
    folder.file(ata + "/sdb1/partition", "1\n");
    folder.file(ata + "/sdb1/dev", "8:17\n");
    folder.file(ata + "/sdb1/size", "2048\n");
    folder.file(ata + "/sdb1/holders/dm-3", "");
    folder.file(ata + "/sdb10/partition", "10\n");
    folder.file(ata + "/sdb2/partition", "2\n");
    const std::string usb =
        add("pci0/usb1/1-2/host6/target6/6:0:0:0/block/sdaa", "65:160", 2048000);
    folder.file(usb + "/device/vendor", "SanDisk \n");
    folder.file(usb + "/device/model", "Ultra\n");
    folder.file(usb + "/removable", "1\n");
    const std::string soldered =
        add("pci0/usb1/1-7/host7/target7/7:0:0:0/block/sdc", "8:32", 2048000);
    folder.file("sys/devices/pci0/usb1/1-7/removable", "fixed\n");
    folder.file(soldered + "/device/model", "Reader\n");
    const std::string nvme = add("pci0/0000:01:00.0/nvme/nvme0/nvme0n1", "259:0", 4096000);
    folder.file(nvme + "/device/model", "Fast 1000     \n");
    const std::string outside = add("pci0/0000:05:00.0/nvme/nvme1/nvme1n1", "259:9", 4096000);
    folder.file("sys/devices/pci0/0000:05:00.0/removable", "removable\n");
    const std::string card = add("platform/mmc0/mmc0:1/block/mmcblk0", "179:0", 4096000);
    folder.file(card + "/device/type", "SD\n");
    folder.file(card + "/device/name", "SU32G\n");
    const std::string mapped = add("virtual/block/dm-3", "253:3", 4096000);
    folder.file(mapped + "/dm/uuid", "LVM-abc\n");
    folder.file(mapped + "/dm/name", "vg-home\n");
    const std::string image = add("virtual/block/loop4", "7:4", 4096000);
    folder.file(image + "/loop/backing_file", "/home/anna/a.img (deleted)\n");
    // None of these is a disk to show.
    add("virtual/block/loop5", "7:5", 0);
    folder.file(add("virtual/block/loop6", "7:6", 4096) + "/loop/backing_file",
                "/var/lib/snapd/snaps/core.snap\n");
    add("virtual/block/zram0", "252:0", 4096000);
    add("virtual/block/ram0", "1:0", 4096000);
    add("platform/floppy/block/fd0", "2:0", 8);
    add("platform/mmc0/mmc0:1/block/mmcblk0boot0", "179:8", 8192);
    folder.file(add("pci0/0000:01:00.0/nvme/nvme0/nvme0c0n1", "259:1", 4096000) + "/hidden", "1\n");
    // An empty card reader, and a disk that is unplugged while the folder is read.
    add("pci0/usb1/1-9/host9/target9/9:0:0:0/block/sdd", "8:48", 0);
    folder.link("sys/block/sde", folder / "sys/devices/gone");
  }

  test::TemporaryFolder folder;
};

TEST_F(LinuxBlockDevicesTest, ListsDrivesByNameThenVirtualDisksThenImages) {
  addEveryKind();
  std::string order;
  for (const LinuxBlockDevice& disk : disks())
    order += disk.identifier + "|" + disk.bus + "|" + disk.model +
             (disk.isExternal ? "|external" : "") + (disk.isRemovable ? "|removable" : "") + "\n";
  EXPECT_EQ(order,
            "mmcblk0|Secure Digital|SU32G|removable\n"
            "nvme0n1|PCI-Express|Fast 1000\n"
            "nvme1n1|PCI-Express||external\n"
            "sdb|SATA|Spinning 4000\n"
            "sdc|USB|Reader\n"
            "sdaa|USB|SanDisk Ultra|external|removable\n"
            "dm-3|LVM|vg-home\n"
            "loop4|Disk Image||removable\n");
}

TEST_F(LinuxBlockDevicesTest, TheDriveBelowTheRootComesFirst) {
  addEveryKind();
  // The root is on a mapped device, which is on the drive's partition.
  const auto all = disks(makedev(253, 3));
  ASSERT_EQ(all.front().identifier, "sdb");
  ASSERT_EQ(all.front().partitions.size(), 3U);
  EXPECT_EQ(all.front().partitions[2].identifier, "sdb10");
  EXPECT_EQ(all.front().partitions[0].holders, std::vector<std::string>{"dm-3"});
  EXPECT_EQ(all.front().partitions[0].size, std::uint64_t{1} << 20);
  EXPECT_TRUE(all.front().partitions[0].isRotational);
}

TEST_F(LinuxBlockDevicesTest, TheHealthRegistryLeadsFromAPartitionToItsDrive) {
  addEveryKind();
  LinuxSmartDevice registry(sysfs());
  const std::string ata = folder / "sys/devices/pci0/ata1/host0/target0/0:0:0:0/block/sdb";
  const auto partition = registry.nodeAtPath(ata + "/sdb1");
  ASSERT_TRUE(partition);
  EXPECT_FALSE(partition->hasSmartCapable || partition->isATABlockStorageDevice);
  const auto drive = registry.parent(*partition);
  ASSERT_TRUE(drive);
  EXPECT_EQ(drive->name, "sdb");
  EXPECT_TRUE(drive->isATABlockStorageDevice);
  EXPECT_EQ(drive->ataFeatures, 32U);
  EXPECT_TRUE(registry.nodeWithName("nvme0n1")->hasSmartCapable);
  EXPECT_FALSE(registry.nodeWithName("mmcblk0")->hasSmartCapable);
  EXPECT_EQ(registry.nodeWithName("disk1")->name, "nvme0n1");
  EXPECT_TRUE(registry.nodeWithName("disk5"));
  for (const char* none : {"disk6", "disk", "", "..", "../block/sdb", "sdz"})
    EXPECT_FALSE(registry.nodeWithName(none)) << none;
  EXPECT_FALSE(registry.nodeAtPath("/etc/passwd"));

  // The drive's own identity, as the SCSI layer has kept it, tells that it cannot.
  std::string identity(572, '\0');
  folder.file("sys/devices/pci0/ata1/host0/target0/0:0:0:0/block/sdb/device/vpd_pg89", identity);
  EXPECT_EQ(registry.nodeWithName("sdb")->ataFeatures, 0U);
  int steps = 0;
  for (auto node = drive; node; node = registry.parent(*node))
    ASSERT_LT(++steps, 20);
  int error = 0;
  EXPECT_EQ(registry.open(*drive, error), nullptr);  // there is no such device node here
  EXPECT_EQ(error, ENODEV);
}

TEST(LinuxNvmeDrive, TheHealthLogGivesUnits) {
  SmartSector page{};
  page[1] = 0x39;  // 313 K
  page[2] = 0x01;
  page[112] = 0x2C;
  page[113] = 0x01;
  page[128] = 0x10;
  page[129] = 0x27;
  page[131] = 0x05;
  const SmartHealth health = healthOfLogPage(page);
  EXPECT_EQ(health.temperature, 40);
  EXPECT_EQ(health.powerCycles, 300U);
  EXPECT_EQ(health.powerOnHours, 10000U + (std::uint64_t{5} << 24));
  page[1] = page[2] = 0;
  page[143] = 1;
  EXPECT_EQ(healthOfLogPage(page).temperature, 0);
  EXPECT_EQ(healthOfLogPage(page).powerOnHours, std::numeric_limits<std::uint64_t>::max());
}

TEST(LinuxAtaDrive, FindsTheRegistersInEitherFormOfSenseData) {
  const std::vector<std::uint8_t> descriptors = {0x72, 0x01, 0, 0x1D, 0, 0, 0, 16,  // header
                                                 0x00, 0x00,  // another descriptor before it
                                                 0x09, 0x0C, 0, 0x04, 0, 1, 0, 2,
                                                 0,    0xF4,  // error, …, middle
                                                 0,    0x2C, 0, 0x50};
  const auto registers = ataRegisters(descriptors);
  ASSERT_TRUE(registers);
  EXPECT_EQ(registers->error, 0x04);
  EXPECT_EQ(registers->count, 1);
  EXPECT_EQ(registers->lbaMid, 0xF4);
  EXPECT_EQ(registers->lbaHigh, 0x2C);
  EXPECT_EQ(registers->status, 0x50);
  const std::vector<std::uint8_t> fixed = {0x70, 0, 1, 0x04, 0x51, 0, 0, 10, 0, 0, 0x4F, 0xC2};
  EXPECT_EQ(ataRegisters(fixed)->lbaHigh, 0xC2);
  // Cut off anywhere, there is nothing to be read.
  for (std::size_t length = 0; length < descriptors.size(); ++length)
    EXPECT_FALSE(ataRegisters(std::span(descriptors).first(length))) << length;
}

}  // namespace
}  // namespace brisko
