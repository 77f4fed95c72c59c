// diskutil's rules on made inventories: what no test may try on a real disk.

#include "Description.h"
#include "Failure.h"
#include "Guard.h"
#include "Inventory.h"
#include "MountFolder.h"

#include <gtest/gtest.h>

#include <map>

#include <sys/sysmacros.h>

namespace brisko::diskutil {
namespace {

/// A machine that the test writes down.
struct Made {
  std::vector<LinuxBlockDevice> disks;
  Mounts mounts;
  std::map<std::string, Signature> signatures;

  LinuxBlockDevice& disk(const std::string& name, const std::string& bus = "SATA") {
    LinuxBlockDevice device;
    device.identifier = name;
    device.number = makedev(8, next_++);
    device.size = std::uint64_t{4} << 30;
    device.bus = bus;
    disks.push_back(device);
    signatures[name].isKnown = true;
    return disks.back();
  }
  LinuxBlockDevice& partition(const std::string& name, const std::string& type) {
    LinuxBlockDevice& whole = disks.back();
    LinuxBlockDevice part = whole;
    part.partitions.clear();
    part.identifier = name;
    part.number = makedev(8, next_++);
    part.partition = static_cast<int>(whole.partitions.size()) + 1;
    whole.partitions.push_back(part);
    hold(name, type);
    return whole.partitions.back();
  }
  void hold(const std::string& name, const std::string& type) {
    Signature& signature = signatures[name];
    signature.isKnown = true;
    signature.type = type;
    signature.usage = "filesystem";
  }
  void mount(const LinuxBlockDevice& device, const std::string& target, int parent = 0) {
    Mount made;
    made.id = ++lastMount_;
    made.parentId = parent;
    made.device = device.number;
    made.target = target;
    made.part = "/";
    mounts.mounts.push_back(made);
  }
  Inventory inventory() const {
    return Inventory::of(disks, mounts, [this](const LinuxBlockDevice& device) {
      return signatures.at(device.identifier);
    });
  }

 private:
  unsigned next_ = 1;
  int lastMount_ = 0;
};

std::string refusal(const Inventory& inventory, const std::string& node) {
  const Device& device = inventory.find(node);
  try {
    refuseUnlessVolume(inventory, device);
    refuseInUse(inventory, device);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return {};
}

TEST(DiskutilRules, OnlyAFreeVolumeMayBeFormatted) {
  Made made;
  made.disk("sda");
  for (const char* folder : {"/", "/boot/efi", "/usr", "/home", "/home/anna", "/var/lib/docker"}) {
    const std::string name = "sda" + std::to_string(made.disks[0].partitions.size() + 1);
    made.mount(made.partition(name, "ext4"), folder);
  }
  made.disk("sdb");
  made.mount(made.partition("sdb1", "ext4"), "/media/anna/DATA");
  made.partition("sdb2", "vfat");
  made.partition("sdb3", "LVM2_member").holders = {"dm-0"};
  made.signatures["sdb3"].usage = "raid";
  made.partition("sdb4", "crypto_LUKS").holders = {"dm-1"};
  made.signatures["sdb4"].usage = "crypto";
  made.partition("sdb5", "linux_raid_member");
  made.signatures["sdb5"].usage = "raid";
  made.partition("sdb6", "");
  made.signatures["sdb6"].partitionType = "0xf";
  made.partition("sdb7", "btrfs");
  made.partition("sdb8", "btrfs");
  made.signatures["sdb7"].uuid = made.signatures["sdb8"].uuid = "5ca1ab1e";
  made.partition("sdb9", "");
  made.signatures["sdb9"].isKnown = false;
  made.mounts.swaps.push_back(made.partition("sdb10", "swap").number);

  const Inventory inventory = made.inventory();
  for (int number = 1; number <= 6; ++number) {
    EXPECT_NE(refusal(inventory, "sda" + std::to_string(number)).find("running system"),
              std::string::npos);
  }
  EXPECT_EQ(refusal(inventory, "sdb1"), "");
  EXPECT_EQ(refusal(inventory, "sdb2"), "");
  const std::map<std::string, std::string> reasons = {
      {"sda", "whole disk"},         {"sdb3", "larger volume (LVM)"}, {"sdb4", "in use by dm-1"},
      {"sdb5", "larger volume"},     {"sdb6", "holds others"},        {"sdb7", "shares one file"},
      {"sdb9", "cannot be looked"}, {"sdb10", "swap space"}};
  for (const auto& [node, reason] : reasons)
    EXPECT_NE(refusal(inventory, node).find(reason), std::string::npos) << refusal(inventory, node);
  EXPECT_THROW(inventory.find("5ca1ab1e"), Failure);  // on two devices: which one?
  EXPECT_EQ(inventory.find("disk1s2").block.identifier, "sdb2");
  EXPECT_EQ(&inventory.find("/media/anna/DATA/"), inventory.withIdentifier("sdb1"));
  for (const char* none : {"", "disk", "disk9", "disk1s", "disk1s99", "disk1x", "sdz", "/x"})
    EXPECT_THROW(inventory.find(none), Failure) << none;
}

TEST(DiskutilRules, DisksAreToldApartAndTakenOffOnlyWhenTheyComeOff) {
  Made made;
  made.disk("nvme0n1", "PCI-Express").model = "Fast 1000";
  made.disk("nvme1n1", "PCI-Express").model = "Fast 1000";
  made.disk("sda", "USB").model = "Stick";
  made.disks.back().isExternal = true;
  made.disk("sdb", "USB").model = "Stick";
  made.disks.back().isExternal = true;
  made.mount(made.partition("sdb1", "ext4"), "/");
  made.disk("vdb", "VirtIO");

  const Inventory inventory = made.inventory();
  const auto name = [&](const char* node) { return mediaName(inventory, inventory.find(node)); };
  EXPECT_EQ(name("nvme0n1"), "Fast 1000");
  EXPECT_EQ(name("nvme1n1"), "Fast 1000 (nvme1n1)");
  EXPECT_EQ(name("sdb"), "Stick");
  EXPECT_EQ(name("vdb"), "VirtIO Disk vdb");
  EXPECT_FALSE(isEjectable(inventory, inventory.find("nvme0n1")));
  EXPECT_TRUE(isEjectable(inventory, inventory.find("sda")));
  EXPECT_FALSE(isEjectable(inventory, inventory.find("sdb1")));
  // A blank disk has no volume; a file system straight on one is its volume.
  EXPECT_TRUE(inventory.volumes(inventory.disks()[0]).empty());
}

TEST(DiskutilRules, LayersOfVirtualDisksAreLeftOutAndTheTopOnesShown) {
  Made made;
  made.disk("sda");
  made.partition("sda1", "crypto_LUKS").holders = {"dm-0"};
  made.disk("dm-0", "Encrypted").isVirtual = true;
  made.disks.back().holders = {"dm-1"};
  made.disk("dm-1", "LVM").isVirtual = true;
  made.hold("dm-1", "ext4");
  made.mount(made.disks.back(), "/");
  const Inventory inventory = made.inventory();
  ASSERT_EQ(inventory.disks().size(), 2U);
  const Disk& top = inventory.disks()[1];
  EXPECT_EQ(top.device.block.identifier, "dm-1");
  ASSERT_EQ(inventory.volumes(top).size(), 1U);
  EXPECT_EQ(&inventory.diskOf(*inventory.volumes(top)[0]), &top);
}

TEST(DiskutilRules, AMountInsideAMountIsFoundAtAnyDepth) {
  Made made;
  made.disk("sda");
  const LinuxBlockDevice one = made.partition("sda1", "ext4");
  const LinuxBlockDevice two = made.partition("sda2", "ext4");
  made.disk("sdb");
  const LinuxBlockDevice far = made.partition("sdb1", "ext4");
  made.mount(one, "/mnt/a");
  made.mount(two, "/mnt/a/b", 1);
  made.mount(far, "/mnt/a/b/c", 2);
  const Inventory inventory = made.inventory();
  EXPECT_NE(refusal(inventory, "sda1").find("/mnt/a/b"), std::string::npos);
  EXPECT_NE(refusal(inventory, "sda2").find("/mnt/a/b/c"), std::string::npos);
  EXPECT_EQ(refusal(inventory, "sdb1"), "");
  try {
    refuseInUse(inventory, inventory.find("sda"));
    ADD_FAILURE() << "the whole disk holds a mount of another";
  } catch (const Failure& failure) {
    EXPECT_NE(std::string(failure.what()).find("/mnt/a/b/c"), std::string::npos);
  }
}

TEST(DiskutilRules, OnlyFoldersNamedAfterVolumesChangeTheirName) {
  EXPECT_TRUE(MountFolder::isNamedAfterVolume("/run/media/anna/STICK"));
  EXPECT_TRUE(MountFolder::isNamedAfterVolume("/media/anna/STICK"));
  EXPECT_TRUE(MountFolder::isNamedAfterVolume("/media/STICK"));
  EXPECT_FALSE(MountFolder::isNamedAfterVolume("/media/anna/a/b"));
  EXPECT_FALSE(MountFolder::isNamedAfterVolume("/mnt/data"));
  EXPECT_FALSE(MountFolder::isNamedAfterVolume("/"));
  EXPECT_EQ(MountFolder("/mnt/data", "new").path(), "/mnt/data");
  EXPECT_EQ(MountFolder("/media/nobody-here/old", "..").path(), "/media/nobody-here/old");
}

}  // namespace
}  // namespace brisko::diskutil
